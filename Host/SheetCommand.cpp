#include <algorithm>
#include <memory>
#include <optional>

#include "Host/ClassPicture.h"
#include "Host/CommandLine.h"
#include "Host/Device.h"
#include "Host/PictureFile.h"
#include "Host/Progress.h"
#include "Host/SamplePicture.h"
#include "Host/SheetLayout.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

struct Options {
    std::string output, input, size = "320x180", only = "*", time;
    int columns = 4;
    bool all = false, quiet = false, lines = false;
    OverwriteOptions overwrite;
    DeviceOptions device;
};

/// Pictures are rendered at up to this width and shrunk into their cells, so that blocks and lines keep the
/// size that they have in a clip.
constexpr int kRenderWidth = 1280;

/// The picture asked for, or a drawn one, with drawn ones for the other inputs.
FilterInputs sheetInputs(const Options& options) {
    const Bitmap picture = options.input.empty() ? Bitmap() : readPicture(options.input);
    const int width = picture ? std::min(picture.width, kRenderWidth) : kRenderWidth;
    const int height =
        picture ? std::max(1, int(double(picture.height) * width / picture.width)) : width * 9 / 16;
    const CGSize sides{double(width), double(height)};
    FilterInputs inputs;
    inputs.first =
        MTIImage::imageWithBitmap(picture ? picture : samplePicture(width, height, SampleLight::day));
    if (picture.width > kRenderWidth) inputs.first = inputs.first.resize(sides);
    inputs.second = MTIImage::imageWithBitmap(samplePicture(width, height, SampleLight::dusk));
    inputs.mask = SubjectMask::fromBuffer(sampleMask(width, height));
    inputs.originalSize = sides;
    return inputs;
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
    const FilterInputs inputs = sheetInputs(options);
    Progress progress(progressStyle(options.lines, options.quiet), std::int64_t(classes.size()), "classes");
    SheetGroups groups;
    std::int64_t done = 0;
    for (const QVFilterClass* filterClass : classes) {
        groups[filterClass->categoryOrInherited()].push_back(
            {std::string(filterClass->title), std::string(filterClass->name),
             UIImage(classPicture(*filterClass, inputs, time, *context))});
        progress.advance(++done, 0);
    }
    writePicture(drawSheet(groups, cell, options.columns), options.output, type);
    progress.finish();
    checkValidation(*context);
}

}  // namespace

void addSheetCommand(CLI::App& tool) {
    CLI::App* command = tool.add_subcommand("sheet", "Draws every class's picture, labelled, on one sheet");
    auto options = std::make_shared<Options>();
    command->add_option("-o,--output", options->output, "PNG or JPEG file, or -")->required();
    command->add_option("-i,--input", options->input, "Picture to show the classes on; a drawn one without");
    command->add_option("--size", options->size, "Size of a cell")->capture_default_str();
    command->add_option("--only", options->only, "Only names that match (* and ?) or contain this");
    command->add_option("--time", options->time, "The effects' time, seconds; a telling one by default");
    command->add_option("--columns", options->columns, "Cells in a row")
        ->capture_default_str()
        ->check(CLI::Range(1, 100));
    command->add_flag("--all", options->all, "Auxiliary classes too");
    command->add_flag("--quiet", options->quiet, "No progress bar");
    command->add_flag("--progress", options->lines, "Progress as lines for programs, on standard error");
    options->overwrite.add(*command);
    options->device.add(*command);
    command->callback([options] { sheet(*options); });
}

}  // namespace qv::host
