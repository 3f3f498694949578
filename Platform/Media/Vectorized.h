#pragma once

/// Before a function of plain loops: one copy of it for processors with AVX2 and one for the rest, chosen
/// when the program loads. What is inlined into it, with QV_INLINE, is compiled along.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define QV_VECTORIZED __attribute__((target_clones("avx2", "default")))
#else
#define QV_VECTORIZED
#endif
#define QV_INLINE inline __attribute__((always_inline))
