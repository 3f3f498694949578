#include <algorithm>
#include <memory>
#include <optional>

#include "Host/Clips/MaskSource.h"
#include "Host/Clips/PictureFile.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Device.h"
#include "Host/CommandLine/Progress.h"
#include "Host/Sheets/ClassPicture.h"
#include "Host/Sheets/SamplePicture.h"
#include "Host/Sheets/SheetLayout.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

struct Options {
    std::string output, input, mask, size = "320x180", only = "*", time;
    int columns = 4;
    bool all = false;
    ProgressOptions progress;
    OverwriteOptions overwrite;
    DeviceOptions device;
};

/// Pictures are rendered at up to this width and shrunk into their cells, so that blocks and lines keep the
/// size that they have in a clip.
constexpr int kRenderWidth = 1280;

FilterInputs drawnInputs(int width, int height) {
    FilterInputs inputs;
    inputs.first = MTIImage::imageWithBitmap(samplePicture(width, height, SampleLight::day));
    inputs.second = MTIImage::imageWithBitmap(samplePicture(width, height, SampleLight::dusk));
    inputs.mask = SubjectMask::fromBuffer(sampleMask(width, height));
    inputs.originalSize = {double(width), double(height)};
    return inputs;
}

/// What the classes are shown on: the picture asked for, and drawn pictures.
struct SheetScene {
    FilterInputs inputs;  ///< what was not given is drawn, but for the mask of a picture
    std::optional<FilterInputs>
        drawn;  ///< for classes that work on a subject, where the picture's is not known

    const FilterInputs& inputsFor(const QVFilterClass& filterClass) const {
        return drawn && filterClass.input(QVInputRole::mask) ? *drawn : inputs;
    }
};

SheetScene sheetScene(const Options& options) {
    if (options.input.empty()) {
        if (!options.mask.empty()) fail(ExitCode::usage, "--mask is the --input's, and there is none");
        return {drawnInputs(kRenderWidth, kRenderWidth * 9 / 16), std::nullopt};
    }
    const Bitmap picture = readPicture(options.input);
    const int width = std::min(picture.width, kRenderWidth);
    const int height = std::max(1, int(double(picture.height) * width / picture.width));
    SheetScene scene{drawnInputs(width, height), std::nullopt};
    const SubjectMask mask = openMaskSource(options.mask, {}, writeNote)->maskOf({.picture = picture}, 0);
    if (!mask) scene.drawn = scene.inputs;
    scene.inputs.mask = mask;
    scene.inputs.first = MTIImage::imageWithBitmap(picture);
    if (picture.width > kRenderWidth)
        scene.inputs.first = scene.inputs.first.resize(scene.inputs.originalSize);
    return scene;
}

void sheet(const Options& options) {
    const PixelSize cell = parseSize(options.size);
    const PictureType type = pictureTypeFor(options.output);
    std::optional<double> time;
    if (!options.time.empty()) time = parseTime("--time", options.time);
    checkOutput(options.output, options.overwrite);
    std::vector<const QVFilterClass*> classes;
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        const bool wanted = options.all || filterClass->kindOrInherited() != QVFilterKind::auxiliary;
        if (wanted && matchesPattern(filterClass->name, options.only)) classes.push_back(filterClass);
    }
    if (classes.empty()) fail(ExitCode::usage, "no class matches '{}'", options.only);

    const auto context = options.device.makeContext();
    const SheetScene scene = sheetScene(options);
    Progress progress(options.progress.style(), std::int64_t(classes.size()), "classes");
    SheetGroups groups;
    std::int64_t done = 0;
    for (const QVFilterClass* filterClass : classes) {
        groups[filterClass->categoryOrInherited()].push_back(
            {std::string(filterClass->title), std::string(filterClass->name),
             UIImage(classPicture(*filterClass, scene.inputsFor(*filterClass), time, *context))});
        progress.advance(++done, 0);
    }
    writePicture(drawSheet(groups, cell, options.columns), options.output, type);
    progress.finish();
    checkValidation(*context);
}

}  // namespace

void addSheetCommand(CommandParser& tool) {
    const Command command = tool.addCommand("sheet", "Draws every class's picture, labelled, on one sheet");
    auto options = std::make_shared<Options>();
    command.option("-o,--output", options->output, "PNG or JPEG file, or -").required();
    command.option("-i,--input", options->input, "Picture to show the classes on; a drawn one without");
    command.option("--mask", options->mask, kMaskHelp);
    command.option("--size", options->size, "Size of a cell").showDefault();
    command.option("--only", options->only, "Only names that match (* and ?) or contain this");
    command.option("--time", options->time, "The effects' time, seconds; a telling one by default");
    command.option("--columns", options->columns, "Cells in a row").showDefault().range(1, 100);
    command.flag("--all", options->all, "Auxiliary classes too");
    options->progress.add(command);
    options->overwrite.add(command);
    options->device.add(command);
    command.setAction([options] { sheet(*options); });
}

}  // namespace qv::host
