#pragma once

#include <map>
#include <optional>
#include <string>

#include "Platform/Media/ClipWriter.h"
#include "Platform/Media/Private/FFmpegSupport.h"
#include "Platform/Media/Private/FilterGraph.h"
#include "Platform/Media/Private/HardwareFrames.h"

namespace qv {

/// The encoder of a clip's frames.
class VideoEncoder {
  public:
    /// `options` holds the user's further options; those that the encoder takes are removed from it. False
    /// with the cause on failure.
    bool open(const ClipVideoFormat& video, const ClipWriterOptions& settings,
              const AVOutputFormat& container, ffmpeg::Dictionary& options, std::string& cause);

    bool isOpen() const { return bool(context_); }
    const AVCodecContext& context() const { return *context_; }
    /// The name under which a container is to have a codec where that is not its usual one; else 0.
    static unsigned preferredTag(const AVOutputFormat& container, AVCodecID codec);
    /// Also of what lies on a device.
    AVPixelFormat storedFormat() const;
    PixelFormat frameFormat() const { return frameFormat_; }
    ColorDescription frameColor() const { return frameColor_; }
    /// Whether the container says nothing of times, so that each frame has to be repeated until the next.
    bool repeatsFrames() const { return repeatsFrames_; }
    /// One of so many frames is encoded: above 1 where the format cannot show all of them.
    int frameStep() const { return frameStep_; }
    /// How long a GIF shows the frame encoded last, in its own unit.
    std::int64_t finalDelay() const;

    bool send(const ClipFrame& frame, std::string& cause);
    bool sendEnd(std::string& cause);
    /// The next packet, with times in the encoder's time base. False when more frames are needed or none are
    /// left, and on failure, then with the cause.
    bool receive(AVPacket& packet, std::string& cause);

  private:
    bool chooseCodec(const ClipWriterOptions& settings, const AVOutputFormat& container, std::string& cause);
    bool findFormats(const AVOutputFormat& container, std::string& cause);
    bool choosePixelFormat(const ClipVideoFormat& video, const std::string& wanted, std::string& cause);
    void describe(const ClipVideoFormat& video, const AVOutputFormat& container);
    bool setQuality(const ClipWriterOptions& settings, ffmpeg::Dictionary& options, std::string& cause);
    bool openPalette();
    bool openFilters(const std::string& filters, std::string& cause);
    bool comesTooSoon(const ClipFrame& frame) const;
    int encode(AVFrame* frame);
    int pullPalette();
    bool receiveEncoded(AVPacket& packet, std::string& cause);
    ffmpeg::Frame stored(const PixelBuffer& pixels);

    ffmpeg::MessageSink messages_;  // outlives the context that reports to it
    const AVCodec* codec_ = nullptr;
    std::optional<ffmpeg::HardwareFrames> hardware_;  ///< where the encoder takes frames on a device only
    const AVPixelFormat* formats_ = nullptr;          ///< to choose from; nil is any
    const char* taker_ = "";                          ///< whose formats they are, for messages
    ffmpeg::CodecContext context_;
    ffmpeg::BitstreamFilter filters_;  ///< nil without any
    ffmpeg::FrameScaler scaler_;
    std::optional<ffmpeg::FilterGraph>
        palette_;             ///< makes a palette for each frame; none where none is needed
    AVRational timeBase_{};   ///< of the frames
    bool isCounted_ = false;  ///< whether the encoder's times are numbers of frames
    bool repeatsFrames_ = false;
    int frameStep_ = 1;
    PixelFormat frameFormat_ = PixelFormat::i420;
    ColorDescription frameColor_;
    AVPixelFormat pixelFormat_ = AV_PIX_FMT_NONE;  ///< of frames as they are handed on
    std::int64_t lastGiven_ = AV_NOPTS_VALUE;  ///< time of the frame encoded last, in the frames' time base
    std::int64_t lastTime_ = AV_NOPTS_VALUE;   ///< the same in the encoder's
    std::int64_t begin_ = 0, end_ = 0;         ///< of the clip, in the encoder's
    std::map<std::int64_t, std::int64_t> durations_;  ///< by time, of frames that are still in the encoder
};

}  // namespace qv
