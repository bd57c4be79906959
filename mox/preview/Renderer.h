#pragma once

#include "mox/host/Picture.h"
#include "mox/preview/DrawCall.h"
#include "mox/preview/GpuDraw.h"
#include "mox/preview/VulkanDevice.h"

namespace Mox::Host {

/// Draws the same things into pictures of one size, as often as their uniforms change. What
/// programs put out is linear light; pictures hold sRGB.
class Renderer
{
public:
    /// @param device must outlive the object
    /// @param draws are drawn in this order
    /// @throws HostError if the device cannot draw pictures of this size
    Renderer(const VulkanDevice& device, std::uint32_t width, std::uint32_t height,
             const std::vector<DrawCall>& draws);

    /// Replaces the contents of a draw's uniform block.
    void SetUniforms(std::size_t draw, const DrawUniforms& uniforms);

    Picture Render() const;

private:
    void MakeTargets();
    void MakePass();
    void Record(const vk::raii::CommandBuffer& commands) const;

    const VulkanDevice& _device;
    std::uint32_t _width;
    std::uint32_t _height;
    vk::SampleCountFlagBits _samples;
    vk::Format _depthFormat;
    GpuImage _colour; ///< several samples for each pixel
    GpuImage _depth;
    GpuImage _resolved; ///< one sample for each pixel
    vk::raii::RenderPass _pass = nullptr;
    vk::raii::Framebuffer _framebuffer = nullptr;
    GpuBuffer _readback;
    std::vector<GpuDraw> _draws;
};

} // namespace Mox::Host
