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

/// The options of commands that write a clip, and what they make of them.
class EncodingOptions {
  public:
    /// `sound` tells whether the clip may have any.
    void add(const Command& command, bool sound = true);

    /// How a clip or a mask is read; a note tells when it is deinterlaced.
    ClipReaderOptions readerOptions(const std::string& input) const;
    bool audio() const { return !noAudio_ && writer_.audioCodec != "none"; }
    bool quiet() const { return quiet_; }
    ProgressStyle progress() const { return progressStyle(lines_, quiet_); }

    /// Fails as usage.
    ClipWriterOptions writerOptions(const std::string& output) const;
    /// A writer, with what it says it cannot hold told on standard error. Fails as output.
    std::unique_ptr<ClipWriter> makeWriter(const std::string& output, const ClipVideoFormat& video,
                                           const ClipWriterOptions& options,
                                           std::shared_ptr<const SourceStreams> source) const;
    /// One line on standard error, unless --quiet was given.
    void note(const std::string& line) const;

  private:
    ClipWriterOptions writer_;
    ClipReading reading_;
    std::vector<std::string> options_;
    std::optional<double> crf_;
    std::string bitRate_, audioBitRate_;
    bool noAudio_ = false, quiet_ = false, lines_ = false;
};

/// Bits per second from "4000000", "4000k" or "4M". `option` names it in the error. Fails as usage.
std::int64_t parseBitRate(const std::string& option, const std::string& text);

/// What a context is to compute in for frames of that kind: floats where 10 bits are at stake.
MTIPixelFormat workingFormat(const ClipVideoFormat& video, const ClipWriter& writer);

}  // namespace qv::host
