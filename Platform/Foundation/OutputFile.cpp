#include "Platform/Foundation/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
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

/// What a link leads to, so that writing through a link keeps the link.
std::string resolvedPath(const std::string& path) {
    char* resolved = ::realpath(path.c_str(), nullptr);
    if (!resolved) return path;
    std::string result = resolved;
    std::free(resolved);
    return result;
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
    if (exists && S_ISDIR(status.st_mode)) return refuse(EISDIR);
    if (exists && ::access(path.c_str(), W_OK) != 0) return refuse(errno);
    if (exists && !S_ISREG(status.st_mode)) {
        file->descriptor_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
        if (file->descriptor_ < 0) return refuse(errno);
        return file;
    }

    // A short name of its own, so that the longest name allowed can still be written.
    static std::atomic<unsigned> counter{0};
    file->target_ = exists ? resolvedPath(path) : path;
    const std::filesystem::path directory = std::filesystem::path(file->target_).parent_path();
    do {
        file->temporary_ =
            (directory / fmt::format("{}{}-{}{}", kTemporaryPrefix, ::getpid(), counter++, kTemporarySuffix))
                .string();
        file->descriptor_ = ::open(file->temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (file->descriptor_ < 0 && errno == EEXIST);
    if (file->descriptor_ < 0) {
        const int number = errno;
        file->temporary_.clear();
        return refuse(number);
    }
    file->seekable_ = true;
    if (exists && ::fchmod(file->descriptor_, status.st_mode & 0777) != 0) return refuse(errno);
    return file;
}

bool OutputFile::isTemporaryName(std::string_view fileName) {
    return fileName.starts_with(kTemporaryPrefix) && fileName.ends_with(kTemporarySuffix);
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
    const int descriptor = std::exchange(descriptor_, -1);
    if (descriptor < 0) return false;
    if (::close(descriptor) != 0) fail(errno);
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
