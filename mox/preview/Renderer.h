#pragma once

#include "mox/host/Picture.h"
#include "mox/preview/DrawCall.h"
#include "mox/preview/GpuDraw.h"
#include "mox/preview/VulkanDevice.h"

namespace Mox::Host {

/// Renders the same draw calls to images of one size, each time with new uniforms. Programs output
/// linear light; the images are sRGB.
class Renderer
{
public:
    /// @param device must outlive this object
    /// @param draws in drawing order
    /// @throws HostError if the device cannot render images of this size
    Renderer(const VulkanDevice& device, std::uint32_t width, std::uint32_t height,
             const std::vector<DrawCall>& draws);

    /// Replaces the contents of a uniform block of a draw call.
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
    GpuImage _colour; ///< multisampled
    GpuImage _depth;
    GpuImage _resolved; ///< one sample per pixel
    vk::raii::RenderPass _pass = nullptr;
    vk::raii::Framebuffer _framebuffer = nullptr;
    GpuBuffer _readback;
    std::vector<GpuDraw> _draws;
};

} // namespace Mox::Host
