// Defines the parts of Cg that the HLSL front end lacks. It is prepended to each fragment program.

// Types. A fixed number may be more precise than its name implies, like a half.

#define fixed half
#define fixed1 half1
#define fixed2 half2
#define fixed3 half3
#define fixed4 half4

// Semantics.

#define POSITION SV_Position
#define COLOR SV_Target0
#define COLOR0 SV_Target0
#define COLOR1 SV_Target1
#define COLOR2 SV_Target2
#define COLOR3 SV_Target3

// Words that the front end reserves and Cg does not.

#define BlendState MoxWord_BlendState
#define Buffer MoxWord_Buffer
#define ByteAddressBuffer MoxWord_ByteAddressBuffer
#define ConstantBuffer MoxWord_ConstantBuffer
#define DepthStencilState MoxWord_DepthStencilState
#define InputPatch MoxWord_InputPatch
#define LineStream MoxWord_LineStream
#define OutputPatch MoxWord_OutputPatch
#define PointStream MoxWord_PointStream
#define RWBuffer MoxWord_RWBuffer
#define RWByteAddressBuffer MoxWord_RWByteAddressBuffer
#define RWStructuredBuffer MoxWord_RWStructuredBuffer
#define RWTexture1D MoxWord_RWTexture1D
#define RWTexture2D MoxWord_RWTexture2D
#define RWTexture3D MoxWord_RWTexture3D
#define RasterizerState MoxWord_RasterizerState
#define SamplerComparisonState MoxWord_SamplerComparisonState
#define SamplerState MoxWord_SamplerState
#define StructuredBuffer MoxWord_StructuredBuffer
#define SubpassInput MoxWord_SubpassInput
#define Texture1D MoxWord_Texture1D
#define Texture1DArray MoxWord_Texture1DArray
#define Texture2D MoxWord_Texture2D
#define Texture2DArray MoxWord_Texture2DArray
#define Texture2DMS MoxWord_Texture2DMS
#define Texture3D MoxWord_Texture3D
#define TextureBuffer MoxWord_TextureBuffer
#define TextureCube MoxWord_TextureCube
#define TextureCubeArray MoxWord_TextureCubeArray
#define TriangleStream MoxWord_TriangleStream
#define cbuffer MoxWord_cbuffer
#define centroid MoxWord_centroid
#define export MoxWord_export
#define globallycoherent MoxWord_globallycoherent
#define groupshared MoxWord_groupshared
#define layout MoxWord_layout
#define line MoxWord_line
#define lineadj MoxWord_lineadj
#define linear MoxWord_linear
#define min10float MoxWord_min10float
#define min12int MoxWord_min12int
#define min16float MoxWord_min16float
#define min16int MoxWord_min16int
#define min16uint MoxWord_min16uint
#define nointerpolation MoxWord_nointerpolation
#define noperspective MoxWord_noperspective
#define packoffset MoxWord_packoffset
#define point MoxWord_point
#define precise MoxWord_precise
#define precision MoxWord_precision
#define sample MoxWord_sample
#define snorm MoxWord_snorm
#define tbuffer MoxWord_tbuffer
#define triangle MoxWord_triangle
#define triangleadj MoxWord_triangleadj
#define uint MoxWord_uint
#define uint1 MoxWord_uint1
#define uint2 MoxWord_uint2
#define uint3 MoxWord_uint3
#define uint4 MoxWord_uint4
#define unorm MoxWord_unorm
#define AppendStructuredBuffer MoxWord_AppendStructuredBuffer
#define ConsumeStructuredBuffer MoxWord_ConsumeStructuredBuffer
#define SubpassInputMS MoxWord_SubpassInputMS
#define Texture2DMSArray MoxWord_Texture2DMSArray
#define RWTexture1DArray MoxWord_RWTexture1DArray
#define RWTexture2DArray MoxWord_RWTexture2DArray
#define uint64_t MoxWord_uint64_t
