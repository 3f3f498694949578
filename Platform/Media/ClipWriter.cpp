#include "Platform/Media/ClipWriter.h"

extern "C" {
#include <libavutil/display.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstring>
#include <string_view>

#include <fmt/format.h>

#include "Platform/Foundation/OutputFile.h"
#include "Platform/Media/Bitmap.h"
#include "Platform/Media/PictureSequence.h"
#include "Platform/Media/Private/AudioEncoder.h"
#include "Platform/Media/Private/StreamCopier.h"
#include "Platform/Media/Private/VideoEncoder.h"

namespace qv {
namespace {

constexpr int kOutputBuffer = 256 << 10;
/// FFmpeg's name of what is a file of each frame.
constexpr const char* kPictures = "image2";

int writeBytes(void* file, std::uint8_t* data, int size) {
    auto* output = static_cast<OutputFile*>(file);
    return output->write(data, std::size_t(size)) ? size : AVERROR(output->errorNumber());
}

std::int64_t seekBytes(void* file, std::int64_t position, int origin) {
    auto* output = static_cast<OutputFile*>(file);
    if (origin == AVSEEK_SIZE) return output->size();
    if (origin != SEEK_SET || !output->seek(position)) return AVERROR(EINVAL);
    return position;
}

bool isSound(const SourceStreams::Stream& stream) {
    return stream.parameters && stream.parameters->codec_type == AVMEDIA_TYPE_AUDIO;
}

struct FreeIO {
    void operator()(AVIOContext* io) const {
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};

struct FreeOutput {
    void operator()(AVFormatContext* output) const { avformat_free_context(output); }
};

}  // namespace

struct ClipWriter::State {
    // Declared in the order of their dependence: each outlives what follows.
    ffmpeg::MessageSink messages;
    std::unique_ptr<OutputFile> file;
    std::unique_ptr<AVIOContext, FreeIO> io;
    std::unique_ptr<AVFormatContext, FreeOutput> output;
    VideoEncoder encoder;
    StreamCopier copier;
    ffmpeg::Packet packet{av_packet_alloc()};
    ffmpeg::Packet shown;  ///< the one written last, where frames are repeated
    AVStream* stream = nullptr;
    std::optional<PictureSequence> pictures;   ///< a file of each frame, and no container
    int number = 0;                            ///< of the next one
    std::optional<AudioEncoder> soundEncoder;  ///< of sound that the host makes
    AVStream* soundStream = nullptr;
    std::int64_t soundDelay = 0;               ///< added to its times, in the encoder's time base
    std::optional<std::int64_t> soundBegin;    ///< time of its first packet, with the delay
    std::int64_t soundEnd = 0;                 ///< of its last packet
    AVRational videoUnit{}, soundUnit{};       ///< of packets that are encoded already
    const AVOutputFormat* meantFor = nullptr;  ///< whose streams these are to be
    bool isSoundOnly = false;

    std::string name;  ///< for messages
    std::string error;
    ClipVideoFormat video;
    std::int64_t frameCount = 0;
    bool finished = false;

    bool open(const std::string& path, ClipWriterOptions settings, const SourceStreams* source);
    bool chooseContainer(const std::string& path, const ClipWriterOptions& settings);
    void choosePictures(const std::string& path, ClipWriterOptions& settings);
    bool addStreams(const ClipWriterOptions& settings, const SourceStreams* source);
    bool addVideo(const ClipWriterOptions& settings, const SourceStreams::Stream* source);
    bool addSound(const ClipWriterOptions& settings);
    bool addEncoded(const SourceStreams& from, AVMediaType type, AVStream*& to, AVRational& unit);
    bool writeEncoded(const TimedPacket& packet, const AVStream* to, AVRational unit);
    void addDisplayMatrix();
    void noteLostAlpha();
    void noteLostSound();
    void setPlays(int plays, ffmpeg::Dictionary& options) const;
    bool openOutput(const std::string& path, ffmpeg::Dictionary& options);
    bool checkOptions(const ffmpeg::Dictionary& options);
    void setFinalDelay();
    bool drainEncoder();
    bool repeatFrame(std::int64_t end);
    bool drainSound();
    bool check(int code);
    bool fail(const std::string& cause);
};

bool ClipWriter::State::fail(const std::string& cause) {
    if (error.empty()) error = fileErrorLine("write", name, cause);
    return false;
}

/// The outcome of a call that may write.
bool ClipWriter::State::check(int code) {
    if (file && file->errorNumber() != 0 && error.empty()) error = file->errorLine();
    return error.empty() && (code >= 0 || fail(messages.cause(code)));
}

bool ClipWriter::State::chooseContainer(const std::string& path, const ClipWriterOptions& settings) {
    const bool named = !settings.container.empty();
    const AVOutputFormat* container = pictures ? av_guess_format(kPictures, nullptr, nullptr)
                                      : named  ? av_guess_format(settings.container.c_str(), nullptr, nullptr)
                                               : av_guess_format(nullptr, path.c_str(), nullptr);
    if (!container) {
        return fail(named ? fmt::format("there is no container '{}'", settings.container)
                          : "the name does not tell the container; name one");
    }
    if (!pictures && (container->flags & (AVFMT_NOFILE | AVFMT_NEEDNUMBER))) {
        return fail(PictureSequence::hasSeveralNumbers(path) ? PictureSequence::kOneNumber
                    : std::string_view(container->name) == kPictures
                        ? "a picture of each frame needs a number in its name, as %04d"
                        : fmt::format("the container '{}' is not a single file", container->name));
    }
    AVFormatContext* context = nullptr;
    if (avformat_alloc_output_context2(&context, container, nullptr, path.c_str()) < 0)
        return fail("out of memory");
    output.reset(context);
    output->opaque = &messages;
    // Standards since, such as FLAC in MP4.
    output->strict_std_compliance = FF_COMPLIANCE_EXPERIMENTAL;
    meantFor =
        settings.meantFor.empty() ? container : av_guess_format(settings.meantFor.c_str(), nullptr, nullptr);
    return meantFor || fail(fmt::format("there is no container '{}'", settings.meantFor));
}

/// A name of numbered pictures that tells their kind, unless a container was asked for.
void ClipWriter::State::choosePictures(const std::string& path, ClipWriterOptions& settings) {
    static constexpr std::pair<AVCodecID, const char*> kKinds[] = {{AV_CODEC_ID_PNG, "png"},
                                                                   {AV_CODEC_ID_MJPEG, "mjpeg"},
                                                                   {AV_CODEC_ID_TIFF, "tiff"},
                                                                   {AV_CODEC_ID_BMP, "bmp"},
                                                                   {AV_CODEC_ID_WEBP, "libwebp"}};
    auto sequence = PictureSequence::parse(path);
    if (!sequence || !settings.container.empty()) return;
    const std::string pattern = sequence->pattern();
    const AVOutputFormat* container = av_guess_format(nullptr, pattern.c_str(), nullptr);
    if (!container || std::string_view(container->name) != kPictures) return;
    const AVCodecID id = av_guess_codec(container, nullptr, pattern.c_str(), nullptr, AVMEDIA_TYPE_VIDEO);
    for (const auto& [kind, encoder] : kKinds) {
        if (kind != id) continue;
        pictures = std::move(sequence);
        number = settings.firstNumber;
        if (settings.codec.empty()) settings.codec = encoder;
        return;
    }
}

void ClipWriter::State::addDisplayMatrix() {
    if (meantFor != output->oformat) return;
    std::array<std::int32_t, 9> matrix{};
    if (video.displayMatrix) {
        matrix = *video.displayMatrix;
    } else if (video.rotation != 0) {
        av_display_rotation_set(matrix.data(), video.rotation);
    } else {
        return;
    }
    if (!isQuickTimeFamily(*output->oformat)) {
        if (video.rotation != 0) {
            copier.note(fmt::format("the rotation by {} degrees is lost: {} does not hold it", video.rotation,
                                    output->oformat->name));
        }
        return;
    }
    if (auto* bytes = av_stream_new_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, sizeof matrix)) {
        std::memcpy(bytes, matrix.data(), sizeof matrix);
    }
}

void ClipWriter::State::noteLostAlpha() {
    const AVPixFmtDescriptor* stored = av_pix_fmt_desc_get(encoder.storedFormat());
    if (!video.hasAlpha || !stored || (stored->flags & AV_PIX_FMT_FLAG_ALPHA)) return;
    const std::string_view container = output->oformat->name;
    copier.note(fmt::format("alpha is lost: {} does not keep it as {}, {} does",
                            encoder.context().codec->name, stored->name,
                            pictures                                        ? "png"
                            : container == "matroska" || container == "avi" ? "ffv1"
                            : container == "mov"                            ? "qtrle"
                            : container == "webm"                           ? "libvpx-vp9"
                            : container == "yuv4mpegpipe"                   ? "rawvideo in nut"
                                                                            : "qtrle in a .mov file"));
}

void ClipWriter::State::noteLostSound() {
    copier.note(fmt::format("the sound is left out: {} does not take it",
                            pictures ? "a sequence of pictures" : output->oformat->name));
}

/// The stream of that kind of a file whose packets are copied.
bool ClipWriter::State::addEncoded(const SourceStreams& from, AVMediaType type, AVStream*& to,
                                   AVRational& unit) {
    const auto isWanted = [&](const SourceStreams::Stream& each) {
        return each.parameters && each.parameters->codec_type == type;
    };
    const auto found = std::ranges::find_if(from.streams, isWanted);
    if (found == from.streams.end()) return fail("what was encoded is not there");
    to = avformat_new_stream(output.get(), nullptr);
    if (!to || avcodec_parameters_copy(to->codecpar, found->parameters.get()) < 0)
        return fail("out of memory");
    const unsigned tag = VideoEncoder::preferredTag(*output->oformat, found->parameters->codec_id);
    to->codecpar->codec_tag = tag ? tag : StreamCopier::tagFor(*output->oformat, *found->parameters);
    to->time_base = unit = found->timeBase;
    return true;
}

bool ClipWriter::State::addVideo(const ClipWriterOptions& settings, const SourceStreams::Stream* source) {
    if (settings.encodedVideo) {
        if (!addEncoded(*settings.encodedVideo, AVMEDIA_TYPE_VIDEO, stream, videoUnit)) return false;
        stream->time_base = videoUnit = ffmpeg::rational(video.timeBase);
        stream->codecpar->sample_aspect_ratio = ffmpeg::rational(video.pixelAspect);
    } else {
        stream = avformat_new_stream(output.get(), nullptr);
        if (!stream || avcodec_parameters_from_context(stream->codecpar, &encoder.context()) < 0)
            return fail("out of memory");
        if (meantFor != output->oformat)
            stream->codecpar->codec_tag = StreamCopier::tagFor(*output->oformat, *stream->codecpar);
        // A hint; the muxer may choose a finer one in writing the header.
        stream->time_base = encoder.context().time_base;
    }
    stream->avg_frame_rate = ffmpeg::rational(video.averageFrameRate);
    stream->sample_aspect_ratio = ffmpeg::rational(video.pixelAspect);
    if (source) {
        stream->disposition = source->disposition;
        StreamCopier::copyMetadata(stream->metadata, source->metadata);
        StreamCopier::copySideData(*stream, *source);
    }
    addDisplayMatrix();
    return true;
}

bool ClipWriter::State::addSound(const ClipWriterOptions& settings) {
    if (settings.encodedSound) {
        if (!addEncoded(*settings.encodedSound, AVMEDIA_TYPE_AUDIO, soundStream, soundUnit)) return false;
        soundStream->disposition = AV_DISPOSITION_DEFAULT;
        return true;
    }
    std::string cause;
    if (!soundEncoder.emplace().open(settings, *meantFor, cause)) return fail(cause);
    const AVCodecContext& context = soundEncoder->context();
    soundStream = avformat_new_stream(output.get(), nullptr);
    if (!soundStream || avcodec_parameters_from_context(soundStream->codecpar, &context) < 0) {
        return fail("out of memory");
    }
    soundStream->time_base = context.time_base;
    soundStream->disposition = AV_DISPOSITION_DEFAULT;
    soundDelay = soundEncoder->delayIn(*output->oformat);
    return true;
}

/// How often it plays, in the container's own way of counting.
void ClipWriter::State::setPlays(int plays, ffmpeg::Dictionary& options) const {
    const AVCodecID kind = output->oformat->video_codec;
    const char* option = kind == AV_CODEC_ID_APNG ? "plays" : "loop";
    const bool moving = kind == AV_CODEC_ID_GIF || kind == AV_CODEC_ID_WEBP || kind == AV_CODEC_ID_APNG;
    if (!moving || options.has(option)) return;
    // Players of a GIF count the repetitions; one that plays once says nothing.
    const bool counts = kind == AV_CODEC_ID_GIF && plays > 0;
    options.set(option, fmt::format("{}", !counts ? plays : plays == 1 ? -1 : plays - 1));
}

bool ClipWriter::State::openOutput(const std::string& path, ffmpeg::Dictionary& options) {
    std::string cause;
    file = OutputFile::open(path, &cause);
    if (!file) {
        error = cause;
        return false;
    }
    auto* buffer = static_cast<unsigned char*>(av_malloc(kOutputBuffer));
    io.reset(avio_alloc_context(buffer, kOutputBuffer, 1, file.get(), nullptr, writeBytes,
                                file->isSeekable() ? seekBytes : nullptr));
    if (!io) return fail("out of memory");
    io->seekable = file->isSeekable() ? AVIO_SEEKABLE_NORMAL : 0;
    output->pb = io.get();
    output->flush_packets = !file->isSeekable();
    if (file->isSeekable()) {
        // Some options make the muxer read its file again.
        av_freep(&output->url);
        output->url = av_strdup(file->writtenPath().c_str());
    } else if (isQuickTimeFamily(*output->oformat) && !options.has("movflags")) {
        options.set("movflags", "frag_keyframe+empty_moov+default_base_moof");
    }
    messages.clear();
    return check(avformat_write_header(output.get(), options.address()));
}

/// None may be left that nobody took.
bool ClipWriter::State::checkOptions(const ffmpeg::Dictionary& options) {
    if (meantFor != output->oformat || !encoder.isOpen()) return true;
    const AVDictionaryEntry* unknown = av_dict_get(options.get(), "", nullptr, AV_DICT_IGNORE_SUFFIX);
    return !unknown || fail(fmt::format("neither {} nor {} has an option '{}'", encoder.context().codec->name,
                                        output->oformat->name, unknown->key));
}

bool ClipWriter::State::open(const std::string& path, ClipWriterOptions settings,
                             const SourceStreams* source) {
    name = path == "-" ? "standard output" : path;
    if (!packet) return fail("out of memory");
    isSoundOnly = video.width == 0 && video.height == 0 && settings.sound.sampleRate > 0;
    if (isSoundOnly) {
        ffmpeg::Dictionary none;
        return chooseContainer(path, settings) && addSound(settings) && openOutput(path, none);
    }
    if (video.width < 1 || video.height < 1 || video.width > kMaximumImageSide ||
        video.height > kMaximumImageSide) {
        return fail(fmt::format("{}x{} is no size for a video", video.width, video.height));
    }
    if (video.timeBase.numerator < 1 || video.timeBase.denominator < 1)
        return fail("the time base is not positive");
    choosePictures(path, settings);
    if (!chooseContainer(path, settings)) return false;

    ffmpeg::Dictionary options;
    for (const auto& [key, value] : settings.options) options.set(key.c_str(), value);
    setPlays(settings.plays, options);
    std::string cause;
    if (!settings.encodedVideo) {
        if (!encoder.open(video, settings, *meantFor, options, cause)) return fail(cause);
        noteLostAlpha();
    }
    if (encoder.frameStep() > 1) {
        copier.note(fmt::format("{} shows at most 50 frames a second; one of {} is written",
                                output->oformat->name, encoder.frameStep()));
    }
    if (pictures) {
        const bool copiesSound = settings.audio && source && std::ranges::any_of(source->streams, isSound);
        if (copiesSound || settings.sound.sampleRate > 0) noteLostSound();
        return checkOptions(options);
    }
    return addStreams(settings, source) && openOutput(path, options) && checkOptions(options) &&
           check(copier.writePictures(*output));
}

bool ClipWriter::State::addStreams(const ClipWriterOptions& settings, const SourceStreams* source) {
    ClipWriterOptions copied = settings;
    const bool makesSound = settings.sound.sampleRate > 0;
    copied.audio = settings.audio && !makesSound;
    if (source) {
        std::string cause;
        const auto place = [&] {
            return addVideo(settings, &source->streams[std::size_t(source->videoStream)]);
        };
        if (!copier.addStreams(*output, *source, copied, place, cause)) return fail(cause);
        if (settings.metadata) {
            StreamCopier::copyMetadata(output->metadata, source->metadata);
            const bool copied = !settings.chapters || StreamCopier::copyChapters(*output, *source);
            if (!copied) return fail("out of memory");
        }
    } else if (!addVideo(settings, nullptr)) {
        return false;
    }
    if (makesSound && settings.audioCodec.empty() && output->oformat->audio_codec == AV_CODEC_ID_NONE) {
        noteLostSound();
        return true;
    }
    return !makesSound || addSound(settings);
}

/// Of a GIF, which would show its last frame as long as the one before.
void ClipWriter::State::setFinalDelay() {
    std::int64_t given = 0;
    const bool unset = av_opt_get_int(output->priv_data, "final_delay", 0, &given) >= 0 && given < 0;
    if (unset) av_opt_set_int(output->priv_data, "final_delay", encoder.finalDelay(), 0);
}

bool ClipWriter::State::drainEncoder() {
    std::string cause;
    while (encoder.receive(*packet, cause)) {
        if (pictures) {
            const auto* bytes = reinterpret_cast<const char*>(packet->data);
            if (!writeWholeFile(pictures->path(number++), {bytes, std::size_t(packet->size)}, &error))
                return false;
            av_packet_unref(packet.get());
            continue;
        }
        packet->stream_index = stream->index;
        av_packet_rescale_ts(packet.get(), encoder.context().time_base, stream->time_base);
        if (encoder.repeatsFrames()) {
            if (!repeatFrame(packet->pts)) return false;
            shown.reset(av_packet_clone(packet.get()));
            if (!shown) return fail("out of memory");
        }
        if (!check(av_interleaved_write_frame(output.get(), packet.get()))) return false;
    }
    return cause.empty() || fail(cause);
}

/// Shows the frame written last until that time, in the stream's time base.
bool ClipWriter::State::repeatFrame(std::int64_t end) {
    while (shown && shown->pts + 1 < end) {
        shown->dts = ++shown->pts;
        const ffmpeg::Packet copy(av_packet_clone(shown.get()));
        if (!copy) return fail("out of memory");
        if (!check(av_interleaved_write_frame(output.get(), copy.get()))) return false;
    }
    return true;
}

bool ClipWriter::State::drainSound() {
    std::string cause;
    while (soundEncoder->receive(*packet, cause)) {
        packet->stream_index = soundStream->index;
        packet->pts += soundDelay;
        packet->dts += soundDelay;
        if (!soundBegin) soundBegin = packet->pts;
        soundEnd = packet->pts + packet->duration;
        av_packet_rescale_ts(packet.get(), soundEncoder->context().time_base, soundStream->time_base);
        if (!check(av_interleaved_write_frame(output.get(), packet.get()))) return false;
    }
    return cause.empty() || fail(cause);
}

ClipWriter::ClipWriter(std::unique_ptr<State> state) : state_(std::move(state)) {}
ClipWriter::~ClipWriter() = default;

std::unique_ptr<ClipWriter> ClipWriter::create(const std::string& path, const ClipVideoFormat& video,
                                               const ClipWriterOptions& options,
                                               std::shared_ptr<const SourceStreams> source,
                                               std::string* error) {
    auto state = std::make_unique<State>();
    state->video = video;
    if (!state->open(path, options, source.get())) {
        if (error) *error = state->error;
        return nullptr;
    }
    return std::unique_ptr<ClipWriter>(new ClipWriter(std::move(state)));
}

PixelBuffer ClipWriter::makeFrame() const {
    return PixelBuffer::create(frameFormat(), state_->video.width, state_->video.height, frameColor());
}

PixelFormat ClipWriter::frameFormat() const {
    return state_->encoder.frameFormat();
}
ColorDescription ClipWriter::frameColor() const {
    return state_->encoder.frameColor();
}
const std::string& ClipWriter::error() const {
    return state_->error;
}
const std::vector<std::string>& ClipWriter::notices() const {
    return state_->copier.notices();
}
std::string ClipWriter::codecName() const {
    return state_->encoder.context().codec->name;
}

std::string ClipWriter::storedPixelFormat() const {
    const char* name = av_get_pix_fmt_name(state_->encoder.storedFormat());
    return name ? name : "";
}

bool ClipWriter::write(const ClipFrame& frame) {
    if (!state_->error.empty() || state_->finished) return false;
    std::string cause;
    if (!state_->encoder.send(frame, cause)) return state_->fail(cause);
    ++state_->frameCount;
    return state_->drainEncoder();
}

bool ClipWriter::write(const ClipPacket& packet) {
    if (!state_->error.empty() || state_->finished) return false;
    if (state_->pictures) return true;
    std::string cause;
    const int code = state_->copier.write(*state_->output, packet, cause);
    return cause.empty() ? state_->check(code) : state_->fail(cause);
}

bool ClipWriter::write(const AudioSamples& samples) {
    State& state = *state_;
    if (!state.error.empty() || state.finished) return false;
    if (!state.soundEncoder) return true;
    std::string cause;
    if (!state.soundEncoder->send(samples, cause)) return state.fail(cause);
    return state.drainSound();
}

bool ClipWriter::State::writeEncoded(const TimedPacket& given, const AVStream* to, AVRational unit) {
    if (!error.empty() || finished || !to || !given.packet.packet) return false;
    const ffmpeg::Packet copy(av_packet_clone(given.packet.packet.get()));
    if (!copy) return fail("out of memory");
    copy->pts = given.time;
    copy->dts = given.decodeTime;
    copy->duration = given.duration;
    copy->flags = given.isKey ? AV_PKT_FLAG_KEY : 0;
    copy->stream_index = to->index;
    copy->pos = -1;
    av_packet_rescale_ts(copy.get(), unit, to->time_base);
    return check(av_interleaved_write_frame(output.get(), copy.get()));
}

bool ClipWriter::writeVideo(const TimedPacket& packet) {
    ++state_->frameCount;
    return state_->writeEncoded(packet, state_->stream, state_->videoUnit);
}

bool ClipWriter::writeSound(const TimedPacket& packet) {
    return state_->writeEncoded(packet, state_->soundStream, state_->soundUnit);
}

std::pair<std::int64_t, std::int64_t> ClipWriter::soundSpan() const {
    return {state_->soundBegin.value_or(0), state_->soundEnd};
}

bool ClipWriter::finish() {
    State& state = *state_;
    if (!state.error.empty() || state.finished) return false;
    state.finished = true;
    if (state.frameCount == 0 && !state.isSoundOnly) return state.fail("there are no frames");
    std::string cause;
    if (state.encoder.isOpen()) {
        if (!state.encoder.sendEnd(cause)) return state.fail(cause);
        if (!state.drainEncoder()) return false;
        if (state.shown && !state.repeatFrame(state.shown->pts + state.shown->duration)) return false;
    }
    if (state.pictures) return true;
    if (state.soundEncoder && (!state.soundEncoder->sendEnd(cause) || !state.drainSound())) {
        return state.fail(cause);
    }
    const int flushed = state.copier.finish(*state.output, cause);
    if (!(cause.empty() ? state.check(flushed) : state.fail(cause))) return false;
    if (state.output->oformat->video_codec == AV_CODEC_ID_GIF) state.setFinalDelay();
    if (!state.check(av_write_trailer(state.output.get()))) return false;
    avio_flush(state.io.get());
    if (!state.check(state.io->error)) return false;
    if (!state.file->commit()) {
        state.error = state.file->errorLine();
        return false;
    }
    return true;
}

}  // namespace qv
