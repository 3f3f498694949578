#include <algorithm>

#include "Host/Footage.h"
#include "Host/PictureFile.h"
#include "Host/SheetDrawing.h"
#include "Host/TransitionCommand.h"
#include "Host/TransitionFilter.h"
#include "Platform/Drawing/BitmapCanvas.h"

namespace qv::host {

namespace {

constexpr double kGap = 8, kLabelHeight = 24;

/// The passage between two clips, moment by moment.
class Moments {
  public:
    Moments(const TransitionOptions& options, EffectChoice choice)
        : context_(options.device.makeContext()),
          seconds_(options.seconds()),
          first_(options.inputs[0], seconds_),
          second_(options.inputs[1], seconds_),
          fit_(options.fit),
          frame_(uprightShape(first_.video())),
          start_(std::max(0.0, first_.seconds() - seconds_)),
          filter_(std::move(choice),
                  {CMTimeMakeWithSeconds(start_, kTimescale), CMTimeMakeWithSeconds(seconds_, kTimescale)}) {
        if (options.size.empty()) return;
        const PixelSize size = parseSize(options.size);
        frame_ = {{double(size.width), double(size.height)}, 1};
    }

    void goTo(double progress) {
        first_.goTo(start_ + progress * seconds_);
        second_.goTo(progress * seconds_);
    }

    /// Progress must not fall.
    Bitmap render(double progress) {
        const MTIImage outgoing = shaped(first_, start_ + progress * seconds_);
        const MTIImage incoming = shaped(second_, progress * seconds_);
        std::string cause;
        const Bitmap bitmap =
            context_->renderToBitmap(filter_.outputImage(outgoing, incoming, progress), &cause);
        if (!bitmap) fail(ExitCode::device, "{}", cause);
        return bitmap;
    }

    const MTIContext& context() const { return *context_; }
    CGSize frameSize() const { return frame_.size; }

  private:
    static constexpr std::int32_t kTimescale = 90000;

    MTIImage shaped(Footage& footage, double seconds) {
        const MTIImage image = footage.imageAt(seconds);
        return fitted(image, uprightShape(footage.video()).pixelAspect, frame_, fit_);
    }

    std::shared_ptr<MTIContext> context_;
    double seconds_;
    Footage first_, second_;
    Fit fit_;
    FrameShape frame_;
    double start_;
    TransitionFilter filter_;
};

Bitmap drawStrip(Moments& moments, int count) {
    const CGSize frame = moments.frameSize();
    const double step = frame.width + kGap;
    BitmapCanvas canvas({step * count - kGap, frame.height + kLabelHeight}, true);
    if (!canvas) fail(ExitCode::usage, "{} frames side by side are too wide; give a smaller --size", count);
    canvas.fillRect({{0, 0}, canvas.size()}, kPaper);
    for (int i = 0; i < count; ++i) {
        const double progress = double(i) / (count - 1);
        const double x = step * i;
        canvas.drawImage(UIImage(moments.render(progress)), {{x, 0}, frame});
        const std::string label = fmt::format("{:.3g}", progress);
        canvas.drawText(label, {x + 4, frame.height + 3}, fittingFont(label, 15, frame.width), kInk);
    }
    return canvas.image().bitmap();
}

}  // namespace

void transitionPicture(const TransitionOptions& options) {
    EffectChoice choice = parseTransition(options.transition);
    const PictureType type = pictureTypeFor(options.output);
    checkOutput(options.output, options.overwrite);
    Moments moments(options, std::move(choice));
    moments.goTo(options.at.value_or(0));
    writePicture(options.at ? moments.render(*options.at) : drawStrip(moments, options.strip), options.output,
                 type);
    checkValidation(moments.context());
}

}  // namespace qv::host
