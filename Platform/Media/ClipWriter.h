#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Media/AudioSamples.h"
#include "Platform/Media/ClipInfo.h"

namespace qv {

/// How a clip is encoded and what is copied into it. What is left empty is chosen by what is given.
struct ClipWriterOptions {
    /// Short name of the container, such as "matroska", "mp4", "mov", "webm", "mpegts"; empty: by the file's
    /// name.
    std::string container;
    /// Name of the encoder, such as "libx264", "libx265", "prores_ks", "libvpx-vp9", "qtrle", "ffv1"; empty:
    /// libx264 where the container takes H.264, otherwise what the container prefers.
    std::string codec;
    /// Name of the stored pixel format, such as "yuv420p10le"; empty: the clip's own, or the nearest that the
    /// encoder takes.
    std::string pixelFormat;
    /// Speed preset of the encoder; empty: "veryfast" for libx264 and libx265, otherwise the encoder's
    /// default.
    std::string preset;
    /// Constant quality of the encoder; none: 18 for libx264 and 20 for libx265 unless a bit rate is given.
    std::optional<double> crf;
    std::int64_t bitRate = 0;  ///< bits per second; 0: by quality
    /// Every pixel as it is, without a quality or bit rate, where libx264, libx265 or libvpx-vp9 encodes.
    bool lossless = false;
    int threads = 0;  ///< of the encoder; 0 is what keeps the machine's cores busy
    /// What the encoder's packets go through, as "filter_units=remove_types=6"; empty: nothing.
    std::string bitstreamFilters;
    /// Further options of the encoder or of the container, name and value. One that neither knows is an
    /// error.
    std::vector<std::pair<std::string, std::string>> options;
    /// How often a GIF, an animated WebP or an APNG plays; 0 is for ever.
    int plays = 0;
    int firstNumber = 1;                                   ///< of a sequence of pictures
    bool audio = true, subtitles = true, metadata = true;  ///< what to copy from the source
    bool chapters = true;                                  ///< with the metadata
    /// Sound that the host makes instead: it is encoded, and none is copied. Without a rate there is none.
    AudioFormat sound;
    /// Name of the sound's encoder, such as "aac", "libopus", "flac", or "copy". Empty: a source's sound is
    /// copied where the container takes it, and any other encoded with what suits the container.
    std::string audioCodec;
    std::int64_t audioBitRate = 0;  ///< bits per second; 0: the encoder's choice
    /// Short name of the container that the streams come into in the end, by copying: it chooses the codecs,
    /// and its options are no errors. Empty: this one.
    std::string meantFor;
    /// PacketReader::streams() of files with pictures, or sound, that are encoded already and whose packets
    /// the host hands over in place of frames or samples; nil: encoded here.
    std::shared_ptr<const SourceStreams> encodedVideo, encodedSound;
};

/// Writes a clip: frames are encoded, everything else is copied from a source, unless the host makes the
/// sound. One thread at a time, which may be another one than the reader's.
///
/// The file appears under its name in finish(), when it is whole; a writer that is destroyed before, or that
/// fails, leaves nothing. The name of a PictureSequence makes a file of each frame, of the kind that its
/// extension tells, which appears when it is whole, and stays. Time stamps and durations of frames are
/// carried exactly as far as the container can hold them. Not carried are data streams and further video
/// streams.
class ClipWriter {
  public:
    /// `video` says what the frames are like and what to write about them: usually the reader's, changed
    /// where the host turned or scaled the frames; without a size there are none, and sound by itself is
    /// written. `source` is ClipReader::streams(), or nil to copy nothing;
    /// its packets are then expected in write(). The path "-" is standard output and needs a container that
    /// can be streamed; what goes to it or to a pipe is handed on frame by frame. Nil with one line that
    /// names file and cause in `error`, when it is given.
    static std::unique_ptr<ClipWriter> create(const std::string& path, const ClipVideoFormat& video,
                                              const ClipWriterOptions& options = {},
                                              std::shared_ptr<const SourceStreams> source = nullptr,
                                              std::string* error = nullptr);
    ~ClipWriter();

    /// A new frame of the kind that is encoded without a further conversion, to be filled by the host.
    PixelBuffer makeFrame() const;
    /// Format and colour of `makeFrame`.
    PixelFormat frameFormat() const;
    ColorDescription frameColor() const;

    /// Times are in units of the `timeBase` given to create() and must grow. The size must be the clip's;
    /// another format or colour is converted. The frame's planes may be kept for a while and must not change
    /// any more. False after a failure.
    bool write(const ClipFrame& frame);
    /// Takes a packet of the source; one of a stream that is not copied is ignored. In the order in which the
    /// reader gives them.
    bool write(const ClipPacket& packet);

    /// Takes the next samples of the host's sound; the first one is heard at time 0 of the clip's frames.
    bool write(const AudioSamples& samples);

    /// Takes the next packet, in the order of decoding, of pictures that are encoded already. Its times are
    /// in units of the `timeBase` given to create().
    bool writeVideo(const TimedPacket& packet);
    /// The same of sound, with times in units of its stream's time base.
    bool writeSound(const TimedPacket& packet);
    /// When the first packet of sound that is encoded here begins and the last one ends, in samples: below 0
    /// where the encoder puts samples of its own before the first one. Known when all has been written.
    std::pair<std::int64_t, std::int64_t> soundSpan() const;

    /// Writes what is still held back and puts the file in its place. False after a failure.
    bool finish();

    /// One line that names file and cause, once a call has failed.
    const std::string& error() const;
    /// What of the source the container cannot hold, a line each. Known after create().
    const std::vector<std::string>& notices() const;
    /// The encoder and the stored pixel format, as chosen.
    std::string codecName() const;
    std::string storedPixelFormat() const;

  private:
    struct State;
    explicit ClipWriter(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace qv
