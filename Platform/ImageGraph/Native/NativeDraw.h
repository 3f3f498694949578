#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/ImageGraph/Native/LoadedKernel.h"
#include "Platform/ImageGraph/Native/NativeTexture.h"
#include "Platform/ImageGraph/Native/Operations/NativeOperation.h"
#include "Platform/ImageGraph/Native/Overlays/NativeOverlays.h"

namespace qv {

/// One pass as it is drawn: what gives its pixels, what lies on top, and what becomes of them. Set up by one
/// thread, then only read by its bands.
///
/// Pictures that nobody reads but at the same place need no texture: a source that is converted and a result
/// that is handed over go through memory of a band's size, which stays in the cache.
struct NativeDraw {
    /// An input whose rows are converted ahead of each band.
    struct BandSource {
        std::size_t input;
        PlanTexture texture;
    };
    /// Hands rows [firstRow, endRow) of the image over.
    using Delivery = std::function<void(const NativeImage& image, int firstRow, int endRow)>;

    // One of these gives the pixels.
    std::optional<std::array<float, 4>> color;
    std::unique_ptr<const NativeOperation> operation;
    std::shared_ptr<const LoadedKernel> kernel;

    std::array<std::uint32_t, kMaximumPushedWords> words{};
    std::vector<std::int32_t> selectors;
    std::uint32_t resampled = 0;
    std::vector<NativeImage> inputs;              ///< by binding; those of band sources without pixels
    std::byte* scratch = nullptr;                 ///< of the operation
    NativeImage target;                           ///< without pixels where rows are only handed over
    TextureFormat format = TextureFormat::rgba8;  ///< of the target
    std::vector<BandSource> bandSources;
    const NativeOverlays* overlays = nullptr;
    Delivery deliver;  ///< empty where the result stays in its texture
    NativeTexturePool* bands = nullptr;
    int bandRows = 0;          ///< most that a band has
    std::uint64_t serial = 0;  ///< of the render

    /// Draws rows of a stage of the operation that is not its last.
    void drawStage(int stage, int firstRow, int endRow) const;
    /// Draws rows of the result, at most `bandRows` where there are band sources or no target. Throws
    /// std::bad_alloc.
    void draw(int firstRow, int endRow) const;

  private:
    void drawPixels(const NativeImage* bandInputs, const NativeImage& rows, int firstRow, int endRow) const;
};

}  // namespace qv
