#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <vector>

#include "Platform/Foundation/WorkerPool.h"
#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/ImageGraph/Native/LoadedKernel.h"
#include "Platform/ImageGraph/Native/NativeTexture.h"
#include "Platform/ImageGraph/Native/Operations/NativeOperation.h"
#include "Platform/Media/PixelBuffer.h"

namespace qv {

/// One pass as its operation, or else its kernel, is called.
struct NativeDraw {
    std::unique_ptr<const NativeOperation> operation;
    std::shared_ptr<const LoadedKernel> kernel;
    std::array<std::uint32_t, kMaximumPushedWords> words{};
    std::vector<std::int32_t> selectors;
    std::vector<NativeImage> inputs;
    NativeKernelArguments arguments;  ///< points to what is above
};

/// What one render needs until it has run. Recorded by one thread, then only read by its bands.
class NativeFrame {
  public:
    /// A frame that keeps `destination` until it has run.
    NativeFrame(NativeTexturePool& pool, std::uint64_t serial, PixelBuffer destination)
        : pool_(pool), serial_(serial), destination_(std::move(destination)) {}

    /// A texture for a pass to write, possibly one that an earlier pass has done with.
    std::shared_ptr<NativeTexture> takeTexture(int width, int height, TextureFormat format);
    /// No later pass reads it.
    void doneWith(std::shared_ptr<NativeTexture> texture) { free_.push_back(std::move(texture)); }
    /// Held until the frame has run.
    void keep(std::shared_ptr<const void> thing) { kept_.push_back(std::move(thing)); }
    /// Stays where it is.
    NativeDraw& addDraw() { return draws_.emplace_back(); }

    /// Its first step.
    void begin() { begun_ = std::chrono::steady_clock::now(); }
    /// Its last step: lets go of all that it holds.
    void finish();

    RenderStatistics statistics;

  private:
    NativeTexturePool& pool_;
    const std::uint64_t serial_;
    PixelBuffer destination_;
    std::chrono::steady_clock::time_point begun_;
    std::vector<std::shared_ptr<NativeTexture>> free_;
    std::vector<std::shared_ptr<const void>> kept_;
    std::deque<NativeDraw> draws_;
};

/// A step that works on rows [0, rows) of images of this width, in bands that begin at even rows. Where a
/// band begins and ends changes nothing in the result.
template <typename Rows>
BandedWork::Step stepOverRows(int width, int rows, Rows work) {
    // Enough that handing a band over costs nothing beside it; few enough for a share in the cache.
    constexpr int kBandPixels = 1 << 15;
    const int bandRows = std::clamp(kBandPixels / width / 2 * 2, 2, std::max(2, (rows + 1) / 2 * 2));
    return {(rows + bandRows - 1) / bandRows,
            [=](int band) { work(band * bandRows, std::min((band + 1) * bandRows, rows)); }};
}

}  // namespace qv
