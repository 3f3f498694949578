#include "Platform/ImageGraph/Native/Operations/LineFunctions.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace qv {

namespace {

namespace portable {
#define QV_VECTOR_BYTES 16
#include "Platform/ImageGraph/Native/Operations/LineFunctions.inl"
#undef QV_VECTOR_BYTES
}  // namespace portable

#if defined(__x86_64__)
#pragma GCC push_options
#pragma GCC target("avx2,fma,f16c")
namespace avx2 {
#define QV_VECTOR_BYTES 32
#include "Platform/ImageGraph/Native/Operations/LineFunctions.inl"
#undef QV_VECTOR_BYTES
}  // namespace avx2
#pragma GCC pop_options

#pragma GCC push_options
#pragma GCC target("avx2,fma,f16c,avx512f,avx512bw,avx512dq,avx512vl")
namespace avx512 {
#define QV_VECTOR_BYTES 64
#include "Platform/ImageGraph/Native/Operations/LineFunctions.inl"
#undef QV_VECTOR_BYTES
}  // namespace avx512
#pragma GCC pop_options
#endif

}  // namespace

const LineFunctions& lineFunctions(NativeTarget instructions) {
#if defined(__x86_64__)
    if (instructions == NativeTarget::avx2) return avx2::kFunctions;
    if (instructions == NativeTarget::avx512) return avx512::kFunctions;
#endif
    static_cast<void>(instructions);
    return portable::kFunctions;
}

}  // namespace qv
