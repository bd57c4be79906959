#include "plugins/core/CoreSwizzleNode.h"

#include "mox/nodekit/NodeFunction.h"
#include "mox/nodekit/PortRebuild.h"
#include "mox/nodekit/PropertyDeclarations.h"

using namespace Mox::Materials;

namespace {

struct VectorKind
{
    const char* Name;
    std::int32_t ComponentCount; ///< 0 means that the property determines it
    const char* Label;
    const char* ComponentLabels[4];
};

constexpr VectorKind vectorKinds[] = {
    {"Colour", 3, "colour", {"red", "green", "blue"}},
    {"Uv", 2, "uv", {"u", "v"}},
    {"Vector", 0, "vector", {"x", "y", "z", "w"}},
};

constexpr auto kindNames = NamesOf(vectorKinds);

/// A component: its ports for splitting and merging, and the lines that copy it.
struct Component
{
    const char* Output;
    const char* Input;
    const char* Split;
    const char* Merge;
};

constexpr Component components[] = {
    {"out_x", "in_x", "\tout_x = in_vec.x;\n", "\tout_vec.x = in_x;\n"},
    {"out_y", "in_y", "\tout_y = in_vec.y;\n", "\tout_vec.y = in_y;\n"},
    {"out_z", "in_z", "\tout_z = in_vec.z;\n", "\tout_vec.z = in_z;\n"},
    {"out_w", "in_w", "\tout_w = in_vec.w;\n", "\tout_vec.w = in_w;\n"},
};

} // namespace

const char* CoreSwizzleNode::TypeName()
{
    return "CoreSwizzle";
}

CoreSwizzleNode::CoreSwizzleNode() : GuiNode(TypeName())
{
    SetName("Swizzle");
    SetBackgroundColour(0.5f, 0.5f, 1.0f);
    Name->Visible = false;

    VectorType =
        DeclareEnum(*this, "Vector Type",
                    "Vector Type: the quantity to split (or merge) into components.", kindNames);
    VectorComponentCount = DeclareInt(*this, "Component Count",
                                      "Component Count: the number of values for vector constants. "
                                      " This must be between 2 and 4.",
                                      4);
    Reverse = DeclareBool(*this, "Reverse",
                          "Reverse: when checked, this merges components into a vector value "
                          "instead of splitting vector values into components.",
                          false);

    CoreSwizzleNode::UpdatePorts({});
}

CoreSwizzleNode::~CoreSwizzleNode() = default;

void CoreSwizzleNode::UpdatePorts(const boost::shared_ptr<void>&)
{
    ClearPorts(*this);
    const VectorKind& kind = RowNamed(vectorKinds, VectorType->GetEnum());
    VectorComponentCount->Editable = kind.ComponentCount == 0;
    if (kind.ComponentCount != 0)
        VectorComponentCount->SetInt(kind.ComponentCount);
    const std::int32_t count = GetVectorCount(*VectorComponentCount);

    const bool isMerging = Reverse->GetBool();
    if (isMerging)
        AppendPort(OutputPorts, {"out_vec", kind.Label, count});
    else
        AppendPort(InputPorts, {"in_vec", kind.Label, count});
    for (std::int32_t i = 0; i < count; ++i) {
        if (isMerging)
            AppendPort(InputPorts, {components[i].Input, kind.ComponentLabels[i], 1});
        else
            AppendPort(OutputPorts, {components[i].Output, kind.ComponentLabels[i], 1});
    }
}

std::string CoreSwizzleNode::GetTitle()
{
    return "Swizzle";
}

void CoreSwizzleNode::GenerateShader(ShaderGraphGenerator& generator)
{
    ShaderFunctionBuilder builder;
    AddInputs(builder, *this);
    AddOutputs(builder, *this);
    const std::int32_t count = VectorComponentCount->GetInt();
    const bool isMerging = Reverse->GetBool();
    std::int32_t position = 0;
    for (const Component& component : components) {
        const bool isAlwaysThere = ++position <= 2;
        if (isAlwaysThere || position <= count)
            builder.AppendCode(isMerging ? component.Merge : component.Split);
    }
    AddFunction(generator, *this, builder, ShaderLevel::Automatic, "swizzleCode");
}
