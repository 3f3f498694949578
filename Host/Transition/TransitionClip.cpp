#include <algorithm>
#include <utility>

#include "Host/Clips/RenderPipeline.h"
#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/Transition/TransitionSource.h"

namespace qv::host {

namespace {

constexpr int kRateOfStills = 30;

/// The kind of the output: the first clip's; of a picture followed by a clip, that clip's with the picture's
/// size.
ClipVideoFormat outputFormat(const TransitionOptions& options, TransitionTimeline& timeline) {
    const Footage &first = timeline.first(), &second = timeline.second();
    const bool still = first.isPicture() && second.isPicture();
    ClipVideoFormat video = first.isPicture() ? second.video() : first.video();
    if (still) video = {};
    if (first.isPicture() || !options.size.empty()) {
        const CGSize size = timeline.frame().size;
        video.width = int(size.width);
        video.height = int(size.height);
        video.pixelAspect = {1, 1};
        video.rotation = 0;
        video.displayMatrix.reset();
    }
    if (still) video.timeBase = {1, kRateOfStills};
    if (video.averageFrameRate.value() <= 0) video.averageFrameRate = video.realFrameRate;
    if (video.averageFrameRate.value() <= 0) video.averageFrameRate = {kRateOfStills, 1};
    return video;
}

struct Sound {
    std::unique_ptr<AudioCrossfade> mix;  ///< nil when neither clip has any
    AudioFormat format;
};

/// Time stamp of the first frame, where the clip's sound begins to count.
double originOf(ShownFrames& frames) {
    return secondsOf(frames.info(), frames.firstTime());
}

/// The sound of both, at the first one's rate and layout if it has any.
Sound openSound(TransitionTimeline& timeline) {
    const auto open = [](Footage& footage) -> std::unique_ptr<AudioReader> {
        if (footage.isPicture()) return nullptr;
        std::string cause;
        auto reader = AudioReader::open(footage.path(), &cause);
        if (!cause.empty()) fail(ExitCode::input, "{}", cause);
        return reader;
    };
    auto first = open(timeline.first()), second = open(timeline.second());
    if (!first && !second) return {};
    Sound sound{nullptr, first ? first->format() : second->format()};
    const auto convert = [&](const std::unique_ptr<AudioReader>& reader, Footage& footage) {
        if (reader && !reader->convertTo(sound.format, originOf(*footage.frames()))) {
            fail(ExitCode::input, "the sound of '{}' cannot be converted", footage.path());
        }
    };
    convert(first, timeline.first());
    convert(second, timeline.second());
    const AudioCrossfade::Span span{timeline.start(), timeline.first().seconds(), timeline.end()};
    sound.mix = std::make_unique<AudioCrossfade>(std::move(first), std::move(second), sound.format, span);
    return sound;
}

/// What of the clips does not come into the output.
void noteLosses(const TransitionOptions& options, TransitionTimeline& timeline) {
    for (Footage* footage : {&timeline.first(), &timeline.second()}) {
        if (footage->isPicture()) continue;
        int sounds = 0, subtitles = 0;
        for (const ClipStream& stream : footage->frames()->info().streams) {
            sounds += stream.kind == ClipStreamKind::audio;
            subtitles += stream.kind == ClipStreamKind::subtitle;
        }
        if (sounds > 1 && options.encoding.audio()) {
            options.encoding.note(
                fmt::format("'{}': only one of its {} sound tracks is taken", footage->path(), sounds));
        }
        if (subtitles > 0)
            options.encoding.note(fmt::format("'{}': subtitles are left out", footage->path()));
    }
    const auto transfer = [](const Footage& footage) { return footage.video().tags.transfer; };
    const int from = transfer(timeline.second()), to = transfer(timeline.first());
    constexpr int kUnspecified = 2;
    if (from != to && from != kUnspecified && to != kUnspecified) {
        options.encoding.note(fmt::format("'{}' has another transfer curve than '{}'; it is not converted",
                                          timeline.second().path(), timeline.first().path()));
    }
}

/// Compiles what the transition needs, so that its first frame does not stutter.
void warmUp(MTIContext& context, TransitionTimeline& timeline, FrameSource& source) {
    SourceFrame frame;
    frame.outgoing = timeline.firstAt(0);
    frame.incoming = timeline.secondAt(timeline.start());
    for (const double progress : {0.1, 0.5, 0.9}) {
        frame.progress = progress;
        context.prepare(source.picture(frame));
    }
}

}  // namespace

void transitionClip(const TransitionOptions& options) {
    ClipWriterOptions writing = options.encoding.writerOptions(options.output);
    auto timeline = std::make_unique<TransitionTimeline>(options);
    options.encoding.checkOutput(options.output, options.overwrite);

    OutputFrames output{outputFormat(options, *timeline)};
    Sound sound;
    if (options.encoding.audio()) sound = openSound(*timeline);
    writing.sound = sound.format;
    writing.audio = writing.subtitles = false;
    noteLosses(options, *timeline);

    RenderPipeline::Parts parts;
    parts.size = {output.video.width, output.video.height};
    const DeferInterrupts defer;
    const ShownFrames* frames = timeline->first().frames();
    parts.writer = options.encoding.makeWriter(options.output, output.video, writing,
                                               frames ? frames->streams() : nullptr);
    output.format = parts.writer->frameFormat();
    output.color = parts.writer->frameColor();
    parts.context = options.device.makeContext(workingFormat(output.video, *parts.writer));
    timeline->renderStills(*parts.context);
    TransitionTimeline& scene = *timeline;
    auto source = std::make_unique<TransitionSource>(std::move(timeline), output, std::move(sound.mix));
    warmUp(*parts.context, scene, *source);

    Progress progress(options.encoding.progress(), source->frameCountEstimate(), "frames");
    parts.source = std::move(source);
    const auto context = parts.context;
    RenderPipeline(std::move(parts)).run([&](std::int64_t count, double seconds) {
        progress.advance(count, seconds);
    });
    progress.finish();
    checkValidation(*context);
}

}  // namespace qv::host
