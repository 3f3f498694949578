#pragma once

extern "C" {
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <memory>
#include <string>

/// What the classes for sound share of FFmpeg's ways.
namespace qv::ffmpeg {

struct FreeResampler {
    void operator()(SwrContext* context) const { swr_free(&context); }
};
using Resampler = std::unique_ptr<SwrContext, FreeResampler>;

/// Which loudspeaker each channel is for. A layout that names none becomes the usual one of as many channels.
class ChannelLayout {
  public:
    ChannelLayout() = default;
    explicit ChannelLayout(const AVChannelLayout& layout) {
        av_channel_layout_copy(&layout_, &layout);
        complete();
    }
    /// By name; an unknown one becomes the usual one of `channels`.
    ChannelLayout(const std::string& name, int channels) {
        if (av_channel_layout_from_string(&layout_, name.c_str()) < 0) layout_.nb_channels = channels;
        complete();
    }
    ChannelLayout(const ChannelLayout& other) { av_channel_layout_copy(&layout_, &other.layout_); }
    ChannelLayout& operator=(const ChannelLayout& other) {
        av_channel_layout_copy(&layout_, &other.layout_);
        return *this;
    }
    ~ChannelLayout() { av_channel_layout_uninit(&layout_); }

    bool operator==(const ChannelLayout& other) const {
        return av_channel_layout_compare(&layout_, &other.layout_) == 0;
    }
    AVChannelLayout* get() { return &layout_; }
    const AVChannelLayout* get() const { return &layout_; }
    const AVChannelLayout* operator->() const { return &layout_; }
    std::string name() const {
        char text[64] = "";
        av_channel_layout_describe(&layout_, text, sizeof text);
        return text;
    }

  private:
    void complete() {
        const int channels = layout_.nb_channels;
        if (layout_.order != AV_CHANNEL_ORDER_UNSPEC || channels < 1) return;
        av_channel_layout_uninit(&layout_);
        av_channel_layout_default(&layout_, channels);
    }

    AVChannelLayout layout_{};
};

}  // namespace qv::ffmpeg
