#include "Platform/Media/Private/StreamCopier.h"

extern "C" {
#include <libavutil/avstring.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cstring>
#include <string_view>

#include <fmt/format.h>

namespace qv {
namespace {

/// Facts about the old file that the new one states for itself.
bool isAboutTheFile(std::string_view key) {
    for (std::string_view own : {"major_brand", "minor_version", "compatible_brands", "encoder", "duration",
                                 "NUMBER_OF_FRAMES", "NUMBER_OF_BYTES", "BPS", "rotate", "alpha_mode"}) {
        if (key.size() == own.size() && av_strncasecmp(key.data(), own.data(), own.size()) == 0) return true;
    }
    return key.starts_with("_STATISTICS_") || key.starts_with("DURATION-") || key.starts_with("BPS-") ||
           key.starts_with("NUMBER_OF_");
}

const char* nameOf(AVMediaType type) {
    switch (type) {
        case AVMEDIA_TYPE_VIDEO:
            return "video";
        case AVMEDIA_TYPE_AUDIO:
            return "sound";
        case AVMEDIA_TYPE_SUBTITLE:
            return "subtitle";
        case AVMEDIA_TYPE_ATTACHMENT:
            return "attachment";
        default:
            return "data";
    }
}

bool isMatroska(const AVOutputFormat& container) {
    return std::string_view(container.name) == "matroska";
}

/// A transport stream takes every codec, but readers know of no such sound in it.
bool holds(const AVOutputFormat& container, AVCodecID id) {
    const AVCodecDescriptor* codec = avcodec_descriptor_get(id);
    const bool unheard = codec && codec->type == AVMEDIA_TYPE_AUDIO &&
                         (id == AV_CODEC_ID_VORBIS || !(codec->props & AV_CODEC_PROP_LOSSY));
    if (std::string_view(container.name) == "mpegts" && unheard && id != AV_CODEC_ID_TRUEHD) return false;
    return avformat_query_codec(&container, id, FF_COMPLIANCE_EXPERIMENTAL) != 0;
}

}  // namespace

bool isQuickTimeFamily(const AVOutputFormat& container) {
    for (std::string_view name : {"mp4", "mov", "ipod", "3gp", "3g2", "psp", "f4v"}) {
        if (name == container.name) return true;
    }
    return false;
}

unsigned StreamCopier::tagFor(const AVOutputFormat& container, const AVCodecParameters& parameters) {
    unsigned known = 0;
    const bool keep = !container.codec_tag ||
                      av_codec_get_id(container.codec_tag, parameters.codec_tag) == parameters.codec_id ||
                      !av_codec_get_tag2(container.codec_tag, parameters.codec_id, &known);
    return keep ? parameters.codec_tag : 0;
}

AVStream* StreamCopier::newStream(AVFormatContext& output, const SourceStreams::Stream& from) {
    AVStream* stream = avformat_new_stream(&output, nullptr);
    if (!stream || avcodec_parameters_copy(stream->codecpar, from.parameters.get()) < 0) return nullptr;
    stream->codecpar->codec_tag = tagFor(*output.oformat, *from.parameters);
    stream->time_base = from.timeBase;
    stream->avg_frame_rate = from.averageFrameRate;
    stream->disposition = from.disposition;
    copyMetadata(stream->metadata, from.metadata);
    copySideData(*stream, from);
    return stream;
}

bool StreamCopier::addStream(AVFormatContext& output, const SourceStreams::Stream& from, int videoStream,
                             const ClipWriterOptions& settings, std::string& cause) {
    const AVMediaType type = from.parameters->codec_type;
    const AVOutputFormat& container = *output.oformat;
    const auto leaveOut = [&] {
        note(fmt::format("{} stream {} ({}) left out: {} does not take it", nameOf(type), from.index,
                         avcodec_get_name(from.parameters->codec_id), container.name));
        return true;
    };
    if (!from.coverPicture.empty()) return addPicture(output, from) || leaveOut();
    if (type == AVMEDIA_TYPE_ATTACHMENT) {
        return (isMatroska(container) && newStream(output, from)) || leaveOut();
    }
    if (type == AVMEDIA_TYPE_VIDEO) {
        note(fmt::format("video stream {} left out: only stream {} is processed", from.index, videoStream));
        return true;
    }
    // The track of the chapters' titles, which are carried as chapters.
    const bool titles = type == AVMEDIA_TYPE_DATA && from.parameters->codec_tag == MKTAG('t', 'e', 'x', 't');
    if (titles && settings.metadata) return true;
    if (type != AVMEDIA_TYPE_AUDIO && type != AVMEDIA_TYPE_SUBTITLE) {
        note(fmt::format("{} stream {} left out: such streams are not copied", nameOf(type), from.index));
        return true;
    }
    if (type == AVMEDIA_TYPE_AUDIO ? !settings.audio : !settings.subtitles) return true;
    const bool silent = container.audio_codec == AV_CODEC_ID_NONE && type == AVMEDIA_TYPE_AUDIO;
    const bool refused = !holds(container, from.parameters->codec_id);
    // No choice of codec would help a container without sound.
    if (silent || (refused && type == AVMEDIA_TYPE_SUBTITLE)) return leaveOut();
    const bool asked = !settings.audioCodec.empty(), copies = settings.audioCodec == "copy";
    if (type == AVMEDIA_TYPE_AUDIO && !copies && (refused || asked))
        return addRecoded(output, from, settings, cause);
    if (refused) {
        cause = fmt::format("the container '{}' takes no {} sound (stream {}); it can be encoded anew",
                            container.name, avcodec_get_name(from.parameters->codec_id), from.index);
        return false;
    }
    const AVStream* stream = newStream(output, from);
    if (!stream) {
        cause = "out of memory";
        return false;
    }
    routes_[from.index] = {stream->index, from.timeBase};
    return true;
}

bool StreamCopier::addRecoded(AVFormatContext& output, const SourceStreams::Stream& from,
                              const ClipWriterOptions& settings, std::string& cause) {
    auto recoder = std::make_unique<AudioRecoder>();
    if (!recoder->open(from, settings, *output.oformat, cause)) return false;
    AVStream* stream = avformat_new_stream(&output, nullptr);
    if (!stream || avcodec_parameters_from_context(stream->codecpar, &recoder->context()) < 0) {
        cause = "out of memory";
        return false;
    }
    stream->time_base = recoder->context().time_base;
    stream->disposition = from.disposition;
    copyMetadata(stream->metadata, from.metadata);
    if (settings.audioCodec.empty()) {
        note(fmt::format("sound stream {} is encoded as {}: {} takes no {}", from.index,
                         recoder->context().codec->name, output.oformat->name,
                         avcodec_get_name(from.parameters->codec_id)));
    }
    routes_[from.index] = {.output = stream->index, .recoder = std::move(recoder)};
    return true;
}

int StreamCopier::recode(AVFormatContext& output, Route& route, const AVPacket* packet, std::string& cause) {
    if (!route.recoder->send(packet, cause)) return AVERROR_EXTERNAL;
    const ffmpeg::Packet made(av_packet_alloc());
    if (!made) return AVERROR(ENOMEM);
    while (route.recoder->receive(*made, cause)) {
        made->stream_index = route.output;
        av_packet_rescale_ts(made.get(), route.recoder->context().time_base,
                             output.streams[route.output]->time_base);
        if (const int code = av_interleaved_write_frame(&output, made.get()); code < 0) return code;
    }
    return cause.empty() ? 0 : AVERROR_EXTERNAL;
}

int StreamCopier::finish(AVFormatContext& output, std::string& cause) {
    for (auto& [index, route] : routes_) {
        const int code = route.recoder ? recode(output, route, nullptr, cause) : 0;
        if (code < 0) return code;
    }
    return 0;
}

bool StreamCopier::addPicture(AVFormatContext& output, const SourceStreams::Stream& from) {
    const bool png = from.parameters->codec_id == AV_CODEC_ID_PNG;
    if (!png && from.parameters->codec_id != AV_CODEC_ID_MJPEG) return false;
    if (!isMatroska(*output.oformat) && !isQuickTimeFamily(*output.oformat)) return false;
    AVStream* stream = newStream(output, from);
    if (!stream) return false;
    if (!isMatroska(*output.oformat)) {
        pictures_.emplace_back(stream->index, from.coverPicture);
        return true;
    }
    // Here a cover is an attached file with a certain name.
    AVCodecParameters& parameters = *stream->codecpar;
    const std::size_t size = from.coverPicture.size();
    auto* bytes = static_cast<std::uint8_t*>(av_mallocz(size + AV_INPUT_BUFFER_PADDING_SIZE));
    if (!bytes) return false;
    std::memcpy(bytes, from.coverPicture.data(), size);
    av_freep(&parameters.extradata);
    parameters.codec_type = AVMEDIA_TYPE_ATTACHMENT;
    parameters.extradata = bytes;
    parameters.extradata_size = int(size);
    stream->disposition = 0;
    av_dict_set(&stream->metadata, "filename", png ? "cover.png" : "cover.jpg", 0);
    av_dict_set(&stream->metadata, "mimetype", png ? "image/png" : "image/jpeg", 0);
    return true;
}

int StreamCopier::writePictures(AVFormatContext& output) {
    for (const auto& [stream, bytes] : pictures_) {
        const ffmpeg::Packet packet(av_packet_alloc());
        if (!packet || av_new_packet(packet.get(), int(bytes.size())) < 0) return AVERROR(ENOMEM);
        std::memcpy(packet->data, bytes.data(), bytes.size());
        packet->stream_index = stream;
        packet->pts = packet->dts = 0;
        packet->flags |= AV_PKT_FLAG_KEY;
        const int code = av_interleaved_write_frame(&output, packet.get());
        if (code < 0) return code;
    }
    return 0;
}

int StreamCopier::write(AVFormatContext& output, const ClipPacket& source, std::string& cause) {
    const auto found = routes_.find(source.stream);
    if (found == routes_.end() || !source.packet) return 0;
    Route& route = found->second;
    if (route.recoder) return recode(output, route, source.packet.get(), cause);
    const AVStream& stream = *output.streams[route.output];
    const AVCodecParameters& parameters = *stream.codecpar;
    const ffmpeg::Packet packet(av_packet_clone(source.packet.get()));
    if (!packet) return AVERROR(ENOMEM);

    const bool hasTimes = packet->dts != AV_NOPTS_VALUE;
    if (parameters.codec_type == AVMEDIA_TYPE_AUDIO && hasTimes && parameters.sample_rate > 0) {
        // Times that the source rounded to milliseconds are put back to whole samples.
        int samples = av_get_audio_frame_duration2(const_cast<AVCodecParameters*>(&parameters), packet->size);
        if (samples <= 0) samples = parameters.frame_size;
        const std::int64_t shift = packet->pts == AV_NOPTS_VALUE ? 0 : packet->pts - packet->dts;
        const std::int64_t time = av_rescale_delta(route.timeBase, packet->dts, {1, parameters.sample_rate},
                                                   samples, &route.soundPosition, stream.time_base);
        packet->duration = av_rescale_q(packet->duration, route.timeBase, stream.time_base);
        packet->dts = time;
        packet->pts = time + av_rescale_q(shift, route.timeBase, stream.time_base);
    } else {
        av_packet_rescale_ts(packet.get(), route.timeBase, stream.time_base);
    }
    // A muxer refuses times that go back.
    if (hasTimes && route.lastTime != AV_NOPTS_VALUE && packet->dts <= route.lastTime &&
        parameters.codec_type != AVMEDIA_TYPE_SUBTITLE) {
        packet->dts = route.lastTime + 1;
        packet->pts = std::max(packet->pts, packet->dts);
    }
    if (hasTimes) route.lastTime = packet->dts;
    packet->stream_index = route.output;
    packet->pos = -1;
    return av_interleaved_write_frame(&output, packet.get());
}

void StreamCopier::copyMetadata(AVDictionary*& to, const ffmpeg::Dictionary& from) {
    const AVDictionaryEntry* entry = nullptr;
    while ((entry = av_dict_get(from.get(), "", entry, AV_DICT_IGNORE_SUFFIX))) {
        if (!isAboutTheFile(entry->key)) av_dict_set(&to, entry->key, entry->value, 0);
    }
}

void StreamCopier::copySideData(AVStream& to, const SourceStreams::Stream& from) {
    for (const SourceStreams::SideData& data : from.sideData) {
        switch (data.type) {
            case AV_PKT_DATA_STEREO3D:
            case AV_PKT_DATA_SPHERICAL:
            case AV_PKT_DATA_MASTERING_DISPLAY_METADATA:
            case AV_PKT_DATA_CONTENT_LIGHT_LEVEL:
            case AV_PKT_DATA_AUDIO_SERVICE_TYPE:
            case AV_PKT_DATA_REPLAYGAIN:
                break;
            default:
                continue;
        }
        if (std::uint8_t* bytes = av_stream_new_side_data(&to, data.type, data.bytes.size())) {
            std::memcpy(bytes, data.bytes.data(), data.bytes.size());
        }
    }
}

bool StreamCopier::copyChapters(AVFormatContext& output, const SourceStreams& source) {
    const std::size_t count = source.chapters.size();
    if (count == 0) return true;
    output.chapters = static_cast<AVChapter**>(av_calloc(count, sizeof(AVChapter*)));
    if (!output.chapters) return false;
    for (const SourceStreams::Chapter& from : source.chapters) {
        auto* to = static_cast<AVChapter*>(av_mallocz(sizeof(AVChapter)));
        if (!to) return false;
        to->id = from.id;
        to->time_base = from.timeBase;
        to->start = from.start;
        to->end = from.end;
        copyMetadata(to->metadata, from.metadata);
        output.chapters[output.nb_chapters++] = to;
    }
    return true;
}

}  // namespace qv
