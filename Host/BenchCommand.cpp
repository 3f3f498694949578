#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <memory>

#include "Host/CommandLine.h"
#include "Host/CostMeter.h"
#include "Host/Device.h"
#include "Host/Diagnostics.h"
#include "Host/PropertyJSON.h"
#include "Host/SamplePicture.h"
#include "Host/Timeline.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace qv::host {

namespace {

struct Options {
    std::vector<std::string> effects;
    std::string size = "1920x1080";
    int rounds = 15;
    bool json = false;
    DeviceOptions device;
};

constexpr int kWarmUpFrames = 2;
constexpr double kFrameSeconds = 1.0 / 30;

/// Milliseconds of frames of one picture, in the order taken.
struct Samples {
    std::vector<double> milliseconds;
    RenderStatistics last;

    double median() const {
        std::vector<double> sorted = milliseconds;
        std::sort(sorted.begin(), sorted.end());
        const std::size_t middle = sorted.size() / 2;
        return sorted.size() % 2 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
    }
    double minimum() const { return *std::min_element(milliseconds.begin(), milliseconds.end()); }
};

/// Builds, renders and waits for one frame; the host's own time is part of the cost.
void takeFrame(MTIContext& context, const std::function<MTIImage()>& makeImage, Samples* samples) {
    const auto start = std::chrono::steady_clock::now();
    std::string cause;
    const auto task = context.startRender(makeImage(), &cause);
    if (!task || !task->wait(&cause)) fail(ExitCode::device, "{}", cause);
    if (!samples) return;
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    samples->milliseconds.push_back(took.count());
    samples->last = task->statistics();
}

struct Result {
    std::string effect;     ///< as asked for: a class's name, with settings if there are any
    bool measured = false;  ///< false: the class gives no picture of plain inputs
    Samples copy, filter;

    double ratio() const { return filter.median() / copy.median(); }
};

class Bench {
  public:
    explicit Bench(const Options& options)
        : rounds_(options.rounds), context_(options.device.makeContext()), size_(parseSize(options.size)) {
        const CGSize sides{double(size_.width), double(size_.height)};
        inputs_.first = MTIImage::imageWithBitmap(samplePicture(size_.width, size_.height, SampleLight::day));
        inputs_.second =
            MTIImage::imageWithBitmap(samplePicture(size_.width, size_.height, SampleLight::dusk));
        inputs_.mask = SubjectMask::fromBuffer(sampleMask(size_.width, size_.height));
        inputs_.originalSize = sides;
        copyKernel_ = stockKernel("MTICopy");
        if (!copyKernel_) fail(ExitCode::internal, "there is no copy pass{}", lastLogLineInBrackets());
        takeFrame(
            *context_, [&] { return copy(); }, nullptr);
    }

    /// Frames of the class and copies take turns, so that a drift of the machine's speed cancels.
    Result measure(const std::string& effect) {
        Result result{effect};
        const EffectChoice choice = parseEffect(effect);
        const auto filter = makeFilterOnClip(choice, {.time = 0.0});
        setInputs(*filter, inputs_);
        const MTIImage first = filter->outputImage();
        if (!first) return result;
        context_->prepare(first);
        for (int i = 0; i < kWarmUpFrames; ++i)
            takeFrame(
                *context_, [&] { return frame(*filter, choice, i); }, nullptr);
        for (int round = 0; round < rounds_; ++round) {
            takeFrame(
                *context_, [&] { return copy(); }, &result.copy);
            takeFrame(
                *context_, [&] { return frame(*filter, choice, round); }, &result.filter);
        }
        result.measured = true;
        return result;
    }

    const MTIContext& context() const { return *context_; }
    PixelSize size() const { return size_; }

  private:
    MTIImage copy() const {
        return copyKernel_->applyToInputImages({inputs_.first}, {}, inputs_.originalSize,
                                               MTIPixelFormat::unspecified);
    }

    MTIImage frame(QVMTIFilter& filter, const EffectChoice& choice, int round) const {
        const auto move = [&](std::string_view name, double value) {
            const QVProperty* property = filter.filterClass().property(name);
            if (property && !choice.sets(name)) property->set(filter, value);
        };
        move("iTime", round * kFrameSeconds);
        move("progress", (round + 0.5) / rounds_);
        return filter.outputImage();
    }

    int rounds_;
    std::shared_ptr<MTIContext> context_;
    PixelSize size_;
    FilterInputs inputs_;
    std::shared_ptr<const MTIRenderPipelineKernel> copyKernel_;
};

double rounded(double milliseconds) {
    return std::round(milliseconds * 1000) / 1000;
}

Json toJSON(const Bench& bench, int rounds, const std::vector<Result>& results) {
    Json json;
    json["device"] = bench.context().device().name;
    json["size"] = {bench.size().width, bench.size().height};
    json["rounds"] = rounds;
    json["classes"] = Json::array();
    for (const Result& result : results) {
        Json entry = {{"name", result.effect}, {"measured", result.measured}};
        if (result.measured) {
            entry["medianMilliseconds"] = rounded(result.filter.median());
            entry["minimumMilliseconds"] = rounded(result.filter.minimum());
            entry["copyMedianMilliseconds"] = rounded(result.copy.median());
            entry["ratio"] = rounded(result.ratio());
            entry["passes"] = result.filter.last.passes;
            entry["bytesRead"] = result.filter.last.bytesRead;
            entry["bytesWritten"] = result.filter.last.bytesWritten;
        }
        json["classes"].push_back(std::move(entry));
    }
    return json;
}

std::string toLine(const Result& result) {
    if (!result.measured) return fmt::format("{:<32} needs more than plain inputs\n", result.effect);
    return fmt::format("{:<32} {:>9.2f} {:>9.2f} {:>7.2f} {:>6} {:>9.1f} {:>9.1f}\n", result.effect,
                       result.filter.median(), result.filter.minimum(), result.ratio(),
                       result.filter.last.passes, double(result.filter.last.bytesRead) / 1e6,
                       double(result.filter.last.bytesWritten) / 1e6);
}

void bench(const Options& options) {
    std::vector<std::string> effects = options.effects;
    for (const std::string& effect : effects) parseEffect(effect);
    if (effects.empty()) {
        for (const QVFilterClass* filterClass : allFilterClasses()) effects.emplace_back(filterClass->name);
    }

    Bench bench(options);
    if (!options.json) {
        writeStandardOutput(fmt::format("{}, {}x{}\n{:<32} {:>9} {:>9} {:>7} {:>6} {:>9} {:>9}\n",
                                        bench.context().device().name, bench.size().width,
                                        bench.size().height, "class", "median ms", "min ms", "copies",
                                        "passes", "MB read", "MB wrote"));
    }
    std::vector<Result> results;
    for (const std::string& effect : effects) {
        results.push_back(bench.measure(effect));
        if (!options.json) writeStandardOutput(toLine(results.back()));
    }
    if (options.json) writeStandardOutput(dump(toJSON(bench, options.rounds, results)));
    checkValidation(bench.context());
}

}  // namespace

struct CostMeter::State {
    Options options;
    Bench bench{options};
};

CostMeter::CostMeter(const DeviceOptions& device, PixelSize size, int rounds) {
    Options options;
    options.size = fmt::format("{}x{}", size.width, size.height);
    options.rounds = rounds;
    options.device = device;
    state_ = std::make_unique<State>(options);
}

CostMeter::~CostMeter() = default;

ClassCost CostMeter::measure(const QVFilterClass& filterClass) {
    const Result result = state_->bench.measure(std::string(filterClass.name));
    if (!result.measured) return {};
    return {true, rounded(result.ratio()), rounded(result.filter.median()), result.filter.last.passes};
}

void addBenchCommand(CLI::App& tool) {
    CLI::App* command = tool.add_subcommand("bench", "Measures classes against a plain copy pass");
    auto options = std::make_shared<Options>();
    command->add_option("class", options->effects,
                        "Names of classes, or CLASS:name=value:...; all classes without");
    command->add_option("--size", options->size, "Size of the frames")->capture_default_str();
    command->add_option("--rounds", options->rounds, "Frames of each class")
        ->capture_default_str()
        ->check(CLI::Range(1, 10000));
    addJSONFlag(*command, options->json);
    options->device.add(*command);
    command->callback([options] { bench(*options); });
}

}  // namespace qv::host
