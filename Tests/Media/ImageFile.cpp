#include "Platform/Media/ImageFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>

#include <array>
#include <cstdio>
#include <random>

#include "Tests/Media/TemporaryFolder.h"

namespace qv {
namespace {

using testing::HasSubstr;
using Pixel = std::array<int, 4>;

Pixel pixelAt(const Bitmap& bitmap, int x, int y) {
    const std::uint8_t* p = bitmap.row(y) + x * 4;
    return {p[0], p[1], p[2], p[3]};
}

Bitmap makeBitmap(int width, int height, std::vector<std::uint8_t> pixels) {
    return {width, height, std::make_shared<const std::vector<std::uint8_t>>(std::move(pixels))};
}

Bitmap randomBitmap(int width, int height, bool opaque) {
    std::mt19937 random(9);
    std::vector<std::uint8_t> pixels(std::size_t(width * height) * 4);
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        pixels[i + 3] = opaque ? 255 : std::uint8_t(random());
        for (std::size_t c = 0; c < 3; ++c) pixels[i + c] = std::uint8_t(random() % (pixels[i + 3] + 1u));
    }
    return makeBitmap(width, height, std::move(pixels));
}

struct PNGOptions {
    int colorType, bitDepth, interlace = PNG_INTERLACE_NONE;
    std::vector<png_color> palette{};
    std::vector<png_byte> paletteAlpha{};
    int transparentGray = -1;
    std::vector<png_byte> exif{};
};

void encodePNG(const std::string& path, int width, int height, const PNGOptions& options,
               std::vector<std::vector<png_byte>> rows) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_IHDR(png, info, png_uint_32(width), png_uint_32(height), options.bitDepth, options.colorType,
                 options.interlace, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!options.palette.empty())
        png_set_PLTE(png, info, options.palette.data(), int(options.palette.size()));
    if (!options.paletteAlpha.empty()) {
        png_set_tRNS(png, info, options.paletteAlpha.data(), int(options.paletteAlpha.size()), nullptr);
    }
    if (options.transparentGray >= 0) {
        png_color_16 color{};
        color.gray = png_uint_16(options.transparentGray);
        png_set_tRNS(png, info, nullptr, 0, &color);
    }
    std::vector<png_byte> exif = options.exif;
    if (!exif.empty()) png_set_eXIf_1(png, info, png_uint_32(exif.size()), exif.data());
    png_write_info(png, info);
    std::vector<png_bytep> pointers;
    for (auto& row : rows) pointers.push_back(row.data());
    png_write_image(png, pointers.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    std::fclose(file);
}

/// Big-endian TIFF with the one tag.
std::vector<png_byte> orientationBlock(int orientation) {
    return {'M', 'M', 0, 42, 0, 0, 0, 8, 0, 1, 0x01, 0x12, 0, 3, 0, 0, 0, 1, 0, png_byte(orientation),
            0,   0,   0, 0,  0, 0};
}

void encodeJPEG(const std::string& path, int width, int height, J_COLOR_SPACE space, int components,
                const std::vector<std::uint8_t>& samples, bool adobe, int orientation) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    jpeg_compress_struct codec{};
    jpeg_error_mgr errors;
    codec.err = jpeg_std_error(&errors);
    jpeg_create_compress(&codec);
    jpeg_stdio_dest(&codec, file);
    codec.image_width = JDIMENSION(width);
    codec.image_height = JDIMENSION(height);
    codec.input_components = components;
    codec.in_color_space = space;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, 100, TRUE);
    codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
    codec.write_Adobe_marker = adobe;
    jpeg_start_compress(&codec, TRUE);
    if (orientation) {
        std::vector<std::uint8_t> block{'E', 'x', 'i', 'f', 0, 0};
        for (png_byte byte : orientationBlock(orientation)) block.push_back(byte);
        jpeg_write_marker(&codec, JPEG_APP0 + 1, block.data(), unsigned(block.size()));
    }
    while (codec.next_scanline < codec.image_height) {
        auto* row =
            const_cast<std::uint8_t*>(&samples[codec.next_scanline * std::size_t(width * components)]);
        jpeg_write_scanlines(&codec, &row, 1);
    }
    jpeg_finish_compress(&codec);
    jpeg_destroy_compress(&codec);
    std::fclose(file);
}

TEST(ImageFile, pngRoundTripIsExact) {
    const TemporaryFolder folder;
    std::string error;
    for (bool opaque : {true, false}) {
        const Bitmap bitmap = randomBitmap(37, 21, opaque);
        const std::string path = folder / "a.png";
        ASSERT_TRUE(writePNG(bitmap, path, &error)) << error;
        // The colour type byte of the header: 2 is RGB, 6 RGBA.
        EXPECT_EQ(readBytes(path)[25], opaque ? 2 : 6);
        const Bitmap back = readImageFile(path, &error);
        ASSERT_TRUE(back) << error;
        EXPECT_EQ(back.width, 37);
        EXPECT_EQ(*back.pixels, *bitmap.pixels);
        EXPECT_EQ(folder.fileCount(), 1u) << "a temporary file is left";
    }
}

TEST(ImageFile, everyKindOfPNGBecomesRGBA) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.png";

    encodePNG(path, 2, 1, {PNG_COLOR_TYPE_GRAY, 16}, {{0x12, 0x34, 0xff, 0xff}});
    EXPECT_EQ(pixelAt(readImageFile(path), 0, 0), (Pixel{0x12, 0x12, 0x12, 255}));
    // 0xb7ff / 257 is 183.3: scaled, where a dropped low byte would give 183 too; 0x80c0 is 128.25 and 0x00ff
    // 0.99.
    encodePNG(path, 1, 1, {PNG_COLOR_TYPE_RGB, 16}, {{0xb7, 0xff, 0x80, 0xc0, 0x00, 0xff}});
    EXPECT_EQ(pixelAt(readImageFile(path), 0, 0), (Pixel{183, 128, 1, 255}));
    encodePNG(path, 4, 1, {PNG_COLOR_TYPE_GRAY, 2}, {{0b00011011}});
    EXPECT_EQ(pixelAt(readImageFile(path), 2, 0), (Pixel{170, 170, 170, 255}));
    encodePNG(path, 2, 1, {PNG_COLOR_TYPE_GRAY_ALPHA, 8}, {{200, 128, 90, 0}});
    EXPECT_EQ(pixelAt(readImageFile(path), 0, 0), (Pixel{100, 100, 100, 128}));
    EXPECT_EQ(pixelAt(readImageFile(path), 1, 0), (Pixel{0, 0, 0, 0}));

    PNGOptions transparentGray{PNG_COLOR_TYPE_GRAY, 8};
    transparentGray.transparentGray = 7;
    encodePNG(path, 2, 1, transparentGray, {{7, 8}});
    EXPECT_EQ(pixelAt(readImageFile(path), 0, 0), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(pixelAt(readImageFile(path), 1, 0), (Pixel{8, 8, 8, 255}));

    PNGOptions palette{PNG_COLOR_TYPE_PALETTE, 4};
    palette.palette = {{255, 0, 0}, {0, 255, 0}, {10, 20, 30}};
    palette.paletteAlpha = {51};
    encodePNG(path, 3, 1, palette, {{0x01, 0x20}});
    EXPECT_EQ(pixelAt(readImageFile(path), 0, 0), (Pixel{51, 0, 0, 51}));
    EXPECT_EQ(pixelAt(readImageFile(path), 1, 0), (Pixel{0, 255, 0, 255}));
    EXPECT_EQ(pixelAt(readImageFile(path), 2, 0), (Pixel{10, 20, 30, 255}));

    PNGOptions interlaced{PNG_COLOR_TYPE_GRAY, 8, PNG_INTERLACE_ADAM7};
    std::vector<std::vector<png_byte>> rows(9, std::vector<png_byte>(9));
    for (std::size_t i = 0; i < 81; ++i) rows[i / 9][i % 9] = png_byte(i * 3);
    encodePNG(path, 9, 9, interlaced, rows);
    const Bitmap picture = readImageFile(path);
    for (int i = 0; i < 81; ++i) EXPECT_EQ(pixelAt(picture, i % 9, i / 9)[0], i * 3);
}

TEST(ImageFile, exifOrientationIsApplied) {
    // For each orientation, where the stored picture's upper left and upper right corners are to be seen:
    // 0 upper left, 1 upper right, 2 lower right, 3 lower left.
    constexpr int kCorners[8][2] = {{0, 1}, {1, 0}, {2, 3}, {3, 2}, {0, 3}, {1, 2}, {2, 1}, {3, 0}};
    const TemporaryFolder folder;
    const std::string jpeg = folder / "a.jpg", png = folder / "a.png";
    const int width = 32, height = 16;
    std::vector<std::uint8_t> samples(width * height * 3);
    std::vector<std::vector<png_byte>> rows(height, std::vector<png_byte>(width * 3));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool left = x < width / 2, top = y < height / 2;
            // Upper left red, upper right green, lower half black.
            const std::uint8_t color[3] = {std::uint8_t(top && left ? 255 : 0),
                                           std::uint8_t(top && !left ? 255 : 0), 0};
            for (int c = 0; c < 3; ++c) {
                samples[std::size_t((y * width + x) * 3 + c)] = color[c];
                rows[std::size_t(y)][std::size_t(x * 3 + c)] = color[c];
            }
        }
    }
    for (int orientation = 1; orientation <= 8; ++orientation) {
        encodeJPEG(jpeg, width, height, JCS_RGB, 3, samples, false, orientation);
        PNGOptions options{PNG_COLOR_TYPE_RGB, 8};
        options.exif = orientationBlock(orientation);
        encodePNG(png, width, height, options, rows);
        for (const std::string& path : {jpeg, png}) {
            const Bitmap picture = readImageFile(path);
            ASSERT_TRUE(picture);
            ASSERT_EQ(picture.width, orientation < 5 ? width : height);
            ASSERT_EQ(picture.height, orientation < 5 ? height : width);
            const auto corner = [&](int index) {
                return pixelAt(picture, index == 1 || index == 2 ? picture.width - 2 : 1,
                               index >= 2 ? picture.height - 2 : 1);
            };
            const int* corners = kCorners[orientation - 1];
            EXPECT_GT(corner(corners[0])[0], 240) << path << orientation;
            EXPECT_LT(corner(corners[0])[1], 15) << path << orientation;
            EXPECT_GT(corner(corners[1])[1], 240) << path << orientation;
            EXPECT_LT(corner(corners[1])[0], 15) << path << orientation;
        }
    }
}

TEST(ImageFile, greyAndPrintJPEG) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.jpg";
    encodeJPEG(path, 8, 8, JCS_GRAYSCALE, 1, std::vector<std::uint8_t>(64, 99), false, 0);
    EXPECT_EQ(pixelAt(readImageFile(path), 3, 3), (Pixel{99, 99, 99, 255}));

    // Cyan 20 %, magenta 60 %, no yellow, black 50 %, as ink and, in Adobe's way, inverted.
    for (bool adobe : {false, true}) {
        std::vector<std::uint8_t> inks;
        for (int i = 0; i < 64; ++i) {
            for (int ink : {51, 153, 0, 128}) inks.push_back(std::uint8_t(adobe ? 255 - ink : ink));
        }
        encodeJPEG(path, 8, 8, JCS_CMYK, 4, inks, adobe, 0);
        const Pixel pixel = pixelAt(readImageFile(path), 3, 3);
        EXPECT_NEAR(pixel[0], 0.8 * 0.5 * 255, 2);
        EXPECT_NEAR(pixel[1], 0.4 * 0.5 * 255, 2);
        EXPECT_NEAR(pixel[2], 0.5 * 255, 2);
        EXPECT_EQ(pixel[3], 255);
    }
}

TEST(ImageFile, jpegOverBlack) {
    const TemporaryFolder folder;
    std::string error;
    const std::string path = folder / "a.jpg";
    std::vector<std::uint8_t> pixels(64 * 64 * 4);
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        pixels[i] = 128;
        pixels[i + 3] = 128;
    }
    ASSERT_TRUE(writeJPEG(makeBitmap(64, 64, pixels), path, 95, &error)) << error;
    const Pixel pixel = pixelAt(readImageFile(path), 30, 30);
    EXPECT_NEAR(pixel[0], 128, 2);
    EXPECT_NEAR(pixel[1], 0, 2);
    EXPECT_EQ(pixel[3], 255);
}

TEST(ImageFile, damageIsAnErrorAndNeverACrash) {
    const TemporaryFolder folder;
    const std::string png = folder / "a.png", jpeg = folder / "a.jpg", damaged = folder / "damaged";
    ASSERT_TRUE(writePNG(randomBitmap(40, 30, false), png));
    ASSERT_TRUE(writeJPEG(randomBitmap(40, 30, true), jpeg, 80));
    for (const std::string& path : {png, jpeg}) {
        const std::string whole = readBytes(path);
        for (std::size_t length : {std::size_t(0), std::size_t(1), std::size_t(9), std::size_t(30),
                                   whole.size() / 2, whole.size() - 3}) {
            writeBytes(damaged, whole.substr(0, length));
            std::string error;
            EXPECT_FALSE(readImageFile(damaged, &error)) << path << " cut to " << length;
            EXPECT_THAT(error, HasSubstr("cannot read '" + damaged + "': "));
            EXPECT_EQ(error.find('\n'), std::string::npos);
        }
    }
    // A size field of 2^31-1 must not be believed.
    std::string huge = readBytes(png);
    huge.replace(16, 8, std::string("\x7f\xff\xff\xff\x7f\xff\xff\xff", 8));
    writeBytes(damaged, huge);
    EXPECT_FALSE(readImageFile(damaged));
}

TEST(ImageFile, filesThatCannotBeReadNameTheCause) {
    const TemporaryFolder folder;
    std::string error;
    EXPECT_FALSE(readImageFile(folder / "none.png", &error));
    EXPECT_EQ(error, "cannot read '" + folder / "none.png" + "': No such file or directory");
    EXPECT_FALSE(readImageFile(folder / "", &error));
    EXPECT_THAT(error, HasSubstr("Is a directory"));
    writeBytes(folder / "text.png", "hello");
    EXPECT_FALSE(readImageFile(folder / "text.png", &error));
    EXPECT_THAT(error, HasSubstr("neither a PNG nor a JPEG file"));
    std::vector<std::vector<png_byte>> wide(1, std::vector<png_byte>(std::size_t(kMaximumImageSide + 1)));
    encodePNG(folder / "wide.png", kMaximumImageSide + 1, 1, {PNG_COLOR_TYPE_GRAY, 8}, wide);
    EXPECT_FALSE(readImageFile(folder / "wide.png", &error));
    EXPECT_THAT(error, HasSubstr("16385x1 is outside the size limit"));
}

}  // namespace
}  // namespace qv
