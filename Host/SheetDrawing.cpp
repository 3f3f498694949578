#include "Host/SheetDrawing.h"

#include <mutex>

#include "QVFilterCore/QVResourceBundle.h"

namespace qv::host {

UIFont labelFont(double size) {
    static std::once_flag once;
    std::call_once(once, [] {
        const auto bundle = resourceBundle();
        const auto path = bundle ? bundle->pathForResource("QVSans-Regular", "ttf") : std::nullopt;
        std::string ignored;  // an effect may have registered it before
        if (path) UIFont::registerFontFile(*path, &ignored);
    });
    const UIFont font = UIFont::fontWithName("QVSans-Regular", size);
    return font ? font : UIFont::systemFontOfSize(size);
}

UIFont fittingFont(const std::string& text, double size, double width) {
    const UIFont font = labelFont(size);
    const double needed = font.sizeOfText(text).width;
    return needed <= width ? font : labelFont(size * width / needed);
}

}  // namespace qv::host
