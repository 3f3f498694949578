#include "Host/Gallery/GallerySheets.h"

#include "Host/Clips/PictureFile.h"
#include "Host/Clips/TransitionFilter.h"
#include "Host/CommandLine/Interrupt.h"
#include "Host/Sheets/ClassPicture.h"
#include "Host/Sheets/SheetDrawing.h"
#include "Host/Sheets/SheetLayout.h"

namespace qv::host {

namespace {

constexpr int kColumns = 6, kStripColumns = 2, kMoments = 5;
/// Side of a moment in a strip, percent of a cell's.
constexpr int kStripFrame = 60;
/// A third of the way: the drifting window has left its place, and clips have begun to move.
constexpr int kFrame = kPreviewFrames / 3;

UIImage strip(const QVFilterClass& filterClass, const GalleryScene& scene, PixelSize frame,
              MTIContext& context) {
    const FilterInputs& inputs = scene.frame(kFrame);
    TransitionFilter filter(EffectChoice{&filterClass}, CMTimeRangeMakeWithSeconds(0, kPreviewSeconds));
    std::vector<StripFrame> frames;
    for (int i = 0; i < kMoments; ++i) {
        const double progress = double(i) / (kMoments - 1);
        std::string cause;
        const Bitmap picture =
            context.renderToBitmap(filter.outputImage(inputs.first, inputs.second, progress), &cause);
        if (!picture) fail(ExitCode::device, "{}: {}", filterClass.name, cause);
        frames.push_back({progress, picture});
    }
    return UIImage(drawStrip(frames, {double(frame.width), double(frame.height)}));
}

void write(const SheetGroups& groups, PixelSize cell, int columns, const std::filesystem::path& path) {
    if (!groups.empty()) writePicture(drawSheet(groups, cell, columns), path.string(), PictureType::png);
}

}  // namespace

void writeSheets(const std::filesystem::path& directory, const std::vector<const QVFilterClass*>& classes,
                 const GalleryScene& scene, PixelSize cell, MTIContext& context) {
    SheetGroups pictures, strips;
    PixelSize stripSize;
    const PixelSize frame{cell.width * kStripFrame / 100, cell.height * kStripFrame / 100};
    for (const QVFilterClass* filterClass : classes) {
        checkInterrupt();
        const std::string name(filterClass->name), title(filterClass->title);
        const QVFilterCategory category = filterClass->categoryOrInherited();
        pictures[category].push_back(
            {title, name, UIImage(classPicture(*filterClass, scene.frame(kFrame), std::nullopt, context))});
        if (!filterClass->isTransition()) continue;
        strips[category].push_back({title, name, strip(*filterClass, scene, frame, context)});
        const CGSize size = strips[category].back().picture.size();
        stripSize = {int(size.width), int(size.height)};
    }
    write(pictures, cell, kColumns, directory / "sheet.png");
    write(strips, stripSize, kStripColumns, directory / "sheet-transitions.png");
}

}  // namespace qv::host
