#include <optional>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv {

namespace {

std::optional<NativeTarget> targetOfMachine() {
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("fma") ||
        !__builtin_cpu_supports("f16c")) {
        return {};
    }
    const bool wide = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
    return wide ? NativeTarget::avx512 : NativeTarget::avx2;
#elif defined(__aarch64__)
    return NativeTarget::neon;
#else
    return {};
#endif
}

}  // namespace

const NativeTarget* nativeTargetOfMachine() {
    static const std::optional<NativeTarget> target = targetOfMachine();
    return target ? &*target : nullptr;
}

const char* nativeTargetName(NativeTarget target) {
    switch (target) {
        case NativeTarget::avx2:
            return "AVX2";
        case NativeTarget::avx512:
            return "AVX-512";
        case NativeTarget::neon:
            break;
    }
    return "NEON";
}

}  // namespace qv
