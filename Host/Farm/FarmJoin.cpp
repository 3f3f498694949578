#include "Host/Farm/FarmJoin.h"

#include <algorithm>
#include <cmath>

#include "Host/CommandLine/Interrupt.h"
#include "Host/Farm/FarmFolder.h"
#include "Host/Farm/FarmIdentity.h"
#include "Platform/Media/PacketReader.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

std::unique_ptr<PacketReader> openPackets(const fs::path& path) {
    std::string cause;
    auto reader = PacketReader::open(path.string(), &cause);
    if (!reader) fail(ExitCode::input, "{}", cause);
    return reader;
}

std::optional<TimedPacket> readPacket(PacketReader& reader) {
    auto packet = reader.next();
    if (!packet && !reader.error().empty()) fail(ExitCode::input, "{}", reader.error());
    return packet;
}

/// Whether two devices draw the same pictures, as all processors do natively.
bool drawAlike(const std::string& a, const std::string& b) {
    const auto isNative = [](const std::string& device) { return device.starts_with("native"); };
    return a == b || (isNative(a) && isNative(b));
}

/// What goes into the film beside its pictures, in the order of its times: the sound that was encoded, or the
/// other streams of the one clip that the film is made of.
class Companion {
  public:
    explicit Companion(std::unique_ptr<PacketReader> reader) : reader_(std::move(reader)) { advance(); }
    /// Of encoded sound, which lasts from one sample to another: the file's own times are rounded, and may
    /// have been moved.
    Companion(std::unique_ptr<PacketReader> reader, std::pair<std::int64_t, std::int64_t> samples)
        : reader_(std::move(reader)), isSound_(true) {
        advance();
        if (!waiting_) return;
        const double unit = reader_->timeBase(waiting_->packet.stream).value() * reader_->soundRate();
        shift_ = std::llround(double(samples.first) / unit) - waiting_->time;
        end_ = std::llround(double(samples.second) / unit);
    }

    void writeUntil(double seconds, ClipWriter& writer) {
        while (waiting_ && secondsOfNext() <= seconds) {
            if (!write(writer)) fail(ExitCode::output, "{}", writer.error());
            advance();
        }
    }

  private:
    double secondsOfNext() const {
        return double(waiting_->decodeTime + shift_) * reader_->timeBase(waiting_->packet.stream).value();
    }
    bool write(ClipWriter& writer) {
        if (!isSound_) return writer.write(waiting_->packet);
        waiting_->time += shift_;
        waiting_->decodeTime += shift_;
        // The last one's is rounded, or counts samples that are none of the sound.
        if (waiting_->time + waiting_->duration >= end_ - 1) waiting_->duration = end_ - waiting_->time;
        return writer.writeSound(*waiting_);
    }
    void advance() {
        do waiting_ = readPacket(*reader_);
        while (waiting_ && !isSound_ && waiting_->packet.stream == reader_->videoStream());
    }

    std::unique_ptr<PacketReader> reader_;
    bool isSound_ = false;
    std::int64_t shift_ = 0, end_ = 0;  ///< of sound, in units of its stream
    std::optional<TimedPacket> waiting_;
};

class Joining {
  public:
    Joining(const FarmPlan& plan, const JoinJob& job)
        : plan_(plan),
          job_(job),
          request_(
              requestOf(plan, job.project, std::vector<std::string>(job.progress.quiet ? 1 : 0, "--quiet"))) {
        request_.output.path = job.output;
        request_.output.overwrite = job.overwrite;
    }

    void run() {
        request_.output.encoding.checkOutput(job_.output, job_.overwrite);
        const Project project = request_.project();
        if (projectHash(project) != plan_.project)
            fail(ExitCode::input, "'{}' or a file that it names is not what {} and the others were made of",
                 request_.file, nameOf(plan_.parts[0]));
        for (const FarmPart& part : plan_.parts) check(part);
        ExportSetup setup = setUpExport(project, request_.output);
        setup.writing.container = plan_.container;
        const DeferInterrupts defer;
        open(setup);
        Progress progress(job_.progress.style(), plan_.frames, "frames");
        for (std::size_t i = 0; i < pictures_; ++i) writePart(i, progress);
        if (companion_) companion_->writeUntil(kUnlimited, *writer_);
        if (!writer_->finish()) fail(ExitCode::output, "{}", writer_->error());
        progress.finish();
    }

  private:
    fs::path pathOf(const FarmPart& part) const { return job_.folder / part.file; }

    void check(const FarmPart& part) {
        PartRecord record;
        const std::string mistake = partMistake(plan_, part, pathOf(part), record);
        if (!mistake.empty()) fail(ExitCode::input, "{} {}", nameOf(part), mistake);
        if (!part.isSound) {
            if (!records_.empty() && record.decoder != records_[0].decoder)
                fail(ExitCode::input, "{} does not fit {}: its encoder was another one", nameOf(part),
                     nameOf(plan_.parts[0]));
            if (!times_.empty() && record.frames.times[0] <= times_.back())
                fail(ExitCode::input, "{} begins before the part before it ends", nameOf(part));
            if (!records_.empty() && !drawAlike(record.device, records_[0].device))
                request_.output.encoding.note(
                    fmt::format("{} was drawn by {}, {} by {}; their pictures may differ by rounding",
                                nameOf(part), record.device, nameOf(plan_.parts[0]), records_[0].device));
            times_.insert(times_.end(), record.frames.times.begin(), record.frames.times.end());
            delay_ = std::max(delay_, std::size_t(record.delay));
            end_ = record.frames.end;
            ++pictures_;
        }
        records_.push_back(std::move(record));
    }

    void open(ExportSetup& setup) {
        unit_ = setup.timeline->video().timeBase.value();
        const auto first = openPackets(pathOf(plan_.parts[0]));
        setup.writing.encodedVideo = first->streams();
        if (const FarmPart* sound = plan_.soundPart()) {
            auto reader = openPackets(pathOf(*sound));
            setup.writing.encodedSound = reader->streams();
            companion_.emplace(std::move(reader), records_.back().sound);
        } else if (setup.timeline->isWholeClip() && setup.streams) {
            companion_.emplace(openPackets(setup.timeline->clips()[0].clip.path));
        }
        writer_ = request_.output.encoding.makeWriter(job_.output, setup.timeline->video(), setup.writing,
                                                      setup.streams);
    }

    /// When packet number `index` of all is decoded: so early that none is seen before.
    std::int64_t decodeTime(std::size_t index) const {
        const std::size_t delay = std::min(delay_, times_.size() - 1);
        return index >= delay ? times_[index - delay] : times_[index] - (times_[delay] - times_[0]);
    }

    void writePart(std::size_t index, Progress& progress) {
        const FarmPart& part = plan_.parts[index];
        const auto reader = openPackets(pathOf(part));
        const int stream = reader->videoStream();
        if (reader->decoderConfiguration(stream) != records_[index].decoder)
            fail(ExitCode::input, "{} is not what its record says", nameOf(part));
        const double unit = reader->timeBase(stream).value();
        const std::size_t begin = std::size_t(part.start), end = begin + std::size_t(part.frames);
        for (std::size_t next = begin; auto packet = readPacket(*reader); ++next) {
            checkInterrupt();
            const std::size_t frame = frameAt(double(packet->time) * unit, begin, end);
            if (frame == end || next == end) fail(ExitCode::input, "{} has other frames", nameOf(part));
            packet->time = times_[frame];
            packet->decodeTime = decodeTime(next);
            packet->duration = (frame + 1 < times_.size() ? times_[frame + 1] : end_) - times_[frame];
            if (companion_) companion_->writeUntil(double(packet->decodeTime) * unit_, *writer_);
            if (!writer_->writeVideo(*packet)) fail(ExitCode::output, "{}", writer_->error());
            progress.advance(std::int64_t(next), double(packet->time) * unit_);
        }
    }

    /// The frame of a part that is shown so many seconds after its first one, `end` for none. The part's own
    /// times are rounded.
    std::size_t frameAt(double seconds, std::size_t begin, std::size_t end) const {
        constexpr double kRounding = 0.001;
        const double wanted = double(times_[begin]) + seconds / unit_;
        const auto from = times_.begin() + std::ptrdiff_t(begin), to = times_.begin() + std::ptrdiff_t(end);
        auto found = std::lower_bound(from, to, wanted,
                                      [](std::int64_t time, double value) { return double(time) < value; });
        if (found == to || (found != from && wanted - double(found[-1]) < double(*found) - wanted)) --found;
        const bool isThere = std::abs(double(*found) - wanted) * unit_ <= kRounding;
        return isThere ? std::size_t(found - times_.begin()) : end;
    }

    const FarmPlan& plan_;
    const JoinJob& job_;
    EditRequest request_;
    std::vector<PartRecord> records_;
    std::vector<std::int64_t> times_;  ///< of all frames
    std::int64_t end_ = 0;
    std::size_t delay_ = 0, pictures_ = 0;
    double unit_ = 0;  ///< seconds
    std::optional<Companion> companion_;
    std::unique_ptr<ClipWriter> writer_;
};

}  // namespace

void joinParts(const JoinJob& job) {
    const FarmPlan plan = readPlan(planPath(job.folder, job.plan));
    Joining(plan, job).run();
}

}  // namespace qv::host
