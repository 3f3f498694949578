#include "QVFilterExtension/Private/UIFont+QVMTIFilter.h"

#include <fmt/format.h>

#include <filesystem>

#include "Platform/Foundation/Log.h"
#include "QVFilterExtension/Private/NSBundle+QVMTIFilter.h"

namespace qv {

UIFont qv_fontWithFileName(const std::string& fileName, double size) {
    auto name = std::filesystem::path(fileName).stem().string();
    auto font = UIFont::fontWithName(name, size);
    if (font) return font;
    auto bundle = qv_ResourcesBundle();
    if (auto path = bundle ? bundle->pathForResource(fileName) : std::nullopt) {
        std::string error;
        if (!UIFont::registerFontFile(*path, &error))
            logLineOnce(fmt::format("register font error {}, {}", fileName, error));
    }
    font = UIFont::fontWithName(name, size);
    return font ? font : UIFont::systemFontOfSize(size);
}

}  // namespace qv
