#include "Host/Studio/StudioCards.h"

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <optional>

#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/SmallFiles.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {
constexpr PixelSize kCardSize{192, 108};
constexpr std::chrono::milliseconds kLook{20};
/// How much a card gives way to everything else: as `nice` has it.
constexpr int kPatient = 5;
}  // namespace

StudioCards::StudioCards(GalleryFiles files, std::filesystem::path folder, MTIContext& context,
                         std::function<bool()> isBusy,
                         std::function<void(const std::string&, const Json&)> made)
    : files_(std::move(files)),
      folder_(std::move(folder)),
      context_(context),
      isBusy_(std::move(isBusy)),
      made_(std::move(made)),
      thread_([this] { run(); }) {}

StudioCards::~StudioCards() {
    {
        std::scoped_lock lock(mutex_);
        ends_ = true;
        changed_.notify_all();
    }
    thread_.join();
}

void StudioCards::want(const std::vector<const QVFilterClass*>& classes) {
    std::vector<std::pair<std::string, Json>> known;
    {
        std::scoped_lock lock(mutex_);
        waiting_.clear();
        for (const QVFilterClass* each : classes) {
            const auto found = cards_.find(std::string(each->name));
            if (found == cards_.end())
                waiting_.push_back(each);
            else
                known.emplace_back(*found);
        }
        changed_.notify_all();
    }
    for (const auto& [name, card] : known) made_(name, card);
}

std::string StudioCards::file(const std::string& className, const std::string& name) const {
    {
        std::scoped_lock lock(mutex_);
        const auto found = cards_.find(className);
        if (found == cards_.end() || !found->second.is_object()) return {};
        const Json& card = found->second;
        bool isOurs = name == card["after"] || name == card["preview"];
        for (const Json& still : card["stills"]) isOurs = isOurs || name == still["file"];
        if (!isOurs) return {};
    }
    return readFile(folder_ / "cards" / className / name);
}

/// Between two frames: nobody is to wait for a card.
void StudioCards::pause() const {
    while (true) {
        {
            std::scoped_lock lock(mutex_);
            if (ends_) fail(ExitCode::interrupted, "interrupted");
        }
        if (!isBusy_()) return;
        std::this_thread::sleep_for(kLook);
    }
}

void StudioCards::run() {
    ::setpriority(PRIO_PROCESS, id_t(::gettid()),
                  kPatient);  // of this thread, and of encoders that it starts
    std::optional<CardRenderer> renderer;
    std::optional<CardStore> store;
    while (true) {
        const QVFilterClass* next = nullptr;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] { return ends_ || !waiting_.empty(); });
            if (ends_) return;
            next = waiting_.front();
            waiting_.pop_front();
        }
        try {
            pause();
            if (!renderer) {
                store.emplace(folder_, kCardSize, "studio");
                renderer.emplace(files_, CardSizes(kCardSize), context_, [this] { pause(); });
            }
            make(*next, *renderer, *store);
        } catch (const Failure& failure) {
            if (failure.code() == ExitCode::interrupted) return;
            // A class without a preview can be chosen all the same.
            std::scoped_lock lock(mutex_);
            cards_[std::string(next->name)] = nullptr;
        }
    }
}

void StudioCards::make(const QVFilterClass& filterClass, CardRenderer& renderer, const CardStore& store) {
    const Json full = store.write(filterClass, Json::object(), renderer.render(filterClass));
    Json card{{"after", full["after"]}, {"preview", full["preview"]["file"]}, {"stills", Json::array()}};
    for (const Json& still : full["stills"])
        card["stills"].push_back(
            {{"property", still["property"]}, {"value", still["value"]}, {"file", still["file"]}});
    const std::string name(filterClass.name);
    {
        std::scoped_lock lock(mutex_);
        cards_[name] = card;
    }
    made_(name, card);
}

}  // namespace qv::host
