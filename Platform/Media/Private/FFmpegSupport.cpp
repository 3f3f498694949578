#include "Platform/Media/Private/FFmpegSupport.h"

extern "C" {
#include <libavutil/log.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <set>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>

namespace qv::ffmpeg {
namespace {

/// The sinks that are alive. A context that is not ours may keep anything in its `opaque`.
struct Registry {
    std::mutex mutex;
    std::set<const void*> sinks;
};

Registry& registry() {
    static auto* registry = new Registry;  // worker threads may log until the very end
    return *registry;
}

const void* opaqueOf(const void* object, const AVClass* type) {
    const std::string_view name = type->class_name ? type->class_name : "";
    if (name == "AVCodecContext") return static_cast<const AVCodecContext*>(object)->opaque;
    if (name == "AVFormatContext") return static_cast<const AVFormatContext*>(object)->opaque;
    return nullptr;
}

/// FFmpeg's log goes here: errors to the sink of the context, or of the context it belongs to, the rest
/// nowhere.
void receiveLog(void* object, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_ERROR) return;
    char text[512];
    for (int depth = 0; object && depth < 4; ++depth) {
        const AVClass* type = *static_cast<const AVClass**>(object);
        if (!type) return;
        if (const void* opaque = opaqueOf(object, type)) {
            std::lock_guard lock(registry().mutex);
            if (!registry().sinks.contains(opaque)) return;
            std::vsnprintf(text, sizeof text, format, arguments);
            static_cast<MessageSink*>(const_cast<void*>(opaque))->receive(text);
            return;
        }
        if (!type->parent_log_context_offset) return;
        object = *reinterpret_cast<void**>(static_cast<char*>(object) + type->parent_log_context_offset);
    }
}

struct Layout {
    PixelFormat format;
    AVPixelFormat stored;
    AVPixelFormat fullRangeName;  ///< the old second name of full-range planes
};

constexpr Layout kLayouts[] = {
    {PixelFormat::rgba8, AV_PIX_FMT_RGBA, AV_PIX_FMT_NONE},
    {PixelFormat::gray8, AV_PIX_FMT_GRAY8, AV_PIX_FMT_NONE},
    {PixelFormat::i420, AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUVJ420P},
    {PixelFormat::i422, AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUVJ422P},
    {PixelFormat::i444, AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUVJ444P},
    {PixelFormat::i420Alpha, AV_PIX_FMT_YUVA420P, AV_PIX_FMT_NONE},
    {PixelFormat::nv12, AV_PIX_FMT_NV12, AV_PIX_FMT_NONE},
    {PixelFormat::i420Bits10, AV_PIX_FMT_YUV420P10LE, AV_PIX_FMT_NONE},
    {PixelFormat::i422Bits10, AV_PIX_FMT_YUV422P10LE, AV_PIX_FMT_NONE},
    {PixelFormat::i444Bits10, AV_PIX_FMT_YUV444P10LE, AV_PIX_FMT_NONE},
};

/// The scaler complains about the old names.
AVPixelFormat modernName(AVPixelFormat format) {
    for (const Layout& layout : kLayouts) {
        if (layout.fullRangeName == format && format != AV_PIX_FMT_NONE) return layout.stored;
    }
    return format;
}

int scalerMatrix(ColorMatrix matrix) {
    switch (matrix) {
        case ColorMatrix::bt601:
            return SWS_CS_ITU601;
        case ColorMatrix::bt709:
            return SWS_CS_ITU709;
        case ColorMatrix::bt2020:
            return SWS_CS_BT2020;
    }
    return SWS_CS_ITU709;
}

bool sameShape(const Picture& a, const Picture& b) {
    return a.format == b.format && a.width == b.width && a.height == b.height && a.color == b.color;
}

}  // namespace

MessageSink::MessageSink() {
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_callback(receiveLog); });
    std::lock_guard lock(registry().mutex);
    registry().sinks.insert(this);
}

MessageSink::~MessageSink() {
    std::lock_guard lock(registry().mutex);
    registry().sinks.erase(this);
}

void MessageSink::receive(const std::string& message) {
    std::string line;
    for (char c : message) line += std::iscntrl(static_cast<unsigned char>(c)) ? ' ' : c;
    line.erase(line.find_last_not_of(" .") + 1);
    std::lock_guard lock(mutex_);
    if (first_.empty()) first_ = line;
    // Demuxers only say this, and report a plain end of file.
    if (line.find("ended prematurely") != std::string::npos ||
        line.find("partial file") != std::string::npos) {
        cutOff_ = true;
    }
}

std::string MessageSink::first() const {
    std::lock_guard lock(mutex_);
    return first_;
}

bool MessageSink::sawCutOff() const {
    std::lock_guard lock(mutex_);
    return cutOff_;
}

void MessageSink::clear() {
    std::lock_guard lock(mutex_);
    first_.clear();
    cutOff_ = false;
}

std::string MessageSink::cause(int code) const {
    for (int number : {ENOSPC, EACCES, EPERM, ENOENT, EISDIR, ENOMEM, EPIPE, EROFS, EDQUOT, EFBIG}) {
        if (code == AVERROR(number)) return std::generic_category().message(number);
    }
    if (std::string message = first(); !message.empty()) return message;
    char text[AV_ERROR_MAX_STRING_SIZE];
    return av_make_error_string(text, sizeof text, code);
}

void ListRefusal::watch(AVFormatContext& context) {
    context_ = &context;
    // Asked before each read and while a demuxer waits; the kind of file is known by then.
    context.interrupt_callback = {[](void* opaque) {
                                      static constexpr std::string_view kLists[] = {
                                          "hls", "concat", "dash", "webm_dash_manifest",
                                          "imf", "sdp",    "rtsp"};
                                      auto& self = *static_cast<ListRefusal*>(opaque);
                                      const AVInputFormat* format = self.context_->iformat;
                                      const std::string_view name = format ? format->name : "";
                                      if (std::ranges::find(kLists, name) != std::end(kLists))
                                          self.refused_ = true;
                                      return int(self.refused_);
                                  },
                                  this};
}

namespace {

template <typename Tag>
void dropUnknown(Tag& tag, Tag count, Tag unspecified) {
    std::underlying_type_t<Tag> number;
    std::memcpy(&number, &tag, sizeof number);
    if (number < 0 || number >= std::underlying_type_t<Tag>(count)) tag = unspecified;
}

}  // namespace

void dropUnknownTags(AVCodecParameters& p) {
    dropUnknown(p.color_range, AVCOL_RANGE_NB, AVCOL_RANGE_UNSPECIFIED);
    dropUnknown(p.color_primaries, AVCOL_PRI_NB, AVCOL_PRI_UNSPECIFIED);
    dropUnknown(p.color_trc, AVCOL_TRC_NB, AVCOL_TRC_UNSPECIFIED);
    dropUnknown(p.color_space, AVCOL_SPC_NB, AVCOL_SPC_UNSPECIFIED);
    dropUnknown(p.chroma_location, AVCHROMA_LOC_NB, AVCHROMA_LOC_UNSPECIFIED);
}

void dropUnknownTags(AVFrame& frame) {
    dropUnknown(frame.color_range, AVCOL_RANGE_NB, AVCOL_RANGE_UNSPECIFIED);
    dropUnknown(frame.colorspace, AVCOL_SPC_NB, AVCOL_SPC_UNSPECIFIED);
}

Rational rational(AVRational value) {
    return {value.num, value.den};
}
AVRational rational(Rational value) {
    return {value.numerator, value.denominator};
}

AVPixelFormat storedFormat(PixelFormat format) {
    for (const Layout& layout : kLayouts) {
        if (layout.format == format) return layout.stored;
    }
    return AV_PIX_FMT_NONE;
}

std::optional<PixelFormat> sameLayout(AVPixelFormat format) {
    for (const Layout& layout : kLayouts) {
        if (layout.stored == modernName(format)) return layout.format;
    }
    return std::nullopt;
}

bool isRGB(AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && (description->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL));
}

bool isGray(AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && description->nb_components <= 2 && !isRGB(format);
}

PixelFormat nearestFormat(AVPixelFormat format, bool fullRange) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    if (!description) return PixelFormat::rgba8;
    const bool halvesAcross = description->log2_chroma_w == 1, halvesDown = description->log2_chroma_h == 1;
    const bool deep = description->comp[0].depth > 8;
    if (isGray(format) && !(description->flags & AV_PIX_FMT_FLAG_ALPHA)) {
        if (deep) return PixelFormat::i420Bits10;
        return fullRange ? PixelFormat::gray8 : PixelFormat::rgba8;
    }
    if (const auto same = sameLayout(format)) return *same;
    if (description->flags & AV_PIX_FMT_FLAG_ALPHA) {
        return halvesAcross && halvesDown ? PixelFormat::i420Alpha : PixelFormat::rgba8;
    }
    if (isRGB(format)) return deep ? PixelFormat::i444Bits10 : PixelFormat::rgba8;
    if (halvesAcross && halvesDown) return deep ? PixelFormat::i420Bits10 : PixelFormat::i420;
    if (halvesAcross && description->log2_chroma_h == 0) {
        return deep ? PixelFormat::i422Bits10 : PixelFormat::i422;
    }
    return deep ? PixelFormat::i444Bits10 : PixelFormat::i444;
}

bool isFullRange(AVPixelFormat format, AVColorRange range) {
    if (modernName(format) != format || isRGB(format)) return true;
    return range == AVCOL_RANGE_JPEG || (isGray(format) && range != AVCOL_RANGE_MPEG);
}

ColorMatrix matrixOf(AVColorSpace tag, int height) {
    switch (tag) {
        case AVCOL_SPC_BT709:
        case AVCOL_SPC_SMPTE240M:
            return ColorMatrix::bt709;
        case AVCOL_SPC_FCC:
        case AVCOL_SPC_BT470BG:
        case AVCOL_SPC_SMPTE170M:
            return ColorMatrix::bt601;
        case AVCOL_SPC_BT2020_NCL:
        case AVCOL_SPC_BT2020_CL:
            return ColorMatrix::bt2020;
        default:
            return height >= 720 ? ColorMatrix::bt709 : ColorMatrix::bt601;
    }
}

AVColorSpace tagOf(ColorMatrix matrix) {
    switch (matrix) {
        case ColorMatrix::bt601:
            return AVCOL_SPC_SMPTE170M;
        case ColorMatrix::bt709:
            return AVCOL_SPC_BT709;
        case ColorMatrix::bt2020:
            return AVCOL_SPC_BT2020_NCL;
    }
    return AVCOL_SPC_UNSPECIFIED;
}

Picture pictureOf(const PixelBuffer& buffer) {
    Picture picture{storedFormat(buffer.format()), buffer.width(), buffer.height(), buffer.color(), {}, {}};
    for (std::size_t i = 0; i < std::size_t(PixelBuffer::planeCount(buffer.format())); ++i) {
        picture.data[i] = buffer.plane(int(i)).data;
        picture.rowBytes[i] = int(buffer.plane(int(i)).rowBytes);
    }
    return picture;
}

Picture pictureOf(const AVFrame& frame, ColorDescription color) {
    Picture picture{AVPixelFormat(frame.format), frame.width, frame.height, color, {}, {}};
    std::copy_n(frame.data, 4, picture.data.begin());
    std::copy_n(frame.linesize, 4, picture.rowBytes.begin());
    return picture;
}

bool FrameScaler::convert(const Picture& source, const Picture& destination) {
    if (!context_ || !sameShape(source, from_) || !sameShape(destination, to_)) {
        // Chroma at full precision: the fast paths shift and band colours.
        const int flags = SWS_BICUBIC | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP | SWS_ACCURATE_RND;
        const bool fromFull = source.color.fullRange || isFullRange(source.format, AVCOL_RANGE_UNSPECIFIED);
        const bool toFull =
            destination.color.fullRange || isFullRange(destination.format, AVCOL_RANGE_UNSPECIFIED);
        std::unique_ptr<SwsContext, Deleter> made(sws_alloc_context());
        if (!made) return false;
        // The ranges of deep planes count only where they are known from the start.
        for (const auto& [name, value] : {std::pair{"srcw", source.width},
                                          {"srch", source.height},
                                          {"src_format", int(modernName(source.format))},
                                          {"src_range", int(fromFull)},
                                          {"dstw", destination.width},
                                          {"dsth", destination.height},
                                          {"dst_format", int(modernName(destination.format))},
                                          {"dst_range", int(toFull)},
                                          {"sws_flags", flags}}) {
            if (av_opt_set_int(made.get(), name, value, 0) < 0) return false;
        }
        if (sws_init_context(made.get(), nullptr, nullptr) < 0) return false;
        sws_setColorspaceDetails(made.get(), sws_getCoefficients(scalerMatrix(source.color.matrix)), fromFull,
                                 sws_getCoefficients(scalerMatrix(destination.color.matrix)), toFull, 0,
                                 1 << 16, 1 << 16);
        context_ = std::move(made);
        from_ = source;
        to_ = destination;
    }
    return sws_scale(context_.get(), source.data.data(), source.rowBytes.data(), 0, source.height,
                     destination.data.data(), destination.rowBytes.data()) == destination.height;
}

Frame frameOf(const PixelBuffer& buffer) {
    Frame frame(av_frame_alloc());
    if (!frame) return nullptr;
    auto keep = std::make_unique<PixelBuffer>(buffer);
    frame->buf[0] = av_buffer_create(
        buffer.plane(0).data, 1,
        [](void* opaque, std::uint8_t*) { delete static_cast<PixelBuffer*>(opaque); }, keep.get(),
        AV_BUFFER_FLAG_READONLY);
    if (!frame->buf[0]) return nullptr;
    keep.release();
    const Picture picture = pictureOf(buffer);
    frame->format = picture.format;
    frame->width = picture.width;
    frame->height = picture.height;
    std::copy_n(picture.data.begin(), 4, frame->data);
    std::copy_n(picture.rowBytes.begin(), 4, frame->linesize);
    return frame;
}

}  // namespace qv::ffmpeg
