#include "Platform/Media/ImageFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <jerror.h>
#include <jpeglib.h>
#include <png.h>

#include "Platform/Foundation/OutputFile.h"

namespace qv {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using InputFile = std::unique_ptr<std::FILE, FileCloser>;

/// What a codec's error handler leaves behind. The codecs leave their calls by longjmp, so the functions that
/// call them own nothing that needs a destructor: it all lives in one of these, outside.
struct CodecState {
    std::FILE* file = nullptr;
    Bytes pixels;
    std::vector<std::uint8_t*> rows;
    int width = 0, height = 0;
    int orientation = 1;
    bool opaque = true;
    Bytes encoded;
    std::string cause;
    std::jmp_buf escape;
};

bool checkSize(CodecState& state, std::uint32_t width, std::uint32_t height) {
    if (width >= 1 && height >= 1 && width <= unsigned(kMaximumImageSide) &&
        height <= unsigned(kMaximumImageSide)) {
        return true;
    }
    state.cause = fmt::format("{}x{} is outside the size limit of {}x{}", width, height, kMaximumImageSide,
                              kMaximumImageSide);
    return false;
}

bool allocatePixels(CodecState& state, std::uint32_t width, std::uint32_t height) try {
    state.width = int(width);
    state.height = int(height);
    state.pixels.resize(std::size_t(width) * height * 4);
    state.rows.resize(height);
    for (std::size_t y = 0; y < height; ++y) state.rows[y] = state.pixels.data() + y * width * 4;
    return true;
} catch (const std::bad_alloc&) {
    state.cause = "out of memory";
    return false;
}

/// The orientation tag (0x0112) of the first directory of an EXIF block (a TIFF file), 1 when there is none.
int exifOrientation(const std::uint8_t* data, std::size_t size) {
    if (size < 8) return 1;
    const bool bigEndian = data[0] == 'M';
    const auto read = [&](std::size_t at, int count) -> std::uint32_t {
        if (at + std::size_t(count) > size) return 0;
        std::uint32_t value = 0;
        for (int i = 0; i < count; ++i) {
            value = value << 8 | data[at + std::size_t(bigEndian ? i : count - 1 - i)];
        }
        return value;
    };
    if (read(2, 2) != 42) return 1;
    const std::size_t directory = read(4, 4);
    const std::uint32_t entries = read(directory, 2);
    for (std::uint32_t i = 0; i < entries; ++i) {
        const std::size_t entry = directory + 2 + std::size_t(i) * 12;
        if (entry + 12 > size) break;
        if (read(entry, 2) != 0x0112) continue;
        const std::uint32_t value = read(entry + 8, 2);
        return value >= 1 && value <= 8 ? int(value) : 1;
    }
    return 1;
}

/// Turns the stored picture upright. Orientations 5 to 8 exchange the sides.
void applyOrientation(CodecState& state) {
    const int orientation = state.orientation;
    if (orientation <= 1) return;
    const bool transposed = orientation >= 5;
    const bool flipX = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool flipY = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    const int width = transposed ? state.height : state.width,
              height = transposed ? state.width : state.height;
    Bytes upright(state.pixels.size());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            int sourceX = transposed ? y : x, sourceY = transposed ? x : y;
            if (flipX) sourceX = state.width - 1 - sourceX;
            if (flipY) sourceY = state.height - 1 - sourceY;
            std::memcpy(&upright[(std::size_t(y) * std::size_t(width) + std::size_t(x)) * 4],
                        state.rows[std::size_t(sourceY)] + sourceX * 4, 4);
        }
    }
    state.pixels = std::move(upright);
    state.width = width;
    state.height = height;
}

// PNG

void failPNG(png_structp png, png_const_charp message) {
    auto* state = static_cast<CodecState*>(png_get_error_ptr(png));
    if (state->cause.empty()) state->cause = fmt::format("damaged PNG: {}", message);
    std::longjmp(state->escape, 1);
}

void ignorePNGWarning(png_structp, png_const_charp) {}

void readPNGBytes(png_structp png, png_bytep data, std::size_t size) {
    auto* state = static_cast<CodecState*>(png_get_io_ptr(png));
    if (std::fread(data, 1, size, state->file) == size) return;
    state->cause = std::ferror(state->file) ? std::generic_category().message(errno) : "cut-off PNG";
    png_error(png, "read");
}

void appendPNGBytes(png_structp png, png_bytep data, std::size_t size) {
    auto* state = static_cast<CodecState*>(png_get_io_ptr(png));
    try {
        state->encoded.insert(state->encoded.end(), data, data + size);
        return;
    } catch (const std::bad_alloc&) {
        state->cause = "out of memory";
    }
    png_error(png, "write");
}

void flushNothing(png_structp) {}

bool decodePNG(png_structp png, png_infop info, CodecState& state) {
    if (setjmp(state.escape)) return false;
    // The limit of the check below, which names the size, has to come first.
    png_set_user_limits(png, 0x7fffffff, 0x7fffffff);
    png_set_read_fn(png, &state, readPNGBytes);
    png_read_info(png, info);
    if (!checkSize(state, png_get_image_width(png, info), png_get_image_height(png, info))) return false;

    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xff, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    state.opaque =
        !(png_get_color_type(png, info) & PNG_COLOR_MASK_ALPHA) && !png_get_valid(png, info, PNG_INFO_tRNS);
    png_read_update_info(png, info);
    if (!allocatePixels(state, png_get_image_width(png, info), png_get_image_height(png, info))) return false;
    png_read_image(png, state.rows.data());
    png_read_end(png, info);

    png_bytep exif = nullptr;
    png_uint_32 exifSize = 0;
    if (png_get_eXIf_1(png, info, &exifSize, &exif)) state.orientation = exifOrientation(exif, exifSize);
    return true;
}

bool readPNG(CodecState& state) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &state, failPNG, ignorePNGWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool done = info && decodePNG(png, info, state);
    png_destroy_read_struct(&png, &info, nullptr);
    return done;
}

bool encodePNG(png_structp png, png_infop info, CodecState& state) {
    if (setjmp(state.escape)) return false;
    png_set_write_fn(png, &state, appendPNGBytes, flushNothing);
    // Twice as fast as the usual level for a few per cent in size.
    png_set_compression_level(png, 4);
    png_set_IHDR(png, info, png_uint_32(state.width), png_uint_32(state.height), 8,
                 state.opaque ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    if (state.opaque) png_set_filler(png, 0, PNG_FILLER_AFTER);
    png_write_image(png, state.rows.data());
    png_write_end(png, info);
    return true;
}

// JPEG

/// The codec's error record and the state that goes with it, found again from the codec's pointer to the
/// former.
struct JPEGErrors {
    jpeg_error_mgr manager;
    CodecState* state;
};

void setJPEGCause(j_common_ptr codec) {
    char message[JMSG_LENGTH_MAX];
    codec->err->format_message(codec, message);
    reinterpret_cast<JPEGErrors*>(codec->err)->state->cause = fmt::format("damaged JPEG: {}", message);
}

[[noreturn]] void failJPEG(j_common_ptr codec) {
    setJPEGCause(codec);
    std::longjmp(reinterpret_cast<JPEGErrors*>(codec->err)->state->escape, 1);
}

/// The codec only warns of damaged data and paints it grey; that is a failure here. Warnings of harmless
/// oddities are dropped.
void onJPEGMessage(j_common_ptr codec, int level) {
    if (level >= 0) return;
    switch (codec->err->msg_code) {
        case JWRN_EXTRANEOUS_DATA:
        case JWRN_ADOBE_XFORM:
        case JWRN_JFIF_MAJOR:
        case JWRN_BOGUS_PROGRESSION:
        case JWRN_TOO_MUCH_DATA:
            return;
        case JWRN_JPEG_EOF:
            reinterpret_cast<JPEGErrors*>(codec->err)->state->cause = "cut-off JPEG";
            std::longjmp(reinterpret_cast<JPEGErrors*>(codec->err)->state->escape, 1);
        default:
            failJPEG(codec);
    }
}

void useErrors(JPEGErrors& errors, CodecState& state) {
    jpeg_std_error(&errors.manager);
    errors.manager.error_exit = failJPEG;
    errors.manager.emit_message = onJPEGMessage;
    errors.state = &state;
}

/// Adobe programs store CMYK inverted and mark the file as theirs.
void convertCMYK(std::uint8_t* pixel, std::size_t count, bool inverted) {
    for (; count > 0; --count, pixel += 4) {
        const std::uint8_t mask = inverted ? 0 : 255;
        const unsigned black = pixel[3] ^ mask;
        for (int c = 0; c < 3; ++c) pixel[c] = std::uint8_t((unsigned(pixel[c] ^ mask) * black + 127) / 255);
        pixel[3] = 255;
    }
}

bool decodeJPEG(jpeg_decompress_struct& codec, CodecState& state) {
    if (setjmp(state.escape)) return false;
    jpeg_create_decompress(&codec);
    jpeg_stdio_src(&codec, state.file);
    jpeg_save_markers(&codec, JPEG_APP0 + 1, 0xffff);
    jpeg_read_header(&codec, TRUE);
    if (!checkSize(state, codec.image_width, codec.image_height)) return false;
    for (const jpeg_marker_struct* marker = codec.marker_list; marker; marker = marker->next) {
        if (marker->data_length > 6 && std::memcmp(marker->data, "Exif\0\0", 6) == 0) {
            state.orientation = exifOrientation(marker->data + 6, marker->data_length - 6);
        }
    }
    const bool cmyk = codec.num_components == 4;
    codec.out_color_space = cmyk ? JCS_CMYK : JCS_EXT_RGBA;
    jpeg_start_decompress(&codec);
    if (!allocatePixels(state, codec.output_width, codec.output_height)) return false;
    while (codec.output_scanline < codec.output_height) {
        jpeg_read_scanlines(&codec, &state.rows[codec.output_scanline],
                            codec.output_height - codec.output_scanline);
    }
    if (cmyk) convertCMYK(state.pixels.data(), state.pixels.size() / 4, codec.saw_Adobe_marker);
    jpeg_finish_decompress(&codec);
    return true;
}

bool readJPEG(CodecState& state) {
    jpeg_decompress_struct codec{};
    JPEGErrors errors;
    useErrors(errors, state);
    codec.err = &errors.manager;
    const bool done = decodeJPEG(codec, state);
    jpeg_destroy_decompress(&codec);
    return done;
}

bool encodeJPEG(jpeg_compress_struct& codec, CodecState& state, int quality, unsigned char*& data,
                unsigned long& size) {
    if (setjmp(state.escape)) return false;
    jpeg_create_compress(&codec);
    jpeg_mem_dest(&codec, &data, &size);
    codec.image_width = JDIMENSION(state.width);
    codec.image_height = JDIMENSION(state.height);
    codec.input_components = 4;
    codec.in_color_space = JCS_EXT_RGBX;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, std::clamp(quality, 1, 100), TRUE);
    // Whoever asks for a high quality does not want halved chroma.
    if (quality >= 90) codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&codec, TRUE);
    jpeg_write_scanlines(&codec, state.rows.data(), codec.image_height);
    jpeg_finish_compress(&codec);
    return true;
}

// Files

InputFile openInput(const std::string& path, std::string& cause) {
    InputFile file;
    if (path == "-") {
        const int descriptor = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
        if (descriptor >= 0) file.reset(::fdopen(descriptor, "rb"));
    } else {
        file.reset(std::fopen(path.c_str(), "rbe"));
    }
    if (!file) cause = std::generic_category().message(errno);
    return file;
}

bool decodeFile(const InputFile& file, CodecState& state) {
    const int first = std::fgetc(file.get());
    if (first == EOF) {
        state.cause = std::ferror(file.get()) ? std::generic_category().message(errno) : "the file is empty";
        return false;
    }
    std::ungetc(first, file.get());
    state.file = file.get();
    if (first == 0x89) return readPNG(state);
    if (first == 0xff) return readJPEG(state);
    state.cause = "neither a PNG nor a JPEG file";
    return false;
}

bool report(std::string* error, const char* action, const std::string& path, const std::string& cause) {
    if (error) *error = fileErrorLine(action, path, cause);
    return false;
}

/// The picture in a file; nil with the cause, which is kept for a file that could not be opened.
Bitmap decoded(const InputFile& file, std::string& cause) try {
    if (!file) return {};
    CodecState state;
    if (!decodeFile(file, state)) {
        cause = state.cause;
        return {};
    }
    applyOrientation(state);
    if (!state.opaque) premultiply(state.pixels.data(), state.pixels.size() / 4);
    return {state.width, state.height, std::make_shared<const Bytes>(std::move(state.pixels))};
} catch (const std::bad_alloc&) {
    cause = "out of memory";
    return {};
}

/// Has the state write the bitmap's pixels, or, `straight`, a copy with straight alpha.
bool takePixels(CodecState& state, const Bitmap& bitmap, bool straight) {
    if (!bitmap) {
        state.cause = "there is no picture";
        return false;
    }
    if (straight) {
        state.pixels = *bitmap.pixels;
        unpremultiply(state.pixels.data(), state.pixels.size() / 4);
    }
    state.width = bitmap.width;
    state.height = bitmap.height;
    const std::uint8_t* const first = straight ? state.pixels.data() : bitmap.pixels->data();
    // The encoders only read them.
    for (int y = 0; y < bitmap.height; ++y)
        state.rows.push_back(const_cast<std::uint8_t*>(first) + std::size_t(y) * bitmap.rowBytes());
    return true;
}

bool isOpaque(const Bitmap& bitmap) {
    for (std::size_t i = 3; bitmap && i < bitmap.pixels->size(); i += 4)
        if ((*bitmap.pixels)[i] != 255) return false;
    return true;
}

}  // namespace

Bitmap readImageFile(const std::string& path, std::string* error) {
    std::string cause;
    Bitmap bitmap = decoded(openInput(path, cause), cause);
    if (!bitmap) report(error, "read", path, cause);
    return bitmap;
}

Bitmap readImageBytes(std::span<const std::uint8_t> bytes, std::string* error) {
    std::string cause = "the file is empty";
    InputFile file;
    if (!bytes.empty()) {
        // Opened for reading alone, the bytes are not written.
        file.reset(::fmemopen(const_cast<std::uint8_t*>(bytes.data()), bytes.size(), "rb"));
        if (!file) cause = std::generic_category().message(errno);
    }
    Bitmap bitmap = decoded(file, cause);
    if (!bitmap && error) *error = fmt::format("cannot read a picture in memory: {}", cause);
    return bitmap;
}

bool writePNG(const Bitmap& bitmap, const std::string& path, std::string* error) try {
    CodecState state;
    state.opaque = isOpaque(bitmap);
    if (!takePixels(state, bitmap, !state.opaque)) return report(error, "write", path, state.cause);

    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &state, failPNG, ignorePNGWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool encoded = info && encodePNG(png, info, state);
    png_destroy_write_struct(&png, &info);
    if (!encoded) return report(error, "write", path, state.cause);
    return writeWholeFile(path, {reinterpret_cast<const char*>(state.encoded.data()), state.encoded.size()},
                          error);
} catch (const std::bad_alloc&) {
    return report(error, "write", path, "out of memory");
}

std::vector<std::uint8_t> jpegBytes(const Bitmap& bitmap, int quality, std::string* error) try {
    CodecState state;
    unsigned char* data = nullptr;
    unsigned long size = 0;
    bool encoded = false;
    if (takePixels(state, bitmap, false)) {
        jpeg_compress_struct codec{};
        JPEGErrors errors;
        useErrors(errors, state);
        codec.err = &errors.manager;
        encoded = encodeJPEG(codec, state, quality, data, size);
        jpeg_destroy_compress(&codec);
    }
    const std::unique_ptr<unsigned char, decltype(&std::free)> keep(data, std::free);
    if (encoded) return {data, data + size};
    if (error) *error = state.cause;
    return {};
} catch (const std::bad_alloc&) {
    if (error) *error = "out of memory";
    return {};
}

bool writeJPEG(const Bitmap& bitmap, const std::string& path, int quality, std::string* error) {
    std::string cause;
    const Bytes bytes = jpegBytes(bitmap, quality, &cause);
    if (bytes.empty()) return report(error, "write", path, cause);
    return writeWholeFile(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, error);
}

}  // namespace qv
