#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/Media/Private/FFmpegSupport.h"

struct WebPAnimDecoder;

namespace qv::ffmpeg {

/// The frames of an animated WebP, which libavcodec does not decode.
class WebPAnimation {
  public:
    /// Whether a file that a demuxer has just opened is one; the place in the file stays.
    static bool isIn(AVFormatContext& input);
    /// Takes the file over, and describes its stream. Nil for a damaged one.
    static std::unique_ptr<WebPAnimation> open(AVFormatContext& input);
    ~WebPAnimation();

    /// As avcodec_receive_frame(): RGBA with straight alpha, times in milliseconds.
    int receive(AVFrame& frame);
    /// Makes the first frame the next one.
    void rewind();
    /// When the last frame ends, in milliseconds.
    std::int64_t end() const { return end_; }

    /// Has the last frame of an encoded animation end so many milliseconds after the first one's beginning;
    /// the encoder makes it as long as the mean of the others.
    static void setEnd(AVPacket& file, std::int64_t end);

  private:
    struct Free {
        void operator()(WebPAnimDecoder* decoder) const;
    };

    WebPAnimation() = default;
    bool measure();
    void describe(AVStream& stream) const;

    std::vector<std::uint8_t> bytes_;  ///< outlives the decoder
    std::unique_ptr<WebPAnimDecoder, Free> decoder_;
    int width_ = 0, height_ = 0, frames_ = 0;
    std::int64_t end_ = 0, time_ = 0;  ///< of the animation, and of the next frame
};

}  // namespace qv::ffmpeg
