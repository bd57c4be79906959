#include "mox/preview/Renderer.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"

#include <array>
#include <cstring>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr vk::Format colourFormat = vk::Format::eR8G8B8A8Srgb;
constexpr std::size_t bytesPerPixel = 4;

vk::SampleCountFlagBits ChooseSamples(const VulkanDevice& device)
{
    const vk::SampleCountFlags supported =
        device.Limits().framebufferColorSampleCounts & device.Limits().framebufferDepthSampleCounts;
    return supported & vk::SampleCountFlagBits::e4 ? vk::SampleCountFlagBits::e4
                                                   : vk::SampleCountFlagBits::e1;
}

/// Every device supports one of these two formats.
vk::Format ChooseDepthFormat(const VulkanDevice& device)
{
    const vk::FormatProperties properties =
        device.Physical().getFormatProperties(vk::Format::eD32Sfloat);
    return properties.optimalTilingFeatures & vk::FormatFeatureFlagBits::eDepthStencilAttachment
               ? vk::Format::eD32Sfloat
               : vk::Format::eX8D24UnormPack32;
}

} // namespace

Renderer::Renderer(const VulkanDevice& device, std::uint32_t width, std::uint32_t height,
                   const std::vector<DrawCall>& draws)
    : _device(device), _width(width), _height(height), _samples(ChooseSamples(device)),
      _depthFormat(ChooseDepthFormat(device))
{
    const vk::PhysicalDeviceLimits& limits = device.Limits();
    if (width == 0 || height == 0 || width > limits.maxFramebufferWidth ||
        height > limits.maxFramebufferHeight) {
        throw HostError({}, Compose("cannot render images of ", width, " by ", height,
                                    " pixels: the Vulkan device supports 1 to ",
                                    limits.maxFramebufferWidth, " by 1 to ",
                                    limits.maxFramebufferHeight));
    }
    MakeTargets();
    MakePass();
    for (const DrawCall& draw : draws)
        _draws.emplace_back(device, draw, *_pass, _samples);
}

void Renderer::SetUniforms(std::size_t draw, const DrawUniforms& uniforms)
{
    _draws[draw].SetUniforms(uniforms);
}

Picture Renderer::Render() const
{
    _device.Run([this](const vk::raii::CommandBuffer& commands) { Record(commands); });
    Picture picture{_width, _height, {}};
    picture.Pixels.resize(std::size_t(_width) * _height * bytesPerPixel);
    std::memcpy(picture.Pixels.data(), _readback.Mapped, picture.Pixels.size());
    return picture;
}

void Renderer::MakeTargets()
{
    const auto make = [this](vk::Format format, vk::SampleCountFlagBits samples,
                             vk::ImageUsageFlags usage, vk::ImageAspectFlags aspect) {
        return _device.MakeImage({{},
                                  vk::ImageType::e2D,
                                  format,
                                  {_width, _height, 1},
                                  1,
                                  1,
                                  samples,
                                  vk::ImageTiling::eOptimal,
                                  usage},
                                 aspect);
    };
    using Usage = vk::ImageUsageFlagBits;
    _colour = make(colourFormat, _samples, Usage::eColorAttachment | Usage::eTransferSrc,
                   vk::ImageAspectFlagBits::eColor);
    _depth = make(_depthFormat, _samples, Usage::eDepthStencilAttachment,
                  vk::ImageAspectFlagBits::eDepth);
    if (_samples != vk::SampleCountFlagBits::e1) {
        _resolved =
            make(colourFormat, vk::SampleCountFlagBits::e1,
                 Usage::eColorAttachment | Usage::eTransferSrc, vk::ImageAspectFlagBits::eColor);
    }
    _readback = _device.MakeBuffer(std::size_t(_width) * _height * bytesPerPixel,
                                   vk::BufferUsageFlagBits::eTransferDst);
}

void Renderer::MakePass()
{
    using Layout = vk::ImageLayout;
    using Load = vk::AttachmentLoadOp;
    using Store = vk::AttachmentStoreOp;
    using Stage = vk::PipelineStageFlagBits;
    using Access = vk::AccessFlagBits;
    const bool isResolved = _samples != vk::SampleCountFlagBits::e1;
    std::vector<vk::AttachmentDescription> attachments{
        {{},
         colourFormat,
         _samples,
         Load::eClear,
         isResolved ? Store::eDontCare : Store::eStore,
         Load::eDontCare,
         Store::eDontCare,
         Layout::eUndefined,
         isResolved ? Layout::eColorAttachmentOptimal : Layout::eTransferSrcOptimal},
        {{},
         _depthFormat,
         _samples,
         Load::eClear,
         Store::eDontCare,
         Load::eDontCare,
         Store::eDontCare,
         Layout::eUndefined,
         Layout::eDepthStencilAttachmentOptimal}};
    std::vector<vk::ImageView> views{*_colour.View, *_depth.View};
    if (isResolved) {
        attachments.push_back({{},
                               colourFormat,
                               vk::SampleCountFlagBits::e1,
                               Load::eDontCare,
                               Store::eStore,
                               Load::eDontCare,
                               Store::eDontCare,
                               Layout::eUndefined,
                               Layout::eTransferSrcOptimal});
        views.push_back(*_resolved.View);
    }
    const vk::AttachmentReference colour(0, Layout::eColorAttachmentOptimal);
    const vk::AttachmentReference depth(1, Layout::eDepthStencilAttachmentOptimal);
    const vk::AttachmentReference resolved(2, Layout::eColorAttachmentOptimal);
    const vk::SubpassDescription subpass({}, vk::PipelineBindPoint::eGraphics, 0, nullptr, 1,
                                         &colour, isResolved ? &resolved : nullptr, &depth);
    // The host waits for each submission, so only the copy after the pass needs a dependency.
    const vk::SubpassDependency copy(0, VK_SUBPASS_EXTERNAL, Stage::eColorAttachmentOutput,
                                     Stage::eTransfer, Access::eColorAttachmentWrite,
                                     Access::eTransferRead);
    _pass = _device.Get().createRenderPass({{}, attachments, subpass, copy});
    _framebuffer = _device.Get().createFramebuffer({{}, *_pass, views, _width, _height, 1});
}

void Renderer::Record(const vk::raii::CommandBuffer& commands) const
{
    const vk::Rect2D area({0, 0}, {_width, _height});
    const std::array clear = {
        vk::ClearValue(vk::ClearColorValue(std::array{0.0f, 0.0f, 0.0f, 1.0f})),
        vk::ClearValue(vk::ClearDepthStencilValue(1.0f, 0))};
    commands.beginRenderPass({*_pass, *_framebuffer, area, clear}, vk::SubpassContents::eInline);
    const auto width = static_cast<float>(_width);
    const auto height = static_cast<float>(_height);
    commands.setViewport(0, vk::Viewport(0.0f, height, width, -height, 0.0f, 1.0f));
    commands.setScissor(0, area);
    for (const GpuDraw& draw : _draws)
        draw.Record(commands);
    commands.endRenderPass();
    const vk::Image source = *(_samples == vk::SampleCountFlagBits::e1 ? _colour : _resolved).Image;
    commands.copyImageToBuffer(source, vk::ImageLayout::eTransferSrcOptimal, *_readback.Buffer,
                               vk::BufferImageCopy(0, 0, 0,
                                                   {vk::ImageAspectFlagBits::eColor, 0, 0, 1}, {},
                                                   {_width, _height, 1}));
    const vk::BufferMemoryBarrier visible(
        vk::AccessFlagBits::eTransferWrite, vk::AccessFlagBits::eHostRead, VK_QUEUE_FAMILY_IGNORED,
        VK_QUEUE_FAMILY_IGNORED, *_readback.Buffer, 0, VK_WHOLE_SIZE);
    commands.pipelineBarrier(vk::PipelineStageFlagBits::eTransfer, vk::PipelineStageFlagBits::eHost,
                             {}, {}, visible, {});
}

} // namespace Mox::Host
