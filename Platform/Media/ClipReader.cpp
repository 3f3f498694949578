#include "Platform/Media/ClipReader.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <span>
#include <utility>

#include <fmt/format.h>

#include "Platform/Foundation/OutputFile.h"
#include "Platform/Media/Bitmap.h"
#include "Platform/Media/Private/ClipDescription.h"
#include "Platform/Media/Private/Deinterlacer.h"
#include "Platform/Media/Private/FFmpegSupport.h"
#include "Platform/Media/Private/InputLocation.h"
#include "Platform/Media/Private/SourceStreams.h"
#include "Platform/Media/Private/WebPAnimation.h"

namespace qv {
namespace {

/// No codec in use stores a frame farther from its place in display order than this.
constexpr double kReorderedSeconds = 2;

/// Raw video through a pipe says no more once a frame of it is read; false elsewhere.
bool describeRawStream(AVFormatContext& input) {
    if (input.nb_streams != 1 || !input.pb || (input.pb->seekable & AVIO_SEEKABLE_NORMAL)) return false;
    AVStream& stream = *input.streams[0];
    stream.avg_frame_rate = stream.r_frame_rate = av_inv_q(stream.time_base);
    return true;
}

bool isBroken(const AVFrame& frame) {
    return frame.decode_error_flags || (frame.flags & AV_FRAME_FLAG_CORRUPT);
}

}  // namespace

struct ClipReader::State {
    // Outlives the contexts that report to it.
    ffmpeg::MessageSink messages;
    ffmpeg::ListRefusal lists;
    ffmpeg::InputLocation location;
    ffmpeg::InputContext input;
    std::unique_ptr<ffmpeg::WebPAnimation> animation;  ///< gives the frames where it is not nil
    ffmpeg::CodecContext decoder;
    ffmpeg::Packet packet{av_packet_alloc()};
    ffmpeg::Frame frame{av_frame_alloc()};
    ffmpeg::FrameScaler scaler;
    std::unique_ptr<ffmpeg::Deinterlacer> deinterlacer;  ///< from the first interlaced frame on
    ffmpeg::Frame following;  ///< decoded, waits for the deinterlacer to give what it holds
    AVStream* stream = nullptr;
    ClipReaderOptions options;

    std::string name;  ///< for messages
    ClipInfo info;
    std::shared_ptr<const SourceStreams> streams;
    std::string error;

    bool inputEnded = false, ended = false;
    /// Set by damage in the input: frames that are still in the decoder come first.
    std::string damage;
    bool spoilt = false;            ///< by damage that the decoder met: nothing more is taken from it
    std::optional<ClipFrame> last;  ///< the frame decoded last
    std::deque<ClipFrame> pending;  ///< found by seek(), not yet handed out
    std::int64_t packetEnd = 0;     ///< place in the file behind the packet read last
    bool jumped = false;            ///< whether frames are no longer read from the beginning on

    /// Whether a whole picture has come from the decoder.
    bool begun() const { return last || deinterlacer; }

    bool open(const std::string& path, const ClipReaderOptions& wanted);
    bool openInput(const std::string& path);
    bool openDecoder(int threads);
    Item next();
    int receive();
    int receiveDecoded();
    bool deinterlace();
    bool feed(std::optional<ClipPacket>& other);
    bool endsWithinFrame() const;
    std::optional<ClipFrame> finishFrame();
    bool seek(std::int64_t target);
    bool jump(std::int64_t time, int flags);
    bool readUpTo(std::int64_t time);
    std::int64_t nominalDuration() const;
    ffmpeg::InputContext openAgain() const;
    std::optional<std::int64_t> lastPacketEnd() const;
    std::vector<std::int64_t> frameTimes(std::size_t count) const;
    std::optional<std::int64_t> packetEndFrom(AVFormatContext& context, std::int64_t time) const;
    void stop(const std::string& cause);
    bool fail(const std::string& cause);
};

bool ClipReader::State::fail(const std::string& cause) {
    if (error.empty()) error = fileErrorLine("read", name, cause);
    ended = true;
    return false;
}

bool ClipReader::State::open(const std::string& path, const ClipReaderOptions& wanted) {
    options = wanted;
    name = path == "-" ? "standard input" : path;
    if (!packet || !frame) return fail("out of memory");
    if (!openInput(path)) return false;
    for (AVStream* other : std::span(input->streams, input->nb_streams)) {
        const bool wanted = other == stream || (options.packets && isCopiedStream(*other));
        other->discard = wanted ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    if (!openDecoder(options.threads)) return false;
    info = describeClip(path, *input, *stream, *decoder);
    streams = std::make_shared<SourceStreams>(*input, stream->index);
    messages.clear();
    return true;
}

bool ClipReader::State::openInput(const std::string& path) {
    std::string cause;
    if (!location.find(path, options.format, cause)) return fail(cause);

    AVFormatContext* context = avformat_alloc_context();
    if (!context) return fail("out of memory");
    context->opaque = &messages;
    if (location.url.find("://") == std::string::npos) lists.watch(*context);
    ffmpeg::Dictionary openOptions(location.options.get());
    int code = avformat_open_input(&context, location.url.c_str(), location.container, openOptions.address());
    if (code >= 0) {
        input.reset(context);
        const std::string_view kind = context->iformat->name;
        if (ffmpeg::WebPAnimation::isIn(*context)) {
            animation = ffmpeg::WebPAnimation::open(*context);
            if (!animation) return fail("the animation is damaged or cut off");
        }
        const bool described = animation || (kind == "rawvideo" && describeRawStream(*context));
        // The first frame of what comes from another program waits for no second one.
        if (kind == "nut") context->fps_probe_size = 0;
        if (!described) code = avformat_find_stream_info(context, nullptr);
    }
    if (lists.refused()) return fail(lists.kCause);
    if (code < 0) {
        const bool unknown = code == AVERROR_EOF || (code == AVERROR_INVALIDDATA && messages.first().empty());
        const bool announced = !input && !options.format.container.empty();
        if (announced)
            return fail(fmt::format("it is no {}: {}", options.format.container, messages.cause(code)));
        return fail(unknown ? "no known media format" : messages.cause(code));
    }
    const int index = av_find_best_stream(context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (context->nb_streams == 0) return fail("there are no streams in it; it may be cut off");
    if (index < 0) return fail("there is no video in it");
    stream = context->streams[index];
    ffmpeg::dropUnknownTags(*stream->codecpar);
    return true;
}

bool ClipReader::State::openDecoder(int threads) {
    const AVCodecParameters& parameters = *stream->codecpar;
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    // Alpha of these is a second picture beside the first, which only this decoder looks at.
    if (hasAlphaPicture(*stream)) {
        const char* alphaDecoder = parameters.codec_id == AV_CODEC_ID_VP9   ? "libvpx-vp9"
                                   : parameters.codec_id == AV_CODEC_ID_VP8 ? "libvpx"
                                                                            : "";
        if (const AVCodec* found = avcodec_find_decoder_by_name(alphaDecoder)) codec = found;
    }
    if (!codec) return fail(fmt::format("no decoder for {}", avcodec_get_name(parameters.codec_id)));
    decoder.reset(avcodec_alloc_context3(codec));
    if (!decoder || avcodec_parameters_to_context(decoder.get(), &parameters) < 0)
        return fail("out of memory");
    decoder->opaque = &messages;
    decoder->pkt_timebase = stream->time_base;
    decoder->thread_count = threads;
    messages.clear();
    const int code = avcodec_open2(decoder.get(), codec, nullptr);
    if (code < 0) return fail(messages.cause(code));
    if (decoder->width < 1 || decoder->height < 1) return fail("the video has no size");
    if (decoder->width > kMaximumImageSide || decoder->height > kMaximumImageSide) {
        return fail(fmt::format("{}x{} is outside the size limit of {}x{}", decoder->width, decoder->height,
                                kMaximumImageSide, kMaximumImageSide));
    }
    return true;
}

std::int64_t ClipReader::State::nominalDuration() const {
    AVRational rate = stream->avg_frame_rate.num > 0 ? stream->avg_frame_rate : stream->r_frame_rate;
    if (rate.num <= 0 || rate.den <= 0) rate = {25, 1};
    return std::max<std::int64_t>(av_rescale_q(1, av_inv_q(rate), stream->time_base), 1);
}

/// The same input once more, from its beginning; nil where it cannot be read twice.
ffmpeg::InputContext ClipReader::State::openAgain() const {
    const bool canSeek = !input->pb || (input->pb->seekable & AVIO_SEEKABLE_NORMAL);
    AVFormatContext* context = nullptr;
    ffmpeg::Dictionary openOptions(location.options.get());
    if (!canSeek || avformat_open_input(&context, input->url, input->iformat, openOptions.address()) < 0)
        return {};
    ffmpeg::InputContext again(context);
    // Where packets have no durations of their own, they come from what is found out here.
    if (avformat_find_stream_info(context, nullptr) < 0) return {};
    return again;
}

std::optional<std::int64_t> ClipReader::State::lastPacketEnd() const {
    constexpr std::int64_t kLate = std::numeric_limits<std::int64_t>::max() / 4;
    if (animation) return animation->end();
    const ffmpeg::InputContext again = openAgain();
    if (!again) return std::nullopt;
    const std::optional<std::int64_t> last = packetEndFrom(*again, kLate);
    // Where the container has no index, that was the last packet in the file's order, and the one that is
    // shown last precedes it.
    const auto reordered = std::int64_t(kReorderedSeconds / av_q2d(stream->time_base));
    return last ? std::max(last, packetEndFrom(*again, *last - reordered)) : std::nullopt;
}

std::vector<std::int64_t> ClipReader::State::frameTimes(std::size_t count) const {
    // No codec in use stores a frame more of them away from its place in display order.
    constexpr std::size_t kReorderedFrames = 64;
    if (animation) return {};
    const ffmpeg::InputContext again = openAgain();
    const ffmpeg::Packet read(av_packet_alloc());
    if (!again || !read || int(again->nb_streams) <= stream->index) return {};
    std::vector<std::int64_t> times;
    while (times.size() < count + kReorderedFrames && av_read_frame(again.get(), read.get()) >= 0) {
        const bool shown = read->stream_index == stream->index && !(read->flags & AV_PKT_FLAG_DISCARD);
        if (shown && read->pts == AV_NOPTS_VALUE) return {};
        if (shown) times.push_back(read->pts);
        av_packet_unref(read.get());
    }
    std::sort(times.begin(), times.end());
    times.resize(std::min(times.size(), count));
    return times;
}

/// When the last of the frames ends whose packets follow a place in the file.
std::optional<std::int64_t> ClipReader::State::packetEndFrom(AVFormatContext& context,
                                                             std::int64_t time) const {
    const int index = stream->index;
    const ffmpeg::Packet read(av_packet_alloc());
    const bool found = read && int(context.nb_streams) > index &&
                       av_seek_frame(&context, index, time, AVSEEK_FLAG_BACKWARD) >= 0;
    std::optional<std::int64_t> end;
    while (found && av_read_frame(&context, read.get()) >= 0) {
        const bool shown = read->stream_index == index && !(read->flags & AV_PKT_FLAG_DISCARD);
        if (shown && read->pts == AV_NOPTS_VALUE) return std::nullopt;
        if (shown) {
            const std::int64_t duration = read->duration > 0 ? read->duration : nominalDuration();
            end = std::max(end.value_or(read->pts), read->pts + duration);
        }
        av_packet_unref(read.get());
    }
    return end;
}

std::optional<ClipFrame> ClipReader::State::finishFrame() {
    ClipFrame result;
    // Where a jump landed within what the container stamps as one, nothing tells the first frames' times.
    if (frame->best_effort_timestamp == AV_NOPTS_VALUE && jumped && !last) return std::nullopt;
    result.duration = frame->pkt_duration > 0 ? frame->pkt_duration : nominalDuration();
    result.time = frame->best_effort_timestamp;
    if (result.time == AV_NOPTS_VALUE) result.time = last ? last->time + last->duration : 0;
    if (last) result.time = std::max(result.time, last->time + 1);

    const auto stored = AVPixelFormat(frame->format);
    ffmpeg::dropUnknownTags(*frame.get());
    const bool fullRange = ffmpeg::isFullRange(stored, frame->color_range);
    const PixelFormat format = ffmpeg::nearestFormat(stored, fullRange);
    const ColorDescription color = clipColor(stored, frame->colorspace, frame->color_range, decoder->height);
    const std::size_t planes = std::size_t(PixelBuffer::planeCount(format));
    const bool asItIs =
        ffmpeg::sameLayout(stored) == format && frame->width == info.video.width &&
        frame->height == info.video.height &&
        std::all_of(frame->linesize, frame->linesize + planes, [](int bytes) { return bytes > 0; });
    if (asItIs) {
        std::array<PixelBuffer::Plane, 4> wrapped{};
        for (std::size_t i = 0; i < planes; ++i)
            wrapped[i] = {frame->data[i], std::size_t(frame->linesize[i])};
        const std::shared_ptr<AVFrame> owner(av_frame_clone(frame.get()), ffmpeg::Deleter{});
        if (owner) {
            result.pixels = PixelBuffer::wrap(format, frame->width, frame->height, color, wrapped, owner);
        }
    } else {
        result.pixels = PixelBuffer::create(format, info.video.width, info.video.height, color);
        // The scaler reads RGB's range as full whatever the description says.
        const ColorDescription from{color.matrix, fullRange};
        if (result.pixels &&
            !scaler.convert(ffmpeg::pictureOf(*frame, from), ffmpeg::pictureOf(result.pixels))) {
            result.pixels = {};
        }
    }
    av_frame_unref(frame.get());
    if (!result.pixels) {
        fail("a frame of a kind that cannot be converted");
        return std::nullopt;
    }
    last = result;
    return result;
}

/// Notes damage; what the decoder still holds is handed out first.
void ClipReader::State::stop(const std::string& cause) {
    if (!damage.empty()) return;
    damage = cause;
    inputEnded = true;
    avcodec_send_packet(decoder.get(), nullptr);
}

/// Whether bytes follow the last frame at the input's end; this demuxer says nothing of them.
bool ClipReader::State::endsWithinFrame() const {
    return std::string_view(input->iformat->name) == "yuv4mpegpipe" && packetEnd > 0 && input->pb &&
           avio_tell(input->pb) > packetEnd;
}

/// Reads one packet: to the decoder, or into `other`. False at the input's end.
bool ClipReader::State::feed(std::optional<ClipPacket>& other) {
    const int code = av_read_frame(input.get(), packet.get());
    if (code < 0) {
        if (code == AVERROR(EAGAIN)) return true;
        const bool cutOff = messages.sawCutOff() || endsWithinFrame();
        const bool plainEnd = code == AVERROR_EOF && !cutOff && !(input->pb && input->pb->error < 0);
        if (!plainEnd) {
            stop(cutOff ? "the file is cut off" : messages.cause(code));
        } else if (!inputEnded) {
            inputEnded = true;
            avcodec_send_packet(decoder.get(), nullptr);
        }
        return false;
    }
    if (input->pb) packetEnd = avio_tell(input->pb);
    if (packet->stream_index == stream->index) {
        const int sent = avcodec_send_packet(decoder.get(), packet.get());
        // What precedes the first whole picture of a recording cut anywhere is no damage.
        if (sent < 0 && sent != AVERROR(EAGAIN) && begun()) stop(messages.cause(sent));
    } else if (packet->flags & AV_PKT_FLAG_CORRUPT) {
        if (begun()) stop("the file is cut off");
    } else if (packet->stream_index < int(input->nb_streams) &&
               input->streams[packet->stream_index]->discard < AVDISCARD_ALL) {
        const std::shared_ptr<AVPacket> kept(av_packet_alloc(), ffmpeg::Deleter{});
        if (kept) {
            av_packet_move_ref(kept.get(), packet.get());
            other = ClipPacket{kept->stream_index, kept};
        }
    }
    av_packet_unref(packet.get());
    return true;
}

/// Hands the decoded frame to the deinterlacer; false for one that passes by.
bool ClipReader::State::deinterlace() {
    const bool all = options.deinterlacing == Deinterlacing::all;
    const bool meant = all || (options.deinterlacing == Deinterlacing::automatic && frame->interlaced_frame);
    if (!deinterlacer && meant) {
        deinterlacer = ffmpeg::Deinterlacer::create(*frame, all);
        if (deinterlacer && options.onDeinterlacing) std::exchange(options.onDeinterlacing, nullptr)();
    }
    if (!deinterlacer) return false;
    if (deinterlacer->takes(*frame)) return deinterlacer->send(frame.get()) >= 0;
    following.reset(av_frame_alloc());
    if (!following) return false;
    av_frame_move_ref(following.get(), frame.get());
    return deinterlacer->send(nullptr) >= 0;
}

/// As avcodec_receive_frame(), through the deinterlacer.
int ClipReader::State::receive() {
    while (true) {
        if (deinterlacer) {
            const int code = deinterlacer->receive(*frame);
            if (code != AVERROR(EAGAIN) && !(code == AVERROR_EOF && following)) return code;
            if (code == AVERROR_EOF) {
                deinterlacer.reset();
                av_frame_move_ref(frame.get(), std::exchange(following, nullptr).get());
                if (!deinterlace()) return 0;
                continue;
            }
        }
        const int code = receiveDecoded();
        if (code == AVERROR_EOF && deinterlacer) {
            if (const int ended = deinterlacer->send(nullptr); ended < 0) return ended;
            continue;
        }
        if (code != 0 || !deinterlace()) return code;
    }
}

/// As avcodec_receive_frame(); damage is noted and is the end.
int ClipReader::State::receiveDecoded() {
    while (!spoilt) {
        const int code =
            animation ? animation->receive(*frame) : avcodec_receive_frame(decoder.get(), frame.get());
        const bool broken = code == 0 && isBroken(*frame);
        // What precedes the first whole picture of a recording cut anywhere is no damage.
        if (broken && !begun()) continue;
        const bool failed = code < 0 && code != AVERROR(EAGAIN) && code != AVERROR_EOF;
        if (!broken && !(failed && (begun() || inputEnded))) return code;
        // A decoder that goes on after its own error would show what was built on the damage.
        spoilt = true;
        av_frame_unref(frame.get());
        stop(failed                     ? messages.cause(code)
             : messages.first().empty() ? "a damaged picture"
                                        : messages.first());
    }
    return AVERROR_EOF;
}

ClipReader::Item ClipReader::State::next() {
    if (!pending.empty()) {
        ClipFrame found = std::move(pending.front());
        pending.pop_front();
        return found;
    }
    while (!ended) {
        const int code = receive();
        if (code == 0) {
            if (auto result = finishFrame()) return *result;
        } else if (code == AVERROR_EOF) {
            break;
        } else if (code != AVERROR(EAGAIN) && (begun() || inputEnded)) {
            stop(messages.cause(code));
            break;
        } else {
            std::optional<ClipPacket> other;
            feed(other);
            if (other) return *other;
        }
    }
    if (ended) return {};
    ended = true;
    if (!last) {
        fail(!damage.empty()            ? damage
             : messages.first().empty() ? "there is no picture in it"
                                        : messages.first());
    } else if (!damage.empty()) {
        const double end = double(last->time + last->duration) * av_q2d(stream->time_base) - info.start;
        fail(fmt::format("damaged after {:.3f} s: {}", end, damage));
    }
    return {};
}

ClipReader::ClipReader(std::unique_ptr<State> state) : state_(std::move(state)) {}
ClipReader::~ClipReader() = default;

std::unique_ptr<ClipReader> ClipReader::open(const std::string& path, const ClipReaderOptions& options,
                                             std::string* error) {
    auto state = std::make_unique<State>();
    if (!state->open(path, options)) {
        if (error) *error = state->error;
        return nullptr;
    }
    return std::unique_ptr<ClipReader>(new ClipReader(std::move(state)));
}

std::optional<std::int64_t> ClipReader::endTime() const {
    return state_->lastPacketEnd();
}

std::vector<std::int64_t> ClipReader::frameTimes(std::size_t count) const {
    return state_->frameTimes(count);
}

std::optional<std::int64_t> ClipReader::startTime() const {
    const bool cutAnywhere = state_->input->iformat->flags & AVFMT_TS_DISCONT;
    const std::int64_t start = state_->stream->start_time;
    return cutAnywhere || start == AV_NOPTS_VALUE ? std::nullopt : std::optional(start);
}

const ClipInfo& ClipReader::info() const {
    return state_->info;
}
const std::string& ClipReader::error() const {
    return state_->error;
}
std::shared_ptr<const SourceStreams> ClipReader::streams() const {
    return state_->streams;
}
ClipReader::Item ClipReader::next() {
    return state_->next();
}

std::optional<ClipFrame> ClipReader::nextFrame() {
    while (true) {
        Item item = next();
        if (auto* frame = std::get_if<ClipFrame>(&item)) return std::move(*frame);
        if (std::holds_alternative<std::monostate>(item)) return std::nullopt;
    }
}

bool ClipReader::State::jump(std::int64_t time, int flags) {
    if (animation) {
        animation->rewind();
    } else if (av_seek_frame(input.get(), stream->index, time, flags) < 0) {
        return false;
    }
    avcodec_flush_buffers(decoder.get());
    deinterlacer.reset();
    following.reset();
    messages.clear();
    inputEnded = ended = spoilt = false;
    jumped = true;
    error.clear();
    damage.clear();
    last.reset();
    pending.clear();
    return true;
}

/// Collects the frame that is shown at a time, and the one after it, into `pending`. False when there is none
/// that early, or nothing before it that it is made of.
bool ClipReader::State::readUpTo(std::int64_t time) {
    std::deque<ClipFrame> found;
    if (pending.empty() && last) found.push_back(*last);
    int count = int(found.size());
    while (true) {
        Item item = next();
        if (std::holds_alternative<std::monostate>(item)) break;
        auto* read = std::get_if<ClipFrame>(&item);
        if (!read) continue;
        const bool after = read->time > time;
        if (!after) found.clear(), ++count;
        found.push_back(std::move(*read));
        if (after) break;
    }
    pending = std::move(found);
    // What is made of both fields looks at the frame before, too.
    const bool isWhole = !deinterlacer || !jumped || count > 1;
    return !pending.empty() && pending.front().time <= time && isWhole;
}

bool ClipReader::State::seek(std::int64_t target) {
    if (info.isStillPicture) {
        readUpTo(target);
        return !pending.empty();
    }
    const bool canJump = !input->pb || (input->pb->seekable & AVIO_SEEKABLE_NORMAL);
    if (!canJump) return readUpTo(target) || (last && fail("this input cannot go back"));

    // Where the container has no index, a jump may land behind the last key frame before the place.
    const auto second = std::int64_t(1 / av_q2d(stream->time_base)) + 1;
    const auto beginning = std::int64_t(info.start / av_q2d(stream->time_base));
    for (std::int64_t back = 0; target - back > beginning; back = back ? back * 4 : 2 * second) {
        if (jump(target - back, AVSEEK_FLAG_BACKWARD) && readUpTo(target)) return true;
    }
    // Containers of that kind find their very beginning by its place in the file only.
    const bool byPlace = input->iformat->flags & AVFMT_TS_DISCONT;
    const bool back = byPlace ? jump(0, AVSEEK_FLAG_BYTE) || jump(beginning, AVSEEK_FLAG_BACKWARD)
                              : jump(beginning, AVSEEK_FLAG_BACKWARD) || jump(0, AVSEEK_FLAG_BYTE);
    if (back) readUpTo(target);
    return !pending.empty() || fail("this input cannot seek");
}

bool ClipReader::seek(double seconds) {
    if (!state_->error.empty()) return false;
    const double place = (seconds + state_->info.start) / av_q2d(state_->stream->time_base);
    // A time that was rounded to a decimal still means the frame that begins there.
    return state_->seek(std::int64_t(std::floor(std::clamp(place, -1e15, 1e15) + 1e-3)));
}

}  // namespace qv
