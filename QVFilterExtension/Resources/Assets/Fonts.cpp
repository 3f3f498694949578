// Draws the library's own typefaces. A file's name is its PostScript name, by which fonts are found.

#include <cstdio>
#include <fstream>
#include <string>

#include <fmt/format.h>

#include "QVFilterExtension/Resources/Assets/Fonts/Typefaces.h"

using namespace qv::assets;

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: draw_Fonts DIRECTORY\n");
        return 1;
    }
    for (const FontDescription& font : {qvSans(), aldrich()}) {
        const std::string path = fmt::format("{}/{}.ttf", argv[1], font.postScriptName);
        const std::vector<std::uint8_t> bytes = trueTypeFile(font);
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
        file.close();
        if (!file) {
            fmt::print(stderr, "draw_Fonts: cannot write {}\n", path);
            return 1;
        }
    }
}
