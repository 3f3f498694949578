#include "Host/Studio/StudioSession.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <system_error>
#include <thread>

#include "Host/CommandLine/Easing.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/Edit/ProjectFile.h"
#include "Host/Listing/ClassListing.h"
#include "Host/Studio/LookCode.h"
#include "Host/Studio/StudioPage.h"
#include "Platform/Foundation/Log.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "QVFilterExtension/QVFilterVersion.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace fs = std::filesystem;

namespace {

/// What the page's project is called in messages.
constexpr const char* kName = "studio";
constexpr int kSmallestSide = 64, kLargestSide = 1920;
constexpr std::chrono::milliseconds kBeat{50};

/// What a project of the page may say. Nothing of it leads to another file than those that were opened.
const std::vector<std::string_view> kProjectMembers{"size", "fps", "fit", "clipSound", "clips", "effects"};
const std::vector<std::string_view> kClipMembers{"file", "color", "from",    "to",        "duration",
                                                 "fit",  "gain",  "effects", "transition"};

StudioAnswer refusal(int status, const std::string& text) {
    return {.status = status, .body = text + "\n"};
}

StudioAnswer mistakesAnswer(const std::vector<std::string>& lines) {
    // All of it stands in one line of one document, which the page need not be told.
    std::string text;
    const std::string head = fmt::format("{}:1: ", kName);
    for (const std::string& line : lines)
        text += (line.starts_with(head) ? line.substr(head.size()) : line) + "\n";
    return {.status = 422, .body = text};
}

double numberOf(const std::string& text) {
    const double value = text.empty() ? 0 : std::strtod(text.c_str(), nullptr);
    return std::isfinite(value) ? value : 0;
}

std::string shortName(const std::string& path) {
    return fs::path(path).filename().string();
}

fs::path temporaryFolder() {
    std::string path = (fs::temp_directory_path() / "qvfilter-studio-XXXXXX").string();
    if (!::mkdtemp(path.data())) fail(ExitCode::output, "no folder can be made in '{}'", path);
    return path;
}

}  // namespace

StudioSession::StudioSession(StudioChoice choice) : choice_(std::move(choice)) {
    for (ProjectClip& clip : choice_.project.clips) {
        if (clip.path.empty()) continue;
        clip.path = fs::absolute(clip.path).lexically_normal().string();
        files_.emplace(clip.path, clip.mask.empty() ? choice_.mask : clip.mask);
    }
    const auto reading = [this](const std::string& path) {
        return choice_.output.encoding.readerOptions(path);
    };
    // What is wrong with the files is told before a device is opened.
    Mistakes mistakes;
    EditTimeline(withMasks(choice_.project), reading, EditPurpose::pictures, mistakes);
    mistakes.check();
    for (ProjectClip& clip : choice_.project.clips) clip.mask.clear();
    // Frames do not wait for programs that would make them a little quicker.
    context_ = choice_.output.device.makeContext(MTIPixelFormat::rgba8Unorm, MTIFusion::inBackground);
    cardsFolder_ = temporaryFolder();
    server_ = std::make_unique<StudioServer>(
        choice_.port, [this](const StudioRequest& request) { return answer(request); });
    preview_ = std::make_unique<StudioPreview>(
        reading, context_, [this](const std::string& line) { server_->send("note", oneLine(line)); });
    GalleryFiles files;
    for (const ProjectClip& clip : choice_.project.clips) {
        if (clip.path.empty() || files.clips.size() == 2) continue;
        if (files.clips.empty()) files.mask = files_.at(clip.path);
        files.clips.push_back(clip.path);
    }
    cards_ = std::make_unique<StudioCards>(
        files, cardsFolder_, *context_, [this] { return preview_->isBusy(); },
        [this](const std::string& name, const Json& card) {
            server_->send("card", {{"name", name}, {"card", card}});
        });
    export_ = std::make_unique<StudioExport>(choice_.folder, choice_.output,
                                             [this](const Json& state) { server_->send("export", state); });
}

StudioSession::~StudioSession() {
    export_.reset();
    cards_.reset();
    server_.reset();
    std::error_code ignored;
    fs::remove_all(cardsFolder_, ignored);
}

void StudioSession::run() {
    while (!isInterrupted() && !server_->isLeft()) std::this_thread::sleep_for(kBeat);
}

StudioAnswer StudioSession::answer(const StudioRequest& request) {
    try {
        if (request.method == "POST") return answerPost(request);
        if (const auto file = studioFile(request.path))
            return {.type = std::string(file->type), .body = std::string(file->bytes)};
        if (request.path == "api/session") return session();
        if (request.path == "api/catalogue") return catalogue();
        if (request.path.starts_with("card/")) return card(request.path.substr(5));
        return refusal(404, "there is nothing here");
    } catch (const StudioMistakes& mistakes) {
        return mistakesAnswer(mistakes.lines);
    } catch (const Failure& failure) {
        const bool isAsked = failure.code() == ExitCode::usage || failure.code() == ExitCode::input;
        const bool exists = failure.code() == ExitCode::output;
        return refusal(isAsked ? 422 : exists ? 409 : 500, oneLine(failure.what()));
    } catch (const std::bad_alloc&) {
        return refusal(500, "out of memory");
    } catch (const std::exception& error) {
        return refusal(500, oneLine(error.what()));
    }
}

StudioAnswer StudioSession::answerPost(const StudioRequest& request) {
    if (request.path == "api/frame") return frame(request);
    if (request.path == "api/timeline") return StudioAnswer::json(preview_->timeline(projectOf(request)));
    if (request.path == "api/copy") return copy(request);
    if (request.path == "api/export") return startExport(request);
    if (request.path == "api/cards") return wantCards(request);
    if (request.path == "api/cancel") {
        export_->cancel();
        return {};
    }
    return refusal(404, "there is nothing here");
}

Project StudioSession::projectOf(const StudioRequest& request) const {
    const DocumentValue document = parseDocument(kName, request.body);
    const auto checkMembers = [](const DocumentValue& value, const std::vector<std::string_view>& allowed) {
        for (const auto& [name, member] : value.members) {
            if (std::find(allowed.begin(), allowed.end(), name) == allowed.end())
                throw StudioMistakes{
                    {fmt::format("{}: '{}' is not for the studio", member.place.path, oneLine(name))}};
        }
    };
    checkMembers(document, kProjectMembers);
    const DocumentValue* clips = document.member("clips");
    for (const DocumentValue& clip : clips ? clips->items : std::vector<DocumentValue>()) {
        checkMembers(clip, kClipMembers);
        const DocumentValue* file = clip.member("file");
        if (file && !files_.contains(file->text))
            throw StudioMistakes{
                {fmt::format("{}: '{}' is not open", file->place.path, oneLine(file->text))}};
    }
    Mistakes mistakes;
    Project project = parseProject(kName, request.body, {}, mistakes, [](const std::string&) {});
    if (!mistakes.empty()) throw StudioMistakes{mistakes.lines()};
    return withMasks(std::move(project));
}

Project StudioSession::withMasks(Project project) const {
    for (ProjectClip& clip : project.clips) {
        if (const auto found = files_.find(clip.path); found != files_.end()) clip.mask = found->second;
    }
    return project;
}

StudioAnswer StudioSession::session() const {
    Json clips = Json::array();
    for (const ProjectClip& clip : choice_.project.clips)
        clips.push_back({{"file", clip.path}, {"name", shortName(clip.path)}});
    const bool hasMask =
        std::any_of(files_.begin(), files_.end(), [](const auto& each) { return !each.second.empty(); });
    Json easings = Json::array();
    for (const Easing& easing : Easing::all()) easings.push_back(easing.name());
    return StudioAnswer::json({{"version", filterLibraryVersion()},
                               {"device", context_->device().name},
                               {"clips", clips},
                               {"project", Json::parse(projectText(choice_.project))},
                               {"timeline", preview_->timeline(withMasks(choice_.project))},
                               {"easings", easings},
                               {"hasMask", hasMask},
                               {"folder", choice_.folder.string()},
                               {"export", export_->state()}});
}

StudioAnswer StudioSession::catalogue() const {
    Json classes = Json::array();
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        if (filterClass->kindOrInherited() != QVFilterKind::auxiliary)
            classes.push_back(classToJSON(*filterClass));
    }
    return StudioAnswer::json(classes);
}

StudioAnswer StudioSession::frame(const StudioRequest& request) {
    const Project project = projectOf(request);
    const double seconds = std::max(numberOf(request.parameter("time")), 0.0);
    const int side =
        int(std::clamp(numberOf(request.parameter("side")), double(kSmallestSide), double(kLargestSide)));
    auto picture = preview_->picture(project, seconds, side, request.parameter("view"));
    if (!picture) return {.status = 204};
    return {.type = "image/jpeg",
            .body = std::string(picture->jpeg.begin(), picture->jpeg.end()),
            .headers = {{"Studio-Moving", picture->moving.dump(-1, ' ', true)}}};
}

StudioAnswer StudioSession::copy(const StudioRequest& request) const {
    const Project project = projectOf(request);
    const std::string name = request.parameter("name").empty() ? "out.mp4" : request.parameter("name");
    return StudioAnswer::json({{"command", commandLine(project, name, "look.json")},
                               {"code", lookCode(project)},
                               {"project", projectText(project)}});
}

StudioAnswer StudioSession::startExport(const StudioRequest& request) {
    Project project = projectOf(request);
    export_->start(std::move(project), std::max(numberOf(request.parameter("time")), 0.0),
                   request.parameter("name"), request.parameter("replace") == "yes");
    return {.status = 202};
}

/// The body names classes, one a line.
StudioAnswer StudioSession::wantCards(const StudioRequest& request) {
    std::vector<const QVFilterClass*> classes;
    for (std::string_view rest = request.body; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        if (const QVFilterClass* found = filterClassNamed(rest.substr(0, end))) classes.push_back(found);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    cards_->want(classes);
    return {.status = 204};
}

StudioAnswer StudioSession::card(const std::string& path) const {
    const std::size_t slash = path.find('/');
    if (slash == std::string::npos) return refusal(404, "there is nothing here");
    const std::string name = path.substr(slash + 1);
    const std::string bytes = cards_->file(path.substr(0, slash), name);
    if (bytes.empty()) return refusal(404, "there is nothing here");
    return {.type = name.ends_with(".mp4") ? "video/mp4" : "image/jpeg", .body = bytes};
}

}  // namespace qv::host
