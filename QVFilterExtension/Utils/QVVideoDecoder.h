#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Platform/Foundation/CMTime.h"
#include "Platform/Media/ClipReader.h"

namespace qv {

/// Frames of one clip by their time. What cannot be read gives no frame, and is opened anew next time.
/// Thread-safe.
class QVVideoDecoder {
  public:
    /// A decoder of the clip at an absolute path, which need not exist.
    explicit QVVideoDecoder(std::string videoPath) : videoPath_(std::move(videoPath)) {}

    /// The clip, and what tells decoders apart.
    const std::string& videoPath() const { return videoPath_; }

    /// Opens the clip, unless it is open. False when it cannot be read.
    bool setupAssetReader();
    /// How long the clip is, in units of its own; a time of no scale while it cannot be read.
    CMTime duration() const;
    /// Frames a second by which frames are numbered: the clip's own, 1 to 15; 1 where it names none.
    float frameRate() const;

    /// The seconds of a time × `frameRate`, rounded to nearest, halves away from zero.
    std::int64_t frameIndexWithTime(CMTime time) const;
    /// When the frame of a number is shown; for numbers past the end the last instant of the clip.
    CMTime timeOfFrameIndex(std::int64_t index) const;

    /// The frame that the clip shows at a time, if it begins less than 1 / `frameRate` seconds away: so there
    /// is none far before the first frame, after the end, or where the clip is damaged. Nil then.
    PixelBuffer frameBufferWithTime(CMTime time);

  private:
    bool open();
    double startOf(const ClipFrame& frame) const;

    const std::string videoPath_;
    mutable std::mutex mutex_;
    std::unique_ptr<ClipReader> assetReader_;
    CMTime duration_{0, 0};
    float frameRate_ = 1;
    std::optional<ClipFrame> shown_;  ///< read last
};

}  // namespace qv
