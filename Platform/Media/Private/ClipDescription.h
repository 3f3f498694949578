#pragma once

#include <string>

#include "Platform/Media/Private/FFmpegSupport.h"

namespace qv {

/// What an open file says about itself and about the video in one of its streams, whose decoder is open too.
ClipInfo describeClip(const std::string& path, AVFormatContext& input, AVStream& stream,
                      const AVCodecContext& decoder);

/// The colour of frames that are read from a clip of that height with these tags.
ColorDescription clipColor(AVPixelFormat format, AVColorSpace matrix, AVColorRange range, int height);

/// Whether the stream's alpha is a second picture beside the first, which a container's tag tells.
bool hasAlphaPicture(const AVStream& stream);

}  // namespace qv
