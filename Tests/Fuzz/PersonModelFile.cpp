// The file of a network that finds people: a network that can be run, or a cause why not.

#include <cstddef>
#include <cstdint>

#include "QVPersonMask/Private/FlatTable.h"
#include "QVPersonMask/Private/SegmentationNetwork.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        qv::SegmentationNetwork({data, size});
    } catch (const qv::ModelError&) {
    }
    return 0;
}
