#include "Platform/ImageGraph/Private/PictureStore.h"

#include <utility>

namespace qv {

const PictureStore::Entry& PictureStore::entry(const Bitmap& bitmap) {
    const void* key = bitmap.pixels.get();
    if (const auto found = entries_.find(key); found != entries_.end()) {
        // The address of freed pixels may come back as another picture's.
        if (found->second.pixels.lock() == bitmap.pixels) return found->second.entry;
        entries_.erase(found);
    }
    const AtlasPicture picture(bitmap);
    Known known{bitmap.pixels, {}};
    known.entry.width = picture.width;
    known.entry.height = picture.height;
    known.entry.levels = picture.places;
    known.entry.outline = picture.outline;
    place(picture, known.entry);
    return entries_.emplace(key, std::move(known)).first->second.entry;
}

void PictureStore::dropUnused() {
    std::erase_if(entries_, [](const auto& known) { return known.second.pixels.expired(); });
}

}  // namespace qv
