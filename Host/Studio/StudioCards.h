#pragma once

#include <condition_variable>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Host/Gallery/CardStore.h"

namespace qv::host {

/// The catalogue's previews: the gallery's cards over the clips that are open, made one after the other
/// behind everything else, in the order in which the page asks. Thread-safe.
class StudioCards {
  public:
    /// `folder` takes their files. `isBusy` tells when the device is wanted for something else; `made` is
    /// told of each card, on a thread of its own. The context must outlive it.
    StudioCards(GalleryFiles files, std::filesystem::path folder, MTIContext& context,
                std::function<bool()> isBusy,
                std::function<void(const std::string& name, const Json& card)> made);
    /// Leaves the one that is being made.
    ~StudioCards();

    /// What is to be made next, the first first, in the place of what waits. Those that are there are told
    /// again.
    void want(const std::vector<const QVFilterClass*>& classes);
    /// A file of a card that is there; empty for all others.
    std::string file(const std::string& className, const std::string& name) const;

  private:
    void run();
    void make(const QVFilterClass& filterClass, CardRenderer& renderer, const CardStore& store);
    void pause() const;

    GalleryFiles files_;
    std::filesystem::path folder_;
    MTIContext& context_;
    std::function<bool()> isBusy_;
    std::function<void(const std::string&, const Json&)> made_;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<const QVFilterClass*> waiting_;
    std::map<std::string, Json> cards_;  ///< by class; null where none could be made
    bool ends_ = false;
    std::thread thread_;
};

}  // namespace qv::host
