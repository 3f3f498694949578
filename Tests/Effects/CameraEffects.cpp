// The camera effects: radii, zooms, prints, blinks and marks, worked out here from the clock of their clips.

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Effect/Camera/QVCameraFreezeMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Camera/QVCameraLightFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Camera/QVCameraRECFilter.h"
#include "QVFilterExtension/Private/UIImage+QVMTIFilter.h"
#include "Tests/Support/TemporaryBundle.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr CGSize kShapes[] = {{640, 360}, {360, 640}, {300, 300}, {2, 2}, {8192, 16}};
constexpr float kStrengths[] = {0, 0.2f, 0.5f, 0.51f, 1};
constexpr double kStart = 2.5, kEnd = 8.6;  // 61 tenths of a second
constexpr double kTimes[] = {-1,  2.5, 2.75, 3.1, 3.5, 4,    4.9, 5,   5.3,
                             5.5, 5.7, 5.99, 6,   6.1, 6.34, 7.1, 8.5, 9};

double smooth(double x) {
    x = std::clamp(x, 0.0, 1.0);
    return x * x * (3 - 2 * x);
}

/// Position in the clip of 61 steps.
double positionAt(double time) {
    return std::clamp((time - kStart) / (kEnd - kStart), 0.0, 1.0);
}

/// What a graph is made of, inputs first.
struct Parts {
    std::vector<float> radii;
    std::vector<Bitmap> layers;
    std::vector<std::string> names;  ///< of the layers
    std::vector<SpriteInstance> sprites;
    std::vector<double> transform{1, 0, 0, 1, 0, 0};
    bool isGrey = false;
};

Parts partsOf(const MTIImage& image) {
    Parts parts;
    for (const ImageNode* node : evaluationOrder(image)) {
        if (const auto* blur = std::get_if<GaussianBlurPass>(&node->operation))
            parts.radii.push_back(blur->radius);
        if (const auto* source = std::get_if<BitmapSource>(&node->operation))
            parts.layers.push_back(source->bitmap), parts.names.push_back(source->name);
        if (const auto* pass = std::get_if<SpritePass>(&node->operation)) parts.sprites = pass->sprites;
        if (node->stock.kind == "transform")
            std::sscanf(node->stock.settings[0].second.c_str(), "[%lf, %lf, %lf, %lf, %lf, %lf]",
                        &parts.transform[0], &parts.transform[1], &parts.transform[2], &parts.transform[3],
                        &parts.transform[4], &parts.transform[5]);
        const auto* pass = std::get_if<KernelPass>(&node->operation);
        if (pass && pass->kernel->fragmentFunctionDescriptor().name == "QVTurnBWMTIFilter") parts.isGrey = true;
    }
    return parts;
}

/// Calls `check` for each shape, strength and time with an effect over the clip, which keeps its state.
template <typename Check>
void overClip(const char* name, Check&& check) {
    const auto effect = makeEffect<QVProgressBasedEffectMTIFilter>(name);
    effect->setStartTime(kStart), effect->setEndTime(kEnd);
    for (const CGSize size : kShapes) {
        effect->setInputImage(MTIImage::initWithColor({0.2f, 0.4f, 0.6f, 1}, false, size));
        for (const float strength : kStrengths) {
            effect->setEffectValue(strength);
            for (const double time : kTimes) {
                SCOPED_TRACE(testing::Message() << name << " " << size.width << "x" << size.height
                                                << " strength " << strength << " time " << time);
                effect->setITime(time);
                check(*effect, size, double(strength), time, positionAt(time));
                if (testing::Test::HasFailure()) return;
            }
        }
    }
}

/// Blurs of a radius of 0 are none.
void expectRadii(const std::vector<float>& actual, std::initializer_list<double> expected) {
    std::vector<float> wanted;
    for (const double radius : expected)
        if (radius > 0) wanted.push_back(float(radius));
    ASSERT_EQ(actual.size(), wanted.size());
    for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], wanted[i], 1e-5 * wanted[i]);
}

void expectZoom(const Parts& parts, double k) {
    EXPECT_NEAR(parts.transform[0], k, 1e-12);
    EXPECT_NEAR(parts.transform[3], k, 1e-12);
    EXPECT_EQ(parts.transform[1], 0);
}

/// Columns of a layer that show anything: the first, and how many.
std::pair<int, int> columnsOf(const Bitmap& layer) {
    int first = layer.width, last = -1;
    for (int i = 0; i < layer.width * layer.height; ++i) {
        if ((*layer.pixels)[std::size_t(i) * 4 + 3] < 8) continue;
        first = std::min(first, i % layer.width), last = std::max(last, i % layer.width);
    }
    return {first, last - first + 1};
}

TEST(CameraEffects, RecordingFocusesZoomsAndBlinks) {
    const Bitmap corner = qv_imageWithFileName("camera_rec_conner1.png").bitmap();
    ASSERT_TRUE(corner);
    const double cornerLeft = double(columnsOf(corner).first) / corner.width;
    for (const bool isPhoto : {false, true}) {
        overClip(
            "QVCameraRECFilter", [&](QVEffectMTIFilter& effect, CGSize size, double e, double t, double p) {
                effect.setIsPhoto(isPhoto);
                const Parts parts = partsOf(effect.outputImage());
                const double side = std::min(size.width, size.height), s = side / 375 * 1.3, n = 61 * p;
                expectRadii(parts.radii, {(19 * e + 1) * side / 720 * (smooth(n / 5) - smooth((n - 30) / 5)),
                                          2 * side / 720 * (1 - smooth(n / 15))});
                expectZoom(parts, 1 + 0.5 * smooth(n / 10) - 0.5 * smooth((n - 30) / 5));

                ASSERT_EQ(parts.names[0], "camera_rec_conner1.png");
                const double d = s * (35 + 25 * smooth(n / 10) - 25 * smooth((n - 25) / 5));
                const double left = size.width / 2 - d - 20 * s + 40 * s * cornerLeft;
                if (side > 100) {
                    EXPECT_NEAR(columnsOf(parts.layers[0]).first, left, 1.5);
                }

                const double period = e < 0.5 ? 2 - 2 * e : 1.5 - e;
                const double phase = std::fmod(std::fmod(t, period) + period, period), half = period / 2;
                const double alpha = isPhoto ? 1 : smooth(phase / half) - smooth((phase - half) / half);
                const double k = side * 22 / 375 / size.width;
                ASSERT_EQ(parts.sprites.size(), side < 16 ? 0u : 2u) << "dots of half a pixel and more";
                if (parts.sprites.empty()) return;
                EXPECT_NEAR(parts.sprites[0].alpha, alpha, 1e-5);
                EXPECT_EQ(parts.sprites[1].alpha, 1);
                for (const SpriteInstance& dot : parts.sprites) EXPECT_NEAR(dot.transform.a, k, 1e-12);
                EXPECT_NEAR(parts.sprites[0].transform.tx, 120 * s / size.width - 1, 1e-12);
                EXPECT_NEAR(parts.sprites[0].transform.ty, (size.height - 73 * s) / size.width, 1e-12);
                EXPECT_EQ(parts.sprites[1].transform.tx, 0);
            });
    }
}

TEST(CameraEffects, RecordingDrawsItsMarksForEachSize) {
    QVCameraRECFilter rec;
    for (const int height : {216, 1080}) {
        rec.setInputImage(plainImage(height * 16 / 9, height, {0, 0, 0, 1}));
        const double s = height / 375.0 * 1.3;
        const Picture dot = pictureOf(rec.getPointWithColor({1, 0, 0}).bitmap());
        EXPECT_NEAR(dot.width, s * 22, 0.5) << "22 points at two points a pixel";
        EXPECT_EQ(dot.at(dot.width / 2, dot.height / 2), (Pixel{1, 0, 0, 1}));
        EXPECT_EQ(dot.at(dot.width / 2, dot.height / 5)[3], 0) << "it fills half of its canvas";
        const auto [first, count] = columnsOf(partsOf(rec.constantImage()).layers.at(0));
        EXPECT_NEAR(first, 16 * s, 2.5 * s) << "the caption";
        EXPECT_NEAR(count, 36 * s, 8 * s);
    }
}

TEST(CameraEffects, SnapshotsTiltAndReturn) {
    overClip("QVCameraFreezeMTIFilter", [](QVEffectMTIFilter& effect, CGSize, double e, double, double p) {
        const MTIImage output = effect.outputImage();
        const Parts parts = partsOf(output);
        const double q = 0.33 * e + 0.17, a = (1 - q) / 4;
        const double lift = smooth((p - a) / a) - smooth((p - (1 - 2 * a)) / a);
        const double k = 1 - 0.3 * lift, angle = std::numbers::pi / 30 * lift;
        EXPECT_NEAR(parts.transform[0], k * std::cos(angle), 1e-12);
        EXPECT_NEAR(parts.transform[1], k * std::sin(angle), 1e-12);
        EXPECT_EQ(parts.radii, std::vector{10.0f});
        const DrawnPass freeze = drawnPasses(output).front();
        EXPECT_EQ(freeze.function, "QVCameraFreezeMTIFilter");
        EXPECT_EQ(uniform<float>(*freeze.parameters, "progress"), float(p));
        EXPECT_EQ(uniform<float>(*freeze.parameters, "durationProgress"), float(q));
    });
}

TEST(CameraEffects, CircularFocusEndsWithItsZoom) {
    overClip("QVCameraCircleBlurFilter",
             [](QVEffectMTIFilter& effect, CGSize size, double e, double, double p) {
                 const Parts parts = partsOf(effect.outputImage());
                 const double n = 61 * p, side = std::min(size.width, size.height);
                 expectZoom(parts, 1 + 0.5 * smooth(n / 28) - 0.5 * smooth((n - 30) / 5));
                 expectRadii(parts.radii, {p <= 35.0 / 61 ? e * side / 48 : 0});
             });
}

TEST(CameraEffects, ShutterFlashTurnsToColour) {
    overClip("QVCameraFlashMTiFilter",
             [](QVEffectMTIFilter& effect, CGSize size, double e, double, double p) {
                 const Parts parts = partsOf(effect.outputImage());
                 expectRadii(parts.radii,
                             {std::min(size.width, size.height) / 720 * (15 * e + 5) * (1 - smooth(2 * p))});
                 EXPECT_EQ(parts.isGrey, p <= 0.63);
             });
    const auto flash = makeEffect<QVProgressBasedEffectMTIFilter>("QVCameraFlashMTiFilter");
    flash->setInputImage(plainImage(90, 60, {0.3f, 0.3f, 0.3f, 1}));
    for (const auto& [p, color] : {std::pair{0.5, "black"},
                                   {0.505, "red"},
                                   {0.51, "red"},
                                   {0.515, "black"},
                                   {0.525, "red"},
                                   {0.535, "black"}}) {
        flash->setITime(p);
        EXPECT_EQ(partsOf(flash->outputImage()).names.back(),
                  std::string("camera_film_") + color + "Center.png");
    }
}

TEST(CameraEffects, ExposureFollowsTheSun) {
    QVCameraLightFilter light;
    light.setEndTime(61);
    light.setEffectValue(1);
    light.setInputImage(plainImage(320, 180, {0.4f, 0.4f, 0.4f, 1}));
    const double scale = 180 / 375.0 * 1.3 / 180;  // of a point, in heights of the frame
    for (const auto& [time, stops] :
         {std::pair{0.0, 0.0}, {12, 0}, {25, 1.6}, {31, 1.6}, {43, -0.72}, {54, 0}, {70, 0}}) {
        light.setITime(time);
        EXPECT_NEAR(light.exposure(), stops, 1e-9) << time;
        const float gray = render(light.outputImage()).at(20, 90)[0];
        EXPECT_EQ(gray > 0.45f, stops > 0) << time;
        EXPECT_EQ(gray < 0.35f, stops < 0) << time;
        const MTIParameters all = light.parameters();
        const double sun = 0.5 - 46 * stops / 1.6 * scale;
        EXPECT_NEAR(uniform<float>(all, "topCenter"), sun - 17 * scale, 1e-6);
        EXPECT_NEAR(uniform<float>(all, "buttomCenter"), sun + 17 * scale, 1e-6);
    }
}

TEST(CameraEffects, LeaveOutLayersWhoseAssetsAreMissing) {
    const auto flash = makeEffect("QVCameraFlashMTiFilter"), print = makeEffect("QVRetroNoisyImageFilter");
    for (QVEffectMTIFilter* effect : {flash.get(), print.get()}) {
        effect->setInputImage(MTIImage::initWithColor({0.5f, 0.5f, 0.5f, 1}, false, {4, 4}));
        EXPECT_FALSE(partsOf(effect->outputImage()).names.empty());
    }
    const TemporaryBundle empty;  // of the next size nothing has been drawn; the shaders have been read
    for (QVEffectMTIFilter* effect : {flash.get(), print.get()}) {
        effect->setInputImage(MTIImage::initWithColor({0.5f, 0.5f, 0.5f, 1}, false, {77, 45}));
        const MTIImage output = effect->outputImage();
        ASSERT_TRUE(output) << effect->filterClass().name;
        EXPECT_TRUE(partsOf(output).names.empty()) << effect->filterClass().name;
    }
}

}  // namespace
}  // namespace qv::test
