#include "Host/Clips/EncodingOptions.h"

#include <cmath>
#include <cstdlib>

#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/StandardStreams.h"

namespace qv::host {

std::int64_t parseBitRate(const std::string& option, const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    const std::string_view unit(end);
    const double scale = unit == "k" || unit == "K" ? 1e3 : unit == "m" || unit == "M" ? 1e6 : 1;
    const double bits = value * scale;
    const bool valid =
        end != text.c_str() && (unit.empty() || scale > 1) && std::isfinite(bits) && bits >= 1000;
    if (!valid || bits > 1e12)
        fail(ExitCode::usage, "{} takes bits per second, as 4M, not '{}'", option, text);
    return std::int64_t(bits);
}

void EncodingOptions::add(const Command& command) {
    command.option("--format", writer_.container, "Container, as mp4; by the output's name, matroska for -");
    command.option("--codec", writer_.codec, "Encoder, as libx264; what suits the container");
    const CommandOption crf =
        command.option("--crf", crf_, "Constant quality of the encoder; 18 with libx264").range(0.0, 63.0);
    command.option("--bitrate", bitRate_, "Bits per second instead of constant quality, as 4M").excludes(crf);
    command.option("--preset", writer_.preset, "The encoder's speed; veryfast with libx264");
    command.option("--pix-fmt", writer_.pixelFormat, "Stored pixel format, as yuv420p10le; the input's");
    command.option("--threads", writer_.threads, "Threads of decoder and encoder, 0 for one per core")
        .range(0, 256);
    command.option("--option", options_, "name=value for the encoder or container; repeatable");
    reading_.add(command);
    command.option("--audio-codec", writer_.audioCodec,
                   "Encoder of the sound, as aac, or copy or none; what suits the container");
    command.option("--audio-bitrate", audioBitRate_, "Bits per second of the sound, as 192k");
    command.flag("--no-audio", noAudio_, "Leave the sound out");
    command.flag("--progress", lines_, "Progress as lines for programs, on standard error");
    command.flag("--quiet", quiet_, "No progress bar and no notes");
}

ClipReaderOptions EncodingOptions::readerOptions(const std::string& input) const {
    ClipReaderOptions result = reading_.optionsFor(input);
    result.threads = writer_.threads;
    if (quiet_) result.onDeinterlacing = nullptr;
    return result;
}

ClipWriterOptions EncodingOptions::writerOptions(const std::string& output) const {
    ClipWriterOptions result = writer_;
    result.crf = crf_;
    if (!bitRate_.empty()) result.bitRate = parseBitRate("--bitrate", bitRate_);
    if (!audioBitRate_.empty()) result.audioBitRate = parseBitRate("--audio-bitrate", audioBitRate_);
    result.audio = audio();
    if (output == "-" && result.container.empty()) result.container = "matroska";
    for (const std::string& option : options_) {
        const std::size_t equals = option.find('=');
        if (equals == std::string::npos || equals == 0) {
            fail(ExitCode::usage, "--option takes name=value, not '{}'", option);
        }
        result.options.emplace_back(option.substr(0, equals), option.substr(equals + 1));
    }
    return result;
}

std::unique_ptr<ClipWriter> EncodingOptions::makeWriter(const std::string& output,
                                                        const ClipVideoFormat& video,
                                                        const ClipWriterOptions& options,
                                                        std::shared_ptr<const SourceStreams> source) const {
    std::string cause;
    auto writer = ClipWriter::create(output, video, options, std::move(source), &cause);
    if (!writer) fail(ExitCode::output, "{}", cause);
    for (const std::string& notice : writer->notices()) note(notice);
    return writer;
}

void EncodingOptions::note(const std::string& line) const {
    if (!quiet_) writeNote(line);
}

MTIPixelFormat workingFormat(const ClipVideoFormat& video, const ClipWriter& writer) {
    const bool deep = video.bitDepth > 8 || PixelBuffer::bitDepth(writer.frameFormat()) > 8;
    return deep ? MTIPixelFormat::rgba16Float : MTIPixelFormat::rgba8Unorm;
}

}  // namespace qv::host
