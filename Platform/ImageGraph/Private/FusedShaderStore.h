#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "Platform/ImageGraph/PassFusion.h"
#include "Platform/ImageGraph/Private/SpirvStore.h"

namespace qv {

/// The programs of fused passes, composed and compiled once per shape. The longest unused ones are forgotten
/// when there are many. Thread-safe.
class FusedShaderStore {
  public:
    /// Keeps what it compiles in `cacheDirectory` too, unless that is empty.
    explicit FusedShaderStore(std::string cacheDirectory) : spirv_(std::move(cacheDirectory)) {}

    struct Result {
        bool isKnown = false;                           ///< false: `make` has not seen the shape
        std::shared_ptr<const ShaderFunction> program;  ///< null also for a shape that cannot be one program
    };
    Result find(const FusedShape& shape);
    /// Composes and compiles, or loads; takes milliseconds. Null, with a line in the log, when the shape
    /// cannot be one program.
    std::shared_ptr<const ShaderFunction> make(const FusedShape& shape);

    /// Programs compiled so far: not those found in memory or on disk.
    int compiledCount() const { return spirv_.compiledCount(); }

  private:
    static constexpr std::size_t kMostPrograms = 256;

    struct Hash {
        std::size_t operator()(const FusedShape& shape) const { return shape.hash(); }
    };
    struct Entry {
        std::shared_ptr<const ShaderFunction> program;
        std::uint64_t lastUse = 0;
    };
    std::shared_ptr<const ShaderFunction> compose(const FusedShape& shape);

    SpirvStore spirv_;
    std::mutex mutex_;
    std::unordered_map<FusedShape, Entry, Hash> entries_;
    std::uint64_t uses_ = 0;
};

}  // namespace qv
