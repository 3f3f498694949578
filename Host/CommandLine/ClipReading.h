#pragma once

#include <memory>
#include <string>

#include "Platform/Media/ClipReader.h"

namespace qv::host {

class Command;

/// How a command reads its clips, masks included: with what option, and with one note for each file that is
/// deinterlaced, however often it is read. Copies share what has been told.
class ClipReading {
  public:
    ClipReading();

    void add(const Command& command);
    /// For a clip of that name. The notes go to standard error.
    ClipReaderOptions optionsFor(const std::string& path) const;

  private:
    struct Told;

    Deinterlacing deinterlacing_ = Deinterlacing::automatic;
    std::shared_ptr<Told> told_;
};

}  // namespace qv::host
