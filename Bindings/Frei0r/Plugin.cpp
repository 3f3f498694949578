#include "Bindings/Frei0r/Plugin.h"

#include <dlfcn.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <mutex>

#include "Bindings/Plugin/PluginClass.h"
#include "Bindings/Plugin/PluginFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "QVFilterExtension/QVFilterVersion.h"

#include <fmt/format.h>

using namespace qv;

namespace {

/// Times that the interface has no other way to tell: a minute is what a control reaches.
constexpr double kLongestSeconds = 60, kUsualSeconds = 3;

/// One of the interface's parameters. Numbers are folded into 0..1.
struct Parameter {
    const QVProperty* property;
    int type;
    double minimum, maximum;
    std::string help;

    double unfolded(double value) const {
        return std::isfinite(value) ? minimum + std::clamp(value, 0.0, 1.0) * (maximum - minimum) : minimum;
    }
    double folded(double value) const {
        return maximum > minimum ? std::clamp((value - minimum) / (maximum - minimum), 0.0, 1.0) : 0;
    }
};

std::string foldedHelp(const QVProperty& property, double minimum, double maximum) {
    if (property.variants.empty()) {
        const std::string_view unit = unitName(property.unit);
        return fmt::format("{}; 0 to 1 is {} to {}{}{}", property.help, shortestNumber(minimum),
                           shortestNumber(maximum), unit.empty() ? "" : " ", unit);
    }
    std::string text(property.help);
    for (std::size_t i = 0; i < property.variants.size(); ++i) {
        text += fmt::format("{} {:.3g}: {}", i == 0 ? ";" : ",",
                            double(i) / double(std::max<std::size_t>(property.variants.size() - 1, 1)),
                            property.variants[i]);
    }
    return text;
}

/// How the interface carries a property, or nothing when it cannot.
std::optional<Parameter> parameterOf(const QVFilterClass& filterClass, const QVProperty& property) {
    const bool isSpan = property.name == "startTime" || property.name == "endTime";
    if (!isOffered(filterClass, property) && !isSpan && property.name != "progress") return std::nullopt;
    Parameter parameter{&property, F0R_PARAM_DOUBLE, property.minimum, property.maximum,
                        std::string(property.help)};
    if (isSpan) parameter.minimum = 0, parameter.maximum = kLongestSeconds;
    switch (property.type) {
        case QVPropertyType::boolean:
            parameter.type = F0R_PARAM_BOOL;
            return parameter;
        case QVPropertyType::color:
        case QVPropertyType::colors:
            parameter.type = F0R_PARAM_COLOR;
            return parameter;
        case QVPropertyType::point:
            parameter.type = F0R_PARAM_POSITION;
            break;
        case QVPropertyType::integer:
        case QVPropertyType::real:
            break;
        default:
            return std::nullopt;
    }
    if (parameter.maximum >= kUnlimited) return std::nullopt;
    parameter.help = foldedHelp(property, parameter.minimum, parameter.maximum);
    return parameter;
}

/// FFmpeg counts milliseconds, other hosts seconds.
bool countsMilliseconds(const void* caller) {
    Dl_info host;
    if (!::dladdr(caller, &host) || !host.dli_fname) return false;
    const std::string name = std::filesystem::path(host.dli_fname).filename();
    return name.starts_with("libavfilter") || name.starts_with("ffmpeg");
}

}  // namespace

struct qv_frei0r_plugin {
    const QVFilterClass* filterClass;
    std::vector<Parameter> parameters;
};

struct qv_frei0r_instance {
    const qv_frei0r_plugin* plugin;
    PluginFilter drawing;
    int width, height;
    std::int64_t frames = 0;

    void moveTo(double time, const void* caller) {
        double seconds = countsMilliseconds(caller) ? time / 1000 : time;
        // Some hosts have no time for some frames.
        constexpr double kUsualRate = 25, kLongest = 1e6;
        if (!(seconds >= 0 && seconds < kLongest)) seconds = double(frames) / kUsualRate;
        ++frames;
        drawing.setSeconds(seconds);
    }
};

const qv_frei0r_plugin* qv_frei0r_plugin_of(const char* file) {
    static std::mutex mutex;
    static auto& plugins = *new std::map<const QVFilterClass*, qv_frei0r_plugin>;
    const QVFilterClass* filterClass = filterClassNamed(std::filesystem::path(file).stem().string());
    if (!filterClass || !isPluginClass(*filterClass)) return nullptr;
    const std::lock_guard lock(mutex);
    const auto [entry, isNew] = plugins.try_emplace(filterClass, qv_frei0r_plugin{filterClass, {}});
    if (!isNew) return &entry->second;
    std::vector<Parameter>& parameters = entry->second.parameters;
    for (const QVProperty* property : filterClass->allProperties()) {
        auto parameter = parameterOf(*filterClass, *property);
        // Hosts know the first parameter of a transition as its progress.
        const bool isFirst = property->name == "progress";
        if (parameter)
            parameters.insert(isFirst ? parameters.begin() : parameters.end(), *std::move(parameter));
    }
    return &entry->second;
}

void qv_frei0r_plugin_info(const qv_frei0r_plugin* plugin, f0r_plugin_info_t* info) {
    *info = {};
    info->name = plugin->filterClass->title.data();
    info->author = "QVFilterExtension";
    info->plugin_type = plugin->filterClass->isTransition() ? F0R_PLUGIN_TYPE_MIXER2 : F0R_PLUGIN_TYPE_FILTER;
    info->color_model = F0R_COLOR_MODEL_RGBA8888;
    info->frei0r_version = FREI0R_MAJOR_VERSION;
    info->major_version = QV_FILTER_VERSION_MAJOR;
    info->minor_version = QV_FILTER_VERSION_MINOR;
    info->num_params = int(plugin->parameters.size());
    info->explanation = plugin->filterClass->help.data();
}

void qv_frei0r_param_info(const qv_frei0r_plugin* plugin, f0r_param_info_t* info, int index) {
    const Parameter& parameter = plugin->parameters.at(std::size_t(index));
    info->name = parameter.property->name.data();
    info->type = parameter.type;
    info->explanation = parameter.help.c_str();
}

qv_frei0r_instance* qv_frei0r_construct(const qv_frei0r_plugin* plugin, unsigned int width,
                                        unsigned int height) {
    if (width < 1 || height < 1 || width > unsigned(kMaximumImageSide) ||
        height > unsigned(kMaximumImageSide))
        return nullptr;
    auto instance = std::unique_ptr<qv_frei0r_instance>(
        new qv_frei0r_instance{plugin, PluginFilter(*plugin->filterClass), int(width), int(height)});
    instance->drawing.setNumber("endTime", kUsualSeconds);
    return instance.release();
}

void qv_frei0r_destruct(qv_frei0r_instance* instance) {
    delete instance;
}

void qv_frei0r_set(qv_frei0r_instance* instance, f0r_param_t value, int index) {
    const Parameter& parameter = instance->plugin->parameters.at(std::size_t(index));
    const auto set = [&](const QVPropertyValue& typed) {
        parameter.property->set(instance->drawing.filter(), typed);
    };
    if (parameter.type == F0R_PARAM_BOOL) return set(*static_cast<double*>(value) >= 0.5);
    if (parameter.type == F0R_PARAM_COLOR) {
        const auto& color = *static_cast<f0r_param_color_t*>(value);
        return set(std::vector{UIColor{color.r, color.g, color.b, 1}});
    }
    if (parameter.type == F0R_PARAM_POSITION) {
        const auto& place = *static_cast<f0r_param_position_t*>(value);
        return set(MTIVector{float(parameter.unfolded(place.x)), float(parameter.unfolded(place.y))});
    }
    const double number = parameter.unfolded(*static_cast<double*>(value));
    if (parameter.property->type == QVPropertyType::integer) return set(std::int64_t(std::llround(number)));
    set(number);
}

void qv_frei0r_get(qv_frei0r_instance* instance, f0r_param_t value, int index) {
    const Parameter& parameter = instance->plugin->parameters.at(std::size_t(index));
    const QVPropertyValue held = parameter.property->get(instance->drawing.filter());
    if (const auto* flag = std::get_if<bool>(&held)) {
        *static_cast<double*>(value) = *flag ? 1 : 0;
    } else if (const auto* colors = std::get_if<std::vector<UIColor>>(&held)) {
        const UIColor color = colors->empty() ? UIColor{1, 1, 1, 1} : colors->front();
        *static_cast<f0r_param_color_t*>(value) = {float(color.red()), float(color.green()),
                                                   float(color.blue())};
    } else if (const auto* place = std::get_if<MTIVector>(&held)) {
        const auto at = [&](std::size_t i) {
            return place->count() == 2 ? parameter.folded((*place)[i]) : 0.5;
        };
        *static_cast<f0r_param_position_t*>(value) = {at(0), at(1)};
    } else if (const auto* whole = std::get_if<std::int64_t>(&held)) {
        *static_cast<double*>(value) = parameter.folded(double(*whole));
    } else {
        *static_cast<double*>(value) = parameter.folded(std::get<double>(held));
    }
}

void qv_frei0r_update(qv_frei0r_instance* instance, double time, const uint32_t* first,
                      const uint32_t* second, uint32_t* out, const void* caller) {
    instance->moveTo(time, caller);
    const auto bytes = [](const uint32_t* pixels) { return reinterpret_cast<const std::uint8_t*>(pixels); };
    instance->drawing.draw({instance->width, instance->height, bytes(first), bytes(second), {}},
                           reinterpret_cast<std::uint8_t*>(out));
}
