#include "Platform/Media/Private/VideoEncoder.h"

#include <algorithm>
#include <cmath>
#include <string_view>

extern "C" {
#include <libavutil/cpu.h>
#include <libavutil/opt.h>
}

#include <fmt/format.h>

#include "Platform/Media/Private/WebPAnimation.h"

namespace qv {
namespace {

using ffmpeg::rational;

bool isX26x(const AVCodec& codec) {
    const std::string_view name = codec.name;
    return name == "libx264" || name == "libx265" || name == "libx264rgb";
}

/// Asked first, since these encoders complain on the terminal.
bool isX26xPreset(std::string_view name) {
    for (std::string_view preset : {"ultrafast", "superfast", "veryfast", "faster", "fast", "medium", "slow",
                                    "slower", "veryslow", "placebo"}) {
        if (name == preset) return true;
    }
    return false;
}

/// Whether the encoder itself has an option of this name.
bool hasOption(const AVCodec& codec, const char* name) {
    const AVClass* type = codec.priv_class;
    return type && av_opt_find(&type, name, nullptr, 0, AV_OPT_SEARCH_FAKE_OBJ);
}

/// Whether a list that ends with AV_PIX_FMT_NONE has the format; no list has all.
bool takes(const AVPixelFormat* formats, AVPixelFormat format) {
    if (!formats) return true;
    for (const AVPixelFormat* each = formats; *each != AV_PIX_FMT_NONE; ++each) {
        if (*each == format) return true;
    }
    return false;
}

std::string namesOf(const AVPixelFormat* formats) {
    std::string names;
    for (; *formats != AV_PIX_FMT_NONE; ++formats) {
        if (const char* name = av_get_pix_fmt_name(*formats)) names += fmt::format(" {}", name);
    }
    return names;
}

/// Whether whoever asks for this encoder wants every pixel as it is, and not what players like.
bool isLosslessOnly(const AVCodec& codec) {
    const AVCodecDescriptor* description = avcodec_descriptor_get(codec.id);
    return description && (description->props & AV_CODEC_PROP_LOSSLESS) &&
           !(description->props & AV_CODEC_PROP_LOSSY);
}

/// Whether a container that prefers this holds nothing else: moving pictures, and pixels as they are.
bool holdsOnlyItsOwn(AVCodecID preferred) {
    constexpr AVCodecID kSuch[] = {AV_CODEC_ID_GIF, AV_CODEC_ID_WEBP, AV_CODEC_ID_APNG, AV_CODEC_ID_RAWVIDEO,
                                   AV_CODEC_ID_WRAPPED_AVFRAME};
    return std::find(std::begin(kSuch), std::end(kSuch), preferred) != std::end(kSuch);
}

/// Formats that a stream of YUV4MPEG2 can hold.
constexpr AVPixelFormat kYUV4MPEGFormats[] = {
    AV_PIX_FMT_YUV420P,     AV_PIX_FMT_YUV422P,     AV_PIX_FMT_YUV444P,     AV_PIX_FMT_GRAY8,
    AV_PIX_FMT_YUV420P10LE, AV_PIX_FMT_YUV422P10LE, AV_PIX_FMT_YUV444P10LE, AV_PIX_FMT_NONE};

/// Below this the frames of an animation keep blocks of those before.
constexpr const char* kWebPQuality = "90";

/// The finest but one, of which nothing can be seen.
constexpr int kJPEGQuantizer = 2;

/// Players show what a GIF holds for a hundredth of a second for a tenth.
constexpr int kShortestGifDelay = 2;
constexpr int kGifUnitsPerSecond = 100;

/// How many threads an encoder is asked for; 0 is its own choice.
int threadsFor(const AVCodec& codec, int asked) {
    // With several a frame is handed out when the next ones have come.
    if (codec.id == AV_CODEC_ID_RAWVIDEO) return 1;
    if (asked > 0 || std::string_view(codec.name).substr(0, 7) != "libx264") return asked;
    // Its own choice is half as many again as there are cores. Where these are few, but several, they then
    // stand idle while frames wait for the rows that they refer to.
    const int cores = av_cpu_count();
    constexpr int kWaiting = 3;
    return cores > 1 && kWaiting > cores / 2 ? cores + kWaiting : 0;
}

bool isYUV4MPEG(const AVOutputFormat& container) {
    return std::string_view(container.name) == "yuv4mpegpipe";
}

/// Times of frames in these can only be multiples of the frame's duration.
bool countsFrames(const AVCodec& codec, const AVOutputFormat& container) {
    return codec.supported_framerates || codec.id == AV_CODEC_ID_MPEG4 || isYUV4MPEG(container);
}

/// The rate at which a clip's frames are counted: of a clip that leaves out some, that of the others.
Rational countingRate(const ClipVideoFormat& video) {
    const double average = video.averageFrameRate.value(), real = video.realFrameRate.value();
    // The real one counts every time exactly, which may take far more than there are frames.
    constexpr double kFarthest = 1.5;
    const bool isFar = real * kFarthest < average || real > average * kFarthest;
    return average > 0 && isFar ? video.averageFrameRate : video.realFrameRate;
}

}  // namespace

bool VideoEncoder::chooseCodec(const ClipWriterOptions& settings, const AVOutputFormat& container,
                               std::string& cause) {
    const auto containerTakes = [&](AVCodecID id) {
        return avformat_query_codec(&container, id, FF_COMPLIANCE_NORMAL) != 0;
    };
    if (!settings.codec.empty()) {
        codec_ = avcodec_find_encoder_by_name(settings.codec.c_str());
        if (!codec_ || codec_->type != AVMEDIA_TYPE_VIDEO) {
            cause = fmt::format("there is no video encoder '{}'", settings.codec);
            return false;
        }
    } else {
        // What only hands pixels from one program to the next.
        const bool passes = std::string_view(container.name) == "nut";
        const AVCodecID own = passes ? AV_CODEC_ID_RAWVIDEO : container.video_codec;
        if (!holdsOnlyItsOwn(own) && containerTakes(AV_CODEC_ID_H264))
            codec_ = avcodec_find_encoder_by_name("libx264");
        if (!codec_ && own != AV_CODEC_ID_NONE) codec_ = avcodec_find_encoder(own);
    }
    const bool refused =
        codec_ && codec_->id != container.video_codec && holdsOnlyItsOwn(container.video_codec);
    if (!codec_ || refused || !containerTakes(codec_->id)) {
        cause = fmt::format("the container '{}' takes no {} video", container.name,
                            codec_ ? avcodec_get_name(codec_->id) : "such");
        return false;
    }
    return true;
}

/// The pixel formats to choose from; false where there is no device for them.
bool VideoEncoder::findFormats(const AVOutputFormat& container, std::string& cause) {
    formats_ = codec_->pix_fmts;
    taker_ = codec_->name;
    if (isYUV4MPEG(container)) {
        formats_ = kYUV4MPEGFormats;
        taker_ = container.name;
    }
    if (!ffmpeg::HardwareFrames::areNeededBy(*codec_)) return true;
    if (!hardware_.emplace().open(*codec_, cause)) return false;
    formats_ = hardware_->formats();
    return true;
}

bool VideoEncoder::choosePixelFormat(const ClipVideoFormat& video, const std::string& wanted,
                                     std::string& cause) {
    if (!wanted.empty()) {
        pixelFormat_ = av_get_pix_fmt(wanted.c_str());
        if (pixelFormat_ == AV_PIX_FMT_NONE) {
            cause = fmt::format("there is no pixel format '{}'", wanted);
            return false;
        }
        if (!takes(formats_, pixelFormat_)) {
            cause = fmt::format("{} does not take {}, but{}", taker_, wanted, namesOf(formats_));
            return false;
        }
        return true;
    }
    AVPixelFormat best = ffmpeg::storedFormat(video.pixelFormat);
    const bool lossless = isLosslessOnly(*codec_);
    // Opaque RGB has no format of its own that players like, and grey H.264 neither.
    const bool awkward = best == AV_PIX_FMT_RGBA || (best == AV_PIX_FMT_GRAY8 && isX26x(*codec_));
    if (!lossless && awkward && !video.hasAlpha && takes(formats_, AV_PIX_FMT_YUV420P))
        best = AV_PIX_FMT_YUV420P;
    if (!lossless && video.hasAlpha && takes(formats_, AV_PIX_FMT_YUVA420P)) best = AV_PIX_FMT_YUVA420P;
    if (best == AV_PIX_FMT_RGBA && !video.hasAlpha) best = AV_PIX_FMT_RGB24;
    if (!takes(formats_, best)) {
        const bool plain = !lossless && ffmpeg::isRGB(best) && takes(formats_, AV_PIX_FMT_YUV420P);
        best = avcodec_find_best_pix_fmt_of_list(formats_, best, video.hasAlpha, nullptr);
        const AVPixFmtDescriptor* found = av_pix_fmt_desc_get(best);
        if (plain && found && !(found->flags & AV_PIX_FMT_FLAG_ALPHA)) best = AV_PIX_FMT_YUV420P;
    }
    if (codec_->id == AV_CODEC_ID_GIF && best != AV_PIX_FMT_GRAY8) best = AV_PIX_FMT_PAL8;
    // These refuse a half chroma sample at the edge.
    if (isX26x(*codec_) && (video.width % 2 || video.height % 2)) {
        const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(best);
        const bool subsampled = description && (description->log2_chroma_w || description->log2_chroma_h);
        if (subsampled) best = description->comp[0].depth > 8 ? AV_PIX_FMT_YUV444P10LE : AV_PIX_FMT_YUV444P;
    }
    pixelFormat_ = best;
    return true;
}

unsigned VideoEncoder::preferredTag(const AVOutputFormat& container, AVCodecID codec) {
    const std::string_view name = container.name;
    // Some players know HEVC in these only by this name.
    const bool isHEVC = codec == AV_CODEC_ID_HEVC && (name == "mp4" || name == "mov");
    return isHEVC ? MKTAG('h', 'v', 'c', '1') : 0;
}

void VideoEncoder::describe(const ClipVideoFormat& video, const AVOutputFormat& container) {
    AVCodecContext& context = *context_;
    const bool rgb = ffmpeg::isRGB(pixelFormat_);
    const bool fromYUV = PixelBuffer::isYUV(video.pixelFormat);
    frameFormat_ = ffmpeg::nearestFormat(pixelFormat_, true);
    frameColor_ = {video.color.matrix, fromYUV ? video.color.fullRange : false};
    const bool full = codec_->id == AV_CODEC_ID_MJPEG || ffmpeg::isGray(pixelFormat_);
    if (full) frameColor_.fullRange = true;
    if (rgb && PixelBuffer::isYUV(frameFormat_)) frameColor_.fullRange = false;

    context.width = video.width;
    context.height = video.height;
    context.pix_fmt = pixelFormat_;
    context.sample_aspect_ratio = rational(video.pixelAspect);
    isCounted_ = countsFrames(*codec_, container);
    repeatsFrames_ = isYUV4MPEG(container);
    const Rational rate = isCounted_                             ? countingRate(video)
                          : video.averageFrameRate.numerator > 0 ? video.averageFrameRate
                                                                 : video.realFrameRate;
    if (rate.numerator > 0) context.framerate = rational(rate);
    timeBase_ = rational(video.timeBase);
    context.time_base = timeBase_;
    if (isCounted_ && rate.numerator > 0) context.time_base = av_inv_q(rational(rate));
    if (codec_->id == AV_CODEC_ID_GIF) {
        context.time_base = {1, kGifUnitsPerSecond};
        constexpr double kFastest = double(kGifUnitsPerSecond) / kShortestGifDelay;
        frameStep_ = std::max(1, int(std::ceil(rate.value() / kFastest - 0.01)));
    }

    context.color_primaries = AVColorPrimaries(video.tags.primaries);
    context.color_trc = AVColorTransferCharacteristic(video.tags.transfer);
    context.chroma_sample_location = AVChromaLocation(video.tags.chromaLocation);
    if (rgb) {
        context.colorspace = AVCOL_SPC_RGB;
        return;
    }
    // A tag stays as it is, also "unspecified", as long as it leads a reader to the matrix that was used.
    const auto tag = AVColorSpace(video.tags.matrix);
    const bool tagHolds =
        fromYUV && tag != AVCOL_SPC_RGB && ffmpeg::matrixOf(tag, video.height) == video.color.matrix;
    context.colorspace = tagHolds ? tag : ffmpeg::tagOf(video.color.matrix);
    if (video.tags.rangeIsKnown || frameColor_.fullRange) {
        context.color_range = frameColor_.fullRange ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    }
    if (const unsigned tag = preferredTag(container, codec_->id)) context.codec_tag = tag;
}

bool VideoEncoder::setQuality(const ClipWriterOptions& settings, ffmpeg::Dictionary& options,
                              std::string& cause) {
    const bool x26x = isX26x(*codec_);
    const auto require = [&](const char* name) {
        if (!hasOption(*codec_, name)) cause = fmt::format("{} has no {}", codec_->name, name);
        return cause.empty();
    };
    const bool lossless = settings.lossless && !settings.crf && settings.bitRate == 0;
    if (settings.bitRate > 0) context_->bit_rate = settings.bitRate;
    const bool isJPEG = codec_->id == AV_CODEC_ID_MJPEG && !hardware_;
    if (isJPEG && settings.bitRate == 0 && !options.has("global_quality")) {
        context_->flags |= AV_CODEC_FLAG_QSCALE;
        context_->global_quality = kJPEGQuantizer * FF_QP2LAMBDA;
    }
    const bool isWebP = codec_->id == AV_CODEC_ID_WEBP;
    if (isWebP && !options.has("quality") && !options.has("lossless")) options.set("quality", kWebPQuality);
    if (settings.crf) {
        if (!require("crf")) return false;
        options.set("crf", fmt::format("{}", *settings.crf));
    } else if (x26x && lossless) {
        options.set("qp", "0");
    } else if (x26x && settings.bitRate == 0 && !options.has("crf") && !options.has("qp")) {
        options.set("crf", codec_->id == AV_CODEC_ID_HEVC ? "20" : "18");
    }
    if (lossless && hasOption(*codec_, "lossless")) options.set("lossless", "1");
    if (!settings.preset.empty()) {
        if (!require("preset")) return false;
        if (x26x && !isX26xPreset(settings.preset)) {
            cause = fmt::format("{} has no preset '{}'", codec_->name, settings.preset);
            return false;
        }
        options.set("preset", settings.preset);
    } else if (x26x && !options.has("preset")) {
        options.set("preset", "veryfast");
    }
    // This one has a log of its own, on the terminal.
    if (std::string_view(codec_->name) == "libx265") {
        const AVDictionaryEntry* given = av_dict_get(options.get(), "x265-params", nullptr, 0);
        options.set("x265-params", fmt::format("log-level=none{}{}{}", lossless ? ":lossless=1" : "",
                                               given ? ":" : "", given ? given->value : ""));
    }
    return true;
}

bool VideoEncoder::open(const ClipVideoFormat& video, const ClipWriterOptions& settings,
                        const AVOutputFormat& container, ffmpeg::Dictionary& options, std::string& cause) {
    if (!chooseCodec(settings, container, cause)) return false;
    if (!findFormats(container, cause) || !choosePixelFormat(video, settings.pixelFormat, cause))
        return false;
    context_.reset(avcodec_alloc_context3(codec_));
    if (!context_) {
        cause = "out of memory";
        return false;
    }
    context_->opaque = &messages_;
    context_->thread_count = threadsFor(*codec_, settings.threads);
    if (container.flags & AVFMT_GLOBALHEADER) context_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    describe(video, container);
    if (!setQuality(settings, options, cause)) return false;
    if (hardware_ && !hardware_->attach(*context_, pixelFormat_, cause)) return false;
    const int code = avcodec_open2(context_.get(), codec_, options.address());
    if (code < 0) {
        // What a driver lacks is told there; the code is any.
        const std::string told = messages_.first();
        cause = fmt::format("{}: {}", codec_->name, told.empty() ? messages_.cause(code) : told);
    }
    if (code >= 0 && pixelFormat_ == AV_PIX_FMT_PAL8 && codec_->id == AV_CODEC_ID_GIF && !openPalette()) {
        cause = "there is no way to make palettes";
        return false;
    }
    return code >= 0 && openFilters(settings.bitstreamFilters, cause);
}

AVPixelFormat VideoEncoder::storedFormat() const {
    return hardware_ ? context_->sw_pix_fmt : context_->pix_fmt;
}

/// The colours that suit a frame best, chosen anew for each, dithered.
bool VideoEncoder::openPalette() {
    pixelFormat_ = AV_PIX_FMT_RGBA;
    return palette_.emplace().open("split[a][b];[a]palettegen=stats_mode=single[p];[b][p]paletteuse=new=1",
                                   context_->width, context_->height, pixelFormat_);
}

bool VideoEncoder::openFilters(const std::string& filters, std::string& cause) {
    if (filters.empty()) return true;
    AVBSFContext* made = nullptr;
    int code = av_bsf_list_parse_str(filters.c_str(), &made);
    filters_.reset(made);
    if (code >= 0) code = avcodec_parameters_from_context(filters_->par_in, context_.get());
    if (code >= 0) {
        filters_->time_base_in = context_->time_base;
        code = av_bsf_init(filters_.get());
    }
    if (code < 0) cause = fmt::format("'{}' cannot filter the bitstream: {}", filters, messages_.cause(code));
    return code >= 0;
}

/// The frame as the encoder takes it: the buffer itself where it is of the right kind.
ffmpeg::Frame VideoEncoder::stored(const PixelBuffer& pixels) {
    const bool sameColor = !PixelBuffer::isYUV(pixels.format()) || pixels.color() == frameColor_;
    if (sameColor && ffmpeg::sameLayout(pixelFormat_) == pixels.format()) {
        ffmpeg::Frame frame = ffmpeg::frameOf(pixels);
        if (frame) frame->format = pixelFormat_;
        return frame;
    }
    ffmpeg::Frame frame(av_frame_alloc());
    if (!frame) return nullptr;
    frame->format = pixelFormat_;
    frame->width = pixels.width();
    frame->height = pixels.height();
    if (av_frame_get_buffer(frame.get(), 0) < 0) return nullptr;
    if (!scaler_.convert(ffmpeg::pictureOf(pixels), ffmpeg::pictureOf(*frame, frameColor_))) return nullptr;
    return frame;
}

bool VideoEncoder::comesTooSoon(const ClipFrame& frame) const {
    if (codec_->id != AV_CODEC_ID_GIF || lastGiven_ == AV_NOPTS_VALUE) return false;
    const double frames = double(frame.time - lastGiven_) * av_q2d(timeBase_) * av_q2d(context_->framerate);
    if (frameStep_ > 1 && frames < frameStep_ - 0.5) return true;
    return av_rescale_q(frame.time, timeBase_, context_->time_base) - lastTime_ < kShortestGifDelay;
}

std::int64_t VideoEncoder::finalDelay() const {
    return std::max<std::int64_t>(end_ - lastTime_, kShortestGifDelay);
}

bool VideoEncoder::send(const ClipFrame& frame, std::string& cause) {
    if (frame.pixels.width() != context_->width || frame.pixels.height() != context_->height) {
        cause = fmt::format("a frame of {}x{} in a clip of {}x{}", frame.pixels.width(),
                            frame.pixels.height(), context_->width, context_->height);
        return false;
    }
    end_ = av_rescale_q(frame.time + frame.duration, timeBase_, context_->time_base);
    if (comesTooSoon(frame)) return true;
    const std::int64_t time = av_rescale_q(frame.time, timeBase_, context_->time_base);
    if (lastTime_ != AV_NOPTS_VALUE && time <= lastTime_) {
        // Frames closer than the rate that is counted in.
        if (isCounted_ && frame.time > lastGiven_) return true;
        cause = fmt::format("the time stamps of frames do not grow ({} after {})", time, lastTime_);
        return false;
    }
    ffmpeg::Frame stored = this->stored(frame.pixels);
    if (stored && hardware_) stored = hardware_->upload(*stored);
    if (!stored) {
        cause = "a frame cannot be converted for the encoder";
        return false;
    }
    stored->pts = time;
    stored->quality = context_->global_quality;
    stored->sample_aspect_ratio = context_->sample_aspect_ratio;
    stored->color_range = context_->color_range;
    stored->colorspace = context_->colorspace;
    stored->color_primaries = context_->color_primaries;
    stored->color_trc = context_->color_trc;
    stored->chroma_location = context_->chroma_sample_location;
    if (lastTime_ == AV_NOPTS_VALUE) begin_ = time;
    lastGiven_ = frame.time;
    lastTime_ = time;
    durations_[time] = av_rescale_q(frame.duration, timeBase_, context_->time_base);
    messages_.clear();
    const int code = encode(stored.get());
    if (code < 0) cause = fmt::format("{}: {}", codec_->name, messages_.cause(code));
    return code >= 0;
}

/// As avcodec_send_frame(), through the palette; may take the frame's reference.
int VideoEncoder::encode(AVFrame* frame) {
    return palette_ ? palette_->send(frame) : avcodec_send_frame(context_.get(), frame);
}

/// Hands the encoder the next frame that the palette has finished, or the end.
int VideoEncoder::pullPalette() {
    const ffmpeg::Frame frame(av_frame_alloc());
    if (!frame) return AVERROR(ENOMEM);
    const int code = palette_->receive(*frame);
    if (code < 0 && code != AVERROR_EOF) return code;
    return avcodec_send_frame(context_.get(), code < 0 ? nullptr : frame.get());
}

bool VideoEncoder::sendEnd(std::string& cause) {
    const int code = encode(nullptr);
    if (code < 0) cause = fmt::format("{}: {}", codec_->name, messages_.cause(code));
    return code >= 0;
}

bool VideoEncoder::receive(AVPacket& packet, std::string& cause) {
    if (!filters_) return receiveEncoded(packet, cause);
    while (true) {
        int code = av_bsf_receive_packet(filters_.get(), &packet);
        if (code >= 0) return true;
        if (code == AVERROR(EAGAIN)) {
            if (!receiveEncoded(packet, cause)) return false;
            code = av_bsf_send_packet(filters_.get(), &packet);
        }
        if (code < 0) {
            cause = fmt::format("{}: {}", codec_->name, messages_.cause(code));
            return false;
        }
    }
}

bool VideoEncoder::receiveEncoded(AVPacket& packet, std::string& cause) {
    int code = avcodec_receive_packet(context_.get(), &packet);
    while (code == AVERROR(EAGAIN) && palette_) {
        if (const int pulled = pullPalette(); pulled != 0) {
            code = pulled;
            break;
        }
        code = avcodec_receive_packet(context_.get(), &packet);
    }
    if (code < 0) {
        const bool failed = code != AVERROR(EAGAIN) && code != AVERROR_EOF;
        if (failed) cause = fmt::format("{}: {}", codec_->name, messages_.cause(code));
        return false;
    }
    if (std::string_view(codec_->name) == "libwebp_anim")
        ffmpeg::WebPAnimation::setEnd(packet, av_rescale_q(end_ - begin_, context_->time_base, {1, 1000}));
    if (const auto found = durations_.find(packet.pts); found != durations_.end()) {
        packet.duration = found->second;
        durations_.erase(found);
    }
    return true;
}

}  // namespace qv
