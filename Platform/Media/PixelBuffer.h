#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace qv {

/// Memory layouts of a video frame. Samples of more than 8 bits are little-endian 16-bit words with the value
/// in the low bits.
enum class PixelFormat {
    rgba8,       ///< one plane, straight alpha
    gray8,       ///< one plane, full range
    i420,        ///< Y, U, V; chroma halved both ways
    i422,        ///< Y, U, V; chroma halved across
    i444,        ///< Y, U, V
    i420Alpha,   ///< Y, U, V, A; alpha full range and straight
    nv12,        ///< Y, interleaved UV; chroma halved both ways
    i420Bits10,  ///< as i420, 10 bits
    i422Bits10,  ///< as i422, 10 bits
    i444Bits10,  ///< as i444, 10 bits
};

/// Y'CbCr coefficients.
enum class ColorMatrix { bt601, bt709, bt2020 };

/// How the samples are to be read. Primaries and transfer travel beside the pixels, unprocessed.
struct ColorDescription {
    ColorMatrix matrix = ColorMatrix::bt709;  ///< of Y'CbCr; does not count for RGB
    bool fullRange = false;                   ///< samples use all codes, not the video levels alone
    bool operator==(const ColorDescription&) const = default;
};

/// The size of one plane of a frame.
struct PlaneLayout {
    int width, height;   ///< samples
    int bytesPerSample;  ///< of all channels of a sample together
};

/// A frame in memory: planes, their strides and how to read them. A cheap handle to shared memory; whoever
/// fills the planes does so before handing the buffer on.
class PixelBuffer {
  public:
    /// A plane in memory.
    struct Plane {
        std::uint8_t* data = nullptr;  ///< the first row
        std::size_t rowBytes = 0;      ///< from a row's start to the next one's
    };

    PixelBuffer() = default;

    /// New, uninitialised memory with rows aligned to 64 bytes. Nil for a side outside 1..kMaximumImageSide.
    static PixelBuffer create(PixelFormat format, int width, int height, ColorDescription color = {});
    /// Takes planes that `owner` keeps alive, without a copy.
    static PixelBuffer wrap(PixelFormat format, int width, int height, ColorDescription color,
                            const std::array<Plane, 4>& planes, std::shared_ptr<const void> owner);

    explicit operator bool() const { return owner_ != nullptr; }
    /// What it was made with.
    PixelFormat format() const { return format_; }
    int width() const { return width_; }
    int height() const { return height_; }
    const ColorDescription& color() const { return color_; }
    /// Plane `index`, 0 to `planeCount` − 1, in the order that PixelFormat names.
    const Plane& plane(int index) const { return planes_[std::size_t(index)]; }

    /// How many planes a format has, 1..4.
    static int planeCount(PixelFormat format);
    /// The size of a plane of a frame of width × height pixels; halved sides are rounded up.
    static PlaneLayout planeLayout(PixelFormat format, int plane, int width, int height);
    /// 8 or 10.
    static int bitDepth(PixelFormat format);
    /// Whether its samples are Y'CbCr.
    static bool isYUV(PixelFormat format);

  private:
    PixelFormat format_ = PixelFormat::rgba8;
    int width_ = 0, height_ = 0;
    ColorDescription color_;
    std::array<Plane, 4> planes_{};
    std::shared_ptr<const void> owner_;
};

/// The linear map between Y'CbCr samples and RGB, for shaders and for the processor alike:
/// rgb = toRGB · (yuv − offset), with yuv and rgb scaled to 0..1 of their storage's full code.
struct YUVCoefficients {
    std::array<float, 3> offset;   ///< of Y, Cb and Cr
    std::array<float, 9> toRGB;    ///< row-major
    std::array<float, 9> fromRGB;  ///< row-major; yuv = fromRGB · rgb + offset
};

/// Coefficients of Rec. ITU-R BT.601, BT.709 or BT.2020 (non-constant luminance) at 8 or 10 bits. For 10 bits
/// the scale is that of a value in the low bits of a 16-bit word, read as value / 65535.
YUVCoefficients yuvCoefficients(const ColorDescription& color, int bitDepth);

}  // namespace qv
