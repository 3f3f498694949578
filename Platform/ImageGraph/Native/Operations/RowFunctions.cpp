#include "Platform/ImageGraph/Native/Operations/RowFunctions.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace qv {

namespace {
#define QV_FUNCTIONS "Platform/ImageGraph/Native/Operations/RowFunctions.inl"
#include "Platform/ImageGraph/Native/Operations/Variants.inl"
}  // namespace

const RowFunctions& rowFunctions(NativeTarget instructions) {
    return functionsFor(instructions);
}

}  // namespace qv
