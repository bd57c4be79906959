#pragma once

#include "mox/compile/ProgramCompiler.h"
#include "mox/decode/TextureImage.h"
#include "mox/document/MaterialDocument.h"
#include "mox/preview/Scene.h"
#include "mox/program/Environment.h"
#include "mox/program/StageCopies.h"
#include "tests/numbers/FloatTarget.h"

#include <map>
#include <string>
#include <vector>

/// What a material reads. Streams are named like bindings or like feeds; of their four numbers as
/// many count as the stream has components.
struct RunInputs
{
    std::map<std::string, std::vector<Numbers>> Streams; ///< all of one length
    std::map<std::string, std::string> Values;           ///< of bindings, as in documents
    std::map<std::string, Mox::Host::TextureImage> Textures;
    Mox::Host::UniformValues Scene = {}; ///< what the environment reads
};

/// A grid of squares, each of two triangles, that fills the image.
struct GridSize
{
    std::uint32_t Squares; ///< in each direction
    std::uint32_t Pixels;  ///< of the image, in each direction
};

/// Runs materials on a Vulkan device and reads the numbers back. Besides the nodes of the plug-ins
/// materials may have
///     Feed:3       a FeedNode of three components
///     Feed:half3   a FeedNode of a type
///     Sink:float   a SinkNode of a precision
///     Sink:=half3  a SinkNode of a type
/// The whole road is taken: authoring graph, Cg, SPIR-V, device.
class ValueRunner
{
public:
    /// @throws HostError if there is no Vulkan device
    ValueRunner();

    /// What the sink gets in each case: for each entry of the streams, or for the only one if there
    /// are no streams.
    /// @param material as MaterialFromText takes it
    /// @throws HostError with the first error if the material cannot be made into a program
    std::vector<Numbers> Evaluate(const std::string& material, const RunInputs& inputs);

    /// What the colour output of another environment gets in each case.
    std::vector<Numbers> Evaluate(const Mox::Host::MaterialDocument& material,
                                  const Mox::Host::Environment& environment,
                                  const RunInputs& inputs);

    /// What the sink gets at each pixel, when the streams are functions of the place.
    /// @param inputs its streams go vertex by vertex, row by row, as GridPlaces gives them
    std::vector<Numbers> DrawOnGrid(const std::string& material, const RunInputs& inputs,
                                    const GridSize& grid);

    /// What the colour output of another environment gets at each pixel.
    std::vector<Numbers> DrawMaterial(const Mox::Host::MaterialDocument& material,
                                      const Mox::Host::Environment& environment,
                                      Mox::Host::StageCopies copies, const RunInputs& inputs,
                                      const GridSize& grid);

    const std::vector<std::string>& ValidationMessages() const
    {
        return _device.ValidationMessages();
    }

private:
    struct Image
    {
        std::vector<std::uint32_t> Indices;
        std::uint32_t Width;
        std::uint32_t Height;
    };

    std::vector<Numbers> Draw(const Mox::Host::MaterialDocument& material,
                              const Mox::Host::Environment& environment,
                              Mox::Host::StageCopies copies, const RunInputs& inputs,
                              const Image& image);

    Mox::Host::VulkanDevice _device;
    Mox::Host::ProgramCompiler _compiler;
    Mox::Host::Environment _environment;
};

/// The places of a grid's vertices, from 0 to 1 in both directions.
std::vector<std::array<float, 2>> GridPlaces(std::uint32_t squares);
