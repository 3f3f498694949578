#include <filesystem>

#include "Host/CommandLine/JSON.h"
#include "Host/Edit/TimelineFile.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

namespace fs = std::filesystem;

/// As a file URL has it: everything escaped but letters, digits and what separates.
std::string urlOf(const std::string& path) {
    if (path.empty() || path.find("://") != std::string::npos) return path;
    std::string url = "file://";
    for (const char c : fs::absolute(path).lexically_normal().string()) {
        const bool isPlain = std::isalnum(static_cast<unsigned char>(c)) ||
                             std::string_view("/-_.~").find(c) != std::string_view::npos;
        url += isPlain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
    return url;
}

class TimelineWriter {
  public:
    explicit TimelineWriter(const EditTimeline& timeline)
        : timeline_(timeline), project_(timeline.project()) {}

    Json write() const {
        Json tracks = thing("Stack.1", "tracks");
        tracks["effects"] = effects(project_.effects);
        tracks["children"] = Json::array({videoTrack()});
        if (project_.clipSound) addSoundOfClips(tracks["children"]);
        if (project_.sound) tracks["children"].push_back(soundTrack(*project_.sound));
        Json result = thing("Timeline.1", "qvfilter");
        if (project_.size)
            result["metadata"]["qvfilter"]["size"] =
                fmt::format("{}x{}", project_.size->width, project_.size->height);
        if (project_.rate.value() > 0) result["metadata"]["qvfilter"]["fps"] = rateText(project_.rate);
        result["metadata"]["qvfilter"]["fit"] = fitName(project_.fit);
        result["global_start_time"] = nullptr;
        result["tracks"] = std::move(tracks);
        return result;
    }

  private:
    static Json thing(const char* schema, const std::string& name) {
        return {{"OTIO_SCHEMA", schema}, {"name", name}, {"metadata", Json::object()}};
    }
    Json time(double seconds) const {
        // Whole frames are whole numbers.
        const double value = seconds * timeline_.rate(), whole = std::round(value);
        return {{"OTIO_SCHEMA", "RationalTime.1"},
                {"rate", timeline_.rate()},
                {"value", std::abs(value - whole) < 1e-6 ? whole : value}};
    }
    Json range(double start, double length) const {
        return {{"OTIO_SCHEMA", "TimeRange.1"}, {"start_time", time(start)}, {"duration", time(length)}};
    }
    static Json track(const char* kind, const char* name) {
        Json result = thing("Track.1", name);
        result["kind"] = kind;
        result["source_range"] = nullptr;
        result["effects"] = result["markers"] = result["children"] = Json::array();
        return result;
    }
    Json gap(double length) const {
        Json result = thing("Gap.1", "");
        result["source_range"] = range(0, length);
        result["effects"] = result["markers"] = Json::array();
        return result;
    }
    Json clip(const std::string& path, double from, double length) const {
        Json result = thing("Clip.2", fs::path(path).filename().string());
        result["source_range"] = range(from, length);
        result["effects"] = result["markers"] = Json::array();
        Json media = thing("ExternalReference.1", "");
        media["target_url"] = urlOf(path);
        media["available_range"] = nullptr;
        result["media_references"]["DEFAULT_MEDIA"] = std::move(media);
        result["active_media_reference_key"] = "DEFAULT_MEDIA";
        return result;
    }
    /// The settings of a choice, as a project has them, are what stands under "qvfilter".
    static Json settings(const EffectChoice& choice) {
        const Json all = choiceToJSON(choice);
        Json result = all.value("set", Json::object());
        for (const char* name : {"from", "to"}) {
            if (all.contains(name)) result[name] = all[name];
        }
        return result;
    }
    static Json effects(const std::vector<ProjectEffect>& effects) {
        Json list = Json::array();
        for (const ProjectEffect& effect : effects) {
            Json item = thing("Effect.1", std::string(effect.choice.filterClass->title));
            item["effect_name"] = effect.choice.filterClass->name;
            item["metadata"]["qvfilter"] = settings(effect.choice);
            list.push_back(std::move(item));
        }
        return list;
    }

    /// Clips as they are seen to where the next one comes in: a transition lies behind the cut.
    Json videoTrack() const {
        Json result = track("Video", "video");
        const auto& clips = timeline_.clips();
        for (std::size_t i = 0; i < clips.size(); ++i) {
            const TimelineClip& entry = clips[i];
            if (const auto& transition = entry.clip.transition) {
                Json item = thing("Transition.1", std::string(transition->choice.filterClass->title));
                item["transition_type"] = transition->choice.filterClass->name;
                item["in_offset"] = time(0);
                item["out_offset"] = time(entry.lead);
                item["metadata"]["qvfilter"] = settings(transition->choice);
                result["children"].push_back(std::move(item));
            }
            Json item = clip(entry.clip.path, entry.from, entry.length - entry.tail);
            if (entry.clip.path.empty()) {
                Json media = thing("GeneratorReference.1", "");
                media["generator_kind"] = "SolidColor";
                media["available_range"] = nullptr;
                media["parameters"]["color"] = entry.clip.color.hex();
                item["media_references"]["DEFAULT_MEDIA"] = std::move(media);
            }
            Json& own = item["metadata"];
            if (entry.clip.fit) own["qvfilter"]["fit"] = fitName(*entry.clip.fit);
            if (!entry.clip.mask.empty())
                own["qvfilter"]["mask"] = entry.clip.mask == kAutomaticMask
                                              ? entry.clip.mask
                                              : fs::absolute(entry.clip.mask).string();
            if (entry.clip.gain != 1) own["qvfilter"]["gain"] = entry.clip.gain;
            item["effects"] = effects(entry.clip.effects);
            result["children"].push_back(std::move(item));
        }
        return result;
    }
    void addSoundOfClips(Json& tracks) const {
        Json result = track("Audio", "sound of the clips");
        bool isHeard = false;
        for (const TimelineClip& entry : timeline_.clips()) {
            const double length = entry.length - entry.tail;
            const bool hasSound = entry.soundTracks > 0 && entry.clip.gain > 0;
            result["children"].push_back(hasSound ? clip(entry.clip.path, entry.from, length) : gap(length));
            isHeard = isHeard || hasSound;
        }
        if (isHeard) tracks.push_back(std::move(result));
    }
    Json soundTrack(const ProjectSound& sound) const {
        const double rate = timeline_.rate(), offset = sound.offset.seconds(rate);
        const double length = sound.duration ? sound.duration->seconds(rate) : timeline_.end() - offset;
        Json result = track("Audio", "sound");
        if (offset > 0) result["children"].push_back(gap(offset));
        Json item = clip(sound.path, sound.from.seconds(rate), length);
        Json& own = item["metadata"]["qvfilter"];
        own["gain"] = sound.gain;
        own["fadeIn"] = sound.fadeIn.seconds(rate);
        own["fadeOut"] = sound.fadeOut.seconds(rate);
        result["children"].push_back(std::move(item));
        return result;
    }

    const EditTimeline& timeline_;
    const Project& project_;
};

}  // namespace

std::string timelineText(const EditTimeline& timeline) {
    return dump(TimelineWriter(timeline).write());
}

}  // namespace qv::host
