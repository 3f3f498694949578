// What the platform's building blocks cost at 1920×1080. Compare each with CopyPass of the same run: that
// ratio is what carries over to another machine. `qvbenchmarks --benchmark_format=json` for programs;
// QVFILTER_DEVICE=native or vulkan chooses what renders.

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/Media/PixelConversion.h"

namespace {

using namespace qv;

constexpr int kWidth = 1920, kHeight = 1080;

const std::shared_ptr<MTIContext>& context() {
    static const auto shared = MTIContext::create();
    return shared;
}

/// Draws every pass by itself.
const std::shared_ptr<MTIContext>& plainContext() {
    static const auto shared = [] {
        MTIContextOptions options;
        options.fusion = MTIFusion::off;
        return MTIContext::create(options);
    }();
    return shared;
}

MTIImage makePhoto(std::uint32_t seed) {
    const MTIImage image = [&] {
        std::vector<std::uint8_t> pixels(std::size_t(kWidth) * kHeight * 4);
        std::uint32_t state = seed;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            state = state * 1664525u + 1013904223u;
            pixels[i] = i % 4 == 3 ? 255 : std::uint8_t(state >> 24);
        }
        return MTIImage::imageWithBitmap(
            {kWidth, kHeight, std::make_shared<const std::vector<std::uint8_t>>(std::move(pixels))});
    }();
    return image;
}

const MTIImage& photo() {
    static const MTIImage image = makePhoto(1);
    return image;
}

MTIImage copied(const MTIImage& image) {
    return stockKernel("MTICopy")->applyToInputImages({image}, {}, image.size(), MTIPixelFormat::unspecified);
}

void render(benchmark::State& state, const MTIImage& image,
            const std::shared_ptr<MTIContext>& with = context()) {
    if (!with) return state.SkipWithError("there is no device");
    with->prepare(image);
    int passes = 0;
    for (auto _ : state) {
        const auto task = with->startRender(image);
        task->wait();
        passes = task->statistics().passes;
    }
    state.counters["passes"] = passes;
}

void CopyPass(benchmark::State& state) {
    render(state, copied(photo()));
}
BENCHMARK(CopyPass)->UseRealTime()->Unit(benchmark::kMillisecond);

void SaturationPass(benchmark::State& state) {
    MTISaturationFilter filter;
    filter.setInputImage(photo());
    filter.setSaturation(0.3f);
    render(state, filter.outputImage());
}
BENCHMARK(SaturationPass)->UseRealTime()->Unit(benchmark::kMillisecond);

void TransformPass(benchmark::State& state) {
    render(state, photo().imageByApplyingTransform(CGAffineTransformMakeRotation(0.2)));
}
BENCHMARK(TransformPass)->UseRealTime()->Unit(benchmark::kMillisecond);

void Blend(benchmark::State& state) {
    const auto mode = MTIBlendMode(state.range(0));
    state.SetLabel(std::string(blendModeName(mode)));
    MTIBlendFilter filter(mode);
    filter.setInputBackgroundImage(photo());
    filter.setInputImage(photo());
    render(state, filter.outputImage());
}
BENCHMARK(Blend)->DenseRange(0, kBlendModeCount - 1)->UseRealTime()->Unit(benchmark::kMillisecond);

void GaussianBlur(benchmark::State& state) {
    MTIGaussianBlurFilter filter;
    filter.setInputImage(photo());
    filter.setRadius(float(state.range(0)) / 10);
    render(state, filter.outputImage());
}
BENCHMARK(GaussianBlur)
    ->ArgName("tenths of a pixel")
    ->Arg(5)
    ->Arg(10)
    ->Arg(15)
    ->Arg(20)
    ->Arg(25)
    ->Arg(30)
    ->Arg(40)
    ->Arg(50)
    ->Arg(60)
    ->Arg(80)
    ->Arg(100)
    ->Arg(150)
    ->Arg(200)
    ->Arg(300)
    ->Arg(400)
    ->Arg(600)
    ->Arg(2000)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

PixelBuffer greyFrame() {
    PixelBuffer frame = PixelBuffer::create(PixelFormat::i420, kWidth, kHeight);
    for (int plane = 0; plane < 3; ++plane) {
        std::memset(frame.plane(plane).data, 110 + plane * 20,
                    frame.plane(plane).rowBytes * (plane ? kHeight / 2 : kHeight));
    }
    return frame;
}

/// A 4:2:0 frame to RGB and back on the processor, without a pass.
void ConvertInAndOut(benchmark::State& state) {
    const PixelBuffer frame = greyFrame();
    std::vector<std::uint8_t> rgba(std::size_t(kWidth) * kHeight * 4);
    for (auto _ : state) {
        convertToRGBA8(frame, rgba.data(), kWidth * 4);
        convertFromRGBA8(rgba.data(), kWidth * 4, frame);
    }
}
BENCHMARK(ConvertInAndOut)->UseRealTime()->Unit(benchmark::kMillisecond);

/// What a video frame costs besides its effects: taken in, one copy pass, planes read back.
void VideoFrame(benchmark::State& state) {
    if (!context()) return state.SkipWithError("there is no device");
    const PixelBuffer frame = greyFrame(), result = greyFrame();
    for (auto _ : state) {
        context()->startRender(copied(MTIImage::imageWithPixelBuffer(frame)), result)->wait();
    }
}
BENCHMARK(VideoFrame)->UseRealTime()->Unit(benchmark::kMillisecond);

/// Stock filters one after another.
class Chain {
  public:
    explicit Chain(MTIImage image) : image_(std::move(image)) {}

    template <typename Filter>
    Chain& adjust(void (Filter::*set)(float), float value) {
        Filter filter;
        filter.setInputImage(image_);
        (filter.*set)(value);
        image_ = filter.outputImage();
        return *this;
    }
    Chain& blend(MTIBlendMode mode, const MTIImage& above, float intensity = 0.6f) {
        MTIBlendFilter filter(mode);
        filter.setInputBackgroundImage(image_);
        filter.setInputImage(above);
        filter.setIntensity(intensity);
        image_ = filter.outputImage();
        return *this;
    }
    Chain& tint() {
        return blend(MTIBlendMode::multiply,
                     MTIImage::initWithColor({1, 0.9f, 0.8f, 1}, false, image_.size()));
    }
    const MTIImage& image() const { return image_; }

  private:
    MTIImage image_;
};

/// Eight stock colour and blend filters, as one pass (1) and pass by pass (0).
void EightFilters(benchmark::State& state) {
    Chain chain(makePhoto(2));
    chain.adjust(&MTIExposureFilter::setExposure, 0.3f)
        .adjust(&MTISaturationFilter::setSaturation, 1.2f)
        .blend(MTIBlendMode::screen, makePhoto(3))
        .adjust(&MTIBrightnessFilter::setBrightness, -0.1f)
        .tint()
        .adjust(&MTISaturationFilter::setSaturation, 0.8f)
        .adjust(&MTIExposureFilter::setExposure, -0.2f)
        .adjust(&MTIOpacityFilter::setOpacity, 0.9f);
    render(state, chain.image(), state.range(0) ? context() : plainContext());
}
BENCHMARK(EightFilters)->ArgName("fused")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

/// What `qvmovit` calls fourJoined.
void FourFilters(benchmark::State& state) {
    Chain chain(makePhoto(2));
    chain.adjust(&MTISaturationFilter::setSaturation, 1.2f)
        .tint()
        .blend(MTIBlendMode::normal, makePhoto(3), 0.4f)
        .adjust(&MTISaturationFilter::setSaturation, 0.8f);
    render(state, chain.image(), state.range(0) ? context() : plainContext());
}
BENCHMARK(FourFilters)->ArgName("fused")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

/// A film look: grain laid over, a tint, faded colours and the frame before faded in.
void FilmLook(benchmark::State& state) {
    Chain grain(makePhoto(4));
    grain.adjust(&MTISaturationFilter::setSaturation, 0).adjust(&MTIBrightnessFilter::setBrightness, -0.2f);
    Chain earlier(makePhoto(5));
    earlier.adjust(&MTIExposureFilter::setExposure, -0.3f);
    Chain chain(makePhoto(2));
    chain.blend(MTIBlendMode::overlay, grain.image())
        .tint()
        .adjust(&MTISaturationFilter::setSaturation, 0.6f)
        .blend(MTIBlendMode::normal, earlier.image(), 0.3f);
    render(state, chain.image(), state.range(0) ? context() : plainContext());
}
BENCHMARK(FilmLook)->ArgName("fused")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

/// Planning, recording and submitting ten passes over a picture too small to cost anything: the column "CPU"
/// is the thread's own time. 0 passes that cannot be joined, 1 ten that can.
void TenTinyPasses(benchmark::State& state) {
    MTIImage image =
        MTIImage::imageWithBitmap({8, 8, std::make_shared<const std::vector<std::uint8_t>>(256, 255)});
    for (int i = 0; i < 10; ++i) {
        MTIExposureFilter filter;
        filter.setInputImage(image);
        filter.setExposure(0.1f);
        image = state.range(0) ? filter.outputImage()
                               : image.imageByApplyingTransform(CGAffineTransformMakeRotation(0.2));
    }
    render(state, image);
}
BENCHMARK(TenTinyPasses)->ArgName("joined")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
