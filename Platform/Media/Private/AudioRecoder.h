#pragma once

#include <string>

#include "Platform/Media/Private/AudioEncoder.h"
#include "Platform/Media/Private/SourceStreams.h"

namespace qv {

/// Encodes a source's sound anew from its packets. One thread at a time.
class AudioRecoder {
  public:
    /// The encoder is `settings.audioCodec`, or what suits the container. False with the cause on failure.
    bool open(const SourceStreams::Stream& from, const ClipWriterOptions& settings,
              const AVOutputFormat& container, std::string& cause);

    const AVCodecContext& context() const { return encoder_.context(); }

    /// A packet of the source; nil for the end. What cannot be decoded is silent. False with the cause on
    /// failure.
    bool send(const AVPacket* packet, std::string& cause);
    /// As AudioEncoder::receive(), with times that count as the source's do.
    bool receive(AVPacket& packet, std::string& cause);

  private:
    bool take(const AVFrame& frame, std::string& cause);

    ffmpeg::MessageSink messages_;  // outlives the context that reports to it
    ffmpeg::CodecContext decoder_;
    ffmpeg::Frame frame_{av_frame_alloc()};
    ffmpeg::Resampler resampler_;
    int fromFormat_ = AV_SAMPLE_FMT_NONE;  ///< what the resampler is set up for
    AudioFormat sound_;
    AVRational timeBase_{};
    std::int64_t start_ = AV_NOPTS_VALUE;  ///< time of the first sample, in `timeBase_`
    std::int64_t position_ = 0;            ///< samples since then
    std::int64_t delay_ = 0;               ///< added to times, in the encoder's time base
    AudioEncoder encoder_;
};

}  // namespace qv
