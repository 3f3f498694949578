#pragma once

#include <memory>
#include <string>

#include "Platform/Media/ClipReader.h"

namespace qv::host {

class Command;

/// How a command reads its clips, masks included: with what options, and with one note for each file that is
/// deinterlaced, however often it is read. Copies share what has been told.
class ClipReading {
  public:
    ClipReading();

    void add(const Command& command);
    /// What a command with one input takes besides: what that is, where the file does not say it.
    void addInputFormat(const Command& command);
    /// For a clip of that name. The notes go to standard error. Fails as usage.
    ClipReaderOptions optionsFor(const std::string& path) const;
    /// The same of the one input; `mask` is read beside it, empty for none.
    ClipReaderOptions inputOptionsFor(const std::string& path, const std::string& mask) const;

  private:
    struct Told;

    Deinterlacing deinterlacing_ = Deinterlacing::automatic;
    ClipInputFormat format_;
    std::string size_, rate_;
    std::shared_ptr<Told> told_;
};

}  // namespace qv::host
