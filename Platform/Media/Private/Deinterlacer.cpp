#include "Platform/Media/Private/Deinterlacer.h"

#include <fmt/format.h>

namespace qv::ffmpeg {

std::unique_ptr<Deinterlacer> Deinterlacer::create(const AVFrame& like, bool everything) {
    const auto format = AVPixelFormat(like.format);
    const char* name = av_get_pix_fmt_name(format);
    if (!name) return nullptr;
    auto made = std::make_unique<Deinterlacer>();
    // Formats that the filter does not know are converted on the way, and back.
    const std::string filters = fmt::format("bwdif=mode=send_frame:parity=auto:deint={},format={}",
                                            everything ? "all" : "interlaced", name);
    if (!made->filters_.open(filters, like.width, like.height, format)) return nullptr;
    made->width_ = like.width;
    made->height_ = like.height;
    made->format_ = like.format;
    return made;
}

bool Deinterlacer::takes(const AVFrame& frame) const {
    return frame.width == width_ && frame.height == height_ && frame.format == format_;
}

}  // namespace qv::ffmpeg
