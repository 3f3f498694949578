// Every failure: one line that names the cause, its exit code, and nothing left behind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "Tests/Host/Tool.h"

#include <fmt/format.h>

namespace qv {
namespace {

using ::testing::HasSubstr;
namespace fs = std::filesystem;

/// A clip, a picture and damaged files, made once.
class Errors : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        files_ = new TemporaryFolder;
        makeClip(*files_ / "clip.mkv", "testsrc2=s=160x90:r=25:d=1", {"-c:v", "libx264"});
        makeClip(*files_ / "picture.png", "testsrc2=s=160x90:r=1:d=1", {"-frames:v", "1"});
        for (const char* name : {"clip.mkv", "picture.png"}) {
            const std::string whole = readBytes(*files_ / name);
            writeBytes(*files_ / (std::string("cut-") + name), whole.substr(0, whole.size() / 2));
        }
        writeBytes(*files_ / "empty", "");
        writeBytes(*files_ / "noise", std::string(5000, 'q'));
    }
    static void TearDownTestSuite() { delete files_; }

    static std::string path(const std::string& name) { return *files_ / name; }

    static void expectRenderFailure(const std::string& effect, int exitCode, const std::string& cause) {
        expectFailure({"render", "-i", path("clip.mkv"), "-e", effect, "-o", "OUT/x.mp4"}, exitCode, cause);
    }

  private:
    static inline TemporaryFolder* files_ = nullptr;
};

TEST_F(Errors, WrongUsage) {
    expectFailure({}, 2, "subcommand is required");
    expectFailure({"paint"}, 2, "there is no command 'paint'");
    expectFailure({"list", "--frob"}, 2, "--frob");
    expectFailure({"list", "one", "two", "three\nfour"}, 2, "not expected: two three four");
    expectFailure({"list", "--markdown", ""}, 2, "--markdown: the value is empty");
    expectFailure({"sheet", "--time", "", "--device", "", "-o", "OUT/x.png"}, 2, "the value is empty");
    expectFailure({"bench", "--seconds", "nan"}, 2, "--seconds: 'nan' is not a number");
    expectFailure({"render", "-i", path("clip.mkv"), "--crf", "-1", "-o", "OUT/x.mp4"}, 2, "-1 not in range");
    expectFailure({"graph", "QVMosaicMTIFilter", "--size", "12x"}, 2, "WIDTHxHEIGHT");
    expectFailure({"graph", "QVMosaicMTIFilter", "--size", "0x9"}, 2, "'0x9'");
    expectFailure({"graph", "QVMosaicMTIFilter", "--time", "soon"}, 2, "'soon'");
    expectFailure({"graph", "QVMosaicMTIFilter", "--json", "--dot"}, 2, "excludes");
    expectFailure({"show", "QVMosiacMTIFilter"}, 2, "did you mean QVMosaicMTIFilter");
    expectFailure({"still", "-i", path("picture.png"), "-o", "OUT/x.tif"}, 2, ".png or .jpg");
    expectFailure({"render", "-i", path("clip.mkv"), "--crf", "20", "--bitrate", "1M", "-o", "OUT/x.mp4"}, 2,
                  "excludes");
    expectFailure({"render", "-i", path("clip.mkv"), "--bitrate", "fast", "-o", "OUT/x.mp4"}, 2, "'fast'");
}

TEST_F(Errors, EffectsThatDoNotFitTheirClass) {
    expectRenderFailure("QVSwirrlFilter", 2, "did you mean QVSwirlMTIFilter");
    expectRenderFailure("QVMosaicMTIFilter:strength=1", 2, "it has effectValue, iTime");
    expectRenderFailure("QVMosaicMTIFilter:effectValue=1.5", 2, "outside 0 to 1");
    expectRenderFailure("QVMosaicMTIFilter:effectValue=much", 2, "'much'");
    expectRenderFailure("QVMosaicMTIFilter:effectValue=nan", 2, "'nan'");
    expectRenderFailure("QVMosaicMTIFilter:effectValue", 2, "name=value");
    expectRenderFailure("QVMosaicMTIFilter:isPhoto=maybe", 2, "true or false");
    expectRenderFailure("QVMosaicMTIFilter:extractValues=1,,2", 2, "extractValues");
    expectRenderFailure("QVMosaicMTIFilter:extractValues=1\\:2", 2, "'1:2'");
}

TEST_F(Errors, InputsThatCannotBeRead) {
    const std::string folder = fs::path(path("x")).parent_path();
    expectFailure({"render", "-i", path("missing.mp4"), "-o", "OUT/x.mp4"}, 3, "No such file");
    expectFailure({"still", "-i", folder, "-o", "OUT/x.png"}, 3, "directory");
    expectFailure({"still", "-i", path("empty"), "-o", "OUT/x.png"}, 3, "empty");
    expectFailure({"render", "-i", path("noise"), "-o", "OUT/x.mp4"}, 3, "noise");
    expectFailure({"render", "-i", path("cut-clip.mkv"), "-o", "OUT/x.mp4"}, 3, "cut off");
    expectFailure({"still", "-i", path("cut-picture.png"), "-o", "OUT/x.png"}, 3, "cut-picture.png");
    expectFailure({"still", "-i", path("clip.mkv"), "--time", "9", "-o", "OUT/x.png"}, 3, "ends at 1.000 s");
    expectFailure({"render", "-i", path("clip.mkv"), "--mask", path("missing.png"), "-o", "OUT/x.mp4"}, 3,
                  "missing.png");
    expectFailure({"sheet", "--input", path("noise"), "-o", "OUT/x.png"}, 3, "noise");
}

TEST_F(Errors, NoDeviceOrNoWholeBundle) {
    const TemporaryFolder bundles;
    writeBytes(bundles / "default.shaderlib", "damaged");
    const struct {
        Arguments environment;
        int exitCode;
        std::string cause;
    } cases[] = {
        {{"env", "QVFILTER_DEVICE=vulkan", "VK_ICD_FILENAMES=/nonexistent", "VK_DRIVER_FILES=/nonexistent"},
         4,
         "Vulkan"},
        {{"env", "QVFILTER_BUNDLE=" + bundles / ""},
         1,
         "gives no picture (" + bundles / "default.shaderlib: not a shader library)"},
        {{"env", "QVFILTER_BUNDLE=/nonexistent"}, 1, "gives no picture (the resource bundle is missing"},
    };
    const std::string effect = "QVMosaicMTIFilter";
    for (const auto& [environment, exitCode, cause] : cases) {
        for (const Arguments& command :
             {Arguments{"render", "-i", path("clip.mkv"), "-e", effect, "-o", "OUT/x.mp4"},
              Arguments{"still", "-i", path("picture.png"), "-e", effect, "-o", "OUT/x.png"},
              Arguments{"sheet", "--only", effect, "-o", "OUT/x.png"},
              Arguments{"gallery", "--only", effect, "-o", "OUT/folder"},
              Arguments{"bench", effect, "--size", "32x32", "--json"}}) {
            expectFailure(command, exitCode, cause, environment);
        }
    }
    const std::size_t devices = qvfilterJSON({"devices", "--json"}).size();
    const std::string there = devices == 1
                                  ? "there is 1, number 0"
                                  : fmt::format("there are {}, numbers 0 to {}", devices, devices - 1);
    expectFailure({"still", "-i", path("picture.png"), "--device", "99", "-o", "OUT/x.png"}, 4,
                  "there is no device 99; " + there);
    expectFailure({"still", "-i", path("picture.png"), "--device", "-1", "-o", "OUT/x.png"}, 2, "'-1'");
}

TEST_F(Errors, StreamsThatTakeNothing) {
    const TemporaryFolder outputs;
    const std::string clip = outputs / "x.mkv";
    const auto shell = [](const std::string& arguments) {
        return run({"sh", "-c", std::string(QV_TOOL) + " " + arguments});
    };
    for (const char* errors : {" 2>/dev/full", " 2>&-"}) {
        EXPECT_EQ(shell("render -y --progress -i " + path("clip.mkv") + " -o " + clip + errors).exitCode, 0);
        EXPECT_EQ(readBytes(clip).find("progress="), std::string::npos)
            << "the clip got what was meant for 2";
        EXPECT_EQ(probe(clip, "v:0")["nb_read_frames"], "25");
        EXPECT_EQ(shell(std::string("paint") + errors).exitCode, 2);
    }
    for (const char* command :
         {"--help", "--version", "--help-all", "list --help", "list", "show QVMosaicMTIFilter", "devices",
          "graph QVMosaicMTIFilter --dot", "bench QVMosaicMTIFilter --size 32x32 --rounds 1"}) {
        const Outcome full = shell(std::string(command) + " >/dev/full"),
                      closed = shell(std::string(command) + " >&-");
        EXPECT_EQ(full.exitCode, 5) << command;
        EXPECT_EQ(full.errors, "qvfilter: cannot write standard output: No space left on device\n");
        EXPECT_EQ(closed.exitCode, 5) << command;
    }
}

TEST_F(Errors, OutputsThatCannotBeWritten) {
    const std::string clip = path("clip.mkv");
    expectFailure({"render", "-i", clip, "-o", "OUT/no/such/x.mp4"}, 5, "No such file");
    expectFailure({"render", "-i", clip, "-o", "/"}, 5, "directory");
    expectFailure({"render", "-i", clip, "--format", "matroska", "-o", "/dev/full"}, 5, "No space left");
    expectFailure({"still", "-i", clip, "-o", "/dev/full"}, 5, "No space left");
    expectFailure({"render", "-i", clip, "-o", "OUT/x.unheard"}, 5, "x.unheard");
    expectFailure({"render", "-i", clip, "--codec", "none-such", "-o", "OUT/x.mp4"}, 5, "none-such");
    expectFailure({"list", "--markdown", "/dev/null/x"}, 5, "/dev/null/x': Not a directory");
    expectFailure({"list", "--markdown", "OUT/"}, 5, "File too large", {"prlimit", "--fsize=1000"});
}

TEST_F(Errors, NoPermission) {
    const TemporaryFolder folder;
    const fs::path root = fs::path(folder / "x").parent_path();
    const std::string open = folder / "open.mkv", closed = folder / "closed.mkv";
    for (const std::string& file : {open, closed}) writeBytes(file, readBytes(path("clip.mkv")));
    fs::permissions(closed, fs::perms::none);
    fs::permissions(root, fs::perms(0555));
    // Permissions do not bind root, so root becomes nobody.
    Arguments nobody;
    if (::geteuid() == 0) nobody = {"setpriv", "--reuid=65534", "--clear-groups"};
    Arguments anything = nobody;
    anything.insert(anything.end(), {QV_TOOL, "list"});
    if (run(anything).exitCode != 0) GTEST_SKIP() << "this user cannot run the tool";
    expectFailure({"render", "-i", closed, "-o", "/dev/null"}, 3, "Permission denied", nobody);
    expectFailure({"render", "-i", open, "-o", folder / "out.mkv"}, 5, "Permission denied", nobody);
    EXPECT_EQ(folder.fileCount(), 2u);
    fs::permissions(root, fs::perms(0755));
}

TEST_F(Errors, AnExistingOutputIsKeptUnlessTold) {
    const TemporaryFolder outputs;
    const std::string file = outputs / "x.png";
    writeBytes(file, "precious");
    for (const Arguments& flag : {Arguments{}, Arguments{"-n"}}) {
        Arguments command{"still", "-i", path("picture.png"), "-o", file};
        command.insert(command.end(), flag.begin(), flag.end());
        const Outcome outcome = qvfilter(command);
        EXPECT_EQ(outcome.exitCode, 5);
        EXPECT_THAT(outcome.errors, HasSubstr("exists"));
        EXPECT_EQ(readBytes(file), "precious");
    }
    // A failure after permission was given still loses nothing.
    EXPECT_EQ(qvfilter({"still", "-y", "-i", path("cut-picture.png"), "-o", file}).exitCode, 3);
    EXPECT_EQ(readBytes(file), "precious");
    EXPECT_EQ(qvfilter({"still", "-y", "-i", path("picture.png"), "-o", file}).exitCode, 0);
    EXPECT_NE(readBytes(file), "precious");
    EXPECT_EQ(outputs.fileCount(), 1u);
}

TEST_F(Errors, ALinkThatLeadsNowhereIsKept) {
    const TemporaryFolder outputs;
    const std::string link = outputs / "link.png", there = outputs / "there.png";
    fs::create_symlink("there.png", link);
    Arguments command{"still", "-i", path("picture.png"), "-o", link};
    EXPECT_EQ(qvfilter(command).exitCode, 5);
    EXPECT_FALSE(fs::exists(there));
    command.push_back("-y");
    EXPECT_EQ(qvfilter(command).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_TRUE(fs::exists(there));
}

TEST_F(Errors, LimitsOfTheSystemLeaveNothing) {
    const TemporaryFolder outputs;
    fs::permissions(fs::path(outputs / "x").parent_path(), fs::perms::all);
    const std::string input = outputs / "clip.mkv", output = outputs / "x.mkv";
    writeBytes(input, readBytes(path("clip.mkv")));
    const auto render = [&](Arguments command) {
        command.insert(command.end(), {QV_TOOL, "render", "-y", "-i", input, "-o", output, "--quiet"});
        const Outcome outcome = run(command);
        const bool isDone = outcome.exitCode == 0;
        EXPECT_EQ(outputs.fileCount(), isDone ? 2u : 1u) << testing::PrintToString(command);
        return outcome;
    };
    const Outcome large = render({"prlimit", "--fsize=2000"});
    EXPECT_EQ(large.exitCode, 5);
    EXPECT_THAT(large.errors, HasSubstr("File too large"));
    // What a driver does without memory is its own affair, but nothing may stay behind.
    for (const char* limit : {"--as=300000000", "--as=500000000", "--as=650000000"})
        EXPECT_NE(render({"env", "QVFILTER_DEVICE=vulkan", "prlimit", limit}).exitCode, 0) << limit;
    // Threads are counted for others than root, those of all processes of a user together.
    const std::string user = "--reuid=" + std::to_string(100000 + ::getpid());
    if (::geteuid() != 0 || render({"setpriv", user, "--clear-groups"}).exitCode != 0)
        GTEST_SKIP() << "another user cannot run the tool";
    // From plenty down to where the last threads to be started are the pipeline's own: with fewer, a driver
    // may wait for threads of its own that never came.
    Outcome outcome{.exitCode = 0};
    for (int threads = 64; threads > 0 && outcome.exitCode == 0; --threads) {
        fs::remove(output);
        outcome =
            render({"setpriv", user, "--clear-groups", "prlimit", "--nproc=" + std::to_string(threads)});
    }
    EXPECT_EQ(outcome.errorLines(), 1u) << outcome.errors;
    EXPECT_THAT(outcome.errors, HasSubstr("cannot start a thread"));
}

}  // namespace
}  // namespace qv
