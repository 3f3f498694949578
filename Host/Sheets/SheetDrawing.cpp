#include "Host/Sheets/SheetDrawing.h"

#include <mutex>

#include <fmt/format.h>

#include "Platform/Drawing/BitmapCanvas.h"
#include "QVFilterCore/QVResourceBundle.h"

namespace qv::host {

namespace {
constexpr double kStripGap = 8, kStripLabelHeight = 24;
}

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

Bitmap drawStrip(const std::vector<StripFrame>& frames, CGSize frame) {
    const double step = frame.width + kStripGap;
    BitmapCanvas canvas({step * double(frames.size()) - kStripGap, frame.height + kStripLabelHeight}, true);
    if (!canvas) return {};
    canvas.fillRect({{0, 0}, canvas.size()}, kPaper);
    double x = 0;
    for (const StripFrame& each : frames) {
        canvas.drawImage(UIImage(each.picture), {{x, 0}, frame});
        const std::string label = fmt::format("{:.3g}", each.progress);
        canvas.drawText(label, {x + 4, frame.height + 3}, fittingFont(label, 15, frame.width), kInk);
        x += step;
    }
    return canvas.image().bitmap();
}

}  // namespace qv::host
