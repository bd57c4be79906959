#pragma once

#include <functional>
#include <string>
#include <vector>
#include <vulkan/vulkan_raii.hpp>

namespace Mox::Host {

/// A buffer with its memory. The memory is mapped if the host can see it.
struct GpuBuffer
{
    vk::raii::DeviceMemory Memory = nullptr;
    vk::raii::Buffer Buffer = nullptr;
    std::byte* Mapped = nullptr;
};

/// An image with its memory and a view of all its levels.
struct GpuImage
{
    vk::raii::DeviceMemory Memory = nullptr;
    vk::raii::Image Image = nullptr;
    vk::raii::ImageView View = nullptr;
};

/// A Vulkan device and the one queue that pictures are drawn on, without a window. The loader is
/// opened at run time, so a machine without it can still start the program.
class VulkanDevice
{
public:
    /// Takes the fastest kind of device that there is, a processor in the worst case.
    /// @param withValidation lets the validation layer watch every call
    /// @throws HostError if there is no device, or no validation layer where it is wanted
    explicit VulkanDevice(bool withValidation);

    const vk::raii::Device& Get() const { return _device; }
    const vk::raii::PhysicalDevice& Physical() const { return _physical; }
    const vk::PhysicalDeviceLimits& Limits() const { return _properties.limits; }
    std::string Name() const { return _properties.deviceName; }
    bool HasAnisotropy() const { return _hasAnisotropy; }

    /// What the validation layer has said so far.
    const std::vector<std::string>& ValidationMessages() const { return _messages; }

    /// A buffer that the host writes or reads.
    GpuBuffer MakeBuffer(vk::DeviceSize size, vk::BufferUsageFlags usage) const;

    /// An image in the device's own memory, with a view of its kind.
    GpuImage MakeImage(const vk::ImageCreateInfo& info, vk::ImageAspectFlags aspect) const;

    /// Lets the queue do what record writes down, and waits until it is done.
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
