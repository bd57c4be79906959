#pragma once

#include <functional>
#include <string>
#include <vector>
#include <vulkan/vulkan_raii.hpp>

namespace Mox::Host {

/// A buffer with its memory, which is mapped if the host can access it.
struct GpuBuffer
{
    vk::raii::DeviceMemory Memory = nullptr;
    vk::raii::Buffer Buffer = nullptr;
    std::byte* Mapped = nullptr;
};

/// An image with its memory and a view of all mip levels.
struct GpuImage
{
    vk::raii::DeviceMemory Memory = nullptr;
    vk::raii::Image Image = nullptr;
    vk::raii::ImageView View = nullptr;
};

/// A Vulkan device and the queue used for rendering, without a window. The Vulkan loader is opened
/// at run time, so programs also start on machines without it.
class VulkanDevice
{
public:
    /// Chooses the fastest kind of device available, in the worst case a CPU implementation.
    /// @param withValidation enables the validation layer
    /// @throws HostError if there is no device, or if the requested validation layer is missing
    explicit VulkanDevice(bool withValidation);

    const vk::raii::Device& Get() const { return _device; }
    const vk::raii::PhysicalDevice& Physical() const { return _physical; }
    const vk::PhysicalDeviceLimits& Limits() const { return _properties.limits; }
    std::string Name() const { return _properties.deviceName; }
    bool HasAnisotropy() const { return _hasAnisotropy; }

    /// Messages of the validation layer so far.
    const std::vector<std::string>& ValidationMessages() const { return _messages; }

    /// Makes a buffer that the host writes or reads.
    GpuBuffer MakeBuffer(vk::DeviceSize size, vk::BufferUsageFlags usage) const;

    /// Makes an image in device memory, with a matching view.
    GpuImage MakeImage(const vk::ImageCreateInfo& info, vk::ImageAspectFlags aspect) const;

    /// Submits the commands that record adds, and waits until they are complete.
    void Run(const std::function<void(const vk::raii::CommandBuffer&)>& record) const;

private:
    void MakeInstance(bool withValidation);
    void ChooseDevice();
    void MakeDevice();
    vk::raii::DeviceMemory Allocate(const vk::MemoryRequirements& requirements,
                                    vk::MemoryPropertyFlags properties) const;

    std::vector<std::string> _messages;
    vk::raii::Context _context;
    vk::raii::Instance _instance = nullptr;
    vk::raii::DebugUtilsMessengerEXT _messenger = nullptr;
    vk::raii::PhysicalDevice _physical = nullptr;
    vk::PhysicalDeviceProperties _properties;
    std::uint32_t _queueFamily = 0;
    bool _hasAnisotropy = false;
    vk::raii::Device _device = nullptr;
    vk::raii::Queue _queue = nullptr;
    vk::raii::CommandPool _commands = nullptr;
};

} // namespace Mox::Host
