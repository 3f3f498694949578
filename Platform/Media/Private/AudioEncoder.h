#pragma once

extern "C" {
#include <libavutil/audio_fifo.h>
}

#include <cstdint>
#include <memory>
#include <string>

#include "Platform/Media/ClipWriter.h"
#include "Platform/Media/Private/AudioSupport.h"
#include "Platform/Media/Private/FFmpegSupport.h"

namespace qv {

/// The encoder of a clip's sound. The first sample's time is 0.
class AudioEncoder {
  public:
    /// For sound of `settings.sound`. Where the encoder does not take that rate or layout, the sound is
    /// resampled to the next. False with the cause on failure.
    bool open(const ClipWriterOptions& settings, const AVOutputFormat& container, std::string& cause);

    const AVCodecContext& context() const { return *context_; }
    /// What is to be added to the packets' times in that container, in the encoder's time base.
    std::int64_t delayIn(const AVOutputFormat& container) const;

    bool send(const AudioSamples& samples, std::string& cause);
    /// No more samples will come.
    bool sendEnd(std::string& cause);
    /// The next packet, with times in the encoder's time base. False when more samples are needed or none are
    /// left, and on failure, then with the cause.
    bool receive(AVPacket& packet, std::string& cause);

  private:
    bool chooseCodec(const ClipWriterOptions& settings, const AVOutputFormat& container, std::string& cause);
    void chooseFormat(const AudioFormat& sound);
    bool convert(const float* samples, int count, std::string& cause);
    bool sendFrame(bool whole, std::string& cause);

    struct FreeBuffer {
        void operator()(AVAudioFifo* buffer) const;
    };

    ffmpeg::MessageSink messages_;  // outlives the context that reports to it
    const AVCodec* codec_ = nullptr;
    ffmpeg::CodecContext context_;
    ffmpeg::Resampler resampler_;
    std::unique_ptr<AVAudioFifo, FreeBuffer> waiting_;  ///< samples as the encoder takes them
    int channels_ = 0;                                  ///< of what is sent
    std::int64_t position_ = 0;                         ///< of the next frame, samples
    bool ended_ = false, flushed_ = false;
};

}  // namespace qv
