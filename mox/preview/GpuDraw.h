#pragma once

#include "mox/preview/DrawCall.h"
#include "mox/preview/VulkanDevice.h"

namespace Mox::Host {

/// A draw call whose resources are on the device.
class GpuDraw
{
public:
    /// @param device must outlive this object
    GpuDraw(const VulkanDevice& device, const DrawCall& call, vk::RenderPass pass,
            vk::SampleCountFlagBits samples);

    void SetUniforms(const DrawUniforms& uniforms);
    void Record(const vk::raii::CommandBuffer& commands) const;

private:
    void UploadGeometry(const DrawCall& call);
    void UploadTexture(const DrawTexture& texture);
    vk::raii::Sampler MakeSampler(const SamplerState& state) const;
    void MakeDescriptors(const DrawCall& call);
    void MakePipeline(const DrawCall& call, vk::RenderPass pass, vk::SampleCountFlagBits samples);

    struct Texture
    {
        std::uint32_t Binding;
        GpuImage Image;
        vk::raii::Sampler Sampler;
    };

    struct Block
    {
        std::uint32_t Set;
        GpuBuffer Buffer;
    };

    const VulkanDevice& _device;
    std::vector<GpuBuffer> _streams;
    GpuBuffer _indices;
    std::uint32_t _indexCount;
    std::vector<Texture> _textures;
    std::vector<Block> _blocks;
    std::vector<vk::raii::DescriptorSetLayout> _setLayouts;
    vk::raii::DescriptorPool _pool = nullptr;
    vk::raii::DescriptorSets _sets = nullptr;
    vk::raii::PipelineLayout _layout = nullptr;
    vk::raii::Pipeline _pipeline = nullptr;
};

} // namespace Mox::Host
