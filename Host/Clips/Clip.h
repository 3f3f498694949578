#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Host/Clips/Timeline.h"
#include "Platform/Media/ClipReader.h"

/// Clips as the commands read them.
namespace qv::host {

/// Seconds by which time stamps may be off and still count as reached: half of the coarsest time base in use.
inline constexpr double kTimeTolerance = 0.0005;

/// Fails as input.
std::unique_ptr<ClipReader> openClip(const std::string& path, const ClipReaderOptions& options = {});

/// The next frame, or nothing at the end. Fails as input when the clip is damaged.
std::optional<ClipFrame> readFrame(ClipReader& clip);

/// Seconds of a time stamp of the clip's video.
double secondsOf(const ClipInfo& info, std::int64_t time);

/// The frames of a clip as they are shown, from its first one on. One thread at a time.
class ShownFrames {
  public:
    /// Fails as input when there is no frame.
    explicit ShownFrames(std::unique_ptr<ClipReader> clip);

    const ClipInfo& info() const { return clip_->info(); }
    /// The frame shown `seconds` after the first one; after the end the last. Times must not fall but for
    /// goTo(). Fails as input.
    const ClipFrame& at(double seconds);
    /// The frame where at() stands, and seconds from the first one to it.
    const ClipFrame& current() const { return current_; }
    double seconds() const { return secondsOf(info(), current_.time - firstTime_); }
    /// Whether the last frame has been shown for as long as it lasts.
    bool hasEnded(double seconds);
    /// To the next frame; false at the end. Fails as input.
    bool advance();
    /// Makes at() begin there, by a jump. Fails as input.
    void goTo(double seconds);
    /// Prepares for at(): by a jump to earlier times and to those far ahead. Fails as input.
    void near(double seconds);
    /// Seconds from the first frame to the end of the last, found by reading the last ones. To be asked at
    /// the beginning. Fails as input.
    double end();
    std::int64_t firstTime() const { return firstTime_; }
    /// The packets of other streams that were read on the way, if the clip hands them out; each once.
    std::deque<ClipPacket> takePackets() { return std::exchange(packets_, {}); }

  private:
    std::optional<ClipFrame> read();
    /// The next frame, which is read when it is first asked for: a pipe's may take its time.
    const std::optional<ClipFrame>& peek();

    std::unique_ptr<ClipReader> clip_;
    std::deque<ClipPacket> packets_;
    ClipFrame current_;
    std::optional<ClipFrame> next_;
    bool hasNext_ = false;  ///< `next_` is what follows, if anything does
    std::int64_t firstTime_ = 0;
};

/// The picture turned clockwise by 0, 90, 180 or 270 degrees, pixel for pixel.
MTIImage turned(const MTIImage& image, int degrees);
PixelBuffer turnedGray(const PixelBuffer& gray, int degrees);

/// Luma, or red, of a frame as full-range gray8: how a frame is read as a mask.
PixelBuffer grayFromFrame(const PixelBuffer& frame);

}  // namespace qv::host
