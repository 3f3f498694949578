#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Host/Clips/Footage.h"
#include "Host/Edit/Project.h"

namespace qv::host {

/// A clip of a project whose file is known. All in seconds.
struct TimelineClip {
    ProjectClip clip;
    bool isKnown = false;       ///< whether nothing is wrong with the file and the part
    ClipVideoFormat video;      ///< of a picture only its size, where it is known
    bool isPicture = false;     ///< or a plane of one colour
    double origin = 0;          ///< the file's own time stamp of its first frame
    double from = 0;            ///< where the part begins, since the file's first frame
    double start = 0;           ///< of the part, on the timeline
    double length = 0;          ///< of the part; kUnlimited when nobody knows
    double lead = 0, tail = 0;  ///< of the transitions at its two ends
    int soundTracks = 0, subtitleTracks = 0;
    /// When the file's frames begin, since the first one, as many as the ends of its parts need where they
    /// are given in frames; nil for none, empty where the file does not tell.
    std::shared_ptr<const std::vector<double>> frameTimes = nullptr;

    double end() const { return start + length; }
};

/// How the clips and masks are read.
using ReadingOptions = std::function<ClipReaderOptions(const std::string& path)>;

/// What a timeline is for: a clip, which is of its source's kind, or pictures of some moments.
enum class EditPurpose { clip, pictures };

/// A project with all that its files tell: when each clip is seen, and what the output is like.
///
/// The output is of the first clip's kind, or as the project says: size, pixel aspect, rotation, colours,
/// rate. A picture before it gives the size. Pictures alone make 30 frames a second; one picture by itself is
/// of its own kind.
class EditTimeline {
  public:
    /// Looks into the files, decoding nothing where they tell how long they are. With mistakes the timeline
    /// is not to be used.
    EditTimeline(Project project, ReadingOptions reading, EditPurpose purpose, Mistakes& mistakes);

    const Project& project() const { return project_; }
    const std::vector<TimelineClip>& clips() const { return clips_; }
    /// kUnlimited when nobody knows.
    double end() const { return clips_.back().end(); }
    /// Of the output's frames.
    const ClipVideoFormat& video() const { return video_; }
    const FrameShape& frame() const { return frame_; }
    double rate() const { return video_.averageFrameRate.value(); }
    /// Whether the first clip's frames keep their times, so that the others go on at its rate.
    bool keepsTimes() const { return keepsTimes_; }
    /// Whether it is a whole clip by itself, whose other streams may be copied.
    bool isWholeClip() const { return isWholeClip_; }
    Fit fit(std::size_t clip) const { return clips_[clip].clip.fit.value_or(project_.fit); }
    ClipReaderOptions reading(const std::string& path) const { return reading_(path); }

    /// Takes the effects and the transitions' classes of a project that differs in nothing else. With
    /// mistakes the timeline is not to be used until it has taken another.
    void takeLook(const Project& project, Mistakes& mistakes);

    /// What the first clip's other streams are; nil for a picture.
    std::shared_ptr<const SourceStreams> streams() const { return streams_; }
    /// The clip's file, opened, at its part's first frame. The first clip's is that which the timeline looked
    /// into, and given once. Fails as input.
    std::unique_ptr<Footage> open(std::size_t clip);
    /// Makes the first clip's part begin with a whole frame, where its frames keep their times. Fails as
    /// input.
    void begin();

    /// What of the files does not come into the output, a line each.
    std::vector<std::string> losses() const;

  private:
    void look(Mistakes& mistakes);
    void look(TimelineClip& entry, bool needsSize, std::size_t framesToCount);
    void setPart(TimelineClip& entry);
    void place(Mistakes& mistakes);
    void chooseFormat();
    void checkEffects(Mistakes& mistakes) const;

    Project project_;
    ReadingOptions reading_;
    bool isOneClip_;  ///< a clip made of one clip or picture
    std::vector<TimelineClip> clips_;
    ClipVideoFormat video_;
    FrameShape frame_;
    bool keepsTimes_ = false, isWholeClip_ = false;
    std::unique_ptr<ClipReader> firstReader_;
    std::unique_ptr<Footage> first_;
    std::shared_ptr<const SourceStreams> streams_;
};

}  // namespace qv::host
