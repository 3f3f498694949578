#include "Host/Edit/EditExport.h"

#include <cmath>
#include <utility>

#include "Host/Clips/RenderPipeline.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/Edit/EditSound.h"
#include "Host/Edit/EditSource.h"

namespace qv::host {

namespace {

/// What is told of the input's format holds for the one clip of a project, not for its mask.
ReadingOptions readingOf(const EncodingOptions& encoding, const Project& project) {
    const ProjectClip only = project.clips.size() == 1 ? project.clips.front() : ProjectClip{};
    return [encoding, path = only.path, mask = only.mask](const std::string& file) {
        return file == path ? encoding.inputOptions(path, mask) : encoding.readerOptions(file);
    };
}

/// What the writer is to know of the sound, which is copied, mixed here, or left out.
std::unique_ptr<AudioMix> soundOf(const EditTimeline& timeline, const EditOutput& output,
                                  ClipWriterOptions& writing) {
    const bool isCopied = timeline.isWholeClip();
    writing.subtitles = isCopied && output.subtitles;
    const ProjectClip& first = timeline.clips()[0].clip;
    writing.chapters = !first.from && !first.to && !first.duration;
    if (isCopied || !output.encoding.audio()) return nullptr;
    writing.audio = false;
    auto sound = openSound(timeline);
    if (sound) writing.sound = sound->format();
    return sound;
}

}  // namespace

ExportSetup setUpExport(const Project& project, const EditOutput& output) {
    ExportSetup setup;
    setup.writing = output.encoding.writerOptions(output.path);
    Mistakes mistakes;
    setup.timeline = std::make_unique<EditTimeline>(project, readingOf(output.encoding, project),
                                                    EditPurpose::clip, mistakes);
    mistakes.check();
    setup.note = [encoding = output.encoding](const std::string& line) { encoding.note(line); };
    for (const std::string& line : setup.timeline->losses()) setup.note(line);
    setup.timeline->begin();
    setup.sound = soundOf(*setup.timeline, output, setup.writing);
    setup.streams = setup.timeline->streams();
    return setup;
}

std::string runExport(ExportSetup setup, const EditOutput& output, const ExportProgress& told,
                      const EditSpan& span) {
    EditTimeline& timeline = *setup.timeline;
    RenderPipeline::Parts parts;
    const ClipVideoFormat video = timeline.video();
    parts.size = {video.width, video.height};
    const bool isEndless = timeline.end() >= kUnlimited;
    const std::int64_t whole = isEndless ? 0 : std::llround(timeline.end() * timeline.rate());
    const std::int64_t total = span.count < EditSpan::kAll ? span.count : whole;
    const DeferInterrupts defer;
    parts.writer = output.encoding.makeWriter(output.path, video, setup.writing, std::move(setup.streams));
    parts.context = output.device.makeContext(workingFormat(video, *parts.writer),
                                              MTIFusion::beforeFirstFrame, output.encoding.threads());
    const EncodedFrames encoded{parts.writer->frameFormat(), parts.writer->frameColor()};
    auto source = std::make_unique<EditSource>(std::move(setup.timeline), encoded, *parts.context,
                                               std::move(setup.sound), std::move(setup.note), span);
    source->prepare(*parts.context);
    parts.source = std::move(source);

    Progress progress(told ? ProgressStyle::none : output.encoding.progress(), total, "frames");
    const auto context = parts.context;
    RenderPipeline(std::move(parts)).run([&](std::int64_t frames, double seconds) {
        told ? told(frames, total, seconds) : progress.advance(frames, seconds);
    });
    progress.finish();
    checkValidation(*context);
    return context->device().name;
}

void exportProject(const Project& project, const EditOutput& output, const ExportProgress& told) {
    output.encoding.checkOutput(output.path, output.overwrite);
    runExport(setUpExport(project, output), output, told);
}

}  // namespace qv::host
