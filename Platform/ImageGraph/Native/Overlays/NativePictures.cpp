#include "Platform/ImageGraph/Native/Overlays/NativePictures.h"

#include <cstring>

namespace qv {

namespace {
constexpr std::uint64_t kMostBytes = 128u << 20;
}

void NativePictures::place(const AtlasPicture& picture, Entry& entry) {
    dropUnused();
    const std::size_t rowBytes = std::size_t(picture.cellWidth) * 4;
    const auto page = std::make_shared<Page>();
    page->bytes.resize(rowBytes * std::size_t(picture.cellHeight + 1) + 4);
    page->image = {page->bytes.data(), std::int64_t(rowBytes), picture.cellWidth, picture.cellHeight};
    for (std::size_t i = 0; i < picture.levels.size(); ++i) {
        const AtlasPicture::Level& level = picture.levels[i];
        const std::size_t levelBytes = std::size_t(level.width) * 4;
        std::uint8_t* to = page->bytes.data() + std::size_t(entry.levels[i].y) * rowBytes +
                           std::size_t(entry.levels[i].x) * 4;
        for (int y = 0; y < level.height; ++y)
            std::memcpy(to + std::size_t(y) * rowBytes, &level.bytes[std::size_t(y) * levelBytes],
                        levelBytes);
    }
    if (bytes_ + page->bytes.size() > kMostBytes) {
        clear();
        bytes_ = 0;
    }
    bytes_ += page->bytes.size();
    entry.page = page;
    entry.pageWidth = picture.cellWidth;
    entry.pageHeight = picture.cellHeight;
}

}  // namespace qv
