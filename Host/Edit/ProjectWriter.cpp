#include <filesystem>

#include "Host/Clips/MaskSource.h"
#include "Host/CommandLine/JSON.h"
#include "Host/Edit/ProjectFile.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

namespace fs = std::filesystem;

Json timeToJSON(const MediaTime& time) {
    return time.isFrames ? Json(time.text()) : Json(time.value);
}

struct ValueToJSON {
    Json operator()(bool value) const { return value; }
    Json operator()(std::int64_t value) const { return value; }
    Json operator()(double value) const { return shortestNumber(value); }
    Json operator()(const auto& value) const { return propertyText(value); }
};

Json valueToJSON(const QVPropertyValue& value) {
    return std::visit(ValueToJSON(), value);
}

Json keysToJSON(const PropertyKeys& keys) {
    Json list = Json::array();
    for (const PropertyKey& key : keys.keys) {
        Json item{{"at", timeToJSON(key.time)}, {"value", valueToJSON(key.value)}};
        if (!(key.easing == Easing())) item["easing"] = key.easing.name();
        list.push_back(std::move(item));
    }
    return list;
}

Json effectsToJSON(const std::vector<ProjectEffect>& effects) {
    Json list = Json::array();
    for (const ProjectEffect& effect : effects) list.push_back(choiceToJSON(effect.choice));
    return list;
}

std::string pathFrom(const std::string& folder, const std::string& path) {
    const bool isPlace = path == "-" || path.find("://") != std::string::npos || fs::path(path).is_absolute();
    if (folder.empty() || isPlace) return path;
    return fs::path(fs::absolute(path)).lexically_relative(fs::absolute(folder)).string();
}

Json clipToJSON(const ProjectClip& clip, const std::string& folder) {
    Json json;
    clip.path.empty() ? json["color"] = clip.color.hex() : json["file"] = pathFrom(folder, clip.path);
    if (clip.from) json["from"] = timeToJSON(*clip.from);
    if (clip.to) json["to"] = timeToJSON(*clip.to);
    if (clip.duration) json["duration"] = timeToJSON(*clip.duration);
    if (clip.fit) json["fit"] = fitName(*clip.fit);
    if (!clip.mask.empty())
        json["mask"] = clip.mask == kAutomaticMask ? clip.mask : pathFrom(folder, clip.mask);
    if (clip.gain != 1) json["gain"] = clip.gain;
    if (clip.transition) {
        json["transition"] = choiceToJSON(clip.transition->choice);
        json["transition"]["duration"] = timeToJSON(clip.transition->duration);
    }
    if (!clip.effects.empty()) json["effects"] = effectsToJSON(clip.effects);
    return json;
}

void addPart(std::vector<std::string>& words, const ProjectClip& clip) {
    if (clip.from) words.insert(words.end(), {"--from", clip.from->text()});
    if (clip.to) words.insert(words.end(), {"--to", clip.to->text()});
}

/// Whether nothing happens to the clip that `transition` has no option for.
bool isPlain(const ProjectClip& clip) {
    return !clip.path.empty() && clip.effects.empty() && !clip.duration && clip.gain == 1 && !clip.fit;
}

}  // namespace

Json choiceToJSON(const EffectChoice& choice) {
    Json json{{"class", choice.filterClass->name}};
    if (choice.span) {
        json["from"] = timeToJSON(choice.span->from);
        if (choice.span->to) json["to"] = timeToJSON(*choice.span->to);
    }
    for (const auto& [property, value] : choice.settings)
        json["set"][std::string(property->name)] = valueToJSON(value);
    for (const PropertyKeys& keys : choice.keys)
        json["set"][std::string(keys.property->name)] = keysToJSON(keys);
    return json;
}

std::string projectText(const Project& project, const std::string& folder) {
    Json json;
    if (project.size) json["size"] = fmt::format("{}x{}", project.size->width, project.size->height);
    if (project.rate.value() > 0) {
        const std::string rate = rateText(project.rate);
        project.rate.denominator == 1 ? json["fps"] = project.rate.numerator : json["fps"] = rate;
    }
    json["fit"] = fitName(project.fit);
    if (!project.clipSound) json["clipSound"] = false;
    json["clips"] = Json::array();
    for (const ProjectClip& clip : project.clips) json["clips"].push_back(clipToJSON(clip, folder));
    if (!project.effects.empty()) json["effects"] = effectsToJSON(project.effects);
    if (project.sound) {
        const ProjectSound& sound = *project.sound;
        json["sound"]["file"] = pathFrom(folder, sound.path);
        const std::pair<const char*, MediaTime> times[] = {{"from", sound.from},
                                                           {"offset", sound.offset},
                                                           {"fadeIn", sound.fadeIn},
                                                           {"fadeOut", sound.fadeOut}};
        for (const auto& [name, time] : times) {
            if (time.value != 0) json["sound"][name] = timeToJSON(time);
        }
        if (sound.duration) json["sound"]["duration"] = timeToJSON(*sound.duration);
        if (sound.gain != 1) json["sound"]["gain"] = sound.gain;
    }
    return dump(json);
}

std::string commandLine(const Project& project, const std::string& output, const std::string& projectFile) {
    const auto& clips = project.clips;
    const bool isPlainEdit = project.effects.empty() && !project.sound && project.clipSound;
    const bool isRender = isPlainEdit && clips.size() == 1 && !clips[0].path.empty() && clips[0].gain == 1;
    const bool isTransition =
        isPlainEdit && clips.size() == 2 && clips[1].transition && isPlain(clips[0]) && isPlain(clips[1]);
    std::vector<std::string> words{"qvfilter"};
    if (isRender) {
        const ProjectClip& clip = clips[0];
        words.insert(words.end(), {"render", "-i", clip.path});
        addPart(words, clip);
        if (clip.duration) words.insert(words.end(), {"--duration", clip.duration->text()});
        for (const ProjectEffect& effect : clip.effects)
            words.insert(words.end(), {"-e", effect.choice.text()});
        if (!clip.mask.empty()) words.insert(words.end(), {"--mask", clip.mask});
    } else if (isTransition) {
        words.insert(words.end(), {"transition", clips[1].transition->choice.text()});
        for (const ProjectClip& clip : clips) {
            words.insert(words.end(), {"-i", clip.path});
            addPart(words, clip);
        }
        words.insert(words.end(), {"--duration", clips[1].transition->duration.text()});
    } else {
        words.insert(words.end(), {"edit", projectFile});
    }
    if (isRender || isTransition) {
        const Fit fit = isRender ? clips[0].fit.value_or(project.fit) : project.fit;
        if (project.size)
            words.insert(words.end(),
                         {"--size", fmt::format("{}x{}", project.size->width, project.size->height)});
        if (fit != Fit::cover) words.insert(words.end(), {"--fit", std::string(fitName(fit))});
        if (project.rate.value() > 0) words.insert(words.end(), {"--fps", rateText(project.rate)});
    }
    words.insert(words.end(), {"-o", output});
    std::string line;
    for (const std::string& word : words) line += (line.empty() ? "" : " ") + shellWord(word);
    return line;
}

}  // namespace qv::host
