#include "mox/preview/GpuDraw.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <glm/gtc/packing.hpp>
#include <string_view>
#include <type_traits>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::int32_t mostAnisotropy = 16;

constexpr std::array streamFormats = {vk::Format::eR32Sfloat, vk::Format::eR32G32Sfloat,
                                      vk::Format::eR32G32B32Sfloat,
                                      vk::Format::eR32G32B32A32Sfloat};

template <class Value>
struct Word
{
    std::string_view Text;
    Value Meaning;
};

constexpr Word<vk::BlendFactor> blendFactors[] = {
    {"zero", vk::BlendFactor::eZero},
    {"one", vk::BlendFactor::eOne},
    {"sourceColour", vk::BlendFactor::eSrcColor},
    {"oneMinusSourceColour", vk::BlendFactor::eOneMinusSrcColor},
    {"destColour", vk::BlendFactor::eDstColor},
    {"oneMinusDestColour", vk::BlendFactor::eOneMinusDstColor},
    {"sourceAlpha", vk::BlendFactor::eSrcAlpha},
    {"oneMinusSourceAlpha", vk::BlendFactor::eOneMinusSrcAlpha},
    {"destAlpha", vk::BlendFactor::eDstAlpha},
    {"oneMinusDestAlpha", vk::BlendFactor::eOneMinusDstAlpha},
    {"constantColour", vk::BlendFactor::eConstantColor},
    {"oneMinusConstantColour", vk::BlendFactor::eOneMinusConstantColor},
    {"constantAlpha", vk::BlendFactor::eConstantAlpha},
    {"oneMinusConstantAlpha", vk::BlendFactor::eOneMinusConstantAlpha},
    {"sourceAlphaSaturate", vk::BlendFactor::eSrcAlphaSaturate},
};

constexpr Word<vk::CompareOp> comparisons[] = {
    {"never", vk::CompareOp::eNever},
    {"less", vk::CompareOp::eLess},
    {"equal", vk::CompareOp::eEqual},
    {"lessOrEqual", vk::CompareOp::eLessOrEqual},
    {"greater", vk::CompareOp::eGreater},
    {"notEqual", vk::CompareOp::eNotEqual},
    {"greaterOrEqual", vk::CompareOp::eGreaterOrEqual},
    {"always", vk::CompareOp::eAlways},
};

constexpr Word<vk::SamplerAddressMode> wraps[] = {
    {"repeat", vk::SamplerAddressMode::eRepeat},
    {"mirror", vk::SamplerAddressMode::eMirroredRepeat},
    {"clamp", vk::SamplerAddressMode::eClampToEdge},
};

template <class Value, std::size_t Count>
Value MeaningOf(const Word<Value> (&words)[Count], const std::string& text)
{
    for (const Word<Value>& word : words) {
        if (word.Text == text)
            return word.Meaning;
    }
    throw HostError({}, Compose("unknown render state value \"", text, "\""));
}

template <class Value>
GpuBuffer Upload(const VulkanDevice& device, const std::vector<Value>& values,
                 vk::BufferUsageFlags usage)
{
    GpuBuffer buffer = device.MakeBuffer(values.size() * sizeof(Value), usage);
    std::memcpy(buffer.Mapped, values.data(), values.size() * sizeof(Value));
    return buffer;
}

vk::ImageType ImageTypeOf(TextureShape shape)
{
    switch (shape) {
    case TextureShape::Row:
        return vk::ImageType::e1D;
    case TextureShape::Volume:
        return vk::ImageType::e3D;
    default:
        return vk::ImageType::e2D;
    }
}

/// Returns the format for an image. Floats are stored as halfs, since every device can filter halfs
/// but not every device can filter floats.
vk::Format FormatOf(const TextureImage& image)
{
    return image.Format == TexelFormat::Float ? vk::Format::eR16G16B16A16Sfloat
                                              : vk::Format::eR8G8B8A8Unorm;
}

/// Converts the floats of an image to halfs.
std::vector<std::uint16_t> PackHalfs(const TextureImage& image)
{
    constexpr float largestHalf = 65504.0f;
    std::vector<std::uint16_t> halfs(image.Bytes.size() / sizeof(float));
    for (std::size_t i = 0; i < halfs.size(); ++i) {
        float value;
        std::memcpy(&value, image.Bytes.data() + i * sizeof(value), sizeof(value));
        halfs[i] = glm::packHalf1x16(std::clamp(value, -largestHalf, largestHalf));
    }
    return halfs;
}

GpuBuffer UploadTexels(const VulkanDevice& device, const TextureImage& image)
{
    constexpr auto usage = vk::BufferUsageFlagBits::eTransferSrc;
    return image.Format == TexelFormat::Float ? Upload(device, PackHalfs(image), usage)
                                              : Upload(device, image.Bytes, usage);
}

vk::ImageMemoryBarrier MakeBarrier(vk::Image image, std::uint32_t levels, vk::AccessFlags from,
                                   vk::AccessFlags to, vk::ImageLayout oldLayout,
                                   vk::ImageLayout newLayout)
{
    return {from,
            to,
            oldLayout,
            newLayout,
            VK_QUEUE_FAMILY_IGNORED,
            VK_QUEUE_FAMILY_IGNORED,
            image,
            {vk::ImageAspectFlagBits::eColor, 0, levels, 0, VK_REMAINING_ARRAY_LAYERS}};
}

/// Returns the handles of owning objects.
template <class Owners>
auto HandlesOf(const Owners& owners)
{
    std::vector<std::decay_t<decltype(*owners.front())>> handles;
    handles.reserve(owners.size());
    for (const auto& owner : owners)
        handles.push_back(*owner);
    return handles;
}

vk::raii::ShaderModule MakeModule(const VulkanDevice& device, const DrawShader& shader)
{
    return device.Get().createShaderModule({{}, shader.Module});
}

} // namespace

GpuDraw::GpuDraw(const VulkanDevice& device, const DrawCall& call, vk::RenderPass pass,
                 vk::SampleCountFlagBits samples)
    : _device(device), _indexCount(static_cast<std::uint32_t>(call.Indices.size()))
{
    UploadGeometry(call);
    for (const DrawTexture& texture : call.Textures)
        UploadTexture(texture);
    for (const DrawUniforms& uniforms : call.Uniforms) {
        _blocks.push_back({uniforms.Set, Upload(device, uniforms.Bytes,
                                                vk::BufferUsageFlagBits::eUniformBuffer)});
    }
    MakeDescriptors(call);
    MakePipeline(call, pass, samples);
}

void GpuDraw::SetUniforms(const DrawUniforms& uniforms)
{
    for (const Block& block : _blocks) {
        if (block.Set == uniforms.Set)
            std::memcpy(block.Buffer.Mapped, uniforms.Bytes.data(), uniforms.Bytes.size());
    }
}

void GpuDraw::Record(const vk::raii::CommandBuffer& commands) const
{
    commands.bindPipeline(vk::PipelineBindPoint::eGraphics, *_pipeline);
    commands.bindDescriptorSets(vk::PipelineBindPoint::eGraphics, *_layout, 0, HandlesOf(_sets),
                                {});
    for (std::size_t i = 0; i < _streams.size(); ++i) {
        commands.bindVertexBuffers(static_cast<std::uint32_t>(i), *_streams[i].Buffer,
                                   vk::DeviceSize(0));
    }
    commands.bindIndexBuffer(*_indices.Buffer, 0, vk::IndexType::eUint32);
    commands.drawIndexed(_indexCount, 1, 0, 0, 0);
}

void GpuDraw::UploadGeometry(const DrawCall& call)
{
    for (const DrawStream& stream : call.Streams)
        _streams.push_back(Upload(_device, stream.Values, vk::BufferUsageFlagBits::eVertexBuffer));
    _indices = Upload(_device, call.Indices, vk::BufferUsageFlagBits::eIndexBuffer);
}

void GpuDraw::UploadTexture(const DrawTexture& texture)
{
    const auto levelCount = static_cast<std::uint32_t>(texture.Levels.size());
    const TextureImage& top = texture.Levels.front();
    const bool isCube = texture.Shape == TextureShape::Cube;
    const std::uint32_t faces = isCube ? cubeFaces : 1;
    const auto extentOf = [&](const TextureImage& level) {
        const bool isRow = texture.Shape == TextureShape::Row;
        return vk::Extent3D(level.Width, isRow ? 1 : level.Height, isCube ? 1 : level.Layers);
    };
    GpuImage image = _device.MakeImage(
        {isCube ? vk::ImageCreateFlagBits::eCubeCompatible : vk::ImageCreateFlags(),
         ImageTypeOf(texture.Shape), FormatOf(top), extentOf(top), levelCount, faces,
         vk::SampleCountFlagBits::e1, vk::ImageTiling::eOptimal,
         vk::ImageUsageFlagBits::eTransferDst | vk::ImageUsageFlagBits::eSampled},
        vk::ImageAspectFlagBits::eColor);
    std::vector<GpuBuffer> staged;
    for (const TextureImage& level : texture.Levels)
        staged.push_back(UploadTexels(_device, level));
    _device.Run([&](const vk::raii::CommandBuffer& commands) {
        using Access = vk::AccessFlagBits;
        using Layout = vk::ImageLayout;
        using Stage = vk::PipelineStageFlagBits;
        commands.pipelineBarrier(Stage::eTopOfPipe, Stage::eTransfer, {}, {}, {},
                                 MakeBarrier(*image.Image, levelCount, {}, Access::eTransferWrite,
                                             Layout::eUndefined, Layout::eTransferDstOptimal));
        for (std::uint32_t i = 0; i < levelCount; ++i) {
            const TextureImage& level = texture.Levels[i];
            commands.copyBufferToImage(
                *staged[i].Buffer, *image.Image, Layout::eTransferDstOptimal,
                vk::BufferImageCopy(0, 0, 0, {vk::ImageAspectFlagBits::eColor, i, 0, faces}, {},
                                    extentOf(level)));
        }
        commands.pipelineBarrier(
            Stage::eTransfer, Stage::eVertexShader | Stage::eFragmentShader, {}, {}, {},
            MakeBarrier(*image.Image, levelCount, Access::eTransferWrite, Access::eShaderRead,
                        Layout::eTransferDstOptimal, Layout::eShaderReadOnlyOptimal));
    });
    _textures.push_back({texture.Binding, std::move(image), MakeSampler(texture.Sampler)});
}

vk::raii::Sampler GpuDraw::MakeSampler(const SamplerState& state) const
{
    const auto wrap = [](const std::string& word) {
        return word.empty() ? vk::SamplerAddressMode::eRepeat : MeaningOf(wraps, word);
    };
    const bool isSmooth = state.Filter != "nearest";
    const bool mixesLevels = state.Filter.empty() || state.Filter == "trilinear";
    const float anisotropy =
        static_cast<float>(ParseInteger(state.Anisotropy).value_or(mostAnisotropy));
    const bool isAnisotropic = _device.HasAnisotropy() && isSmooth && anisotropy > 1.0f;
    const vk::Filter filter = isSmooth ? vk::Filter::eLinear : vk::Filter::eNearest;
    return _device.Get().createSampler(
        {{},
         filter,
         filter,
         mixesLevels ? vk::SamplerMipmapMode::eLinear : vk::SamplerMipmapMode::eNearest,
         wrap(state.WrapU),
         wrap(state.WrapV),
         vk::SamplerAddressMode::eRepeat,
         0.0f,
         isAnisotropic,
         isAnisotropic ? std::min(anisotropy, _device.Limits().maxSamplerAnisotropy) : 1.0f,
         false,
         {},
         0.0f,
         VK_LOD_CLAMP_NONE});
}

void GpuDraw::MakeDescriptors(const DrawCall& call)
{
    using Kind = vk::DescriptorType;
    const vk::raii::Device& device = _device.Get();
    const auto stages = vk::ShaderStageFlagBits::eVertex | vk::ShaderStageFlagBits::eFragment;
    std::array<std::vector<vk::DescriptorSetLayoutBinding>, descriptorSetCount> bindings;
    for (const DrawUniforms& uniforms : call.Uniforms)
        bindings[uniforms.Set].emplace_back(blockBinding, Kind::eUniformBuffer, 1, stages);
    for (const DrawTexture& texture : call.Textures)
        bindings[samplerSet].emplace_back(texture.Binding, Kind::eCombinedImageSampler, 1, stages);
    for (const auto& set : bindings)
        _setLayouts.push_back(device.createDescriptorSetLayout({{}, set}));

    // A descriptor pool must not be empty.
    const std::array sizes = {
        vk::DescriptorPoolSize(Kind::eUniformBuffer,
                               static_cast<std::uint32_t>(call.Uniforms.size() + 1)),
        vk::DescriptorPoolSize(Kind::eCombinedImageSampler,
                               static_cast<std::uint32_t>(call.Textures.size() + 1))};
    _pool = device.createDescriptorPool(
        {vk::DescriptorPoolCreateFlagBits::eFreeDescriptorSet, descriptorSetCount, sizes});
    const auto layouts = HandlesOf(_setLayouts);
    _sets = vk::raii::DescriptorSets(device, {*_pool, layouts});

    for (const Block& block : _blocks) {
        const vk::DescriptorBufferInfo buffer(*block.Buffer.Buffer, 0, VK_WHOLE_SIZE);
        device.updateDescriptorSets(vk::WriteDescriptorSet(*_sets[block.Set], blockBinding, 0,
                                                           Kind::eUniformBuffer, {}, buffer),
                                    {});
    }
    for (const Texture& texture : _textures) {
        const vk::DescriptorImageInfo image(*texture.Sampler, *texture.Image.View,
                                            vk::ImageLayout::eShaderReadOnlyOptimal);
        device.updateDescriptorSets(vk::WriteDescriptorSet(*_sets[samplerSet], texture.Binding, 0,
                                                           Kind::eCombinedImageSampler, image),
                                    {});
    }
}

void GpuDraw::MakePipeline(const DrawCall& call, vk::RenderPass pass,
                           vk::SampleCountFlagBits samples)
{
    const vk::raii::Device& device = _device.Get();
    const auto layouts = HandlesOf(_setLayouts);
    _layout = device.createPipelineLayout({{}, layouts});
    const vk::raii::ShaderModule vertex = MakeModule(_device, call.Vertex);
    const vk::raii::ShaderModule fragment = MakeModule(_device, call.Fragment);
    const std::array stages = {
        vk::PipelineShaderStageCreateInfo({}, vk::ShaderStageFlagBits::eVertex, *vertex,
                                          call.Vertex.EntryPoint.c_str()),
        vk::PipelineShaderStageCreateInfo({}, vk::ShaderStageFlagBits::eFragment, *fragment,
                                          call.Fragment.EntryPoint.c_str())};

    std::vector<vk::VertexInputBindingDescription> buffers;
    std::vector<vk::VertexInputAttributeDescription> attributes;
    for (const DrawStream& stream : call.Streams) {
        const auto buffer = static_cast<std::uint32_t>(buffers.size());
        buffers.emplace_back(buffer, stream.Components * static_cast<std::uint32_t>(sizeof(float)));
        attributes.emplace_back(stream.Location, buffer, streamFormats[stream.Components - 1]);
    }
    const vk::PipelineVertexInputStateCreateInfo input({}, buffers, attributes);
    const vk::PipelineInputAssemblyStateCreateInfo assembly({},
                                                            vk::PrimitiveTopology::eTriangleList);
    const vk::PipelineViewportStateCreateInfo viewport({}, 1, nullptr, 1, nullptr);
    const vk::PipelineRasterizationStateCreateInfo rasterization(
        {}, false, false, vk::PolygonMode::eFill,
        call.State.CullsBack ? vk::CullModeFlagBits::eBack : vk::CullModeFlagBits::eNone,
        vk::FrontFace::eCounterClockwise, false, 0.0f, 0.0f, 0.0f, 1.0f);
    const vk::PipelineMultisampleStateCreateInfo multisample({}, samples);
    const vk::PipelineDepthStencilStateCreateInfo depth(
        {}, call.State.TestsDepth, call.State.WritesDepth,
        MeaningOf(comparisons, call.State.DepthFunc));
    using Component = vk::ColorComponentFlagBits;
    const vk::ColorComponentFlags colour = call.WritesColour
                                               ? Component::eR | Component::eG | Component::eB
                                               : vk::ColorComponentFlags();
    const vk::PipelineColorBlendAttachmentState blend(
        call.State.BlendsAlpha, MeaningOf(blendFactors, call.State.SourceBlend),
        MeaningOf(blendFactors, call.State.DestBlend), vk::BlendOp::eAdd, vk::BlendFactor::eOne,
        vk::BlendFactor::eZero, vk::BlendOp::eAdd,
        call.WritesColour && call.State.WritesAlpha ? colour | Component::eA : colour);
    const vk::PipelineColorBlendStateCreateInfo blending({}, false, {}, blend);
    const std::array dynamicStates = {vk::DynamicState::eViewport, vk::DynamicState::eScissor};
    const vk::PipelineDynamicStateCreateInfo dynamic({}, dynamicStates);
    _pipeline = device.createGraphicsPipeline(nullptr, {{},
                                                        stages,
                                                        &input,
                                                        &assembly,
                                                        nullptr,
                                                        &viewport,
                                                        &rasterization,
                                                        &multisample,
                                                        &depth,
                                                        &blending,
                                                        &dynamic,
                                                        *_layout,
                                                        pass});
}

} // namespace Mox::Host
