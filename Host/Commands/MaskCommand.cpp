#include <deque>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Host/Clips/Clip.h"
#include "Host/Clips/EncodingOptions.h"
#include "Host/Clips/PersonMasks.h"
#include "Host/Clips/PictureFile.h"
#include "Host/Clips/RenderPipeline.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/CommandLine/Progress.h"
#ifdef QV_PERSON_MASK
#include "QVPersonMask/PersonMaskSequence.h"
#endif

namespace qv::host {

namespace {

struct Options {
    std::string input, output, model;
    EncodingOptions encoding;
    OverwriteOptions overwrite;
};

#ifdef QV_PERSON_MASK

Bitmap bitmapOf(const PixelBuffer& gray) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>();
    pixels->reserve(std::size_t(gray.width()) * std::size_t(gray.height()) * 4);
    for (int y = 0; y < gray.height(); ++y) {
        const std::uint8_t* row = gray.plane(0).data + std::size_t(y) * gray.plane(0).rowBytes;
        for (int x = 0; x < gray.width(); ++x) pixels->insert(pixels->end(), {row[x], row[x], row[x], 255});
    }
    return {gray.width(), gray.height(), std::move(pixels)};
}

void maskPicture(const Options& options) {
    const PictureType type = pictureTypeFor(options.output);
    checkOutput(options.output, options.overwrite);
    const auto people = openPersonMask(options.model);
    std::string cause;
    const PixelBuffer mask = people->maskOf(readPicture(options.input), &cause);
    if (!mask) fail(ExitCode::internal, "'{}': {}", options.input, cause);
    writePicture(bitmapOf(mask), options.output, type);
}

/// The masks of a clip's frames, with the frames' times.
class MaskFrames : public FrameSource {
  public:
    MaskFrames(std::unique_ptr<ClipReader> clip, std::shared_ptr<PersonMask> people)
        : clip_(std::move(clip)), masks_(std::move(people), PersonMaskSequence::kReach) {}

    /// How the masks are encoded: as luma of full range, lying like the clip's frames.
    static ClipVideoFormat formatFor(ClipVideoFormat video) {
        video.pixelFormat = PixelFormat::i420;
        video.color.fullRange = video.tags.rangeIsKnown = true;
        video.hasAlpha = false;
        video.bitDepth = 8;
        return video;
    }

    Item next() override {
        while (!masks_.hasMask()) {
            std::optional<ClipFrame> frame = readFrame(*clip_);
            if (!frame) {
                masks_.finish();
                if (!masks_.hasMask()) return {};
                break;
            }
            std::string cause;
            if (!masks_.add(frame->pixels, clip_->info().video.rotation, &cause))
                fail(ExitCode::internal, "'{}': {}", clip_->info().path, cause);
            frame->pixels = {};
            times_.push_back(*frame);
        }
        std::string cause;
        const PixelBuffer mask = masks_.takeMask(&cause);
        if (!mask) fail(ExitCode::internal, "'{}': {}", clip_->info().path, cause);
        SourceFrame result{times_.front()};
        times_.pop_front();
        if (!firstTime_) firstTime_ = result.frame.time;
        result.seconds = secondsOf(clip_->info(), result.frame.time - *firstTime_);
        result.frame.pixels = withoutColour(mask);
        return result;
    }

    MTIImage picture(const SourceFrame&) override { return {}; }

  private:
    /// The mask as luma, without a copy.
    PixelBuffer withoutColour(const PixelBuffer& mask) {
        const PlaneLayout chroma =
            PixelBuffer::planeLayout(PixelFormat::i420, 1, mask.width(), mask.height());
        const std::size_t bytes = std::size_t(chroma.width) * std::size_t(chroma.height);
        if (!middle_ || middle_->size() != bytes)
            middle_ = std::make_shared<std::vector<std::uint8_t>>(bytes, std::uint8_t(128));
        const PixelBuffer::Plane middle{middle_->data(), std::size_t(chroma.width)};
        const ColorDescription color = formatFor(clip_->info().video).color;
        return PixelBuffer::wrap(
            PixelFormat::i420, mask.width(), mask.height(), color, {mask.plane(0), middle, middle},
            std::make_shared<const std::pair<PixelBuffer, decltype(middle_)>>(mask, middle_));
    }

    std::unique_ptr<ClipReader> clip_;
    PersonMaskSequence masks_;
    std::deque<ClipFrame> times_;  ///< of the frames whose masks are still to come, without pixels
    std::optional<std::int64_t> firstTime_;
    std::shared_ptr<std::vector<std::uint8_t>> middle_;
};

void maskClip(const Options& options) {
    ClipWriterOptions writing = options.encoding.writerOptions(options.output);
    writing.lossless = true;
    writing.metadata = false;
    options.encoding.checkOutput(options.output, options.overwrite);
    const auto people = openPersonMask(options.model);
    auto reader = openClip(options.input, options.encoding.inputOptions(options.input));
    const ClipVideoFormat video = MaskFrames::formatFor(reader->info().video);
    const std::int64_t frames = reader->info().frameCountEstimate;

    RenderPipeline::Parts parts;
    parts.size = {video.width, video.height};
    const DeferInterrupts defer;
    parts.writer = options.encoding.makeWriter(options.output, video, writing, nullptr);
    parts.source = std::make_unique<MaskFrames>(std::move(reader), people);
    Progress progress(options.encoding.progress(), frames, "frames");
    RenderPipeline(std::move(parts)).run([&](std::int64_t done, double seconds) {
        progress.advance(done, seconds);
    });
    progress.finish();
}

void mask(const Options& options) {
    isPictureFile(options.input) ? maskPicture(options) : maskClip(options);
}

#else

void mask(const Options& options) {
    openPersonMask(options.model);
}

#endif

}  // namespace

void addMaskCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("mask", "Finds the people in a clip or a picture: a mask for --mask");
    auto options = std::make_shared<Options>();
    command.option("-i,--input", options->input, "Video or picture file, or - for a clip on standard input")
        .required();
    command
        .option("-o,--output", options->output,
                "Video file, PNG or JPEG for a picture's, or - for standard output")
        .required();
    command.option("--model", options->model, "The network's file; where qvfilter-fetch-person-model put it");
    options->encoding.add(command, false);
    options->encoding.addInputFormat(command);
    options->overwrite.add(command);
    command.setAction([options] { mask(*options); });
}

}  // namespace qv::host
