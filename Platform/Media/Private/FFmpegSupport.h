#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/bsf.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Platform/Media/ClipInfo.h"

/// What the clip classes share of FFmpeg's ways.
namespace qv::ffmpeg {

struct Deleter {
    void operator()(AVFrame* p) const { av_frame_free(&p); }
    void operator()(AVPacket* p) const { av_packet_free(&p); }
    void operator()(AVCodecContext* p) const { avcodec_free_context(&p); }
    void operator()(AVCodecParameters* p) const { avcodec_parameters_free(&p); }
    void operator()(SwsContext* p) const { sws_freeContext(p); }
    void operator()(AVBSFContext* filter) const { av_bsf_free(&filter); }
};
using Frame = std::unique_ptr<AVFrame, Deleter>;
using Packet = std::unique_ptr<AVPacket, Deleter>;
/// A demuxer with its open file.
struct CloseInput {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
};
using InputContext = std::unique_ptr<AVFormatContext, CloseInput>;
using BitstreamFilter = std::unique_ptr<AVBSFContext, Deleter>;
using CodecContext = std::unique_ptr<AVCodecContext, Deleter>;
using CodecParameters = std::unique_ptr<AVCodecParameters, Deleter>;

/// A dictionary that frees itself.
class Dictionary {
  public:
    Dictionary() = default;
    explicit Dictionary(const AVDictionary* source) { av_dict_copy(&entries_, source, 0); }
    Dictionary(Dictionary&& other) noexcept : entries_(std::exchange(other.entries_, nullptr)) {}
    ~Dictionary() { av_dict_free(&entries_); }
    Dictionary& operator=(const Dictionary&) = delete;

    void set(const char* key, const std::string& value) { av_dict_set(&entries_, key, value.c_str(), 0); }
    void remove(const char* key) { av_dict_set(&entries_, key, nullptr, 0); }
    bool has(const char* key) const { return av_dict_get(entries_, key, nullptr, 0) != nullptr; }
    AVDictionary* get() const { return entries_; }
    AVDictionary** address() { return &entries_; }

  private:
    AVDictionary* entries_ = nullptr;
};

/// Receives the error messages of the contexts whose `opaque` points to it; no message is printed any more
/// once the first one exists. Outlives its contexts. Any thread.
class MessageSink {
  public:
    MessageSink();
    ~MessageSink();
    MessageSink(const MessageSink&) = delete;
    MessageSink& operator=(const MessageSink&) = delete;

    /// The first message since the last clear(), on one line, or nothing.
    std::string first() const;
    /// Whether any message since the last clear() said that the file ends too early.
    bool sawCutOff() const;
    void clear();
    /// The cause of a failed call: a known system error in the system's words, else the message, else
    /// FFmpeg's words for the code.
    std::string cause(int code) const;

    void receive(const std::string& message);

  private:
    mutable std::mutex mutex_;
    std::string first_;
    bool cutOff_ = false;
};

/// Keeps a file from being read that only lists other files, as playlists do: what it names may lie anywhere,
/// and a reader of a live one waits for ever. Outlives its context, which is one that is about to be opened.
class ListRefusal {
  public:
    void watch(AVFormatContext& context);
    /// Whether opening failed for that.
    bool refused() const { return refused_; }
    static constexpr const char* kCause = "it only lists other files, which are not read";

  private:
    const AVFormatContext* context_ = nullptr;
    bool refused_ = false;
};

Rational rational(AVRational value);
AVRational rational(Rational value);

/// Makes colour tags unspecified whose number, which the file gave, is none of the known ones: an enumeration
/// must not hold it.
void dropUnknownTags(AVCodecParameters& parameters);
void dropUnknownTags(AVFrame& frame);

AVPixelFormat storedFormat(PixelFormat format);
/// The format with exactly this layout, if there is one.
std::optional<PixelFormat> sameLayout(AVPixelFormat format);
/// The format that loses least, for frames of any kind.
PixelFormat nearestFormat(AVPixelFormat format, bool fullRange);
bool isFullRange(AVPixelFormat format, AVColorRange range);
bool isRGB(AVPixelFormat format);
bool isGray(AVPixelFormat format);  ///< with alpha or without

/// The matrix to use for a tag; what is unspecified is guessed from the height as players do.
ColorMatrix matrixOf(AVColorSpace tag, int height);
AVColorSpace tagOf(ColorMatrix matrix);

/// Planes of any format, with what is needed to read them.
struct Picture {
    AVPixelFormat format = AV_PIX_FMT_NONE;
    int width = 0, height = 0;
    ColorDescription color;
    std::array<std::uint8_t*, 4> data{};
    std::array<int, 4> rowBytes{};
};
Picture pictureOf(const PixelBuffer& buffer);
Picture pictureOf(const AVFrame& frame, ColorDescription color);

/// Converts between the layouts that have no path of our own, and between sizes.
class FrameScaler {
  public:
    bool convert(const Picture& source, const Picture& destination);

  private:
    std::unique_ptr<SwsContext, Deleter> context_;
    Picture from_, to_;
};

/// A frame that refers to the buffer's planes and keeps them alive, without a copy.
Frame frameOf(const PixelBuffer& buffer);

}  // namespace qv::ffmpeg
