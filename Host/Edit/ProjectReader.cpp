#include <algorithm>
#include <filesystem>

#include "Host/Edit/DocumentReader.h"
#include "Host/Edit/ProjectFile.h"
#include "Host/Edit/TimelineFile.h"

namespace qv::host {

namespace {

namespace fs = std::filesystem;

/// Included documents might multiply.
constexpr std::size_t kMostClips = 100'000;

class ProjectReader : private DocumentReader {
  public:
    ProjectReader(const ProjectValues& values, Mistakes& mistakes)
        : DocumentReader(mistakes), given_(values) {}

    Project read(const std::string& file, const DocumentValue& document) {
        Project project;
        const Files files = enter(file);
        project.place = document.place;
        if (!isObject(document,
                      {"$schema", "size", "fps", "fit", "values", "clips", "effects", "sound", "clipSound"}))
            return project;
        readValues(document.member("values"));
        project.size = readSize(document);
        project.rate = readRate(document);
        project.fit = readFit(document).value_or(project.fit);
        project.clipSound = readFlag(document, "clipSound", project.clipSound);
        readClips(document, project.clips);
        if (const auto* effects = document.member("effects")) project.effects = readEffects(*effects);
        if (const auto* sound = document.member("sound")) project.sound = readSound(*sound);
        return project;
    }

  private:
    /// The documents that are being read, each included by the one before.
    struct Files {
        explicit Files(std::vector<fs::path>& open) : open_(open) {}
        ~Files() { open_.pop_back(); }
        Files(const Files&) = delete;
        Files& operator=(const Files&) = delete;
        std::vector<fs::path>& open_;
    };

    static fs::path resolved(const fs::path& file) {
        std::error_code ignored;
        const fs::path path = fs::weakly_canonical(file, ignored);
        return path.empty() ? file : path;
    }
    Files enter(const std::string& file) {
        open_.push_back(resolved(file));
        return Files(open_);
    }

    /// With ${name} replaced. Fails as input.
    std::string replaced(const std::string& text) const override {
        std::string result;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t begin = text.find("${", at);
            result += text.substr(at, begin - at);
            if (begin == std::string::npos) break;
            const std::size_t end = text.find('}', begin);
            if (end == std::string::npos) fail(ExitCode::input, "a name in '{}' does not end", text);
            const std::string name = text.substr(begin + 2, end - begin - 2);
            const auto given = given_.find(name), own = own_.find(name);
            if (given == given_.end() && own == own_.end())
                fail(ExitCode::input, "there is no value for '${{{}}}'; --set {}=VALUE gives one", name,
                     name);
            result += given != given_.end() ? given->second : own->second;
            at = end + 1;
        }
        return result;
    }
    void readValues(const DocumentValue* values) {
        if (!values) return;
        if (!values->is(Kind::object))
            return mistake(*values, "an object is expected: a value for each name");
        for (const auto& [name, value] : values->members)
            with(value, [&, &key = name, &own = value] { own_[key] = plainText(own); });
    }

    /// A class with settings, as text or as an object with `names` besides. Nothing with a mistake.
    std::optional<EffectChoice> readChoice(const DocumentValue& value, ClassUse use, const Names& names) {
        std::optional<EffectChoice> choice;
        if (value.is(Kind::text)) {
            with(value, [&] { choice = parseEffect(replaced(value.text), use); });
            return choice;
        }
        Names all{"class", "set"};
        all.insert(all.end(), names.begin(), names.end());
        if (!isObject(value, all)) return choice;
        const DocumentValue* name = value.member("class");
        if (!name) {
            mistake(value, "there is no 'class'");
            return choice;
        }
        with(*name, [&] { choice = EffectChoice{&findClass(plainText(*name), use)}; });
        const DocumentValue* settings = value.member("set");
        if (!choice || !settings) return choice;
        if (!settings->is(Kind::object))
            mistake(*settings, "an object is expected: a value for each property");
        for (const auto& [key, setting] : settings->members)
            with(setting,
                 [&, &property = key, &given = setting] { readSetting(*choice, property, given, use); });
        return choice;
    }
    std::vector<ProjectEffect> readEffects(const DocumentValue& list) {
        std::vector<ProjectEffect> effects;
        if (!isList(list)) return effects;
        for (const DocumentValue& item : list.items) {
            auto choice = readChoice(item, ClassUse::overClip, {"from", "to"});
            if (!choice) continue;
            const auto from = readTime(item, "from"), to = readTime(item, "to");
            if (from || to) choice->span = EffectSpan{from.value_or(MediaTime{}), to};
            effects.push_back({*std::move(choice), item.place});
        }
        return effects;
    }
    std::optional<ProjectTransition> readTransition(const DocumentValue& value) {
        auto choice = readChoice(value, ClassUse::transition, {"duration"});
        if (!choice) return std::nullopt;
        ProjectTransition transition{*std::move(choice), {1}, value.place};
        if (const auto duration = readTime(value, "duration")) transition.duration = *duration;
        return transition;
    }
    ProjectSound readSound(const DocumentValue& value) {
        ProjectSound sound;
        sound.place = value.place;
        if (!isObject(value, {"file", "from", "offset", "duration", "gain", "fadeIn", "fadeOut"}))
            return sound;
        const DocumentValue* file = value.member("file");
        file ? void(sound.path = readPath(*file)) : mistake(value, "there is no 'file'");
        sound.from = readTime(value, "from").value_or(MediaTime{});
        sound.offset = readTime(value, "offset").value_or(MediaTime{});
        sound.duration = readTime(value, "duration");
        sound.fadeIn = readTime(value, "fadeIn").value_or(MediaTime{});
        sound.fadeOut = readTime(value, "fadeOut").value_or(MediaTime{});
        sound.gain = readGain(value);
        return sound;
    }

    ProjectClip readClip(const DocumentValue& value) {
        ProjectClip clip;
        clip.place = value.place;
        const DocumentValue *file = value.member("file"), *color = value.member("color");
        if (!isObject(value, {"file", "color", "from", "to", "duration", "fit", "mask", "gain", "effects",
                              "transition", "include"})) {
            return clip;
        }
        if (bool(file) == bool(color))
            mistake(value, "a clip has a 'file' or a 'color', and one of them only");
        if (file) clip.path = readPath(*file);
        if (color) {
            with(*color, [&] {
                const auto parsed = UIColor::fromHex(plainText(*color));
                if (!parsed) fail(ExitCode::input, "a colour is as #ff00fc, not '{}'", plainText(*color));
                clip.color = *parsed;
            });
        }
        clip.from = readTime(value, "from");
        clip.to = readTime(value, "to");
        clip.duration = readTime(value, "duration");
        clip.fit = readFit(value);
        clip.mask = readMask(value);
        clip.gain = readGain(value);
        if (const auto* effects = value.member("effects")) clip.effects = readEffects(*effects);
        if (const auto* transition = value.member("transition"))
            clip.transition = readTransition(*transition);
        return clip;
    }
    void readClips(const DocumentValue& document, std::vector<ProjectClip>& clips) {
        const DocumentValue* list = document.member("clips");
        if (!list) return mistake(document, "there are no 'clips'");
        if (!isList(*list)) return;
        for (const DocumentValue& item : list->items) {
            if (clips.size() >= kMostClips)
                return mistake(item, fmt::format("there are more than {} clips", kMostClips));
            if (const DocumentValue* included = item.member("include")) {
                if (isObject(item, {"include"})) include(*included, clips);
            } else {
                clips.push_back(readClip(item));
            }
        }
    }
    /// The clips of another document, in this one's place.
    void include(const DocumentValue& value, std::vector<ProjectClip>& clips) {
        const std::string file = readPath(value);
        if (file.empty()) return;
        if (std::find(open_.begin(), open_.end(), resolved(file)) != open_.end())
            return mistake(value, fmt::format("'{}' includes itself in the end", file));
        with(value, [&] {
            const DocumentValue document = parseDocument(file, readDocumentText(file));
            const Files files = enter(file);
            const ProjectValues outer = own_;
            readValues(document.member("values"));
            readClips(document, clips);
            own_ = outer;
        });
    }

    const ProjectValues& given_;
    ProjectValues own_;
    std::vector<fs::path> open_;
};

}  // namespace

ProjectValues parseValues(const std::vector<std::string>& texts) {
    ProjectValues values;
    for (const std::string& text : texts) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0)
            fail(ExitCode::usage, "--set takes name=value, not '{}'", text);
        values[text.substr(0, equals)] = text.substr(equals + 1);
    }
    return values;
}

Project parseProject(const std::string& file, const std::string& text, const ProjectValues& values,
                     Mistakes& mistakes, const NoteSink& note) {
    const DocumentValue document = parseDocument(file, text);
    if (isTimelineDocument(document)) return parseTimeline(document, mistakes, note);
    return ProjectReader(values, mistakes).read(file, document);
}

}  // namespace qv::host
