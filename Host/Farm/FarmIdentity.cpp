#include "Host/Farm/FarmIdentity.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <map>
#include <system_error>

#include "Host/Clips/MaskSource.h"
#include "Host/CommandLine/Failure.h"
#include "Host/Edit/ProjectFile.h"
#include "Platform/Foundation/OutputFile.h"
#include "Platform/Media/PictureSequence.h"
#include "QVFilterCore/QVResourceBundle.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

/// What is read of a large file: so many pieces of so many bytes, the first and the last among them.
constexpr std::int64_t kPieces = 32, kPieceBytes = 16 << 10;

void addContent(Hasher& hasher, const std::string& path) {
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    const std::int64_t size = stream ? std::int64_t(stream.tellg()) : -1;
    if (size < 0) {
        const std::string cause = std::generic_category().message(errno);
        fail(ExitCode::input, "{}", fileErrorLine("read", path, cause));
    }
    hasher.add(size);
    std::array<char, kPieceBytes> piece;
    const bool isWhole = size <= kPieces * kPieceBytes;
    const std::int64_t count = isWhole ? (size + kPieceBytes - 1) / kPieceBytes : kPieces;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t place = isWhole ? i * kPieceBytes : (size - kPieceBytes) / (kPieces - 1) * i;
        stream.seekg(i == kPieces - 1 && !isWhole ? size - kPieceBytes : place);
        stream.read(piece.data(), kPieceBytes);
        hasher.add({piece.data(), std::size_t(stream.gcount())});
        stream.clear();
    }
}

/// A file's name and what is in it, or what is in all pictures of a sequence.
std::string identityOf(const std::string& path) {
    if (path.empty() || path.find("://") != std::string::npos) return path;
    Hasher hasher;
    if (const auto pictures = PictureSequence::unlessFile(path)) {
        for (const int number : pictures->numbers()) addContent(hasher.add(number), pictures->path(number));
    } else {
        addContent(hasher, path);
    }
    return fs::path(path).filename().string() + " " + hasher.text();
}

}  // namespace

Hasher& Hasher::add(std::string_view bytes) {
    add(std::int64_t(bytes.size()));
    hash_ = hashOf(bytes, hash_);
    return *this;
}

Hasher& Hasher::add(std::int64_t number) {
    hash_ = hashOfMemory(&number, 1, hash_);
    return *this;
}

std::string Hasher::text() const {
    return fmt::format("{:016x}", hash_);
}

std::string fileHash(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return {};
    std::uint64_t hash = kHashStart;
    std::string piece(1 << 20, '\0');
    while (stream.read(piece.data(), std::streamsize(piece.size())) || stream.gcount() > 0)
        hash = hashOf(std::string_view(piece).substr(0, std::size_t(stream.gcount())), hash);
    return fmt::format("{:016x}", hash);
}

std::string projectHash(Project project) {
    std::map<std::string, std::string> known;
    const auto identify = [&](std::string& path) {
        std::string& identity = known[path];
        if (identity.empty()) identity = identityOf(path);
        path = identity;
    };
    for (ProjectClip& clip : project.clips) {
        identify(clip.path);
        if (clip.mask != kAutomaticMask) identify(clip.mask);
    }
    if (project.sound) identify(project.sound->path);
    return Hasher().add(projectText(project)).text();
}

std::string resourcesHash() {
    const auto bundle = resourceBundle();
    const auto shaders = bundle ? bundle->pathForResource("default.shaderlib") : std::nullopt;
    return shaders ? fileHash(*shaders) : std::string();
}

}  // namespace qv::host
