#include <memory>

#include "Host/CommandLine.h"
#include "Host/Diagnostics.h"
#include "Host/GraphListing.h"
#include "Host/Timeline.h"

namespace qv::host {

namespace {

struct Options {
    std::string effect, size = "1280x720", time;
    std::vector<std::string> settings;
    bool json = false, dot = false;
};

/// Pictures of one colour each; a class that reads its mask from memory finds it white.
FilterInputs plainInputs(PixelSize size) {
    const CGSize sides{double(size.width), double(size.height)};
    FilterInputs inputs;
    inputs.first = MTIImage::initWithColor({0.5f, 0.5f, 0.5f, 1}, false, sides);
    inputs.second = MTIImage::initWithColor({0.25f, 0.25f, 0.25f, 1}, false, sides);
    const PixelBuffer white = PixelBuffer::create(PixelFormat::gray8, size.width, size.height);
    if (!white) fail(ExitCode::internal, "no memory for a mask of {}x{}", size.width, size.height);
    std::fill_n(white.plane(0).data, white.plane(0).rowBytes * std::size_t(size.height), std::uint8_t(255));
    inputs.mask = SubjectMask::fromBuffer(white);
    inputs.originalSize = sides;
    return inputs;
}

/// Names for the inputs that a class may show in its graph.
NamedImages namedInputs(const QVFilterClass& filterClass, const FilterInputs& inputs) {
    const std::vector<std::string_view> names = inputNames(filterClass);
    const bool two = filterClass.inputsOrInherited() == QVFilterInputs::two;
    return {{std::string(names[0]), inputs.first},
            {two ? std::string(names[1]) : "secondImage", inputs.second},
            {"maskImage", inputs.mask.image}};
}

void graph(const Options& options) {
    EffectChoice choice = parseEffect(options.effect);
    for (const std::string& setting : options.settings) choice.addSetting(setting);
    ClipPosition clip;
    if (!options.time.empty()) clip.time = parseTime("--time", options.time);

    const FilterInputs inputs = plainInputs(parseSize(options.size));
    const auto filter = makeFilterOnClip(choice, clip);
    setInputs(*filter, inputs);
    const MTIImage output = filter->outputImage();
    if (!output) {
        fail(ExitCode::internal, "{} gives no picture{}", choice.filterClass->name, lastLogLineInBrackets());
    }
    const Json graph = graphToJSON(output, namedInputs(*choice.filterClass, inputs));
    if (options.json) {
        writeStandardOutput(dump(graph));
    } else if (options.dot) {
        writeStandardOutput(graphToDot(graph, std::string(choice.filterClass->name)));
    } else {
        writeStandardOutput(graphToText(graph));
    }
}

}  // namespace

void addGraphCommand(CLI::App& tool) {
    CLI::App* command = tool.add_subcommand(
        "graph", "Prints the image graph behind a class's picture of plain inputs; needs no device");
    auto options = std::make_shared<Options>();
    command->add_option("class", options->effect, "Name of the class, or CLASS:name=value:...")->required();
    command->add_option("--size", options->size, "Size of the inputs")->capture_default_str();
    command->add_option("--time", options->time, "The effect's time (iTime), seconds");
    command->add_option("--set", options->settings, "name=value of a property; in order, repeatable")
        ->allow_extra_args(true);
    CLI::Option* json = addJSONFlag(*command, options->json);
    command->add_flag("--dot", options->dot, "Print a picture for dot")->excludes(json);
    command->callback([options] { graph(*options); });
}

}  // namespace qv::host
