#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// Folders and small files that commands read and write besides pictures and clips.
namespace qv::host {

/// Creates a folder and those above it. Fails as output.
void makeFolder(const std::filesystem::path& path);

/// All of a file; empty when it is not a file or cannot be read.
std::string readFile(const std::filesystem::path& path);

/// Writes a small file, whole or not at all. Fails as output.
void writeFile(const std::filesystem::path& path, std::string_view bytes);

}  // namespace qv::host
