// A film in parts: edit --split and --span, join and farm-status. Judged by FFmpeg's programs, beside the
// same film rendered in one piece.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "Tests/Host/Tool.h"

#include <fmt/format.h>

namespace qv {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

/// Every pixel as it was rendered, so that what is decoded tells what was encoded.
const Arguments kLossless{"--crf", "0", "--preset", "ultrafast", "--quiet"};

class Farm : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        files_ = new TemporaryFolder;
        clip("a.mp4", "testsrc2=s=160x90:r=25:d=4", 500);
        clip("b.mp4", "mandelbrot=s=120x160:r=30000/1001,trim=duration=3", 2000);
        ffmpeg({"-f", "lavfi", "-i", "sine=1500:r=48000:d=9", path("music.wav")});
        ffmpeg({"-f", "lavfi", "-i", "testsrc2=s=90x90:r=1:d=1", "-frames:v", "1", path("p.png")});
        // The second part of three begins within the transition from 3 s to 4 s.
        write("film.json", R"({"clips": [
            {"file": "a.mp4", "effects": ["snow@1-3:effectValue=0@0,1@0.5"]},
            {"file": "b.mp4", "transition": {"class": "wave", "duration": 1}, "effects": ["${look}"]},
            {"file": "p.png", "duration": 2, "transition": {"class": "QVSmoothZoomTransitionMTIFilter", "duration": 0.5}}],
            "values": {"look": "mosaic:effectValue=0.1@0,0.9@2"},
            "effects": [{"class": "QVNoiseMTIFilter"}],
            "sound": {"file": "music.wav", "offset": 1, "fadeIn": 0.5}})");
    }
    static void TearDownTestSuite() { delete files_; }

    static std::string path(const std::string& name) { return *files_ / name; }
    static void write(const std::string& name, const std::string& text) { writeBytes(path(name), text); }
    static void clip(const std::string& name, const std::string& picture, int pitch) {
        ffmpeg({"-f",        "lavfi",     "-i",           picture,
                "-f",        "lavfi",     "-i",           fmt::format("sine={}:r=48000:d=4", pitch),
                "-c:v",      "libx264",   "-g",           "30",
                "-bf",       "2",         "-pix_fmt",     "yuv420p",
                "-shortest", "-metadata", "title=A film", path(name)});
    }
    static Outcome expectDone(Arguments arguments) {
        const Outcome outcome = qvfilter(std::move(arguments));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        return outcome;
    }
    static Json split(const std::string& project, int parts, const std::string& folder,
                      Arguments more = kLossless) {
        more.insert(more.begin(), {"edit", path(project), "--split", std::to_string(parts), "-o", folder});
        expectDone(more);
        return Json::parse(readBytes(folder + "/plan.json"));
    }
    static Arguments span(const std::string& project, int part, const std::string& folder) {
        return {"edit", path(project), "--span", std::to_string(part), "-o", folder, "--quiet"};
    }
    static std::string partOf(const Json& plan, std::size_t part, const std::string& folder) {
        return folder + "/" + plan["parts"][part]["file"].get<std::string>();
    }
    /// Times and hashes of a stream's decoded frames, or of its sound sample by sample.
    static std::string decoded(const std::string& file, const std::string& stream) {
        const char* format = stream == "v" ? "framehash" : "hash";
        return run({"ffmpeg", "-v", "error", "-i", file, "-map", "0:" + stream + "?", "-fps_mode",
                    "passthrough", "-c:a", "pcm_f32le", "-f", format, "-"})
            .output;
    }
    /// What a file says about itself, but for how large it is.
    static Json described(const std::string& file) {
        Json json = Json::parse(run({"ffprobe", "-v", "error", "-show_streams", "-show_format",
                                     "-show_chapters", "-of", "json", file})
                                    .output);
        for (Json& stream : json["streams"]) stream.erase("bit_rate");
        for (const char* own : {"filename", "size", "bit_rate"}) json["format"].erase(own);
        return json;
    }

    static inline TemporaryFolder* files_ = nullptr;
};

TEST_F(Farm, PartsJoinedAreTheWhole) {
    write("pictures.json", R"({"size": "96x64", "clips": [{"file": "p.png", "duration": 1.5},
        {"color": "#2080c0", "transition": "wave"}], "sound": {"file": "music.wav", "from": 1, "fadeOut": 1}})");
    write("mute.json", R"({"clipSound": false, "clips": [{"file": "b.mp4", "from": 0.5},
        {"file": "a.mp4", "from": "10f", "transition": "wave"}]})");
    write("one.json", R"({"clips": [{"file": "a.mp4", "effects": ["snow"]}]})");
    // Each part of it begins at a key frame of fields, which are made whole with the frame before.
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=s=160x96:r=50:d=4", "-vf", "interlace", "-c:v", "libx264",
            "-flags", "+ildct+ilme", "-g", "25", "-sc_threshold", "0", path("interlaced.mp4")});
    write("fields.json", R"({"clips": [{"file": "interlaced.mp4", "effects": ["snow"]}]})");
    struct Case {
        const char *project, *output;
        int parts;
        Arguments options;
    };
    const Case cases[] = {
        {"film.json", "own-times.mp4", 5, {}},
        {"film.json", "rate.mkv", 3, {"-f", "matroska", "--fps", "30000/1001", "--set", "look=rgb"}},
        {"film.json",
         "faststart.mov",
         4,
         {"-f", "mov", "--option", "movflags=+faststart", "--audio-codec", "aac"}},
        {"pictures.json", "pictures.mp4", 4, {"--option", "bf=0"}},
        {"mute.json", "mute.mp4", 5, {}},
        {"one.json", "one.mp4", 3, {}},
        {"fields.json", "fields.mp4", 4, {}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.output);
        const std::string folder = path(std::string(each.output) + ".parts");
        const std::string whole = path(std::string("whole-") + each.output), joined = path(each.output);
        Arguments options = kLossless;
        options.insert(options.end(), each.options.begin(), each.options.end());
        const Json plan = split(each.project, each.parts, folder, options);
        for (int part = int(plan["parts"].size()); part-- > 0;) expectDone(span(each.project, part, folder));
        expectDone({"join", folder, "-o", joined, "--quiet"});
        options.insert(options.begin(), {"edit", path(each.project), "-o", whole});
        expectDone(options);

        EXPECT_EQ(decoded(joined, "v"), decoded(whole, "v"));
        EXPECT_EQ(decoded(joined, "a"), decoded(whole, "a"));
        EXPECT_EQ(described(joined), described(whole));
        // A player that seeks to a border shows the frame behind it.
        const Json video = probe(joined, "v:0");
        const std::vector<std::int64_t> times = frameTimes(joined);
        const double unit = 1 / std::stod(video["time_base"].get<std::string>().substr(2));
        for (int part = 1; part < each.parts; ++part) {
            const int start = plan["parts"][std::size_t(part)]["start"];
            const std::string seconds =
                fmt::format("{:.6f}", double(times[std::size_t(start)]) * unit - 1e-3);
            const std::string shown = run({"ffmpeg", "-v", "error", "-ss", seconds, "-i", joined, "-frames:v",
                                           "1", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"})
                                          .output;
            EXPECT_EQ(rmsDifference(shown, rgbFrame(whole, start)), 0) << part;
        }
    }
}

TEST_F(Farm, JoinNamesThePartThatDoesNotFit) {
    const std::string folder = path("refused");
    const Json plan = split("film.json", 3, folder);
    ASSERT_EQ(plan["parts"].size(), 4u);
    const auto refused = [&](const std::string& cause, Arguments more = {}) {
        Arguments arguments{"join", folder, "-o", "OUT/x.mp4"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        expectFailure(arguments, 3, cause);
    };
    for (const int part : {0, 2, 3}) expectDone(span("film.json", part, folder));
    refused("part 1 (part_001.mkv) is missing");
    expectDone(span("film.json", 1, folder));

    const std::string second = partOf(plan, 1, folder), sound = partOf(plan, 3, folder);
    const std::string bytes = readBytes(second);
    writeBytes(second, bytes.substr(0, bytes.size() / 2));
    refused("part 1 (part_001.mkv) is damaged or cut off");
    fs::copy_file(partOf(plan, 2, folder), second, fs::copy_options::overwrite_existing);
    refused("part 1 (part_001.mkv) is damaged or cut off");
    writeBytes(second, bytes);
    const std::string soundBytes = readBytes(sound);
    writeBytes(sound, soundBytes.substr(0, 100));
    refused("part 3 (sound.mp4, the sound) is damaged");
    writeBytes(sound, soundBytes);

    const std::string other = path("other");
    split("film.json", 3, other, {"--crf", "30", "--quiet"});
    expectDone(span("film.json", 1, other));
    for (const char* name : {"/part_001.mkv", "/part_001.json"})
        fs::copy_file(other + name, folder + name, fs::copy_options::overwrite_existing);
    refused("part 1 (part_001.mkv) was encoded with other settings");
    expectFailure({"edit", path("film.json"), "--split", "4", "-o", other}, 5, "plan.json' exists");
    Arguments replacing = kLossless;
    replacing.push_back("-y");
    split("film.json", 4, other, replacing);
    expectDone(span("film.json", 1, other));
    for (const char* name : {"/part_001.mkv", "/part_001.json"})
        fs::copy_file(other + name, folder + name, fs::copy_options::overwrite_existing);
    refused("part 1 (part_001.mkv) belongs to another plan");
    expectDone(span("film.json", 1, folder));
    expectDone({"join", folder, "-o", path("mended.mp4"), "--quiet"});
    Json record = Json::parse(readBytes(folder + "/part_001.json"));
    record["device"] = "a GPU";
    writeBytes(folder + "/part_001.json", record.dump());
    EXPECT_THAT(expectDone({"join", folder, "-o", path("mixed.mp4")}).errors,
                HasSubstr("part 1 (part_001.mkv) was drawn by a GPU, part 0 (part_000.mkv) by "));

    // A copy of everything somewhere else is the same project; one whose clip was changed is not.
    const TemporaryFolder elsewhere;
    for (const char* name : {"film.json", "a.mp4", "b.mp4", "p.png", "music.wav"})
        fs::copy_file(path(name), elsewhere / name);
    expectDone({"join", folder, "-o", path("copy.mp4"), "--quiet", "--project", elsewhere / "film.json"});
    std::string clip = readBytes(elsewhere / "a.mp4");
    clip[clip.size() / 2] ^= 1;
    writeBytes(elsewhere / "a.mp4", clip);
    refused("is not what part 0 (part_000.mkv) and the others were made of",
            {"--project", elsewhere / "film.json"});
    expectFailure({"edit", elsewhere / "film.json", "--span", "0", "--plan", folder + "/plan.json", "-o",
                   "OUT/part_000.mkv"},
                  3, "is not what the plan was made of");
}

TEST_F(Farm, WhatCannotBeSplitIsRefused) {
    const std::string folder = path("usage");
    split("film.json", 2, folder);
    const auto refused = [&](Arguments more, int code, const std::string& cause) {
        more.insert(more.begin(), {"edit", path("film.json")});
        expectFailure(more, code, cause);
    };
    refused({"--span", "0", "-o", folder, "--crf", "20"}, 2, "--crf is not for a part");
    refused({"--span", "0", "-o", folder, "--set", "look=snow"}, 2, "--set is not for a part");
    refused({"--span", "3", "-o", folder}, 2, "the parts 0 to 2, not 3");
    refused({"--span", "1", "-o", folder + "/part_000.mkv"}, 2, "part 1 is called 'part_001.mkv'");
    refused({"--span", "1", "-o", "OUT/part_001.mkv"}, 3, "there is no plan");
    refused({"--split", "2", "-o", folder, "-f", "gif"}, 2, "a film in parts is mp4, mov, matroska or webm");
    refused({"--split", "100000", "-o", folder}, 2, "for 100000 parts");
    refused({"--split", "2", "-o", folder, "--option", "nonsense=1"}, 5, "nonsense");
}

TEST_F(Farm, InterruptedPartsBeginAgainAndNothingIsRenderedTwice) {
    const std::string folder = path("again");
    const Json plan = split("film.json", 3, folder);
    const auto status = [&] { return Json::parse(qvfilter({"farm-status", folder, "--json"}).output); };
    EXPECT_EQ(status()["waiting"], 4);

    const std::string first = partOf(plan, 0, folder);
    Arguments limited = span("film.json", 0, folder);
    limited.insert(limited.begin(), {"prlimit", "--fsize=20000", QV_TOOL});
    const Outcome full = run(limited);
    EXPECT_EQ(full.exitCode, 5);
    EXPECT_THAT(full.errors, HasSubstr("File too large"));
    EXPECT_FALSE(fs::exists(first));
    EXPECT_EQ(status()["parts"][0]["state"], "failed");
    EXPECT_THAT(status()["parts"][0]["failure"].get<std::string>(), HasSubstr("File too large"));

    Arguments killed = span("film.json", 0, folder);
    killed.insert(killed.begin(), QV_TOOL);
    killed.back() = "--progress";
    {
        Process process(killed);
        EXPECT_TRUE(process.waitForErrors("progress=continue"));
        process.signal(SIGKILL);
        EXPECT_EQ(process.wait().exitCode, -1);
    }
    EXPECT_FALSE(fs::exists(first));
    EXPECT_EQ(status()["parts"][0]["state"], "running") << "so it seems, for a while";
    fs::last_write_time(folder + "/part_000.progress",
                        fs::file_time_type::clock::now() - std::chrono::minutes(5));
    EXPECT_EQ(status()["parts"][0]["state"], "stalled");

    // Two at once, and then one too many.
    {
        Arguments one = span("film.json", 0, folder);
        one.insert(one.begin(), QV_TOOL);
        Process other(one);
        expectDone(span("film.json", 0, folder));
        EXPECT_EQ(other.wait().exitCode, 0);
    }
    for (int part = 1; part < 4; ++part) expectDone(span("film.json", part, folder));
    const auto written = fs::last_write_time(first);
    Arguments again = span("film.json", 0, folder);
    again.back() = "-y";
    EXPECT_THAT(expectDone(again).errors, HasSubstr("part 0 is already there"));
    EXPECT_EQ(fs::last_write_time(first), written);

    const Json done = status();
    EXPECT_EQ(done["done"], 4);
    EXPECT_EQ(done["frames"], done["of"]);
    EXPECT_GE(done["parts"][0]["attempts"], 3);
    EXPECT_EQ(qvfilter({"farm-status", folder}).exitCode, 0);
    for (const auto& file : fs::directory_iterator(folder)) {
        const std::string extension = file.path().extension();
        EXPECT_TRUE(extension == ".mkv" || extension == ".json" || extension == ".mp4" ||
                    file.path().filename() == ".lock")
            << file.path() << " was left";
    }
}

}  // namespace
}  // namespace qv
