#pragma once

#include <string_view>

namespace Mox::Materials::DocumentKeys {

/// Names of elements and attributes in hosts' material documents, so that all hosts spell them the
/// same way. The library itself does not use them.

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

namespace Mox::Materials::BindingKeys {

/// Names of the attributes that bindings read and write.

inline constexpr char Tag[] = "tag";
inline constexpr char Gui[] = "gui";
inline constexpr char CgName[] = "cgname";
inline constexpr char Uv[] = "uv";
inline constexpr char Desc[] = "desc";
inline constexpr char HelpUrl[] = "helpUrl";
inline constexpr char UiLabel[] = "uilabel";
inline constexpr char UiUnitType[] = "uiunittype";
inline constexpr char Min[] = "min";
inline constexpr char Max[] = "max";
inline constexpr char Default[] = "default";
inline constexpr char StreamFormat[] = "stream_type";
inline constexpr char StreamNormalize[] = "stream_normalize";
inline constexpr char DatasetModifiers[] = "dataset_modifiers";
inline constexpr char BasicColour[] = "basic_colour";
inline constexpr char Srgb[] = "srgb";
inline constexpr char SignedExpanded[] = "signed_expanded";
inline constexpr char Normalised[] = "normalised";
inline constexpr char UsageHint[] = "usage_hint";
inline constexpr char UsingAlpha[] = "using_alpha";

/// Keywords for UiType and UiUnitType, in the order of their values.

inline constexpr std::string_view UiTypeWords[] = {
    "none",    "slider",     "colour", "position",     "direction",
    "texture", "floatfield", "uvset",  "vtxcolourset", "checkboxes"};
inline constexpr std::string_view UiUnitTypeWords[] = {"raw", "linear", "angular", "srgbcolour"};

} // namespace Mox::Materials::BindingKeys
