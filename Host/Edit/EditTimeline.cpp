#include "Host/Edit/EditTimeline.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "Host/Clips/PictureFile.h"
#include "Platform/Media/AudioReader.h"

namespace qv::host {

namespace {

double rateOf(const ClipVideoFormat& video) {
    return video.averageFrameRate.value() > 0 ? video.averageFrameRate.value() : video.realFrameRate.value();
}

/// How far times may be off that were read from a file, or rounded to a decimal.
double tolerance(double rate) {
    return std::max(kTimeTolerance, rate > 0 ? 0.5 / rate : 0);
}

/// How many frames of the file have to be counted to know where the part lies; 0 when none.
std::size_t framesToCount(const ProjectClip& clip) {
    constexpr std::size_t kAll = 10'000'000;
    std::size_t count = 0;
    for (const auto& time : {clip.from, clip.to, clip.duration}) {
        if (time && time->isFrames) count += std::size_t(std::max(time->value, 0.0)) + 1;
    }
    const bool isAfterSeconds = clip.duration && clip.duration->isFrames && clip.from && !clip.from->isFrames;
    return isAfterSeconds ? kAll : std::min(count, kAll);
}

/// Seconds of a time in the file. Frames are counted from the one that is shown at `since`.
double secondsIn(const TimelineClip& entry, const MediaTime& time, double rate, double since = 0) {
    if (!time.isFrames || !entry.frameTimes || entry.frameTimes->empty()) return since + time.seconds(rate);
    const std::vector<double>& times = *entry.frameTimes;
    const auto after = std::upper_bound(times.begin(), times.end(), since + kTimeTolerance);
    const auto first = std::max<std::ptrdiff_t>(after - times.begin(), 1) - 1;
    const double index = double(first) + time.value;
    // Past the last one they go on at the rate.
    const double past = index - double(times.size());
    return past < 0 ? times[std::size_t(index)] : entry.length + past / (rate > 0 ? rate : kRateOfPictures);
}

std::string nameOf(const ProjectClip& clip) {
    return clip.path.empty() ? clip.color.hex() : clip.path;
}

}  // namespace

EditTimeline::EditTimeline(Project project, ReadingOptions reading, EditPurpose purpose, Mistakes& mistakes)
    : project_(std::move(project)),
      reading_(std::move(reading)),
      isOneClip_(purpose == EditPurpose::clip && project_.clips.size() == 1) {
    if (project_.clips.empty()) {
        mistakes.add(project_.place, ExitCode::input, "there is no clip in it");
        return;
    }
    look(mistakes);
    const bool hasSize = project_.size || std::ranges::any_of(clips_, [](const TimelineClip& each) {
                             return each.video.width > 0;
                         });
    const bool isAnyKnown =
        std::any_of(clips_.begin(), clips_.end(), [](const auto& each) { return each.isKnown; });
    if (!hasSize && isAnyKnown)
        mistakes.add(project_.place, ExitCode::usage, "no clip gives the output a size");
    if (!hasSize) return;
    chooseFormat();
    for (TimelineClip& entry : clips_)
        entry.isKnown = entry.isKnown && mistakes.guard(entry.clip.place, [&] { setPart(entry); });
    place(mistakes);
    checkEffects(mistakes);
    if (project_.sound) {
        mistakes.guard(project_.sound->place, [&] {
            std::string cause;
            const bool isHeard = bool(AudioReader::open(project_.sound->path, &cause));
            if (!cause.empty()) fail(ExitCode::input, "{}", cause);
            if (!isHeard) fail(ExitCode::input, "there is no sound in '{}'", project_.sound->path);
        });
    }
}

/// Looks into each file once.
void EditTimeline::look(Mistakes& mistakes) {
    std::map<std::string, std::size_t> counts, known;
    for (const ProjectClip& clip : project_.clips) {
        std::size_t& count = counts[clip.path];
        count = std::max(count, framesToCount(clip));
    }
    bool hasSize = project_.size.has_value();
    for (const ProjectClip& clip : project_.clips) {
        TimelineClip& entry = clips_.emplace_back();
        if (const auto before = known.find(clip.path); before != known.end()) entry = clips_[before->second];
        entry.clip = clip;
        if (entry.isKnown) continue;
        entry.isKnown = mistakes.guard(clip.place, [&] { look(entry, !hasSize, counts[clip.path]); });
        hasSize = hasSize || entry.video.width > 0;
        if (entry.isKnown && clip.path != "-") known.emplace(clip.path, clips_.size() - 1);
    }
}

/// What the file tells; `length` becomes that of all of it.
void EditTimeline::look(TimelineClip& entry, bool needsSize, std::size_t count) {
    const std::string& path = entry.clip.path;
    const bool isFirst = clips_.size() == 1;
    const ProjectClip& clip = entry.clip;
    entry.isPicture = path.empty() || (!isOneClip_ && (path == "-" || isPictureFile(path)));
    if (path.empty()) return;
    if (entry.isPicture) {
        if (!needsSize && path != "-") return;
        auto footage = std::make_unique<Footage>(path);
        entry.video = footage->video();
        if (isFirst) first_ = std::move(footage);
        return;
    }
    ClipReaderOptions options = reading_(path);
    const bool isPart = clip.from || clip.to || clip.duration;
    isWholeClip_ = isOneClip_ && !isPart && !project_.sound && project_.clipSound && clip.gain == 1;
    options.packets = isWholeClip_;
    auto reader = openClip(path, options);
    const ClipInfo info = reader->info();
    entry.video = info.video;
    entry.isPicture = info.isStillPicture;
    for (const ClipStream& stream : info.streams) {
        entry.soundTracks += stream.kind == ClipStreamKind::audio;
        entry.subtitleTracks += stream.kind == ClipStreamKind::subtitle;
    }
    if (isFirst) streams_ = reader->streams();
    if (!entry.isPicture) {
        const auto start = reader->startTime(), end = reader->endTime();
        if (count > 0) {
            auto times = std::make_shared<std::vector<double>>();
            for (const std::int64_t time : reader->frameTimes(count))
                times->push_back(secondsOf(info, time - start.value_or(0)));
            entry.frameTimes = std::move(times);
        }
        entry.origin = start ? secondsOf(info, *start) : info.start;
        if (start && end && *end > *start) {
            entry.length = secondsOf(info, *end - *start);
        } else if (project_.clips.size() == 1) {
            entry.length = info.duration > 0 ? info.duration : kUnlimited;
        } else {
            ShownFrames frames(std::move(reader));
            entry.length = end ? secondsOf(info, *end - frames.firstTime()) : frames.end();
            entry.origin = secondsOf(info, frames.firstTime());
        }
    }
    if (isFirst) firstReader_ = std::move(reader);
}

void EditTimeline::chooseFormat() {
    const bool isPicture = clips_[0].isPicture;
    const auto kind =
        std::find_if(clips_.begin(), clips_.end(), [](const auto& each) { return !each.isPicture; });
    const auto shape =
        std::find_if(clips_.begin(), clips_.end(), [](const auto& each) { return each.video.width > 0; });
    if (kind != clips_.end()) video_ = kind->video;
    if (isOneClip_ && isPicture) video_ = clips_[0].video;
    frame_ = project_.size ? FrameShape{{double(project_.size->width), double(project_.size->height)}, 1}
                           : uprightShape(shape->video);
    if ((isPicture && !isOneClip_) || project_.size) {
        video_.width = int(frame_.size.width);
        video_.height = int(frame_.size.height);
        video_.pixelAspect = {1, 1};
        video_.rotation = 0;
        video_.displayMatrix.reset();
    }
    keepsTimes_ = !isPicture && project_.rate.value() <= 0;
    const bool hasOwnRate = kind != clips_.end() || isOneClip_;
    if (!hasOwnRate || project_.rate.value() > 0) {
        const Rational rate = project_.rate.value() > 0 ? project_.rate : Rational{kRateOfPictures, 1};
        video_.timeBase = {rate.denominator, rate.numerator};
        video_.averageFrameRate = video_.realFrameRate = rate;
    }
    if (video_.averageFrameRate.value() <= 0) video_.averageFrameRate = video_.realFrameRate;
    if (video_.averageFrameRate.value() <= 0)
        video_.averageFrameRate = isOneClip_ && isPicture ? Rational{25, 1} : Rational{kRateOfPictures, 1};
}

/// Where the part begins and how long it is; place() gives a picture without a duration its length.
void EditTimeline::setPart(TimelineClip& entry) {
    const ProjectClip& clip = entry.clip;
    const std::string name = nameOf(clip);
    if (clip.to && clip.duration) fail(ExitCode::usage, "'{}' has both an end and a duration", name);
    if (clip.duration && clip.duration->value <= 0)
        fail(ExitCode::usage, "the duration of '{}' is not above 0", name);
    if (entry.isPicture) {
        if (clip.from || clip.to)
            fail(ExitCode::usage, "'{}' is a picture, which has a duration and no part", name);
        if (clip.duration) entry.length = clip.duration->seconds(rate());
        return;
    }
    const double rate = rateOf(entry.video), all = entry.length;
    if (clip.from) entry.from = secondsIn(entry, *clip.from, rate);
    const double to = clip.to         ? secondsIn(entry, *clip.to, rate)
                      : clip.duration ? secondsIn(entry, *clip.duration, rate, entry.from)
                                      : all;
    entry.frameTimes = nullptr;
    if (entry.from >= all - tolerance(rate))
        fail(ExitCode::input, "'{}' ends at {:.3f} s, before its part begins at {:.3f} s", name, all,
             entry.from);
    if (to > all + tolerance(rate))
        fail(ExitCode::input, "'{}' ends at {:.3f} s, before its part does at {:.3f} s", name, all, to);
    if (to <= entry.from)
        fail(ExitCode::usage, "the part of '{}' ends at {:.3f} s and begins at {:.3f} s", name, to,
             entry.from);
    entry.length = std::min(to, all) - entry.from;
}

/// Each clip after the one before, less the transition.
void EditTimeline::place(Mistakes& mistakes) {
    for (std::size_t i = 0; i < clips_.size(); ++i) {
        const auto& transition = clips_[i].clip.transition;
        if (!transition) continue;
        const double seconds = transition->duration.seconds(rate());
        if (i == 0)
            mistakes.add(transition->place, ExitCode::usage,
                         "there is no clip before the first one's transition");
        if (seconds <= 0)
            mistakes.add(transition->place, ExitCode::usage, "a transition's duration is above 0");
        if (i == 0 || seconds <= 0) continue;
        clips_[i].lead = clips_[i - 1].tail = seconds;
    }
    for (std::size_t i = 0; i < clips_.size(); ++i) {
        TimelineClip& entry = clips_[i];
        const double covered = entry.lead + entry.tail;
        if (entry.length <= 0) entry.length = std::max(kPhotoSeconds, covered);
        if (i > 0) entry.start = clips_[i - 1].end() - entry.lead;
        if (!entry.isKnown || entry.length >= covered - kTimeTolerance) continue;
        const bool isOne = entry.lead == 0 || entry.tail == 0;
        mistakes.add(
            entry.clip.place, ExitCode::input,
            fmt::format("'{}' lasts {:.3f} s, which is shorter than {} of {:.3f} s", nameOf(entry.clip),
                        entry.length, isOne ? "the transition" : "its two transitions", covered));
    }
}

void EditTimeline::checkEffects(Mistakes& mistakes) const {
    const auto check = [&](const ProjectEffect& effect, double seconds, bool hasMask) {
        const QVInput* mask = effect.choice.filterClass->input(QVInputRole::mask);
        if (mask && mask->isRequired && !hasMask) {
            mistakes.add(effect.place, ExitCode::usage,
                         fmt::format("{} needs --mask FILE, or an input with an alpha channel",
                                     effect.choice.filterClass->name));
        }
        const std::string wrong = seconds < kUnlimited ? spanMistake(effect.choice, seconds, rate()) : "";
        if (!wrong.empty()) mistakes.add(effect.place, ExitCode::usage, wrong);
        for (const PropertyKeys& keys : effect.choice.keys)
            mistakes.guard(effect.place, [&] { checkKeyTimes(keys, rate()); });
    };
    std::set<std::string> masks{"", "-"};
    for (const TimelineClip& entry : clips_) {
        const std::string& mask = entry.clip.mask;
        if (masks.insert(mask).second)
            mistakes.guard(entry.clip.place,
                           [&] { openMaskSource(mask, reading_(mask), [](const std::string&) {}); });
        const bool mayHaveMask = !mask.empty() || entry.isPicture || entry.video.hasAlpha;
        const double length = entry.isKnown ? entry.length : kUnlimited;
        for (const ProjectEffect& effect : entry.clip.effects)
            check(effect, length, mayHaveMask || !entry.isKnown);
        if (const auto& transition = entry.clip.transition) {
            for (const PropertyKeys& keys : transition->choice.keys)
                mistakes.guard(transition->place, [&] { checkKeyTimes(keys, rate()); });
        }
    }
    const bool isKnown =
        std::all_of(clips_.begin(), clips_.end(), [](const auto& each) { return each.isKnown; });
    for (const ProjectEffect& effect : project_.effects) check(effect, isKnown ? end() : kUnlimited, false);
}

void EditTimeline::takeLook(const Project& project, Mistakes& mistakes) {
    project_.effects = project.effects;
    for (std::size_t i = 0; i < clips_.size(); ++i) {
        clips_[i].clip.effects = project.clips[i].effects;
        clips_[i].clip.transition = project.clips[i].transition;
    }
    checkEffects(mistakes);
}

std::unique_ptr<Footage> EditTimeline::open(std::size_t index) {
    const TimelineClip& entry = clips_[index];
    std::unique_ptr<Footage> footage;
    if (index == 0 && first_) return std::move(first_);
    if (index == 0 && firstReader_) {
        footage = std::make_unique<Footage>(std::move(firstReader_));
    } else if (entry.clip.path.empty()) {
        const UIColor& color = entry.clip.color;
        footage = std::make_unique<Footage>(MTIImage::initWithColor(
            {float(color.red()), float(color.green()), float(color.blue()), 1}, false, frame_.size));
    } else {
        footage = std::make_unique<Footage>(entry.clip.path, reading_(entry.clip.path));
    }
    if (entry.from > 0) footage->goTo(entry.from);
    return footage;
}

void EditTimeline::begin() {
    TimelineClip& entry = clips_[0];
    if (entry.isPicture || isWholeClip_) return;
    first_ = open(0);
    const ShownFrames& frames = *first_->frames();
    entry.origin = secondsOf(frames.info(), frames.firstTime());
    if (!keepsTimes_) return;
    const double earlier = entry.from - frames.seconds();
    entry.from -= earlier;
    entry.length += earlier;
    for (std::size_t i = 1; i < clips_.size(); ++i) clips_[i].start += earlier;
}

std::vector<std::string> EditTimeline::losses() const {
    std::vector<std::string> lines;
    std::set<std::string> told;
    const auto kind =
        std::find_if(clips_.begin(), clips_.end(), [](const auto& each) { return !each.isPicture; });
    for (const TimelineClip& entry : clips_) {
        const std::string& path = entry.clip.path;
        if (entry.isPicture || isWholeClip_ || !told.insert(path).second) continue;
        const bool isHeard = project_.clipSound && entry.clip.gain > 0;
        if (entry.soundTracks > 1 && isHeard)
            lines.push_back(
                fmt::format("'{}': only one of its {} sound tracks is taken", path, entry.soundTracks));
        if (entry.subtitleTracks > 0) lines.push_back(fmt::format("'{}': subtitles are left out", path));
        const int from = entry.video.tags.transfer, to = kind->video.tags.transfer;
        constexpr int kUnspecified = 2;
        if (from != to && from != kUnspecified && to != kUnspecified) {
            lines.push_back(fmt::format("'{}' has another transfer curve than '{}'; it is not converted",
                                        path, kind->clip.path));
        }
    }
    return lines;
}

}  // namespace qv::host
