#include "Host/PictureFile.h"
#include "Host/SheetDrawing.h"
#include "Host/TransitionCommand.h"
#include "Host/TransitionTimeline.h"
#include "Platform/Drawing/BitmapCanvas.h"

namespace qv::host {

namespace {

constexpr double kGap = 8, kLabelHeight = 24;

/// Progress must not fall from one call to the next.
Bitmap momentOf(TransitionTimeline& timeline, MTIContext& context, double progress) {
    const double time = timeline.start() + progress * timeline.seconds();
    const MTIImage outgoing = timeline.firstAt(time), incoming = timeline.secondAt(time);
    std::string cause;
    const Bitmap bitmap = context.renderToBitmap(timeline.outputImage(outgoing, incoming, progress), &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    return bitmap;
}

Bitmap drawStrip(TransitionTimeline& timeline, MTIContext& context, int count) {
    const CGSize frame = timeline.frame().size;
    const double step = frame.width + kGap;
    BitmapCanvas canvas({step * count - kGap, frame.height + kLabelHeight}, true);
    if (!canvas) fail(ExitCode::usage, "{} frames side by side are too wide; give a smaller --size", count);
    canvas.fillRect({{0, 0}, canvas.size()}, kPaper);
    for (int i = 0; i < count; ++i) {
        const double progress = double(i) / (count - 1);
        const double x = step * i;
        canvas.drawImage(UIImage(momentOf(timeline, context, progress)), {{x, 0}, frame});
        const std::string label = fmt::format("{:.3g}", progress);
        canvas.drawText(label, {x + 4, frame.height + 3}, fittingFont(label, 15, frame.width), kInk);
    }
    return canvas.image().bitmap();
}

}  // namespace

void transitionPicture(const TransitionOptions& options) {
    const PictureType type = pictureTypeFor(options.output);
    TransitionTimeline timeline(options);
    checkOutput(options.output, options.overwrite);
    const auto context = options.device.makeContext();
    timeline.renderStills(*context);
    const double first = options.at.value_or(0) * timeline.seconds();
    timeline.first().goTo(timeline.start() + first);
    timeline.second().goTo(first);
    const Bitmap bitmap =
        options.at ? momentOf(timeline, *context, *options.at) : drawStrip(timeline, *context, options.strip);
    writePicture(bitmap, options.output, type);
    checkValidation(*context);
}

}  // namespace qv::host
