#include "Platform/ImageGraph/Native/NativeTexture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>

namespace qv {

namespace {

constexpr std::size_t kRowAlignment = 64;

std::size_t rowBytesOf(int width, TextureFormat format) {
    const std::size_t bytes = std::size_t(width + kKernelLanes) * std::size_t(texelBytes(format));
    return (bytes + kRowAlignment - 1) / kRowAlignment * kRowAlignment;
}

/// A whole number of `steps` for 0..1.
std::uint16_t code(float value, float steps) {
    return value > 0 ? std::uint16_t(std::lround(std::min(value, 1.0f) * steps)) : std::uint16_t(0);
}

std::size_t packTexel(TextureFormat format, std::array<float, 4> color, std::uint8_t* texel) {
    const auto size = std::size_t(texelBytes(format));
    switch (format) {
        case TextureFormat::bgra8:
            std::swap(color[0], color[2]);
            [[fallthrough]];
        case TextureFormat::r8:
        case TextureFormat::rg8:
        case TextureFormat::rgba8:
            for (std::size_t i = 0; i < size; ++i) texel[i] = std::uint8_t(code(color[i], 255));
            break;
        case TextureFormat::r16: {
            const std::uint16_t value = code(color[0], 65535);
            std::memcpy(texel, &value, sizeof value);
            break;
        }
        case TextureFormat::rgba16Float:
            for (std::size_t i = 0; i < 4; ++i) {
                const auto half = static_cast<_Float16>(color[i]);
                std::memcpy(texel + i * sizeof half, &half, sizeof half);
            }
            break;
        case TextureFormat::rgba32Float:
            std::memcpy(texel, color.data(), size);
            break;
    }
    return size;
}

}  // namespace

NativeTexture::NativeTexture(int width, int height, TextureFormat format) : format_(format) {
    const std::size_t rowBytes = rowBytesOf(width, format);
    bytes_ = rowBytes * std::size_t(height + 1);
    auto* pixels = static_cast<std::uint8_t*>(std::aligned_alloc(kRowAlignment, bytes_));
    if (!pixels) throw std::bad_alloc();
    image_ = {pixels, std::int64_t(rowBytes), width, height};
}

NativeTexture::~NativeTexture() {
    std::free(image_.pixels);
}

void fillRows(const NativeImage& image, TextureFormat format, const std::array<float, 4>& color, int firstRow,
              int endRow) {
    if (firstRow >= endRow) return;
    std::uint8_t texel[16];
    const std::size_t size = packTexel(format, color, texel);
    std::uint8_t* const first = image.pixels + firstRow * image.rowBytes;
    for (std::int32_t x = 0; x < image.width; ++x) std::memcpy(first + std::size_t(x) * size, texel, size);
    for (int y = firstRow + 1; y < endRow; ++y)
        std::memcpy(image.pixels + y * image.rowBytes, first, std::size_t(image.width) * size);
}

}  // namespace qv
