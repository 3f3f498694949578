// Frames of scene clips: which frame a time shows, where it is kept, and what becomes of it when that goes
// wrong.

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <thread>

#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/Media/ImageFile.h"
#include "Tests/Support/SceneClip.h"

namespace qv::test {
namespace {

namespace fs = std::filesystem;

class SceneFrames : public testing::Test {
  protected:
    SceneFrames() {
        setLogSink([this](std::string_view line) { lines_.emplace_back(line); });
    }
    ~SceneFrames() override {
        EXPECT_THAT(lines_, testing::IsEmpty());
        setLogSink({});
    }

    /// A second and a half at 30 frames a second; frame k has the luma 20 + 4 k.
    std::string clip(const std::string& name = "scene.mp4", int darkest = 20) const {
        if (!fs::exists(folder_ / name)) {
            fs::create_directories(fs::path(folder_ / name).parent_path());
            writeGreyClip(folder_ / name, 45, {1, 30}, [&](int i) { return darkest + 4 * i; });
        }
        return folder_ / name;
    }
    std::string framePath(int index, const std::string& name = "scene") const {
        return folder_ / ("QVFilterVideoCache/" + name + "/" + std::to_string(index));
    }

    static MTIImage imageAt(const std::string& path, double seconds) {
        return QVEffectVideoFrameCacheManager::sharedManager().imageFromVideo(
            path, CMTimeMakeWithSeconds(seconds, 600));
    }
    static Bitmap bitmapOf(const MTIImage& image) {
        const auto* source = image ? std::get_if<BitmapSource>(&image.node()->operation) : nullptr;
        return source ? source->bitmap : Bitmap();
    }
    /// Number of the frame that a picture shows; -1 without one.
    static int frameOf(const MTIImage& image, int darkest = 20) {
        const Bitmap bitmap = bitmapOf(image);
        if (!bitmap || bitmap.width != 64 || bitmap.height != 36) return -1;
        const double luma = 16 + bitmap.row(18)[4 * 32] * 219 / 255.0;
        return int(std::lround((luma - darkest) / 4));
    }
    static int frameAt(const std::string& path, double seconds, int darkest = 20) {
        return frameOf(imageAt(path, seconds), darkest);
    }
    void finish() { QVEffectVideoFrameCacheManager::sharedManager().finishWriting(); }

    TemporaryFileFolder folder_;
    std::vector<std::string> lines_;
};

TEST_F(SceneFrames, AreNumberedUpToFifteenASecond) {
    const struct {
        Rational frameTime;
        float rate;
        double seconds;
        std::int64_t index;
    } cases[] = {{{1, 30}, 15, 0, 0},    {{1, 30}, 15, 0.06, 1}, {{1, 30}, 15, 0.033, 0},
                 {{1, 12}, 12, 0.46, 6}, {{1, 12}, 12, 0.45, 5}, {{2, 1}, 1, 1.5, 2},
                 {{2, 1}, 1, -0.6, -1}};
    for (const auto& c : cases) {
        const std::string path = folder_ / (std::to_string(c.frameTime.denominator) + ".mp4");
        writeGreyClip(path, 3, c.frameTime, [](int) { return 100; });
        const auto decoder = QVEffectVideoFrameCacheManager::sharedManager().decoderForVideo(path);
        EXPECT_EQ(decoder->frameRate(), c.rate);
        EXPECT_EQ(decoder->frameIndexWithTime(CMTimeMakeWithSeconds(c.seconds, 6000)), c.index) << c.seconds;
        EXPECT_NEAR(CMTimeGetSeconds(decoder->duration()), 3.0 * c.frameTime.value(), 1e-6);
    }
}

TEST_F(SceneFrames, AreThoseOfTheTimeWhateverWasAskedForBefore) {
    const std::string path = clip();
    const double times[] = {1.47, 0, 0.06, 0.031, 0.5, 1.5, 1.6, 31.07, 0.1, 1e7 + 0.2, 1.0};
    std::vector<Bitmap> decoded;
    for (double time : times) {
        // The clip starts anew after 1.5 s; a number is every other frame, and the last one lasts to the end.
        const double within = std::fmod(time, 1.5);
        const int index = int(std::round(within * 15)), frame = std::min(2 * index, 44);
        EXPECT_EQ(frameAt(path, time), frame) << time;
        decoded.push_back(bitmapOf(imageAt(path, time)));
        finish();
        EXPECT_TRUE(fs::is_regular_file(framePath(index))) << index;
    }
    for (std::size_t i = std::size(times); i-- > 0;)
        EXPECT_EQ(*bitmapOf(imageAt(path, times[i])).pixels, *decoded[i].pixels)
            << "read back at " << times[i];
    EXPECT_EQ(frameAt(path, -0.5), -1);
    EXPECT_EQ(frameAt(path, NAN), 0);
}

TEST_F(SceneFrames, AreKeptAsJPEGUnderTheClipsNameUntilTheyAreRemoved) {
    auto& manager = QVEffectVideoFrameCacheManager::sharedManager();
    ASSERT_EQ(frameAt(clip(), 0.2), 6);
    finish();
    const std::string bytes = readBytes(framePath(3));
    // The first entry of the luma table is 16 at quality 50, and 16 (200 - 2 · 80) / 100 at 80.
    const std::size_t table = bytes.find("\xff\xdb");
    ASSERT_LT(table, bytes.size());
    EXPECT_EQ(bytes[table + 5], 6);
    EXPECT_EQ(manager.frameCachePathWithVideo("/else/where/a.b.mp4", -12), framePath(-12, "a.b"));

    // Clips of one name share their frames.
    EXPECT_EQ(frameAt(clip("other/scene.mp4", 40), 0.2), 6);
    EXPECT_EQ(frameAt(folder_ / "other/scene.mp4", 0.4, 40), 12);
    finish();
    EXPECT_EQ(frameAt(folder_ / "scene.mp4", 0.4), 17);

    manager.cacheBuffer({}, framePath(99));
    EXPECT_FALSE(fs::exists(framePath(99)));
    manager.removeCacheFiles();
    finish();
    EXPECT_FALSE(fs::exists(folder_ / "QVFilterVideoCache"));
    EXPECT_EQ(frameAt(folder_ / "scene.mp4", 0.4), 12);
}

TEST_F(SceneFrames, AreDecodedWhereTheirFileIsNone) {
    const std::string path = clip(), outside = folder_ / "outside";
    const auto spoil = [&](const std::function<void(const std::string& file)>& how) {
        finish();
        fs::remove_all(framePath(3));
        fs::create_directories(fs::path(framePath(3)).parent_path());
        how(framePath(3));
        EXPECT_EQ(frameAt(path, 0.2), 6);
        finish();
    };
    EXPECT_EQ(frameAt(path, 0.2), 6);
    finish();
    const std::string whole = readBytes(framePath(3));
    for (const std::string& bytes :
         {whole.substr(0, whole.size() / 2), std::string("no picture"), std::string()}) {
        spoil([&](const std::string& file) { writeBytes(file, bytes); });
        EXPECT_EQ(readBytes(framePath(3)), whole) << "mended";
    }
    spoil([](const std::string& file) { fs::create_directory(file); });
    spoil([](const std::string& file) { EXPECT_EQ(mkfifo(file.c_str(), 0600), 0); });
    writeBytes(outside, "untouched");
    spoil([&](const std::string& file) { fs::create_symlink(outside, file); });
    EXPECT_EQ(readBytes(outside), "untouched");
}

TEST_F(SceneFrames, AreDecodedWhereTheyCannotBeKept) {
    const std::string path = clip();
    const auto expectFrames = [&](const char* what) {
        for (double time : {0.2, 0.8, 0.2}) EXPECT_EQ(frameAt(path, time), std::lround(30 * time)) << what;
        finish();
    };
    writeBytes(folder_ / "file", "a file");
    TemporaryFileFolder::use(folder_ / "file");
    expectFrames("the temporary folder is a file");
    TemporaryFileFolder::use("/proc/self");
    expectFrames("nothing can be written there");

    TemporaryFileFolder::use(folder_ / "");
    fs::create_directory(folder_ / "QVFilterVideoCache");
    writeBytes(folder_ / "QVFilterVideoCache/scene", "a file");
    expectFrames("a file in place of the clip's folder");
    EXPECT_TRUE(fs::is_regular_file(framePath(3))) << "which is replaced";

    fs::remove_all(folder_ / "QVFilterVideoCache");
    rlimit former;
    getrlimit(RLIMIT_FSIZE, &former);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit tiny{16, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tiny);
    expectFrames("no room");
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(fs::exists(framePath(3)));
}

TEST_F(SceneFrames, AreMissingWhereTheClipIsDamagedOrEmpty) {
    const std::string bytes = readBytes(clip()), path = folder_ / "damaged.mp4";
    EXPECT_EQ(frameAt(path, 0.2), -1) << "no file";
    for (const std::string& damaged :
         {std::string(), std::string("no clip"), bytes.substr(0, bytes.size() / 4)}) {
        writeBytes(path, damaged);
        for (double time : {0.0, 0.2, 1.4}) EXPECT_EQ(frameAt(path, time), -1);
    }
    EXPECT_FALSE(fs::exists(framePath(0, "damaged")));
    writeBytes(path, bytes);
    EXPECT_EQ(frameAt(path, 0.2), 6) << "once the clip is there";

    // What precedes the damage is shown, and is shown again after what follows it was asked for.
    std::string late = bytes;
    const std::size_t data = late.find("mdat") + 4;
    std::size_t size = 0;
    for (std::size_t i = data - 8; i < data - 4; ++i) size = size << 8 | std::uint8_t(late[i]);
    std::fill_n(late.begin() + std::ptrdiff_t(data + size * 3 / 4), size / 8, '\xff');
    writeBytes(folder_ / "late.mp4", late);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(frameAt(folder_ / "late.mp4", 0.2), 6);
        frameAt(folder_ / "late.mp4", 1.2);
        finish();
        fs::remove_all(folder_ / "QVFilterVideoCache");
    }
}

TEST_F(SceneFrames, MayBeAskedForOnAnyThread) {
    const std::string paths[] = {clip("a.mp4"), clip("b.mp4"), clip("c.mp4")};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 30; ++i) {
                const int index = (i * 7 + t * 5) % 22;
                const std::string& path = paths[std::size_t(i / 10)];
                const auto image = QVEffectVideoFrameCacheManager::sharedManager().decodeImageFromVideo(
                    path, CMTimeMakeWithSeconds(index / 15.0, 600));
                EXPECT_EQ(frameOf(image), 2 * index);
                EXPECT_EQ(frameAt(path, index / 15.0), 2 * index);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace qv::test
