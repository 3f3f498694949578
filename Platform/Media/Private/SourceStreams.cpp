#include "Platform/Media/Private/SourceStreams.h"

#include <span>

namespace qv {

SourceStreams::SourceStreams(const AVFormatContext& input, int videoStreamIndex)
    : videoStream(videoStreamIndex), metadata(input.metadata) {
    for (const AVStream* from : std::span(input.streams, input.nb_streams)) {
        Stream& to = streams.emplace_back();
        to.index = from->index;
        to.parameters.reset(avcodec_parameters_alloc());
        if (to.parameters) avcodec_parameters_copy(to.parameters.get(), from->codecpar);
        to.timeBase = from->time_base;
        to.averageFrameRate = from->avg_frame_rate;
        to.disposition = from->disposition;
        av_dict_copy(to.metadata.address(), from->metadata, 0);
        for (const AVPacketSideData& data : std::span(from->side_data, std::size_t(from->nb_side_data))) {
            to.sideData.push_back({data.type, {data.data, data.data + data.size}});
        }
        const AVPacket& picture = from->attached_pic;
        if (from->disposition & AV_DISPOSITION_ATTACHED_PIC && picture.size > 0) {
            to.coverPicture.assign(picture.data, picture.data + picture.size);
        }
    }
    for (const AVChapter* from : std::span(input.chapters, input.nb_chapters)) {
        Chapter& to = chapters.emplace_back();
        to.id = from->id;
        to.timeBase = from->time_base;
        to.start = from->start;
        to.end = from->end;
        av_dict_copy(to.metadata.address(), from->metadata, 0);
    }
}

bool isCopiedStream(const AVStream& stream) {
    const AVMediaType type = stream.codecpar->codec_type;
    return type == AVMEDIA_TYPE_AUDIO || type == AVMEDIA_TYPE_SUBTITLE;
}

}  // namespace qv
