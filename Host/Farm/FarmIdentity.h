#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "Host/Edit/Project.h"
#include "Platform/Foundation/Hash.h"

/// Whether what another machine has is the same.
namespace qv::host {

/// A hash of several things, each with its length, so that no two lists look alike.
class Hasher {
  public:
    Hasher& add(std::string_view bytes);
    Hasher& add(std::int64_t number);
    /// 16 hexadecimal digits.
    std::string text() const;

  private:
    std::uint64_t hash_ = kHashStart;
};

/// Of all bytes of a file; empty when it cannot be read.
std::string fileHash(const std::filesystem::path& file);

/// Of the project as it is resolved, with each file that it names as its own name, its size, its ends and
/// pieces in between: large files cost little, and copies elsewhere are the same. Fails as input where one
/// cannot be read.
std::string projectHash(Project project);

/// Of the compiled shaders of the library that is loaded.
std::string resourcesHash();

}  // namespace qv::host
