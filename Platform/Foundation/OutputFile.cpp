#include "Platform/Foundation/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace qv {
namespace {

constexpr std::string_view kTemporaryPrefix = ".qv-", kTemporarySuffix = ".part";

std::string causeOf(int number) {
    return std::generic_category().message(number);
}

/// What a link leads to, also where nothing is there yet, so that writing through a link keeps the link.
std::string resolvedPath(std::filesystem::path path) {
    constexpr int kLinks = 40;  // as many as the system follows
    std::error_code ended;
    for (int i = 0; i < kLinks; ++i) {
        const std::filesystem::path next = std::filesystem::read_symlink(path, ended);
        if (ended) break;
        path = path.parent_path() / next;
    }
    return path.string();
}

}  // namespace

std::string fileErrorLine(const char* action, const std::string& path, const std::string& cause) {
    return fmt::format("cannot {} '{}': {}", action, path, cause);
}

bool writeWholeFile(const std::string& path, std::string_view bytes, std::string* error) {
    const std::unique_ptr<OutputFile> file = OutputFile::open(path, error);
    if (!file) return false;
    const bool written = file->write(bytes.data(), bytes.size()) && file->commit();
    if (!written && error) *error = file->errorLine();
    return written;
}

std::unique_ptr<OutputFile> OutputFile::open(const std::string& path, std::string* error) {
    const auto refuse = [&](int number) -> std::unique_ptr<OutputFile> {
        if (error) *error = fileErrorLine("write", path, causeOf(number));
        return nullptr;
    };
    std::unique_ptr<OutputFile> file(new OutputFile);
    file->path_ = path;
    if (path == "-") {
        file->path_ = "standard output";
        file->descriptor_ = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
        if (file->descriptor_ < 0) return refuse(errno);
        return file;
    }

    struct stat status {};
    const bool exists = ::stat(path.c_str(), &status) == 0;
    if (!exists && errno == ELOOP) return refuse(errno);
    if (exists && S_ISDIR(status.st_mode)) return refuse(EISDIR);
    if (exists && ::access(path.c_str(), W_OK) != 0) return refuse(errno);
    if (exists && !S_ISREG(status.st_mode)) {
        file->descriptor_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
        if (file->descriptor_ < 0) return refuse(errno);
        return file;
    }

    file->target_ = resolvedPath(path);
    if (const int number = file->openTemporary(); number != 0) return refuse(number);
    file->seekable_ = true;
    if (exists && ::fchmod(file->descriptor_, status.st_mode & 0777) != 0) return refuse(errno);
    return file;
}

bool OutputFile::isTemporaryName(std::string_view fileName) {
    return fileName.starts_with(kTemporaryPrefix) && fileName.ends_with(kTemporarySuffix);
}

/// A short name of its own, so that the longest name allowed can still be written.
void OutputFile::nameTemporary() {
    static std::atomic<unsigned> counter{0};
    const std::filesystem::path directory = std::filesystem::path(target_).parent_path();
    temporary_ =
        (directory / fmt::format("{}{}-{}{}", kTemporaryPrefix, ::getpid(), counter++, kTemporarySuffix))
            .string();
}

/// Opens a file in the target's directory, without a name where the system can, so that not even a crash
/// leaves anything. An error number, or 0.
int OutputFile::openTemporary() {
    const std::filesystem::path directory = std::filesystem::path(target_).parent_path();
    const std::string folder = directory.empty() ? "." : directory.string();
    descriptor_ = ::open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0666);
    if (descriptor_ >= 0) return 0;
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) return errno;
    do {
        nameTemporary();
        descriptor_ = ::open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (descriptor_ < 0 && errno == EEXIST);
    const int number = errno;
    if (descriptor_ < 0) temporary_.clear();
    return descriptor_ < 0 ? number : 0;
}

std::string OutputFile::writtenPath() const {
    return temporary_.empty() ? fmt::format("/proc/self/fd/{}", descriptor_) : temporary_;
}

/// Gives a file without a name one. False with `errno` set.
bool OutputFile::linkTemporary() {
    const std::string from = writtenPath();
    do {
        nameTemporary();
        if (::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, temporary_.c_str(), AT_SYMLINK_FOLLOW) == 0)
            return true;
    } while (errno == EEXIST);
    temporary_.clear();
    return false;
}

OutputFile::~OutputFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void OutputFile::fail(int number) {
    if (errorNumber_ == 0) errorNumber_ = number;
}

bool OutputFile::write(const void* data, std::size_t size) {
    auto* bytes = static_cast<const std::uint8_t*>(data);
    while (size > 0 && errorNumber_ == 0) {
        const ssize_t written = ::write(descriptor_, bytes, size);
        if (written < 0) {
            if (errno != EINTR) fail(errno);
            continue;
        }
        bytes += written;
        size -= std::size_t(written);
    }
    return errorNumber_ == 0;
}

bool OutputFile::seek(std::int64_t position) {
    if (seekable_ && ::lseek(descriptor_, position, SEEK_SET) < 0) fail(errno);
    return seekable_ && errorNumber_ == 0;
}

std::int64_t OutputFile::size() const {
    struct stat status {};
    return seekable_ && ::fstat(descriptor_, &status) == 0 ? status.st_size : -1;
}

bool OutputFile::commit() {
    if (descriptor_ < 0) return false;
    const bool isNameless = !target_.empty() && temporary_.empty();
    if (errorNumber_ == 0 && isNameless && !linkTemporary()) fail(errno);
    if (::close(std::exchange(descriptor_, -1)) != 0) fail(errno);
    if (errorNumber_ == 0 && !temporary_.empty()) {
        if (std::rename(temporary_.c_str(), target_.c_str()) == 0) {
            temporary_.clear();
        } else {
            fail(errno);
        }
    }
    if (!temporary_.empty()) ::unlink(std::exchange(temporary_, {}).c_str());
    return errorNumber_ == 0;
}

std::string OutputFile::errorLine() const {
    return fileErrorLine("write", path_, causeOf(errorNumber_));
}

}  // namespace qv
