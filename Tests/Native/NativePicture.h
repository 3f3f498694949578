#pragma once

#include <cstring>
#include <random>
#include <vector>

#include "Platform/ImageGraph/Native/NativeCompiler.h"
#include "Platform/ImageGraph/Native/NativeKernel.h"
#include "Platform/Media/Bitmap.h"

namespace qv::test {

/// A texture in memory, padded as NativeImage says with bytes of chance.
class NativePicture {
  public:
    NativePicture(int width, int height, int texelBytes = 4) : texelBytes_(texelBytes) {
        const std::int64_t rowBytes = (std::int64_t(width + kKernelLanes) * texelBytes + 63) / 64 * 64;
        bytes_.resize(std::size_t(rowBytes) * std::size_t(height + 1) + 64);
        std::minstd_rand generator(7);
        for (std::uint8_t& byte : bytes_) byte = std::uint8_t(generator() >> 8);
        const auto address = reinterpret_cast<std::uintptr_t>(bytes_.data());
        image_ = {bytes_.data() + (64 - address % 64) % 64, rowBytes, width, height};
    }
    explicit NativePicture(const Bitmap& bitmap) : NativePicture(bitmap.width, bitmap.height) {
        for (int y = 0; y < bitmap.height; ++y)
            std::memcpy(image_.pixels + y * image_.rowBytes, bitmap.row(y), bitmap.rowBytes());
    }
    NativePicture(const NativePicture&) = delete;
    NativePicture& operator=(const NativePicture&) = delete;

    const NativeImage& image() const { return image_; }
    const std::uint8_t* texel(int x, int y) const {
        return image_.pixels + y * image_.rowBytes + std::ptrdiff_t(x) * texelBytes_;
    }
    /// Its texels without padding; of 8-bit RGBA also a bitmap's.
    std::vector<std::uint8_t> texels() const {
        std::vector<std::uint8_t> result;
        for (int y = 0; y < image_.height; ++y)
            result.insert(result.end(), texel(0, y), texel(image_.width, y));
        return result;
    }
    Bitmap bitmap() const {
        return {image_.width, image_.height, std::make_shared<const std::vector<std::uint8_t>>(texels())};
    }

  private:
    int texelBytes_;
    std::vector<std::uint8_t> bytes_;
    NativeImage image_;
};

/// The instruction sets that this machine has, and portable code in place of another machine's.
inline std::vector<NativeTarget> instructionSets() {
    std::vector<NativeTarget> sets{NativeTarget::neon};
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) sets.push_back(NativeTarget::avx2);
    if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl"))
        sets.push_back(NativeTarget::avx512);
#endif
    return sets;
}

}  // namespace qv::test
