#include "Host/Clips/EncodingOptions.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/StandardStreams.h"
#include "Platform/Media/PictureSequence.h"

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

void EncodingOptions::add(const Command& command, bool sound) {
    command.option("-f,--format", writer_.container,
                   "Container, as mp4 or yuv4mpegpipe; by the output's name, matroska for -");
    command.option("--codec", writer_.codec, "Encoder, as libx264; what suits the container");
    const CommandOption crf =
        command.option("--crf", crf_, "Constant quality of the encoder; 18 with libx264").range(0.0, 63.0);
    command.option("--bitrate", bitRate_, "Bits per second instead of constant quality, as 4M").excludes(crf);
    command.option("--preset", writer_.preset, "The encoder's speed; veryfast with libx264");
    command.option("--pix-fmt", writer_.pixelFormat, "Stored pixel format, as yuv420p10le; the input's");
    command
        .option("--threads", writer_.threads,
                "Threads of decoder, encoder and native drawing each, 0 for one per core")
        .range(0, 256);
    command.option("--option", options_, "name=value for the encoder or container; repeatable");
    reading_.add(command);
    if (sound) {
        command.option("--audio-codec", writer_.audioCodec,
                       "Encoder of the sound, as aac, or copy or none; what suits the container");
        command.option("--audio-bitrate", audioBitRate_, "Bits per second of the sound, as 192k");
        command.flag("--no-audio", noAudio_, "Leave the sound out");
    }
    command.option("--loop", writer_.plays, "How often a GIF, WebP or APNG plays, 0 for ever")
        .showDefault()
        .range(0, 65535);
    command.option("--start-number", writer_.firstNumber, "First number of a sequence, as out_%04d.png")
        .showDefault()
        .range(0, 100'000'000);
    progress_.add(command, "No progress bar and no notes");
}

ClipReaderOptions EncodingOptions::told(ClipReaderOptions options) const {
    options.threads = writer_.threads;
    if (quiet()) options.onDeinterlacing = nullptr;
    return options;
}

ClipReaderOptions EncodingOptions::readerOptions(const std::string& input) const {
    return told(reading_.optionsFor(input));
}

ClipReaderOptions EncodingOptions::inputOptions(const std::string& input, const std::string& mask) const {
    return told(reading_.inputOptionsFor(input, mask));
}

void EncodingOptions::checkOutput(const std::string& output, const OverwriteOptions& overwrite) const {
    const auto pictures = PictureSequence::parse(output);
    host::checkOutput(output, overwrite);
    if (!pictures || !writer_.container.empty()) return;
    const std::vector<int> numbers = pictures->numbers();
    const auto first = std::ranges::lower_bound(numbers, writer_.firstNumber);
    if (first == numbers.end()) return;
    host::checkOutput(pictures->path(*first), overwrite);
    note(fmt::format("'{}': there are pictures up to number {}; those that are not replaced stay", output,
                     numbers.back()));
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
    if (!quiet()) writeNote(line);
}

MTIPixelFormat workingFormat(const ClipVideoFormat& video, const ClipWriter& writer) {
    const bool deep = video.bitDepth > 8 || PixelBuffer::bitDepth(writer.frameFormat()) > 8;
    return deep ? MTIPixelFormat::rgba16Float : MTIPixelFormat::rgba8Unorm;
}

}  // namespace qv::host
