// What every filter may rely on: records and what they inherit, properties by name and from text, easing.

#include <gmock/gmock.h>

#include <cmath>

#include "QVFilterCore/QVProgressBasedEffectMTIFilter.h"
#include "QVFilterCore/QVTransitionMTIFilter.h"
#include "QVFilterCore/QV_CubicBezier.h"

namespace qv {
namespace {

using testing::HasSubstr;

constexpr std::array<std::string_view, 2> kShapes = {"round", "square"};
constexpr std::array<std::string_view, 4> kLevels = {"a", "b", "c", "d"};

class Probe : public QVEffectMTIFilter {
  public:
    explicit Probe(const QVFilterClass& filterClass) : QVEffectMTIFilter(filterClass) {}
    int count() const { return count_; }
    void setCount(int count) { count_ = count; }
    int shape() const { return shape_; }
    void setShape(int shape) { shape_ = shape; }
    void setMask(MTIImage mask) { mask_ = std::move(mask); }
    const MTIImage& mask() const { return mask_; }
    void setMaskBuffer(PixelBuffer mask) { maskBuffer_ = std::move(mask); }
    const PixelBuffer& maskBuffer() const { return maskBuffer_; }
    UIColor tint() const { return tint_; }
    void setTint(UIColor tint) { tint_ = tint; }
    MTIVector point() const { return point_; }
    void setPoint(MTIVector point) { point_ = point; }

  private:
    int count_ = 3, shape_ = 0;
    UIColor tint_;
    MTIVector point_{0, 0};
    MTIImage mask_;
    PixelBuffer maskBuffer_;
};

const QVFilterClass kProbe{
    .name = "Probe",
    .superclass = &QVEffectMTIFilterClass,
    .factory = makeFilter<Probe>,
    .category = QVFilterCategory::light,
    .isVideoOnly = true,
    .properties =
        {
            qvLevels({.help = "which", .variants = kLevels}),
            qvProperty<&Probe::count, &Probe::setCount>({.name = "count", .help = "how many", .maximum = 9}),
            qvProperty<&Probe::shape, &Probe::setShape>(
                {.name = "shapeOfAll", .help = "of each", .variants = kShapes}),
            qvProperty<&Probe::tint, &Probe::setTint>({.name = "tint", .help = "a colour"}),
            qvProperty<&Probe::point, &Probe::setPoint>({.name = "point", .help = "a place", .minimum = -4}),
        },
    .ignored = {"effectValue"}};
/// A class that is its record alone, with a function of its superclass's.
const QVFilterClass kBare{
    .name = "Bare", .superclass = &kProbe, .fragmentFunction = "Probe", .defaultEffectValue = 0.25f};
const QVFilterClass kBareBelow{
    .name = "BareBelow",
    .superclass = &kBare,
    .inputs = {{kInputImage,
                qvInput<&Probe::setMask>({.name = "mask", .role = QVInputRole::mask, .isRequired = false}),
                qvInput<&Probe::setMaskBuffer>({.name = "maskBuffer", .role = QVInputRole::mask})}},
    .properties = {qvLevels({.help = "which", .variants = kShapes})}};

TEST(FilterClass, WhatARecordLeavesOutIsItsSuperclasss) {
    EXPECT_EQ(kBareBelow.levels(), 2);
    EXPECT_EQ(kBare.levels(), 4);
    EXPECT_TRUE(kBareBelow.videoOnly());
    EXPECT_EQ(kBareBelow.defaultStrength(), 0.25f);
    EXPECT_EQ(kProbe.defaultStrength(), kDefaultEffectValue);
    EXPECT_EQ(kBareBelow.categoryOrInherited(), QVFilterCategory::light);
    EXPECT_TRUE(kBareBelow.ignores("effectValue"));
    EXPECT_FALSE(QVEffectMTIFilterClass.ignores("effectValue"));
    EXPECT_TRUE(kBareBelow.photoTimeConst());
    EXPECT_TRUE(kBareBelow.isSubclassOf(QVEffectMTIFilterClass));
    EXPECT_FALSE(kProbe.isSubclassOf(kBare));

    // A function is named after the class itself unless a record on the way says otherwise.
    EXPECT_EQ(kProbe.fragmentFunctionDescriptor().name, "Probe");
    EXPECT_EQ(kBareBelow.fragmentFunctionDescriptor().name, "Probe");
    EXPECT_EQ(dynamic_cast<Probe&>(*kBareBelow.create()).effectValue(), 0.25f);
}

TEST(FilterClass, PropertiesAreSetByNameAndChecked) {
    Probe filter(kProbe);
    std::string error;
    EXPECT_TRUE(setProperty(filter, "count", std::int64_t(7), &error)) << error;
    EXPECT_EQ(filter.count(), 7);
    EXPECT_FALSE(setProperty(filter, "count", std::int64_t(10), &error));
    EXPECT_THAT(error, HasSubstr("outside 0 to 9"));
    EXPECT_FALSE(setProperty(filter, "count", 7.0, &error));
    EXPECT_THAT(error, HasSubstr("whole number"));
    EXPECT_FALSE(setProperty(filter, "effectValue", std::nan(""), &error));
    EXPECT_FALSE(setProperty(filter, "size", 1.0, &error));
    EXPECT_THAT(error, HasSubstr("no property 'size'"));
    EXPECT_EQ(filter.count(), 7) << "a refused value changes nothing";
    EXPECT_FALSE(setProperty(filter, "point", MTIVector{0, -5}, &error)) << "each number of a point";
    EXPECT_FALSE(setProperty(filter, "point", MTIVector{0, 0, 0}, &error)) << "a point has two";
    EXPECT_FALSE(setProperty(filter, "level", std::int64_t(4), &error));
    EXPECT_FALSE(setProperty(filter, "shapeOfAll", std::int64_t(2), &error));
    // A base's property through a subclass's record.
    EXPECT_TRUE(setProperty(filter, "effectValue", 0.75, &error)) << error;
    EXPECT_EQ(filter.effectValue(), 0.75f);
}

TEST(FilterClass, WhatAPropertyLeavesOutIsDerived) {
    const auto step = [](double minimum, double maximum, double given) {
        QVProperty facts{.name = "x", .minimum = minimum, .maximum = maximum, .step = given};
        facts.type = QVPropertyType::real;
        return facts.controlStep();
    };
    EXPECT_DOUBLE_EQ(step(0, 1, 0), 0.01);
    EXPECT_DOUBLE_EQ(step(-1, 2, 0), 0.02);
    EXPECT_DOUBLE_EQ(step(0, 60, 0), 0.5);
    EXPECT_DOUBLE_EQ(step(0, 1, 0.25), 0.25);
    EXPECT_DOUBLE_EQ(step(-kUnlimited, kUnlimited, 0), 0.01);
    EXPECT_EQ(kProbe.property("count")->controlStep(), 1);
    EXPECT_EQ(kProbe.property("shapeOfAll")->controlStep(), 0);
    EXPECT_EQ(kProbe.property("shapeOfAll")->displayTitle(), "Shape of all");
    EXPECT_EQ(kProbe.property("effectValue")->displayTitle(), "Strength");
}

TEST(FilterClass, InputsAreSetByName) {
    Probe filter(kBareBelow);
    const MTIImage picture = MTIImage::initWithColor({1, 1, 1, 1}, false, {2, 2});
    const PixelBuffer buffer = PixelBuffer::create(PixelFormat::gray8, 2, 2);
    std::string error;
    EXPECT_TRUE(setInput(filter, "inputImage", picture, &error)) << error;
    EXPECT_EQ(filter.inputImage(), picture);
    EXPECT_TRUE(setInput(filter, "mask", picture, &error)) << error;
    EXPECT_EQ(filter.mask(), picture);
    EXPECT_TRUE(setInput(filter, "maskBuffer", buffer, &error)) << error;
    EXPECT_TRUE(filter.maskBuffer());
    EXPECT_TRUE(setInput(filter, "mask", MTIImage(), &error));
    EXPECT_FALSE(filter.mask());
    EXPECT_FALSE(setInput(filter, "maskBuffer", picture, &error));
    EXPECT_THAT(error, HasSubstr("maskBuffer takes a pixel buffer"));
    EXPECT_FALSE(setInput(filter, "layer", picture, &error));
    EXPECT_THAT(error, HasSubstr("BareBelow has no input 'layer'"));
    EXPECT_EQ(kBareBelow.input(QVInputRole::mask)->name, "mask");
    EXPECT_EQ(kBareBelow.input(QVInputRole::incoming), nullptr);
    EXPECT_EQ(kBare.allInputs().size(), 1u);
}

TEST(FilterClass, PropertiesAreReadFromText) {
    Probe filter(kProbe);
    std::string error;
    using Texts = std::vector<std::pair<const char*, const char*>>;
    const Texts good = {{"count", "8"},           {"tint", "#ff8000"}, {"point", "0.25,-3"},
                        {"shapeOfAll", "square"}, {"isPhoto", "true"}, {"extractValues", "0.3,0.5"},
                        {"iTime", "1e-3"}};
    for (const auto& [name, text] : good)
        EXPECT_TRUE(setPropertyFromText(filter, name, text, &error)) << error;
    EXPECT_EQ(filter.count(), 8);
    EXPECT_EQ(filter.tint(), UIColor(1, 128 / 255.0, 0));
    EXPECT_EQ(filter.point(), (MTIVector{0.25f, -3}));
    EXPECT_TRUE(filter.isPhoto());
    EXPECT_EQ(filter.extractValues(), (std::vector<double>{0.3, 0.5}));
    EXPECT_EQ(filter.iTime(), 1e-3);
    EXPECT_EQ(filter.shape(), 1) << "variants go by name too";
    const Texts bad = {{"count", "8x"},        {"count", "2.5"},         {"count", ""},
                       {"effectValue", "nan"}, {"effectValue", "inf"},   {"effectValue", "0,5"},
                       {"tint", "#12"},        {"point", "1,0,0"},       {"point", ""},
                       {"isPhoto", "maybe"},   {"extractValues", "0.3,"}};
    for (const auto& [name, text] : bad) {
        error.clear();
        EXPECT_FALSE(setPropertyFromText(filter, name, text, &error)) << name << "=" << text;
        EXPECT_THAT(error, HasSubstr(name));
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }

    QVTransitionMTIFilter transition;
    EXPECT_TRUE(setPropertyFromText(transition, "timeRange", "1.5,0.25", &error)) << error;
    EXPECT_DOUBLE_EQ(CMTimeGetSeconds(transition.timeRange().start), 1.5);
    EXPECT_DOUBLE_EQ(CMTimeGetSeconds(transition.timeRange().duration), 0.25);
    EXPECT_FALSE(setPropertyFromText(transition, "timeRange", "1.5,-1", &error));
}

TEST(Easing, CubicBezierIsTheTimingFunctionOfStyleSheetsInStraightPieces) {
    const double curves[][4] = {{0.5, 0, 0, 1}, {0.25, 0.1, 0.25, 1}, {1, 0, 1, 1}, {0.42, 0, 0.58, 1}};
    for (const auto& [x1, y1, x2, y2] : curves) {
        const auto at = [](double t, double first, double second) {
            return ((1 + 3 * first - 3 * second) * t + (3 * second - 6 * first)) * t * t + 3 * first * t;
        };
        for (int i = 0; i < 49; ++i) {
            const double t = i / 49.0, next = (i + 1) / 49.0;
            const double left = at(t, x1, x2), right = at(next, x1, x2);
            const double low = at(t, y1, y2), high = at(next, y1, y2);
            EXPECT_NEAR(QV_CubicBezier(left, x1, y1, x2, y2), low, 1e-9);
            if (right - left < 1e-5) continue;  // too steep to be cut again
            EXPECT_NEAR(QV_CubicBezier(0.75 * left + 0.25 * right, x1, y1, x2, y2), 0.75 * low + 0.25 * high,
                        1e-9);
            EXPECT_NEAR(QV_CubicBezier(0.25 * left + 0.75 * right, x1, y1, x2, y2), 0.25 * low + 0.75 * high,
                        1e-9);
        }
    }
    // The "ease" of style sheets, by an independent solver.
    EXPECT_NEAR(QV_CubicBezier(0.5, 0.25, 0.1, 0.25, 1), 0.802403, 5e-4);
    EXPECT_EQ(QV_CubicBezier(0, 0.5, 9, 0.5, 9), 0);
    EXPECT_EQ(QV_CubicBezier(1, 0.5, 9, 0.5, 9), 1);
    EXPECT_EQ(QV_CubicBezier(-3, 0.2, 0, 0.8, 1), 0);
    EXPECT_EQ(QV_CubicBezier(7, 0.2, 0, 0.8, 1), 1);
    EXPECT_EQ(QV_CubicBezier(std::nan(""), 0.2, 0, 0.8, 1), 0);
}

TEST(Easing, TransitionsAccelerateAndSettle) {
    for (auto ease : {QVTransitionMTIFilter::easeInOutCubic, QVTransitionMTIFilter::easeInOutHeavy}) {
        EXPECT_EQ(ease(0), 0);
        EXPECT_EQ(ease(1), 1);
        EXPECT_FLOAT_EQ(ease(0.5f), 0.5f);
        for (float p = 0; p < 1; p += 0.03125f) EXPECT_LT(ease(p), ease(p + 0.03125f) + 1e-9f);
    }
}

TEST(ClipProgress, IsAFractionOfTheClip) {
    QVProgressBasedEffectMTIFilter filter;
    filter.setStartTime(2);
    const std::tuple<double, double, float> cases[] = {{6, 1, 0}, {6, 2, 0},           {6, 3, 0.25f},
                                                       {6, 6, 1}, {6, 9, 1},           {2, 9, 0},
                                                       {1, 9, 0}, {6, std::nan(""), 0}};
    for (const auto& [end, time, progress] : cases) {
        filter.setEndTime(end);
        filter.setITime(time);
        EXPECT_FLOAT_EQ(filter.progress(), progress) << end << " at " << time;
    }
}

}  // namespace
}  // namespace qv
