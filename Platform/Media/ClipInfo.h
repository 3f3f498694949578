#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Media/PixelBuffer.h"

struct AVPacket;

namespace qv {

/// A fraction, as clips give times and rates.
struct Rational {
    /// A denominator of 0 is an unknown number.
    int numerator = 0, denominator = 1;
    /// The quotient; 0 when the denominator is.
    double value() const { return denominator ? double(numerator) / denominator : 0.0; }
    bool operator==(const Rational&) const = default;
};

/// Code points of ITU-T H.273 as they stand in the file; 2 is "unspecified". `chromaLocation` counts from 1
/// (left), 2 (centre), 3 (top left) and so on; 0 is unspecified. They travel untouched.
struct ColorTags {
    int primaries = 2, transfer = 2, matrix = 2;  ///< 2 is unspecified
    int chromaLocation = 0;                       ///< 0 is unspecified
    bool rangeIsKnown = false;                    ///< whether the file says full or limited range
    bool operator==(const ColorTags&) const = default;
};

/// What the pictures of a clip are like. A reader fills it in; a writer takes it, changed where the host
/// wants.
struct ClipVideoFormat {
    int width = 0, height = 0;   ///< as stored, before rotation
    Rational pixelAspect{1, 1};  ///< width of a pixel to its height
    /// Degrees clockwise, 0, 90, 180 or 270, by which a player turns the stored picture.
    int rotation = 0;
    /// The file's own 3x3 matrix in 16.16 and 2.30 fixed point, which `rotation` is read from.
    std::optional<std::array<std::int32_t, 9>> displayMatrix;
    Rational timeBase{1, 25};                     ///< seconds per unit of a time stamp
    Rational averageFrameRate, realFrameRate;     ///< 0 when unknown
    PixelFormat pixelFormat = PixelFormat::i420;  ///< of the frames
    ColorDescription color;                       ///< how to read the samples, tags or no tags
    ColorTags tags;                               ///< what the file says about its colour
    bool hasAlpha = false;                        ///< whether the frames have an alpha channel
    int bitDepth = 8;                             ///< of the file; frames have at most 10
};

/// Keys and values, in the file's order.
using ClipMetadata = std::vector<std::pair<std::string, std::string>>;

/// What a stream holds.
enum class ClipStreamKind { video, audio, subtitle, data, attachment };

/// A stream of a clip.
struct ClipStream {
    int index = 0;                                ///< in the file
    ClipStreamKind kind = ClipStreamKind::video;  ///< what it holds
    std::string codec;                            ///< short name, such as "h264"
    std::string language;                         ///< empty when unknown
    Rational timeBase;                            ///< seconds per unit of a time stamp
    std::int64_t bitRate = 0;                     ///< bits per second, 0 when unknown
    int sampleRate = 0, channels = 0;             ///< of sound; 0 elsewhere
    std::string channelLayout;                    ///< such as "stereo"
    bool isDefault = false;                       ///< what players take without being asked
    bool isCoverPicture = false;                  ///< a single picture that goes with the clip
    ClipMetadata metadata;                        ///< such as the title
};

/// A chapter of a clip.
struct ClipChapter {
    double start = 0, end = 0;  ///< seconds
    std::string title;          ///< empty when it has none
};

/// What a file says about itself.
struct ClipInfo {
    std::string path;                           ///< as given
    std::string container;                      ///< short names, such as "mov,mp4,m4a,3gp,3g2,mj2"
    int videoStream = -1;                       ///< index of the stream that gives the frames
    std::string videoCodec, storedPixelFormat;  ///< FFmpeg's names
    ClipVideoFormat video;                      ///< what the frames are like
    bool isStillPicture = false;                ///< a picture file, not a clip
    std::int64_t bitRate = 0;                   ///< of the whole file, bits per second, 0 when unknown
    double start = 0;                           ///< seconds, of the earliest stream
    double duration = 0;                        ///< seconds, 0 when unknown
    std::int64_t frameCountEstimate = 0;        ///< 0 when unknown
    std::vector<ClipStream> streams;            ///< in the file's order
    std::vector<ClipChapter> chapters;          ///< in the order of their starts
    ClipMetadata metadata;                      ///< such as the title
};

/// A frame, in display order. Its planes never change: they may be the decoder's own references.
struct ClipFrame {
    PixelBuffer pixels;                   ///< as the clip's `video` describes them
    std::int64_t time = 0, duration = 0;  ///< in units of the video stream's time base
};

/// A packet of a stream that is handed on as it is.
struct ClipPacket {
    int stream = 0;                            ///< index of its stream in the source
    std::shared_ptr<const ::AVPacket> packet;  ///< as the demuxer gave it
};

/// A packet with its times, in units of its stream's time base.
struct TimedPacket {
    ClipPacket packet;            ///< with its stream
    std::int64_t time = 0;        ///< when it is seen or heard
    std::int64_t decodeTime = 0;  ///< grows from packet to packet
    std::int64_t duration = 0;    ///< 0 when unknown
    bool isKey = false;           ///< whether a decoder can begin with it
};

/// The streams of a source with all that is needed to copy them, independent of the reader and its thread.
class SourceStreams;

}  // namespace qv
