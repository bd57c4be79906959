#include "mox/preview/VulkanDevice.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr const char* validationLayer = "VK_LAYER_KHRONOS_validation";
constexpr const char* noDevice = "no Vulkan device was found";

/// Version 1.1 allows viewports of negative height, which are needed to render with y up.
constexpr std::uint32_t apiVersion = VK_API_VERSION_1_1;

vk::raii::Context OpenLoader()
{
    try {
        return {};
    } catch (const std::runtime_error&) {
        throw HostError({}, Compose(noDevice, ": the Vulkan loader is not installed"));
    }
}

std::optional<std::uint32_t> FindQueueFamily(const vk::raii::PhysicalDevice& device)
{
    const auto families = device.getQueueFamilyProperties();
    const auto family = std::find_if(families.begin(), families.end(), [](const auto& properties) {
        return bool(properties.queueFlags & vk::QueueFlagBits::eGraphics);
    });
    if (family == families.end())
        return std::nullopt;
    return static_cast<std::uint32_t>(std::distance(families.begin(), family));
}

/// Rates the kind of a device; higher is better.
int RateKind(vk::PhysicalDeviceType kind)
{
    switch (kind) {
    case vk::PhysicalDeviceType::eDiscreteGpu:
        return 4;
    case vk::PhysicalDeviceType::eIntegratedGpu:
        return 3;
    case vk::PhysicalDeviceType::eVirtualGpu:
        return 2;
    default:
        return 1;
    }
}

vk::ImageViewType ViewTypeOf(const vk::ImageCreateInfo& info)
{
    if (info.flags & vk::ImageCreateFlagBits::eCubeCompatible)
        return vk::ImageViewType::eCube;
    switch (info.imageType) {
    case vk::ImageType::e1D:
        return vk::ImageViewType::e1D;
    case vk::ImageType::e3D:
        return vk::ImageViewType::e3D;
    default:
        return vk::ImageViewType::e2D;
    }
}

VKAPI_ATTR VkBool32 VKAPI_CALL TakeMessage(VkDebugUtilsMessageSeverityFlagBitsEXT,
                                           VkDebugUtilsMessageTypeFlagsEXT,
                                           const VkDebugUtilsMessengerCallbackDataEXT* data,
                                           void* messages)
{
    static_cast<std::vector<std::string>*>(messages)->emplace_back(data->pMessage);
    return VK_FALSE;
}

} // namespace

VulkanDevice::VulkanDevice(bool withValidation) : _context(OpenLoader())
{
    try {
        MakeInstance(withValidation);
        ChooseDevice();
        MakeDevice();
    } catch (const vk::SystemError& error) {
        throw HostError({}, Compose(noDevice, ": ", error.what()));
    }
}

void VulkanDevice::MakeInstance(bool withValidation)
{
    if (_context.enumerateInstanceVersion() < apiVersion)
        throw HostError({}, Compose(noDevice, ": the Vulkan loader is older than 1.1"));
    const vk::ApplicationInfo application("mox", 1, nullptr, 0, apiVersion);
    if (!withValidation) {
        _instance = _context.createInstance({{}, &application});
        return;
    }
    const auto layers = _context.enumerateInstanceLayerProperties();
    if (std::none_of(layers.begin(), layers.end(), [](const vk::LayerProperties& layer) {
            return std::string_view(layer.layerName) == validationLayer;
        }))
        throw HostError({}, "the Vulkan validation layer is not installed");
    const char* extension = VK_EXT_DEBUG_UTILS_EXTENSION_NAME;
    using Severity = vk::DebugUtilsMessageSeverityFlagBitsEXT;
    using Kind = vk::DebugUtilsMessageTypeFlagBitsEXT;
    const vk::DebugUtilsMessengerCreateInfoEXT messenger(
        {}, Severity::eWarning | Severity::eError,
        Kind::eGeneral | Kind::eValidation | Kind::ePerformance, TakeMessage, &_messages);
    _instance =
        _context.createInstance({{}, &application, 1, &validationLayer, 1, &extension, &messenger});
    _messenger = _instance.createDebugUtilsMessengerEXT(messenger);
}

void VulkanDevice::ChooseDevice()
{
    int bestRate = 0;
    for (vk::raii::PhysicalDevice& device : vk::raii::PhysicalDevices(_instance)) {
        const vk::PhysicalDeviceProperties properties = device.getProperties();
        const auto family = FindQueueFamily(device);
        if (!family || properties.apiVersion < apiVersion ||
            RateKind(properties.deviceType) <= bestRate)
            continue;
        bestRate = RateKind(properties.deviceType);
        _properties = properties;
        _queueFamily = *family;
        _physical = std::move(device);
    }
    if (bestRate == 0)
        throw HostError({}, noDevice);
    // Mesa's CPU device (22.3) does not support anisotropic reads of 1D textures, and returns wrong
    // texels where a coordinate is constant.
    _hasAnisotropy = _properties.deviceType != vk::PhysicalDeviceType::eCpu &&
                     _physical.getFeatures().samplerAnisotropy;
}

void VulkanDevice::MakeDevice()
{
    constexpr float priority = 1.0f;
    const vk::DeviceQueueCreateInfo queue({}, _queueFamily, 1, &priority);
    vk::PhysicalDeviceFeatures features;
    features.samplerAnisotropy = _hasAnisotropy;
    _device = _physical.createDevice({{}, queue, {}, {}, &features});
    _queue = _device.getQueue(_queueFamily, 0);
    _commands =
        _device.createCommandPool({vk::CommandPoolCreateFlagBits::eTransient, _queueFamily});
}

vk::raii::DeviceMemory VulkanDevice::Allocate(const vk::MemoryRequirements& requirements,
                                              vk::MemoryPropertyFlags properties) const
{
    const vk::PhysicalDeviceMemoryProperties memory = _physical.getMemoryProperties();
    for (std::uint32_t type = 0; type < memory.memoryTypeCount; ++type) {
        if ((requirements.memoryTypeBits >> type & 1u) != 0 &&
            (memory.memoryTypes[type].propertyFlags & properties) == properties)
            return _device.allocateMemory({requirements.size, type});
    }
    throw HostError({}, "the Vulkan device has no memory of the required type");
}

GpuBuffer VulkanDevice::MakeBuffer(vk::DeviceSize size, vk::BufferUsageFlags usage) const
{
    GpuBuffer buffer;
    buffer.Buffer = _device.createBuffer({{}, size, usage});
    buffer.Memory = Allocate(buffer.Buffer.getMemoryRequirements(),
                             vk::MemoryPropertyFlagBits::eHostVisible |
                                 vk::MemoryPropertyFlagBits::eHostCoherent);
    buffer.Buffer.bindMemory(*buffer.Memory, 0);
    buffer.Mapped = static_cast<std::byte*>(buffer.Memory.mapMemory(0, VK_WHOLE_SIZE));
    return buffer;
}

GpuImage VulkanDevice::MakeImage(const vk::ImageCreateInfo& info, vk::ImageAspectFlags aspect) const
{
    GpuImage image;
    image.Image = _device.createImage(info);
    image.Memory = Allocate(image.Image.getMemoryRequirements(), {});
    image.Image.bindMemory(*image.Memory, 0);
    image.View = _device.createImageView({{},
                                          *image.Image,
                                          ViewTypeOf(info),
                                          info.format,
                                          {},
                                          {aspect, 0, info.mipLevels, 0, info.arrayLayers}});
    return image;
}

void VulkanDevice::Run(const std::function<void(const vk::raii::CommandBuffer&)>& record) const
{
    const vk::raii::CommandBuffers buffers(_device,
                                           {*_commands, vk::CommandBufferLevel::ePrimary, 1});
    const vk::raii::CommandBuffer& commands = buffers.front();
    commands.begin({vk::CommandBufferUsageFlagBits::eOneTimeSubmit});
    record(commands);
    commands.end();
    const vk::CommandBuffer handle = *commands;
    _queue.submit(vk::SubmitInfo({}, {}, handle));
    _queue.waitIdle();
}

} // namespace Mox::Host
