#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Platform/Media/ClipInfo.h"

namespace qv {

/// What becomes of interlaced frames: whole pictures are made of both fields, one of each frame.
enum class Deinterlacing {
    automatic,  ///< of frames that say that they are interlaced
    all,        ///< of every frame
    none,       ///< frames stay as they are
};

/// What a clip's file does not say about itself. Raw video says nothing, a sequence of pictures has no rate.
struct ClipInputFormat {
    std::string container;      ///< FFmpeg's name, as "rawvideo" or "yuv4mpegpipe"; empty: found out
    int width = 0, height = 0;  ///< of raw video
    std::string pixelFormat;    ///< FFmpeg's name, of raw video; empty: yuv420p
    Rational rate;              ///< frames a second of raw video and of a sequence; 0: 25
};

/// How a clip is read.
struct ClipReaderOptions {
    ClipInputFormat format;  ///< what the file does not say
    int threads = 0;         ///< of the decoder; 0 is one per core
    bool packets = false;    ///< hand out the packets of audio and subtitles too, for a writer to copy
    Deinterlacing deinterlacing = Deinterlacing::automatic;  ///< of which frames
    /// Told once, before the first frame that is deinterlaced; on the thread that reads.
    std::function<void()> onDeinterlacing;
};

/// Reads a clip, or a single picture, from whatever file the installed decoders know. One thread at a time,
/// which may be another one than the writer's: what it gives out is immutable and owns its memory.
///
/// Damaged input gives the frames before the damage, then the end, with error() set. FFmpeg's own messages go
/// to no terminal; the one that names a cause becomes part of the error line. (This is a setting of the whole
/// process.)
class ClipReader {
  public:
    /// "-" is standard input. A name that is a PictureSequence and not a file itself is the pictures of its
    /// numbers, which must have no gap; all have the first one's size. A local file that only lists others,
    /// as playlists do, is refused. Nil with one line that names file and cause in `error`, when it is given.
    static std::unique_ptr<ClipReader> open(const std::string& path, const ClipReaderOptions& options = {},
                                            std::string* error = nullptr);
    ~ClipReader();

    /// What the file says about itself. Valid as long as the reader.
    const ClipInfo& info() const;

    /// Nothing, a frame, or a packet of another stream.
    using Item = std::variant<std::monostate, ClipFrame, ClipPacket>;
    /// The next frame, or packet of another stream, in the file's order, with frames in display order. Times
    /// of frames always grow. Nothing at the end and after damage.
    Item next();
    /// The next frame; packets on the way are dropped.
    std::optional<ClipFrame> nextFrame();

    /// Makes the frame that is shown at `seconds` (from the clip's time zero) the next one; before the first
    /// frame that is the first, after the end the last. False with error() set where the input cannot seek.
    bool seek(double seconds);

    /// When the clip's last frame ends, in units of the video stream's time base, read from the file's last
    /// packets without decoding anything. Nothing where they do not tell. Opens the file a second time.
    std::optional<std::int64_t> endTime() const;

    /// When the clip's first frame begins, in the same units, as the file tells. Nothing where it does not,
    /// and where a file may begin with frames that nothing can be made of.
    std::optional<std::int64_t> startTime() const;

    /// When the first frames begin, up to `count` of them, in the same units and in the order of their times,
    /// read from the file's packets without decoding anything. Nothing where they do not tell. Opens the file
    /// a second time.
    std::vector<std::int64_t> frameTimes(std::size_t count) const;

    /// One line that names file and cause, once reading has failed; empty as long as it has not.
    const std::string& error() const;

    /// What a writer needs for copying the other streams.
    std::shared_ptr<const SourceStreams> streams() const;

  private:
    struct State;
    explicit ClipReader(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace qv
