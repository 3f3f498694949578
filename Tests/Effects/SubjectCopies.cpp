// Effects on the subject alone or on the background alone: what they send to the effects that they are made
// of, and where the frame stays as it is.

#include "QVFilterCore/QVAIEffectMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Effect = QVAIEffectMTIFilter;

std::unique_ptr<Effect> onScene(const std::string& name, const MTIImage& mask) {
    auto effect = makeEffect<Effect>(name);
    effect->setInputImage(sceneImage(64, 48));
    effect->setMaskImage(mask);
    effect->setITime(0.4);
    return effect;
}
MTIImage grey(float value, int side = 1) {
    return plainImage(side, side, {value, value, value, 1});
}

TEST(SubjectCopies, SetTheEffectsThatTheyAreMadeOf) {
    const struct {
        std::string name;
        float strength;  ///< below 0: the class's own
        std::vector<double> settings;
        std::string function, uniform;
        double value;
    } cases[] = {
        {"QVAIMattingRGBCopyFilter", -1, {}, "QVAIRGBFilter", "filterNum", 2},
        {"QVAIMattingRGBCopyFilter", 0.2499f, {}, "QVAIRGBFilter", "filterNum", 2},
        {"QVAIMattingRGBCopyFilter", 0.25f, {}, "QVAIRGBFilter", "filterNum", 4},
        {"QVAIMattingRGBCopyFilter", 0.75f, {}, "QVAIRGBFilter", "filterNum", 6},
        {"QVAIMattingRGBCopyFilter", 1, {}, "QVAIRGBFilter", "distanceValue", 0.5},
        {"QVAIMattingRGBCopyFilter", 1, {0.9}, "QVAIRGBFilter", "distanceValue", 0.9},
        {"QVAIMattingRGBCopyFilter", 1, {}, "QVAIRGBFilter", "changeFrequency", 0.4},
        {"QVAIMattingShockFilter", -1, {}, "QVAIShockFilter", "filterNumber", 4},
        {"QVAIMattingShockFilter", 0.1f, {}, "QVAIShockFilter", "filterNumber", 2},
        // Three beats a second without a setting, ten at 1.
        {"QVAIMattingShockFilter", -1, {}, "QVAIShockFilter", "period", 0.2},
        {"QVAIMattingShockFilter", -1, {0.5}, "QVAIShockFilter", "period", 0.6},
        {"QVAIMattingRepetitionFilter", -1, {}, "QVAIReputationFilter", "angleValue", 1},
        {"QVAIMattingRepetitionFilter", 0.3f, {}, "QVAIReputationFilter", "angleValue", 0.3},
        {"QVAIMattingRepetitionFilter", 0.3f, {}, "QVAIReputationFilter", "distanceValue", 0.3},
        {"QVAIMattingRepetitionFilter", 0.3f, {0.7}, "QVAIReputationFilter", "distanceValue", 0.7},
        {"QVAIMattingSplitFilter", -1, {}, "QVAICopySplitFilter", "splitNumber", 2.5},
        {"QVAIMattingKaleidoscopeFilter", -1, {}, "QVSpliteKaleidoscopeMTIFilter", "splitNumber", 10},
        {"QVAIMattingGhostFilter", 0.4f, {}, "QVAIGhostFilter", "iTime", 0.05},
        {"QVAIMattingGhostFilter", 1, {}, "QVAIGhostFilter", "presence", 1},
        {"QVAIRGBDispersionFilter", 0.7f, {}, "QVAIRGBDispersionFilter", "seperateDistance", 0.7},
        {"QVAIRGBCyanSeperateFilter", 0.7f, {}, "QVAIRGBCyanSeperateFilter", "seperateDistance", 0.7},
        {"QVAIRGBCyanSeperateFilter", 0.7f, {}, "QVAIRGBCyanSeperateFilter", "seperateZoomValue", 0.5},
        {"QVAIRGBCyanSeperateFilter", 0.7f, {0.2, 9}, "QVAIRGBCyanSeperateFilter", "seperateZoomValue", 0.2},
    };
    for (const auto& c : cases) {
        const auto effect = onScene(c.name, grey(1));
        if (c.strength >= 0) effect->setEffectValue(c.strength);
        effect->setExtractValues(c.settings);
        double found = NAN;
        const MTIImage image = effect->outputImage();
        for (const DrawnPass& pass : drawnPasses(image)) {
            const MTIValue* value = pass.function == c.function ? pass.parameters->find(c.uniform) : nullptr;
            if (const auto* number = value ? std::get_if<float>(value) : nullptr) found = double(*number);
            if (const auto* number = value ? std::get_if<std::int32_t>(value) : nullptr) found = *number;
        }
        EXPECT_NEAR(found, c.value, 2e-5) << c.name << " " << c.uniform << " at " << c.strength;
    }
}

TEST(SubjectCopies, HaveLevelsThatTheStrengthFollows) {
    const auto effect = makeEffect<Effect>("QVAIMattingShockFilter");
    EXPECT_EQ(effect->filterClass().levels(), 3);
    EXPECT_EQ(effect->level(), 1);
    for (std::int64_t level : {2, 0, 1}) {
        effect->setLevel(level);
        EXPECT_EQ(effect->level(), level);
        EXPECT_EQ(effect->effectValue(), 0.5f * float(level));
    }
    for (std::int64_t level : {-1, 3}) effect->setLevel(level);
    EXPECT_EQ(effect->effectValue(), 0.5f);
    const auto without = makeEffect<Effect>("QVAIMattingSplitFilter");
    without->setLevel(0);
    EXPECT_EQ(without->effectValue(), 0.05f);
}

TEST(SubjectCopies, LeaveTheFrameWhereTheyHaveNoBusiness) {
    const Picture frame = render(sceneImage(64, 48));
    const struct {
        std::string name;
        float untouchedMask;
    } cases[] = {{"QVAIMattingRGBCopyFilter", 0},    {"QVAIMattingShockFilter", 0},
                 {"QVAIMattingRepetitionFilter", 0}, {"QVAIMattingGhostFilter", 0},
                 {"QVAIMattingSplitFilter", 1},      {"QVAIMattingKaleidoscopeFilter", 1}};
    for (const auto& c : cases) {
        for (int side : {1, 90}) {
            const auto effect = onScene(c.name, grey(c.untouchedMask, side));
            EXPECT_LT(worstDifference(render(effect->outputImage()), frame), 1.01 / 255) << c.name;
            effect->setMaskImage(grey(1 - c.untouchedMask, side));
            EXPECT_GT(worstDifference(render(effect->outputImage()), frame), 0.1) << c.name;
        }
    }
}

/// Middle of what lacks a colour, pixels; white lacks nothing.
CGPoint inkMiddle(const Picture& picture, std::size_t color) {
    double sum = 0, x = 0, y = 0;
    for (int row = 0; row < picture.height; ++row) {
        for (int column = 0; column < picture.width; ++column) {
            const double ink = 1 - double(picture.at(column, row)[color]);
            sum += ink;
            x += ink * (column + 0.5);
            y += ink * (row + 0.5);
        }
    }
    return {x / sum, y / sum};
}

TEST(SubjectPrints, PartTheInksByTheirDistance) {
    // A black subject of 12 x 12 in the middle of a frame of 96 x 72.
    const MTIImage mask = MTIImage::imageWithBitmap(makeBitmap(96, 72, [](int x, int y) {
        const float inside = x >= 42 && x < 54 && y >= 30 && y < 42 ? 1.0f : 0.0f;
        return Pixel{inside, inside, inside, 1};
    }));
    const auto inksOf = [&](const std::string& name, float strength, std::vector<double> settings = {}) {
        const auto effect = makeEffect<Effect>(name);
        effect->setInputImage(plainImage(96, 72, {0, 0, 0, 1}));
        effect->setMaskImage(mask);
        effect->setEffectValue(strength);
        effect->setExtractValues(std::move(settings));
        const Picture picture = render(effect->outputImage());
        std::vector<CGPoint> inks;
        for (std::size_t c = 0; c < 3; ++c) inks.push_back(inkMiddle(picture, c));
        return inks;
    };
    for (const char* name : {"QVAIRGBDispersionFilter", "QVAIRGBCyanSeperateFilter"}) {
        for (const CGPoint& ink : inksOf(name, 0)) {
            EXPECT_NEAR(ink.x, 48, 0.1);
            EXPECT_NEAR(ink.y, 36, 0.1);
        }
    }
    // A third of the ink stays half way: what is left is 0.82 of a twelfth of 72 pixels.
    const auto prism = inksOf("QVAIRGBDispersionFilter", 1);
    for (const CGPoint& ink : prism) EXPECT_NEAR(std::hypot(ink.x - 48, ink.y - 36), 0.82 * 6, 0.5);
    EXPECT_GT(std::hypot(prism[0].x - prism[1].x, prism[0].y - prism[1].y), 7);
    const auto prints = inksOf("QVAIRGBCyanSeperateFilter", 1, {0});
    EXPECT_NEAR(prints[1].x - prints[0].x, 72 / 8.0, 0.6) << "red to the right of cyan";
    EXPECT_NEAR(prints[1].x, prints[2].x, 0.1);
}

TEST(SubjectPrints, LieOnAWhitePage) {
    for (const char* name : {"QVAIRGBDispersionFilter", "QVAIRGBCyanSeperateFilter"}) {
        const auto effect = onScene(name, grey(0));
        EXPECT_LT(worstDifference(render(effect->outputImage()), render(plainImage(64, 48, {1, 1, 1, 1}))),
                  1e-3);
        effect->setMaskImage(grey(1));
        effect->setEffectValue(0);
        EXPECT_LT(worstDifference(render(effect->outputImage()), render(effect->inputImage())), 1.01 / 255);
        effect->setMaskImage({});
        EXPECT_FALSE(effect->outputImage());
    }
}

TEST(GhostContour, LeavesTheSubjectAndTheFarBackgroundAndTakesTheColoursOfTheUser) {
    const auto effect = makeEffect<Effect>("QVAIGhostContourFilter");
    const MTIImage mask = MTIImage::imageWithBitmap(makeBitmap(240, 240, [](int x, int y) {
        const float inside = std::hypot(float(x) - 119.5f, float(y) - 149.5f) < 40 ? 1.0f : 0.0f;
        return Pixel{inside, inside, inside, 1};
    }));
    effect->setInputImage(plainImage(240, 240, {0.5f, 0.5f, 0.5f, 1}));
    effect->setMaskImage(mask);
    effect->setITime(0.5);
    effect->setColors({UIColor{0, 1, 0}});
    const Picture picture = render(effect->outputImage());
    EXPECT_LT(difference(picture.at(120, 150), {0.5f, 0.5f, 0.5f, 1}), 0.01);
    EXPECT_LT(picture.at(8, 8)[0], 0.4) << "the scene darkens";
    double brightest = 0;
    for (int x = 160; x < 200; ++x)
        brightest = std::max(brightest, double(picture.at(x, 150)[1] - picture.at(x, 150)[0]));
    EXPECT_GT(brightest, 0.3) << "an outline of the colour crosses the row beside the subject";
}

}  // namespace
}  // namespace qv::test
