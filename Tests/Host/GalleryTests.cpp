// gallery: the page, its data and its files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <thread>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// A few effects and a transition, with levels, selectors and noise among them.
constexpr const char* kSome = "QVS[pcn][lao]*";
constexpr const char* kSize = "160x90";
/// 60 kB for 320x180, and a quarter of it for a quarter of the pixels.
constexpr int kMostBytes = 60000 / 4;

/// What gallery.js assigns.
Json dataOf(const std::string& folder) {
    const std::string script = readBytes(folder + "/gallery.js");
    const std::string head = "window.qvGallery = ";
    EXPECT_TRUE(script.starts_with(head) && script.ends_with(";\n"));
    return Json::parse(script.substr(head.size(), script.size() - head.size() - 2), nullptr, false);
}

/// When each finished card was written.
std::map<std::string, fs::file_time_type> cardsIn(const std::string& folder) {
    std::map<std::string, fs::file_time_type> cards;
    if (!fs::exists(folder + "/cards")) return cards;
    for (const auto& entry : fs::directory_iterator(folder + "/cards")) {
        if (fs::exists(entry.path() / "card.json"))
            cards[entry.path().filename()] = fs::last_write_time(entry.path() / "card.json");
    }
    return cards;
}

/// One gallery that several tests look at.
class Gallery : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        files_ = new TemporaryFolder;
        folder_ = *files_ / "gallery";
        outcome_ = qvfilter({"gallery", "-o", folder_, "--only", kSome, "--size", kSize, "--sheet"});
        if (outcome_.exitCode == 0) data_ = dataOf(folder_);
    }
    static void TearDownTestSuite() {
        delete files_;
        data_ = {};
    }
    void SetUp() override {
        ASSERT_EQ(outcome_.exitCode, 0) << outcome_.errors;
        ASSERT_TRUE(data_.is_object());
    }

    static std::string fileOf(const Json& entry, const Json& file) {
        return folder_ + "/cards/" + entry["name"].get<std::string>() + "/" + file.get<std::string>();
    }

    static inline TemporaryFolder* files_;
    static inline std::string folder_;
    static inline Outcome outcome_;
    static inline Json data_;
};

TEST_F(Gallery, PreviewsAreShortSmallAndOfTheirSize) {
    EXPECT_EQ(outcome_.output + outcome_.errors, "");
    EXPECT_EQ(data_["cards"].size(), qvfilterJSON({"list", "--json", kSome}).size());
    for (const Json& entry : data_["cards"]) {
        const std::string file = fileOf(entry, entry["card"]["preview"]["file"]);
        const Json video = probe(file, "v:0");
        SCOPED_TRACE(file);
        EXPECT_EQ(video["codec_name"], "h264");
        EXPECT_EQ(video["pix_fmt"], "yuv420p");
        EXPECT_EQ(video["width"], 160);
        EXPECT_EQ(video["height"], 90);
        EXPECT_NEAR(std::stod(video["duration"].get<std::string>()), 3, 0.01);
        EXPECT_LT(fs::file_size(file), kMostBytes);
        EXPECT_EQ(fs::file_size(file), entry["card"]["preview"]["bytes"]);
    }
}

TEST_F(Gallery, PicturesShowTheEffectItsSourceAndEveryChoice) {
    for (const Json& entry : data_["cards"]) {
        const Json& card = entry["card"];
        SCOPED_TRACE(entry["name"]);
        EXPECT_GT(
            rmsDifference(rgbFrame(fileOf(entry, card["after"])), rgbFrame(fileOf(entry, card["before"]))),
            3);
        EXPECT_EQ(card.contains("incoming"), entry["kind"] == "transition");
        std::vector<std::string> labels, expected;
        for (const Json& still : card["stills"]) {
            labels.push_back(still["label"]);
            EXPECT_EQ(probe(fileOf(entry, still["file"]), "v:0")["codec_name"], "mjpeg");
        }
        for (const Json& property : entry["properties"]) {
            for (const Json& name : property.value("variants", Json::array())) expected.push_back(name);
        }
        EXPECT_EQ(labels, expected);
        EXPECT_GT(card["cost"]["copies"], 0.1);
        EXPECT_GE(card["cost"]["passes"], 1);
    }
}

TEST_F(Gallery, ThePageNeedsNothingFromOutside) {
    int texts = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
        const std::string extension = entry.path().extension();
        if (entry.is_directory()) continue;
        const bool isText = extension != ".jpg" && extension != ".mp4" && extension != ".png";
        texts += isText;
        const std::string bytes = readBytes(entry.path());
        EXPECT_EQ(bytes.find("http://"), std::string::npos) << entry.path();
        EXPECT_EQ(bytes.find("https://"), std::string::npos) << entry.path();
    }
    EXPECT_GE(texts, 4);
    EXPECT_EQ(probe(folder_ + "/source.mp4", "v:0")["codec_name"], "h264");
    EXPECT_GT(probe(folder_ + "/sheet.png", "v:0")["width"], 300);
    EXPECT_GT(probe(folder_ + "/sheet-transitions.png", "v:0")["width"], 300);
}

TEST_F(Gallery, WhatIsCopiedWorks) {
    TemporaryFolder work;
    for (const char* clip : {"clip", "first", "second", "mask"})
        makeClip(work / (std::string(clip) + ".mp4"), "testsrc2=s=64x36:r=10:d=2", {});
    std::string source = "#include <string>\n";
    const auto use = [&](const Json& entry, const Json& texts) {
        std::string command = texts["command"];
        ASSERT_TRUE(command.starts_with("qvfilter ")) << command;
        command.replace(0, 8, QV_TOOL);
        const std::string place = fs::path(work / "x").parent_path();
        const Outcome ran = run({"sh", "-c", "cd " + place + " && " + command + " -y"});
        EXPECT_EQ(ran.exitCode, 0) << command << ": " << ran.errors;
        // Includes stay outside the function that stands for a host's frame.
        const std::string snippet = texts["snippet"];
        const std::size_t body = snippet.find("\n\n");
        source += snippet.substr(0, body) + "\nqv::MTIImage f" + std::to_string(source.size()) +
                  "(qv::MTIImage frame, qv::MTIImage outgoing, qv::MTIImage incoming, qv::MTIImage mask,"
                  " qv::PixelBuffer maskPixels, double seconds, double clipSeconds, float progress) {" +
                  snippet.substr(body) + "return output; }\n";
        EXPECT_THAT(snippet, HasSubstr('"' + entry["name"].get<std::string>() + '"'));
    };
    for (const Json& entry : data_["cards"]) {
        const Json& stills = entry["card"]["stills"];
        use(entry, stills.empty() ? entry["card"] : stills.back());
    }
    writeBytes(work / "snippets.cpp", source);
    const Outcome compiled =
        run({"c++", "-std=c++20", "-fsyntax-only", "-I", QV_SOURCE_ROOT, work / "snippets.cpp"});
    EXPECT_EQ(compiled.exitCode, 0) << compiled.errors;
}

TEST(GalleryRun, GoesOnWhereItWasAndRedoesWhatChanged) {
    TemporaryFolder files;
    const std::string folder = files / "gallery", input = files / "input.png";
    makeClip(input, "testsrc2=s=160x90", {"-frames:v", "1"});
    const Arguments command{"gallery", "-o", folder, "--only", "*Split*", "--size", "64x36", "-i", input};
    {
        Arguments killed = command;
        killed.insert(killed.begin(), QV_TOOL);
        Process process(killed);
        for (int i = 0; i < 1200 && cardsIn(folder).size() < 2; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        process.signal(SIGKILL);
        process.wait();
    }
    const auto before = cardsIn(folder);
    const std::size_t wanted = qvfilterJSON({"list", "--json", "*Split*"}).size();
    ASSERT_GE(before.size(), 2u);
    ASSERT_LT(before.size(), wanted);
    fs::create_directory(folder + "/cards/QVSplitFourFilter.unfinished");

    ASSERT_EQ(qvfilter(command).exitCode, 0);
    const auto finished = cardsIn(folder);
    EXPECT_EQ(finished.size(), wanted);
    for (const auto& [name, time] : before) EXPECT_EQ(finished.at(name), time) << name;
    EXPECT_EQ(dataOf(folder)["cards"].size(), wanted);
    EXPECT_FALSE(fs::exists(folder + "/cards/QVSplitFourFilter.unfinished"));

    ASSERT_EQ(qvfilter(command).exitCode, 0);
    EXPECT_EQ(cardsIn(folder), finished);
    makeClip(input, "testsrc2=s=162x90", {"-frames:v", "1"});
    ASSERT_EQ(qvfilter(command).exitCode, 0);
    for (const auto& [name, time] : cardsIn(folder)) EXPECT_GT(time, finished.at(name)) << name;
}

TEST(GalleryRun, AnInterruptLeavesAPageOfWhatIsFinished) {
    TemporaryFolder files;
    const std::string folder = files / "gallery";
    Process process({QV_TOOL, "gallery", "-o", folder, "--size", "64x36"});
    for (int i = 0; i < 1200 && cardsIn(folder).empty(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    process.signal(SIGINT);
    const Outcome outcome = process.wait();
    EXPECT_EQ(outcome.exitCode, 130);
    EXPECT_EQ(outcome.errors, "qvfilter: interrupted\n");
    EXPECT_EQ(dataOf(folder)["cards"].size(), cardsIn(folder).size());
    for (const auto& entry : fs::directory_iterator(folder + "/cards"))
        EXPECT_NE(entry.path().extension(), ".unfinished");
}

TEST(GalleryRun, BadInputIsOneLine) {
    TemporaryFolder files;
    const std::string folder = files / "gallery", text = files / "text.mp4";
    writeBytes(text, "no clip");
    fs::create_directory(files / "site");
    fs::create_directories(files / "taken/index.html");
    writeBytes(files / "site/index.html", "<p>somebody's</p>");
    struct {
        Arguments options;
        int exitCode;
        const char* cause;
    } const kCases[] = {
        {{"-o", "/dev/null/gallery"}, 5, "Not a directory"},
        {{"-o", text}, 5, "Not a directory"},
        {{"-o", files / "site"}, 5, "exists"},
        {{"-o", files / "taken"}, 5, "index.html': Is a directory"},
        {{"-o", folder, "--only", "QVMosaicFilter"}, 2, "QVMosaicMTIFilter"},
        {{"-o", folder, "--size", "321x180"}, 2, "even"},
        {{"-o", folder, "--size", "4000x2000"}, 2, "1280"},
        {{"-o", folder, "--size", "0x0"}, 2, "--size"},
        {{"-o", folder, "--mask", text}, 2, "--mask"},
        {{"-o", folder, "-i", text, "-i", text, "-i", text}, 2, "3"},
        {{"-o", folder, "-i", files / "missing.mp4"}, 3, "No such file"},
        {{"-o", folder, "-i", text}, 3, "text.mp4"},
    };
    for (const auto& [options, exitCode, cause] : kCases) {
        Arguments arguments{"gallery"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        expectFailure(arguments, exitCode, cause);
    }
    EXPECT_EQ(readBytes(files / "site/index.html"), "<p>somebody's</p>");
}

}  // namespace
}  // namespace qv
