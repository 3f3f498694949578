#pragma once

#include <string>

#include "Platform/Media/ClipReader.h"
#include "Platform/Media/PictureSequence.h"
#include "Platform/Media/Private/FFmpegSupport.h"

namespace qv::ffmpeg {

/// A file as FFmpeg finds it, with what it must be told to open it.
struct InputLocation {
    std::string url;
    Dictionary options;
    const AVInputFormat* container = nullptr;  ///< nil: found out

    /// False with the cause when it cannot be there.
    bool find(const std::string& path, const ClipInputFormat& format, std::string& cause);

  private:
    bool findPictures(const PictureSequence& pictures, std::string& cause);
    bool findFile(const std::string& path, std::string& cause);
    void describeRaw(const ClipInputFormat& format, std::string& cause);
};

}  // namespace qv::ffmpeg
