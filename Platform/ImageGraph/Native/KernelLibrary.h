#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ImageGraph/Native/NativeCompiler.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

/// What tells kernels apart that one version of the compiler makes for one target: the function as written,
/// and the formats. Cheap: nothing is compiled for it.
std::uint64_t kernelKey(const ShaderFunction& function, std::span<const TextureFormat> inputs,
                        TextureFormat output);

/// Kernels that the build has compiled for one target, one file. Immutable, shared between threads.
class KernelLibrary {
  public:
    /// Name of a target's file in the bundle.
    static std::string fileName(NativeTarget target);

    /// Nil with the cause in `error` when the file is missing or damaged, or not of this version of the
    /// compiler.
    static std::shared_ptr<const KernelLibrary> open(const std::string& path,
                                                     std::string_view compilerVersion,
                                                     std::string* error = nullptr);
    static std::shared_ptr<const KernelLibrary> parse(std::vector<std::byte> bytes,
                                                      std::string_view compilerVersion,
                                                      std::string* error = nullptr);

    /// The object of a key, valid as long as this lives; empty when there is none, or when it is damaged.
    std::span<const std::byte> object(std::uint64_t key) const;

    /// The bytes of a library; `parse` reads them back.
    static std::vector<std::byte> serialize(
        std::string_view compilerVersion,
        const std::map<std::uint64_t, std::vector<std::byte>>& objectsByKey);

  private:
    struct Entry;
    std::vector<std::byte> bytes_;
    std::size_t index_ = 0, count_ = 0;  ///< where the entries begin, and how many there are
};

}  // namespace qv
