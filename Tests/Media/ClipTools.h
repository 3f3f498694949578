#pragma once

#include <gtest/gtest.h>
#include <stdio.h>

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "Platform/Media/ClipReader.h"

namespace qv {

/// Runs a command and gives what it prints, without the last line end.
inline std::string outputOf(const std::string& command) {
    std::string result;
    std::FILE* pipe = ::popen(command.c_str(), "r");
    char part[4096];
    for (std::size_t read; (read = std::fread(part, 1, sizeof part, pipe)) > 0;) result.append(part, read);
    ::pclose(pipe);
    while (!result.empty() && result.back() == '\n') result.pop_back();
    return result;
}

/// Makes a clip with the command-line tool.
inline void ffmpeg(const std::string& arguments) {
    ASSERT_EQ(std::system(("ffmpeg -nostdin -v error -y " + arguments).c_str()), 0) << arguments;
}

/// Values of entries, one packet, frame or stream a line.
inline std::string ffprobe(const std::string& entries, const std::string& path) {
    // The tool ends a line with a comma where a stream has side data.
    return outputOf("ffprobe -v error -of csv=p=0 " + entries + " '" + path + "' | sed 's/,*$//'");
}

/// Time stamps of the video's frames in display order, as the tool decodes them.
inline std::vector<std::int64_t> probedTimes(const std::string& path) {
    std::istringstream lines(ffprobe("-select_streams v:0 -show_entries frame=pts", path));
    std::vector<std::int64_t> times;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) times.push_back(std::stoll(line));
    }
    return times;
}

/// A digest of the packets of the streams chosen, which copying must not change.
inline std::string packetHash(const std::string& path, const std::string& map) {
    return outputOf("ffmpeg -nostdin -v error -i '" + path + "' -map " + map +
                    " -c copy -f streamhash -hash md5 -");
}

inline std::vector<ClipFrame> readAll(ClipReader& reader) {
    std::vector<ClipFrame> frames;
    while (auto frame = reader.nextFrame()) frames.push_back(std::move(*frame));
    return frames;
}

inline std::vector<std::int64_t> timesOf(const std::vector<ClipFrame>& frames) {
    std::vector<std::int64_t> times;
    for (const ClipFrame& frame : frames) times.push_back(frame.time);
    return times;
}

/// The planes' samples without padding, as the tool's raw video has them.
inline std::string samplesOf(const PixelBuffer& buffer) {
    std::string bytes;
    for (int p = 0; p < PixelBuffer::planeCount(buffer.format()); ++p) {
        const PlaneLayout layout =
            PixelBuffer::planeLayout(buffer.format(), p, buffer.width(), buffer.height());
        for (int y = 0; y < layout.height; ++y) {
            const auto* row = buffer.plane(p).data + std::size_t(y) * buffer.plane(p).rowBytes;
            bytes.append(reinterpret_cast<const char*>(row),
                         std::size_t(layout.width * layout.bytesPerSample));
        }
    }
    return bytes;
}

/// Compared as a whole, since the pixels themselves would tell nobody anything.
inline bool sameSamples(const PixelBuffer& a, const PixelBuffer& b) {
    return samplesOf(a) == samplesOf(b);
}

}  // namespace qv
