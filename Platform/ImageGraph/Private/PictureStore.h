#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "Platform/ImageGraph/Private/AtlasPicture.h"

namespace qv {

/// Keeps the pictures that overlays show, each in several sizes, on textures of a context. Used by one thread
/// at a time.
class PictureStore {
  public:
    virtual ~PictureStore() = default;

    /// A picture in the store.
    struct Entry {
        std::shared_ptr<void> page;  ///< the context's texture that it lies on
        int pageWidth = 0, pageHeight = 0;
        int width = 0, height = 0;      ///< of the picture
        AtlasPicture::Places levels{};  ///< on the page
        PictureOutline outline;
    };
    /// Where the picture lies, put there when it is new; valid until the next call. Throws what the context's
    /// textures throw.
    const Entry& entry(const Bitmap& bitmap);

  protected:
    /// Puts the picture on a page: fills in the page and moves `levels`, which are those in its cell.
    virtual void place(const AtlasPicture& picture, Entry& entry) = 0;
    /// Forgets all pictures; pages live on where they are held.
    void clear() noexcept { entries_.clear(); }
    /// Forgets the pictures whose bitmaps are gone.
    void dropUnused();

  private:
    struct Known {
        std::weak_ptr<const std::vector<std::uint8_t>> pixels;
        Entry entry;
    };
    std::unordered_map<const void*, Known> entries_;
};

}  // namespace qv
