#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qv {

/// A file that appears under its name only when it is whole: written in the same directory without a name, or
/// under a temporary one where the system cannot do that, and renamed by commit(); removed when destroyed
/// before. A link is kept and what it leads to replaced. A device or a pipe is written directly, and the path
/// "-" is standard output. One thread at a time.
class OutputFile {
  public:
    /// Whether a file of that name is one that an interrupted program left.
    static bool isTemporaryName(std::string_view fileName);

    /// Nil with a line that names file and cause in `error`, when it is given.
    static std::unique_ptr<OutputFile> open(const std::string& path, std::string* error = nullptr);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// All bytes, or false with the cause kept for errorLine().
    bool write(const void* data, std::size_t size);
    /// False where the file cannot seek.
    bool seek(std::int64_t position);
    std::int64_t size() const;
    bool isSeekable() const { return seekable_; }
    /// Where what is written can be read again until commit(), in this process; of a seekable file.
    std::string writtenPath() const;

    /// Closes and renames. False when this or any write before failed; the temporary file is then gone.
    bool commit();

    /// After a failure, one line that names the file and the first cause.
    std::string errorLine() const;
    /// The error number of the first failed write, 0 without one.
    int errorNumber() const { return errorNumber_; }

  private:
    OutputFile() = default;
    void fail(int number);
    void nameTemporary();
    int openTemporary();
    bool linkTemporary();

    std::string path_, target_, temporary_;
    int descriptor_ = -1;
    int errorNumber_ = 0;
    bool seekable_ = false;
};

/// Writes a file whole, or not at all: then false, with the line in `error`, when it is given.
bool writeWholeFile(const std::string& path, std::string_view bytes, std::string* error = nullptr);

/// The form of every such line: cannot ACTION 'PATH': CAUSE.
std::string fileErrorLine(const char* action, const std::string& path, const std::string& cause);

}  // namespace qv
