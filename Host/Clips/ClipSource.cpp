#include "Host/Clips/ClipSource.h"

#include "Host/CommandLine/Failure.h"

namespace qv::host {

ClipEffects::ClipEffects(std::vector<EffectChoice> choices, const ClipInfo& info, double seconds,
                         std::unique_ptr<MaskSource> mask)
    : chain_(std::move(choices), {.time = 0.0,
                                  .startTime = 0.0,
                                  .endTime = seconds > 0 ? std::optional(seconds) : std::nullopt,
                                  .isPhoto = info.isStillPicture}),
      mask_(std::move(mask)),
      rotation_(info.video.rotation) {}

MTIImage ClipEffects::outputImage(const PixelBuffer& frame, double seconds) {
    FilterInputs inputs;
    inputs.first = turned(MTIImage::imageWithPixelBuffer(frame), rotation_);
    inputs.originalSize = inputs.first.size();
    if (chain_.takesMask()) {
        inputs.mask = mask_->maskOf({.pixels = frame, .rotation = rotation_}, seconds);
        lacksSubject_ = !inputs.mask;
    }
    chain_.moveTo(seconds);
    return turned(chain_.outputImage(inputs), (360 - rotation_) % 360);
}

ClipSource::ClipSource(std::unique_ptr<ClipReader> reader, std::unique_ptr<ClipEffects> effects,
                       std::int64_t timesEachFrame)
    : reader_(std::move(reader)), effects_(std::move(effects)), timesEachFrame_(timesEachFrame) {}

FrameSource::Item ClipSource::next() {
    if (timesLeft_ == 0) {
        ClipReader::Item item = reader_->next();
        if (auto* packet = std::get_if<ClipPacket>(&item)) return std::move(*packet);
        auto* frame = std::get_if<ClipFrame>(&item);
        if (!frame) {
            if (!reader_->error().empty()) fail(ExitCode::input, "{}", reader_->error());
            return {};
        }
        repeated_ = std::move(*frame);
        timesLeft_ = timesEachFrame_;
    }
    if (!firstTime_) firstTime_ = repeated_.time;
    SourceFrame result{repeated_, secondsOf(reader_->info(), repeated_.time - *firstTime_)};
    repeated_.time += repeated_.duration;
    if (--timesLeft_ == 0) repeated_.pixels = {};
    return result;
}

MTIImage ClipSource::picture(const SourceFrame& frame) {
    return effects_->outputImage(frame.frame.pixels, frame.seconds);
}

}  // namespace qv::host
