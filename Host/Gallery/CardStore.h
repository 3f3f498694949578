#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

#include "Host/CommandLine/JSON.h"
#include "Host/Gallery/CardRenderer.h"

namespace qv::host {

/// A gallery's finished cards on disk: a folder for each class with its files and a record, which is there
/// only when all of them are. So a run that was cut off goes on where it was, and cards are made again only
/// when something that they show has changed.
class CardStore {
  public:
    /// Makes `directory` and clears away what an interrupted run left. `runKey` stands for everything that
    /// all cards depend on. Fails as output.
    CardStore(std::filesystem::path directory, PixelSize preview, std::string runKey);

    /// The record of a finished card that is still true.
    std::optional<Json> finished(const QVFilterClass& filterClass) const;

    /// Writes a card's files, `facts` with what is known of them added as its record, and returns it.
    /// Thread-safe for different classes. Fails as output.
    Json write(const QVFilterClass& filterClass, Json facts, const CardPictures& pictures) const;

    /// Encodes a preview as H.264 within previewBudget(). Fails as output.
    Json writePreview(const std::vector<PixelBuffer>& frames, const std::filesystem::path& path) const;
    /// A preview has fewer bytes.
    std::int64_t previewBudget() const;

  private:
    std::filesystem::path folderOf(const QVFilterClass& filterClass) const;
    std::string keyOf(const QVFilterClass& filterClass) const;
    std::filesystem::path cards_;
    PixelSize preview_;
    std::string runKey_;
};

}  // namespace qv::host
