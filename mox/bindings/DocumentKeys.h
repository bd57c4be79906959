#pragma once

namespace Mox::Materials::DocumentKeys {

/// Names of elements and attributes in the material documents of hosts, so that all hosts spell
/// them alike. No code of the library reads them.

inline constexpr char Environment[] = "environment";
inline constexpr char Material[] = "material";
inline constexpr char ColourSpace[] = "colourSpace";
inline constexpr char Categories[] = "categories";
inline constexpr char Description[] = "description";
inline constexpr char Desc[] = "desc";
inline constexpr char VisibleInMayaUi[] = "visibleinmayaui";
inline constexpr char HelpUrl[] = "helpUrl";
inline constexpr char Name[] = "name";

inline constexpr char AlphaBlend[] = "alphaBlend";
inline constexpr char SourceBlend[] = "sourceBlend";
inline constexpr char DestBlend[] = "destBlend";
inline constexpr char AlphaTest[] = "alphaTest";
inline constexpr char AlphaFunc[] = "alphaFunc";
inline constexpr char AlphaRef[] = "alphaRef";
inline constexpr char ZWriteEnabled[] = "zWriteEnabled";
inline constexpr char ZTest[] = "zTest";
inline constexpr char ZTestFunc[] = "zTestFunc";
inline constexpr char BackFaceCullEnabled[] = "backFaceCullEnabled";
inline constexpr char Preview[] = "preview";
inline constexpr char Shader[] = "shader";
inline constexpr char Dictionary[] = "dictionary";
inline constexpr char BasicColour[] = "basic_colour";

} // namespace Mox::Materials::DocumentKeys
