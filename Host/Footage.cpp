#include "Host/Footage.h"

#include "Host/PictureFile.h"

namespace qv::host {

Footage::Footage(const std::string& path, double stillSeconds, const ClipReaderOptions& options)
    : path_(path) {
    if (path == "-" || isPictureFile(path)) {
        const Bitmap bitmap = readPicture(path);
        picture_ = MTIImage::imageWithBitmap(bitmap);
        video_.width = bitmap.width;
        video_.height = bitmap.height;
        video_.pixelFormat = PixelFormat::rgba8;
        seconds_ = stillSeconds;
        return;
    }
    frames_ = std::make_unique<ShownFrames>(openClip(path, options));
    const ClipInfo& info = frames_->info();
    video_ = info.video;
    if (!info.isStillPicture) {
        seconds_ = frames_->end();
        return;
    }
    seconds_ = stillSeconds;
    picture_ = turned(MTIImage::imageWithPixelBuffer(frames_->at(0).pixels), video_.rotation);
    frames_.reset();
}

void Footage::goTo(double seconds) {
    if (frames_) frames_->goTo(seconds);
}

MTIImage Footage::imageAt(double seconds) {
    if (picture_) return picture_;
    const ClipFrame& frame = frames_->at(seconds);
    if (!shown_ || shownTime_ != frame.time) {
        shown_ = turned(MTIImage::imageWithPixelBuffer(frame.pixels), video_.rotation);
        shownTime_ = frame.time;
    }
    return shown_;
}

}  // namespace qv::host
