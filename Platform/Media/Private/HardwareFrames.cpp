#include "Platform/Media/Private/HardwareFrames.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

#include <fmt/format.h>

namespace qv::ffmpeg {
namespace {

/// Enough for those that the encoder holds back.
constexpr int kFrames = 20;

}  // namespace

bool HardwareFrames::areNeededBy(const AVCodec& encoder) {
    if (!encoder.pix_fmts) return false;
    for (const AVPixelFormat* format = encoder.pix_fmts; *format != AV_PIX_FMT_NONE; ++format) {
        const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(*format);
        if (!description || !(description->flags & AV_PIX_FMT_FLAG_HWACCEL)) return false;
    }
    return true;
}

bool HardwareFrames::open(const AVCodec& encoder, std::string& cause) {
    const AVCodecHWConfig* config = nullptr;
    for (int i = 0; (config = avcodec_get_hw_config(&encoder, i)); ++i) {
        if (config->methods & AV_CODEC_HW_CONFIG_METHOD_HW_FRAMES_CTX) break;
    }
    if (!config) {
        cause = fmt::format("there is no way to hand frames to {}", encoder.name);
        return false;
    }
    AVBufferRef* device = nullptr;
    const int code = av_hwdevice_ctx_create(&device, config->device_type, nullptr, nullptr, 0);
    device_.reset(device);
    if (code < 0) {
        char text[AV_ERROR_MAX_STRING_SIZE];
        cause = fmt::format("{} needs a {} device, and none can be opened", encoder.name,
                            av_hwdevice_get_type_name(config->device_type));
        if (code != AVERROR_EXTERNAL)
            cause += fmt::format(": {}", av_make_error_string(text, sizeof text, code));
        return false;
    }
    onDevice_ = config->pix_fmt;
    AVHWFramesConstraints* limits = av_hwdevice_get_hwframe_constraints(device_.get(), nullptr);
    const AVPixelFormat* valid = limits ? limits->valid_sw_formats : nullptr;
    for (; valid && *valid != AV_PIX_FMT_NONE; ++valid) {
        // Devices lay other kinds of frames out, too, which they do not encode.
        if (*valid == AV_PIX_FMT_NV12 || *valid == AV_PIX_FMT_P010LE) formats_.push_back(*valid);
    }
    av_hwframe_constraints_free(&limits);
    if (formats_.empty()) formats_.push_back(AV_PIX_FMT_NV12);
    formats_.push_back(AV_PIX_FMT_NONE);
    return true;
}

bool HardwareFrames::attach(AVCodecContext& encoder, AVPixelFormat format, std::string& cause) {
    frames_.reset(av_hwframe_ctx_alloc(device_.get()));
    if (frames_) {
        auto& description = *reinterpret_cast<AVHWFramesContext*>(frames_->data);
        description.format = onDevice_;
        description.sw_format = format;
        description.width = encoder.width;
        description.height = encoder.height;
        description.initial_pool_size = kFrames;
    }
    if (!frames_ || av_hwframe_ctx_init(frames_.get()) < 0) {
        cause = fmt::format("the device has no room for frames of {}x{} as {}", encoder.width, encoder.height,
                            av_get_pix_fmt_name(format));
        return false;
    }
    encoder.pix_fmt = onDevice_;
    encoder.sw_pix_fmt = format;
    encoder.hw_frames_ctx = av_buffer_ref(frames_.get());
    return encoder.hw_frames_ctx != nullptr;
}

Frame HardwareFrames::upload(const AVFrame& frame) const {
    Frame copy(av_frame_alloc());
    const bool copied = copy && av_hwframe_get_buffer(frames_.get(), copy.get(), 0) >= 0 &&
                        av_hwframe_transfer_data(copy.get(), &frame, 0) >= 0;
    return copied ? std::move(copy) : nullptr;
}

}  // namespace qv::ffmpeg
