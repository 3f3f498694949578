#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Host/Studio/StudioCards.h"
#include "Host/Studio/StudioExport.h"
#include "Host/Studio/StudioPreview.h"
#include "Host/Studio/StudioServer.h"

namespace qv::host {

/// What a studio is opened with.
struct StudioChoice {
    Project project;               ///< to begin with; only its files are ever read
    std::string mask;              ///< of the clips that have none
    std::filesystem::path folder;  ///< of exports
    EditOutput output;
    int port = 0;
};

/// A studio from its first page to its last. The page holds the project and sends it with each question; what
/// it may say is what a project file may, about the files that were opened and no others.
class StudioSession {
  public:
    /// Fails as a project does that is wrong, as device, and as StudioServer does.
    explicit StudioSession(StudioChoice choice);
    ~StudioSession();

    const StudioServer& server() const { return *server_; }
    /// Until the page is closed, or a signal comes.
    void run();

  private:
    StudioAnswer answer(const StudioRequest& request);
    StudioAnswer answerPost(const StudioRequest& request);
    StudioAnswer session() const;
    StudioAnswer catalogue() const;
    StudioAnswer frame(const StudioRequest& request);
    StudioAnswer copy(const StudioRequest& request) const;
    StudioAnswer startExport(const StudioRequest& request);
    StudioAnswer wantCards(const StudioRequest& request);
    StudioAnswer card(const std::string& path) const;

    /// The project of a request. Throws StudioMistakes.
    Project projectOf(const StudioRequest& request) const;
    Project withMasks(Project project) const;

    StudioChoice choice_;
    std::map<std::string, std::string> files_;  ///< that were opened, with the masks of their subjects
    std::filesystem::path cardsFolder_;         ///< a temporary one
    std::shared_ptr<MTIContext> context_;
    std::unique_ptr<StudioPreview> preview_;
    std::unique_ptr<StudioServer> server_;  ///< whose threads use what is above it and below
    std::unique_ptr<StudioCards> cards_;
    std::unique_ptr<StudioExport> export_;
};

}  // namespace qv::host
