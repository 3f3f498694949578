#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Host/Farm/FarmPlan.h"

/// What lies beside a plan: parts, their records, and how far those under way are.
namespace qv::host {

/// Times of frames, growing, in units of the film's time base; kept as runs of equal steps.
struct FrameTimes {
    std::vector<std::int64_t> times;
    std::int64_t end = 0;  ///< of the last frame
};

/// What is known of a part that is whole.
struct PartRecord {
    std::string plan, settings;  ///< hashes
    std::string bytes;           ///< hash of the file
    std::string decoder;         ///< hash of what its decoder is to know
    std::int64_t size = 0;       ///< of the file
    FrameTimes frames;           ///< of pictures
    /// By how many places a packet may come after those that are seen later.
    std::int64_t delay = 0;
    std::pair<std::int64_t, std::int64_t> sound;  ///< ClipWriter::soundSpan()
    double seconds = 0;                           ///< that it took
    std::string host, device;
    int attempts = 1;
};

std::filesystem::path recordPath(const std::filesystem::path& file);
/// Nothing where there is none, or a damaged one.
std::optional<PartRecord> readRecord(const std::filesystem::path& file);
void writeRecord(const std::filesystem::path& file, const FarmPart& part, const PartRecord& record);

/// What is wrong with a part's file and record; empty when it is what the plan wants. `record` becomes it.
std::string partMistake(const FarmPlan& plan, const FarmPart& part, const std::filesystem::path& file,
                        PartRecord& record);

/// How far a part is, as another process sees it.
struct PartProgress {
    std::int64_t frames = 0;
    std::string host;
    int process = 0;
    double seconds = 0;  ///< since it was begun
    double age = 0;      ///< seconds since this was told
    int attempts = 1;
    std::string failure;  ///< the line that it ended with
};

/// Nothing where there is none, or a damaged one.
std::optional<PartProgress> readProgress(const std::filesystem::path& file);

/// Tells of a part that is being rendered, at most once a second. What cannot be written is lost. One thread.
class ProgressFile {
  public:
    ProgressFile(std::filesystem::path file, const FarmPart& part);
    void advance(std::int64_t frames);
    void failed(const std::string& line);
    /// The part is there.
    void remove();
    double seconds() const;
    int attempts() const { return attempts_; }

  private:
    void write(const std::string& failure);

    using Clock = std::chrono::steady_clock;
    std::filesystem::path path_;
    int index_;
    std::int64_t total_, frames_ = 0;
    int attempts_ = 1;
    Clock::time_point start_ = Clock::now(), written_ = {};
};

/// As long as it lives, no other process puts a part into the folder. Where the file system has no locks it
/// does nothing.
class FolderLock {
  public:
    explicit FolderLock(const std::filesystem::path& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

  private:
    int descriptor_;
};

/// This machine's name.
std::string hostName();

}  // namespace qv::host
