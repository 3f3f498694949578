#include "Host/Farm/FarmFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "Host/CommandLine/JSON.h"
#include "Host/CommandLine/SmallFiles.h"
#include "Host/Farm/FarmIdentity.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds kProgressInterval{1};

fs::path besides(const fs::path& file, const char* extension) {
    return fs::path(file).replace_extension(extension);
}

/// The first time, then [frames, step] for each run of equal steps.
Json timesToJSON(const FrameTimes& frames) {
    Json runs = Json::array();
    for (std::size_t i = 1; i < frames.times.size(); ++i) {
        const std::int64_t step = frames.times[i] - frames.times[i - 1];
        if (runs.empty() || runs.back()[1] != step) runs.push_back({0, step});
        runs.back()[0] = runs.back()[0].get<std::int64_t>() + 1;
    }
    return {{"first", frames.times.empty() ? 0 : frames.times[0]}, {"runs", runs}, {"end", frames.end}};
}

FrameTimes timesFromJSON(const Json& json) {
    FrameTimes frames{{json.at("first").get<std::int64_t>()}, json.at("end")};
    for (const Json& run : json.at("runs")) {
        for (auto left = run.at(0).get<std::int64_t>(); left > 0; --left)
            frames.times.push_back(frames.times.back() + run.at(1).get<std::int64_t>());
    }
    return frames;
}

/// Reads what another process wrote; nothing where it makes no sense.
template <typename Read>
auto readJSON(const fs::path& path, Read read) -> std::optional<decltype(read(Json()))> {
    const Json json = Json::parse(readFile(path), nullptr, false);
    if (!json.is_object()) return std::nullopt;
    try {
        return read(json);
    } catch (const Json::exception&) {
        return std::nullopt;
    }
}

}  // namespace

fs::path recordPath(const fs::path& file) {
    return besides(file, ".json");
}

std::optional<PartRecord> readRecord(const fs::path& file) {
    return readJSON(recordPath(file), [](const Json& json) {
        PartRecord record{.plan = json.at("plan"),
                          .settings = json.at("settings"),
                          .bytes = json.at("hash"),
                          .decoder = json.at("decoder"),
                          .size = json.at("bytes"),
                          .seconds = json.at("seconds"),
                          .host = json.at("host"),
                          .device = json.at("device"),
                          .attempts = json.at("attempts")};
        if (json.contains("times")) {
            record.frames = timesFromJSON(json.at("times"));
            record.delay = json.at("delay");
        } else {
            record.sound = {json.at("sound").at("begin"), json.at("sound").at("end")};
        }
        return record;
    });
}

void writeRecord(const fs::path& file, const FarmPart& part, const PartRecord& record) {
    Json json{{"part", part.index},       {"plan", record.plan},  {"settings", record.settings},
              {"frames", part.frames},    {"bytes", record.size}, {"hash", record.bytes},
              {"decoder", record.decoder}};
    if (part.isSound) {
        json["sound"] = {{"begin", record.sound.first}, {"end", record.sound.second}};
    } else {
        json["times"] = timesToJSON(record.frames);
        json["delay"] = record.delay;
    }
    json["seconds"] = record.seconds;
    json["host"] = record.host;
    json["device"] = record.device;
    json["attempts"] = record.attempts;
    writeFile(recordPath(file), dump(json));
}

std::string partMistake(const FarmPlan& plan, const FarmPart& part, const fs::path& file,
                        PartRecord& record) {
    std::error_code error;
    if (!fs::is_regular_file(file, error)) return "is missing";
    const auto found = readRecord(file);
    if (!found) return "has no record";
    record = *found;
    if (record.settings != plan.settings) return "was encoded with other settings";
    if (record.plan != plan.hash()) return "belongs to another plan";
    if (!part.isSound && std::int64_t(record.frames.times.size()) != part.frames)
        return fmt::format("has {} frames in place of {}", record.frames.times.size(), part.frames);
    if (std::int64_t(fs::file_size(file, error)) != record.size || fileHash(file) != record.bytes)
        return "is damaged or cut off";
    return {};
}

std::optional<PartProgress> readProgress(const fs::path& file) {
    const fs::path path = besides(file, ".progress");
    auto progress = readJSON(path, [](const Json& json) {
        return PartProgress{.frames = json.at("frames"),
                            .host = json.at("host"),
                            .process = json.at("pid"),
                            .seconds = json.at("seconds"),
                            .attempts = json.at("attempts"),
                            .failure = json.value("failure", "")};
    });
    if (!progress) return std::nullopt;
    std::error_code ignored;
    const auto age = fs::file_time_type::clock::now() - fs::last_write_time(path, ignored);
    progress->age = std::chrono::duration<double>(age).count();
    return progress;
}

ProgressFile::ProgressFile(fs::path file, const FarmPart& part)
    : path_(besides(file, ".progress")), index_(part.index), total_(part.frames) {
    if (const auto earlier = readProgress(file)) attempts_ = earlier->attempts + 1;
    write("");
}

double ProgressFile::seconds() const {
    return std::chrono::duration<double>(Clock::now() - start_).count();
}

void ProgressFile::advance(std::int64_t frames) {
    frames_ = frames;
    if (Clock::now() - written_ >= kProgressInterval) write("");
}

void ProgressFile::failed(const std::string& line) {
    write(line);
}

void ProgressFile::remove() {
    std::error_code ignored;
    fs::remove(path_, ignored);
}

void ProgressFile::write(const std::string& failure) {
    written_ = Clock::now();
    Json json{{"part", index_},    {"frames", frames_},    {"of", total_},         {"host", hostName()},
              {"pid", ::getpid()}, {"seconds", seconds()}, {"attempts", attempts_}};
    if (!failure.empty()) json["failure"] = failure;
    try {
        writeFile(path_, dump(json));
    } catch (const Failure&) {
        // A full disk stops what matters.
    }
}

FolderLock::FolderLock(const fs::path& folder)
    : descriptor_(::open((folder / ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
    if (descriptor_ >= 0) ::flock(descriptor_, LOCK_EX);
}

FolderLock::~FolderLock() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

std::string hostName() {
    char name[256] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? name : "unknown";
}

}  // namespace qv::host
