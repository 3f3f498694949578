#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include "Host/CommandLine.h"
#include "Host/Device.h"
#include "Host/PictureFile.h"
#include "Host/Progress.h"
#include "Host/SamplePicture.h"
#include "Host/SheetDrawing.h"
#include "Host/Timeline.h"
#include "Platform/Drawing/BitmapCanvas.h"
#include "QVFilterCore/QVTransitionMTIFilter.h"
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
/// Just before the middle, where many passages hide everything behind a flash or a blur.
constexpr double kPassageProgress = 0.4;
constexpr double kMargin = 24, kGap = 14, kLabelHeight = 26, kHeadingHeight = 46;

struct Cell {
    const QVFilterClass* filterClass;
    UIImage picture;  ///< nil when the class gives none of these inputs
};

/// Cells by category, in the order of the categories.
using Groups = std::map<QVFilterCategory, std::vector<Cell>>;

class CellRenderer {
  public:
    CellRenderer(const Options& options, MTIContext& context) : context_(context) {
        if (!options.time.empty()) time_ = parseTime("--time", options.time);
        const Bitmap picture = options.input.empty() ? Bitmap() : readPicture(options.input);
        const int width = picture ? std::min(picture.width, kRenderWidth) : kRenderWidth;
        const int height =
            picture ? std::max(1, int(double(picture.height) * width / picture.width)) : width * 9 / 16;
        const CGSize sides{double(width), double(height)};
        inputs_.first =
            MTIImage::imageWithBitmap(picture ? picture : samplePicture(width, height, SampleLight::day));
        if (picture.width > kRenderWidth) inputs_.first = inputs_.first.resize(sides);
        inputs_.second = MTIImage::imageWithBitmap(samplePicture(width, height, SampleLight::dusk));
        inputs_.mask = SubjectMask::fromBuffer(sampleMask(width, height));
        inputs_.originalSize = sides;
    }

    UIImage render(const QVFilterClass& filterClass) const {
        EffectChoice choice{&filterClass};
        const bool passage = filterClass.isSubclassOf(QVTransitionMTIFilterClass);
        if (filterClass.property("progress"))
            choice.addSetting(fmt::format("progress={}", passage ? kPassageProgress : 0.5));
        // Animations rest for much of their clip; early on they all show.
        const bool animation = filterClass.categoryOrInherited() == QVFilterCategory::animation;
        const double time = time_.value_or(animation ? 0.1 : 0.4);
        const auto filter = makeFilterOnClip(choice, {.time = time, .startTime = 0.0, .endTime = 1.0});
        setInputs(*filter, inputs_);
        const MTIImage image = filter->outputImage();
        if (!image) return {};
        std::string cause;
        const Bitmap bitmap = context_.renderToBitmap(image, &cause);
        if (!bitmap) fail(ExitCode::device, "{}: {}", filterClass.name, cause);
        return UIImage(bitmap);
    }

  private:
    MTIContext& context_;
    FilterInputs inputs_;
    std::optional<double> time_;
};

/// `content` scaled to lie within `cell`, centred.
CGRect fitted(CGSize content, const CGRect& cell) {
    const double scale = std::min(cell.size.width / content.width, cell.size.height / content.height);
    const double width = content.width * scale, height = content.height * scale;
    return CGRectMake(cell.midX() - width / 2, cell.midY() - height / 2, width, height);
}

class SheetLayout {
  public:
    SheetLayout(const Groups& groups, PixelSize cell, int columns) : groups_(groups), cell_(cell) {
        std::size_t widest = 1;
        double height = kMargin;
        for (const auto& [category, cells] : groups) widest = std::max(widest, cells.size());
        columns_ = std::min(std::size_t(columns), widest);
        for (const auto& [category, cells] : groups)
            height += kHeadingHeight + double(rows(cells)) * rowHeight();
        size_ = {2 * kMargin + double(columns_) * (cell.width + kGap) - kGap, height + kMargin};
    }

    Bitmap draw() const {
        BitmapCanvas canvas(size_, true);
        if (!canvas) {
            fail(ExitCode::usage,
                 "a sheet of {:.0f}x{:.0f} is too large; ask for smaller cells or fewer classes", size_.width,
                 size_.height);
        }
        canvas.fillRect({{0, 0}, size_}, kPaper);
        double y = kMargin;
        for (const auto& [category, cells] : groups_) {
            canvas.drawText(std::string(categoryName(category)), {kMargin, y}, labelFont(24), kAccent);
            y += kHeadingHeight;
            for (std::size_t i = 0; i < cells.size(); ++i) {
                const double x = kMargin + double(i % columns_) * (cell_.width + kGap);
                drawCell(canvas, cells[i], {x, y + double(i / columns_) * rowHeight()});
            }
            y += double(rows(cells)) * rowHeight();
        }
        return canvas.image().bitmap();
    }

  private:
    double rowHeight() const { return cell_.height + kLabelHeight + kGap; }
    std::size_t rows(const std::vector<Cell>& cells) const {
        return (cells.size() + columns_ - 1) / columns_;
    }

    void drawCell(BitmapCanvas& canvas, const Cell& cell, CGPoint origin) const {
        const CGRect frame = CGRectMake(origin.x, origin.y, cell_.width, cell_.height);
        canvas.fillRect(frame, {0.2, 0.2, 0.22});
        if (cell.picture) {
            canvas.drawImage(cell.picture, fitted(cell.picture.size(), frame));
        } else {
            canvas.drawText("needs more inputs", {frame.minX() + 8, frame.minY() + 8}, labelFont(14), kInk);
        }
        const std::string label(cell.filterClass->name);
        canvas.drawText(label, {origin.x, frame.maxY() + 4}, fittingFont(label, 15, cell_.width), kInk);
    }

    const Groups& groups_;
    PixelSize cell_;
    std::size_t columns_;
    CGSize size_;
};

void sheet(const Options& options) {
    const PixelSize cell = parseSize(options.size);
    const PictureType type = pictureTypeFor(options.output);
    checkOutput(options.output, options.overwrite);
    std::vector<const QVFilterClass*> classes;
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        const bool wanted = options.all || filterClass->kindOrInherited() != QVFilterKind::auxiliary;
        if (wanted && matchesPattern(filterClass->name, options.only)) classes.push_back(filterClass);
    }
    if (classes.empty()) fail(ExitCode::usage, "no class matches '{}'", options.only);

    const auto context = options.device.makeContext();
    const CellRenderer renderer(options, *context);
    Progress progress(progressStyle(options.lines, options.quiet), std::int64_t(classes.size()), "classes");
    Groups groups;
    std::int64_t done = 0;
    for (const QVFilterClass* filterClass : classes) {
        groups[filterClass->categoryOrInherited()].push_back({filterClass, renderer.render(*filterClass)});
        progress.advance(++done, 0);
    }
    writePicture(SheetLayout(groups, cell, options.columns).draw(), options.output, type);
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
