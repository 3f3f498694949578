#include "Platform/Drawing/UIImage.h"

#include <filesystem>

#include "Platform/Media/ImageFile.h"

namespace qv {

UIImage UIImage::imageWithContentsOfFile(const std::string& path) {
    auto bitmap = readImageFile(path);
    if (!bitmap) return {};
    auto stem = std::filesystem::path(path).stem().string();
    return UIImage(std::move(bitmap), stem.ends_with("@2x") ? 2 : stem.ends_with("@3x") ? 3 : 1);
}

UIImage UIImage::resizableImageWithCapInsets(UIEdgeInsets capInsets, ResizingMode mode) const {
    auto image = *this;
    image.resizable_ = true;
    image.capInsets_ = capInsets;
    image.mode_ = mode;
    return image;
}

}  // namespace qv
