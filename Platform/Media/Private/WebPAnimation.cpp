#include "Platform/Media/Private/WebPAnimation.h"

#include <webp/demux.h>

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <algorithm>
#include <array>
#include <string_view>

namespace qv::ffmpeg {
namespace {

std::vector<std::uint8_t> readAll(AVIOContext& io) {
    std::vector<std::uint8_t> bytes;
    constexpr int kPart = 1 << 20;
    for (int read = kPart; read > 0;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + kPart);
        read = avio_read(&io, bytes.data() + before, kPart);
        bytes.resize(before + std::size_t(std::max(read, 0)));
    }
    return bytes;
}

}  // namespace

void WebPAnimation::Free::operator()(WebPAnimDecoder* decoder) const {
    WebPAnimDecoderDelete(decoder);
}

WebPAnimation::~WebPAnimation() = default;

/// By the flag in the extended header.
bool WebPAnimation::isIn(AVFormatContext& input) {
    const bool isWebP =
        input.pb && input.nb_streams == 1 && std::string_view(input.iformat->name) == "webp_pipe";
    if (!isWebP) return false;
    std::array<char, 21> head{};
    const int read = avio_read(input.pb, reinterpret_cast<unsigned char*>(head.data()), int(head.size()));
    const bool extended = std::string_view(head.data() + 12, 4) == "VP8X";
    constexpr char kAnimationFlag = 2;
    return avio_seek(input.pb, 0, SEEK_SET) == 0 && read == int(head.size()) && extended &&
           (head[20] & kAnimationFlag);
}

std::unique_ptr<WebPAnimation> WebPAnimation::open(AVFormatContext& input) {
    std::unique_ptr<WebPAnimation> animation(new WebPAnimation);
    animation->bytes_ = readAll(*input.pb);
    WebPAnimDecoderOptions options;
    WebPAnimInfo info;
    const WebPData data{animation->bytes_.data(), animation->bytes_.size()};
    if (!WebPAnimDecoderOptionsInit(&options)) return nullptr;
    options.color_mode = MODE_RGBA;
    options.use_threads = 1;
    animation->decoder_.reset(WebPAnimDecoderNew(&data, &options));
    if (!animation->decoder_ || !WebPAnimDecoderGetInfo(animation->decoder_.get(), &info)) return nullptr;
    animation->width_ = int(info.canvas_width);
    animation->height_ = int(info.canvas_height);
    animation->frames_ = int(info.frame_count);
    if (!animation->measure()) return nullptr;
    animation->describe(*input.streams[0]);
    return animation;
}

/// Adds the frames' durations up.
bool WebPAnimation::measure() {
    WebPIterator frame{};
    const WebPDemuxer* demuxer = WebPAnimDecoderGetDemuxer(decoder_.get());
    bool found = WebPDemuxGetFrame(demuxer, 1, &frame);
    const bool any = found;
    for (; found; found = WebPDemuxNextFrame(&frame)) end_ += frame.duration;
    WebPDemuxReleaseIterator(&frame);
    return any;
}

void WebPAnimation::describe(AVStream& stream) const {
    stream.codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
    stream.codecpar->codec_id = AV_CODEC_ID_WEBP;
    stream.codecpar->format = AV_PIX_FMT_RGBA;
    stream.codecpar->width = width_;
    stream.codecpar->height = height_;
    stream.time_base = {1, 1000};
    stream.start_time = 0;
    stream.duration = end_;
    stream.nb_frames = frames_;
    if (end_ > 0)
        av_reduce(&stream.avg_frame_rate.num, &stream.avg_frame_rate.den, 1000LL * frames_, end_, 60000);
    stream.r_frame_rate = stream.avg_frame_rate;
}

int WebPAnimation::receive(AVFrame& frame) {
    if (!WebPAnimDecoderHasMoreFrames(decoder_.get())) return AVERROR_EOF;
    std::uint8_t* pixels = nullptr;
    int end = 0;  // of the frame
    if (!WebPAnimDecoderGetNext(decoder_.get(), &pixels, &end)) return AVERROR_INVALIDDATA;
    frame.format = AV_PIX_FMT_RGBA;
    frame.width = width_;
    frame.height = height_;
    if (const int code = av_frame_get_buffer(&frame, 0); code < 0) return code;
    const std::ptrdiff_t row = std::ptrdiff_t(width_) * 4;
    for (int y = 0; y < height_; ++y)
        std::copy_n(pixels + y * row, row, frame.data[0] + std::ptrdiff_t(y) * frame.linesize[0]);
    frame.pts = frame.best_effort_timestamp = time_;
    frame.pkt_duration = end - time_;
    time_ = end;
    return 0;
}

void WebPAnimation::setEnd(AVPacket& file, std::int64_t end) {
    // Of the container: its head, a chunk's, and where a frame's duration lies behind that, in 24 bits.
    constexpr int kFileHead = 12, kChunkHead = 8, kDuration = 12, kLongest = 0xffffff;
    std::uint8_t* last = nullptr;
    std::int64_t time = 0;  // of the last frame found
    int duration = 0;
    for (std::int64_t at = kFileHead; at + kChunkHead + kDuration + 3 < file.size;) {
        std::uint8_t* chunk = file.data + at;
        if (std::equal(chunk, chunk + 4, "ANMF")) {
            last = chunk + kChunkHead + kDuration;
            time += duration;
            duration = int(AV_RL24(last));
        }
        const std::int64_t size = AV_RL32(chunk + 4);
        at += kChunkHead + size + size % 2;
    }
    if (last && end > time) AV_WL24(last, std::uint32_t(std::min<std::int64_t>(end - time, kLongest)));
}

void WebPAnimation::rewind() {
    WebPAnimDecoderReset(decoder_.get());
    time_ = 0;
}

}  // namespace qv::ffmpeg
