#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Foundation/BackgroundQueue.h"
#include "Platform/Foundation/NSCache.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "QVFilterExtension/Utils/QVVideoDecoder.h"

namespace qv {

/// The frames of the clips that effects lay over footage. A frame is decoded once; from then on it is read
/// from a JPEG file in the system's temporary folder (`TMPDIR`, else /tmp), which is written in the
/// background: QVFilterVideoCache/CLIP/NUMBER, with the clip's file name without extension and the frame's
/// number. Clips of the same name share their files, and processes share them too: a file appears when it is
/// whole. What cannot be written is decoded each time, and what is no picture is decoded and replaced;
/// neither is told.
///
/// Frames are numbered at most 15 a second, and a number is always the same frame, that which the clip shows
/// at number / rate: so no frame depends on what was asked for before. For the same reason a frame that was
/// just decoded has gone through JPEG too. Thread-safe.
class QVEffectVideoFrameCacheManager {
  public:
    /// The one of the process. What it still has to write is written before the process ends.
    static QVEffectVideoFrameCacheManager& sharedManager();

    /// The frame of a clip at a time; the clip starts anew at its end. Nil when it cannot be read, and for
    /// times below zero.
    MTIImage imageFromVideo(const std::string& videoPath, CMTime time);
    /// The same, decoded whatever has been written; the time must lie within the clip. The file follows.
    MTIImage decodeImageFromVideo(const std::string& videoPath, CMTime time);
    /// The decoder of a clip. Two are kept; others are made when they are asked for.
    std::shared_ptr<QVVideoDecoder> decoderForVideo(const std::string& videoPath);

    /// Where the frame at a time lies, which makes the clip's folder; so does the next.
    std::string frameCachePathWithDecoder(const QVVideoDecoder& decoder, CMTime time) const;
    std::string frameCachePathWithVideo(const std::string& videoPath, std::int64_t index) const;
    /// Writes a frame as JPEG of quality 0.8, over black; nothing without one. Failures are not told.
    void cacheBuffer(const PixelBuffer& buffer, const std::string& path) const;

    /// The folder of all clips.
    static std::string rootCachePath();
    /// The clip's file name without its extension.
    static std::string cachedFileNameForKey(const std::string& videoPath);
    /// The clip's folder, made if need be, in place of whatever else has its name.
    static std::string frameCacheDirPathForVideo(const std::string& videoPath);
    /// Removes the folder of all clips, in the background.
    void removeCacheFiles();

    /// Returns when everything asked for so far has been written or removed.
    void finishWriting() { writing_.drain(); }

  private:
    QVEffectVideoFrameCacheManager() = default;

    NSCache<std::string, std::shared_ptr<QVVideoDecoder>> decoderCache_{2};
    std::atomic<int> pendingFiles_ = 0;
    BackgroundQueue writing_;  ///< last: its tasks use what is above
};

}  // namespace qv
