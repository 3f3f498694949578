#include "Platform/Media/Private/AudioRecoder.h"

#include <algorithm>

#include <fmt/format.h>

namespace qv {

namespace {
/// Stamps that containers round to milliseconds wander by less than this share of a second.
constexpr int kStampTolerance = 50;
/// No more silence than this many seconds is put into one gap.
constexpr std::int64_t kLongestGap = 600;
}  // namespace

bool AudioRecoder::open(const SourceStreams::Stream& from, const ClipWriterOptions& settings,
                        const AVOutputFormat& container, std::string& cause) {
    const AVCodecParameters& parameters = *from.parameters;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    decoder_.reset(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!decoder_ || !frame_ || avcodec_parameters_to_context(decoder_.get(), &parameters) < 0) {
        cause = fmt::format("no decoder for {}", avcodec_get_name(parameters.codec_id));
        return false;
    }
    decoder_->opaque = &messages_;
    decoder_->pkt_timebase = timeBase_ = from.timeBase;
    if (const int code = avcodec_open2(decoder_.get(), codec, nullptr); code < 0) {
        cause = messages_.cause(code);
        return false;
    }
    const ffmpeg::ChannelLayout layout(decoder_->ch_layout);
    const AVCodecDescriptor* description = avcodec_descriptor_get(parameters.codec_id);
    const bool lossless = description && !(description->props & AV_CODEC_PROP_LOSSY);
    sound_ = {decoder_->sample_rate, layout->nb_channels, layout.name(), lossless};
    if (sound_.sampleRate <= 0 || sound_.channels <= 0) {
        cause = "the sound has no rate or no channels";
        return false;
    }
    ClipWriterOptions encoding = settings;
    encoding.sound = sound_;
    if (!encoder_.open(encoding, container, cause)) return false;
    delay_ = encoder_.delayIn(container);
    return true;
}

bool AudioRecoder::take(const AVFrame& frame, std::string& cause) {
    ffmpeg::ChannelLayout to(sound_.channelLayout, sound_.channels), from(frame.ch_layout);
    if (!resampler_ || frame.format != fromFormat_) {
        SwrContext* context = nullptr;
        swr_alloc_set_opts2(&context, to.get(), AV_SAMPLE_FMT_FLT, sound_.sampleRate, from.get(),
                            AVSampleFormat(frame.format), frame.sample_rate, 0, nullptr);
        resampler_.reset(context);
        fromFormat_ = frame.format;
        if (!context || swr_init(context) < 0) return cause = "the sound cannot be converted", false;
    }
    if (frame.pts != AV_NOPTS_VALUE) {
        if (start_ == AV_NOPTS_VALUE) start_ = frame.pts;
        const std::int64_t due = av_rescale_q(frame.pts - start_, timeBase_, {1, sound_.sampleRate});
        const std::int64_t gap = std::min(due - position_, kLongestGap * sound_.sampleRate);
        if (gap > sound_.sampleRate / kStampTolerance) {
            const AudioSamples silence(std::size_t(gap * sound_.channels));
            if (!encoder_.send(silence, cause)) return false;
            position_ += gap;
        }
    }
    const int room = swr_get_out_samples(resampler_.get(), frame.nb_samples);
    AudioSamples samples(std::size_t(std::max(room, 0)) * std::size_t(sound_.channels));
    auto* out = reinterpret_cast<std::uint8_t*>(samples.data());
    const int made = swr_convert(resampler_.get(), &out, room,
                                 const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples);
    if (made < 0) return cause = "the sound cannot be converted", false;
    samples.resize(std::size_t(made) * std::size_t(sound_.channels));
    position_ += made;
    return encoder_.send(samples, cause);
}

bool AudioRecoder::send(const AVPacket* packet, std::string& cause) {
    avcodec_send_packet(decoder_.get(), packet);
    while (avcodec_receive_frame(decoder_.get(), frame_.get()) == 0) {
        const bool taken = take(*frame_, cause);
        av_frame_unref(frame_.get());
        if (!taken) return false;
    }
    return packet || encoder_.sendEnd(cause);
}

bool AudioRecoder::receive(AVPacket& packet, std::string& cause) {
    if (!encoder_.receive(packet, cause)) return false;
    const std::int64_t start =
        start_ == AV_NOPTS_VALUE ? 0 : av_rescale_q(start_, timeBase_, context().time_base);
    packet.pts += start + delay_;
    packet.dts += start + delay_;
    return true;
}

}  // namespace qv
