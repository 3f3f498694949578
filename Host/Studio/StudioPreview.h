#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Host/CommandLine/JSON.h"
#include "Host/Edit/EditPreview.h"

namespace qv::host {

/// What is wrong with a project, a line each; it is never empty.
struct StudioMistakes {
    std::vector<std::string> lines;
};

/// A moment of a look, in JPEG.
struct StudioPicture {
    std::vector<std::uint8_t> jpeg;
    /// What the properties that move are then, as text by name, of each effect that has any, which is called
    /// as its place in the project: "clips[0].effects[1]".
    Json moving;
};

/// Renders moments of a project while somebody works on it: clips stay open, and of the requests that wait
/// for one view only the newest is rendered. Thread-safe.
class StudioPreview {
  public:
    /// `note` is told what the user may want to know.
    StudioPreview(ReadingOptions reading, std::shared_ptr<MTIContext> context, NoteSink note)
        : reading_(std::move(reading)), context_(std::move(context)), note_(std::move(note)) {}

    /// Where the clips lie and what the output is like: {seconds, rate, width, height, clips: [{start,
    /// seconds, lead, isPicture}]}. Throws StudioMistakes.
    Json timeline(const Project& project);

    /// The picture at a time, no side longer than `side` and none longer than the output's. Nothing when a
    /// newer request for the view has come. Throws StudioMistakes; fails as EditPreview does.
    std::optional<StudioPicture> picture(const Project& project, double seconds, int side,
                                         const std::string& view);

    /// Whether somebody waits for a picture, or did a moment ago.
    bool isBusy() const;

  private:
    /// Opens the clips, unless they are open. Takes the look.
    void take(const Project& project, const std::string& text, double seconds, int side);

    ReadingOptions reading_;
    std::shared_ptr<MTIContext> context_;
    NoteSink note_;

    std::mutex ticketMutex_;
    std::map<std::string, std::uint64_t> newest_;  ///< by view
    std::atomic<int> waiting_{0};
    std::atomic<std::chrono::steady_clock::time_point> served_{};

    std::mutex mutex_;  ///< of what follows
    std::string clipsText_, lookText_;
    int side_ = 0;
    double photoSeconds_ = 0;
    std::unique_ptr<EditTimeline> whole_;  ///< at the output's own size
    std::unique_ptr<EditPreview> preview_;
};

/// Whether it is one picture and nothing else, whose effects stand still or are seen at a chosen time.
bool isLonePicture(const EditTimeline& timeline);

}  // namespace qv::host
