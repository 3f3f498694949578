#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <set>
#include <thread>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/CommandLine/Progress.h"
#include "Host/CommandLine/SmallFiles.h"
#include "Host/Commands/CostMeter.h"
#include "Host/Gallery/CardRenderer.h"
#include "Host/Gallery/CardStore.h"
#include "Host/Gallery/GalleryPage.h"
#include "Host/Gallery/GallerySheets.h"
#include "Host/Gallery/TaskPool.h"
#include "Host/Listing/ClassListing.h"
#include "QVFilterCore/QVResourceBundle.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "QVFilterExtension/QVFilterVersion.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

namespace fs = std::filesystem;

struct Options {
    std::string output, only = "*", size = "320x180";
    GalleryFiles files;
    bool sheet = false;
    ProgressOptions progress;
    OverwriteOptions overwrite;
    DeviceOptions device;
};

/// Whoever changes what a card holds counts this up.
constexpr int kCardVersion = 1;
constexpr PixelSize kCostSize{1920, 1080};
constexpr int kCostRounds = 3;
constexpr int kSmallestSide = 32, kLargestSide = 1280, kSheetWidth = 320;
constexpr std::size_t kSuggestions = 3;

PixelSize previewSize(const std::string& text) {
    const PixelSize size = parseSize(text);
    for (const int side : {size.width, size.height}) {
        if (side < kSmallestSide || side > kLargestSide || side % 2) {
            fail(ExitCode::usage, "--size of previews takes even sides of {} to {}, not '{}'", kSmallestSide,
                 kLargestSide, text);
        }
    }
    return size;
}

std::vector<const QVFilterClass*> classesFor(const std::string& pattern) {
    std::vector<const QVFilterClass*> classes;
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        if (matchesPattern(filterClass->name, pattern)) classes.push_back(filterClass);
    }
    if (!classes.empty()) return classes;
    std::string name = pattern;
    name.erase(std::remove_if(name.begin(), name.end(), [](char c) { return c == '*' || c == '?'; }),
               name.end());
    const auto closest = closestClassNames(name, kSuggestions);
    fail(ExitCode::usage, "no class matches '{}'; {}", pattern,
         closest.empty() ? "qvfilter list names them"
                         : fmt::format("did you mean {}?", fmt::join(closest, ", ")));
}

void checkFiles(const GalleryFiles& files) {
    if (files.clips.size() > 2) {
        fail(ExitCode::usage, "a gallery has one or two inputs, not {}", files.clips.size());
    }
    if (!files.mask.empty() && files.clips.empty())
        fail(ExitCode::usage, "--mask is the first --input's, and there is none");
    for (const std::string& clip : files.clips) {
        if (clip == "-") fail(ExitCode::usage, "a gallery's inputs are files, not standard input");
    }
}

/// What tells one state of a file from another without reading it.
std::string stateOf(const fs::path& path) {
    std::error_code ignored;
    const auto time = fs::last_write_time(path, ignored).time_since_epoch().count();
    return fmt::format("{} {} {}\n", fs::absolute(path, ignored).string(), fs::file_size(path, ignored),
                       time);
}

/// The library itself and everything in its bundle: another build may look different.
std::string installationState() {
    std::string state;
    Dl_info library{};
    if (::dladdr(reinterpret_cast<const void*>(&allFilterClasses), &library) && library.dli_fname)
        state += stateOf(library.dli_fname);
    std::vector<std::string> assets;
    std::error_code ignored;
    if (const auto bundle = resourceBundle()) {
        for (const auto& entry : fs::directory_iterator(bundle->path(), ignored))
            assets.push_back(stateOf(entry.path()));
    }
    std::sort(assets.begin(), assets.end());
    return state + fmt::format("{}", fmt::join(assets, ""));
}

std::string runKey(const Options& options, const MTIContext& context) {
    std::string key = fmt::format("{} {} {} {}\n", kCardVersion, filterLibraryVersion(), options.size,
                                  context.device().name + context.device().driver);
    for (const std::string& clip : options.files.clips) key += stateOf(clip);
    if (!options.files.mask.empty()) key += stateOf(options.files.mask);
    return key + installationState();
}

Json costToJSON(const ClassCost& cost) {
    return {{"copies", cost.copies}, {"passes", cost.passes}, {"milliseconds", cost.milliseconds}};
}

class Gallery {
  public:
    explicit Gallery(const Options& options)
        : options_(options),
          sizes_(previewSize(options.size)),
          classes_(classesFor(options.only)),
          directory_(options.output) {
        checkFiles(options.files);
        checkPage(directory_, options.overwrite);
        meter_ = std::make_unique<CostMeter>(options.device, kCostSize, kCostRounds);
        context_ = options.device.makeContext();
        renderer_ = std::make_unique<CardRenderer>(options.files, sizes_, *context_);
        for (const QVFilterClass* filterClass : classes_) renderer_->check(*filterClass);
        makeFolder(directory_);  // now that only writing can fail
        store_ = std::make_unique<CardStore>(directory_, sizes_.preview, runKey(options, *context_));
        for (const QVFilterClass* filterClass : classes_) cards_.push_back(store_->finished(*filterClass));
    }

    void make() {
        try {
            makeCards();
        } catch (const Failure&) {
            savePage();
            throw;
        }
        writePage(directory_, data());
        if (options_.sheet) {
            const PixelSize preview = sizes_.preview;
            const int width = std::min(preview.width, kSheetWidth);
            const PixelSize cell{width, preview.height * width / preview.width};
            writeSheets(directory_, classes_, renderer_->scene(), cell, *context_);
        }
        checkValidation(*context_);
    }

  private:
    /// A card is rendered while the ones before are encoded, and measured when nothing else runs.
    void makeCards() {
        const auto missing = std::int64_t(std::count(cards_.begin(), cards_.end(), std::nullopt));
        Progress progress(options_.progress.style(), missing, "cards");
        store_->writePreview(renderer_->sourceFrames(), directory_ / "source.mp4");
        std::atomic<std::int64_t> done{0};
        TaskPool encoders(int(std::clamp(std::thread::hardware_concurrency(), 1u, 4u)));
        for (std::size_t i = 0; i < classes_.size(); ++i) {
            if (cards_[i]) continue;
            checkInterrupt();
            const QVFilterClass& filterClass = *classes_[i];
            auto pictures = std::make_shared<CardPictures>(renderer_->render(filterClass));
            encoders.finish();
            progress.advance(done, 0);
            Json facts = {{"cost", costToJSON(meter_->measure(filterClass))},
                          {"overSource", &renderer_->sceneFor(filterClass) == &renderer_->scene()}};
            encoders.submit([this, i, pictures, facts = std::move(facts), &done] {
                cards_[i] = store_->write(*classes_[i], facts, *pictures);
                ++done;
            });
        }
        encoders.finish();
        progress.advance(done, 0);
        progress.finish();
    }

    /// What is finished can be looked at also when the run was cut off; the failure tells why.
    void savePage() {
        try {
            writePage(directory_, data());
        } catch (const Failure&) {
        }
    }

    /// Those of the finished cards, in the order of browsing.
    Json categories() const {
        std::set<QVFilterCategory> found;
        for (std::size_t i = 0; i < classes_.size(); ++i) {
            if (cards_[i]) found.insert(classes_[i]->categoryOrInherited());
        }
        Json names = Json::array();
        for (const QVFilterCategory category : found) names.push_back(categoryName(category));
        return names;
    }

    Json data() const {
        const auto side = [](PixelSize size) { return Json{size.width, size.height}; };
        Json data = {{"version", filterLibraryVersion()},
                     {"device", context_->device().name},
                     {"preview",
                      {{"size", side(sizes_.preview)},
                       {"seconds", kPreviewSeconds},
                       {"rate", kPreviewRate},
                       {"hold", kTransitionHold}}},
                     {"costSize", side(kCostSize)},
                     {"sheet", options_.sheet},
                     {"categories", categories()},
                     {"cards", Json::array()}};
        for (std::size_t i = 0; i < classes_.size(); ++i) {
            if (!cards_[i]) continue;
            Json entry = classToJSON(*classes_[i]);
            entry["card"] = *cards_[i];
            data["cards"].push_back(std::move(entry));
        }
        return data;
    }

    const Options& options_;
    CardSizes sizes_;
    std::vector<const QVFilterClass*> classes_;
    fs::path directory_;
    std::unique_ptr<CostMeter> meter_;
    std::shared_ptr<MTIContext> context_;  ///< after the meter's, so that filters share this one
    std::unique_ptr<CardRenderer> renderer_;
    std::unique_ptr<CardStore> store_;
    /// Of `classes_`; nothing where the card is still to be made.
    std::vector<std::optional<Json>> cards_;
};

void gallery(const Options& options) {
    const DeferInterrupts defer;
    Gallery(options).make();
}

}  // namespace

void addGalleryCommand(CommandParser& tool) {
    const Command command =
        tool.addCommand("gallery", "Renders every class into a page to choose from, for a browser");
    auto options = std::make_shared<Options>();
    command.option("-o,--output", options->output, "Folder of the page, index.html").required();
    command.option("-i,--input", options->files.clips,
                   "Video or picture to show the classes on; twice, transitions lead to the second");
    command.option("--mask", options->files.mask,
                   "Picture or video that is white where the first input's subject is; auto: its people");
    command.option("--only", options->only, "Only names that match (* and ?) or contain this");
    command.option("--size", options->size, "Size of the previews").showDefault();
    command.flag("--sheet", options->sheet, "Contact sheets as PNG too");
    options->progress.add(command);
    options->overwrite.add(command);
    options->device.add(command);
    command.setAction([options] { gallery(*options); });
}

}  // namespace qv::host
