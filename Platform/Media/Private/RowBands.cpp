#include "Platform/Media/Private/RowBands.h"

#include <algorithm>

#include "Platform/Foundation/WorkerPool.h"

namespace qv {

/// Below this many bytes waking a thread costs more than it saves.
constexpr std::size_t kSmallJob = std::size_t(512) << 10;

void forEachRowBand(int rows, std::size_t rowCost, const std::function<void(int begin, int end)>& work) {
    if (rows < 4 || std::size_t(rows) * rowCost < kSmallJob) {
        work(0, rows);
        return;
    }
    // A few bands per thread, so that one that is held up does not hold up the rest.
    const int wanted = WorkerPool::threadCount() * 3;
    const int bandRows = std::max(((rows + wanted - 1) / wanted + 1) / 2 * 2, 2);
    WorkerPool::shared().run({(rows + bandRows - 1) / bandRows, [&](int band) {
                                  work(band * bandRows, std::min((band + 1) * bandRows, rows));
                              }});
}

}  // namespace qv
