#include "Host/Clips/MaskSource.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Host/Clips/Clip.h"
#include "Host/Clips/PersonMasks.h"
#include "Host/Clips/PictureFile.h"

#include <fmt/format.h>

namespace qv::host {

namespace {

/// By how much the shapes of a mask and of its frames may differ before the mask is made to fit: sides that
/// were rounded to even numbers are no other shape.
constexpr double kSameShape = 0.02;

/// Stretched; linear between the pixels.
PixelBuffer stretched(const PixelBuffer& gray, int width, int height) {
    PixelBuffer result = PixelBuffer::create(PixelFormat::gray8, width, height);
    if (!result) return gray;
    const auto place = [](int index, int from, int to) {
        return std::clamp((index + 0.5) * from / to - 0.5, 0.0, from - 1.0);
    };
    for (int y = 0; y < height; ++y) {
        const double atY = place(y, gray.height(), height);
        const int top = int(atY), bottom = std::min(top + 1, gray.height() - 1);
        const std::uint8_t* upper = gray.plane(0).data + std::size_t(top) * gray.plane(0).rowBytes;
        const std::uint8_t* lower = gray.plane(0).data + std::size_t(bottom) * gray.plane(0).rowBytes;
        for (int x = 0; x < width; ++x) {
            const double atX = place(x, gray.width(), width);
            const int left = int(atX), right = std::min(left + 1, gray.width() - 1);
            const double above = std::lerp(upper[left], upper[right], atX - left);
            const double below = std::lerp(lower[left], lower[right], atX - left);
            result.plane(0).data[std::size_t(y) * result.plane(0).rowBytes + std::size_t(x)] =
                std::uint8_t(std::lround(std::lerp(above, below, atY - top)));
        }
    }
    return result;
}

/// Masks from a file, made to fit their frames.
class FileMask : public MaskSource {
  public:
    SubjectMask maskOf(const FramePixels& frame, double seconds) override {
        const bool moved = show(seconds);
        if (moved || frame.size() != shape_) {
            shape_ = frame.size();
            current_ = SubjectMask::fromBuffer(fitted());
        }
        return current_;
    }

  protected:
    FileMask(std::string path, NoteSink note) : path_(std::move(path)), note_(std::move(note)) {}

    /// Makes `mask` the one shown at that time; false when it is the last one still.
    virtual bool show(double seconds) = 0;
    /// The first time only.
    void note(const std::string& line) {
        if (!std::exchange(noted_, true)) note_(fmt::format("the mask '{}' {}", path_, line));
    }

    PixelBuffer mask_;  ///< as it came

  private:
    PixelBuffer fitted() {
        const double from = double(mask_.width()) / mask_.height(), to = shape_.width / shape_.height;
        if (std::abs(from / to - 1) <= kSameShape) return mask_;
        note(fmt::format("has another shape than its frames: {}x{} is stretched over {}x{}", mask_.width(),
                         mask_.height(), shape_.width, shape_.height));
        const auto side = [](double length) {
            return std::clamp(int(std::lround(length)), 1, kMaximumImageSide);
        };
        return from < to ? stretched(mask_, side(mask_.height() * to), mask_.height())
                         : stretched(mask_, mask_.width(), side(mask_.width() / to));
    }

    std::string path_;
    NoteSink note_;
    bool noted_ = false;
    CGSize shape_;
    SubjectMask current_;
};

class PictureMask : public FileMask {
  public:
    PictureMask(const std::string& path, const NoteSink& note) : FileMask(path, note) {
        mask_ = grayFromPicture(readPicture(path));
    }

  private:
    bool show(double) override { return false; }
};

class ClipMask : public FileMask {
  public:
    ClipMask(const std::string& path, const ClipReaderOptions& options, const NoteSink& note)
        : FileMask(path, note), frames_(openClip(path, options)) {}

  private:
    bool show(double seconds) override {
        frames_.near(seconds);
        const ClipFrame& frame = frames_.at(seconds);
        const ClipInfo& info = frames_.info();
        if (frames_.hasEnded(seconds) && !info.isStillPicture)
            note("ends before its frames do; its last picture is held");
        if (mask_ && frame.time == shownTime_) return false;
        mask_ = turnedGray(grayFromFrame(frame.pixels), info.video.rotation);
        shownTime_ = frame.time;
        return true;
    }

    ShownFrames frames_;
    std::int64_t shownTime_ = 0;
};

/// Each frame's own alpha.
class AlphaMask : public MaskSource {
  public:
    SubjectMask maskOf(const FramePixels& frame, double) override {
        if (frame.picture) return SubjectMask::fromAlpha(frame.picture);
        const SubjectMask mask = SubjectMask::fromAlpha(frame.pixels);
        if (!mask || frame.rotation == 0) return mask;
        return SubjectMask::fromBuffer(turnedGray(mask.buffer, frame.rotation));
    }
};

}  // namespace

CGSize FramePixels::size() const {
    if (picture) return {double(picture.width), double(picture.height)};
    const CGSize stored{double(pixels.width()), double(pixels.height())};
    return rotation % 180 == 0 ? stored : CGSize{stored.height, stored.width};
}

std::unique_ptr<MaskSource> openMaskSource(const std::string& path, const ClipReaderOptions& options,
                                           const NoteSink& note) {
    if (path.empty()) return std::make_unique<AlphaMask>();
    if (path == kAutomaticMask) return openPersonMaskSource();
    if (path == "-" || isPictureFile(path)) return std::make_unique<PictureMask>(path, note);
    return std::make_unique<ClipMask>(path, options, note);
}

std::string unknownSubject(const std::string& input) {
    return fmt::format("no subject is known: there is no --mask, and '{}' has no alpha channel", input);
}

}  // namespace qv::host
