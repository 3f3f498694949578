#include "Platform/ImageGraph/Private/SourcePixels.h"

#include "Platform/ImageGraph/Private/RenderRequest.h"
#include "Platform/Media/PixelConversion.h"

namespace qv {

namespace {

void makeOpaque(std::uint8_t* pixels, std::size_t rowBytes, int width, int height) {
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = pixels + std::size_t(y) * rowBytes;
        for (int x = 0; x < width; ++x) row[x * 4 + 3] = 255;
    }
}

void write(const PlanTexture&, const BitmapSource& source, std::uint8_t* pixels, std::size_t rowBytes) {
    const Bitmap& bitmap = source.bitmap;
    copyRows(bitmap.pixels->data(), bitmap.rowBytes(), pixels, rowBytes, bitmap.rowBytes(), bitmap.height);
}

void write(const PlanTexture& texture, const PixelBufferSource& source, std::uint8_t* pixels,
           std::size_t rowBytes) {
    const PixelBuffer& buffer = source.buffer;
    const bool ignoreAlpha = texture.source->alphaType == MTIAlphaType::alphaIsOne;
    if (texture.format != TextureFormat::rgba8) {
        const PixelBuffer::Plane& plane = buffer.plane(texture.plane);
        copyRows(plane.data, plane.rowBytes, pixels, rowBytes,
                 std::size_t(texture.width) * std::size_t(texelBytes(texture.format)), texture.height);
    } else if (ignoreAlpha && buffer.format() == PixelFormat::rgba8) {
        copyRows(buffer.plane(0).data, buffer.plane(0).rowBytes, pixels, rowBytes,
                 std::size_t(texture.width) * 4, texture.height);
        makeOpaque(pixels, rowBytes, texture.width, texture.height);
    } else if (ignoreAlpha && buffer.format() == PixelFormat::i420Alpha) {
        const auto opaque = PixelBuffer::wrap(
            PixelFormat::i420, buffer.width(), buffer.height(), buffer.color(),
            {buffer.plane(0), buffer.plane(1), buffer.plane(2), {}}, std::make_shared<PixelBuffer>(buffer));
        convertToRGBA8(opaque, pixels, rowBytes);
    } else {
        convertToRGBA8(buffer, pixels, rowBytes);
    }
}

template <typename Operation>
void write(const PlanTexture&, const Operation&, std::uint8_t*, std::size_t) {}  // only sources are filled

}  // namespace

void writeSourcePixels(const PlanTexture& texture, std::uint8_t* pixels, std::size_t rowBytes) {
    std::visit([&](const auto& source) { write(texture, source, pixels, rowBytes); },
               texture.source->operation);
}

}  // namespace qv
