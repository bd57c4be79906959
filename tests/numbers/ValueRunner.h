#pragma once

#include "mox/decode/DecodedFile.h"
#include "mox/document/MaterialDocument.h"
#include "mox/preview/Scene.h"
#include "mox/program/Environment.h"
#include "mox/program/ProgramStage.h"
#include "mox/targets/ProgramCompiler.h"
#include "tests/numbers/FloatTarget.h"

#include <map>
#include <string>
#include <vector>

/// The inputs of a material. Streams are named after bindings or feeds; each uses as many of the
/// four numbers as it has components.
struct RunInputs
{
    std::map<std::string, std::vector<Numbers>> Streams; ///< all of the same length
    std::map<std::string, std::string> Values;           ///< values of bindings, in document format
    std::map<std::string, Mox::Host::TextureImage> Textures;
    Mox::Host::UniformValues Scene = {}; ///< values that the environment reads
};

/// A grid of squares that fills the image; each consists of two triangles.
struct GridSize
{
    std::uint32_t Squares; ///< in each direction
    std::uint32_t Pixels;  ///< size of the image in each direction
};

/// Runs materials on a Vulkan device and reads the results back. In addition to the nodes of the
/// plug-ins, materials may contain
///     Feed:3       a FeedNode of three components
///     Feed:half3   a FeedNode of a type
///     Sink:float   a SinkNode of a precision
///     Sink:=half3  a SinkNode of a type
///
/// The complete pipeline is used: authoring graph, Cg, SPIR-V, device.
class ValueRunner
{
public:
    /// @throws HostError if there is no Vulkan device
    ValueRunner();

    /// Returns what the sink receives in each case: one case per entry of the streams, or a single
    /// one if there are no streams.
    /// @param material in the format of MaterialFromText
    /// @throws HostError with the first error if the material has no program
    std::vector<Numbers> Evaluate(const std::string& material, const RunInputs& inputs);

    /// Returns the colour output of another environment in each case.
    std::vector<Numbers> Evaluate(const Mox::Host::MaterialDocument& material,
                                  const Mox::Host::Environment& environment,
                                  const RunInputs& inputs);

    /// Returns the colour output of another environment at each pixel.
    /// @param inputs streams with one entry per vertex, in the order of GridPlaces
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

/// The positions of a grid's vertices, row by row, from 0 to 1 in both directions.
std::vector<std::array<float, 2>> GridPlaces(std::uint32_t squares);
