// A PNG or JPEG file. Huge ones are left out: they take their time rightly.

#include "Platform/Media/ImageFile.h"
#include "Tests/Fuzz/FuzzInput.h"

using namespace qv;

namespace {

int word(const std::uint8_t* bytes) {
    return bytes[0] << 8 | bytes[1];
}

bool isHuge(std::span<const std::uint8_t> file) {
    constexpr int kMostSide = 300;
    if (file.size() > 24 && file[0] == 0x89)
        return word(&file[16]) || word(&file[20]) || word(&file[18]) > kMostSide ||
               word(&file[22]) > kMostSide;
    for (std::size_t i = 0; i + 9 < file.size(); ++i) {
        const bool frameHeader = file[i] == 0xFF && file[i + 1] >= 0xC0 && file[i + 1] <= 0xCF;
        if (frameHeader && (word(&file[i + 5]) > kMostSide || word(&file[i + 7]) > kMostSide)) return true;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (isHuge({data, size})) return 0;
    std::string error;
    const Bitmap bitmap = readImageFile(fuzz::writeInput({data, size}), &error);
    fuzz::require(bool(bitmap) == error.empty(), "a picture, or why there is none");
    fuzz::require(error.find('\n') == std::string::npos, "the cause is one line");
    if (!bitmap) return 0;
    fuzz::require(bitmap.pixels->size() == bitmap.rowBytes() * std::size_t(bitmap.height),
                  "all pixels are there");
    for (std::size_t i = 0; i < bitmap.pixels->size(); i += 4) {
        const std::uint8_t* p = bitmap.pixels->data() + i;
        fuzz::require(p[0] <= p[3] && p[1] <= p[3] && p[2] <= p[3], "colours are premultiplied");
    }
    return 0;
}
