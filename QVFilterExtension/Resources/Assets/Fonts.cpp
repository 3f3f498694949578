// Draws the library's own typefaces. A file's name is its PostScript name, by which fonts are found.

#include <cstdio>
#include <string>

#include <fmt/format.h>

#include "Platform/Foundation/OutputFile.h"
#include "QVFilterExtension/Resources/Assets/Fonts/Typefaces.h"

using namespace qv;
using namespace qv::assets;

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_Fonts DIRECTORY\n");
        return 1;
    }
    for (const FontDescription& font : {qvSans(), aldrich(), vcrOsdMono()}) {
        const std::string path = fmt::format("{}/{}.ttf", argv[1], font.postScriptName);
        const std::vector<std::uint8_t> bytes = trueTypeFile(font);
        std::string error;
        if (!writeWholeFile(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, &error)) {
            fmt::print(stderr, "draw_Fonts: {}\n", error);
            return 1;
        }
    }
}
