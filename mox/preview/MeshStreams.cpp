#include "mox/preview/MeshStreams.h"

#include "mox/Text.h"
#include "mox/bindings/FloatList.h"
#include "mox/document/PropertyText.h"
#include "mox/preview/PreviewBindings.h"
#include "mox/program/FunctionBody.h"

#include <glm/gtc/type_ptr.hpp>
#include <string_view>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::StreamType;

template <class Vector>
MeshStream Flatten(const std::vector<Vector>& vectors)
{
    MeshStream stream{Vector::length(), {}};
    for (const Vector& vector : vectors)
        stream.Values.insert(stream.Values.end(), glm::value_ptr(vector),
                             glm::value_ptr(vector) + Vector::length());
    return stream;
}

/// Returns the number at the end of a name such as "uv1", or 0.
std::size_t NumberAtEnd(const std::string& name)
{
    const std::size_t lastLetter = name.find_last_not_of("0123456789");
    const std::string digits = lastLetter == name.npos ? name : name.substr(lastLetter + 1);
    return static_cast<std::size_t>(ParseInteger(digits).value_or(0));
}

template <class Vector>
MeshStream FlattenSet(const std::vector<std::vector<Vector>>& sets, std::size_t set)
{
    if (sets.empty())
        return {};
    return Flatten(sets[set < sets.size() ? set : 0]);
}

/// Returns an empty stream if the mesh has no such stream.
MeshStream ReadStream(const Mesh& mesh, StreamType type, std::size_t set)
{
    switch (type) {
    case StreamType::Position:
        return Flatten(mesh.Positions);
    case StreamType::Normal:
        return Flatten(mesh.Normals);
    case StreamType::Tangent:
        return Flatten(mesh.Tangents);
    case StreamType::Binormal:
        return Flatten(mesh.Binormals);
    case StreamType::Uv:
        return FlattenSet(mesh.UvSets, set);
    case StreamType::Colour:
        return FlattenSet(mesh.ColourSets, set);
    default:
        return {};
    }
}

/// @param name of the vertex input
MeshStream Require(MeshStream stream, const Mesh& mesh, const std::string& what,
                   const std::string& name, const ShaderType& type)
{
    if (stream.Values.empty()) {
        throw HostError({}, Compose("the mesh \"", mesh.Name, "\" has no ", what,
                                    "; set a constant of type ", type.Format(), " with --set ",
                                    name, "=NUMBERS"));
    }
    return stream;
}

std::string DescribeStream(const std::string& word)
{
    if (word == "uv")
        return "texture coordinates";
    if (word == "colour")
        return "vertex colours";
    if (word == "tangent" || word == "binormal")
        return Compose(word, "s (computed from texture coordinates)");
    return Compose("stream \"", word, "\"");
}

std::size_t ComponentOf(char letter)
{
    for (const std::string_view letters : {"xyzw", "uv", "rgba"}) {
        if (const std::size_t position = letters.find(letter); position != letters.npos)
            return position;
    }
    return std::string_view::npos;
}

} // namespace

MeshStream ReadBoundStream(const Mesh& mesh, const PluginBinding& binding, const ShaderType& type)
{
    const std::string value = binding.GetDefaultText();
    MeshStream stream =
        ReadStream(mesh, binding.Stream(), NumberAtEnd(value.empty() ? binding.Tag() : value));
    if (stream.Values.empty()) {
        const auto constant = ParseNumbers(value);
        if (constant && constant->size() == ComponentCount(type))
            stream = MakeConstantStream(mesh, *constant);
    }
    stream = Require(std::move(stream), mesh,
                     Compose(DescribeStream(binding.StreamName()),
                             ", which the material reads as \"", binding.Tag(), "\""),
                     binding.Tag(), type);
    ApplyModifiers(binding.DatasetModifiers(), stream);
    return stream;
}

MeshStream ReadNamedStream(const Mesh& mesh, const std::string& name, const ShaderType& type)
{
    const auto stream = ParseStreamType(name);
    return Require(stream ? ReadStream(mesh, *stream, 0) : MeshStream(), mesh, DescribeStream(name),
                   name, type);
}

MeshStream MakeConstantStream(const Mesh& mesh, const std::vector<float>& value)
{
    MeshStream stream{static_cast<std::uint32_t>(value.size()), {}};
    for (std::size_t i = 0; i < mesh.Positions.size(); ++i)
        stream.Values.insert(stream.Values.end(), value.begin(), value.end());
    return stream;
}

void ApplyModifiers(const std::string& modifiers, MeshStream& stream)
{
    for (const std::string& modifier : Materials::SplitString(modifiers, ' ')) {
        const std::size_t bar = modifier.find('|');
        const std::string operation = modifier.substr(0, bar);
        const std::string letters = bar == modifier.npos
                                        ? std::string("xyzw").substr(0, stream.Components)
                                        : modifier.substr(bar + 1);
        if (operation != "oneminus" && operation != "negate")
            throw HostError({}, Compose("unknown dataset modifier \"", modifier, "\""));
        const float offset = operation == "oneminus" ? 1.0f : 0.0f;
        for (const char letter : letters) {
            const std::size_t component = ComponentOf(letter);
            if (component >= stream.Components) {
                throw HostError({},
                                Compose("the dataset modifier \"", modifier,
                                        "\" refers to a component that the stream does not have"));
            }
            for (std::size_t i = component; i < stream.Values.size(); i += stream.Components)
                stream.Values[i] = offset - stream.Values[i];
        }
    }
}

} // namespace Mox::Host
