#include "Host/Farm/FarmPartRender.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <system_error>

#include "Host/CommandLine/Interrupt.h"
#include "Host/Farm/FarmFolder.h"
#include "Host/Farm/FarmIdentity.h"
#include "Platform/Media/PacketReader.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

/// Samples of a piece of sound.
constexpr std::int64_t kSoundPiece = 4096;

/// A file that nobody else writes, and that is gone in the end.
struct Draft {
    explicit Draft(const fs::path& target)
        : path(fmt::format("{}.{}-{}", target.string(), hostName(), ::getpid())) {}
    ~Draft() {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;
    std::string path;
};

class PartRender {
  public:
    PartRender(const FarmPlan& plan, const FarmPart& part, EditRequest request, const Project& project)
        : plan_(plan), part_(part), request_(std::move(request)), project_(project) {}

    PartRecord run(const std::string& path, ProgressFile& progress) {
        request_.output.path = path;
        record_.plan = plan_.hash();
        record_.settings = plan_.settings;
        record_.host = hostName();
        part_.isSound ? renderSound(progress) : renderPictures(progress);
        inspect(path);
        record_.seconds = progress.seconds();
        record_.attempts = progress.attempts();
        return record_;
    }

  private:
    void renderPictures(ProgressFile& progress) {
        ExportSetup setup = setUpExport(project_, request_.output);
        setup.sound = nullptr;
        setup.streams = nullptr;
        setup.writing.sound = {};
        setup.writing.audio = setup.writing.subtitles = false;
        setup.writing.container = "matroska";
        setup.writing.meantFor = plan_.container;
        EditSpan span{.first = part_.start,
                      .count = part_.frames,
                      .seconds = part_.seconds,
                      .own = plan_.ownFrames,
                      .slotsBegin = plan_.slotsBegin};
        FrameTimes& frames = record_.frames;
        span.onFrame = [&](std::int64_t time, std::int64_t duration) {
            frames.times.push_back(time);
            frames.end = time + duration;
        };
        Progress bar(request_.output.encoding.progress(), part_.frames, "frames");
        const auto told = [&](std::int64_t done, std::int64_t, double seconds) {
            progress.advance(done);
            bar.advance(done, seconds);
        };
        record_.device = runExport(std::move(setup), request_.output, told, span);
        bar.finish();
        if (std::int64_t(frames.times.size()) != part_.frames)
            fail(ExitCode::input, "part {} has {} frames in place of {}: a clip ends before its file says so",
                 part_.index, frames.times.size(), part_.frames);
    }

    void renderSound(ProgressFile& progress) {
        ExportSetup setup = setUpExport(project_, request_.output);
        if (!setup.sound) fail(ExitCode::input, "this project has no sound");
        setup.writing.container = setup.writing.meantFor = plan_.container;
        const DeferInterrupts defer;
        const ClipVideoFormat none{};
        const auto writer =
            request_.output.encoding.makeWriter(request_.output.path, none, setup.writing, nullptr);
        const int rate = setup.sound->format().sampleRate;
        const std::int64_t end = std::llround(plan_.end * rate);
        while (const std::int64_t left = end - setup.sound->position()) {
            checkInterrupt();
            const AudioSamples samples = setup.sound->read(std::min(left, kSoundPiece));
            if (samples.empty()) fail(ExitCode::input, "{}", setup.sound->error());
            if (!writer->write(samples)) fail(ExitCode::output, "{}", writer->error());
            progress.advance(part_.frames * setup.sound->position() / end);
        }
        if (!writer->finish()) fail(ExitCode::output, "{}", writer->error());
        record_.sound = writer->soundSpan();
    }

    /// What joining needs to know of the file.
    void inspect(const std::string& path) {
        std::string cause;
        const auto reader = PacketReader::open(path, &cause);
        if (!reader) fail(ExitCode::output, "{}", cause);
        record_.decoder =
            reader->decoderConfiguration(part_.isSound ? reader->soundStream() : reader->videoStream());
        std::vector<std::int64_t> times;
        while (const auto packet = reader->next()) {
            if (times.empty() && !packet->isKey)
                fail(ExitCode::internal, "part {} does not begin with a key frame", part_.index);
            times.push_back(packet->time);
        }
        if (!reader->error().empty()) fail(ExitCode::output, "{}", reader->error());
        if (!part_.isSound) setDelay(times);
        record_.size = std::int64_t(fs::file_size(path));
        record_.bytes = fileHash(path);
    }

    void setDelay(const std::vector<std::int64_t>& times) {
        if (std::int64_t(times.size()) != part_.frames)
            fail(ExitCode::internal, "{} made {} packets of {} frames", plan_.codec, times.size(),
                 part_.frames);
        std::vector<std::int64_t> shown = times;
        std::ranges::sort(shown);
        for (std::size_t i = 0; i < times.size(); ++i) {
            const auto place = std::ranges::lower_bound(shown, times[i]) - shown.begin();
            record_.delay = std::max(record_.delay, std::int64_t(i) - place);
        }
    }

    const FarmPlan& plan_;
    const FarmPart& part_;
    EditRequest request_;
    const Project& project_;
    PartRecord record_;
};

/// Puts a part in its place with its record, unless another process was faster.
void putInPlace(const FarmPlan& plan, const FarmPart& part, const std::string& from, const fs::path& to,
                const PartRecord& record) {
    const FolderLock lock(to.parent_path());
    PartRecord other;
    if (partMistake(plan, part, to, other).empty()) return;
    std::error_code error;
    fs::remove(recordPath(to), error);
    fs::rename(from, to, error);
    if (error) fail(ExitCode::output, "cannot write '{}': {}", to.string(), error.message());
    writeRecord(to, part, record);
}

/// The file of a part that is wanted at `output`.
fs::path partPath(const FarmPart& part, const fs::path& output) {
    std::error_code ignored;
    if (fs::is_directory(output, ignored)) return output / part.file;
    if (output.filename() != part.file)
        fail(ExitCode::usage, "part {} is called '{}' in the plan, not '{}'", part.index, part.file,
             output.filename().string());
    return output;
}

}  // namespace

void renderPart(const PartJob& job) {
    std::error_code ignored;
    const fs::path output = fs::absolute(job.output);
    const fs::path folder = fs::is_directory(output, ignored) ? output : output.parent_path();
    const FarmPlan plan = readPlan(planPath(folder, job.plan));
    if (job.part < 0 || job.part >= int(plan.parts.size()))
        fail(ExitCode::usage, "the plan has the parts 0 to {}, not {}", plan.parts.size() - 1, job.part);
    const FarmPart& part = plan.parts[std::size_t(job.part)];
    const fs::path path = partPath(part, output);
    const EditRequest request = requestOf(plan, job.project, job.machineWords);
    const Project project = request.project();
    if (projectHash(project) != plan.project)
        fail(ExitCode::input, "'{}' or a file that it names is not what the plan was made of", job.project);
    PartRecord record;
    if (partMistake(plan, part, path, record).empty()) {
        request.output.encoding.note(fmt::format("part {} is already there", part.index));
        return;
    }
    ProgressFile progress(path, part);
    try {
        const Draft draft(path);
        record = PartRender(plan, part, request, project).run(draft.path, progress);
        putInPlace(plan, part, draft.path, path, record);
        progress.remove();
    } catch (const std::exception& error) {
        progress.failed(error.what());
        throw;
    }
}

}  // namespace qv::host
