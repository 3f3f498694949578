#include "Platform/ImageGraph/Private/SourcePixels.h"

#include <algorithm>

#include "Platform/ImageGraph/Native/Operations/GaussianOperation.h"
#include "Platform/ImageGraph/Private/RenderRequest.h"
#include "Platform/Media/PixelConversion.h"

namespace qv {

namespace {

/// Rows of a texture that is filled.
struct Rows {
    std::uint8_t* pixels;  ///< of the texture's first row
    std::size_t rowBytes;
    int first, end;

    std::uint8_t* row(int y) const { return pixels + std::size_t(y) * rowBytes; }
    void copy(const std::uint8_t* from, std::size_t fromRowBytes, std::size_t bytes) const {
        copyRows(from + std::size_t(first) * fromRowBytes, fromRowBytes, row(first), rowBytes, bytes,
                 end - first);
    }
};

void makeOpaque(const Rows& rows, int width) {
    for (int y = rows.first; y < rows.end; ++y) {
        for (int x = 0; x < width; ++x) rows.row(y)[x * 4 + 3] = 255;
    }
}

void write(const PlanTexture&, const BitmapSource& source, const Rows& rows) {
    const Bitmap& bitmap = source.bitmap;
    rows.copy(bitmap.pixels->data(), bitmap.rowBytes(), bitmap.rowBytes());
}

void write(const PlanTexture& texture, const PixelBufferSource& source, const Rows& rows) {
    const PixelBuffer& buffer = source.buffer;
    const bool ignoreAlpha = texture.source->alphaType == MTIAlphaType::alphaIsOne;
    const auto convert = [&](const PixelBuffer& frame) {
        convertRowsToRGBA8(frame, rows.pixels, rows.rowBytes, rows.first, rows.end);
    };
    if (texture.format != TextureFormat::rgba8) {
        const PixelBuffer::Plane& plane = buffer.plane(texture.plane);
        rows.copy(plane.data, plane.rowBytes,
                  std::size_t(texture.width) * std::size_t(texelBytes(texture.format)));
    } else if (ignoreAlpha && buffer.format() == PixelFormat::rgba8) {
        rows.copy(buffer.plane(0).data, buffer.plane(0).rowBytes, std::size_t(texture.width) * 4);
        makeOpaque(rows, texture.width);
    } else if (ignoreAlpha && buffer.format() == PixelFormat::i420Alpha) {
        convert(PixelBuffer::wrap(PixelFormat::i420, buffer.width(), buffer.height(), buffer.color(),
                                  {buffer.plane(0), buffer.plane(1), buffer.plane(2), {}},
                                  std::make_shared<PixelBuffer>(buffer)));
    } else {
        convert(buffer);
    }
}

void write(const PlanTexture& texture, const GaussianBlurPass& blur, const Rows& rows) {
    const auto& source = std::get<PixelBufferSource>(texture.source->inputs.front().node()->operation);
    blurGray(source.buffer, blur.radius, rows.first, rows.end, rows.pixels, rows.rowBytes);
}

template <typename Operation>
void write(const PlanTexture&, const Operation&, const Rows&) {}  // only sources are filled

}  // namespace

bool isConverted(const PlanTexture& texture) {
    const auto* source = std::get_if<PixelBufferSource>(&texture.source->operation);
    return source && texture.format == TextureFormat::rgba8 && PixelBuffer::isYUV(source->buffer.format());
}

void writeSourceRows(const PlanTexture& texture, std::uint8_t* pixels, std::size_t rowBytes, int firstRow,
                     int endRow) {
    std::visit(
        [&](const auto& source) {
            write(texture, source, Rows{pixels, rowBytes, firstRow, endRow});
        },
        texture.source->operation);
}

void writeSourcePixels(const PlanTexture& texture, std::uint8_t* pixels, std::size_t rowBytes,
                       std::shared_ptr<WorkLimit> limit) {
    runOverRows(
        texture.height, rowBytes,
        [&](int first, int end) { writeSourceRows(texture, pixels, rowBytes, first, end); },
        std::move(limit));
}

}  // namespace qv
