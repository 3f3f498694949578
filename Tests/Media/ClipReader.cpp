#include "Platform/Media/ClipReader.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "Tests/Media/ClipTools.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::string metadataValue(const ClipMetadata& metadata, const std::string& key) {
    for (const auto& [name, value] : metadata) {
        if (name == key) return value;
    }
    return "";
}

TEST(ClipReader, tellsTheFacts) {
    const TemporaryFolder folder;
    writeBytes(folder / "chapters.txt",
               ";FFMETADATA1\ntitle=A day\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=400\ntitle=Morning\n"
               "[CHAPTER]\nTIMEBASE=1/1000\nSTART=400\nEND=1000\ntitle=Noon\n");
    ffmpeg(
        "-f lavfi -i testsrc2=s=160x90:r=30000/1001:d=1 -f lavfi -i sine=r=44100:d=1 -i " +
        folder / "chapters.txt" +
        " -map 0 -map 1 -map_metadata 2 -vf setsar=4/3 -c:v libx264 -preset ultrafast -color_range pc "
        "-colorspace bt2020nc -color_primaries bt2020 -color_trc smpte2084 -chroma_sample_location topleft "
        "-metadata:s:a language=deu -c:a aac " +
        folder / "plain.mp4");
    ffmpeg("-i " + folder / "plain.mp4" + " -c copy -metadata:s:v rotate=90 " + folder / "clip.mp4");

    std::string error;
    const auto reader = ClipReader::open(folder / "clip.mp4", {}, &error);
    ASSERT_TRUE(reader) << error;
    const ClipInfo& info = reader->info();
    EXPECT_EQ(info.videoCodec, "h264");
    EXPECT_THAT(info.container, HasSubstr("mp4"));
    EXPECT_EQ(info.video.width, 160);
    EXPECT_EQ(info.video.height, 90);
    EXPECT_EQ(info.video.pixelAspect, (Rational{4, 3}));
    EXPECT_EQ(info.video.rotation, 270);
    EXPECT_TRUE(info.video.displayMatrix);
    EXPECT_EQ(info.video.timeBase, (Rational{1, 30000}));
    EXPECT_EQ(info.video.averageFrameRate, (Rational{30000, 1001}));
    EXPECT_EQ(info.video.color, (ColorDescription{ColorMatrix::bt2020, true}));
    EXPECT_EQ(info.video.tags, (ColorTags{9, 16, 9, 3, true}));
    EXPECT_EQ(info.video.pixelFormat, PixelFormat::i420);
    EXPECT_FALSE(info.video.hasAlpha);
    EXPECT_FALSE(info.isStillPicture);
    EXPECT_NEAR(info.duration, 1.0, 0.04);
    EXPECT_EQ(info.frameCountEstimate, 30);
    EXPECT_EQ(metadataValue(info.metadata, "title"), "A day");
    ASSERT_GE(info.streams.size(), 2u);
    EXPECT_EQ(info.streams[1].kind, ClipStreamKind::audio);
    EXPECT_EQ(info.streams[1].codec, "aac");
    EXPECT_EQ(info.streams[1].sampleRate, 44100);
    EXPECT_EQ(info.streams[1].channels, 1);
    EXPECT_EQ(info.streams[1].channelLayout, "mono");
    EXPECT_EQ(info.streams[1].language, "deu");
    ASSERT_EQ(info.chapters.size(), 2u);
    EXPECT_EQ(info.chapters[1].title, "Noon");
    EXPECT_DOUBLE_EQ(info.chapters[1].start, 0.4);

    EXPECT_FALSE(ClipReader::open(folder / "plain.mp4")->info().video.rotation);
}

TEST(ClipReader, turnsAsPlayersTurn) {
    const TemporaryFolder folder;
    ffmpeg("-f lavfi -i color=black:s=64x32:d=0.1,drawbox=w=32:h=16:c=white:t=fill -c:v libx264 " +
           folder / "plain.mp4");
    for (int tag : {90, 180, 270}) {
        const std::string path = folder / "turned.mp4";
        ffmpeg("-i " + folder / "plain.mp4" + " -c copy -metadata:s:v rotate=" + std::to_string(tag) + " " +
               path);
        const int rotation = ClipReader::open(path)->info().video.rotation;
        // The tool turns what it decodes; the white corner shows which way.
        ffmpeg("-i " + path + " -frames:v 1 -f rawvideo -pix_fmt gray " + folder / "raw");
        const std::string raw = readBytes(folder / "raw");
        const std::size_t width = rotation % 180 ? 32 : 64, height = 2048 / width;
        const auto bright = [&](std::size_t x, std::size_t y) {
            return std::uint8_t(raw.at(y * width + x)) > 128;
        };
        EXPECT_TRUE(bright(rotation == 270 ? 2 : width - 3, rotation == 90 ? 2 : height - 3)) << tag;
        EXPECT_FALSE(bright(2, 2) && rotation != 0) << tag;
    }
}

TEST(ClipReader, guessesTheMatrixOfUntaggedVideoByItsHeight) {
    const TemporaryFolder folder;
    for (auto [height, matrix] : {std::pair{718, ColorMatrix::bt601}, {720, ColorMatrix::bt709}}) {
        const std::string path = folder / "clip.mkv";
        ffmpeg("-f lavfi -i testsrc2=s=64x" + std::to_string(height) + ":d=0.1 -c:v mpeg4 " + path);
        const auto reader = ClipReader::open(path);
        ASSERT_TRUE(reader);
        EXPECT_EQ(reader->info().video.color, (ColorDescription{matrix, false}));
        EXPECT_EQ(reader->info().video.tags.matrix, 2);
        EXPECT_EQ(reader->nextFrame()->pixels.color().matrix, matrix);
    }
}

TEST(ClipReader, keepsTimesExactly) {
    const TemporaryFolder folder;
    const std::string path = folder / "vfr.mp4";
    // Pauses of one to three frames, and B-frames that are stored out of order.
    ffmpeg(
        "-f lavfi -i testsrc2=s=128x96:r=30000/1001:d=2 -vf \"select='not(eq(mod(n,7),3)+eq(mod(n,11),5))'\" "
        "-fps_mode vfr -c:v libx264 -preset faster -bf 3 " +
        path);
    const auto reader = ClipReader::open(path);
    ASSERT_TRUE(reader);
    const auto frames = readAll(*reader);
    EXPECT_THAT(reader->error(), IsEmpty());
    EXPECT_EQ(timesOf(frames), probedTimes(path));
    EXPECT_GT(frames.size(), 40u);
    for (std::size_t i = 0; i + 1 < frames.size(); ++i) {
        EXPECT_GT(frames[i].duration, 0);
        EXPECT_LE(frames[i].time + frames[i].duration, frames[i + 1].time) << i;
    }

    // Packets of the sound come in between, and only when asked for.
    ffmpeg("-i " + path + " -f lavfi -i sine=d=2 -c:v copy -c:a aac " + folder / "sound.mp4");
    const auto both = ClipReader::open(folder / "sound.mp4", {.packets = true});
    std::size_t frameCount = 0, packetCount = 0;
    for (auto item = both->next(); item.index() != 0; item = both->next())
        ++(item.index() == 1 ? frameCount : packetCount);
    EXPECT_EQ(frameCount, frames.size());
    EXPECT_EQ(std::to_string(packetCount),
              ffprobe("-select_streams a -count_packets -show_entries stream=nb_read_packets",
                      folder / "sound.mp4"));
}

struct StoredKind {
    const char* stored;
    PixelFormat format;
    const char* raw;    ///< the same in the tool's words
    int tolerance = 0;  ///< where the tool has to convert
};

class StoredKinds : public testing::TestWithParam<StoredKind> {};

TEST_P(StoredKinds, giveTheSamplesAsTheyAre) {
    const TemporaryFolder folder;
    const StoredKind& kind = GetParam();
    const std::string path = folder / "clip.nut";
    for (const char* size : {"64x48", "65x49"}) {
        ffmpeg(std::string("-f lavfi -i testsrc2=s=") + size + ":d=0.12:r=25 -vf format=" + kind.stored +
               " -c:v rawvideo -pix_fmt " + kind.stored + " " + path);
        const auto reader = ClipReader::open(path);
        ASSERT_TRUE(reader);
        std::string samples;
        for (const ClipFrame& frame : readAll(*reader)) {
            EXPECT_EQ(frame.pixels.format(), kind.format);
            samples += samplesOf(frame.pixels);
        }
        EXPECT_EQ(reader->info().video.pixelFormat, kind.format);
        ffmpeg("-i " + path +
               " -f rawvideo -sws_flags accurate_rnd+full_chroma_int+full_chroma_inp+bicubic -pix_fmt " +
               kind.raw + " " + folder / "raw");
        const std::string expected = readBytes(folder / "raw");
        ASSERT_EQ(samples.size(), expected.size()) << size;
        int worst = 0;
        const std::size_t bytes = PixelBuffer::bitDepth(kind.format) == 8 ? 1 : 2;
        for (std::size_t i = 0; i < samples.size(); i += bytes) {
            const auto code = [&](const std::string& s) {
                return std::uint8_t(s[i]) | (bytes == 2 ? std::uint8_t(s[i + 1]) << 8 : 0);
            };
            worst = std::max(worst, std::abs(code(samples) - code(expected)));
        }
        EXPECT_LE(worst, kind.tolerance) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Media, StoredKinds,
    testing::Values(
        StoredKind{"yuv420p", PixelFormat::i420, "yuv420p"},
        StoredKind{"yuv422p", PixelFormat::i422, "yuv422p"},
        StoredKind{"yuv444p", PixelFormat::i444, "yuv444p"},
        StoredKind{"yuva420p", PixelFormat::i420Alpha, "yuva420p"},
        StoredKind{"nv12", PixelFormat::nv12, "nv12"}, StoredKind{"gray", PixelFormat::gray8, "gray"},
        StoredKind{"rgba", PixelFormat::rgba8, "rgba"}, StoredKind{"rgb24", PixelFormat::rgba8, "rgba"},
        StoredKind{"yuv420p10le", PixelFormat::i420Bits10, "yuv420p10le"},
        StoredKind{"yuv422p10le", PixelFormat::i422Bits10, "yuv422p10le"},
        StoredKind{"yuv444p10le", PixelFormat::i444Bits10, "yuv444p10le"},
        StoredKind{"yuv420p12le", PixelFormat::i420Bits10, "yuv420p10le", 1},
        StoredKind{"yuv411p", PixelFormat::i444, "yuv444p", 1},
        StoredKind{"yuyv422", PixelFormat::i422, "yuv422p", 1},
        StoredKind{"argb", PixelFormat::rgba8, "rgba"},
        // The converter's matrix of its own for RGB is BT.601, which is the guess for this height as well.
        StoredKind{"yuva444p", PixelFormat::rgba8, "rgba", 2},
        StoredKind{"rgb48le", PixelFormat::i444Bits10, "yuv444p10le", 2}),
    [](const auto& info) { return info.param.stored; });

TEST(ClipReader, seeksToTheFrameThatIsShown) {
    const TemporaryFolder folder;
    for (const char* name : {"a.mp4", "a.mkv", "a.ts", "a.mov"}) {
        const std::string path = folder / name;
        ffmpeg("-f lavfi -i testsrc2=s=128x96:r=25:d=3 -c:v libx264 -preset ultrafast -bf 2 -g 20 " + path);
        const auto reader = ClipReader::open(path);
        ASSERT_TRUE(reader);
        const auto frames = readAll(*reader);
        ASSERT_EQ(frames.size(), 75u);
        const double unit = reader->info().video.timeBase.value();
        const double lead = double(frames[0].time) * unit - reader->info().start;
        for (auto [seconds, expected] :
             {std::pair{1.5, 37}, {0.04, 1}, {0.0, 0}, {-3.0, 0}, {2.96, 74}, {50.0, 74}, {0.779, 19}}) {
            ASSERT_TRUE(reader->seek(lead + seconds)) << name << reader->error();
            const auto frame = reader->nextFrame();
            ASSERT_TRUE(frame) << name << " " << seconds;
            EXPECT_EQ(frame->time, frames[std::size_t(expected)].time) << name << " " << seconds;
            EXPECT_TRUE(sameSamples(frame->pixels, frames[std::size_t(expected)].pixels))
                << name << " " << seconds;
            const auto following = reader->nextFrame();
            EXPECT_EQ(following.has_value(), expected < 74) << name << " " << seconds;
            if (following) {
                EXPECT_EQ(following->time, frames[std::size_t(expected) + 1].time) << name << " " << seconds;
            }
        }
    }
}

TEST(ClipReader, tellsTheEndWithoutReading) {
    const TemporaryFolder folder;
    // With frames that are stored after later ones, and in a container that tells no durations.
    for (const auto& [name, options] : {std::pair{"clip.mp4", ""},
                                        {"clip.mkv", ""},
                                        {"clip.webm", ""},
                                        {"clip.ts", ""},
                                        {"reordered.ts", "-c:v libx264 -bf 2"},
                                        {"old.ts", "-c:v mpeg2video -bf 2"},
                                        {"clip.avi", ""}}) {
        const std::string path = folder / name;
        ffmpeg("-f lavfi -i testsrc2=s=64x48:r=30000/1001:d=3 -g 12 " + std::string(options) + " '" + path +
               "'");
        const auto reader = ClipReader::open(path);
        ASSERT_TRUE(reader) << name;
        const auto end = reader->endTime();
        const std::vector<ClipFrame> frames = readAll(*reader);
        ASSERT_EQ(frames.size(), 90u) << name;
        if (end) {
            EXPECT_EQ(*end, frames.back().time + frames.back().duration) << name;
        } else {
            EXPECT_EQ(std::string(name), "clip.avi") << "which has no stamps of when a frame is shown";
        }
    }
}

TEST(ClipReader, deinterlacesAsTheFramesSay) {
    const TemporaryFolder folder;
    const auto raw = [&](const std::string& path, const std::string& filter) {
        ffmpeg("-i " + path + " -vf " + filter + " -fps_mode passthrough -f rawvideo " + folder / "raw");
        return readBytes(folder / "raw");
    };
    for (const auto& [name, options] :
         {std::pair{"top.ts", "-c:v mpeg2video -flags +ildct+ilme -top 1 -bf 2"},
          {"bottom.ts", "-c:v mpeg2video -flags +ildct+ilme -top 0"},
          {"deep.mkv", "-c:v libx264 -pix_fmt yuv422p10le -x264-params tff=1"},
          {"whole.mp4", "-c:v libx264"}}) {
        const std::string path = folder / name;
        ffmpeg("-f lavfi -i testsrc2=s=64x48:r=50:d=0.6,tinterlace=interleave_top " + std::string(options) +
               " " + path);
        const bool whole = path.ends_with("mp4");
        for (const auto& [wanted, filter] : {std::pair{Deinterlacing::automatic, "bwdif=0:-1:1"},
                                             {Deinterlacing::all, "bwdif=0:-1:0"},
                                             {Deinterlacing::none, "null"}}) {
            int told = 0;
            const auto reader =
                ClipReader::open(path, {.deinterlacing = wanted, .onDeinterlacing = [&] { ++told; }});
            ASSERT_TRUE(reader) << name;
            const std::vector<ClipFrame> frames = readAll(*reader);
            std::string samples;
            for (const ClipFrame& frame : frames) samples += samplesOf(frame.pixels);
            EXPECT_EQ(timesOf(frames), probedTimes(path)) << name;
            EXPECT_TRUE(samples == raw(path, filter)) << name << ' ' << filter;
            EXPECT_EQ(told, wanted == Deinterlacing::all || (wanted == Deinterlacing::automatic && !whole))
                << name << ' ' << filter;
        }
        EXPECT_EQ(raw(path, "null") == raw(path, "bwdif=0:-1:1"), whole) << name;
    }
}

TEST(ClipReader, damageTakesNoGoodFrameOfAnInterlacedClip) {
    const TemporaryFolder folder;
    const std::string path = folder / "clip.mkv";
    ffmpeg(
        "-f lavfi -i testsrc2=s=64x48:r=50:d=0.6,tinterlace=interleave_top -c:v mpeg2video -g 1 "
        "-flags +ildct+ilme -top 1 " +
        path);
    std::istringstream lines(ffprobe("-show_entries packet=pos,size", path));
    std::string line;
    constexpr std::size_t kGood = 7;
    for (std::size_t i = 0; i <= kGood; ++i) std::getline(lines, line);
    const std::size_t size = std::stoul(line), place = std::stoul(line.substr(line.find(',') + 1));
    std::string bytes = readBytes(path);
    for (std::size_t i = size / 3; i < size; ++i) bytes[place + i] = '\x55';
    writeBytes(path, bytes);
    for (const auto wanted : {Deinterlacing::automatic, Deinterlacing::none}) {
        const auto reader = ClipReader::open(path, {.deinterlacing = wanted});
        ASSERT_TRUE(reader);
        EXPECT_EQ(readAll(*reader).size(), kGood);
        EXPECT_THAT(reader->error(), testing::HasSubstr("damaged after 0.280 s: "));
    }
}

TEST(ClipReader, readsPicturesAndOddNames) {
    const TemporaryFolder folder;
    for (const char* name : {"a.png", "a.jpg", "a.webp", "a.bmp", "a.tiff"}) {
        ffmpeg("-f lavfi -i testsrc2=s=66x50 -frames:v 1 " + folder / name);
        const auto reader = ClipReader::open(folder / name);
        ASSERT_TRUE(reader) << name;
        EXPECT_TRUE(reader->info().isStillPicture) << name;
        EXPECT_EQ(reader->info().frameCountEstimate, 1) << name;
        EXPECT_EQ(readAll(*reader).size(), 1u) << name;
        EXPECT_TRUE(reader->seek(0)) << name;
        EXPECT_TRUE(reader->nextFrame()) << name;
        EXPECT_FALSE(reader->nextFrame()) << name;
    }
    for (int i = 1; i <= 3; ++i)
        std::filesystem::copy(folder / "a.png", folder / "s" + std::to_string(i) + ".png");
    const auto sequence = ClipReader::open(folder / "s%d.png");
    ASSERT_TRUE(sequence);
    EXPECT_EQ(readAll(*sequence).size(), 3u);

    ffmpeg("-f lavfi -i testsrc2=s=64x48:d=0.2 -c:v libx264 " + folder / "clip.mkv");
    for (const char* name : {"12:30 100%d 'x'.mkv", "-"}) {
        std::filesystem::copy(folder / "clip.mkv", folder / name);
        const auto reader = ClipReader::open(folder / name);
        ASSERT_TRUE(reader) << name;
        EXPECT_EQ(readAll(*reader).size(), 5u);
    }
}

TEST(ClipReader, animatedWebPGoesForthAndBack) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.webp";
    // A pause in the middle: 0 to 200 ms, then from 500 ms on.
    ffmpeg(
        "-f lavfi -i testsrc2=s=160x96:r=20 -frames:v 8 -lossless 1 -vf \"setpts='(N+if(gt(N,4),5))/20/TB'\" "
        "-fps_mode "
        "vfr " +
        path);
    const auto reader = ClipReader::open(path);
    ASSERT_TRUE(reader);
    EXPECT_FALSE(reader->info().isStillPicture);
    EXPECT_EQ(timesOf(readAll(*reader)), (std::vector<std::int64_t>{0, 50, 100, 150, 200, 500, 550, 600}));
    EXPECT_EQ(reader->error(), "");
    ASSERT_TRUE(reader->seek(0.3));
    EXPECT_EQ(reader->nextFrame()->time, 200);
    EXPECT_EQ(reader->nextFrame()->time, 500);
    ASSERT_TRUE(reader->seek(0));
    EXPECT_EQ(readAll(*reader).size(), 8u);
    EXPECT_GE(reader->endTime(), 650);

    const std::string bytes = readBytes(path);
    writeBytes(folder / "cut.webp", bytes.substr(0, bytes.size() / 2));
    std::string cause;
    EXPECT_FALSE(ClipReader::open(folder / "cut.webp", {}, &cause));
    EXPECT_THAT(cause, testing::HasSubstr("damaged or cut off"));
}

TEST(ClipReader, damagedClipsGiveTheirGoodFramesFirst) {
    const TemporaryFolder folder;
    const std::string make =
        "-f lavfi -i testsrc2=s=160x96:d=2 -f lavfi -i sine=d=2 -c:v libx264 -preset ultrafast -c:a aac ";
    for (auto [name, options] : {std::pair{"a.mp4", "-movflags faststart"}, {"a.mkv", ""}, {"a.ts", ""}}) {
        const std::string path = folder / name, cut = folder / std::string("cut-") + name;
        ffmpeg(make + options + " " + path);
        const auto whole = ClipReader::open(path);
        const auto frames = readAll(*whole);
        ASSERT_EQ(frames.size(), 50u);
        EXPECT_THAT(whole->error(), IsEmpty());

        const std::string bytes = readBytes(path);
        writeBytes(cut, bytes.substr(0, bytes.size() * 6 / 10));
        const auto reader = ClipReader::open(cut);
        ASSERT_TRUE(reader) << name;
        const auto good = readAll(*reader);
        EXPECT_GT(good.size(), 15u) << name;
        EXPECT_LT(good.size(), 40u) << name;
        for (std::size_t i = 0; i < good.size(); ++i) {
            EXPECT_EQ(good[i].time, frames[i].time) << name;
            // The last picture of a cut transport stream may lack its lower part without anyone's knowing.
            if (i + 1 < good.size()) {
                EXPECT_TRUE(sameSamples(good[i].pixels, frames[i].pixels)) << name << i;
            }
        }
        const std::string expected = "cannot read '" + cut + "': damaged after ";
        EXPECT_EQ(reader->error().substr(0, expected.size()), expected);
        EXPECT_EQ(reader->error().find('\n'), std::string::npos);
        EXPECT_FALSE(reader->nextFrame());
    }
}

TEST(ClipReader, whatCannotBeReadIsNamedWithItsCause) {
    const TemporaryFolder folder;
    writeBytes(folder / "empty.mp4", "");
    writeBytes(folder / "text.dat", "hello");
    ffmpeg("-f lavfi -i testsrc2=s=64x48:d=1 -c:v libx264 " + folder / "a.mp4");
    const std::string bytes = readBytes(folder / "a.mp4");
    writeBytes(folder / "headless.mp4", bytes.substr(0, bytes.size() / 2));
    ffmpeg("-f lavfi -i sine=d=0.2 " + folder / "sound.wav");
    std::mt19937 random(8);
    std::string noise(20000, ' ');
    for (char& c : noise) c = char(random());
    writeBytes(folder / "noise.mkv", noise);
    // A live playlist, which has no end, and a list of a file that could be read.
    writeBytes(folder / "live.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nnone.ts\n");
    writeBytes(folder / "list.txt", "ffconcat version 1.0\nfile a.mp4\n");

    testing::internal::CaptureStderr();
    for (auto [name, cause] : {std::pair{"none.mp4", "No such file or directory"},
                               {"", "Is a directory"},
                               {"empty.mp4", "the file is empty"},
                               {"text.dat", "no known media format"},
                               {"noise.mkv", ""},
                               {"headless.mp4", "moov atom not found"},
                               {"live.m3u8", "it only lists other files"},
                               {"list.txt", "it only lists other files"},
                               {"sound.wav", "there is no video in it"}}) {
        std::string error;
        EXPECT_FALSE(ClipReader::open(folder / name, {}, &error)) << name;
        EXPECT_THAT(error, HasSubstr("cannot read '" + folder / name + "': " + cause)) << name;
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace qv
