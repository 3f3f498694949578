// The transitions whose uniforms follow from the progress, the time range and a selector: what they send, and
// where slices, smooth motions, scroll and scan take the pictures.

#include <array>
#include <map>
#include <string>
#include <vector>

#include "QVFilterCore/QVTransitionMTIFilter.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

using Transition = QVTransitionMTIFilter;

/// A transition of 2 seconds from 1.5 seconds on, between two clips of 160 by 90 unless given.
std::unique_ptr<Transition> transitionOf(const std::string& stem, MTIImage from = sceneImage(160, 90),
                                         MTIImage to = sceneImage(96, 64)) {
    auto transition = makeEffect<Transition>("QV" + stem + "TransitionMTIFilter");
    transition->setInputImage1(std::move(from));
    transition->setInputImage2(std::move(to));
    transition->setTimeRange({{3, 2}, {2, 1}});
    return transition;
}

void set(Transition& transition, std::string_view name, const QVPropertyValue& value) {
    std::string error;
    EXPECT_TRUE(setProperty(transition, name, value, &error)) << error;
}

Picture frameAt(Transition& transition, double progress) {
    transition.setProgress(float(progress));
    return render(transition.outputImage());
}

TEST(ParametricTransitions, SendTheirKeysInOrder) {
    const MTIValue three = std::int32_t(3);
    const std::map<std::string, MTIValue> expected = {
        {"start", 1.5f},     {"duration", 2.0f},   {"ratio", 16.0f / 9}, {"inputSize", MTIVector{160, 90}},
        {"slope", 0.0f},     {"count", three},     {"type", three},      {"direction", three},
        {"scanType", three}, {"scrollType", three}};
    const std::string plain = "progress start duration ratio", sized = plain + " inputSize";
    const std::pair<const char*, std::string> cases[] = {
        {"Slice", "progress start duration count slope type"},
        {"MoveSlice", "progress start duration count type"},
        {"ZoomSlice", "progress start duration type"},
        {"RotateSlice", "progress start duration ratio type"},
        {"SmoothZoom", "progress type ratio"},
        {"SmoothRotate", "progress type ratio"},
        {"SmoothRadial", "progress direction"},
        {"Scan", "progress start duration ratio scanType"},
        {"Scroll", "progress start duration ratio scrollType inputSize"},
        {"FourSlice", plain},
        {"Wave", plain},
        {"Glitch", sized},
        {"GlitchSimple", sized},
        {"GlitchPixel", sized},
        {"TVNoise", sized},
        {"WhiteFlash", plain},
        {"ColorFlash", plain},
        {"DarkDissolve", plain},
        {"BrightDissolve", plain}};
    for (const auto& [stem, keys] : cases) {
        SCOPED_TRACE(stem);
        const auto transition = transitionOf(stem);
        for (const QVProperty* property : transition->filterClass().allProperties())
            if (property->type == QVPropertyType::integer) property->set(*transition, std::int64_t(3));
        std::string sent;
        for (const auto& [name, value] : transition->parameters()) {
            sent += (sent.empty() ? "" : " ") + name;
            EXPECT_TRUE(name == "progress" || value == expected.at(name)) << name;
        }
        EXPECT_EQ(sent, keys);
    }
    // A number of double width goes out as a float, and two strips are what there is at first.
    const auto slice = transitionOf("Slice");
    set(*slice, "slope", 0.1);
    EXPECT_EQ(*slice->parameters().find("slope"), MTIValue(0.1f));
    EXPECT_EQ(*slice->parameters().find("count"), MTIValue(std::int32_t(2)));
}

TEST(ParametricTransitions, EaseAsWorkedOutByHand) {
    // The Bézier's x = 3/2 (1-t)² t + t³ and y = 3 (1-t) t² + t³ at t = 1/7, 4/7 and 6/7.
    const struct {
        std::vector<const char*> stems;
        double progress, eased;
    } cases[] = {
        {{"MoveSlice", "RotateSlice", "FourSlice", "Glitch", "GlitchSimple", "GlitchPixel", "TVNoise",
          "WhiteFlash", "ColorFlash"},
         0.3,
         0.3},
        {{"Scroll", "Wave", "DarkDissolve", "BrightDissolve"}, 0.25, 0.0625},
        {{"Scroll", "Wave"}, 0.75, 0.9375},
        {{"Slice", "SmoothZoom", "SmoothRotate", "SmoothRadial"}, 0.25, 0.015625},
        {{"Slice", "SmoothZoom", "SmoothRotate", "SmoothRadial"}, 0.75, 0.984375},
        {{"Scan"}, 0.25, 0.4375},
        {{"Scan"}, 0.5, 0.5},
        {{"Scan"}, 0.75, 0.5625},
        {{"Scan"}, 0.125, 0.2890625},
        {{"ZoomSlice"}, 55.0 / 343, 19.0 / 343},
        {{"ZoomSlice"}, 118.0 / 343, 208.0 / 343},
        {{"ZoomSlice"}, 225.0 / 343, 324.0 / 343},
    };
    for (const auto& each : cases) {
        for (const char* stem : each.stems) {
            const auto transition = transitionOf(stem);
            const auto sent = [&](double progress) {
                transition->setProgress(float(progress));
                return uniform<float>(transition->parameters(), "progress");
            };
            EXPECT_NEAR(sent(each.progress), each.eased, 1e-6) << stem << " at " << each.progress;
            EXPECT_EQ(sent(0), 0) << stem;
            EXPECT_EQ(sent(1), 1) << stem;
        }
    }
}

TEST(ParametricTransitions, ScrollPushesHalfAFrameAtHalfTime) {
    const struct {
        int type;
        float du, dv;  // from a place of the frame to that of the picture, of the clip that is there
    } cases[] = {{0, 0.5f, 0}, {1, -0.5f, 0}, {2, 0, 0.5f}, {3, 0, -0.5f}, {99, 0.5f, 0}};
    const auto scroll = transitionOf("Scroll", rampsImage(90, 90, 0), rampsImage(90, 90, 1));
    for (const auto& each : cases) {
        SCOPED_TRACE(each.type);
        scroll->filterClass().property("scrollType")->set(*scroll, std::int64_t(each.type));
        const Picture picture = frameAt(*scroll, 0.5);
        for (auto [u, v] : {std::array{0.25f, 0.25f}, {0.75f, 0.25f}, {0.25f, 0.75f}, {0.75f, 0.75f}}) {
            const Pixel pixel = picture.at(int(u * 90), int(v * 90));
            const float x = u + each.du, y = v + each.dv;
            const bool incoming = x < 0 || x > 1 || y < 0 || y > 1;
            EXPECT_NEAR(pixel[2], incoming, 0.01);
            EXPECT_NEAR(pixel[0], x - std::floor(x), 0.03);
            EXPECT_NEAR(pixel[1], y - std::floor(y), 0.03);
        }
    }
}

TEST(ParametricTransitions, TurnAndZoomTheRightWay) {
    // In the upper half, what turns clockwise comes from the left; zooming in, from nearer to the middle.
    const auto redAbove = [](const char* stem, int type) {
        const auto transition = transitionOf(stem, rampsImage(161, 161, 0), rampsImage(161, 161, 1));
        set(*transition, "type", std::int64_t(type));
        return frameAt(*transition, 0.4).at(80, 40);
    };
    EXPECT_LT(redAbove("SmoothRotate", 0)[0], 0.4);
    EXPECT_GT(redAbove("SmoothRotate", 1)[0], 0.6);
    EXPECT_GT(redAbove("SmoothZoom", 0)[1], 0.27);
    EXPECT_LT(redAbove("SmoothZoom", 1)[1], 0.23);
}

TEST(ParametricTransitions, StripsAndQuartersComeFromTheirSides) {
    // How much of the incoming clip there is in a part of the frame.
    const auto share = [](Transition& transition, double progress, CGRect part) {
        const Picture picture = frameAt(transition, progress);
        double sum = 0, number = 0;
        for (int y = int(part.minY() * 90); y < int(part.maxY() * 90); ++y)
            for (int x = int(part.minX() * 90); x < int(part.maxX() * 90); ++x)
                sum += double(picture.at(x, y)[2]), ++number;
        return sum / number;
    };
    const CGRect top{{0, 0}, {1, 0.2}}, bottom{{0, 0.8}, {1, 0.2}}, left{{0, 0}, {0.2, 1}},
        right{{0.8, 0}, {0.2, 1}};
    const struct {
        const char* stem;
        int count, type;
        double progress;
        CGRect more, less;
        double by;  ///< at least
    } cases[] = {
        {"Slice", 3, 1, 0.42, left, right, 0.2},
        {"Slice", 3, 1, 0.5, top, bottom, 0.2},
        {"Slice", 3, 3, 0.42, top, bottom, 0.2},
        {"Slice", 3, 3, 0.5, left, right, 0.2},
        // Two strips that pass each other.
        {"MoveSlice", 2, 0, 0.5, {{0, 0.55}, {0.5, 0.4}}, {{0, 0.05}, {0.5, 0.4}}, 0.8},
        {"MoveSlice", 2, 0, 0.5, {{0.5, 0.05}, {0.5, 0.4}}, {{0.5, 0.55}, {0.5, 0.4}}, 0.8},
        // The upper left quarter moves up, the upper right one to the right.
        {"FourSlice", 0, -1, 0.4, {{0, 0.4}, {0.5, 0.1}}, {{0, 0}, {0.5, 0.1}}, 0.5},
        {"FourSlice", 0, -1, 0.45, {{0.5, 0}, {0.1, 0.5}}, {{0.9, 0}, {0.1, 0.5}}, 0.5},
        // The scan lingers half way down, with the incoming clip behind it, but moves on.
        {"Scan", 0, -1, 0.5, top, bottom, 0.98},
        {"Scan", 0, -1, 0.35, {{0, 0.05}, {0.9, 0.1}}, {{0, 0.4}, {0.9, 0.1}}, 0.5},
        {"Scan", 0, -1, 0.65, {{0, 0.55}, {0.9, 0.05}}, {{0, 0.85}, {0.9, 0.1}}, 0.5},
    };
    for (const auto& each : cases) {
        const auto transition =
            transitionOf(each.stem, plainImage(90, 90, {0, 0, 0, 1}), plainImage(90, 90, {0, 0, 1, 1}));
        if (each.count > 0) set(*transition, "count", std::int64_t(each.count));
        if (each.type >= 0) set(*transition, "type", std::int64_t(each.type));
        EXPECT_GT(share(*transition, each.progress, each.more),
                  share(*transition, each.progress, each.less) + each.by)
            << each.stem << " " << each.type << " at " << each.progress;
    }
}

}  // namespace
}  // namespace qv::test
