#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <memory>

#include "Host/Clips/MaskSource.h"
#include "Host/Clips/Timeline.h"
#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Device.h"
#include "Host/CommandLine/Diagnostics.h"
#include "Host/Commands/CostMeter.h"
#include "Host/CommandLine/JSON.h"
#include "Host/Sheets/SamplePicture.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "QVFilterExtension/QVFilterRegistry.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

struct Options {
    std::vector<std::string> effects;
    std::string size = "1920x1080", mask;
    int rounds = 15;
    double seconds = 5;
    bool json = false, compare = false;
    DeviceOptions device;
};

constexpr int kWarmUpFrames = 2, kFewestRounds = 3;
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
    std::string effect;  ///< as asked for: a class's name, with settings if there are any
    Samples copy, filter;
    Samples plain;  ///< pass by pass; empty unless compared

    double ratio() const { return filter.median() / copy.median(); }
    double gain() const { return plain.median() / filter.median(); }
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
        DeviceOptions device = options.device;
        if (options.compare) {
            device.noFusion = true;
            plain_ = std::make_unique<Stage>(device, size_, options.mask);
            device.noFusion = false;
        }
        fused_ = std::make_unique<Stage>(device, size_, options.mask);
        copyKernel_ = stockKernel("MTICopy");
        if (!copyKernel_) fail(ExitCode::internal, "there is no copy pass{}", lastLogLineInBrackets());
        takeFrame(
            *fused_->context, [&] { return copy(); }, nullptr);
    }

    /// Frames of the class and copies take turns, so that a drift of the machine's speed cancels.
    Result measure(const std::string& effect) {
        Result result{effect};
        const EffectChoice choice = parseEffect(effect);
        const auto filter = warmedUp(choice, *fused_);
        const auto plainFilter = plain_ ? warmedUp(choice, *plain_) : nullptr;
        const auto start = std::chrono::steady_clock::now();
        for (int round = 0; round < options_.rounds; ++round) {
            const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
            if (round >= kFewestRounds && spent.count() > options_.seconds) break;
            takeFrame(
                *fused_->context, [&] { return copy(); }, &result.copy);
            takeFrame(
                *fused_->context, [&] { return frame(*filter, choice, round); }, &result.filter);
            if (!plainFilter) continue;
            takeFrame(
                *plain_->context, [&] { return frame(*plainFilter, choice, round); }, &result.plain);
        }
        return result;
    }

    const MTIContext& context() const { return *fused_->context; }
    PixelSize size() const { return size_; }
    void checkMessages() const {
        checkValidation(*fused_->context);
        if (plain_) checkValidation(*plain_->context);
    }

  private:
    MTIImage copy() const {
        return copyKernel_->applyToInputImages({fused_->inputs.first}, {}, fused_->inputs.originalSize,
                                               MTIPixelFormat::unspecified);
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
    std::unique_ptr<Stage> plain_, fused_;  ///< plain only when compared
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
        Json entry = {{"name", result.effect},
                      {"medianMilliseconds", rounded(result.filter.median())},
                      {"minimumMilliseconds", rounded(result.filter.minimum())},
                      {"copyMedianMilliseconds", rounded(result.copy.median())},
                      {"ratio", rounded(result.ratio())},
                      {"passes", result.filter.last.passes},
                      {"bytesRead", result.filter.last.bytesRead},
                      {"bytesWritten", result.filter.last.bytesWritten},
                      {"peakTextureBytes", result.filter.last.peakTextureBytes}};
        if (!result.plain.milliseconds.empty()) {
            entry["plain"] = {{"medianMilliseconds", rounded(result.plain.median())},
                              {"minimumMilliseconds", rounded(result.plain.minimum())},
                              {"passes", result.plain.last.passes},
                              {"peakTextureBytes", result.plain.last.peakTextureBytes}};
            entry["gain"] = rounded(result.gain());
        }
        json["classes"].push_back(std::move(entry));
    }
    return json;
}

std::string heading(const Bench& bench, bool compare) {
    const auto first =
        fmt::format("{}, {}x{}\n", bench.context().device().name, bench.size().width, bench.size().height);
    if (compare) {
        return first + fmt::format("{:<32} {:>9} {:>9} {:>6} {:>7} {:>7} {:>9} {:>9}\n", "class", "fused ms",
                                   "plain ms", "gain", "passes", "plain", "peak MB", "plain MB");
    }
    return first + fmt::format("{:<32} {:>9} {:>9} {:>7} {:>6} {:>9} {:>9} {:>9}\n", "class", "median ms",
                               "min ms", "copies", "passes", "MB read", "MB wrote", "peak MB");
}

std::string toLine(const Result& result) {
    const RenderStatistics &fused = result.filter.last, &plain = result.plain.last;
    const auto megabytes = [](std::uint64_t bytes) { return double(bytes) / 1e6; };
    if (!result.plain.milliseconds.empty()) {
        return fmt::format("{:<32} {:>9.2f} {:>9.2f} {:>6.2f} {:>7} {:>7} {:>9.1f} {:>9.1f}\n", result.effect,
                           result.filter.median(), result.plain.median(), result.gain(), fused.passes,
                           plain.passes, megabytes(fused.peakTextureBytes),
                           megabytes(plain.peakTextureBytes));
    }
    return fmt::format("{:<32} {:>9.2f} {:>9.2f} {:>7.2f} {:>6} {:>9.1f} {:>9.1f} {:>9.1f}\n", result.effect,
                       result.filter.median(), result.filter.minimum(), result.ratio(), fused.passes,
                       megabytes(fused.bytesRead), megabytes(fused.bytesWritten),
                       megabytes(fused.peakTextureBytes));
}

void bench(const Options& options) {
    std::vector<std::string> effects = options.effects;
    for (const std::string& effect : effects) parseEffect(effect);
    if (effects.empty()) {
        for (const QVFilterClass* filterClass : allFilterClasses()) effects.emplace_back(filterClass->name);
    }

    Bench bench(options);
    if (!options.json) writeStandardOutput(heading(bench, options.compare));
    std::vector<Result> results;
    for (const std::string& effect : effects) {
        results.push_back(bench.measure(effect));
        if (!options.json) writeStandardOutput(toLine(results.back()));
    }
    if (options.json) writeStandardOutput(dump(toJSON(bench, options.rounds, results)));
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
    command.flag("--compare", options->compare, "Against the same passes drawn one by one");
    addJSONFlag(command, options->json);
    options->device.add(command);
    command.setAction([options] { bench(*options); });
}

}  // namespace qv::host
