#include "Platform/Media/Private/PixelBlocks.h"

#include <cstddef>
#include <cstring>

#if defined(__x86_64__)
// GCC 12 takes what the intrinsics leave undefined on purpose for a mistake.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#include <immintrin.h>
#endif

namespace qv::rows {

#if defined(__x86_64__)
namespace {

/// Fraction bits of the sums that PixelRows leaves: of RGB, of luma and of chroma.
constexpr int kRGBFraction = 5, kLumaFraction = 7, kChromaFraction = 6;

#pragma GCC push_options
#pragma GCC target("avx2")
namespace avx2 {
#define QV_VECTOR_BYTES 32
#include "Platform/Media/Private/PixelBlocks.inl"
#undef QV_VECTOR_BYTES
}  // namespace avx2
#pragma GCC pop_options

#pragma GCC push_options
#pragma GCC target("avx2,avx512f,avx512bw,avx512dq,avx512vl")
namespace avx512 {
#define QV_VECTOR_BYTES 64
#include "Platform/Media/Private/PixelBlocks.inl"
#undef QV_VECTOR_BYTES
}  // namespace avx512
#pragma GCC pop_options

constexpr BlockFunctions kFunctions[] = {avx512::kFunctions, avx2::kFunctions};

std::size_t unsupported() {
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2")) return 2;
    const bool wide = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
    return wide ? 0 : 1;
}

}  // namespace

std::span<const BlockFunctions> blockFunctions() {
    static const std::size_t first = unsupported();
    return std::span(kFunctions).subspan(first);
}
#else
std::span<const BlockFunctions> blockFunctions() {
    return {};
}
#endif

}  // namespace qv::rows
