#pragma once

#include "mox/preview/DrawCall.h"
#include "mox/preview/VulkanDevice.h"

#include <array>
#include <vector>

using Numbers = std::array<float, 4>;

/// An image of four floats per pixel, exactly as programs output them, without conversion or
/// blending.
class FloatTarget
{
public:
    /// @param device must outlive the object
    FloatTarget(const Mox::Host::VulkanDevice& device, std::uint32_t width, std::uint32_t height);

    /// Clears the image to zero and draws.
    /// @returns the pixels, row by row starting at y = -1 in clip space
    std::vector<Numbers> Draw(const Mox::Host::DrawCall& call) const;

private:
    void MakePass();

    const Mox::Host::VulkanDevice& _device;
    std::uint32_t _width;
    std::uint32_t _height;
    Mox::Host::GpuImage _image;
    Mox::Host::GpuBuffer _readback;
    vk::raii::RenderPass _pass = nullptr;
    vk::raii::Framebuffer _framebuffer = nullptr;
};
