#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "Platform/ImageGraph/Native/NativeKernel.h"
#include "Platform/ImageGraph/Native/Overlays/OverlaySpans.h"
#include "Platform/ImageGraph/PassOverlay.h"
#include "Platform/ImageGraph/Planner.h"

namespace qv {

/// The picture that a layer is drawn into.
struct OverlayTarget {
    int width, height;  ///< pixels
    TextureFormat format;
    int samples;  ///< of a pixel
};

/// What one or several overlays draw, one after the other. Immutable.
class OverlayLayer {
  public:
    virtual ~OverlayLayer() = default;
    /// Draws over rows of the target. Thread-safe for different rows. Throws std::bad_alloc.
    virtual void draw(const NativeImage& target, int firstRow, int endRow) const = 0;
};

/// Things that are drawn, by the rows that they lie on; some rows share a bin.
class RowBins {
  public:
    explicit RowBins(int height) : bins_(std::size_t(height + kRows - 1) / kRows) {}

    /// A thing on the rows [first, end), clipped to the target.
    void add(std::uint32_t thing, int first, int end) {
        for (int bin = first / kRows; bin * kRows < end; ++bin) bins_[std::size_t(bin)].push_back(thing);
    }
    /// Calls `draw(things, first, end)` for the bins of these rows that hold any.
    template <typename Draw>
    void forEach(int firstRow, int endRow, Draw&& draw) const {
        for (int row = firstRow; row < endRow;) {
            const int end = std::min((row / kRows + 1) * kRows, endRow);
            if (const auto& things = bins_[std::size_t(row / kRows)]; !things.empty()) draw(things, row, end);
            row = end;
        }
    }

  private:
    static constexpr int kRows = 16;
    std::vector<std::vector<std::uint32_t>> bins_;
};

/// Layouts of sprites, whose textures are pages of NativePictures.
std::unique_ptr<const OverlayLayer> spriteLayer(OverlayLayout layout, const OverlayTarget& target,
                                                const OverlaySpans& spans);
/// Curves of any number of lines. Samples are those of a Vulkan device: four when there is more than one.
std::unique_ptr<const OverlayLayer> lineLayer(std::span<const OverlayLayout> layouts,
                                              const OverlayTarget& target, const OverlaySpans& spans);

}  // namespace qv
