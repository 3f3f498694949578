#include "Host/Clips/PictureFile.h"
#include "Host/Sheets/SheetDrawing.h"
#include "Host/Transition/TransitionOptions.h"
#include "Host/Transition/TransitionTimeline.h"

namespace qv::host {

namespace {

/// Progress must not fall from one call to the next.
Bitmap momentOf(TransitionTimeline& timeline, MTIContext& context, double progress) {
    const double time = timeline.start() + progress * timeline.seconds();
    const MTIImage outgoing = timeline.firstAt(time), incoming = timeline.secondAt(time);
    std::string cause;
    const Bitmap bitmap = context.renderToBitmap(timeline.outputImage(outgoing, incoming, progress), &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    return bitmap;
}

Bitmap stripOf(TransitionTimeline& timeline, MTIContext& context, int count) {
    std::vector<StripFrame> frames;
    for (int i = 0; i < count; ++i) {
        const double progress = double(i) / (count - 1);
        frames.push_back({progress, momentOf(timeline, context, progress)});
    }
    const Bitmap strip = drawStrip(frames, timeline.frame().size);
    if (!strip) fail(ExitCode::usage, "{} frames side by side are too wide; give a smaller --size", count);
    return strip;
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
        options.at ? momentOf(timeline, *context, *options.at) : stripOf(timeline, *context, options.strip);
    writePicture(bitmap, options.output, type);
    checkValidation(*context);
}

}  // namespace qv::host
