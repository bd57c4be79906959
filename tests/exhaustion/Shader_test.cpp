#include "fuzz/shader/ShaderSession.h"
#include "mox/Text.h"
#include "mox/authoring/GuiPort.h"
#include "mox/host/File.h"
#include "mox/shader/ShaderFunctionBuilder.h"
#include "mox/shader/ShaderNode.h"
#include "tests/exhaustion/EveryAllocation.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <filesystem>
#include <memory>

using namespace Mox;
using Materials::Compose;

namespace {

constexpr const char* fuzzInputs = MOX_TEST_DATA "/../fuzz/corpus/fuzz_shader_graph";
const std::string longName(40, 'n'); ///< too long for a string's internal buffer
const ShaderType float3(ComponentType::Float, 3, 1, 1);
const ShaderType half3(ComponentType::Half, 3, 1, 1);
const ShaderType half1(ComponentType::Half, 1, 1, 1);

/// Makes every call in the fuzzer's inputs and compares the complete state of graphs, generators
/// and nodes.
TEST(ShaderExhaustion, CallsOnGraphsAreWholeOrNotAtAll)
{
    for (const auto& input : std::filesystem::directory_iterator(fuzzInputs)) {
        SCOPED_TRACE(input.path());
        const std::string bytes = Host::ReadFile(input.path());
        const Choices choices(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        for (const auto shortage : {Allocations::Shortage::Once, Allocations::Shortage::Lasting}) {
            const std::size_t live = Allocations::LiveCount(Allocations::Owner::All);
            RunShaderSession(choices, [&](const auto& call, const auto& compare) {
                for (std::size_t number = 1;; ++number) {
                    Allocations::FailAt(number, shortage);
                    try {
                        call();
                        Allocations::EndFailing();
                        return;
                    } catch (const std::bad_alloc&) {
                        Allocations::EndFailing();
                    }
                    compare();
                }
            });
            EXPECT_EQ(Allocations::LiveCount(Allocations::Owner::All), live) << "blocks leak";
        }
    }
}

/// A builder cannot be used after a failure, so each attempt uses a new one.
TEST(ShaderExhaustion, BuildersKeepEveryCharacter)
{
    const auto expect = [](auto call) {
        ExpectSurvival([] { return std::make_unique<ShaderFunctionBuilder>(); },
                       [&](auto& builder) {
                           builder = std::make_unique<ShaderFunctionBuilder>();
                           call(*builder);
                       },
                       [](const auto& builder) {
                           std::string text = builder->Body.good() ? builder->Body.str() : "";
                           for (const ShaderParameter& parameter : builder->Parameters)
                               text += parameter.Name;
                           return text;
                       },
                       ExpectUsable);
    };
    Materials::GuiPort port(longName, "label");
    port.SetComponentCount(3);
    port.SetPrecision(ComponentType::Half);
    const std::string code(1000, 'c');
    expect([&](auto& builder) { builder.AppendCode(code); });
    expect([&](auto& builder) { builder.DeclareConstant(half3, longName, 1.0f); });
    expect([&](auto& builder) { builder.DeclareConstantForPort(port, 1.0f); });
    expect([&](auto& builder) { builder.AddInputPort(port); });
    expect([&](auto& builder) {
        builder.AddInput(half3, longName);
        try {
            builder.AddOutput(half3, longName);
            ADD_FAILURE() << "the name is taken";
        } catch (const std::string& message) {
            EXPECT_EQ(message,
                      "parameter name \"" + longName + "\" is duplicated in function \"unknown\"");
        }
    });
}

TEST(ShaderExhaustion, ShaderNodesAreBuiltOrNot)
{
    ShaderFunctionBuilder builder;
    builder.AddInput(half3, longName);
    builder.AddOutput(half3, longName + "2");
    builder.AppendCode(std::string(1000, 'c'));
    const auto make = [] {
        auto node = boost::make_shared<ShaderNode>(ShaderNodeKind::InterfaceParameter);
        node->Type = half3;
        node->CreateParameterPorts();
        return node;
    };
    const auto describe = [](const ShaderNodeHandle& node) {
        std::string text = Compose(node->Describe(), node->Code);
        for (const auto* ports : {&node->Inputs, &node->Outputs}) {
            for (const ShaderPort& port : *ports)
                text += Compose(" ", port.Name);
        }
        return text;
    };
    const auto expect = [&](auto call) { ExpectSurvival(make, call, describe); };
    expect([&](auto& node) { node = builder.Build(ShaderLevel::Automatic, longName); });
    expect([](auto& node) { node = ShaderNode::CreateInterfaceParameter(longName, 1, half3); });
    expect([](auto& node) {
        const ShaderRegister position(ShaderRegisterType::VertexPosition, 0);
        node = ShaderNode::CreateRegisterParameter(position, float3);
    });
    expect([&](const auto& node) { node->LoadFunction(builder); });
}

} // namespace
