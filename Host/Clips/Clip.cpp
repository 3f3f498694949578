#include "Host/Clips/Clip.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Host/CommandLine/Failure.h"

namespace qv::host {

namespace {

/// Table from a luma code of 8 bits to a full-range grey.
std::uint8_t expandedLuma(int code, bool fullRange) {
    if (fullRange) return std::uint8_t(code);
    return std::uint8_t(std::clamp(int(std::lround((code - 16) * 255.0 / 219.0)), 0, 255));
}

}  // namespace

std::unique_ptr<ClipReader> openClip(const std::string& path, const ClipReaderOptions& options) {
    std::string cause;
    auto clip = ClipReader::open(path, options, &cause);
    if (!clip) fail(ExitCode::input, "{}", cause);
    return clip;
}

std::optional<ClipFrame> readFrame(ClipReader& clip) {
    std::optional<ClipFrame> frame = clip.nextFrame();
    if (!frame && !clip.error().empty()) fail(ExitCode::input, "{}", clip.error());
    return frame;
}

double secondsOf(const ClipInfo& info, std::int64_t time) {
    return double(time) * info.video.timeBase.value();
}

ShownFrames::ShownFrames(std::unique_ptr<ClipReader> clip) : clip_(std::move(clip)) {
    std::optional<ClipFrame> first = read();
    if (!first) fail(ExitCode::input, "there is no picture in '{}'", info().path);
    firstTime_ = first->time;
    current_ = std::move(*first);
}

std::optional<ClipFrame> ShownFrames::read() {
    while (true) {
        ClipReader::Item item = clip_->next();
        if (auto* frame = std::get_if<ClipFrame>(&item)) return std::move(*frame);
        if (auto* packet = std::get_if<ClipPacket>(&item)) {
            packets_.push_back(std::move(*packet));
            continue;
        }
        if (!clip_->error().empty()) fail(ExitCode::input, "{}", clip_->error());
        return std::nullopt;
    }
}

const std::optional<ClipFrame>& ShownFrames::peek() {
    if (!std::exchange(hasNext_, true)) next_ = read();
    return next_;
}

bool ShownFrames::advance() {
    if (!peek()) return false;
    current_ = std::move(*next_);
    next_.reset();
    hasNext_ = false;
    return true;
}

const ClipFrame& ShownFrames::at(double seconds) {
    while (seconds > this->seconds() + kTimeTolerance && peek() &&
           secondsOf(info(), next_->time - firstTime_) <= seconds + kTimeTolerance)
        advance();
    return current_;
}

bool ShownFrames::hasEnded(double seconds) {
    const std::int64_t end = current_.time + current_.duration - firstTime_;
    return secondsOf(info(), end) < seconds + kTimeTolerance && !peek();
}

void ShownFrames::goTo(double seconds) {
    const double start = secondsOf(info(), firstTime_) - info().start;
    if (!clip_->seek(start + seconds)) fail(ExitCode::input, "{}", clip_->error());
    std::optional<ClipFrame> frame = read();
    if (!frame) fail(ExitCode::input, "'{}' has nothing at {} s", info().path, seconds);
    current_ = std::move(*frame);
    next_.reset();
    hasNext_ = false;
}

void ShownFrames::near(double wanted) {
    // Reading on is faster than a jump to the key frame before.
    constexpr double kFar = 3;
    const bool isAhead =
        wanted > seconds() + kFar && peek() && wanted > secondsOf(info(), next_->time - firstTime_) + kFar;
    if (wanted < seconds() - kTimeTolerance || isAhead) goTo(wanted);
}

double ShownFrames::end() {
    // From so early on that the container has time stamps again before the end.
    constexpr double kTailSeconds = 10, kFarSeconds = 1e7;
    goTo(std::max(0.0, info().duration - kTailSeconds));
    const double end = secondsOf(info(), at(kFarSeconds).time + current_.duration - firstTime_);
    goTo(0);
    return end;
}

MTIImage turned(const MTIImage& image, int degrees) {
    // Clockwise with y up; written out, since a rotation by cosines would not be exact.
    switch (degrees) {
        case 90:
            return image.imageByApplyingTransform({0, -1, 1, 0, 0, 0}, true);
        case 180:
            return image.imageByApplyingTransform({-1, 0, 0, -1, 0, 0}, true);
        case 270:
            return image.imageByApplyingTransform({0, 1, -1, 0, 0, 0}, true);
        default:
            return image;
    }
}

PixelBuffer turnedGray(const PixelBuffer& gray, int degrees) {
    if (degrees == 0) return gray;
    const bool onSide = degrees != 180;
    const int width = onSide ? gray.height() : gray.width(), height = onSide ? gray.width() : gray.height();
    PixelBuffer result = PixelBuffer::create(PixelFormat::gray8, width, height);
    const PixelBuffer::Plane &from = gray.plane(0), &to = result.plane(0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int sourceX = degrees == 90 ? y : degrees == 270 ? height - 1 - y : width - 1 - x;
            const int sourceY = degrees == 90 ? width - 1 - x : degrees == 270 ? x : height - 1 - y;
            to.data[std::size_t(y) * to.rowBytes + std::size_t(x)] =
                from.data[std::size_t(sourceY) * from.rowBytes + std::size_t(sourceX)];
        }
    }
    return result;
}

PixelBuffer grayFromFrame(const PixelBuffer& frame) {
    const bool isGray = frame.format() == PixelFormat::gray8;
    if (isGray) return frame;
    const bool isRGBA = frame.format() == PixelFormat::rgba8;
    const bool deep = PixelBuffer::bitDepth(frame.format()) > 8;
    const bool fullRange = isRGBA || frame.color().fullRange;
    std::array<std::uint8_t, 256> table{};
    for (int code = 0; code < 256; ++code) table[std::size_t(code)] = expandedLuma(code, fullRange);

    PixelBuffer gray = PixelBuffer::create(PixelFormat::gray8, frame.width(), frame.height());
    const PixelBuffer::Plane &from = frame.plane(0), &to = gray.plane(0);
    for (int y = 0; y < frame.height(); ++y) {
        const std::uint8_t* source = from.data + std::size_t(y) * from.rowBytes;
        std::uint8_t* target = to.data + std::size_t(y) * to.rowBytes;
        for (int x = 0; x < frame.width(); ++x) {
            const int code = deep     ? (source[2 * x] | source[2 * x + 1] << 8) >> 2
                             : isRGBA ? source[4 * x]
                                      : source[x];
            target[x] = table[std::size_t(std::min(code, 255))];
        }
    }
    return gray;
}

}  // namespace qv::host
