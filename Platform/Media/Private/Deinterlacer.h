#pragma once

#include <memory>

#include "Platform/Media/Private/FilterGraph.h"

namespace qv::ffmpeg {

/// Makes whole pictures of interlaced frames, one of each, with the frame's own times, tags and pixel format;
/// the fields' order is the frame's. Frames of one size and format. One thread at a time.
class Deinterlacer {
  public:
    /// `everything`: also frames that do not say that they are interlaced; else these pass unchanged. Nil for
    /// frames that cannot be deinterlaced, such as of less than three rows.
    static std::unique_ptr<Deinterlacer> create(const AVFrame& like, bool everything);

    /// Whether a frame is of the kind that this one was made for.
    bool takes(const AVFrame& frame) const;
    /// Takes the frame's reference; nil for the end. An FFmpeg code.
    int send(AVFrame* frame) { return filters_.send(frame); }
    /// As avcodec_receive_frame().
    int receive(AVFrame& frame) { return filters_.receive(frame); }

  private:
    FilterGraph filters_;
    int width_ = 0, height_ = 0, format_ = AV_PIX_FMT_NONE;
};

}  // namespace qv::ffmpeg
