#include "QVFilterExtension/Private/UIImage+QVMTIFilter.h"

#include <cmath>

#include "Platform/Drawing/BitmapCanvas.h"
#include "QVFilterExtension/Private/NSBundle+QVMTIFilter.h"

namespace qv {

namespace {

UIImage redrawn(const UIImage& image, CGSize size, double scale) {
    if (!image) return {};
    BitmapCanvas canvas(size, false, scale);
    canvas.drawImage(image, {{0, 0}, size});
    return canvas.image();
}

}  // namespace

UIImage qv_imageWithFileName(std::string_view name) {
    const std::string path = qv_pathOfAsset(name);
    return path.empty() ? UIImage() : UIImage::imageWithContentsOfFile(path);
}

UIImage scale(const UIImage& image, double factor) {
    // The products are narrowed before they are rounded: a half in single precision need not be one in
    // double.
    auto side = [&](double length) { return double(std::round(float(length * factor))); };
    return scaleToSizeWithSameScale(image, {side(image.size().width), side(image.size().height)});
}

UIImage scaleToSize(const UIImage& image, CGSize size) {
    return redrawn(image, size, 1.0);
}

UIImage scaleToSizeWithSameScale(const UIImage& image, CGSize size) {
    return redrawn(image, size, image.scale());
}

}  // namespace qv
