#include "Platform/Media/ClipWriter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include "Platform/Media/ClipReader.h"
#include "Platform/Media/PixelConversion.h"
#include "Tests/Media/ClipTools.h"
#include "Tests/Media/SoundTools.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Reads a clip and writes it again, frames and packets alike; gives the error line.
std::string rewrite(const std::string& from, const std::string& to, const ClipWriterOptions& options = {},
                    std::vector<std::string>* notices = nullptr) {
    std::string error;
    const auto reader = ClipReader::open(from, {.packets = true}, &error);
    if (!reader) return error;
    const auto writer = ClipWriter::create(to, reader->info().video, options, reader->streams(), &error);
    if (!writer) return error;
    if (notices) *notices = writer->notices();
    for (auto item = reader->next(); item.index() != 0; item = reader->next()) {
        const bool written =
            item.index() == 1 ? writer->write(std::get<1>(item)) : writer->write(std::get<2>(item));
        if (!written) break;
    }
    return writer->finish() ? reader->error() : writer->error();
}

ClipVideoFormat smallFormat() {
    ClipVideoFormat video;
    video.width = 64;
    video.height = 48;
    video.averageFrameRate = {25, 1};
    return video;
}

/// A frame of one colour.
ClipFrame plainFrame(const ClipWriter& writer, std::int64_t time,
                     std::array<int, 4> color = {200, 40, 90, 255}) {
    const PixelBuffer pixels = writer.makeFrame();
    std::vector<std::uint8_t> rgba;
    for (int i = 0; i < pixels.width() * pixels.height(); ++i) {
        for (int c : color) rgba.push_back(std::uint8_t(c));
    }
    convertFromRGBA8(rgba.data(), std::size_t(pixels.width()) * 4, pixels);
    return {pixels, time, 1};
}

TEST(ClipWriter, carriesAllThatIsNotThePicture) {
    const TemporaryFolder folder;
    const std::string source = folder / "source.mp4", result = folder / "result.mp4";
    writeBytes(folder / "chapters.txt",
               ";FFMETADATA1\ntitle=A "
               "day\nartist=Somebody\n[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=700\ntitle=Morning\n"
               "[CHAPTER]\nTIMEBASE=1/1000\nSTART=700\nEND=2000\ntitle=Noon\n");
    ffmpeg(
        "-f lavfi -i testsrc2=s=160x96:r=30000/1001:d=2 -f lavfi -i sine=r=44100:d=2 -f lavfi -i "
        "sine=f=900:d=2 -i " +
        folder / "chapters.txt" +
        " -map 0 -map 1 -map 2 -map_metadata 3 -vf "
        "\"select='not(eq(mod(n,7),3)+eq(mod(n,11),5))',setsar=4/3\" " +
        "-fps_mode vfr -c:v libx264 -preset faster -colorspace bt709 -color_primaries smpte170m -color_trc "
        "iec61966-2-1 "
        "-color_range pc -metadata:s:a:0 language=deu -metadata:s:a:1 language=fra -disposition:a:1 default "
        "-c:a aac " +
        folder / "plain.mp4");
    ffmpeg("-i " + folder / "plain.mp4" + " -map 0:v -map 0:a -c copy -metadata:s:v rotate=90 " + source);
    std::vector<std::string> notices;
    ASSERT_EQ(rewrite(source, result, {}, &notices), "");
    EXPECT_THAT(notices, IsEmpty());

    const std::vector<std::int64_t> times = probedTimes(source);
    EXPECT_EQ(times.size(), 47u);
    EXPECT_EQ(probedTimes(result), times);
    for (const char* entries :
         {"-select_streams v -show_entries "
          "stream=time_base,start_pts,width,height,sample_aspect_ratio,color_space,"
          "color_primaries,color_transfer,color_range,pix_fmt",
          "-show_entries stream_side_data=rotation,displaymatrix",
          "-select_streams a -show_entries "
          "stream=codec_name,sample_rate,channel_layout,time_base,start_pts,duration_ts",
          "-show_entries stream_disposition=default:stream_tags=language",
          "-show_chapters -show_entries chapter=start_time,end_time:chapter_tags=title",
          "-show_entries format_tags=title,artist"}) {
        EXPECT_EQ(ffprobe(entries, result), ffprobe(entries, source)) << entries;
        EXPECT_NE(ffprobe(entries, source), "") << entries;
    }
    EXPECT_EQ(packetHash(result, "0:a"), packetHash(source, "0:a"));
    EXPECT_NE(packetHash(source, "0:a"), "");
    // The last frame is held as long as it was.
    const char* length = "-select_streams v -show_entries stream=duration_ts,nb_frames";
    EXPECT_EQ(ffprobe(length, result), ffprobe(length, source));

    // Sound and picture lie side by side: nothing is further from its time than a second of the file's order.
    std::istringstream packets(ffprobe("-show_entries packet=dts_time,pos", result));
    double latest = 0;
    std::map<long, double> byPlace;
    for (std::string line; std::getline(packets, line);) {
        const std::size_t comma = line.find(',');
        if (comma == std::string::npos) continue;
        byPlace[std::stol(line.substr(comma + 1))] = std::stod(line);
    }
    for (auto [place, time] : byPlace) {
        EXPECT_GT(time, latest - 1.0) << place;
        latest = std::max(latest, time);
    }
}

TEST(ClipWriter, carriesSubtitlesAttachmentsAndCovers) {
    const TemporaryFolder folder;
    writeBytes(folder / "text.srt",
               "1\n00:00:00,200 --> 00:00:00,900\nHello\n\n2\n00:00:01,000 --> 00:00:01,500\nthere\n");
    writeBytes(folder / "font.ttf", std::string(3000, 'f'));
    ffmpeg("-f lavfi -i testsrc2=s=64x48:d=1.6 -f lavfi -i sine=d=1.6 -i " + folder / "text.srt" +
           " -map 0 -map 1 -map 2 -attach " + folder / "font.ttf" +
           " -metadata:s:t mimetype=font/ttf -c:v libx264 -c:a libvorbis -c:s srt " + folder / "a.mkv");
    std::vector<std::string> notices;
    ASSERT_EQ(rewrite(folder / "a.mkv", folder / "b.mkv", {}, &notices), "");
    EXPECT_THAT(notices, IsEmpty());
    for (const char* map : {"0:a", "0:s"}) {
        EXPECT_EQ(packetHash(folder / "b.mkv", map), packetHash(folder / "a.mkv", map)) << map;
        EXPECT_NE(packetHash(folder / "a.mkv", map), "") << map;
    }
    for (const char* entries : {"-show_entries stream=codec_type,codec_name:stream_tags=filename,mimetype",
                                "-select_streams s -show_entries packet=pts,duration"}) {
        EXPECT_EQ(ffprobe(entries, folder / "b.mkv"), ffprobe(entries, folder / "a.mkv"));
    }
    ASSERT_EQ(rewrite(folder / "a.mkv", folder / "bare.mkv", {.audio = false, .subtitles = false}), "");
    EXPECT_EQ(ffprobe("-show_entries stream=codec_type", folder / "bare.mkv"), "video\nattachment");

    // A container that takes less.
    ASSERT_EQ(rewrite(folder / "a.mkv", folder / "b.webm", {.codec = "libvpx-vp9"}, &notices), "");
    EXPECT_THAT(notices, ElementsAre(HasSubstr("subtitle stream 2 (subrip) left out"),
                                     HasSubstr("attachment stream 3")));
    EXPECT_EQ(packetHash(folder / "b.webm", "0:a"), packetHash(folder / "a.mkv", "0:a"));

    ffmpeg("-f lavfi -i testsrc2=s=32x32 -frames:v 1 " + folder / "cover.jpg");
    ffmpeg("-f lavfi -i testsrc2=s=64x48:d=0.2 -i " + folder / "cover.jpg" +
           " -map 0 -map 1 -c:v:0 libx264 -c:v:1 copy -disposition:v:1 attached_pic " + folder / "c.mp4");
    for (const char* name : {"d.mp4", "d.mkv"}) {
        ASSERT_EQ(rewrite(folder / "c.mp4", folder / name), "") << name;
        const auto info = ClipReader::open(folder / name)->info();
        ASSERT_EQ(info.streams.size(), 2u) << name;
        EXPECT_TRUE(info.streams[1].isCoverPicture) << name;
        EXPECT_EQ(packetHash(folder / name, "0:v:1"), packetHash(folder / "c.mp4", "0:v:1")) << name;
    }
}

struct Encoding {
    const char* source;  ///< options of the tool that makes the source
    const char* sourceName;
    const char* name;
    ClipWriterOptions options;
    const char* stored;  ///< pixel format of the result
    bool lossless = false;
};

TEST(ClipWriter, saysWhichStreamsAreLeftOut) {
    const TemporaryFolder folder;
    ffmpeg(
        "-f lavfi -i testsrc2=s=64x48:d=0.2 -f lavfi -i testsrc=s=32x32:d=0.2 -map 0 -map 1 "
        "-timecode 01:00:00:00 -c:v libx264 " +
        folder / "a.mov");
    std::vector<std::string> notices;
    ASSERT_EQ(rewrite(folder / "a.mov", folder / "b.mkv", {}, &notices), "");
    EXPECT_THAT(notices, ElementsAre("video stream 1 left out: only stream 0 is processed",
                                     "data stream 2 left out: such streams are not copied",
                                     "data stream 3 left out: such streams are not copied"));
    EXPECT_EQ(ffprobe("-show_entries stream=codec_type", folder / "b.mkv"), "video");
}

TEST(ClipWriter, encodesEveryKindOfFrame) {
    const TemporaryFolder folder;
    const std::string alpha =
        "-f lavfi -i "
        "color=red:s=64x64:d=0.12,format=rgba,geq=r=200:g=40:b=90:a='if(lt(X\\,32)\\,128\\,255)' ";
    const Encoding encodings[] = {
        {"-c:v libx264 -pix_fmt yuv420p", "s.mp4", "a.mp4", {}, "yuv420p"},
        {"-c:v libx264 -pix_fmt yuv420p10le", "s.mkv", "a.mkv", {}, "yuv420p10le"},
        {"-c:v libx264 -pix_fmt yuv420p10le", "s.mkv", "a.mp4", {.pixelFormat = "yuv420p"}, "yuv420p"},
        {"-c:v libx264 -pix_fmt yuv420p", "s.mkv", "a.mkv", {.pixelFormat = "yuv420p10le"}, "yuv420p10le"},
        {"-c:v libx264 -pix_fmt yuv444p -s 641x361", "s.mkv", "a.mp4", {}, "yuv444p"},
        {"-c:v ffv1 -pix_fmt yuv420p -s 641x361", "s.mkv", "a.mp4", {}, "yuv444p"},
        {"-c:v ffv1 -pix_fmt yuv420p -s 641x361", "s.mkv", "a.mkv", {.codec = "ffv1"}, "yuv420p", true},
        {"-c:v ffv1 -pix_fmt yuv422p", "s.mkv", "a.mkv", {.codec = "ffv1"}, "yuv422p", true},
        {"-c:v ffv1 -pix_fmt yuv444p10le", "s.mkv", "a.mkv", {.codec = "ffv1"}, "yuv444p10le", true},
        {"-c:v ffv1 -pix_fmt gray", "s.mkv", "a.mkv", {.codec = "ffv1"}, "gray", true},
        {"-c:v ffv1 -pix_fmt bgr0", "s.mkv", "a.mkv", {.codec = "ffv1"}, "bgr0", true},
        {"-c:v ffv1 -pix_fmt bgra", "s.mkv", "a.mkv", {.codec = "ffv1"}, "bgra", true},
        {"-c:v ffv1 -pix_fmt gray16le", "s.mkv", "a.mkv", {.codec = "ffv1"}, "yuv420p10le"},
        {"-c:v ffv1 -pix_fmt gray16le",
         "s.mkv",
         "a.mkv",
         {.codec = "ffv1", .pixelFormat = "gray10le"},
         "gray10le"},
        {"-c:v ffv1 -pix_fmt yuva420p", "s.mkv", "a.mkv", {.codec = "ffv1"}, "yuva420p", true},
        {"-c:v qtrle -pix_fmt argb", "s.mov", "a.mov", {.codec = "qtrle"}, "argb", true},
        {"-c:v qtrle -pix_fmt rgb24", "s.mov", "a.mp4", {}, "yuv420p"},
        {"-c:v libx264 -pix_fmt yuv420p",
         "s.mp4",
         "h.mp4",
         {.codec = "libx265", .preset = "ultrafast"},
         "yuv420p"},
        {"-c:v libx264 -pix_fmt yuv420p",
         "s.mp4",
         "a.webm",
         {.crf = 40, .options = {{"cpu-used", "8"}}},
         "yuv420p"},
        {"-c:v libx264 -pix_fmt yuv420p", "s.mp4", "a.mp4", {.codec = "mpeg4", .bitRate = 400000}, "yuv420p"},
        {"-c:v mjpeg -pix_fmt yuvj422p", "s.mov", "a.mov", {.codec = "mjpeg"}, "yuvj422p"},
    };
    for (const Encoding& each : encodings) {
        const std::string source = folder / each.sourceName, result = folder / each.name;
        ffmpeg(std::string("-f lavfi -i testsrc2=s=160x96:d=0.4 ") + each.source + " " + source);
        const std::string what = std::string(each.source) + " to " + each.name + " " + each.stored;
        ASSERT_EQ(rewrite(source, result, each.options), "") << what;
        EXPECT_EQ(ffprobe("-show_entries stream=pix_fmt", result), each.stored) << what;
        EXPECT_EQ(probedTimes(result).size(), 10u) << what;
        // Compared by the tool, at the source's own depth: whole planes out of place or in the wrong range
        // show at once.
        const std::string report =
            outputOf("ffmpeg -nostdin -i " + result + " -i " + source + " -lavfi psnr -f null - 2>&1");
        const std::size_t place = report.find("average:");
        ASSERT_NE(place, std::string::npos) << what;
        const std::string average = report.substr(place + 8, report.find(' ', place) - place - 8);
        if (each.lossless) {
            EXPECT_EQ(average, "inf") << what;
        } else if (average != "inf") {
            EXPECT_GT(std::stod(average), 30) << what;
        }
    }
    for (auto [options, name, stored] :
         {std::tuple{ClipWriterOptions{.codec = "prores_ks"}, "a.mov", "yuva444p12le"},
          {ClipWriterOptions{.codec = "qtrle"}, "b.mov", "argb"},
          {ClipWriterOptions{.codec = "libvpx-vp9"}, "a.webm", "yuv420p"}}) {
        ffmpeg(alpha + "-c:v png " + folder / "alpha.mov");
        ASSERT_EQ(rewrite(folder / "alpha.mov", folder / name, options), "") << name;
        EXPECT_EQ(ffprobe("-show_entries stream=pix_fmt", folder / name), stored) << name;
        const auto reader = ClipReader::open(folder / name);
        EXPECT_TRUE(reader->info().video.hasAlpha) << name;
        const auto frame = reader->nextFrame();
        std::vector<std::uint8_t> rgba(64 * 64 * 4);
        ASSERT_TRUE(convertToRGBA8(frame->pixels, rgba.data(), 256));
        const std::uint8_t* pixel = &rgba[20 * 256 + 10 * 4];
        EXPECT_NEAR(pixel[3], 128, 3) << name;
        EXPECT_NEAR(pixel[0], 200 * 128 / 255, 8) << name;
        EXPECT_NEAR(rgba[20 * 256 + 50 * 4 + 3], 255, 2) << name;
    }
}

TEST(ClipWriter, gifsHaveTheirColoursAndARateThatPlayersShow) {
    const TemporaryFolder folder;
    const std::string source = folder / "s.mkv", result = folder / "a.gif";
    // Half a second at 60 frames a second, and one more frame after a pause.
    ffmpeg(
        "-f lavfi -i gradients=s=160x96:r=60:d=0.52:c0=red:c1=blue:n=4:seed=3 -vf "
        "\"setpts='(N+if(eq(N,30),30))/60/TB'\" -fps_mode vfr -c:v ffv1 -pix_fmt yuv444p " +
        source);
    std::vector<std::string> notices;
    ASSERT_EQ(rewrite(source, result, {}, &notices), "");
    EXPECT_THAT(notices, ElementsAre("gif shows at most 50 frames a second; one of 2 is written"));
    std::istringstream delays(ffprobe("-show_entries packet=duration", result));
    int frames = 0, sum = 0, shortest = 100;
    for (int delay; delays >> delay; ++frames) {
        shortest = std::min(shortest, delay);
        sum += delay;
    }
    EXPECT_EQ(frames, 16);
    EXPECT_EQ(shortest, 2);  // the last frame, of a 60th
    EXPECT_EQ(sum, 102);
    // The colours of one palette for all pictures come to 33 dB.
    const std::string report = outputOf("ffmpeg -nostdin -i " + result + " -i " + source +
                                        " -lavfi 'psnr=shortest=1' -frames:v 1 -f null - 2>&1");
    EXPECT_GT(std::stod(report.substr(report.find("average:") + 8)), 40);
}

TEST(ClipWriter, encodesSoundThatTheContainerRefuses) {
    const TemporaryFolder folder;
    ffmpeg(
        "-f lavfi -i testsrc2=s=64x48:d=1 -f lavfi -i sine=440:r=48000:d=1 -map 0 -map 1 -c:v libx264 -c:a "
        "pcm_s16le " +
        folder / "a.mkv");
    for (const auto& [name, codec] : {std::pair{"b.mp4", "aac"}, {"b.webm", "opus"}, {"b.ts", "aac"}}) {
        std::vector<std::string> notices;
        ASSERT_EQ(rewrite(folder / "a.mkv", folder / name, {.options = {{"threads", "1"}}}, &notices), "")
            << name;
        EXPECT_THAT(notices, ElementsAre(HasSubstr("sound stream 1 is encoded as"))) << name;
        EXPECT_THAT(ffprobe("-select_streams a:0 -show_entries stream=codec_name", folder / name),
                    testing::StartsWith(codec));
        const std::vector<float> sound = decodedSound(folder / name);
        EXPECT_NEAR(double(sound.size()) / 48000, 1, 0.05) << name;
        EXPECT_NEAR(toneAmplitude(sound, 1, 48000, 440, 12000, 24000), 0.125, 0.01) << name;
    }
}

TEST(ClipWriter, saysWhenAlphaIsLost) {
    const TemporaryFolder folder;
    ffmpeg("-f lavfi -i color=red@0.5:s=64x48:d=0.2,format=rgba -c:v qtrle " + folder / "a.mov");
    std::vector<std::string> notices;
    for (const auto& [name, keeper] : {std::pair{"b.mov", "qtrle does"}, {"b.mkv", "ffv1 does"}}) {
        ASSERT_EQ(rewrite(folder / "a.mov", folder / name, {}, &notices), "");
        EXPECT_THAT(notices, ElementsAre(testing::AllOf(HasSubstr("alpha is lost"), HasSubstr(keeper))));
    }
}

TEST(ClipWriter, writesTheHostsFramesWithTheirTags) {
    const TemporaryFolder folder;
    for (auto [matrix, name] : {std::pair{ColorMatrix::bt709, "bt709"},
                                {ColorMatrix::bt2020, "bt2020nc"},
                                {ColorMatrix::bt601, "unknown"}}) {
        const std::string path = folder / std::string(name) + ".mov";
        ClipVideoFormat video = smallFormat();
        video.color.matrix = matrix;
        video.timeBase = {1, 1000};
        video.rotation = 90;
        std::string error;
        const auto writer = ClipWriter::create(path, video, {.crf = 4}, nullptr, &error);
        ASSERT_TRUE(writer) << error;
        EXPECT_EQ(writer->codecName(), "libx264");
        EXPECT_EQ(writer->frameFormat(), PixelFormat::i420);
        for (std::int64_t time : {0, 7, 40, 500}) EXPECT_TRUE(writer->write(plainFrame(*writer, time)));
        EXPECT_FALSE(std::filesystem::exists(path)) << "there before it is whole";
        ASSERT_TRUE(writer->finish()) << writer->error();

        // Unspecified is what BT.601 of this height is taken for anyway.
        EXPECT_EQ(ffprobe("-show_entries stream=color_space", path), name);
        const auto reader = ClipReader::open(path);
        EXPECT_EQ(reader->info().video.rotation, 90);
        EXPECT_EQ(reader->info().video.color, video.color);
        const double unit = reader->info().video.timeBase.value();
        const auto frames = readAll(*reader);
        ASSERT_EQ(frames.size(), 4u);
        EXPECT_NEAR(double(frames[1].time) * unit, 0.007, 1e-9);
        EXPECT_NEAR(double(frames[3].time) * unit, 0.5, 1e-9);
        std::vector<std::uint8_t> rgba(64 * 48 * 4);
        convertToRGBA8(frames[2].pixels, rgba.data(), 256);
        EXPECT_NEAR(rgba[0], 200, 3);
        EXPECT_NEAR(rgba[1], 40, 3);
        EXPECT_NEAR(rgba[2], 90, 3);
    }
}

TEST(ClipWriter, failuresNameTheirCauseAndLeaveNothing) {
    const TemporaryFolder folder;
    ffmpeg("-f lavfi -i testsrc2=s=64x48:d=0.4 -f lavfi -i sine=d=0.4 -c:v libx264 -c:a pcm_s24le " +
           folder / "source.mov");
    writeBytes(folder / "old.mp4", "precious");
    const struct {
        std::string path;
        ClipWriterOptions options;
        const char* cause;
    } cases[] = {
        {"/dev/full", {.container = "matroska"}, "No space left on device"},
        {folder / "none/a.mkv", {}, "No such file or directory"},
        {folder / "", {.container = "matroska"}, "Is a directory"},
        {folder / "a", {}, "the name does not tell the container"},
        {folder / "a.mkv", {.container = "nonsense"}, "there is no container 'nonsense'"},
        {folder / "a.png", {}, "needs a number in its name"},
        {folder / "a.mkv", {.codec = "nonsense"}, "there is no video encoder 'nonsense'"},
        {folder / "a.mkv", {.codec = "aac"}, "there is no video encoder 'aac'"},
        {folder / "a.mp4", {.codec = "qtrle"}, "takes no qtrle video"},
        {folder / "old.mp4", {.audioCodec = "copy"}, "takes no pcm_s24le sound (stream 1)"},
        {folder / "a.mp4", {.audioCodec = "libx264"}, "there is no sound encoder 'libx264'"},
        {folder / "a.webm", {.audioCodec = "aac"}, "takes no aac sound"},
        {folder / "a.mkv", {.pixelFormat = "nonsense"}, "there is no pixel format 'nonsense'"},
        {folder / "a.mkv", {.pixelFormat = "yuv410p"}, "libx264 does not take yuv410p, but yuv420p"},
        {folder / "a.mkv", {.preset = "nonsense"}, "libx264 has no preset 'nonsense'"},
        {folder / "a.mov", {.codec = "qtrle", .crf = 3}, "qtrle has no crf"},
        {folder / "a.mkv", {.options = {{"nonsense", "1"}}}, "has an option 'nonsense'"},
        {folder / "a.mkv", {.options = {{"rc-lookahead", "nonsense"}}}, "libx264: "},
    };
    testing::internal::CaptureStderr();
    for (const auto& each : cases) {
        const std::string error = rewrite(folder / "source.mov", each.path, each.options);
        EXPECT_THAT(error, HasSubstr("cannot write '" + each.path + "': ")) << each.cause;
        EXPECT_THAT(error, HasSubstr(each.cause));
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(readBytes(folder / "old.mp4"), "precious");
    EXPECT_EQ(folder.fileCount(), 2u);

    // Misuse by the host, and a writer that is given up.
    std::string error;
    auto writer = ClipWriter::create(folder / "old.mp4", smallFormat(), {}, nullptr, &error);
    ASSERT_TRUE(writer) << error;
    EXPECT_TRUE(writer->write(plainFrame(*writer, 5)));
    EXPECT_FALSE(writer->write(plainFrame(*writer, 5)));
    EXPECT_THAT(writer->error(), HasSubstr("do not grow"));
    EXPECT_FALSE(writer->finish());
    writer = ClipWriter::create(folder / "old.mp4", smallFormat());
    EXPECT_FALSE(writer->write(ClipFrame{PixelBuffer::create(PixelFormat::i420, 32, 32), 0, 1}));
    EXPECT_THAT(writer->error(), HasSubstr("a frame of 32x32 in a clip of 64x48"));
    writer = ClipWriter::create(folder / "old.mp4", smallFormat());
    EXPECT_FALSE(writer->finish());
    EXPECT_THAT(writer->error(), HasSubstr("there are no frames"));
    writer = ClipWriter::create(folder / "old.mp4", smallFormat());
    EXPECT_TRUE(writer->write(plainFrame(*writer, 0)));
    writer.reset();
    EXPECT_EQ(readBytes(folder / "old.mp4"), "precious");
    EXPECT_EQ(folder.fileCount(), 2u);
}

}  // namespace
}  // namespace qv
