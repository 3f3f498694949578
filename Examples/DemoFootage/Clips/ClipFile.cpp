#include "Examples/DemoFootage/Clips/ClipFile.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <stdexcept>

#include "Platform/Media/PixelConversion.h"

namespace qv::assets {
namespace {

struct Free {
    void operator()(AVCodecContext* p) const { avcodec_free_context(&p); }
    void operator()(AVFrame* p) const { av_frame_free(&p); }
    void operator()(AVPacket* p) const { av_packet_free(&p); }
};
using Codec = std::unique_ptr<AVCodecContext, Free>;
using Frame = std::unique_ptr<AVFrame, Free>;
using Packet = std::unique_ptr<AVPacket, Free>;

}  // namespace

struct ClipFile::State {
    std::string path;
    AVFormatContext* file = nullptr;
    Codec video, audio;
    int frames = 0;
    const StereoSound* sound = nullptr;
    std::size_t soundWritten = 0;  ///< stereo frames

    ~State() {
        if (!file) return;
        if (file->pb) avio_closep(&file->pb);
        avformat_free_context(file);
    }

    void check(int code, const char* doing) const {
        if (code >= 0) return;
        char cause[AV_ERROR_MAX_STRING_SIZE];
        throw std::runtime_error(path + ": " + doing + ": " +
                                 av_make_error_string(cause, sizeof cause, code));
    }

    AVStream* addStream(const Codec& codec) {
        AVStream* stream = avformat_new_stream(file, nullptr);
        if (!stream) check(AVERROR(ENOMEM), "adding a stream");
        check(avcodec_parameters_from_context(stream->codecpar, codec.get()), "adding a stream");
        stream->time_base = codec->time_base;
        return stream;
    }

    Codec makeCodec(const char* name) const {
        const AVCodec* codec = avcodec_find_encoder_by_name(name);
        if (!codec) throw std::runtime_error(path + ": the encoder " + name + " is missing");
        Codec context(avcodec_alloc_context3(codec));
        if (file->oformat->flags & AVFMT_GLOBALHEADER) context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
        context->flags |= AV_CODEC_FLAG_BITEXACT;
        return context;
    }

    void openVideo(int width, int height, int framesPerSecond, int crf) {
        video = makeCodec("libx264");
        video->width = width;
        video->height = height;
        video->pix_fmt = AV_PIX_FMT_YUV420P;
        video->time_base = {1, framesPerSecond};
        video->framerate = {framesPerSecond, 1};
        video->gop_size = framesPerSecond;
        video->colorspace = AVCOL_SPC_BT709;
        video->color_primaries = AVCOL_PRI_BT709;
        video->color_trc = AVCOL_TRC_BT709;
        video->color_range = AVCOL_RANGE_MPEG;
        video->chroma_sample_location = AVCHROMA_LOC_CENTER;
        check(av_opt_set(video->priv_data, "preset", "veryfast", 0), "choosing a preset");
        check(av_opt_set_double(video->priv_data, "crf", crf, 0), "choosing a quality");
        check(avcodec_open2(video.get(), nullptr, nullptr), "opening the video encoder");
        addStream(video)->avg_frame_rate = {framesPerSecond, 1};
    }

    void openAudio() {
        audio = makeCodec("aac");
        audio->sample_rate = StereoSound::kRate;
        audio->ch_layout = AV_CHANNEL_LAYOUT_STEREO;
        audio->sample_fmt = AV_SAMPLE_FMT_FLTP;
        audio->bit_rate = 160000;
        audio->time_base = {1, StereoSound::kRate};
        check(avcodec_open2(audio.get(), nullptr, nullptr), "opening the audio encoder");
        addStream(audio);
    }

    void encode(const Codec& codec, const AVFrame* frame, int stream) {
        check(avcodec_send_frame(codec.get(), frame), "encoding");
        const Packet packet(av_packet_alloc());
        for (;;) {
            const int code = avcodec_receive_packet(codec.get(), packet.get());
            if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) return;
            check(code, "encoding");
            packet->stream_index = stream;
            av_packet_rescale_ts(packet.get(), codec->time_base, file->streams[stream]->time_base);
            check(av_interleaved_write_frame(file, packet.get()), "writing");
        }
    }

    /// Encodes sound up to the time of the next video frame.
    void encodeSoundUntil(std::size_t end) {
        const std::size_t total = sound->samples.size() / 2, size = std::size_t(audio->frame_size);
        while (soundWritten < std::min(end, total)) {
            const std::size_t count = std::min(size, total - soundWritten);
            const Frame frame(av_frame_alloc());
            frame->nb_samples = int(count);
            frame->format = audio->sample_fmt;
            frame->sample_rate = audio->sample_rate;
            check(av_channel_layout_copy(&frame->ch_layout, &audio->ch_layout), "encoding");
            check(av_frame_get_buffer(frame.get(), 0), "encoding");
            for (std::size_t i = 0; i < count; ++i)
                for (std::size_t channel = 0; channel < 2; ++channel)
                    reinterpret_cast<float*>(frame->data[channel])[i] =
                        sound->samples[2 * (soundWritten + i) + channel];
            frame->pts = std::int64_t(soundWritten);
            soundWritten += count;
            encode(audio, frame.get(), 1);
        }
    }
};

ClipFile::ClipFile(const std::string& path, int width, int height, int framesPerSecond,
                   const StereoSound* sound, int crf)
    : state_(std::make_unique<State>()) {
    State& s = *state_;
    s.path = path;
    s.sound = sound;
    av_log_set_level(AV_LOG_ERROR);
    s.check(avformat_alloc_output_context2(&s.file, nullptr, "mp4", path.c_str()), "starting the file");
    s.file->flags |= AVFMT_FLAG_BITEXACT;
    s.openVideo(width, height, framesPerSecond, crf);
    if (sound) s.openAudio();
    s.check(avio_open(&s.file->pb, path.c_str(), AVIO_FLAG_WRITE), "opening the file");
    s.check(avformat_write_header(s.file, nullptr), "writing the header");
}

ClipFile::~ClipFile() = default;

void ClipFile::addFrame(const std::vector<std::uint8_t>& rgba) {
    State& s = *state_;
    const Frame frame(av_frame_alloc());
    frame->width = s.video->width;
    frame->height = s.video->height;
    frame->format = s.video->pix_fmt;
    s.check(av_frame_get_buffer(frame.get(), 0), "encoding");
    std::array<PixelBuffer::Plane, 4> planes;
    for (std::size_t i = 0; i < 3; ++i) planes[i] = {frame->data[i], std::size_t(frame->linesize[i])};
    const auto target = PixelBuffer::wrap(PixelFormat::i420, frame->width, frame->height, {}, planes,
                                          std::make_shared<int>());
    if (!convertFromRGBA8(rgba.data(), std::size_t(frame->width) * 4, target))
        throw std::runtime_error(s.path + ": converting a frame failed");
    frame->pts = s.frames++;
    s.encode(s.video, frame.get(), 0);
    if (s.sound)
        s.encodeSoundUntil(std::size_t(s.frames) * StereoSound::kRate / std::size_t(s.video->framerate.num));
}

void ClipFile::finish() {
    State& s = *state_;
    s.encode(s.video, nullptr, 0);
    if (s.sound) {
        s.encodeSoundUntil(s.sound->samples.size() / 2);
        s.encode(s.audio, nullptr, 1);
    }
    s.check(av_write_trailer(s.file), "completing the file");
    s.check(avio_closep(&s.file->pb), "completing the file");
}

}  // namespace qv::assets
