#include "Platform/ImageGraph/Native/Operations/LineFunctions.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace qv {

namespace {
#define QV_FUNCTIONS "Platform/ImageGraph/Native/Operations/LineFunctions.inl"
#include "Platform/ImageGraph/Native/Operations/Variants.inl"
}  // namespace

const LineFunctions& lineFunctions(NativeTarget instructions) {
    return functionsFor(instructions);
}

}  // namespace qv
