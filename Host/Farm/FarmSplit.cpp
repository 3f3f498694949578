#include "Host/Farm/FarmSplit.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "Host/Farm/FarmIdentity.h"
#include "QVFilterExtension/QVFilterVersion.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

/// A border moves by this share of a part at most.
constexpr int kPartsOfAMove = 8;

/// Containers that hold copies of what another one held, and their files' extensions.
const std::map<std::string, const char*> kContainers{
    {"mp4", "mp4"}, {"mov", "mov"}, {"matroska", "mkv"}, {"webm", "webm"}};

/// What would not be the same in every part.
void refuseWhatDependsOnMore(const Project& project) {
    const auto isPiped = [](const ProjectClip& clip) { return clip.path == "-" || clip.mask == "-"; };
    if (std::ranges::any_of(project.clips, isPiped) || (project.sound && project.sound->path == "-"))
        fail(ExitCode::usage, "a project that reads standard input cannot be split");
    for (const ProjectClip& clip : project.clips) {
        const bool takesMask = std::ranges::any_of(clip.effects, [](const ProjectEffect& effect) {
            return effect.choice.filterClass->input(QVInputRole::mask) != nullptr;
        });
        if (takesMask && clip.mask == kAutomaticMask)
            fail(
                ExitCode::usage,
                "'{}': masks that are found depend on the frames before; make them a file with qvfilter mask "
                "to split this project",
                clip.path);
    }
}

/// Where a transition is under way, in frames: its first and the first after it.
using Overlap = std::pair<std::int64_t, std::int64_t>;

std::vector<Overlap> overlapsOf(const EditTimeline& timeline, const EditFrames& frames) {
    std::vector<Overlap> overlaps;
    const auto frameAt = [&](double seconds) {
        if (seconds < frames.slotsBegin || frames.own == frames.count) {
            const auto found = std::ranges::lower_bound(frames.ownSeconds, seconds - kTimeTolerance);
            if (found != frames.ownSeconds.end()) return std::int64_t(found - frames.ownSeconds.begin());
        }
        const double slots = (seconds - frames.slotsBegin) * timeline.rate();
        return frames.own + std::int64_t(std::ceil(slots - 0.01));
    };
    for (const TimelineClip& clip : timeline.clips()) {
        if (clip.lead > 0) overlaps.emplace_back(frameAt(clip.start), frameAt(clip.start + clip.lead));
    }
    return overlaps;
}

std::vector<std::int64_t> bordersOf(const EditTimeline& timeline, const EditFrames& frames, int parts) {
    const std::vector<Overlap> overlaps = overlapsOf(timeline, frames);
    const std::int64_t farthest = frames.count / parts / kPartsOfAMove;
    std::vector<std::int64_t> borders{0};
    for (int i = 1; i < parts; ++i) {
        std::int64_t border = frames.count * i / parts;
        for (const auto& [begin, end] : overlaps) {
            if (border <= begin || border >= end) continue;
            const std::int64_t nearest = border - begin < end - border ? begin : end;
            if (std::abs(nearest - border) <= farthest) border = nearest;
            break;
        }
        borders.push_back(border);
    }
    borders.push_back(frames.count);
    return borders;
}

FarmPart partOf(const SplitJob& job, int index, const std::string& file) {
    const std::string project = shellWord(fs::absolute(job.request.file).lexically_normal().string());
    const std::string output = shellWord((fs::absolute(job.folder).lexically_normal() / file).string());
    return {.index = index,
            .file = file,
            .command = fmt::format("qvfilter edit {} --span {} -o {}", project, index, output)};
}

}  // namespace

FarmPlan makePlan(const SplitJob& job) {
    if (job.request.file == "-") fail(ExitCode::usage, "a project on standard input cannot be split");
    EditOutput output = job.request.output;
    output.path = (job.folder / "film").string();
    const Project project = job.request.project();
    refuseWhatDependsOnMore(project);
    ExportSetup setup = setUpExport(project, output);
    if (setup.writing.container.empty()) setup.writing.container = "mp4";
    const auto container = kContainers.find(setup.writing.container);
    if (container == kContainers.end())
        fail(ExitCode::usage, "a film in parts is mp4, mov, matroska or webm, not {}",
             setup.writing.container);
    EditTimeline& timeline = *setup.timeline;
    const EditFrames frames = framesOf(timeline);
    if (frames.count < job.parts)
        fail(ExitCode::usage, "there are {} frames for {} parts", frames.count, job.parts);
    const auto writer =
        output.encoding.makeWriter(output.path, timeline.video(), setup.writing, setup.streams);

    FarmPlan plan{.tool = QV_FILTER_VERSION,
                  .resources = resourcesHash(),
                  .projectFile = fs::absolute(job.request.file).lexically_normal().string(),
                  .project = projectHash(project),
                  .words = job.words,
                  .container = container->first,
                  .codec = writer->codecName(),
                  .pixelFormat = writer->storedPixelFormat(),
                  .settings = {},
                  .rate = rateText(timeline.video().averageFrameRate),
                  .size = fmt::format("{}x{}", timeline.video().width, timeline.video().height),
                  .frames = frames.count,
                  .ownFrames = frames.own,
                  .slotsBegin = frames.slotsBegin,
                  .end = frames.end};
    Hasher settings;
    for (const std::string& word : plan.words) settings.add(word);
    plan.settings = settings.add(plan.container).add(plan.codec).add(plan.pixelFormat).text();
    const std::vector<std::int64_t> borders = bordersOf(timeline, frames, job.parts);
    for (int i = 0; i < job.parts; ++i) {
        FarmPart& part = plan.parts.emplace_back(partOf(job, i, fmt::format("part_{:03}.mkv", i)));
        part.start = borders[std::size_t(i)];
        part.frames = borders[std::size_t(i) + 1] - part.start;
        part.seconds = frames.secondsAt(timeline, part.start);
    }
    if (setup.sound) {
        FarmPart& part =
            plan.parts.emplace_back(partOf(job, job.parts, fmt::format("sound.{}", container->second)));
        part.isSound = true;
        part.frames = frames.count;
    }
    return plan;
}

}  // namespace qv::host
