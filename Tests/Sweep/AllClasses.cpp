// What holds for every class in the list, driven through its class object alone: a new class is covered by
// standing there.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "Platform/ImageGraph/ImageNode.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/SweepInputs.h"

namespace qv {
namespace {

using test::photo;
using test::setInputs;
using test::setMoment;
using test::setNumber;

void expectSound(const test::Picture& picture, const std::string& what) {
    float lowest = 0, highestAlpha = 0, over = 0;
    bool finite = true;
    for (std::size_t i = 0; i + 3 < picture.values.size(); i += 4) {
        const float* p = &picture.values[i];
        for (int c = 0; c < 4; ++c) finite = finite && std::isfinite(p[c]);
        lowest = std::min({lowest, p[0], p[1], p[2], p[3]});
        highestAlpha = std::max(highestAlpha, p[3]);
        over = std::max(over, std::max({p[0], p[1], p[2]}) - p[3]);
    }
    EXPECT_TRUE(finite) << what;
    EXPECT_GE(lowest, -0.002) << what;
    EXPECT_LE(highestAlpha, 1.002) << what;
    EXPECT_LE(over, 0.002) << what << ": colour exceeds alpha";
}

class EveryClass : public testing::TestWithParam<const QVFilterClass*> {
  protected:
    const QVFilterClass& record = *GetParam();
    std::unique_ptr<QVMTIFilter> filter = record.create();
};

TEST_P(EveryClass, HasARecordThatAHostCanUse) {
    ASSERT_NE(filter, nullptr);
    EXPECT_EQ(&filter->filterClass(), &record);
    EXPECT_EQ(filterClassNamed(record.name), &record);
    EXPECT_FALSE(record.title.empty());
    EXPECT_FALSE(record.tags.empty());
    EXPECT_FALSE(record.help.empty());
    EXPECT_FALSE(categoryName(record.categoryOrInherited()).empty());
    std::set<std::string_view> names;
    for (const QVProperty* property : record.allProperties()) {
        EXPECT_TRUE(names.insert(property->name).second) << property->name;
        EXPECT_FALSE(property->help.empty()) << property->name;
        EXPECT_LT(property->minimum, property->maximum) << property->name;
        EXPECT_FALSE(property->displayTitle().empty()) << property->name;
        EXPECT_EQ(property->controlStep() > 0, property->hasNumbers()) << property->name;
        const bool counts = property->hasNumbers() && property->type != QVPropertyType::numbers;
        EXPECT_TRUE(!counts || property->unit != QVUnit::none) << property->name << " has no unit";
        // What its own range refuses could not be set back by a host.
        for (double strength : {1.0, 0.0, double(record.defaultStrength())}) {
            setNumber(*filter, "effectValue", strength);
            const QVPropertyValue value = property->get(*filter);
            const auto* vector = std::get_if<MTIVector>(&value);
            std::string error;
            EXPECT_TRUE((vector && vector->count() == 0) ||
                        setProperty(*filter, property->name, value, &error))
                << error;
        }
    }
}

TEST_P(EveryClass, NeedsTheInputsThatItsRecordRequires) {
    EXPECT_FALSE(filter->outputImage());
    std::set<std::string_view> names;
    const auto shows = [this] {
        int moments = 0;
        for (double moment : {0.27, 0.81}) {
            setMoment(*filter, moment);
            moments += bool(filter->outputImage());
        }
        return moments == 2;
    };
    setInputs(*filter, 48, 27);
    EXPECT_TRUE(shows());
    for (const QVInput& input : record.allInputs()) {
        EXPECT_TRUE(names.insert(input.name).second && !input.help.empty()) << input.name;
        const auto none = input.isBuffer ? QVInputValue(PixelBuffer()) : QVInputValue(MTIImage());
        EXPECT_TRUE(setInput(*filter, input.name, none));
        EXPECT_EQ(shows(), !input.isRequired) << "without " << input.name;
        EXPECT_TRUE(setInput(*filter, input.name, test::pictureFor(input, 48, 27)));
    }
}

/// A filter's pictures at some moments.
std::vector<float> lookOf(QVMTIFilter& filter) {
    std::vector<float> look;
    for (double moment : {0.1, 0.4, 0.77}) {
        setMoment(filter, moment);
        const test::Picture picture = test::render(filter.outputImage());
        look.insert(look.end(), picture.values.begin(), picture.values.end());
    }
    return look;
}

/// Filters whose fields are to stand otherwise until their strength is first set.
constexpr std::string_view kStrengthless[] = {"QVBubbleMTIFilter", "QVStarmapMTIFilter",
                                              "QVMotionBlurEffectMTIFilter", "QVVMotionBlurEffectMTIFilter",
                                              "QVXMotionBlurEffectMTIFilter"};

TEST_P(EveryClass, StartsAtItsDefaultsHoweverItIsMade) {
    const QVFilterClass* maker = &record;
    while (!maker->factory) maker = maker->superclass;
    const auto constructed = maker->factory(record);
    const bool agree = std::ranges::find(kStrengthless, record.name) == std::end(kStrengthless);
    if (!agree) setNumber(*constructed, "effectValue", record.defaultStrength());
    for (const QVProperty* property : record.allProperties())
        EXPECT_EQ(property->get(*constructed), property->get(*filter)) << property->name;
    for (QVMTIFilter* one : {filter.get(), constructed.get()}) setInputs(*one, 48, 27);
    EXPECT_EQ(lookOf(*constructed), lookOf(*filter));
}

/// Values of a property besides its own.
std::vector<QVPropertyValue> othersThanNow(const QVProperty& property, const QVMTIFilter& filter) {
    const double from = property.minimum, to = property.maximum, between = from + 0.37 * (to - from);
    switch (property.type) {
        case QVPropertyType::boolean:
            return {!std::get<bool>(property.get(filter))};
        case QVPropertyType::integer:
            return {std::int64_t(from), std::int64_t(to), std::int64_t(between)};
        case QVPropertyType::real:
            return {from, to, between};
        case QVPropertyType::point:
            return {MTIVector{float(between), float(0.5 * (from + to))}};
        case QVPropertyType::size:
            return {MTIVector{30, 20}};
        case QVPropertyType::color:
        case QVPropertyType::colors:
            return {std::vector<UIColor>{{0.1, 0.3, 1}}};
        default:
            return {};
    }
}

/// Moves every other number that a user sets, so that none keeps this one from mattering.
void moveOthers(QVMTIFilter& filter, const QVProperty& property) {
    for (const QVProperty* other : filter.filterClass().allProperties()) {
        if (other->type != QVPropertyType::real || other->driver != QVPropertyDriver::user) continue;
        const double now = std::get<double>(other->get(filter));
        if (other->name != property.name) other->set(filter, now + 0.4 * (other->maximum - now));
    }
}

TEST_P(EveryClass, ChangesWithWhatAUserSetsUnlessItsRecordSaysOtherwise) {
    for (const QVProperty* property : record.allProperties()) {
        if (property->driver != QVPropertyDriver::user) continue;
        bool changes = false;
        for (bool moved : {false, true}) {
            const auto one = record.create();
            setInputs(*one, 64, 36);
            if (moved) moveOthers(*one, *property);
            const std::vector<float> before = lookOf(*one);
            for (const QVPropertyValue& value : othersThanNow(*property, *one)) {
                if (changes) break;
                property->set(*one, value);
                changes = lookOf(*one) != before;
            }
        }
        EXPECT_EQ(changes, !record.ignores(property->name)) << property->name;
    }
}

TEST_P(EveryClass, RendersSoundPicturesAtEveryShapeStrengthAndTime) {
    for (CGSize size : {CGSize{96, 54}, CGSize{54, 96}, CGSize{64, 64}, CGSize{1, 1}}) {
        setInputs(*filter, int(size.width), int(size.height), size.width == 64);
        for (double strength : {0.0, 0.5, 1.0}) {
            setNumber(*filter, "effectValue", strength);
            for (double moment : {0.0, 0.31, 0.77, 1.0}) {
                setMoment(*filter, moment);
                const MTIImage output = filter->outputImage();
                const std::string what = testing::PrintToString(size.width) + " wide, strength " +
                                         testing::PrintToString(strength) + ", moment " +
                                         testing::PrintToString(moment);
                ASSERT_TRUE(output) << what;
                expectSound(test::render(output), what);
            }
        }
    }
}

TEST_P(EveryClass, RendersAtTheEndsOfEveryPropertysRange) {
    setInputs(*filter, 48, 27);
    setMoment(*filter, 0.4);
    for (const QVProperty* property : record.allProperties()) {
        const QVPropertyValue before = property->get(*filter);
        const bool number =
            property->type == QVPropertyType::integer || property->type == QVPropertyType::real;
        if (!number) continue;
        for (double end : {property->minimum, property->maximum}) {
            setNumber(*filter, property->name, end);
            const MTIImage output = filter->outputImage();
            if (output && output.size().width * output.size().height < 1e6) {
                expectSound(test::render(output),
                            std::string(property->name) + " " + testing::PrintToString(end));
            }
        }
        property->set(*filter, before);
    }
}

TEST_P(EveryClass, BearsAnyTime) {
    setInputs(*filter, 31, 18);
    setMoment(*filter, 0.4);
    const double numbers[] = {std::numeric_limits<double>::quiet_NaN(), INFINITY, -INFINITY, 1e300, -1e9};
    for (std::string_view name : {"iTime", "startTime", "endTime", "time"}) {
        const QVProperty* property = record.property(name);
        if (!property) continue;
        const QVPropertyValue before = property->get(*filter);
        for (double number : numbers) {
            property->set(*filter, number);
            if (const MTIImage output = filter->outputImage())
                expectSound(test::render(output), std::string(name) + " " + testing::PrintToString(number));
        }
        property->set(*filter, before);
    }
}

TEST_P(EveryClass, ShowsThatItIsThere) {
    if (record.kindOrInherited() != QVFilterKind::effect) return;
    setInputs(*filter, 256, 144);
    setNumber(*filter, "effectValue", 1);
    const test::Picture input = test::render(photo(256, 144));
    double worst = 0;
    for (double moment : {0.03, 0.31, 0.77, 0.97}) {
        setMoment(*filter, moment);
        worst = std::max(worst, test::worstDifference(test::render(filter->outputImage()), input));
    }
    EXPECT_GT(worst, 0.1);
}

/// Flashes that keep their last choice until the next one is due; the effects that use them settle them.
constexpr std::string_view kKeepTheLastFlash[] = {"QVRetroFramFlashFilter", "QVRetroSideFlashFilter"};

TEST_P(EveryClass, GivesTheSameFrameWheneverAndWhereverItIsAsked) {
    if (std::ranges::find(kKeepTheLastFlash, record.name) != std::end(kKeepTheLastFlash)) return;
    const auto other = record.create();
    for (QVMTIFilter* one : {filter.get(), other.get()}) setInputs(*one, 64, 36);
    const auto frame = [](QVMTIFilter& one, double moment) {
        setMoment(one, moment);
        const MTIImage output = one.outputImage();
        // Joined passes round otherwise, so they are joined from the first frame on.
        test::context()->prepare(output);
        return test::render(output);
    };
    const test::Picture early = frame(*filter, 0.2), late = frame(*filter, 0.9);
    EXPECT_TRUE(test::matches(frame(*other, 0.9), late, 0));
    EXPECT_TRUE(test::matches(frame(*other, 0.2), early, 0));
    EXPECT_TRUE(test::matches(frame(*filter, 0.2), early, 0));
}

TEST_P(EveryClass, LooksTheSameThroughTheWaysOfAGPU) {
    static const auto gpuWays = [] {
        MTIContextOptions options;
        options.validation = true;
        options.gpuPaths = true;
        return MTIContext::create(options);
    }();
    ASSERT_NE(gpuWays, nullptr);
    setInputs(*filter, 80, 45);
    setMoment(*filter, 0.37);
    const MTIImage output = filter->outputImage();
    ASSERT_TRUE(output);
    const test::Picture here = test::pictureOf(test::context()->renderToBitmap(output));
    const test::Picture there = test::pictureOf(gpuWays->renderToBitmap(output));
    EXPECT_TRUE(test::matches(here, there, 3.01 / 255));
    EXPECT_THAT(gpuWays->validationMessages(), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, EveryClass,
                         testing::ValuesIn(allFilterClasses().begin(), allFilterClasses().end()),
                         [](const auto& info) { return std::string(info.param->name); });

TEST(Registry, FindsClassesAndGuessesAtMistypedOnes) {
    std::set<std::string_view> names, titles;
    for (const QVFilterClass* record : allFilterClasses()) {
        EXPECT_TRUE(names.insert(record->name).second) << record->name;
        EXPECT_TRUE(titles.insert(record->title).second) << record->title;
    }
    EXPECT_EQ(createFilter("QVNoSuchFilter"), nullptr);
    EXPECT_EQ(createFilter(""), nullptr);
    EXPECT_EQ(closestClassNames("QVMosiacMTIFilter", 1), std::vector<std::string_view>{"QVMosaicMTIFilter"});
    EXPECT_EQ(closestClassNames("swirl", 1), std::vector<std::string_view>{"QVSwirlMTIFilter"});
    EXPECT_TRUE(closestClassNames("zzzzzzzzzzzzzzz", 3).empty());
}

}  // namespace
}  // namespace qv
