#include "Platform/Media/AudioReader.h"

extern "C" {
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>

#include "Platform/Foundation/OutputFile.h"
#include "Platform/Media/PictureSequence.h"
#include "Platform/Media/Private/AudioSupport.h"
#include "Platform/Media/Private/FFmpegSupport.h"

namespace qv {
namespace {

/// Stamps that containers round to milliseconds wander by less than this around whole samples; what is
/// farther off is a gap or an overlap.
constexpr double kStampTolerance = 0.02;
/// A jump goes to so many seconds before the first sample that is wanted: decoders need a run-up.
constexpr double kRunUp = 1;
/// Silence is handed to the resampler in pieces of this many samples.
constexpr std::int64_t kSilencePiece = 4096;

bool isLossless(AVCodecID id) {
    const AVCodecDescriptor* codec = avcodec_descriptor_get(id);
    return codec && (codec->props & AV_CODEC_PROP_LOSSLESS) && !(codec->props & AV_CODEC_PROP_LOSSY);
}

}  // namespace

struct AudioReader::State {
    // Outlives the contexts that report to it.
    ffmpeg::MessageSink messages;
    ffmpeg::ListRefusal lists;
    ffmpeg::InputContext input;
    ffmpeg::CodecContext decoder;
    ffmpeg::Packet packet{av_packet_alloc()};
    ffmpeg::Frame frame{av_frame_alloc()};
    ffmpeg::Resampler resampler;
    AVStream* stream = nullptr;

    std::string name, error;
    AudioFormat format, wanted;
    double origin = 0;
    /// What the resampler is set up for; frames of another kind make it anew.
    ffmpeg::ChannelLayout fromLayout;
    int fromRate = 0, fromSampleFormat = AV_SAMPLE_FMT_NONE;
    std::int64_t position = 0;  ///< samples of the file since `origin` that are done with; below 0 before it
    AudioSamples ready;         ///< converted, not yet read
    std::size_t readyBegin = 0;
    bool placed = false;  ///< whether the first frame has found its place
    bool decoderEnded = false, ended = false;

    bool open(const std::string& path);
    void jump();
    bool fail(const std::string& cause);
    bool configure();
    bool decodeMore();
    bool feed();
    bool place(std::int64_t& skip);
    bool inject(std::int64_t silence);
    bool convert(const std::uint8_t** planes, std::int64_t count);
};

bool AudioReader::State::fail(const std::string& cause) {
    if (error.empty()) error = fileErrorLine("read", name, cause);
    return false;
}

bool AudioReader::State::open(const std::string& path) {
    name = path;
    if (PictureSequence::unlessFile(path)) return false;
    if (!packet || !frame) return fail("out of memory");
    AVFormatContext* context = avformat_alloc_context();
    if (!context) return fail("out of memory");
    context->opaque = &messages;
    ffmpeg::Dictionary options;
    options.set("pattern_type", "none");
    lists.watch(*context);
    int code = avformat_open_input(&context, ("file:" + path).c_str(), nullptr, options.address());
    if (code >= 0) {
        input.reset(context);
        code = avformat_find_stream_info(context, nullptr);
    }
    if (lists.refused()) return fail(lists.kCause);
    if (code < 0) return fail(messages.cause(code));
    const int index = av_find_best_stream(context, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0) return false;
    for (AVStream* each : std::span(context->streams, context->nb_streams)) each->discard = AVDISCARD_ALL;
    stream = context->streams[index];
    stream->discard = AVDISCARD_DEFAULT;

    const AVCodecParameters& parameters = *stream->codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    if (!codec) return fail(std::string("no decoder for ") + avcodec_get_name(parameters.codec_id));
    decoder.reset(avcodec_alloc_context3(codec));
    if (!decoder || avcodec_parameters_to_context(decoder.get(), &parameters) < 0)
        return fail("out of memory");
    decoder->opaque = &messages;
    decoder->pkt_timebase = stream->time_base;
    messages.clear();
    code = avcodec_open2(decoder.get(), codec, nullptr);
    if (code < 0) return fail(messages.cause(code));
    const ffmpeg::ChannelLayout layout(decoder->ch_layout);
    if (decoder->sample_rate <= 0 || layout->nb_channels <= 0)
        return fail("the sound has no rate or no channels");
    format = {decoder->sample_rate, layout->nb_channels, layout.name(), isLossless(parameters.codec_id)};
    wanted = format;
    return true;
}

/// Passes over what comes long before the origin, where the file's time stamps hold after a jump, too.
void AudioReader::State::jump() {
    const bool guesses = std::string_view(input->iformat->name) == "mp3";
    if (origin <= 2 * kRunUp || guesses) return;
    const auto target = std::int64_t((origin - kRunUp) / av_q2d(stream->time_base));
    av_seek_frame(input.get(), stream->index, target, AVSEEK_FLAG_BACKWARD);
    messages.clear();
}

/// Sets the resampler up for the frame's kind of sound; what the one before still holds is taken out first.
bool AudioReader::State::configure() {
    if (resampler && !convert(nullptr, 0)) return false;
    if (fromRate > 0) position = av_rescale(position, frame->sample_rate, fromRate);
    ffmpeg::ChannelLayout to(wanted.channelLayout, wanted.channels);
    fromLayout = ffmpeg::ChannelLayout(frame->ch_layout);
    fromRate = frame->sample_rate;
    fromSampleFormat = frame->format;
    SwrContext* context = nullptr;
    const int code =
        swr_alloc_set_opts2(&context, to.get(), AV_SAMPLE_FMT_FLT, wanted.sampleRate, fromLayout.get(),
                            AVSampleFormat(fromSampleFormat), fromRate, 0, nullptr);
    resampler.reset(context);
    return (code >= 0 && swr_init(context) >= 0) || fail("sound of a kind that cannot be converted");
}

/// Converts samples to the end of `ready`; no planes: all that the resampler still holds.
bool AudioReader::State::convert(const std::uint8_t** planes, std::int64_t count) {
    const int room = swr_get_out_samples(resampler.get(), int(count));
    if (room < 0) return fail("the sound cannot be converted");
    ready.erase(ready.begin(), ready.begin() + std::ptrdiff_t(readyBegin));
    readyBegin = 0;
    const std::size_t before = ready.size(), channels = std::size_t(wanted.channels);
    ready.resize(before + std::size_t(room) * channels);
    auto* to = reinterpret_cast<std::uint8_t*>(ready.data() + before);
    const int made = swr_convert(resampler.get(), &to, room, planes, int(count));
    ready.resize(before + std::size_t(std::max(made, 0)) * channels);
    return made >= 0 || fail("the sound cannot be converted");
}

/// Decodes one frame. False at the end and after damage.
bool AudioReader::State::decodeMore() {
    while (true) {
        const int code = avcodec_receive_frame(decoder.get(), frame.get());
        if (code == 0) return true;
        if (code == AVERROR_EOF) return false;
        if (code != AVERROR(EAGAIN)) return fail(messages.cause(code));
        const int read = av_read_frame(input.get(), packet.get());
        if (read == AVERROR(EAGAIN)) continue;
        if (read < 0) {
            const bool plainEnd = read == AVERROR_EOF && !messages.sawCutOff();
            if (!plainEnd) return fail(messages.sawCutOff() ? "the file is cut off" : messages.cause(read));
            if (decoderEnded) return false;
            decoderEnded = true;
            avcodec_send_packet(decoder.get(), nullptr);
            continue;
        }
        // A damaged packet is heard as the gap that it leaves.
        if (packet->stream_index == stream->index) avcodec_send_packet(decoder.get(), packet.get());
        av_packet_unref(packet.get());
    }
}

bool AudioReader::State::inject(std::int64_t silence) {
    for (; silence > 0; silence -= kSilencePiece) {
        const std::int64_t piece = std::min(silence, kSilencePiece);
        if (swr_inject_silence(resampler.get(), int(piece)) < 0) return fail("out of memory");
        std::array<const std::uint8_t*, AV_NUM_DATA_POINTERS * 8> nothing{};
        if (!convert(nothing.data(), 0)) return false;
        position += piece;
    }
    return true;
}

/// Brings the frame to its time: silence before it, or `skip` of its samples that lie before the origin or
/// come too late. Counted on from the first frame's stamp, so that rounded stamps later on do not matter.
bool AudioReader::State::place(std::int64_t& skip) {
    std::int64_t off = 0;
    if (frame->best_effort_timestamp != AV_NOPTS_VALUE) {
        const double seconds = double(frame->best_effort_timestamp) * av_q2d(stream->time_base) - origin;
        const std::int64_t due = std::llround(seconds * frame->sample_rate);
        if (!placed) position = std::min<std::int64_t>(due, 0);
        off = due - position;
        const bool inStep = placed && std::abs(double(off)) <= kStampTolerance * frame->sample_rate;
        if (inStep) off = 0;
    }
    placed = true;
    const std::int64_t unheard = std::clamp<std::int64_t>(off, 0, std::max<std::int64_t>(-position, 0));
    position += unheard;
    if (off > unheard && !inject(off - unheard)) return false;
    const std::int64_t late = std::clamp<std::int64_t>(-off, 0, frame->nb_samples);
    const std::int64_t early = std::clamp<std::int64_t>(-position, 0, frame->nb_samples - late);
    position += early;
    skip = late + early;
    return true;
}

/// Hands one decoded frame to the resampler, or its end. False after damage.
bool AudioReader::State::feed() {
    if (!decodeMore()) {
        ended = true;
        return error.empty() && (!resampler || convert(nullptr, 0));
    }
    const bool same = resampler && fromRate == frame->sample_rate && fromSampleFormat == frame->format &&
                      fromLayout == ffmpeg::ChannelLayout(frame->ch_layout);
    if (!same && !configure()) return false;
    std::int64_t skip = 0;
    if (!place(skip)) return false;
    const std::int64_t count = frame->nb_samples - skip;
    if (count > 0) {
        const bool planar = av_sample_fmt_is_planar(AVSampleFormat(frame->format));
        const int channels = frame->ch_layout.nb_channels;
        const std::size_t bytes = std::size_t(av_get_bytes_per_sample(AVSampleFormat(frame->format))) *
                                  std::size_t(planar ? 1 : channels);
        std::vector<const std::uint8_t*> planes;
        for (int i = 0; i < (planar ? channels : 1); ++i) {
            planes.push_back(frame->extended_data[i] + std::size_t(skip) * bytes);
        }
        if (!convert(planes.data(), count)) return false;
        position += count;
    }
    av_frame_unref(frame.get());
    return true;
}

bool AudioReader::convertTo(const AudioFormat& wanted, double origin) {
    state_->wanted = wanted;
    state_->origin = origin;
    state_->jump();
    return ffmpeg::ChannelLayout(wanted.channelLayout, wanted.channels)->nb_channels == wanted.channels;
}

bool AudioReader::read(float* samples, std::int64_t count) {
    State& state = *state_;
    std::size_t wanted = std::size_t(count * state.wanted.channels);
    while (wanted > 0) {
        const std::size_t taken = std::min(wanted, state.ready.size() - state.readyBegin);
        samples = std::copy_n(state.ready.begin() + std::ptrdiff_t(state.readyBegin), taken, samples);
        state.readyBegin += taken;
        wanted -= taken;
        if (wanted > 0 && state.ended) {
            std::fill_n(samples, wanted, 0.0f);
            return true;
        }
        if (wanted > 0 && !state.feed()) return false;
    }
    return true;
}

AudioReader::AudioReader(std::unique_ptr<State> state) : state_(std::move(state)) {}
AudioReader::~AudioReader() = default;

std::unique_ptr<AudioReader> AudioReader::open(const std::string& path, std::string* error) {
    auto state = std::make_unique<State>();
    if (!state->open(path)) {
        if (error) *error = state->error;
        return nullptr;
    }
    return std::unique_ptr<AudioReader>(new AudioReader(std::move(state)));
}

const AudioFormat& AudioReader::format() const {
    return state_->format;
}
const std::string& AudioReader::error() const {
    return state_->error;
}

}  // namespace qv
