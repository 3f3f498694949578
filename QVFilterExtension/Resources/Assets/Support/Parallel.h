#pragma once

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace qv::assets {

/// Runs `body(i)` for 0..count-1 on all cores, in no order but `chunk` at a time. The bodies must not touch
/// one another's results.
template <class Body>
void parallelFor(int count, Body&& body, int chunk = 8) {
    std::atomic<int> next{0};
    const auto work = [&] {
        for (int first; (first = next.fetch_add(chunk)) < count;)
            for (int i = first; i < std::min(first + chunk, count); ++i) body(i);
    };
    std::vector<std::thread> others;
    for (unsigned i = 1; i < std::max(1u, std::thread::hardware_concurrency()); ++i)
        others.emplace_back(work);
    work();
    for (std::thread& other : others) other.join();
}

}  // namespace qv::assets
