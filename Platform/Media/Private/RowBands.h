#pragma once

#include <cstddef>
#include <functional>

namespace qv {

/// Calls `work(begin, end)` for bands that cover rows 0..rows-1, on the calling thread and on the
/// process's workers, and returns when all are done. Bands begin at even rows. `rowCost` is roughly the
/// bytes touched per row: small jobs stay on the calling thread. Callable from several threads at once.
void forEachRowBand(int rows, std::size_t rowCost, const std::function<void(int begin, int end)>& work);

}  // namespace qv
