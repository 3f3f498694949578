#include "Host/Clips/PictureFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/Interrupt.h"
#include "Platform/Media/ImageFile.h"

namespace qv::host {

namespace {
constexpr int kJPEGQuality = 92;
}

bool isPictureFile(const std::string& path) {
    static constexpr std::array<std::uint8_t, 4> kPNG{0x89, 'P', 'N', 'G'};
    static constexpr std::array<std::uint8_t, 3> kJPEG{0xff, 0xd8, 0xff};
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) return false;
    std::array<char, 4> bytes{};
    std::ifstream(path, std::ios::binary).read(bytes.data(), bytes.size());
    const auto begins = [&](const auto& magic) {
        return std::equal(magic.begin(), magic.end(), bytes.begin(),
                          [](std::uint8_t a, char b) { return a == std::uint8_t(b); });
    };
    return begins(kPNG) || begins(kJPEG);
}

Bitmap readPicture(const std::string& path) {
    std::string cause;
    Bitmap bitmap = readImageFile(path, &cause);
    if (!bitmap) fail(ExitCode::input, "{}", cause);
    return bitmap;
}

PictureType pictureTypeFor(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    if (extension == ".jpg" || extension == ".jpeg") return PictureType::jpeg;
    std::error_code ignored;
    const bool isFile = path != "-" && !std::filesystem::is_character_file(path, ignored);
    if (extension != ".png" && isFile)
        fail(ExitCode::usage, "a picture is written as .png or .jpg, not '{}'", path);
    return PictureType::png;
}

void writePicture(const Bitmap& bitmap, const std::string& path, PictureType type) {
    std::string cause;
    const DeferInterrupts defer;  // so short that a signal may wait for it
    const bool written = type == PictureType::jpeg ? writeJPEG(bitmap, path, kJPEGQuality, &cause)
                                                   : writePNG(bitmap, path, &cause);
    if (!written) fail(ExitCode::output, "{}", cause);
}

PixelBuffer grayFromPicture(const Bitmap& bitmap) {
    PixelBuffer gray = PixelBuffer::create(PixelFormat::gray8, bitmap.width, bitmap.height);
    for (int y = 0; y < bitmap.height; ++y) {
        std::uint8_t* row = gray.plane(0).data + std::size_t(y) * gray.plane(0).rowBytes;
        for (int x = 0; x < bitmap.width; ++x) row[x] = bitmap.row(y)[x * 4];
    }
    return gray;
}

}  // namespace qv::host
