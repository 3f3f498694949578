#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Media/ClipWriter.h"
#include "Platform/Media/Private/AudioRecoder.h"
#include "Platform/Media/Private/SourceStreams.h"

namespace qv {

/// Carries a source's sound, subtitles, cover pictures, attachments, chapters and metadata over to an output.
class StreamCopier {
  public:
    /// Adds the streams to `output`, in the source's order, with `addVideo` called where the video stands.
    /// What cannot be held is left out with a notice, except sound: losing that is a failure, with the cause.
    template <class AddVideo>
    bool addStreams(AVFormatContext& output, const SourceStreams& source, const ClipWriterOptions& settings,
                    AddVideo addVideo, std::string& cause) {
        for (const SourceStreams::Stream& stream : source.streams) {
            if (stream.index == source.videoStream
                    ? !addVideo()
                    : !addStream(output, stream, source.videoStream, settings, cause)) {
                return false;
            }
        }
        return true;
    }
    /// Cover pictures, which precede all other packets. An FFmpeg code.
    int writePictures(AVFormatContext& output);
    /// Hands a packet of the source to the output. An FFmpeg code, with the cause where that does not tell
    /// it.
    int write(AVFormatContext& output, const ClipPacket& packet, std::string& cause);
    /// What encoders of sound still hold, in the same way.
    int finish(AVFormatContext& output, std::string& cause);

    const std::vector<std::string>& notices() const { return notices_; }
    void note(std::string notice) { notices_.push_back(std::move(notice)); }

    /// The name of a stream's codec in the container: its source's, where this container knows it, too; else
    /// 0.
    static unsigned tagFor(const AVOutputFormat& container, const AVCodecParameters& parameters);
    /// For the output's stream that takes the place of the source's video, and for the whole.
    static void copyMetadata(AVDictionary*& to, const ffmpeg::Dictionary& from);
    static void copySideData(AVStream& to, const SourceStreams::Stream& from);
    static bool copyChapters(AVFormatContext& output, const SourceStreams& source);

  private:
    struct Route {
        int output = -1;
        AVRational timeBase{};
        std::int64_t lastTime = AV_NOPTS_VALUE;
        std::int64_t soundPosition = AV_NOPTS_VALUE;      ///< of av_rescale_delta
        std::unique_ptr<AudioRecoder> recoder = nullptr;  ///< nil for what is copied
    };

    bool addStream(AVFormatContext& output, const SourceStreams::Stream& from, int videoStream,
                   const ClipWriterOptions& settings, std::string& cause);
    bool addRecoded(AVFormatContext& output, const SourceStreams::Stream& from,
                    const ClipWriterOptions& settings, std::string& cause);
    int recode(AVFormatContext& output, Route& route, const AVPacket* packet, std::string& cause);
    bool addPicture(AVFormatContext& output, const SourceStreams::Stream& from);
    AVStream* newStream(AVFormatContext& output, const SourceStreams::Stream& from);

    std::map<int, Route> routes_;  ///< by the source's stream
    std::vector<std::pair<int, std::vector<std::uint8_t>>> pictures_;
    std::vector<std::string> notices_;
};

/// Whether a container belongs to the QuickTime family.
bool isQuickTimeFamily(const AVOutputFormat& container);

}  // namespace qv
