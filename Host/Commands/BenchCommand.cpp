#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <functional>
#include <memory>

#include "Host/Clips/MaskSource.h"
#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Device.h"
#include "Host/CommandLine/Diagnostics.h"
#include "Host/CommandLine/JSON.h"
#include "Host/Commands/CostMeter.h"
#include "Host/Sheets/SamplePicture.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "QVFilterExtension/QVFilterRegistry.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

struct Options {
    std::vector<std::string> effects;
    std::string size = "1920x1080", mask, against;
    int rounds = 15;
    double seconds = 5;
    bool json = false, compare = false;
    DeviceOptions device;
};

/// Whether each class is drawn in two ways.
bool isCompared(const Options& options) {
    return options.compare || !options.against.empty();
}

/// What the other way is called.
const char* otherWay(const Options& options) {
    return options.against.empty() ? "plain" : "against";
}

constexpr int kWarmUpFrames = 2, kFewestRounds = 3;
constexpr double kFrameSeconds = 1.0 / 30;

/// Milliseconds of frames of one picture, in the order taken.
struct Samples {
    std::vector<double> milliseconds;
    std::vector<double> processor;  ///< milliseconds of processor time of all threads
    RenderStatistics last;

    double median() const { return medianOf(milliseconds); }
    double processorMedian() const { return medianOf(processor); }
    double minimum() const { return *std::min_element(milliseconds.begin(), milliseconds.end()); }

  private:
    static double medianOf(std::vector<double> values) {
        std::sort(values.begin(), values.end());
        const std::size_t middle = values.size() / 2;
        return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
    }
};

/// Builds, renders and waits for one frame; the host's own time is part of the cost.
void takeFrame(MTIContext& context, const std::function<MTIImage()>& makeImage, Samples* samples) {
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t processorStart = std::clock();
    std::string cause;
    const auto task = context.startRender(makeImage(), &cause);
    if (!task || !task->wait(&cause)) fail(ExitCode::device, "{}", cause);
    if (!samples) return;
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    samples->milliseconds.push_back(took.count());
    samples->processor.push_back(double(std::clock() - processorStart) * 1000 / CLOCKS_PER_SEC);
    samples->last = task->statistics();
}

struct Result {
    std::string effect;  ///< as asked for: a class's name, with settings if there are any
    Samples copy, filter;
    Samples other;  ///< pass by pass, or on the other device; empty unless compared

    double ratio() const { return filter.median() / copy.median(); }
    double gain() const { return other.median() / filter.median(); }
};

/// A context and the pictures that are resident in it.
struct Stage {
    Stage(const DeviceOptions& device, PixelSize size, const std::string& mask)
        : context(device.makeContext()) {
        const Bitmap day = samplePicture(size.width, size.height, SampleLight::day);
        const Bitmap dusk = samplePicture(size.width, size.height, SampleLight::dusk);
        inputs.first = MTIImage::imageWithBitmap(day);
        inputs.second = MTIImage::imageWithBitmap(dusk);
        inputs.mask = mask.empty() ? SubjectMask::fromBuffer(sampleMask(size.width, size.height))
                                   : openMaskSource(mask, {}, writeNote)->maskOf({.picture = day}, 0);
        inputs.originalSize = {double(size.width), double(size.height)};
    }
    std::shared_ptr<MTIContext> context;
    FilterInputs inputs;
};

class Bench {
  public:
    explicit Bench(const Options& options) : options_(options), size_(parseSize(options.size)) {
        if (isCompared(options)) {
            DeviceOptions other = options.device;
            if (options.compare)
                other.noFusion = true;
            else
                other.device = options.against;
            other_ = std::make_unique<Stage>(other, size_, options.mask);
        }
        stage_ = std::make_unique<Stage>(options.device, size_, options.mask);
        copyKernel_ = stockKernel("MTICopy");
        if (!copyKernel_) fail(ExitCode::internal, "there is no copy pass{}", lastLogLineInBrackets());
        for (Stage* stage : {stage_.get(), other_.get()}) {
            if (stage) takeCopy(*stage, nullptr);
        }
    }

    /// Frames of the class and copies take turns, so that a drift of the machine's speed cancels.
    Result measure(const std::string& effect) {
        Result result{effect};
        const EffectChoice choice = parseEffect(effect);
        const auto filter = warmedUp(choice, *stage_);
        const auto otherFilter = other_ ? warmedUp(choice, *other_) : nullptr;
        const auto start = std::chrono::steady_clock::now();
        for (int round = 0; round < options_.rounds; ++round) {
            const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
            if (round >= kFewestRounds && spent.count() > options_.seconds) break;
            takeCopy(*stage_, &result.copy);
            takeFrame(
                *stage_->context, [&] { return frame(*filter, choice, round); }, &result.filter);
            if (!otherFilter) continue;
            takeFrame(
                *other_->context, [&] { return frame(*otherFilter, choice, round); }, &result.other);
        }
        return result;
    }

    /// The copy pass itself.
    Result measureCopy() const {
        Result result{"copy"};
        for (int round = 0; round < options_.rounds; ++round) {
            takeCopy(*stage_, &result.filter);
            if (other_) takeCopy(*other_, &result.other);
        }
        result.copy = result.filter;
        return result;
    }

    const MTIContext& context() const { return *stage_->context; }
    const MTIContext* otherContext() const { return other_ ? other_->context.get() : nullptr; }
    PixelSize size() const { return size_; }
    void checkMessages() const {
        checkValidation(*stage_->context);
        if (other_) checkValidation(*other_->context);
    }

  private:
    void takeCopy(const Stage& stage, Samples* samples) const {
        const auto copy = [&] {
            return copyKernel_->applyToInputImages({stage.inputs.first}, {}, stage.inputs.originalSize,
                                                   MTIPixelFormat::unspecified);
        };
        takeFrame(*stage.context, copy, samples);
    }

    /// A filter whose programs are compiled.
    std::unique_ptr<QVMTIFilter> warmedUp(const EffectChoice& choice, Stage& stage) const {
        auto filter = makeFilterOnClip(choice, {.time = 0.0});
        setInputs(*filter, stage.inputs);
        // The graph may be another one in the middle of the effect.
        for (int round : {0, options_.rounds / 2}) stage.context->prepare(frame(*filter, choice, round));
        for (int i = 0; i < kWarmUpFrames; ++i)
            takeFrame(
                *stage.context, [&] { return frame(*filter, choice, i); }, nullptr);
        return filter;
    }

    MTIImage frame(QVMTIFilter& filter, const EffectChoice& choice, int round) const {
        const auto move = [&](std::string_view name, double value) {
            const QVProperty* property = filter.filterClass().property(name);
            if (property && !choice.sets(name)) property->set(filter, value);
        };
        move("iTime", round * kFrameSeconds);
        move("progress", (round + 0.5) / options_.rounds);
        return outputImageOf(filter);
    }

    const Options& options_;
    PixelSize size_;
    std::unique_ptr<Stage> other_, stage_;  ///< the other one only when compared
    std::shared_ptr<const MTIRenderPipelineKernel> copyKernel_;
};

double rounded(double milliseconds) {
    return std::round(milliseconds * 1000) / 1000;
}

Json toJSON(const Bench& bench, const Options& options, const std::vector<Result>& results) {
    Json json;
    json["device"] = bench.context().device().name;
    json["size"] = {bench.size().width, bench.size().height};
    if (!options.against.empty()) json["against"] = bench.otherContext()->device().name;
    json["rounds"] = options.rounds;
    json["classes"] = Json::array();
    for (const Result& result : results) {
        Json entry = {{"name", result.effect},
                      {"medianMilliseconds", rounded(result.filter.median())},
                      {"minimumMilliseconds", rounded(result.filter.minimum())},
                      {"processorMilliseconds", rounded(result.filter.processorMedian())},
                      {"copyMedianMilliseconds", rounded(result.copy.median())},
                      {"ratio", rounded(result.ratio())},
                      {"passes", result.filter.last.passes},
                      {"bytesRead", result.filter.last.bytesRead},
                      {"bytesWritten", result.filter.last.bytesWritten},
                      {"peakTextureBytes", result.filter.last.peakTextureBytes}};
        if (!result.other.milliseconds.empty()) {
            entry[otherWay(options)] = {{"medianMilliseconds", rounded(result.other.median())},
                                        {"minimumMilliseconds", rounded(result.other.minimum())},
                                        {"processorMilliseconds", rounded(result.other.processorMedian())},
                                        {"passes", result.other.last.passes},
                                        {"peakTextureBytes", result.other.last.peakTextureBytes}};
            entry["gain"] = rounded(result.gain());
        }
        json["classes"].push_back(std::move(entry));
    }
    return json;
}

std::string heading(const Bench& bench, const Options& options) {
    const PixelSize size = bench.size();
    std::string first = bench.context().device().name;
    if (!options.against.empty()) first += " against " + bench.otherContext()->device().name;
    first += fmt::format(", {}x{}\n", size.width, size.height);
    if (isCompared(options)) {
        const std::string one = options.against.empty() ? "fused" : "this", other = otherWay(options);
        return first + fmt::format("{:<32} {:>9} {:>11} {:>6} {:>8} {:>7} {:>7} {:>9} {:>10}\n", "class",
                                   one + " ms", other + " ms", "gain", "cpu gain", "passes", other, "peak MB",
                                   other + " MB");
    }
    return first + fmt::format("{:<32} {:>9} {:>9} {:>7} {:>6} {:>9} {:>9} {:>9}\n", "class", "median ms",
                               "min ms", "copies", "passes", "MB read", "MB wrote", "peak MB");
}

std::string toLine(const Result& result) {
    const RenderStatistics &one = result.filter.last, &other = result.other.last;
    const auto megabytes = [](std::uint64_t bytes) { return double(bytes) / 1e6; };
    if (!result.other.milliseconds.empty()) {
        return fmt::format("{:<32} {:>9.2f} {:>11.2f} {:>6.2f} {:>8.2f} {:>7} {:>7} {:>9.1f} {:>10.1f}\n",
                           result.effect, result.filter.median(), result.other.median(), result.gain(),
                           result.other.processorMedian() / result.filter.processorMedian(), one.passes,
                           other.passes, megabytes(one.peakTextureBytes), megabytes(other.peakTextureBytes));
    }
    return fmt::format("{:<32} {:>9.2f} {:>9.2f} {:>7.2f} {:>6} {:>9.1f} {:>9.1f} {:>9.1f}\n", result.effect,
                       result.filter.median(), result.filter.minimum(), result.ratio(), one.passes,
                       megabytes(one.bytesRead), megabytes(one.bytesWritten),
                       megabytes(one.peakTextureBytes));
}

void bench(const Options& options) {
    std::vector<std::string> effects = options.effects;
    for (const std::string& effect : effects) parseEffect(effect);
    if (effects.empty()) {
        for (const QVFilterClass* filterClass : allFilterClasses()) effects.emplace_back(filterClass->name);
    }

    Bench bench(options);
    if (!options.json) writeStandardOutput(heading(bench, options));
    std::vector<Result> results;
    const auto take = [&](Result result) {
        if (!options.json) writeStandardOutput(toLine(result));
        results.push_back(std::move(result));
    };
    if (!options.against.empty()) take(bench.measureCopy());
    for (const std::string& effect : effects) take(bench.measure(effect));
    if (options.json) writeStandardOutput(dump(toJSON(bench, options, results)));
    bench.checkMessages();
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
    return {rounded(result.ratio()), rounded(result.filter.median()), result.filter.last.passes};
}

void addBenchCommand(CommandParser& tool) {
    const Command command = tool.addCommand("bench", "Measures classes against a plain copy pass");
    auto options = std::make_shared<Options>();
    command.option("class", options->effects,
                   "Names of classes, or CLASS:name=value:...; all classes without");
    command.option("--size", options->size, "Size of the frames").showDefault();
    command.option("--mask", options->mask, "Picture or video that is white where the frames' subject is");
    command.option("--rounds", options->rounds, "Frames of each class").showDefault().range(1, 10000);
    command.option("--seconds", options->seconds, "Most seconds for the frames of a class")
        .showDefault()
        .aboveZero();
    const auto compare =
        command.flag("--compare", options->compare, "Against the same passes drawn one by one");
    command.option("--against", options->against, "Against another device: native, vulkan or an index")
        .excludes(compare);
    addJSONFlag(command, options->json);
    options->device.add(command);
    command.setAction([options] { bench(*options); });
}

}  // namespace qv::host
