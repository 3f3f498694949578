#include "Platform/Media/Private/AudioEncoder.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "Platform/Media/Private/StreamCopier.h"

namespace qv {
namespace {

/// Samples of a frame of encoders that take any number.
constexpr int kFreeFrameSize = 4096;
/// Bits per second of AAC, a channel; other encoders have good defaults of their own.
constexpr std::int64_t kAACBitRate = 96000;

/// Codecs for a container, the best first. In Matroska and AVI they are lossless ones, because these cannot
/// say that an encoder's first samples are to be dropped, and the sound would come late by them; in NUT,
/// because it hands on what the next program encodes.
std::vector<AVCodecID> candidates(const AVOutputFormat& container, bool lossless) {
    const std::string_view name = container.name;
    if (name == "matroska") return {AV_CODEC_ID_FLAC};
    if (name == "avi" || name == "nut") return {AV_CODEC_ID_PCM_S16LE};
    if (name == "mov" && lossless) return {AV_CODEC_ID_PCM_S24LE};
    if (isQuickTimeFamily(container) || name == "mpegts") return {AV_CODEC_ID_AAC};
    return {container.audio_codec};
}

}  // namespace

void AudioEncoder::FreeBuffer::operator()(AVAudioFifo* buffer) const {
    av_audio_fifo_free(buffer);
}

bool AudioEncoder::chooseCodec(const ClipWriterOptions& settings, const AVOutputFormat& container,
                               std::string& cause) {
    if (settings.audioCodec == "copy") {
        cause = "sound that is cut or mixed cannot be copied; it needs an encoder";
        return false;
    }
    if (!settings.audioCodec.empty()) {
        codec_ = avcodec_find_encoder_by_name(settings.audioCodec.c_str());
        if (!codec_ || codec_->type != AVMEDIA_TYPE_AUDIO) {
            cause = fmt::format("there is no sound encoder '{}'", settings.audioCodec);
        } else if (avformat_query_codec(&container, codec_->id, FF_COMPLIANCE_NORMAL) == 0) {
            cause = fmt::format("the container '{}' takes no {} sound", container.name, codec_->name);
        }
        return cause.empty();
    }
    for (AVCodecID id : candidates(container, settings.sound.lossless)) {
        // The built-in encoder of this codec is an experiment.
        const AVCodec* opus = id == AV_CODEC_ID_OPUS ? avcodec_find_encoder_by_name("libopus") : nullptr;
        codec_ = opus ? opus : avcodec_find_encoder(id);
        if (codec_) return true;
    }
    cause = fmt::format("the container '{}' takes no sound", container.name);
    return false;
}

/// The sound's own rate and channels, or the next that the encoder takes.
void AudioEncoder::chooseFormat(const AudioFormat& sound) {
    context_->sample_rate = sound.sampleRate;
    if (const int* rate = codec_->supported_samplerates) {
        // The lowest that loses nothing, else the highest.
        int highest = 0, enough = 0;
        for (; *rate; ++rate) {
            highest = std::max(highest, *rate);
            if (*rate >= sound.sampleRate && (enough == 0 || *rate < enough)) enough = *rate;
        }
        context_->sample_rate = enough > 0 ? enough : highest;
    }
    const ffmpeg::ChannelLayout wanted(sound.channelLayout, sound.channels);
    const AVChannelLayout* chosen = codec_->ch_layouts ? nullptr : wanted.get();
    const AVChannelLayout* sameCount = nullptr;
    for (const AVChannelLayout* each = codec_->ch_layouts; each && each->nb_channels > 0; ++each) {
        if (av_channel_layout_compare(each, wanted.get()) == 0) chosen = each;
        if (each->nb_channels == sound.channels && !sameCount) sameCount = each;
    }
    if (!chosen) chosen = sameCount;
    if (chosen) {
        av_channel_layout_copy(&context_->ch_layout, chosen);
    } else {
        av_channel_layout_default(&context_->ch_layout, 2);
    }
    context_->sample_fmt = codec_->sample_fmts ? codec_->sample_fmts[0] : AV_SAMPLE_FMT_FLT;
    // Of a lossless encoder the format that loses least.
    for (const AVSampleFormat* each = codec_->sample_fmts; each && *each != AV_SAMPLE_FMT_NONE; ++each) {
        if (*each == AV_SAMPLE_FMT_S32 && sound.lossless) context_->sample_fmt = *each;
    }
}

std::int64_t AudioEncoder::delayIn(const AVOutputFormat& container) const {
    // Of this codec Matroska says how many of the first samples are to be dropped, and readers take the time
    // of these off the stamps, to which the muxer has not added it.
    const std::string_view name = container.name;
    const bool counts = context_->codec_id == AV_CODEC_ID_OPUS && (name == "webm" || name == "matroska");
    return counts ? context_->initial_padding : 0;
}

bool AudioEncoder::open(const ClipWriterOptions& settings, const AVOutputFormat& container,
                        std::string& cause) {
    if (!chooseCodec(settings, container, cause)) return false;
    context_.reset(avcodec_alloc_context3(codec_));
    if (!context_) {
        cause = "out of memory";
        return false;
    }
    context_->opaque = &messages_;
    chooseFormat(settings.sound);
    context_->time_base = {1, context_->sample_rate};
    if (container.flags & AVFMT_GLOBALHEADER) context_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (settings.audioBitRate > 0) {
        context_->bit_rate = settings.audioBitRate;
    } else if (codec_->id == AV_CODEC_ID_AAC) {
        context_->bit_rate = kAACBitRate * context_->ch_layout.nb_channels;
    }
    if (const int code = avcodec_open2(context_.get(), codec_, nullptr); code < 0) {
        cause = fmt::format("{}: {}", codec_->name, messages_.cause(code));
        return false;
    }
    channels_ = settings.sound.channels;
    ffmpeg::ChannelLayout from(settings.sound.channelLayout, channels_);
    SwrContext* context = nullptr;
    const int code =
        swr_alloc_set_opts2(&context, &context_->ch_layout, context_->sample_fmt, context_->sample_rate,
                            from.get(), AV_SAMPLE_FMT_FLT, settings.sound.sampleRate, 0, nullptr);
    resampler_.reset(context);
    waiting_.reset(av_audio_fifo_alloc(context_->sample_fmt, context_->ch_layout.nb_channels, 1));
    const bool ready = code >= 0 && swr_init(context) >= 0 && waiting_;
    if (!ready) cause = "the sound cannot be converted for the encoder";
    return ready;
}

/// Converts samples, or without any what the resampler still holds, and puts them with those that wait.
bool AudioEncoder::convert(const float* samples, int count, std::string& cause) {
    const ffmpeg::Frame frame(av_frame_alloc());
    const int room = swr_get_out_samples(resampler_.get(), count);
    if (frame && room > 0) {
        frame->format = context_->sample_fmt;
        frame->nb_samples = room;
        av_channel_layout_copy(&frame->ch_layout, &context_->ch_layout);
    }
    bool converted = frame && room >= 0;
    if (converted && room > 0) {
        const auto* from = reinterpret_cast<const std::uint8_t*>(samples);
        converted = av_frame_get_buffer(frame.get(), 0) >= 0;
        const int made = converted ? swr_convert(resampler_.get(), frame->extended_data, room,
                                                 samples ? &from : nullptr, count)
                                   : -1;
        auto** planes = reinterpret_cast<void**>(frame->extended_data);
        converted = made >= 0 && av_audio_fifo_write(waiting_.get(), planes, made) == made;
    }
    if (!converted) cause = "the sound cannot be converted for the encoder";
    return converted;
}

bool AudioEncoder::send(const AudioSamples& samples, std::string& cause) {
    return samples.empty() || convert(samples.data(), int(samples.size() / std::size_t(channels_)), cause);
}

bool AudioEncoder::sendEnd(std::string& cause) {
    ended_ = true;
    return convert(nullptr, 0, cause);
}

/// Hands the encoder one frame of what waits, shorter than its frames only at the end. False when there is
/// none, and on failure.
bool AudioEncoder::sendFrame(bool whole, std::string& cause) {
    const int size = context_->frame_size > 0 ? context_->frame_size : kFreeFrameSize;
    const int available = av_audio_fifo_size(waiting_.get());
    if (available == 0 || (whole && available < size)) return false;
    const int count = std::min(size, available);
    const bool pads = context_->frame_size > 0 && !(codec_->capabilities & AV_CODEC_CAP_SMALL_LAST_FRAME);
    const ffmpeg::Frame frame(av_frame_alloc());
    if (!frame) return cause = "out of memory", false;
    frame->format = context_->sample_fmt;
    frame->nb_samples = pads ? size : count;
    frame->sample_rate = context_->sample_rate;
    frame->pts = position_;
    av_channel_layout_copy(&frame->ch_layout, &context_->ch_layout);
    if (av_frame_get_buffer(frame.get(), 0) < 0) return cause = "out of memory", false;
    av_samples_set_silence(frame->extended_data, count, frame->nb_samples - count,
                           context_->ch_layout.nb_channels, context_->sample_fmt);
    av_audio_fifo_read(waiting_.get(), reinterpret_cast<void**>(frame->extended_data), count);
    position_ += count;
    messages_.clear();
    const int code = avcodec_send_frame(context_.get(), frame.get());
    if (code < 0) cause = fmt::format("{}: {}", codec_->name, messages_.cause(code));
    return code >= 0;
}

bool AudioEncoder::receive(AVPacket& packet, std::string& cause) {
    while (true) {
        const int code = avcodec_receive_packet(context_.get(), &packet);
        if (code == 0) return true;
        if (code == AVERROR_EOF) return false;
        if (code != AVERROR(EAGAIN)) {
            cause = fmt::format("{}: {}", codec_->name, messages_.cause(code));
            return false;
        }
        if (sendFrame(!ended_, cause)) continue;
        if (!cause.empty() || !ended_ || flushed_) return false;
        flushed_ = true;
        avcodec_send_frame(context_.get(), nullptr);
    }
}

}  // namespace qv
