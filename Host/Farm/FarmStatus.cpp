#include "Host/Farm/FarmStatus.h"

#include <algorithm>
#include <system_error>

#include "Host/CommandLine/Progress.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

namespace fs = std::filesystem;

/// Progress is told every second; a first frame may take its time.
constexpr double kStalledSeconds = 30;

const char* nameOf(PartState state) {
    switch (state) {
        case PartState::waiting:
            return "waiting";
        case PartState::running:
            return "running";
        case PartState::stalled:
            return "stalled";
        case PartState::failed:
            return "failed";
        case PartState::done:
            return "done";
    }
    return "";
}

bool isWhole(const FarmPlan& plan, const fs::path& file, const PartRecord& record) {
    std::error_code error;
    const bool hasSize = std::int64_t(fs::file_size(file, error)) == record.size && !error;
    return hasSize && record.plan == plan.hash() && record.settings == plan.settings;
}

PartStatus statusOf(const FarmPlan& plan, const FarmPart& part, const fs::path& file) {
    PartStatus status{.part = part};
    if (const auto record = readRecord(file); record && isWhole(plan, file, *record)) {
        status.state = PartState::done;
        status.frames = part.frames;
        status.seconds = record->seconds;
        status.host = record->host;
        status.attempts = record->attempts;
    } else if (const auto progress = readProgress(file)) {
        status.state = !progress->failure.empty()        ? PartState::failed
                       : progress->age > kStalledSeconds ? PartState::stalled
                                                         : PartState::running;
        status.frames = progress->frames;
        status.seconds = progress->seconds;
        status.host = progress->host;
        status.attempts = progress->attempts;
        status.failure = progress->failure;
    }
    return status;
}

}  // namespace

int FarmStatus::count(PartState state) const {
    return int(std::ranges::count(parts, state, &PartStatus::state));
}

std::int64_t FarmStatus::framesDone() const {
    std::int64_t frames = 0;
    for (const PartStatus& each : parts) {
        const bool counts = each.state == PartState::done || each.state == PartState::running;
        if (counts && !each.part.isSound) frames += each.frames;
    }
    return frames;
}

std::optional<double> FarmStatus::secondsLeft() const {
    double rate = 0;
    std::int64_t all = 0;
    for (const PartStatus& each : parts) {
        if (each.part.isSound) continue;
        all += each.part.frames;
        if (each.state == PartState::running) rate += each.rate();
    }
    const std::int64_t left = all - framesDone();
    if (left == 0) return 0.0;
    return rate > 0 ? std::optional(double(left) / rate) : std::nullopt;
}

FarmStatus statusOf(const FarmPlan& plan, const fs::path& folder) {
    FarmStatus status;
    for (const FarmPart& part : plan.parts) status.parts.push_back(statusOf(plan, part, folder / part.file));
    return status;
}

std::string statusText(const FarmPlan& plan, const FarmStatus& status) {
    std::string text;
    for (const PartStatus& each : status.parts) {
        text += fmt::format("{:<14} {:<8} {:>7}/{}", each.part.file, nameOf(each.state), each.frames,
                            each.part.frames);
        if (each.rate() > 0) text += fmt::format("  {:.1f} fps", each.rate());
        if (!each.host.empty()) text += "  " + each.host;
        if (each.attempts > 1) text += fmt::format("  attempt {}", each.attempts);
        if (!each.failure.empty()) text += "  " + each.failure;
        text += "\n";
    }
    text += fmt::format("{} of {} parts, {} of {} frames", status.count(PartState::done), status.parts.size(),
                        status.framesDone(), plan.frames);
    for (const PartState state : {PartState::running, PartState::stalled, PartState::failed}) {
        if (const int count = status.count(state); count > 0)
            text += fmt::format(", {} {}", count, nameOf(state));
    }
    const auto left = status.secondsLeft();
    if (left && !status.isDone()) text += fmt::format(", {} left", clockText(*left));
    return text + "\n";
}

Json statusToJSON(const FarmPlan& plan, const FarmStatus& status) {
    Json json{{"parts", Json::array()}};
    for (const PartStatus& each : status.parts) {
        Json part{{"index", each.part.index}, {"file", each.part.file},   {"state", nameOf(each.state)},
                  {"frames", each.frames},    {"of", each.part.frames},   {"fps", each.rate()},
                  {"seconds", each.seconds},  {"attempts", each.attempts}};
        if (!each.host.empty()) part["host"] = each.host;
        if (!each.failure.empty()) part["failure"] = each.failure;
        json["parts"].push_back(std::move(part));
    }
    for (const PartState state :
         {PartState::waiting, PartState::running, PartState::stalled, PartState::failed, PartState::done})
        json[nameOf(state)] = status.count(state);
    json["frames"] = status.framesDone();
    json["of"] = plan.frames;
    const auto left = status.secondsLeft();
    json["secondsLeft"] = left ? Json(*left) : Json();
    return json;
}

}  // namespace qv::host
