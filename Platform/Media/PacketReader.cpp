#include "Platform/Media/PacketReader.h"

#include <algorithm>

#include <fmt/format.h>

#include "Platform/Foundation/Hash.h"
#include "Platform/Foundation/OutputFile.h"
#include "Platform/Media/Private/FFmpegSupport.h"
#include "Platform/Media/Private/InputLocation.h"
#include "Platform/Media/Private/SourceStreams.h"

namespace qv {

struct PacketReader::State {
    // Outlives the contexts that report to it.
    ffmpeg::MessageSink messages;
    ffmpeg::ListRefusal lists;
    ffmpeg::InputLocation location;
    ffmpeg::InputContext input;
    std::shared_ptr<const SourceStreams> streams;
    int video = -1, sound = -1;
    std::string name, error;

    bool open(const std::string& path);
    bool fail(const std::string& cause) {
        error = fileErrorLine("read", name, cause);
        return false;
    }
};

bool PacketReader::State::open(const std::string& path) {
    name = path;
    std::string cause;
    if (!location.find(path, {}, cause)) return fail(cause);
    AVFormatContext* context = avformat_alloc_context();
    if (!context) return fail("out of memory");
    context->opaque = &messages;
    lists.watch(*context);
    int code =
        avformat_open_input(&context, location.url.c_str(), location.container, location.options.address());
    if (code >= 0) {
        input.reset(context);
        code = avformat_find_stream_info(context, nullptr);
    }
    if (lists.refused()) return fail(lists.kCause);
    if (code < 0) return fail(messages.cause(code));
    const auto best = [&](AVMediaType type) {
        return std::max(-1, av_find_best_stream(context, type, -1, -1, nullptr, 0));
    };
    video = best(AVMEDIA_TYPE_VIDEO);
    sound = best(AVMEDIA_TYPE_AUDIO);
    streams = std::make_shared<SourceStreams>(*context, video);
    messages.clear();
    return true;
}

PacketReader::PacketReader(std::unique_ptr<State> state) : state_(std::move(state)) {}
PacketReader::~PacketReader() = default;

std::unique_ptr<PacketReader> PacketReader::open(const std::string& path, std::string* error) {
    auto state = std::make_unique<State>();
    if (!state->open(path)) {
        if (error) *error = state->error;
        return nullptr;
    }
    return std::unique_ptr<PacketReader>(new PacketReader(std::move(state)));
}

std::shared_ptr<const SourceStreams> PacketReader::streams() const {
    return state_->streams;
}
int PacketReader::videoStream() const {
    return state_->video;
}
int PacketReader::soundStream() const {
    return state_->sound;
}
const std::string& PacketReader::error() const {
    return state_->error;
}

Rational PacketReader::timeBase(int stream) const {
    return ffmpeg::rational(state_->input->streams[stream]->time_base);
}

int PacketReader::soundRate() const {
    return state_->input->streams[state_->sound]->codecpar->sample_rate;
}

std::string PacketReader::decoderConfiguration(int stream) const {
    const AVCodecParameters& parameters = *state_->input->streams[stream]->codecpar;
    return fmt::format("{:016x}", hashOfMemory(parameters.extradata, std::size_t(parameters.extradata_size)));
}

std::optional<TimedPacket> PacketReader::next() {
    if (!state_->error.empty()) return std::nullopt;
    const std::shared_ptr<AVPacket> packet(av_packet_alloc(), ffmpeg::Deleter{});
    const int code = packet ? av_read_frame(state_->input.get(), packet.get()) : AVERROR(ENOMEM);
    if (code < 0) {
        const AVIOContext* bytes = state_->input->pb;
        const bool cutOff = state_->messages.sawCutOff();
        if (code != AVERROR_EOF || cutOff || (bytes && bytes->error < 0))
            state_->fail(cutOff ? "the file is cut off" : state_->messages.cause(code));
        return std::nullopt;
    }
    const bool hasTime = packet->pts != AV_NOPTS_VALUE;
    return TimedPacket{.packet = {packet->stream_index, packet},
                       .time = hasTime ? packet->pts : packet->dts,
                       .decodeTime = packet->dts != AV_NOPTS_VALUE ? packet->dts : packet->pts,
                       .duration = packet->duration,
                       .isKey = bool(packet->flags & AV_PKT_FLAG_KEY)};
}

}  // namespace qv
