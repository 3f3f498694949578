#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/Media/Private/FFmpegSupport.h"

namespace qv::ffmpeg {

/// Frames in a device's memory, for an encoder that takes no others.
class HardwareFrames {
  public:
    static bool areNeededBy(const AVCodec& encoder);

    /// Opens the system's first device of the encoder's kind. False with the cause.
    bool open(const AVCodec& encoder, std::string& cause);
    /// What frames may be like before upload(), ended by AV_PIX_FMT_NONE.
    const AVPixelFormat* formats() const { return formats_.data(); }
    /// Has the encoder take frames of that format; before it is opened. False with the cause.
    bool attach(AVCodecContext& encoder, AVPixelFormat format, std::string& cause);
    /// A copy on the device; nil on failure.
    Frame upload(const AVFrame& frame) const;

  private:
    struct Unref {
        void operator()(AVBufferRef* buffer) const { av_buffer_unref(&buffer); }
    };
    using Buffer = std::unique_ptr<AVBufferRef, Unref>;

    Buffer device_, frames_;
    AVPixelFormat onDevice_ = AV_PIX_FMT_NONE;
    std::vector<AVPixelFormat> formats_;
};

}  // namespace qv::ffmpeg
