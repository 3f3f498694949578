#pragma once

/// Before a function of plain loops: one copy of it for processors with AVX2 and one for the rest, chosen
/// when the program loads, and turned into SIMD code at every level of optimisation. What is inlined into it,
/// with QV_INLINE, is compiled along.
#if defined(__GNUC__) && !defined(__clang__) && defined(__OPTIMIZE__)
#define QV_OPTIMIZED __attribute__((optimize("O3")))
#else
#define QV_OPTIMIZED
#endif
// The thread sanitizer is not there yet when such a choice is made.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__)
#define QV_VECTORIZED QV_OPTIMIZED __attribute__((target_clones("avx2", "default")))
#else
#define QV_VECTORIZED QV_OPTIMIZED
#endif
#define QV_INLINE QV_OPTIMIZED inline __attribute__((always_inline))
