#include "Host/CommandLine/ClipReading.h"

#include <mutex>
#include <set>

#include <fmt/format.h>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/CommandParser.h"
#include "Host/CommandLine/MediaTime.h"
#include "Host/CommandLine/StandardStreams.h"
#include "Platform/Media/PictureSequence.h"

namespace qv::host {

/// The files that a note was written on. Several threads read.
struct ClipReading::Told {
    std::mutex mutex;
    std::set<std::string> paths;

    bool isFirst(const std::string& path) {
        std::scoped_lock lock(mutex);
        return paths.insert(path).second;
    }
};

ClipReading::ClipReading() : told_(std::make_shared<Told>()) {}

void ClipReading::add(const Command& command) {
    command.choice(
        "--deinterlace", deinterlacing_,
        {{"auto", Deinterlacing::automatic}, {"on", Deinterlacing::all}, {"off", Deinterlacing::none}},
        "Whole pictures of interlaced frames; auto by their flag");
    command.option("--input-rate", rate_,
                   "Frames a second of a sequence of pictures, as in_%04d.png, or of raw video; 25 without");
}

void ClipReading::addInputFormat(const Command& command) {
    const CommandOption format = command.option("--input-format", format_.container,
                                                "What the input is, as rawvideo or yuv4mpegpipe; found out");
    command.option("--input-size", size_, "WIDTHxHEIGHT of raw video").needs(format);
    command.option("--input-pix-fmt", format_.pixelFormat, "Pixel format of raw video; yuv420p without")
        .needs(format);
}

ClipReaderOptions ClipReading::inputOptionsFor(const std::string& path, const std::string& mask) const {
    const bool isRaw = format_.container == "rawvideo";
    if (isRaw && size_.empty()) fail(ExitCode::usage, "raw video does not tell its size; --input-size does");
    if (!isRaw && (!size_.empty() || !format_.pixelFormat.empty())) {
        fail(ExitCode::usage, "--input-size and --input-pix-fmt are for --input-format rawvideo, not {}",
             format_.container);
    }
    if (!isRaw && !rate_.empty() && !PictureSequence::unlessFile(path) &&
        !PictureSequence::unlessFile(mask)) {
        fail(ExitCode::usage, "--input-rate is for a sequence of pictures or raw video, which '{}' is not",
             path);
    }
    ClipReaderOptions result = optionsFor(path);
    const Rational rate = result.format.rate;
    result.format = format_;
    result.format.rate = rate;
    if (isRaw) {
        const PixelSize size = parseSize(size_, "--input-size");
        result.format.width = size.width;
        result.format.height = size.height;
    }
    return result;
}

ClipReaderOptions ClipReading::optionsFor(const std::string& path) const {
    ClipReaderOptions result{.deinterlacing = deinterlacing_};
    if (!rate_.empty()) result.format.rate = parseRate("--input-rate", rate_);
    result.onDeinterlacing = [path, told = told_] {
        if (told->isFirst(path)) writeNote(fmt::format("'{}' is deinterlaced", path));
    };
    return result;
}

}  // namespace qv::host
