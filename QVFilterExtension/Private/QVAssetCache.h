#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "Platform/Foundation/NSCache.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "QVFilterCore/SpiritParam.h"
#include "QVFilterExtension/Private/LayerImage.h"
#include "QVFilterExtension/Private/UIImage+QVMTIFilter.h"

namespace qv {

/// The assets that a class has loaded, shared by its instances for the life of the process. A class keeps one
/// in a static variable of a function, and never destroys it: at exit the driver that its textures belong to
/// may be gone before the cache would be.
///
///     static QVAssetCache& assets() {
///         static auto& cache = *new QVAssetCache;
///         return cache;
///     }
///
/// Missing assets are nil and asked for again next time. Thread-safe.
class QVAssetCache {
  public:
    /// `fittedImageLimit` is how many images fitted to a size are kept: two outputs, as preview and export,
    /// alternate without making them again.
    explicit QVAssetCache(std::size_t fittedImageLimit = 2) : fitted_(fittedImageLimit) {}

    /// `alphaType` counts when the asset is loaded: a class asks for a file in one way only.
    MTIImage mtiImageNamed(const std::string& fileName,
                           MTIAlphaType alphaType = MTIAlphaType::premultiplied) {
        return images_.objectForKey(fileName, [&] {
            return MTIImage::imageWithUIImage(qv_imageWithFileName(fileName), alphaType, fileName);
        });
    }

    /// An asset to draw with.
    UIImage uiImageNamed(const std::string& fileName) {
        return pictures_.objectForKey(fileName, [&] { return qv_imageWithFileName(fileName); });
    }

    /// An asset as a sprite's texture.
    SpiritParam::Texture textureNamed(const std::string& fileName) {
        return textures_.objectForKey(fileName, [&] {
            return SpiritParam::spiritTextureWithImage(qv_imageWithFileName(fileName), fileName);
        });
    }

    /// An asset fitted to a frame by `make`, a function of the asset's UIImage and the size that gives a
    /// UIImage. Not asked when the asset is missing. What is not `kept` is taken from the cache and not put
    /// there.
    template <typename Make>
    MTIImage fittedImage(const std::string& fileName, CGSize size, Make&& make, bool kept = true) {
        const std::string key = NSStringFromCGSize(size) + fileName;
        const auto made = [&] {
            const UIImage asset = qv_imageWithFileName(fileName);
            if (!asset) return MTIImage();
            return imageOfLayer(make(asset, size), fileName);
        };
        if (kept) return fitted_.objectForKey(key, made);
        const std::optional<MTIImage> found = fitted_.objectForKey(key);
        return found ? *found : made();
    }

  private:
    NSCache<std::string, MTIImage> images_, fitted_;
    NSCache<std::string, UIImage> pictures_;
    NSCache<std::string, SpiritParam::Texture> textures_;
};

}  // namespace qv
