#include <algorithm>
#include <cmath>
#include <filesystem>

#include "Host/Clips/PictureFile.h"
#include "Host/Edit/TimelineFile.h"
#include "Platform/Foundation/Log.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

/// How far two times may differ that programs mean as one.
constexpr double kSameTime = 0.02;

/// A span in seconds.
struct Span {
    double start = 0, length = 0;
};

/// A clip or a gap on a track, before transitions lengthen it.
struct TrackItem {
    const DocumentValue* value = nullptr;
    ProjectClip clip;
    double start = 0;                ///< on the timeline
    double from = 0;                 ///< in the media
    std::optional<double> length{};  ///< none: all of the media
    bool isGap = false;
};

class TimelineReader : private DocumentReader {
  public:
    TimelineReader(Mistakes& mistakes, const NoteSink& note) : DocumentReader(mistakes), note_(note) {}

    Project read(const DocumentValue& document) {
        project_.place = document.place;
        const DocumentValue* timeline = timelineIn(document);
        const DocumentValue* tracks = timeline ? timeline->member("tracks") : nullptr;
        if (!tracks) {
            mistake(document, "there is no timeline with tracks in it");
            return std::move(project_);
        }
        if (const DocumentValue* settings = ownMetadata(*timeline)) {
            if (isObject(*settings, {"size", "fps", "fit"})) {
                project_.size = readSize(*settings);
                project_.rate = readRate(*settings);
                project_.fit = readFit(*settings).value_or(project_.fit);
            }
        }
        noteMarkers(*timeline);
        noteMarkers(*tracks);
        const DocumentValue* video = nullptr;
        for (const DocumentValue& track : childrenOf(*tracks)) {
            if (!isVideo(track) || childrenOf(track).empty()) continue;
            if (video) mistake(track, "there is a second video track; one only is read");
            if (!video) video = &track;
        }
        if (!video) mistake(*tracks, "there is no video track with anything on it");
        if (video) readVideo(*video);
        for (const DocumentValue& track : childrenOf(*tracks)) {
            if (track.textOf("kind") == "Audio") readAudio(track);
        }
        addEffects(*tracks, project_.effects, 0);
        return std::move(project_);
    }

  private:
    static const std::vector<DocumentValue>& childrenOf(const DocumentValue& value) {
        static const std::vector<DocumentValue> kNone;
        const DocumentValue* children = value.member("children");
        return children && children->is(Kind::list) ? children->items : kNone;
    }
    /// The kind of thing, without its version: "Clip".
    static std::string schemaOf(const DocumentValue& value) {
        const std::string schema = value.textOf("OTIO_SCHEMA");
        return schema.substr(0, schema.find('.'));
    }
    static bool isVideo(const DocumentValue& track) {
        return schemaOf(track) == "Track" && track.textOf("kind") != "Audio";
    }
    /// The first one, also of a collection.
    static const DocumentValue* timelineIn(const DocumentValue& document) {
        if (schemaOf(document) == "Timeline") return &document;
        for (const DocumentValue& child : childrenOf(document)) {
            if (schemaOf(child) == "Timeline") return &child;
        }
        return nullptr;
    }
    static const DocumentValue* ownMetadata(const DocumentValue& value) {
        const DocumentValue* metadata = value.member("metadata");
        return metadata ? metadata->member("qvfilter") : nullptr;
    }
    static const DocumentValue* given(const DocumentValue& value, const char* name) {
        const DocumentValue* member = value.member(name);
        return member && !member->is(Kind::null) ? member : nullptr;
    }
    void note(const DocumentValue& value, const std::string& text) {
        note_(oneLine(
            fmt::format("{}:{}: {}: {}", value.place.file, value.place.line, value.place.path, text)));
    }
    void noteMarkers(const DocumentValue& value) {
        const DocumentValue* markers = value.member("markers");
        if (!markers) return;
        for (const DocumentValue& marker : markers->items)
            note(marker, fmt::format("the marker '{}' is left out", marker.textOf("name")));
    }

    double number(const DocumentValue& owner, const char* name) {
        const DocumentValue* value = owner.member(name);
        if (value && value->is(Kind::number)) return value->number;
        mistake(owner, fmt::format("there is no number '{}'", name));
        return 0;
    }
    /// Seconds of a RationalTime; 0 where there is none.
    double seconds(const DocumentValue& owner, const char* name) {
        const DocumentValue* time = given(owner, name);
        if (!time) return 0;
        const double value = number(*time, "value"), rate = number(*time, "rate");
        if (rate > 0 && std::abs(value / rate) < 1e9) return value / rate;
        mistake(*time, "a time has a rate above 0 and is no longer than a thousand million seconds");
        return 0;
    }
    std::optional<Span> span(const DocumentValue& owner, const char* name) {
        const DocumentValue* range = given(owner, name);
        if (!range) return std::nullopt;
        const Span result{seconds(*range, "start_time"), seconds(*range, "duration")};
        if (result.length < 0) mistake(*range, "a duration is not negative");
        return result;
    }

    const DocumentValue* mediaOf(const DocumentValue& clip) {
        if (const DocumentValue* media = given(clip, "media_reference")) return media;
        const DocumentValue* all = clip.member("media_references");
        const std::string key = clip.textOf("active_media_reference_key");
        return all ? all->member(key.empty() ? "DEFAULT_MEDIA" : key) : nullptr;
    }
    /// The file that a URL or a path means.
    std::string pathOf(const DocumentValue& url) {
        std::string text = url.text;
        const bool isFile = text.starts_with("file:");
        if (isFile) {
            text = text.substr(5);
            if (text.starts_with("//")) text = text.substr(std::min(text.find('/', 2), text.size()));
        } else if (text.find("://") != std::string::npos) {
            return text;
        }
        const auto beside = [&](const std::string& name) {
            return (fs::path(url.place.file).parent_path() / name).string();
        };
        std::error_code ignored;
        // Some programs escape paths, some do not.
        if (!isFile && fs::exists(beside(text), ignored)) return beside(text);
        std::string decoded;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const bool isEscape = text[i] == '%' && i + 2 < text.size() &&
                                  std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
                                  std::isxdigit(static_cast<unsigned char>(text[i + 2]));
            decoded += isEscape ? char(std::stoi(text.substr(i + 1, 2), nullptr, 16)) : text[i];
            if (isEscape) i += 2;
        }
        return beside(decoded);
    }

    /// What of the clip's media is seen or heard.
    TrackItem itemOf(const DocumentValue& value) {
        TrackItem item{.value = &value};
        item.clip.place = value.place;
        const std::optional<Span> source = span(value, "source_range");
        if (source) item.length = source->length;
        const DocumentValue* enabled = value.member("enabled");
        const bool isOff = enabled && enabled->text == "false";
        const DocumentValue* media = mediaOf(value);
        const std::optional<Span> available = media ? span(*media, "available_range") : std::nullopt;
        if (!source && available) item.length = available->length;
        item.isGap = schemaOf(value) == "Gap" || isOff;
        if (item.isGap) {
            if (!item.length) mistake(value, "there is no source_range");
            return item;
        }
        const std::string kind = media ? schemaOf(*media) : "MissingReference";
        const DocumentValue* url = media ? media->member("target_url") : nullptr;
        if (kind == "ExternalReference" && url && url->is(Kind::text) && !url->text.empty()) {
            item.clip.path = pathOf(*url);
        } else if (kind == "GeneratorReference" && media->textOf("generator_kind") == "SolidColor") {
            const DocumentValue* parameters = media->member("parameters");
            const auto color = UIColor::fromHex(parameters ? parameters->textOf("color") : "");
            item.clip.color = color.value_or(item.clip.color);
        } else {
            mistake(value, fmt::format("its media is a {}, which tells no file", kind));
        }
        if (source) item.from = source->start - (available ? available->start : 0);
        return item;
    }

    void readVideo(const DocumentValue& track) {
        noteMarkers(track);
        if (given(track, "source_range")) note(track, "the track's source_range is left out");
        std::vector<TrackItem> items;
        std::vector<const DocumentValue*> transitions;  // into the item of the same number
        double time = 0;
        for (const DocumentValue& child : childrenOf(track)) {
            const std::string schema = schemaOf(child);
            noteMarkers(child);
            if (schema == "Transition") {
                if (transitions.size() > items.size()) mistake(child, "two transitions follow each other");
                transitions.resize(items.size());
                transitions.push_back(&child);
            } else if (schema == "Clip" || schema == "Gap") {
                TrackItem item = itemOf(child);
                item.start = time;
                time += item.length.value_or(0);
                if (item.isGap && item.length == 0.0) continue;
                items.push_back(std::move(item));
            } else {
                mistake(child, fmt::format("a {} on a track is not read", schema.empty() ? "thing" : schema));
            }
        }
        transitions.resize(std::max(transitions.size(), items.size()));
        if (transitions.size() > items.size())
            note(*transitions.back(), "a transition to nothing is left out");
        for (std::size_t i = 0; i < items.size(); ++i) {
            const bool isBetween = i > 0 && transitions[i];
            if (transitions[i] && !isBetween) note(*transitions[i], "a transition from nothing is left out");
            add(items, i, isBetween ? transitions[i] : nullptr);
        }
        addEffects(track, project_.effects, 0);
    }

    /// Each item with what it shows more than its part, on both sides, for the sake of transitions.
    void add(std::vector<TrackItem>& items, std::size_t index, const DocumentValue* transition) {
        TrackItem& item = items[index];
        double before = 0;
        if (transition) {
            if (auto made = transitionOf(*transition)) {
                before = seconds(*transition, "in_offset");
                const double after = seconds(*transition, "out_offset");
                made->duration = {before + after};
                extend(project_.clips.back(), items[index - 1], after);
                item.clip.transition = std::move(made);
            }
        }
        ProjectClip& clip = item.clip;
        const bool isMedia = !clip.path.empty() && !isPictureFile(clip.path);
        if (isMedia && item.from - before < -kTimeTolerance) {
            mistake(*item.value, fmt::format("the transition needs {:.3f} s of '{}' before its beginning",
                                             before - item.from, clip.path));
        }
        if (isMedia && item.from - before > 0) clip.from = MediaTime{item.from - before};
        if (item.length) clip.duration = MediaTime{*item.length + before};
        double gain = 1;
        if (const DocumentValue* settings = item.isGap ? nullptr : ownMetadata(*item.value)) {
            if (isObject(*settings, {"fit", "mask", "gain"})) {
                clip.fit = readFit(*settings);
                clip.mask = readMask(*settings);
                gain = readGain(*settings);
            }
        }
        gains_.push_back(gain);
        clip.gain = 0;  // until an audio track has it
        if (!item.isGap) addEffects(*item.value, clip.effects, before);
        project_.clips.push_back(clip);
        shown_.push_back(item);
    }
    void extend(ProjectClip& clip, const TrackItem& item, double after) {
        if (clip.duration) {
            clip.duration->value += after;
        } else if (after > 0) {
            mistake(*item.value,
                    fmt::format("the transition needs {:.3f} s of '{}' after its end", after, clip.path));
        }
    }

    /// The properties in the metadata.
    void readProperties(const DocumentValue& owner, EffectChoice& choice, ClassUse use, bool hasSpan) {
        const DocumentValue* settings = ownMetadata(owner);
        if (!settings) return;
        if (!settings->is(Kind::object))
            return mistake(*settings, "an object is expected: a value for each property");
        for (const auto& [name, value] : settings->members) {
            if (hasSpan && (name == "from" || name == "to")) continue;
            with(value,
                 [&, &property = name, &setting = value] { readSetting(choice, property, setting, use); });
        }
        if (!hasSpan) return;
        const auto from = readTime(*settings, "from"), to = readTime(*settings, "to");
        if (from || to) choice.span = EffectSpan{from.value_or(MediaTime{}), to};
    }
    std::optional<ProjectTransition> transitionOf(const DocumentValue& value) {
        const std::string name = value.textOf("transition_type");
        if (!isKnown(name, ClassUse::transition)) {
            note(value, fmt::format("this library has no transition '{}'; it becomes a cut", name));
            return std::nullopt;
        }
        ProjectTransition transition{EffectChoice{&findClass(name, ClassUse::transition)}, {}, value.place};
        readProperties(value, transition.choice, ClassUse::transition, false);
        return transition;
    }
    /// Those of an item that is seen `before` seconds earlier than its part begins.
    void addEffects(const DocumentValue& owner, std::vector<ProjectEffect>& effects, double before) {
        const DocumentValue* list = given(owner, "effects");
        if (!list || !isList(*list)) return;
        for (const DocumentValue& value : list->items) {
            const std::string name = value.textOf("effect_name");
            if (!isKnown(name, ClassUse::overClip)) {
                note(value, fmt::format("this library has no effect '{}'; it is left out", name));
                continue;
            }
            ProjectEffect effect{EffectChoice{&findClass(name, ClassUse::overClip)}, value.place};
            readProperties(value, effect.choice, ClassUse::overClip, true);
            shift(effect.choice, before);
            effects.push_back(std::move(effect));
        }
    }
    /// Counted from an earlier time on.
    static void shift(EffectChoice& choice, double before) {
        if (before <= 0) return;
        const auto move = [&](MediaTime& time) { time.value += time.isFrames ? 0 : before; };
        if (choice.span) {
            move(choice.span->from);
            if (choice.span->to) move(*choice.span->to);
        } else {
            for (PropertyKeys& keys : choice.keys) {
                for (PropertyKey& key : keys.keys) move(key.time);
            }
        }
    }
    static bool isKnown(const std::string& name, ClassUse use) {
        try {
            findClass(name, use);
            return !name.empty();
        } catch (const Failure&) {
            return false;
        }
    }

    void readAudio(const DocumentValue& track) {
        noteMarkers(track);
        double time = 0;
        for (const DocumentValue& child : childrenOf(track)) {
            const std::string schema = schemaOf(child);
            if (schema != "Clip" && schema != "Gap") continue;  // transitions between sounds are cross-fades
            noteMarkers(child);
            const TrackItem item = itemOf(child);
            const double start = time;
            time += item.length.value_or(0);
            if (!item.isGap && !isOfShownClip(item, start)) addSound(child, item, start);
        }
    }
    /// Whether it is the sound of a clip that is seen at the same time; then that is heard.
    bool isOfShownClip(const TrackItem& item, double start) {
        const auto same = [](double a, double b) { return std::abs(a - b) < kSameTime; };
        for (std::size_t i = 0; i < shown_.size(); ++i) {
            if (shown_[i].clip.path != item.clip.path || !same(shown_[i].start, start) ||
                !same(shown_[i].from, item.from))
                continue;
            project_.clips[i].gain = gains_[i];
            return true;
        }
        return false;
    }
    void addSound(const DocumentValue& value, const TrackItem& item, double start) {
        if (project_.sound)
            return note(value, fmt::format("only one sound besides the clips' own is taken; '{}' is left out",
                                           item.clip.path));
        ProjectSound sound{.path = item.clip.path, .from = {item.from}, .offset = {start}};
        sound.place = value.place;
        if (item.length) sound.duration = MediaTime{*item.length};
        if (const DocumentValue* settings = ownMetadata(value)) {
            if (isObject(*settings, {"gain", "fadeIn", "fadeOut"})) {
                sound.gain = readGain(*settings);
                sound.fadeIn = readTime(*settings, "fadeIn").value_or(MediaTime{});
                sound.fadeOut = readTime(*settings, "fadeOut").value_or(MediaTime{});
            }
        }
        project_.sound = std::move(sound);
    }

    const NoteSink& note_;
    Project project_;
    std::vector<TrackItem> shown_;  ///< of the project's clips
    std::vector<double> gains_;     ///< if they are heard
};

}  // namespace

bool isTimelineDocument(const DocumentValue& document) {
    return document.member("OTIO_SCHEMA") != nullptr;
}

Project parseTimeline(const DocumentValue& document, Mistakes& mistakes, const NoteSink& note) {
    return TimelineReader(mistakes, note).read(document);
}

}  // namespace qv::host
