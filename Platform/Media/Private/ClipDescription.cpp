#include "Platform/Media/Private/ClipDescription.h"

extern "C" {
#include <libavutil/display.h>
}

#include <cmath>
#include <cstring>
#include <span>
#include <string_view>

namespace qv {
namespace {

using ffmpeg::rational;

std::string valueOf(const AVDictionary* dictionary, const char* key) {
    const AVDictionaryEntry* entry = av_dict_get(dictionary, key, nullptr, 0);
    return entry ? entry->value : "";
}

ClipMetadata metadataOf(const AVDictionary* dictionary) {
    ClipMetadata result;
    const AVDictionaryEntry* entry = nullptr;
    while ((entry = av_dict_get(dictionary, "", entry, AV_DICT_IGNORE_SUFFIX))) {
        result.emplace_back(entry->key, entry->value);
    }
    return result;
}

ClipStreamKind kindOf(AVMediaType type) {
    switch (type) {
        case AVMEDIA_TYPE_VIDEO:
            return ClipStreamKind::video;
        case AVMEDIA_TYPE_AUDIO:
            return ClipStreamKind::audio;
        case AVMEDIA_TYPE_SUBTITLE:
            return ClipStreamKind::subtitle;
        case AVMEDIA_TYPE_ATTACHMENT:
            return ClipStreamKind::attachment;
        default:
            return ClipStreamKind::data;
    }
}

ClipStream describeStream(const AVStream& stream) {
    const AVCodecParameters& parameters = *stream.codecpar;
    ClipStream result;
    result.index = stream.index;
    result.kind = kindOf(parameters.codec_type);
    result.codec = avcodec_get_name(parameters.codec_id);
    result.language = valueOf(stream.metadata, "language");
    result.timeBase = rational(stream.time_base);
    result.bitRate = parameters.bit_rate;
    result.isDefault = stream.disposition & AV_DISPOSITION_DEFAULT;
    result.isCoverPicture = stream.disposition & AV_DISPOSITION_ATTACHED_PIC;
    result.metadata = metadataOf(stream.metadata);
    if (parameters.codec_type == AVMEDIA_TYPE_AUDIO) {
        result.sampleRate = parameters.sample_rate;
        result.channels = parameters.ch_layout.nb_channels;
        char layout[64] = "";
        av_channel_layout_describe(&parameters.ch_layout, layout, sizeof layout);
        result.channelLayout = layout;
    }
    return result;
}

void readDisplayMatrix(const AVStream& stream, ClipVideoFormat& video) {
    std::size_t size = 0;
    const std::uint8_t* data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (!data || size < 9 * sizeof(std::int32_t)) return;
    std::memcpy(video.displayMatrix.emplace().data(), data, 9 * sizeof(std::int32_t));
    const double anticlockwise = av_display_rotation_get(video.displayMatrix->data());
    if (std::isnan(anticlockwise)) return;
    video.rotation = int(std::lround(-anticlockwise / 90.0) * 90 % 360 + 360) % 360;
}

}  // namespace

bool hasAlphaPicture(const AVStream& stream) {
    return valueOf(stream.metadata, "alpha_mode") == "1";
}

ColorDescription clipColor(AVPixelFormat format, AVColorSpace matrix, AVColorRange range, int height) {
    const bool fullRange = ffmpeg::isFullRange(format, range);
    const bool converted =
        ffmpeg::isRGB(format) && PixelBuffer::isYUV(ffmpeg::nearestFormat(format, fullRange));
    return {ffmpeg::matrixOf(matrix, height), fullRange && !converted};
}

ClipInfo describeClip(const std::string& path, AVFormatContext& input, AVStream& stream,
                      const AVCodecContext& decoder) {
    const AVCodecParameters& parameters = *stream.codecpar;
    // Alpha that only the decoder knows of is in its format, not in the stream's.
    const AVPixelFormat stored =
        decoder.pix_fmt != AV_PIX_FMT_NONE ? decoder.pix_fmt : AVPixelFormat(parameters.format);
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(stored);
    const bool twoPictures = hasAlphaPicture(stream);

    ClipInfo info;
    info.path = path;
    info.container = input.iformat->name;
    info.videoStream = stream.index;
    info.videoCodec = avcodec_get_name(parameters.codec_id);
    info.bitRate = input.bit_rate;

    ClipVideoFormat& video = info.video;
    video.width = decoder.width;
    video.height = decoder.height;
    const AVRational aspect = av_guess_sample_aspect_ratio(&input, &stream, nullptr);
    if (aspect.num > 0 && aspect.den > 0) video.pixelAspect = rational(aspect);
    readDisplayMatrix(stream, video);
    video.timeBase = rational(stream.time_base);
    video.averageFrameRate = rational(stream.avg_frame_rate);
    video.realFrameRate = rational(stream.r_frame_rate);
    video.color = clipColor(stored, parameters.color_space, parameters.color_range, decoder.height);
    video.tags = {parameters.color_primaries, parameters.color_trc, parameters.color_space,
                  parameters.chroma_location, parameters.color_range != AVCOL_RANGE_UNSPECIFIED};
    if (description) {
        info.storedPixelFormat = description->name;
        video.bitDepth = description->comp[0].depth;
        video.hasAlpha = twoPictures || (description->flags & AV_PIX_FMT_FLAG_ALPHA);
        video.pixelFormat =
            twoPictures ? PixelFormat::i420Alpha
                        : ffmpeg::nearestFormat(stored, ffmpeg::isFullRange(stored, parameters.color_range));
    }

    const std::string_view container = info.container;
    if (input.start_time != AV_NOPTS_VALUE) info.start = double(input.start_time) / AV_TIME_BASE;
    if (stream.duration > 0) {
        info.duration = double(stream.duration) * av_q2d(stream.time_base);
    } else if (input.duration > 0) {
        info.duration = double(input.duration) / AV_TIME_BASE;
    }
    info.frameCountEstimate = stream.nb_frames > 0
                                  ? stream.nb_frames
                                  : std::llround(info.duration * video.averageFrameRate.value());
    info.isStillPicture = (container.ends_with("_pipe") && stream.nb_frames <= 1) ||
                          (container == "image2" && info.frameCountEstimate <= 1);
    if (info.isStillPicture) info.frameCountEstimate = 1;

    for (const AVStream* each : std::span(input.streams, input.nb_streams)) {
        info.streams.push_back(describeStream(*each));
    }
    for (const AVChapter* chapter : std::span(input.chapters, input.nb_chapters)) {
        info.chapters.push_back({double(chapter->start) * av_q2d(chapter->time_base),
                                 double(chapter->end) * av_q2d(chapter->time_base),
                                 valueOf(chapter->metadata, "title")});
    }
    info.metadata = metadataOf(input.metadata);
    return info;
}

}  // namespace qv
