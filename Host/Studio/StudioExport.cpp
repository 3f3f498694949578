#include "Host/Studio/StudioExport.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <exception>
#include <system_error>

#include "Host/Clips/PictureFile.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/Edit/EditPreview.h"
#include "Host/Studio/StudioPreview.h"
#include "Platform/Foundation/Log.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLongestName = 200;
/// Between two reports.
constexpr std::chrono::milliseconds kInterval{100};

bool isPictureName(const fs::path& path) {
    const std::string extension = path.extension().string();
    return extension == ".png" || extension == ".jpg" || extension == ".jpeg";
}

void exportPicture(const Project& project, double seconds, const EditOutput& output) {
    const auto reading = [&](const std::string& path) { return output.encoding.readerOptions(path); };
    const auto note = [&](const std::string& line) { output.encoding.note(line); };
    Mistakes mistakes;
    auto timeline = std::make_unique<EditTimeline>(project, reading, EditPurpose::pictures, mistakes);
    if (!mistakes.empty()) fail(ExitCode::input, "{}", mistakes.lines().front());
    const double photoSeconds = isLonePicture(*timeline) ? seconds : 0;
    EditPreview preview(std::move(timeline), output.device.makeContext(), note, photoSeconds);
    std::string cause;
    const Bitmap bitmap = preview.context().renderToBitmap(preview.imageAt(seconds), &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    writePicture(bitmap, output.path, pictureTypeFor(output.path));
}

}  // namespace

StudioExport::StudioExport(fs::path folder, EditOutput output, std::function<void(const Json&)> tell)
    : folder_(std::move(folder)), output_(std::move(output)), tell_(std::move(tell)) {}

StudioExport::~StudioExport() {
    cancel();
    if (thread_.joinable()) thread_.join();
}

fs::path StudioExport::target(const std::string& name) const {
    const bool isPlain =
        !name.empty() && name.size() <= kLongestName && name.front() != '.' && name.front() != '-' &&
        name.find_first_of("/\\") == std::string::npos &&
        std::none_of(name.begin(), name.end(), [](unsigned char c) { return std::iscntrl(c); });
    if (!isPlain) fail(ExitCode::usage, "'{}' is no name of a file in {}", oneLine(name), folder_.string());
    const fs::path path = folder_ / name;
    std::error_code ignored;
    const auto kind = fs::symlink_status(path, ignored).type();
    if (kind != fs::file_type::not_found && kind != fs::file_type::regular)
        fail(ExitCode::usage, "'{}' is no file", path.string());
    return path;
}

void StudioExport::start(Project project, double seconds, const std::string& name, bool replace) {
    std::scoped_lock lock(startMutex_);
    const fs::path path = target(name);
    if (isRunning_) fail(ExitCode::usage, "another export is under way");
    if (fs::exists(path) && !replace) fail(ExitCode::output, "'{}' exists", path.string());
    EditOutput output = output_;
    output.path = path.string();
    output.overwrite = {.yes = replace, .no = !replace};
    if (!isPictureName(path)) output.encoding.writerOptions(output.path);
    if (thread_.joinable()) thread_.join();
    cancelled_ = false;
    isRunning_ = true;
    thread_ = std::thread([this, project = std::move(project), seconds, output = std::move(output)] {
        run(project, seconds, output);
    });
}

Json StudioExport::state() const {
    std::scoped_lock lock(stateMutex_);
    return Json::parse(last_);
}

void StudioExport::report(Json state) {
    {
        std::scoped_lock lock(stateMutex_);
        last_ = state.dump(-1, ' ', false, Json::error_handler_t::replace);
    }
    tell_(state);
}

void StudioExport::run(const Project& project, double seconds, const EditOutput& output) {
    Json state{{"state", "running"}, {"file", output.path}, {"frames", 0}, {"total", 0}};
    report(state);
    const auto begin = Clock::now();
    auto told = begin;
    const auto progress = [&](std::int64_t frames, std::int64_t total, double) {
        if (cancelled_) fail(ExitCode::interrupted, "cancelled");
        const auto now = Clock::now();
        if (now - told < kInterval) return;
        told = now;
        state["frames"] = frames;
        state["total"] = total;
        const double spent = std::chrono::duration<double>(now - begin).count();
        if (total > 0)
            state["left"] = spent / double(frames) * double(std::max<std::int64_t>(total - frames, 0));
        report(state);
    };
    const auto end = [&](const char* how, const std::string& error) {
        state["state"] = how;
        if (!error.empty()) state["error"] = oneLine(error);
        state["seconds"] = std::chrono::duration<double>(Clock::now() - begin).count();
        isRunning_ = false;
        report(state);
    };
    try {
        isPictureName(output.path) ? exportPicture(project, seconds, output)
                                   : exportProject(project, output, progress);
        end("done", {});
    } catch (const Failure& failure) {
        const bool isCancelled = failure.code() == ExitCode::interrupted;
        end(isCancelled ? "cancelled" : "failed", isCancelled ? std::string() : failure.what());
    } catch (const std::exception& error) {
        end("failed", error.what());
    }
}

}  // namespace qv::host
