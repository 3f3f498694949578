#include "Platform/ImageGraph/Native/Overlays/OverlaySpans.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace qv {

namespace {

namespace portable {
#define QV_HAS_AVX2 0
#include "Platform/ImageGraph/Native/Overlays/OverlaySpans.inl"
#undef QV_HAS_AVX2
}  // namespace portable

#if defined(__x86_64__)
#pragma GCC push_options
#pragma GCC target("avx2,f16c")
namespace avx2 {
#define QV_HAS_AVX2 1
#include "Platform/ImageGraph/Native/Overlays/OverlaySpans.inl"
#undef QV_HAS_AVX2
}  // namespace avx2
#pragma GCC pop_options
#endif

}  // namespace

const OverlaySpans& overlaySpans(NativeTarget instructions) {
#if defined(__x86_64__)
    if (instructions != NativeTarget::neon) return avx2::kFunctions;
#endif
    static_cast<void>(instructions);
    return portable::kFunctions;
}

}  // namespace qv
