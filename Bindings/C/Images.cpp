#include <algorithm>
#include <array>

#include "Bindings/C/Interface.h"
#include "Platform/Media/Bitmap.h"
#include "Platform/Media/ImageFile.h"

namespace qv::c {

namespace {

/// A layout that only this interface knows: `Red` and `Blue` are the places of these bytes in a pixel.
template <int Red, int Blue, int Bytes>
struct Packing {
    static void toRGBA(const std::uint8_t* from, std::uint8_t* rgba, int width) {
        for (int x = 0; x < width; ++x, from += Bytes, rgba += 4) {
            rgba[0] = from[Red];
            rgba[1] = from[1];
            rgba[2] = from[Blue];
            rgba[3] = Bytes == 4 ? from[Bytes - 1] : 255;
        }
    }
    static void fromRGBA(const std::uint8_t* rgba, std::uint8_t* to, int width) {
        for (int x = 0; x < width; ++x, to += Bytes, rgba += 4) {
            to[Red] = rgba[0];
            to[1] = rgba[1];
            to[Blue] = rgba[2];
            if (Bytes == 4) to[Bytes - 1] = rgba[3];
        }
    }
};

using RowConversion = void (*)(const std::uint8_t*, std::uint8_t*, int);
struct PackedFormat {
    int format, bytes;
    RowConversion toRGBA, fromRGBA;
};
template <int Format, int Red, int Blue, int Bytes>
constexpr PackedFormat packedFormat() {
    return {Format, Bytes, Packing<Red, Blue, Bytes>::toRGBA, Packing<Red, Blue, Bytes>::fromRGBA};
}
constexpr std::array kPackedFormats = {packedFormat<QV_FORMAT_RGB8, 0, 2, 3>(),
                                       packedFormat<QV_FORMAT_BGR8, 2, 0, 3>(),
                                       packedFormat<QV_FORMAT_BGRA8, 2, 0, 4>()};

const PackedFormat* packedFormat(int format) {
    for (const PackedFormat& each : kPackedFormats) {
        if (each.format == format) return &each;
    }
    return nullptr;
}

ColorDescription colorOf(const qv_frame& frame) {
    constexpr std::array kMatrices = {ColorMatrix::bt709, ColorMatrix::bt601, ColorMatrix::bt2020};
    return {kMatrices[std::size_t(frame.matrix)], frame.full_range != 0};
}

void checkPlane(const qv_frame& frame, int plane, std::size_t rowBytes) {
    if (!frame.planes[plane]) fail("plane {} of the frame is missing", plane);
    if (frame.strides[plane] < rowBytes)
        fail("plane {} has rows of {} bytes, but a stride of {}", plane, rowBytes, frame.strides[plane]);
}

PixelBuffer copied(const PixelBuffer& source) {
    PixelBuffer copy = PixelBuffer::create(source.format(), source.width(), source.height(), source.color());
    if (!copy) throw std::bad_alloc();
    for (int plane = 0; plane < PixelBuffer::planeCount(source.format()); ++plane) {
        const PlaneLayout layout =
            PixelBuffer::planeLayout(source.format(), plane, source.width(), source.height());
        const PixelBuffer::Plane &from = source.plane(plane), &to = copy.plane(plane);
        for (int y = 0; y < layout.height; ++y) {
            std::memcpy(to.data + std::size_t(y) * to.rowBytes, from.data + std::size_t(y) * from.rowBytes,
                        std::size_t(layout.width) * std::size_t(layout.bytesPerSample));
        }
    }
    return copy;
}

/// A picture's red, for inputs that read a mask in memory.
PixelBuffer maskOf(const Bitmap& bitmap) {
    PixelBuffer gray = PixelBuffer::create(PixelFormat::gray8, bitmap.width, bitmap.height);
    if (!gray) throw std::bad_alloc();
    for (int y = 0; y < bitmap.height; ++y) {
        std::uint8_t* to = gray.plane(0).data + std::size_t(y) * gray.plane(0).rowBytes;
        for (int x = 0; x < bitmap.width; ++x) to[x] = bitmap.row(y)[x * 4];
    }
    return gray;
}

}  // namespace

void checkFrame(const qv_frame& frame) {
    if (frame.width < 1 || frame.height < 1 || frame.width > kMaximumImageSide ||
        frame.height > kMaximumImageSide) {
        fail("a frame of {}x{} is outside 1 to {}", frame.width, frame.height, kMaximumImageSide);
    }
    if (frame.matrix < QV_MATRIX_BT709 || frame.matrix > QV_MATRIX_BT2020)
        fail("there is no matrix {}", frame.matrix);
    if (const PackedFormat* packed = packedFormat(frame.format))
        return checkPlane(frame, 0, std::size_t(frame.width) * std::size_t(packed->bytes));
    if (frame.format < QV_FORMAT_RGBA8 || frame.format > QV_FORMAT_I444_10)
        fail("there is no format {}", frame.format);
    const auto format = PixelFormat(frame.format);
    for (int plane = 0; plane < PixelBuffer::planeCount(format); ++plane) {
        const PlaneLayout layout = PixelBuffer::planeLayout(format, plane, frame.width, frame.height);
        checkPlane(frame, plane, std::size_t(layout.width) * std::size_t(layout.bytesPerSample));
    }
}

bool isPacked(const qv_frame& frame) {
    return packedFormat(frame.format) != nullptr;
}

PixelBuffer wrapFrame(const qv_frame& frame, std::shared_ptr<const void> owner) {
    std::array<PixelBuffer::Plane, 4> planes;
    for (std::size_t i = 0; i < planes.size(); ++i) planes[i] = {frame.planes[i], frame.strides[i]};
    return PixelBuffer::wrap(PixelFormat(frame.format), frame.width, frame.height, colorOf(frame), planes,
                             std::move(owner));
}

PixelBuffer unpacked(const qv_frame& frame) {
    PixelBuffer rgba = PixelBuffer::create(PixelFormat::rgba8, frame.width, frame.height);
    if (!rgba) throw std::bad_alloc();
    for (int y = 0; y < frame.height; ++y) {
        packedFormat(frame.format)
            ->toRGBA(frame.planes[0] + std::size_t(y) * frame.strides[0],
                     rgba.plane(0).data + std::size_t(y) * rgba.plane(0).rowBytes, frame.width);
    }
    return rgba;
}

void pack(const PixelBuffer& rgba, const qv_frame& frame) {
    for (int y = 0; y < frame.height; ++y) {
        packedFormat(frame.format)
            ->fromRGBA(rgba.plane(0).data + std::size_t(y) * rgba.plane(0).rowBytes,
                       frame.planes[0] + std::size_t(y) * frame.strides[0], frame.width);
    }
}

}  // namespace qv::c

using namespace qv::c;

qv_image* qv_image_from_frame(const qv_frame* frame, void (*release)(void* user), void* user, char* error,
                              size_t error_size) {
    return guarded({error, error_size}, [&] {
        // Gives the memory back when the last reader is gone, or this call ends without one.
        std::shared_ptr<const void> owner(frame ? frame->planes[0] : nullptr, [=](const void*) {
            if (release) release(user);
        });
        const qv_frame given = known(frame, "frame");
        checkFrame(given);
        auto image = std::make_unique<qv_image>();
        if (isPacked(given)) {
            image->buffer = unpacked(given);
        } else {
            image->buffer = wrapFrame(given, owner);
            if (!release) image->buffer = copied(image->buffer);
        }
        const bool opaque = given.format == QV_FORMAT_RGB8 || given.format == QV_FORMAT_BGR8;
        image->image = qv::MTIImage::imageWithPixelBuffer(
            image->buffer, opaque ? qv::MTIAlphaType::alphaIsOne : qv::MTIAlphaType::nonPremultiplied);
        return image.release();
    });
}

qv_image* qv_image_from_file(const char* path, char* error, size_t error_size) {
    return guarded({error, error_size}, [&] {
        std::string cause;
        const qv::Bitmap bitmap = qv::readImageFile(std::string(requiredText(path, "path")), &cause);
        if (!bitmap) fail("{}", cause);
        auto image = std::make_unique<qv_image>();
        image->image = qv::MTIImage::imageWithBitmap(bitmap);
        image->buffer = maskOf(bitmap);
        return image.release();
    });
}

void qv_image_size(const qv_image* image, int32_t* width, int32_t* height) {
    const qv::CGSize size = image ? image->image.size() : qv::CGSize{};
    if (width) *width = int32_t(size.width);
    if (height) *height = int32_t(size.height);
}

void qv_image_destroy(qv_image* image) {
    delete image;
}
