#include "Host/Gallery/GalleryScene.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <numbers>
#include <optional>

#include "Host/Clips/Footage.h"
#include "Host/Clips/PictureFile.h"
#include "Host/Sheets/SamplePicture.h"

namespace qv::host {

namespace {

/// By how much more than the window a picture is that the window drifts over.
constexpr double kDriftRoom = 1.1;

PixelSize withRoom(PixelSize size) {
    return {int(std::ceil(size.width * kDriftRoom)), int(std::ceil(size.height * kDriftRoom))};
}

FrameShape shapeOf(PixelSize size) {
    return {{double(size.width), double(size.height)}, 1};
}

Bitmap rendered(const MTIImage& image, MTIContext& context) {
    std::string cause;
    Bitmap bitmap = context.renderToBitmap(image, &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    return bitmap;
}

/// The part of a larger picture that is seen in a frame: its window goes once around in the preview's time.
Bitmap window(const Bitmap& picture, PixelSize size, int frame) {
    const double angle = 2 * std::numbers::pi * frame / kPreviewFrames;
    const int left = int(std::lround((picture.width - size.width) * (0.5 - 0.5 * std::cos(angle))));
    const int top = int(std::lround((picture.height - size.height) * (0.5 + 0.5 * std::sin(angle))));
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(size.width) * size.height * 4);
    const std::size_t rowBytes = std::size_t(size.width) * 4;
    for (int y = 0; y < size.height; ++y)
        std::memcpy(pixels->data() + std::size_t(y) * rowBytes, picture.row(top + y) + left * 4, rowBytes);
    return {size.width, size.height, std::move(pixels)};
}

Bitmap bitmapOfGray(const PixelBuffer& gray) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(gray.width()) * gray.height() * 4);
    std::uint8_t* out = pixels->data();
    for (int y = 0; y < gray.height(); ++y) {
        const std::uint8_t* row = gray.plane(0).data + std::size_t(y) * gray.plane(0).rowBytes;
        for (int x = 0; x < gray.width(); ++x, out += 4) {
            out[0] = out[1] = out[2] = row[x];
            out[3] = 255;
        }
    }
    return {gray.width(), gray.height(), std::move(pixels)};
}

/// A clip's frames, or a picture's under the drifting window.
class Take {
  public:
    Take(const std::string& path, PixelSize size, MTIContext& context)
        : size_(size), context_(context), footage_(std::in_place, path) {
        if (footage_->isPicture())
            picture_ = rendered(footage_->imageAt(0, shapeOf(withRoom(size)), Fit::cover), context);
    }
    Take(SampleLight light, PixelSize size, MTIContext& context) : size_(size), context_(context) {
        const PixelSize large = withRoom(size);
        picture_ = samplePicture(large.width, large.height, light);
    }

    bool drifts() const { return bool(picture_); }
    /// As it was read; nil for what is drawn here.
    FramePixels pixels(int index) {
        return footage_ ? footage_->pixelsAt(previewTime(index)) : FramePixels();
    }
    Bitmap frame(int index) {
        if (picture_) return window(picture_, size_, index);
        return rendered(footage_->imageAt(previewTime(index), shapeOf(size_), Fit::cover), context_);
    }

  private:
    PixelSize size_;
    MTIContext& context_;
    std::optional<Footage> footage_;
    Bitmap picture_;  ///< larger than the frames; nil for a clip
};

Take openTake(const GalleryFiles& files, std::size_t index, PixelSize size, MTIContext& context) {
    if (index < files.clips.size()) return Take(files.clips[index], size, context);
    return Take(index == 0 ? SampleLight::day : SampleLight::dusk, size, context);
}

/// Gives the subject's mask of each frame as a picture; empty when there is none. It moves as the first clip
/// does, which must outlive it.
std::function<Bitmap(int)> openMask(const GalleryFiles& files, Take& first, PixelSize size,
                                    MTIContext& context) {
    if (files.clips.empty()) {
        const PixelSize large = withRoom(size);
        return [size, mask = bitmapOfGray(sampleMask(large.width, large.height))](int frame) {
            return window(mask, size, frame);
        };
    }
    const std::shared_ptr<MaskSource> source = openMaskSource(files.mask, {}, writeNote);
    if (!source->maskOf(first.pixels(0), 0)) return {};
    return [source, size, &context, &first](int frame) {
        const FrameShape shape = shapeOf(first.drifts() ? withRoom(size) : size);
        const MTIImage mask = source->maskOf(first.pixels(frame), previewTime(frame)).image;
        const Bitmap picture = rendered(fitted(mask, 1, shape, Fit::cover), context);
        return first.drifts() ? window(picture, size, frame) : picture;
    };
}

}  // namespace

GalleryScene::GalleryScene(const GalleryFiles& files, PixelSize size, MTIContext& context) {
    Take first = openTake(files, 0, size, context), second = openTake(files, 1, size, context);
    const auto mask = openMask(files, first, size, context);
    for (int i = 0; i < kPreviewFrames; ++i) {
        FilterInputs inputs;
        inputs.first = MTIImage::imageWithBitmap(first.frame(i));
        inputs.second = MTIImage::imageWithBitmap(second.frame(i));
        if (mask) inputs.mask = SubjectMask::fromBuffer(grayFromPicture(mask(i)));
        inputs.originalSize = {double(size.width), double(size.height)};
        frames_.push_back(std::move(inputs));
    }
}

}  // namespace qv::host
