// The film looks: which dirt lies where, which light falls in, what the displays show, and what becomes of
// all of it in odd frames. The C library's random() is the oracle of the draws.

#include <cstdlib>
#include <ctime>
#include <set>
#include <sstream>

#include "QVFilterExtension/MTIFilters/Effect/Film/QVBlackFilmEffectGroupMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Film/QVLightFilmEffectGroupMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Film/QVRecFilmEffectGroupMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Film/QVVhsFilmEffectGroupMTIFilter.h"
#include "QVFilterExtension/Private/OnScreenDisplay.h"
#include "Tests/Support/TemporaryBundle.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr std::string_view kGroups[] = {"QVBlackFilmEffectGroupMTIFilter", "QVLightFilmEffectGroupMTIFilter",
                                        "QVRecFilmEffectGroupMTIFilter",   "QVVhsFilmEffectGroupMTIFilter",
                                        "QVFujiFilmEffectGroupMTIFilter",  "QVNoisyFilmEffectGroupMTIFilter",
                                        "QVDamageFilmEffectGroupMTIFilter"};
constexpr CGSize kShapes[] = {{1920, 1080}, {1080, 1920}, {900, 900}};
constexpr float kStrengths[] = {0, 0.13f, 0.3f, 0.4999f, 0.5f, 0.77f, 1};

std::vector<double> moments() {
    std::vector<double> times{0, 1 / 30., 0.0999, 0.7, 601.25, -1.5};
    for (int i = 1; i < 40; ++i) times.push_back(i * 1.5373);
    return times;
}

MTIImage frame(CGSize size) {
    return MTIImage::initWithColor({0.5f, 0.5f, 0.5f, 1}, true, size);
}

long drawn(double seed) {
    srandom(std::uint32_t(std::int64_t(seed)));
    return random();
}

double unitDraw(double seed) {
    return float(drawn(seed) % 10000000) / 9999999.0f;
}

double smooth(double x) {
    x = x < 0 ? 0 : x > 1 ? 1 : x;
    return x * x * (3 - 2 * x);
}

struct Dirt {
    double size, angle, x, y, alpha;
    std::string name;
};

/// One element; what is not seen has no name.
Dirt element(int i, int count, double time, CGSize size, bool isStill, double visible, double span,
             double least, double scale, double opacity, const char* format, int pictures) {
    const double t = time + i * 0.1 / (count + 2);
    const double slot = std::floor(t / 0.1), base = slot + 9999 * i;
    if (!isStill && unitDraw(base + 238.27) > visible) return {};
    const double f = t - slot * 0.1;
    const double alpha = isStill ? 1 : smooth(f / 0.01) - smooth((f - 0.09) / (0.1 - 0.09));
    srandom(std::uint32_t(std::int64_t(base)) * 9527u + 704998u);
    char name[64];
    std::snprintf(name, sizeof name, format, int(std::uint64_t(random()) % std::uint64_t(pictures)));
    return {(span * unitDraw(base + 19.36) + least) / 1080 * scale,
            unitDraw(base + 39.21) * 6.283185307179586,
            2 * (unitDraw(base + 56.91) - 0.5),
            2 * (unitDraw(base + 63.68) - 0.5) * size.height / size.width,
            alpha * opacity,
            name};
}

std::vector<Dirt> silverDirt(float e, double time, CGSize size, bool isPhoto) {
    const int dirts = int(2.0 * e * (isPhoto ? 2 : 4)), hairs = e < 0.5f ? 0 : 1;
    const double m = e < 0.5f ? 2.0 * e : 1;
    std::vector<Dirt> all;
    for (int i = 1; i <= dirts + hairs; ++i) {
        all.push_back(i <= dirts ? element(i, dirts + hairs, time, size, isPhoto, 0.75, 20, 10, m, 0.8,
                                           "black_film_dirt_%02d.png", 9)
                                 : element(i, dirts + hairs, time, size, isPhoto, 0.4, 20, 89, m, 1,
                                           "black_film_hair_%04d.png", 6));
    }
    return all;
}

std::vector<Dirt> lightDirt(float e, double time, CGSize size, bool) {
    const int bs = e < 0.5f ? int(6.0 * e + 1) : int(4 + 8 * (e - 0.5)), as = e < 0.5f ? 0 : 1;
    std::vector<Dirt> all;
    for (int i = 1; i <= bs + as; ++i) {
        all.push_back(
            i <= bs
                ? element(i, bs + as, time, size, false, 0.5, 5, 10, 1, 0.8, "light_film_dirt_b_%02d.png", 10)
                : element(i, bs + as, time, size, false, 0.5, 3, 3, 1, 1, "light_film_dirt_a_%02d.png", 9));
    }
    std::erase_if(all, [](const Dirt& each) { return each.name.empty(); });
    return all;
}

TEST(FilmEffectGroups, DirtLiesWhereItsSeedsSay) {
    const struct {
        std::string_view name;
        std::vector<Dirt> (*expected)(float, double, CGSize, bool);
    } groups[] = {{kGroups[0], silverDirt}, {kGroups[1], lightDirt}};
    std::size_t seen = 0;
    for (const auto& group : groups) {
        const auto effect = makeEffect<FilmEffectGroup>(group.name);
        for (const CGSize size : kShapes) {
            effect->setInputImage(frame(size));
            for (const float strength : kStrengths) {
                for (const double time : moments()) {
                    for (const bool isPhoto : {false, true}) {
                        SCOPED_TRACE(testing::Message()
                                     << group.name << " " << size.width << " wide, strength " << strength
                                     << ", time " << time << ", photo " << isPhoto);
                        effect->setEffectValue(strength);
                        effect->setITime(time);
                        effect->setIsPhoto(isPhoto);
                        const auto sprites = effect->params();
                        std::vector<Dirt> expected = group.expected(strength, time, size, isPhoto);
                        std::erase_if(expected, [](const Dirt& each) { return each.name.empty(); });
                        ASSERT_EQ(sprites.size(), expected.size());
                        seen += sprites.size();
                        for (std::size_t i = 0; i < sprites.size(); ++i) {
                            const Dirt& e = expected[i];
                            const CGAffineTransform& t = sprites[i].trans;
                            const double c = e.size * std::cos(e.angle), s = e.size * std::sin(e.angle);
                            const double actual[] = {t.a, t.b, t.c, t.d, t.tx, t.ty, sprites[i].alpha};
                            const double wanted[] = {c, s, -s, c, e.x, e.y, e.alpha};
                            for (int k = 0; k < 7; ++k)
                                ASSERT_NEAR(actual[k], wanted[k], 1e-7) << i << " " << k;
                            ASSERT_TRUE(sprites[i].texture) << e.name;
                            ASSERT_EQ(sprites[i].texture->name, e.name);
                        }
                    }
                }
            }
        }
    }
    EXPECT_GT(seen, 3000u);
}

// index/flip/half turns/opacity of each step.
constexpr const char* kSequences[9] = {"0/0/0/1 1/0/0/1 2/0/0/1 3/0/0/1 4/0/0/1 5/0/0/1",
                                       "1/0/1/0.6 1/0/1/1 1/0/0/0 4/1/0/0.4 0/1/0/0.6 1/0/0/0",
                                       "1/0/0/0.5 6/0/0/1 7/0/0/1 1/0/0/0 1/0/0/0 1/0/0/0",
                                       "8/0/0/1 9/0/0/1 10/0/0/1 11/0/0/1 12/0/0/1 12/0/0/0",
                                       "8/1/0/1 13/0/0/1 14/0/0/1 11/0/0/1 12/0/0/1 14/0/0/0",
                                       "15/0/0/1 16/0/0/1 17/0/0/1 17/0/0/0.58 4/0/0/0.66 1/2/0/1",
                                       "1/1/0/0.55 18/0/0/1 19/0/0/1 20/0/0/1 21/0/0/1 22/0/0/1",
                                       "8/0/0/1 13/1/0/1 14/1/0/1 11/1/0/1 12/1/0/1 12/0/0/0",
                                       "23/0/0/1 24/0/0/1 25/0/0/1 26/0/0/1 26/0/0/0 26/0/0/0"};

struct LeakStep {
    int index = -1, flip = 0, halfTurns = 0;
    double opacity = 0;
};

/// No index: no light.
LeakStep expectedLeak(float e, double time, bool isPhoto) {
    const auto w = std::uint32_t(time / (6 * 0.1));
    const double q = e < 0.5f ? 0.05 + 0.3 * e : 0.2 + 1.6 * (e - 0.5);
    if (!isPhoto && unitDraw((e + 2.34) * (w + 1934)) > q) return {};
    std::istringstream steps(kSequences[std::uint64_t(drawn(w + 2382)) % 9]);
    std::string text;
    for (int i = int((time - w * (6 * 0.1)) / 0.1); i >= 0; --i) steps >> text;
    LeakStep step;
    EXPECT_EQ(
        std::sscanf(text.c_str(), "%d/%d/%d/%lf", &step.index, &step.flip, &step.halfTurns, &step.opacity),
        4);
    if (isPhoto) step.opacity = 1;
    return step.opacity == 0 ? LeakStep() : step;
}

/// As the graph tells it.
LeakStep leakIn(const QVLightFilmEffectGroupMTIFilter& effect, const MTIImage& image) {
    LeakStep found;
    const auto setting = [](const ImageNode& node) { return node.stock.settings.at(0).second; };
    for (const ImageNode* node : evaluationOrder(image)) {
        for (std::size_t i = 0; i < effect.lightImages().size(); ++i) {
            if (node == effect.mtiImageNamed(effect.lightImages()[i]).node().get()) found = {int(i), 0, 0, 1};
        }
        if (node->stock.kind == "opacity") found.opacity = std::stod(setting(*node));
        if (node->stock.kind == "transform") {
            double a, b, c, d;
            EXPECT_EQ(std::sscanf(setting(*node).c_str(), " [ %lf , %lf , %lf , %lf", &a, &b, &c, &d), 4);
            EXPECT_NEAR(std::abs(a), 1, 1e-9);
            EXPECT_NEAR(std::abs(d), 1, 1e-9);
            found.flip = a < 0 && d > 0 ? 1 : a > 0 && d < 0 ? 2 : 0;
            found.halfTurns = a < 0 && d < 0;
        }
    }
    return found;
}

TEST(FilmEffectGroups, LightFallsInWhenItsSeedsSay) {
    const auto effect = makeEffect<QVLightFilmEffectGroupMTIFilter>(kGroups[1]);
    const MTIImage picture = frame({320, 180});
    std::set<int> leaks;
    for (const float strength : kStrengths) {
        effect->setEffectValue(strength);
        for (int i = 0; i < 500; ++i) {
            const double time = i * 0.0731;
            for (const bool isPhoto : {false, true}) {
                SCOPED_TRACE(testing::Message()
                             << "strength " << strength << ", time " << time << ", photo " << isPhoto);
                effect->setITime(time);
                effect->setIsPhoto(isPhoto);
                const MTIImage lit = effect->applyingLightImageWithInput(picture);
                const LeakStep expected = expectedLeak(strength, time, isPhoto),
                               actual = leakIn(*effect, lit);
                ASSERT_EQ(lit == picture, expected.index < 0);
                ASSERT_EQ(actual.index, expected.index);
                ASSERT_EQ(actual.flip, expected.flip);
                ASSERT_EQ(actual.halfTurns, expected.halfTurns);
                ASSERT_NEAR(actual.opacity, expected.opacity, 1e-6);
                leaks.insert(actual.index);
            }
        }
    }
    EXPECT_EQ(leaks.size(), 28u) << "every picture, and none";
}

TEST(FilmEffectGroups, StepsFollowEachOther) {
    using Functions = std::vector<std::string>;
    const auto functionsOf = [](const MTIImage& image) {
        Functions names;
        for (const DrawnPass& pass : drawnPasses(image)) names.push_back(pass.function);
        return names;
    };
    const auto black = makeEffect(kGroups[0]), light = makeEffect(kGroups[1]);
    for (const auto& effect : {black.get(), light.get()}) {
        effect->setInputImage(sceneImage(64, 36));
        effect->setEffectValue(0.4f);
        effect->setITime(2.05);
    }
    const MTIImage silver = black->outputImage();
    EXPECT_EQ(functionsOf(silver),
              (Functions{"QVFilmNoisyMTIFilter", "MTIBlendOverlay", "QVLookupMTIFilter",
                         "QVBlackFilmEffectMTIFilter", "QVBlackFilmShakeMTIFilter", "MTIBlendNormal"}));
    const auto passes = drawnPasses(silver);
    EXPECT_FLOAT_EQ(uniform<float>(*passes[0].parameters, "opacity"), 0.4f * 0.35f + 0.05f);
    EXPECT_FLOAT_EQ(uniform<float>(*passes[3].parameters, "effectValue"), 0.4f);
    EXPECT_FLOAT_EQ(uniform<float>(*passes[4].parameters, "iTime"), 2.05f);
    EXPECT_EQ(functionsOf(light->outputImage()),
              (Functions{"QVFilmNoisyMTIFilter", "MTIBlendOverlay", "QVLookupMTIFilter", "MTIBlendNormal"}));
    for (const auto& [strength, opacity] :
         {std::pair{0.f, 0.08f}, {0.25f, 0.115f}, {0.5f, 0.15f}, {1.f, 0.2f}}) {
        light->setEffectValue(strength);
        EXPECT_FLOAT_EQ(uniform<float>(*drawnPasses(light->outputImage())[0].parameters, "opacity"), opacity);
    }
}

TEST(FilmEffectGroups, PhotosMoveOnInTimeWithEveryReading) {
    for (const std::string_view name : {kGroups[0], kGroups[1]}) {
        const auto effect = makeEffect(name);
        effect->setInputImage(frame({64, 36}));
        effect->setIsPhoto(true);
        effect->setEffectValue(0.25f);
        effect->setITime(3);
        const Picture first = render(effect->outputImage());
        EXPECT_EQ(effect->iTime(), 28);
        const MTIImage second = effect->outputImage();
        EXPECT_EQ(effect->iTime(), 53);
        effect->setITime(3);
        EXPECT_TRUE(matches(render(effect->outputImage()), first, 1.01 / 255)) << name;
        EXPECT_GT(worstDifference(render(second), first), 0.01) << name;
    }
}

TEST(FilmEffectGroups, BordersAreKeptPerSizeAndWithoutTheirAssetLeftOut) {
    QVBlackFilmEffectGroupMTIFilter effect;
    EXPECT_FALSE(effect.frameImage());
    effect.setInputImage(frame({300, 130}));
    effect.setIsPhoto(true);
    const MTIImage photo = effect.frameImage();
    EXPECT_EQ(photo.size(), (CGSize{300, 130}));
    EXPECT_FALSE(effect.frameImage() == photo) << "none of a photo's is kept";
    effect.setIsPhoto(false);
    const MTIImage kept = effect.frameImage();
    EXPECT_EQ(effect.frameImage(), kept);
    EXPECT_EQ(QVBlackFilmEffectGroupMTIFilter().frameImage(), MTIImage());
    const Picture border = render(kept);
    EXPECT_LT(border.at(150, 65)[3], 0.02);
    for (const auto& [x, y] : {std::pair{0, 0}, {299, 129}, {150, 0}, {0, 65}})
        EXPECT_GT(border.at(x, y)[3], 0.9);

    // A size of which there is no border yet.
    const TemporaryBundle empty;
    effect.setInputImage(frame({310, 130}));
    EXPECT_FALSE(effect.frameImage());
    const auto passes = drawnPasses(effect.outputImage());
    ASSERT_FALSE(passes.empty());
    EXPECT_EQ(passes.back().function, "QVBlackFilmEffectMTIFilter");
}

TEST(FilmEffectGroups, BearFramesOfAllShapesInOneClip) {
    for (const std::string_view name : kGroups) {
        SCOPED_TRACE(name);
        const auto effect = makeEffect(name);
        effect->setEffectValue(0.8f);
        const auto at = [&](int width, int height, double time) {
            effect->setInputImage(sceneImage(width, height));
            effect->setITime(time);
            const MTIImage output = effect->outputImage();
            EXPECT_EQ(output.size(), (CGSize{double(width), double(height)}));
            return render(output);
        };
        const Picture before = at(96, 54, 7.3);
        for (const double time : {-3.7, 7.3, 4e6}) {
            for (const auto& [width, height] : {std::pair{2, 2}, {8192, 16}, {54, 96}}) {
                for (const float value : at(width, height, time).values)
                    ASSERT_TRUE(value >= 0 && value <= 1.001f);
            }
        }
        EXPECT_TRUE(matches(at(96, 54, 7.3), before, 1.01 / 255));
    }
}

TEST(FilmEffectGroups, NeverRepeatWithinAMinute) {
    for (const std::string_view name : kGroups) {
        const auto effect = makeEffect<FilmEffectGroup>(name);
        effect->setInputImage(frame({1920, 1080}));
        effect->setEffectValue(1);
        std::set<std::string> pictures;
        for (int i = 0; i < 120; ++i) {
            effect->setITime(i * 0.5 + 0.25);
            std::ostringstream told;
            if (const auto* tape = dynamic_cast<QVVhsFilmEffectGroupMTIFilter*>(effect.get())) {
                told << tape->tapeImage().node()->stock.settings.at(0).second;
            } else {
                for (const DrawnPass& pass : drawnPasses(effect->outputImage()))
                    for (const auto& [key, value] : *pass.parameters)
                        if (const auto* number = std::get_if<std::int32_t>(&value)) told << *number << " ";
                for (const SpiritParam& each : effect->params())
                    told << each.trans.a << " " << each.trans.tx << " " << each.texture->name;
            }
            pictures.insert(told.str());
        }
        EXPECT_GE(pictures.size(), 119u) << name;
    }
}

TEST(OnScreenDisplay, DatesAsTheCLibraryDoes) {
    for (const double seconds : {0.0, 687273600.0, 951782399.5, 1709164800.0, 4102444799.0}) {
        const std::time_t time = std::time_t(seconds);
        char date[32], clock[32];
        std::strftime(date, sizeof date, "%b %d %a", std::gmtime(&time));
        std::strftime(clock, sizeof clock, "%p %I:%M", std::gmtime(&time));
        for (char* c = date; *c; ++c) *c = char(std::toupper(*c));
        EXPECT_EQ(recorderDate(seconds), date);
        EXPECT_EQ(recorderTime(seconds), clock);
    }
    EXPECT_EQ(recorderDate(NAN), "JAN 01 THU");
}

TEST(OnScreenDisplay, CountersRunWithTheClip) {
    QVRecFilmEffectGroupMTIFilter camcorder;
    QVVhsFilmEffectGroupMTIFilter recorder;
    EXPECT_EQ(camcorder.counter(), "00:06:18");
    EXPECT_EQ(recorder.dateText(), "OCT 12 SAT");
    EXPECT_EQ(recorder.timeText(), "PM 01:20");
    camcorder.setITime(42.96), recorder.setITime(60);
    EXPECT_EQ(camcorder.counter(), "00:07:00");
    EXPECT_EQ(camcorder.timeCode(), "0:00:43:00");
    EXPECT_EQ(recorder.timeText(), "PM 01:21");
    camcorder.setITime(-1000);
    EXPECT_EQ(camcorder.counter(), "00:00:00");
}

TEST(OnScreenDisplay, GlyphsStandOnWholePixels) {
    for (const CGSize size : {CGSize{1920, 1080}, CGSize{1280, 720}, CGSize{607, 1080}, CGSize{853, 480}}) {
        OnScreenDisplay display(size);
        display.addText("PM 01:20", {83.3, 61.7}, "VCROSDMono.ttf", 60);
        ASSERT_EQ(display.sprites().size(), 7u) << "a blank is none";
        for (const SpiritParam& glyph : display.sprites()) {
            const Bitmap& picture = glyph.texture->bitmap;
            EXPECT_NEAR(glyph.trans.a * size.width, picture.width, 1e-6) << "as large as it was drawn";
            const double left = (glyph.trans.tx + 1) * size.width / 2 - picture.width / 2.0;
            const double top = (size.height - glyph.trans.ty * size.width) / 2 - picture.height / 2.0;
            EXPECT_NEAR(left, std::round(left), 1e-6);
            EXPECT_NEAR(top, std::round(top), 1e-6);
        }
    }
}

}  // namespace
}  // namespace qv::test
