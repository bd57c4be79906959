#include "tests/numbers/FloatTarget.h"

#include "mox/preview/GpuDraw.h"

#include <cstring>

using namespace Mox::Host;

namespace {

/// Every device can render to this format.
constexpr vk::Format format = vk::Format::eR32G32B32A32Sfloat;

} // namespace

FloatTarget::FloatTarget(const VulkanDevice& device, std::uint32_t width, std::uint32_t height)
    : _device(device), _width(width), _height(height)
{
    using Usage = vk::ImageUsageFlagBits;
    _image = device.MakeImage({{},
                               vk::ImageType::e2D,
                               format,
                               {width, height, 1},
                               1,
                               1,
                               vk::SampleCountFlagBits::e1,
                               vk::ImageTiling::eOptimal,
                               Usage::eColorAttachment | Usage::eTransferSrc},
                              vk::ImageAspectFlagBits::eColor);
    _readback = device.MakeBuffer(std::size_t(width) * height * sizeof(Numbers),
                                  vk::BufferUsageFlagBits::eTransferDst);
    MakePass();
}

std::vector<Numbers> FloatTarget::Draw(const DrawCall& call) const
{
    const GpuDraw draw(_device, call, *_pass, vk::SampleCountFlagBits::e1);
    _device.Run([&](const vk::raii::CommandBuffer& commands) {
        const vk::Rect2D area({0, 0}, {_width, _height});
        const vk::ClearValue clear(vk::ClearColorValue(std::array{0.0f, 0.0f, 0.0f, 0.0f}));
        commands.beginRenderPass({*_pass, *_framebuffer, area, clear},
                                 vk::SubpassContents::eInline);
        commands.setViewport(0, vk::Viewport(0.0f, 0.0f, static_cast<float>(_width),
                                             static_cast<float>(_height), 0.0f, 1.0f));
        commands.setScissor(0, area);
        draw.Record(commands);
        commands.endRenderPass();
        commands.copyImageToBuffer(
            *_image.Image, vk::ImageLayout::eTransferSrcOptimal, *_readback.Buffer,
            vk::BufferImageCopy(0, 0, 0, {vk::ImageAspectFlagBits::eColor, 0, 0, 1}, {},
                                {_width, _height, 1}));
        const vk::BufferMemoryBarrier visible(
            vk::AccessFlagBits::eTransferWrite, vk::AccessFlagBits::eHostRead,
            VK_QUEUE_FAMILY_IGNORED, VK_QUEUE_FAMILY_IGNORED, *_readback.Buffer, 0, VK_WHOLE_SIZE);
        commands.pipelineBarrier(vk::PipelineStageFlagBits::eTransfer,
                                 vk::PipelineStageFlagBits::eHost, {}, {}, visible, {});
    });
    std::vector<Numbers> pixels(std::size_t(_width) * _height);
    std::memcpy(pixels.data(), _readback.Mapped, pixels.size() * sizeof(Numbers));
    return pixels;
}

void FloatTarget::MakePass()
{
    using Access = vk::AccessFlagBits;
    using Layout = vk::ImageLayout;
    using Stage = vk::PipelineStageFlagBits;
    const vk::AttachmentDescription attachment(
        {}, format, vk::SampleCountFlagBits::e1, vk::AttachmentLoadOp::eClear,
        vk::AttachmentStoreOp::eStore, vk::AttachmentLoadOp::eDontCare,
        vk::AttachmentStoreOp::eDontCare, Layout::eUndefined, Layout::eTransferSrcOptimal);
    const vk::AttachmentReference colour(0, Layout::eColorAttachmentOptimal);
    const vk::SubpassDescription subpass({}, vk::PipelineBindPoint::eGraphics, 0, nullptr, 1,
                                         &colour);
    const vk::SubpassDependency copy(0, VK_SUBPASS_EXTERNAL, Stage::eColorAttachmentOutput,
                                     Stage::eTransfer, Access::eColorAttachmentWrite,
                                     Access::eTransferRead);
    _pass = _device.Get().createRenderPass({{}, attachment, subpass, copy});
    _framebuffer = _device.Get().createFramebuffer({{}, *_pass, *_image.View, _width, _height, 1});
}
