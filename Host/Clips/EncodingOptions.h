#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Host/CommandLine/ClipReading.h"
#include "Host/CommandLine/Progress.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/Media/ClipWriter.h"

namespace qv::host {

class Command;
struct OverwriteOptions;

/// The options of commands that write a clip, and what they make of them.
class EncodingOptions {
  public:
    /// `sound` tells whether the clip may have any.
    void add(const Command& command, bool sound = true);

    /// The options of a command that reads one clip, which may be a stream of raw video.
    void addInputFormat(const Command& command) { reading_.addInputFormat(command); }

    /// How a clip or a mask is read; a note tells when it is deinterlaced. Fails as usage.
    ClipReaderOptions readerOptions(const std::string& input) const;
    /// The same of the one input that addInputFormat() is for; `mask` is read beside it.
    ClipReaderOptions inputOptions(const std::string& input, const std::string& mask = "") const;
    bool audio() const { return !noAudio_ && writer_.audioCodec != "none"; }
    bool quiet() const { return progress_.quiet; }
    int threads() const { return writer_.threads; }
    ProgressStyle progress() const { return progress_.style(); }

    /// As host::checkOutput(); of a sequence of pictures, those that are there. A note tells of them.
    void checkOutput(const std::string& output, const OverwriteOptions& overwrite) const;

    /// Fails as usage.
    ClipWriterOptions writerOptions(const std::string& output) const;
    /// A writer, with what it says it cannot hold told on standard error. Fails as output.
    std::unique_ptr<ClipWriter> makeWriter(const std::string& output, const ClipVideoFormat& video,
                                           const ClipWriterOptions& options,
                                           std::shared_ptr<const SourceStreams> source) const;
    /// One line on standard error, unless --quiet was given.
    void note(const std::string& line) const;

  private:
    ClipReaderOptions told(ClipReaderOptions options) const;

    ClipWriterOptions writer_;
    ClipReading reading_;
    std::vector<std::string> options_;
    std::optional<double> crf_;
    std::string bitRate_, audioBitRate_;
    bool noAudio_ = false;
    ProgressOptions progress_;
};

/// Bits per second from "4000000", "4000k" or "4M". `option` names it in the error. Fails as usage.
std::int64_t parseBitRate(const std::string& option, const std::string& text);

/// What a context is to compute in for frames of that kind: floats where 10 bits are at stake.
MTIPixelFormat workingFormat(const ClipVideoFormat& video, const ClipWriter& writer);

}  // namespace qv::host
