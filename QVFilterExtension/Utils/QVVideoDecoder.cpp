#include "QVFilterExtension/Utils/QVVideoDecoder.h"

#include <algorithm>
#include <cmath>

namespace qv {

namespace {

constexpr double kFewestFrames = 1, kMostFrames = 15;  // a second
/// Times that lie this close (seconds) to a frame's begin are the frame's.
constexpr double kInstant = 1e-6;
/// What lies no farther ahead (seconds) is read; anything else is sought.
constexpr double kReadOn = 0.5;

}  // namespace

bool QVVideoDecoder::setupAssetReader() {
    const std::scoped_lock lock(mutex_);
    return open();
}

bool QVVideoDecoder::open() {
    // A reader that met damage stays at its end.
    if (assetReader_ && assetReader_->error().empty()) return true;
    shown_.reset();
    // One thread: frames come one at a time, and others wait for none.
    assetReader_ = ClipReader::open(videoPath_, {.threads = 1});
    if (!assetReader_) return false;
    const ClipInfo& info = assetReader_->info();
    const ClipVideoFormat& video = info.video;
    const double rate =
        video.averageFrameRate.value() > 0 ? video.averageFrameRate.value() : video.realFrameRate.value();
    frameRate_ = float(std::clamp(rate, kFewestFrames, kMostFrames));
    const double tick = video.timeBase.value();
    const auto end = assetReader_->endTime();
    const double seconds = end ? double(*end) * tick - info.start : info.duration;
    duration_ = CMTimeMakeWithSeconds(seconds, tick > 0 ? std::int32_t(std::lround(1 / tick)) : 1);
    return true;
}

CMTime QVVideoDecoder::duration() const {
    const std::scoped_lock lock(mutex_);
    return duration_;
}

float QVVideoDecoder::frameRate() const {
    const std::scoped_lock lock(mutex_);
    return frameRate_;
}

std::int64_t QVVideoDecoder::frameIndexWithTime(CMTime time) const {
    return CMTimeMakeWithSeconds(CMTimeGetSeconds(time) * double(frameRate()), 1).value;
}

CMTime QVVideoDecoder::timeOfFrameIndex(std::int64_t index) const {
    const CMTime end = duration();
    CMTime time = CMTimeMakeWithSeconds(double(index) / double(frameRate()), end.timescale);
    if (end.value > 0) time.value = std::min(time.value, end.value - 1);
    return time;
}

double QVVideoDecoder::startOf(const ClipFrame& frame) const {
    const ClipInfo& info = assetReader_->info();
    return double(frame.time) * info.video.timeBase.value() - info.start;
}

PixelBuffer QVVideoDecoder::frameBufferWithTime(CMTime time) {
    const std::scoped_lock lock(mutex_);
    if (!open()) return {};
    const double seconds = CMTimeGetSeconds(time), within = 1 / double(frameRate_);
    const auto hasBegun = [&](const ClipFrame& frame) { return startOf(frame) <= seconds + kInstant; };
    const auto endsBy = [&](const ClipFrame& frame) {
        return startOf(frame) + double(frame.duration) * assetReader_->info().video.timeBase.value() <=
               seconds + kInstant;
    };

    const bool readsOn = shown_ && hasBegun(*shown_) && seconds < startOf(*shown_) + kReadOn;
    if (!readsOn) {
        shown_.reset();
        if (assetReader_->seek(seconds + kInstant)) shown_ = assetReader_->nextFrame();
    }
    while (shown_ && endsBy(*shown_)) {
        std::optional<ClipFrame> next = assetReader_->nextFrame();
        if (!next) break;
        shown_ = std::move(next);
    }
    if (!shown_ || !(std::abs(seconds - startOf(*shown_)) < within)) return {};
    return shown_->pixels;
}

}  // namespace qv
