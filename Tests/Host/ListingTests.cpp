// list, show, graph, devices, bench: what programs read.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

const Json& classes() {
    static const Json all = qvfilterJSON({"list", "--json"});
    return all;
}

Json classNamed(const std::string& name) {
    for (const Json& entry : classes()) {
        if (entry["name"] == name) return entry;
    }
    ADD_FAILURE() << name << " is not listed";
    return {};
}

Json propertyNamed(const Json& entry, const std::string& name) {
    for (const Json& property : entry["properties"]) {
        if (property["name"] == name) return property;
    }
    ADD_FAILURE() << name << " is not listed";
    return {};
}

TEST(List, KnownClassesAreDescribedRight) {
    const Json mosaic = classNamed("QVMosaicMTIFilter");
    EXPECT_EQ(mosaic["kind"], "effect");
    EXPECT_EQ(mosaic["superclass"], "QVEffectMTIFilter");
    EXPECT_EQ(mosaic["title"], "Mosaic");
    ASSERT_EQ(mosaic["inputs"].size(), 1u);
    EXPECT_EQ(mosaic["inputs"][0]["name"], "inputImage");
    EXPECT_EQ(mosaic["inputs"][0]["required"], true);
    EXPECT_EQ(propertyNamed(mosaic, "factor")["unit"], "pixels at 1080");
    EXPECT_EQ(propertyNamed(mosaic, "effectValue")["driver"], "user");
    EXPECT_EQ(propertyNamed(mosaic, "iTime")["driver"], "host");
    EXPECT_EQ(propertyNamed(classNamed("QVSplitFourFilter"), "effectValue")["driver"], "none");
    EXPECT_EQ(propertyNamed(classNamed("QVFireworkMTIFilter"), "level")["max"], 4);
    EXPECT_EQ(classNamed("QVMirrorMTIFilter")["levelCount"], 3);
    EXPECT_EQ(classNamed("QVScanlineMTIFilter2")["fragmentFunction"], "QVScanlineMTIFilter");
    EXPECT_EQ(classNamed("QVTrembleEffectMTIFilter")["isVideoOnly"], true);
    EXPECT_EQ(classNamed("QVHueMTIFilter")["kind"], "auxiliary");
    const Json interlayer = classNamed("QVInterlayerFilter")["inputs"];
    ASSERT_EQ(interlayer.size(), 3u);
    EXPECT_EQ(interlayer[1]["role"], "mask");
    EXPECT_EQ(interlayer[2]["role"], "layer");
    EXPECT_EQ(interlayer[2]["required"], false);
    EXPECT_EQ(propertyNamed(classNamed("QVWhiteCoverPEMTIFilter"), "coverCol")["default"], "#ffffff");
    EXPECT_EQ(qvfilterJSON({"show", "QVMosaicMTIFilter", "--json"}), mosaic);
}

TEST(List, ReadsWellAndFilters) {
    const Outcome table = qvfilter({"list", "mosaic"});
    EXPECT_EQ(table.exitCode, 0);
    EXPECT_THAT(table.output, HasSubstr("QVCircleMosaicMTIFilter"));
    EXPECT_EQ(table.output.find("QVMirror"), std::string::npos);
    EXPECT_EQ(qvfilterJSON({"list", "--json", "QVSplit*Filter"}).size(),
              qvfilterJSON({"list", "--json", "QVSPLIT*FILTER"}).size());
    EXPECT_THAT(qvfilter({"show", "QVMirrorMTIFilter"}).output, HasSubstr("levels          3"));
}

TEST(List, FindsWhatADesignerLooksFor) {
    const auto found = [](const Arguments& arguments) {
        Arguments all{"list", "--json"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        std::set<std::string> names;
        for (const Json& entry : qvfilterJSON(all)) names.insert(entry["name"]);
        return names;
    };
    for (auto [words, name] : {std::pair{"vhs", "QVScanlineMTIFilter"},
                               {"Chromatic", "QVRGBMTIFilter"},
                               {"ken burns", "QVSlowZoomInEffectMTIFilter"},
                               {"light leak", "QVColorFlashTransitionMTIFilter"},
                               {"leak light", "QVColorFlashTransitionMTIFilter"}}) {
        EXPECT_TRUE(found({"--search", words}).contains(name)) << words;
    }
    const auto all = found({}), transitions = found({"--kind", "transition"});
    EXPECT_LT(found({"--search", "blur"}).size(), all.size() / 2);
    EXPECT_EQ(found({"--category", "transition", "--kind", "transition"}), transitions);
    EXPECT_TRUE(transitions.contains("QVWaveTransitionMTIFilter"));
    EXPECT_FALSE(transitions.contains("QVFilmTransitionRotationBlurFilter"));
    EXPECT_EQ(found({"--kind", "effect", "--search", "ripple", "wave"}).count("QVWaveMTIFilter"), 1u);
    EXPECT_EQ(qvfilter({"list", "--category", "mosiac"}).exitCode, 2);
}

TEST(Show, TakesShortNames) {
    for (auto [text, name] : {std::pair{"snow", "QVSnowMTIFilter"},
                              {"QVSnow", "QVSnowMTIFilter"},
                              {"slow zoom in", "QVSlowZoomInEffectMTIFilter"},
                              {"wave-transition", "QVWaveTransitionMTIFilter"},
                              {"scanline2", "QVScanlineMTIFilter2"},
                              {"SPLITDIRECTION", "QVSplitDirectionFilte"}}) {
        EXPECT_EQ(qvfilterJSON({"show", text, "--json"})["name"], name) << text;
    }
    const Outcome two = qvfilter({"show", "wave"});
    EXPECT_EQ(two.exitCode, 2);
    EXPECT_THAT(two.errors, HasSubstr("'wave' may be QVWaveMTIFilter or QVWaveTransitionMTIFilter"));
}

Json graphNode(const Arguments& arguments) {
    Arguments all{"graph"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    all.push_back("--json");
    const Json graph = qvfilterJSON(all);
    return graph["nodes"][graph["output"].get<std::size_t>()];
}

TEST(Graph, NumbersAreWhatTheShaderReceives) {
    // Horizontal offset of the last third: 0.049 · 3 · (1 − 2/3) + 0.001, narrowed; the time as a float.
    const Json rgb = graphNode({"QVRGBMTIFilter", "--time", "1.3", "--set", "effectValue=1"})["parameters"];
    std::vector<std::string> names;
    for (const auto& [name, value] : rgb.items()) names.push_back(name);
    EXPECT_THAT(names, ElementsAre("iTime", "level", "effectValue", "isPhoto", "xOff"));
    EXPECT_EQ(rgb["iTime"].get<double>(), double(1.3f));
    EXPECT_EQ(rgb["level"].dump(), "2");
    EXPECT_EQ(rgb["isPhoto"].dump(), "false");
    EXPECT_NEAR(rgb["xOff"].get<double>(), 0.05, 1e-7);
    EXPECT_EQ(rgb["xOff"].get<double>(), double(rgb["xOff"].get<float>()));
}

TEST(Graph, SettingsApplyInOrderOverTheDefaultStrength) {
    const auto factor = [](const Arguments& settings) {
        Arguments arguments{"QVMosaicMTIFilter"};
        for (const std::string& setting : settings) arguments.insert(arguments.end(), {"--set", setting});
        return graphNode(arguments)["parameters"]["factor"].get<double>();
    };
    EXPECT_EQ(factor({"effectValue=0"}), 100);
    EXPECT_EQ(factor({"effectValue=0", "effectValue=1"}), 16);
    EXPECT_EQ(factor({"effectValue=1", "factor=30"}), 30);
    EXPECT_EQ(factor({"factor=30", "effectValue=1"}), 16);
    EXPECT_EQ(graphNode({"QVMosaicMTIFilter:factor=40"})["parameters"]["factor"], 40.0);
    EXPECT_EQ(graphNode({"QVMirrorMTIFilter", "--set", "level=fifths"})["parameters"]["factor"], 5.0);
}

TEST(Graph, LinesShowTheirCurves) {
    // The mask is white: its outline is the frame's.
    const Json graph =
        qvfilterJSON({"graph", "QVAIHUEHaloFilter:colors=#ff8000", "--size", "320x200", "--json"});
    const auto& nodes = graph["nodes"];
    const auto lines = std::ranges::find(nodes, "lines", [](const Json& node) { return node["kind"]; });
    ASSERT_NE(lines, nodes.end());
    EXPECT_EQ((*lines)["size"], (Json{320, 200}));
    EXPECT_EQ((*lines)["pointSize"], (Json{320.0, 200.0}));
    EXPECT_EQ((*lines)["thickness"], double(320 * 0.08f));
    EXPECT_EQ((*lines)["stops"][0],
              (Json{{"color", {1.0, double(float(128 / 255.0)), 0.0, 1.0}}, {"t", 0.0}}));
    EXPECT_EQ((*lines)["stops"][1]["t"], 1.0);
    ASSERT_EQ((*lines)["contours"].size(), 1u);
    for (const Json& point : (*lines)["contours"][0]) EXPECT_EQ(point.size(), 2u);
    const auto& curves = (*lines)["segments"];
    ASSERT_GE(curves.size(), (*lines)["contours"][0].size());
    for (std::size_t i = 0; i < curves.size(); ++i) {
        ASSERT_EQ(curves[i].size(), 6u);
        const Json& next = curves[(i + 1) % curves.size()];
        EXPECT_EQ(curves[i][2], next[0]);
        EXPECT_EQ(curves[i][3], next[1]);
    }
}

TEST(Graph, CompositesShowTheirStockFilters) {
    const Json graph = qvfilterJSON({"graph", "QVInterlayerFilter", "--size", "320x200", "--json"});
    std::set<std::string> kinds;
    for (std::size_t i = 0; i < graph["nodes"].size(); ++i) {
        const Json& node = graph["nodes"][i];
        EXPECT_EQ(node["id"], i);
        for (const Json& input : node["inputs"])
            EXPECT_LT(input.get<std::size_t>(), i) << "inputs come first";
        kinds.insert(node["kind"]);
        if (node["kind"] == "blend") {
            EXPECT_EQ(node["settings"]["mode"], "Normal");
        }
        if (node["kind"] == "blendWithMask") {
            EXPECT_EQ(node["settings"]["component"], "red");
        }
    }
    EXPECT_THAT(kinds, ElementsAre("blend", "blendWithMask", "input"));

    const Json sharpened = qvfilterJSON({"graph", "QVUnSharpMaskMTIFilter", "--json"});
    EXPECT_EQ(sharpened["nodes"][1]["kind"], "gaussianBlur");
    EXPECT_GT(sharpened["nodes"][1]["parameters"]["radius"].get<double>(), 0);
}

TEST(Graph, NamesAssetsAndShowsTransforms) {
    // A third of the way the picture stands enlarged by half about its middle, under four brackets.
    const Json graph = qvfilterJSON({"graph", "QVCameraRECFilter", "--time", "0.3", "--json"});
    std::vector<std::string> drawn;
    Json moved;
    for (const Json& node : graph["nodes"]) {
        if (node["kind"] == "bitmap") drawn.push_back(node.value("name", "none"));
        if (node["kind"] == "transform") moved = node["settings"]["transform"];
    }
    EXPECT_THAT(drawn, ElementsAre("camera_rec_conner1.png", "none")) << "the caption is drawn of no asset";
    EXPECT_EQ(moved, (Json{1.5, 0.0, 0.0, 1.5, 0.0, 0.0}));
}

TEST(Graph, NeedsNoDeviceAndDrawsForDot) {
    const Outcome listing = run({"env", "VK_ICD_FILENAMES=/nonexistent", "VK_DRIVER_FILES=/nonexistent",
                                 QV_TOOL, "graph", "QVMosaicMTIFilter"});
    EXPECT_EQ(listing.exitCode, 0);
    EXPECT_THAT(listing.output, HasSubstr("factor=58"));
    const Outcome dot = qvfilter({"graph", "QVInterlayerFilter", "--dot"});
    EXPECT_THAT(dot.output, testing::StartsWith("digraph \"QVInterlayerFilter\" {"));
    EXPECT_THAT(dot.output, HasSubstr("n0 -> n2"));
}

TEST(Graph, PlanShowsWhatIsJoinedAndWhyTheRestIsNot) {
    const Json layer = qvfilterJSON({"graph", "QVInterlayerFilter", "--plan", "--size", "64x36", "--json"});
    ASSERT_EQ(layer["passes"].size(), 1u);
    EXPECT_EQ(layer["plainPasses"], 2);
    EXPECT_EQ(layer["kept"], Json::array());
    const Json& pass = layer["passes"][0];
    EXPECT_EQ(pass["functions"][0]["name"], "MTIBlendNormal");
    EXPECT_EQ(pass["functions"][0]["uniforms"], Json({{"intensity", 1.0}}));
    EXPECT_EQ(pass["functions"][1]["selectors"], Json({{"component", 0}, {"inverted", 0}}));
    EXPECT_EQ(pass["inputs"][2]["source"], "maskImage");
    EXPECT_EQ(pass["words"], 2 + 1);
    EXPECT_EQ(layer["peakTextureBytes"], 4 * 64 * 36 * 4);  // three pictures and the result

    const Json sharp = qvfilterJSON({"graph", "QVUnSharpMaskMTIFilter", "--plan", "--gpu", "--json"});
    ASSERT_EQ(sharp["passes"].size(), 3u);
    EXPECT_EQ(sharp["passes"][0]["functions"][0]["name"], "MTIYUVToRGB");
    EXPECT_THAT(sharp["kept"].dump(), HasSubstr("several passes read it"));

    const std::string text = qvfilter({"graph", "QVInterlayerFilter", "--plan"}).output;
    EXPECT_THAT(text, HasSubstr("1 passes instead of 2"));
    EXPECT_THAT(qvfilter({"graph", "QVInterlayerFilter", "--plan", "--dot"}).output,
                HasSubstr("MTIBlendNormal\\nMTIBlendWithMask"));
}

TEST(Bench, MeasuresAgainstACopy) {
    const Json bench = qvfilterJSON({"bench", "QVBlackWhiteMTIFilter", "QVInterlayerFilter", "--compare",
                                     "--size", "1280x720", "--rounds", "3", "--json"});
    ASSERT_EQ(bench["classes"].size(), 2u);
    const Json &simple = bench["classes"][0], &layered = bench["classes"][1];
    EXPECT_EQ(simple["passes"], 1);
    EXPECT_EQ(simple["bytesRead"], 1280 * 720 * 4);
    EXPECT_EQ(simple["bytesWritten"], 1280 * 720 * 4);
    EXPECT_EQ(layered["passes"], 1);
    EXPECT_EQ(layered["plain"]["passes"], 2);
    for (const Json& entry : bench["classes"]) {
        const double median = entry["medianMilliseconds"], copy = entry["copyMedianMilliseconds"];
        EXPECT_GT(entry["minimumMilliseconds"].get<double>(), 0);
        EXPECT_GE(median, entry["minimumMilliseconds"].get<double>());
        EXPECT_NEAR(entry["ratio"].get<double>(), median / copy, 0.02 * median / copy + 0.01);
    }

    const Json against = qvfilterJSON({"bench", "QVBlackWhiteMTIFilter", "--device", "vulkan", "--no-fusion",
                                       "--against", "vulkan", "--size", "32x18", "--rounds", "3", "--json"});
    ASSERT_EQ(against["classes"].size(), 2u);
    EXPECT_EQ(against["classes"][0]["name"], "copy");
    EXPECT_EQ(against["against"], against["device"]);
    for (const Json& entry : against["classes"]) {
        EXPECT_EQ(entry["against"]["passes"], 1);
        EXPECT_GT(entry["processorMilliseconds"].get<double>(), 0);
    }
}

}  // namespace
}  // namespace qv
