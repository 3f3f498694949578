#pragma once

#include <cstdint>

#include "Platform/ImageGraph/Native/NativeKernel.h"
#include "Platform/ImageGraph/Private/PictureStore.h"

namespace qv {

/// The pictures of sprites in memory, each with its levels on a page of its own, which layouts keep alive.
/// Those whose bitmaps are gone are forgotten when others come; all of them when they become too many.
class NativePictures final : public PictureStore {
  public:
    /// Premultiplied 8-bit RGBA, behind which a row and a pixel can be read; PictureStore::Entry::page points
    /// to it.
    struct Page {
        std::vector<std::uint8_t> bytes;
        NativeImage image;
    };

  protected:
    void place(const AtlasPicture& picture, Entry& entry) override;

  private:
    std::uint64_t bytes_ = 0;  ///< of pages since all were forgotten
};

}  // namespace qv
