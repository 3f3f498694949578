#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

/// Compiled shaders on disk, SPIR-V and objects of machine code, found by what they were compiled from. Files
/// appear whole, so that several processes can share a directory; a file that is damaged, or of another kind,
/// counts as missing and is replaced where it can be; files of other names are left alone. When all together
/// are too large, the longest unused go. Without a directory, or where it cannot be written, nothing is kept
/// and nobody is told. Thread-safe.
class ShaderCache {
  public:
    static constexpr std::uint64_t kMostBytes = 64u << 20;

    explicit ShaderCache(std::string directory, std::uint64_t mostBytes = kMostBytes)
        : directory_(std::move(directory)), mostBytes_(mostBytes) {}

    /// What `compiler` made of `text`; empty when that is not known.
    std::vector<std::uint32_t> load(std::string_view text, std::string_view compiler) const;
    void store(std::string_view text, std::string_view compiler, const std::vector<std::uint32_t>& code);

    /// The same for objects, which are going to be run: those that others own or may write are left alone.
    /// `recipe`: all that decides what `compiler` makes.
    std::vector<std::byte> loadObject(std::string_view recipe, std::string_view compiler) const;
    void storeObject(std::string_view recipe, std::string_view compiler,
                     const std::vector<std::byte>& object);

  private:
    template <typename Unit>
    std::vector<Unit> loadUnits(std::string_view text, std::string_view compiler) const;
    template <typename Unit>
    void storeUnits(std::string_view text, std::string_view compiler, const std::vector<Unit>& units);
    void trim();

    const std::string directory_;
    const std::uint64_t mostBytes_;
    std::mutex mutex_;
    std::uint64_t bytes_ = 0;  ///< of all files, as far as this process knows
    bool counted_ = false;
};

}  // namespace qv
