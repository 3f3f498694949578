// QV_FUNCTIONS, a file that defines `kFunctions` by vectors of QV_VECTOR_BYTES, compiled for every target, and
// functionsFor to choose among them. Inside an unnamed namespace, after <immintrin.h> where there is one.

namespace portable {
#define QV_VECTOR_BYTES 16
#include QV_FUNCTIONS
#undef QV_VECTOR_BYTES
}  // namespace portable

#if defined(__x86_64__)
#pragma GCC push_options
#pragma GCC target("avx2,fma,f16c")
namespace avx2 {
#define QV_VECTOR_BYTES 32
#include QV_FUNCTIONS
#undef QV_VECTOR_BYTES
}  // namespace avx2
#pragma GCC pop_options

#pragma GCC push_options
#pragma GCC target("avx2,fma,f16c,avx512f,avx512bw,avx512dq,avx512vl")
namespace avx512 {
#define QV_VECTOR_BYTES 64
#include QV_FUNCTIONS
#undef QV_VECTOR_BYTES
}  // namespace avx512
#pragma GCC pop_options
#endif

const auto& functionsFor([[maybe_unused]] NativeTarget instructions) {
#if defined(__x86_64__)
    if (instructions == NativeTarget::avx2) return avx2::kFunctions;
    if (instructions == NativeTarget::avx512) return avx512::kFunctions;
#endif
    return portable::kFunctions;
}
