#include "Host/Clips/Footage.h"

#include "Host/Clips/PictureFile.h"
#include "Host/CommandLine/Failure.h"

namespace qv::host {

Footage::Footage(const std::string& path, const ClipReaderOptions& options) {
    if (path != "-" && !isPictureFile(path)) {
        take(openClip(path, options));
        return;
    }
    still_.picture = readPicture(path);
    picture_ = MTIImage::imageWithBitmap(still_.picture);
    video_.width = still_.picture.width;
    video_.height = still_.picture.height;
    shape_ = uprightShape(video_);
}

Footage::Footage(std::unique_ptr<ClipReader> clip) {
    take(std::move(clip));
}

Footage::Footage(const MTIImage& picture) : picture_(picture) {
    video_.width = int(picture.size().width);
    video_.height = int(picture.size().height);
    shape_ = uprightShape(video_);
}

void Footage::take(std::unique_ptr<ClipReader> clip) {
    frames_ = std::make_unique<ShownFrames>(std::move(clip));
    const ClipInfo& info = frames_->info();
    video_ = info.video;
    shape_ = uprightShape(video_);
    if (!info.isStillPicture) return;
    still_ = {.pixels = frames_->current().pixels, .rotation = video_.rotation};
    picture_ = turned(MTIImage::imageWithPixelBuffer(still_.pixels), video_.rotation);
    frames_.reset();
}

void Footage::goTo(double seconds) {
    if (frames_) frames_->goTo(seconds);
}

MTIImage Footage::imageAt(double seconds, const FrameShape& frame, Fit fit) {
    const MTIImage image =
        frames_ ? turned(MTIImage::imageWithPixelBuffer(frames_->at(seconds).pixels), video_.rotation)
                : picture_;
    return fitted(image, shape_.pixelAspect, frame, fit);
}

FramePixels Footage::pixelsAt(double seconds) {
    if (!frames_) return still_;
    return {.pixels = frames_->at(seconds).pixels, .rotation = video_.rotation};
}

void Footage::render(MTIContext& context, const FrameShape& frame, Fit fit) {
    if (!picture_) return;
    std::string cause;
    const Bitmap bitmap = context.renderToBitmap(imageAt(0, frame, fit), &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    picture_ = MTIImage::imageWithBitmap(bitmap);
    shape_ = frame;
}

}  // namespace qv::host
