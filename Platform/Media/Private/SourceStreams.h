#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Media/Private/FFmpegSupport.h"

namespace qv {

/// A copy of what a demuxer knows of its streams, for a muxer that writes them again.
class SourceStreams {
  public:
    struct SideData {
        AVPacketSideDataType type;
        std::vector<std::uint8_t> bytes;
    };
    struct Stream {
        int index = 0;
        ffmpeg::CodecParameters parameters;
        AVRational timeBase{}, averageFrameRate{};
        int disposition = 0;
        ffmpeg::Dictionary metadata;
        std::vector<SideData> sideData;
        std::vector<std::uint8_t> coverPicture;  ///< an encoded picture, of a stream that is just that
    };
    struct Chapter {
        std::int64_t id = 0;
        AVRational timeBase{};
        std::int64_t start = 0, end = 0;
        ffmpeg::Dictionary metadata;
    };

    SourceStreams(const AVFormatContext& input, int videoStream);

    int videoStream;
    std::vector<Stream> streams;
    std::vector<Chapter> chapters;
    ffmpeg::Dictionary metadata;
};

/// Whether a stream's packets are handed on: sound and subtitles.
bool isCopiedStream(const AVStream& stream);

}  // namespace qv
