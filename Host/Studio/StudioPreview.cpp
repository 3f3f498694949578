#include "Host/Studio/StudioPreview.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Host/Edit/ProjectFile.h"
#include "Platform/Media/ImageFile.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kJPEGQuality = 85;
/// How long after a picture the next one is still likely.
constexpr std::chrono::milliseconds kLull{250};

/// What decides which files are open and where they lie: everything but the looks.
std::string clipsTextOf(Project project) {
    std::string text;
    project.effects.clear();
    for (ProjectClip& clip : project.clips) {
        clip.effects.clear();
        if (clip.transition) text += clip.transition->duration.text();
        text += ";";
        clip.transition.reset();
    }
    return text + projectText(project);
}

PixelSize sizeWithin(const FrameShape& frame, int side) {
    const double aspect = frame.aspect();
    const double width = std::min(double(side), aspect >= 1 ? double(side) : side * aspect);
    const auto even = [](double value) { return std::max(2, 2 * int(std::lround(value / 2))); };
    return {even(width), even(width / aspect)};
}

void addMoving(Json& moving, const std::string& place, const EffectChoice& choice, double seconds,
               double rate) {
    const double begin = choice.span ? choice.span->from.seconds(rate) : 0;
    for (const PropertyKeys& keys : choice.keys)
        moving[place][std::string(keys.property->name)] = propertyText(keys.at(seconds - begin, rate));
}

Json movingOf(const EditTimeline& timeline, double seconds) {
    Json moving = Json::object();
    const auto& clips = timeline.clips();
    for (std::size_t i = 0; i < clips.size(); ++i) {
        const auto& effects = clips[i].clip.effects;
        for (std::size_t k = 0; k < effects.size(); ++k)
            addMoving(moving, fmt::format("clips[{}].effects[{}]", i, k), effects[k].choice,
                      seconds - clips[i].start, timeline.rate());
        if (const auto& transition = clips[i].clip.transition)
            addMoving(moving, fmt::format("clips[{}].transition", i), transition->choice,
                      seconds - clips[i].start, timeline.rate());
    }
    const auto& whole = timeline.project().effects;
    for (std::size_t k = 0; k < whole.size(); ++k)
        addMoving(moving, fmt::format("effects[{}]", k), whole[k].choice, seconds, timeline.rate());
    return moving;
}

void check(const Mistakes& mistakes) {
    if (!mistakes.empty()) throw StudioMistakes{mistakes.lines()};
}

/// Counts for as long as it lives.
class Waiting {
  public:
    explicit Waiting(std::atomic<int>& count) : count_(count) { ++count_; }
    ~Waiting() { --count_; }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

  private:
    std::atomic<int>& count_;
};

}  // namespace

bool isLonePicture(const EditTimeline& timeline) {
    return timeline.clips().size() == 1 && timeline.clips()[0].isPicture;
}

bool StudioPreview::isBusy() const {
    return waiting_ > 0 || Clock::now() - served_.load() < kLull;
}

void StudioPreview::take(const Project& project, const std::string& text, double seconds, int side) {
    const std::string clipsText = clipsTextOf(project);
    Mistakes mistakes;
    if (!whole_ || clipsText != clipsText_) {
        preview_.reset();
        clipsText_ = clipsText;
        whole_ = std::make_unique<EditTimeline>(project, reading_, EditPurpose::pictures, mistakes);
        if (!mistakes.empty()) whole_.reset();
        check(mistakes);
    }
    const double photoSeconds = isLonePicture(*whole_) ? seconds : 0;
    if (preview_ && side == side_ && text == lookText_ && photoSeconds == photoSeconds_) return;
    if (preview_ && side == side_) {
        preview_->takeLook(project, mistakes, note_, photoSeconds);
    } else {
        Project small = project;
        const CGSize full = whole_->frame().size;
        if (std::max(full.width, full.height) > side) small.size = sizeWithin(whole_->frame(), side);
        auto timeline =
            std::make_unique<EditTimeline>(std::move(small), reading_, EditPurpose::pictures, mistakes);
        if (mistakes.empty())
            preview_ = std::make_unique<EditPreview>(std::move(timeline), context_, note_, photoSeconds);
    }
    side_ = side;
    photoSeconds_ = photoSeconds;
    lookText_ = mistakes.empty() ? text : std::string();
    check(mistakes);
}

Json StudioPreview::timeline(const Project& project) {
    Mistakes mistakes;
    const EditTimeline timeline(project, reading_, EditPurpose::pictures, mistakes);
    check(mistakes);
    Json json{{"seconds", timeline.end()},
              {"rate", timeline.rate()},
              {"width", int(timeline.frame().size.width)},
              {"height", int(timeline.frame().size.height)},
              {"clips", Json::array()}};
    for (const TimelineClip& clip : timeline.clips()) {
        json["clips"].push_back({{"start", clip.start},
                                 {"seconds", clip.length},
                                 {"lead", clip.lead},
                                 {"isPicture", clip.isPicture}});
    }
    return json;
}

std::optional<StudioPicture> StudioPreview::picture(const Project& project, double seconds, int side,
                                                    const std::string& view) {
    const Waiting waiting(waiting_);
    std::uint64_t ticket = 0;
    {
        std::scoped_lock lock(ticketMutex_);
        ticket = ++newest_[view];
    }
    Bitmap bitmap;
    StudioPicture picture;
    {
        std::scoped_lock lock(mutex_);
        {
            std::scoped_lock tickets(ticketMutex_);
            if (newest_[view] != ticket) return std::nullopt;
        }
        take(project, projectText(project), seconds, side);
        std::string cause;
        bitmap = context_->renderToBitmap(preview_->imageAt(seconds), &cause);
        if (!bitmap) fail(ExitCode::device, "{}", cause);
        picture.moving = movingOf(preview_->timeline(), seconds);
    }
    std::string cause;
    picture.jpeg = jpegBytes(bitmap, kJPEGQuality, &cause);
    if (picture.jpeg.empty()) fail(ExitCode::internal, "{}", cause);
    served_ = Clock::now();
    return picture;
}

}  // namespace qv::host
