// Effects and transitions as services of MLT, with the properties' own names, units and ranges.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <ranges>
#include <string>
#include <vector>

#include "Bindings/Plugin/PluginClass.h"
#include "Bindings/Plugin/PluginFilter.h"
#include "Platform/Foundation/Log.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "QVFilterExtension/QVFilterVersion.h"

#include <framework/mlt.h>

using namespace qv;

namespace {

const QVFilterClass* classOf(std::string_view service) {
    return filterClassNamed(service.substr(service.find('.') + 1));
}

/// Where a frame lies: on which of how many, and in seconds.
struct Place {
    mlt_position position, length;
    double framesPerSecond;

    double seconds() const { return framesPerSecond > 0 ? double(position) / framesPerSecond : 0; }
    double lengthInSeconds() const { return framesPerSecond > 0 ? double(length) / framesPerSecond : 0; }
};

void setFromService(QVMTIFilter& filter, const QVProperty& property, mlt_properties properties,
                    const Place& place) {
    const std::string name(property.name);
    const char* given = mlt_properties_get(properties, name.c_str());
    if (!given || !*given) return;
    const std::string text = given;
    if (property.type == QVPropertyType::color || property.type == QVPropertyType::colors) {
        if (text.find(',') == std::string::npos) {
            const mlt_color color =
                mlt_properties_anim_get_color(properties, name.c_str(), place.position, place.length);
            return property.set(filter,
                                std::vector{UIColor{color.r / 255.0, color.g / 255.0, color.b / 255.0, 1}});
        }
    } else if (isAnimated(property)) {
        const double number =
            mlt_properties_anim_get_double(properties, name.c_str(), place.position, place.length);
        const double value =
            std::clamp(std::isfinite(number) ? number : 0.0, property.minimum, property.maximum);
        if (property.type == QVPropertyType::real) return property.set(filter, value);
        return property.set(filter, std::int64_t(std::llround(value)));
    }
    std::string error;
    if (!setPropertyFromText(filter, name, text, &error)) logLineOnce(error);
}

/// The number that a text begins with, whatever the locale; not one where there is none.
double leadingNumber(std::string_view text) {
    double number = std::numeric_limits<double>::quiet_NaN();
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// A property of the user, and what a new filter has of it.
struct Default {
    const QVProperty* property;
    std::string text;

    /// Whether a setting says the same. Editors write all that they show: variants by name, and numbers as
    /// keyframes of some digits.
    bool is(std::string_view setting) const {
        if (setting == text) return true;
        if (!isAnimated(*property)) {
            const auto read = parseProperty(*property, setting, nullptr);
            return read && propertyText(*read) == text;
        }
        return std::ranges::all_of(std::views::split(setting, ';'), [&](auto&& part) {
            const std::string_view key(part.begin(), part.end());
            const double value = leadingNumber(key.substr(key.find('=') + 1));
            return std::abs(value - leadingNumber(text)) < property->controlStep() / 100;
        });
    }
};

/// What a service draws with, and where its user's properties start.
struct Service {
    PluginFilter drawing;
    std::vector<Default> defaults;

    explicit Service(const QVFilterClass& filterClass) : drawing(filterClass) {
        for (const QVProperty* property : filterClass.allProperties()) {
            if (isOffered(filterClass, *property))
                defaults.push_back({property, propertyText(property->get(drawing.filter()))});
        }
    }
};

/// Settings and times of this frame. A strength may set other properties of its class: what stands at its
/// default comes first, so that what the user changed counts.
void prepare(Service& service, mlt_properties properties, const Place& place) {
    PluginFilter& drawing = service.drawing;
    for (const bool changed : {false, true}) {
        for (const Default& initial : service.defaults) {
            const char* given = mlt_properties_get(properties, std::string(initial.property->name).c_str());
            if (given && initial.is(given) != changed)
                setFromService(drawing.filter(), *initial.property, properties, place);
        }
    }
    drawing.setSeconds(place.seconds());
    drawing.setNumber("startTime", 0);
    drawing.setNumber("endTime", place.lengthInSeconds());
    if (const QVProperty* range = drawing.filterClass().property("timeRange"))
        range->set(drawing.filter(), CMTimeRangeMakeWithSeconds(0, place.lengthInSeconds()));
}

/// Replaces the frame's picture by the drawn one.
void drawInto(mlt_frame frame, PluginFilter& drawing, const PluginFrames& frames, std::uint8_t** image) {
    const int bytes = frames.width * frames.height * 4;
    auto* out = static_cast<std::uint8_t*>(mlt_pool_alloc(bytes));
    if (!out) return;
    drawing.draw(frames, out);
    mlt_frame_set_image(frame, out, bytes, mlt_pool_release);
    *image = out;
}

double framesPerSecond(mlt_service service) {
    mlt_profile profile = mlt_service_profile(service);
    return profile ? mlt_profile_fps(profile) : 0;
}

Service& serviceOf(void* child) {
    return *static_cast<Service*>(child);
}

int filterImage(mlt_frame frame, std::uint8_t** image, mlt_image_format* format, int* width, int* height,
                int) {
    auto filter = static_cast<mlt_filter>(mlt_frame_pop_service(frame));
    *format = mlt_image_rgba;
    const int error = mlt_frame_get_image(frame, image, format, width, height, 0);
    if (error || !*image || *format != mlt_image_rgba) return error;
    // Several threads may ask the one filter for different frames.
    mlt_service_lock(MLT_FILTER_SERVICE(filter));
    PluginFilter& drawing = serviceOf(filter->child).drawing;
    prepare(serviceOf(filter->child), MLT_FILTER_PROPERTIES(filter),
            {mlt_filter_get_position(filter, frame), mlt_filter_get_length2(filter, frame),
             framesPerSecond(MLT_FILTER_SERVICE(filter))});
    drawInto(frame, drawing, {*width, *height, *image, nullptr, {}}, image);
    mlt_service_unlock(MLT_FILTER_SERVICE(filter));
    return 0;
}

/// The red of a picture of the other track.
PixelBuffer maskOf(const std::uint8_t* rgba, int width, int height) {
    PixelBuffer mask = PixelBuffer::create(PixelFormat::gray8, width, height);
    for (int y = 0; mask && y < height; ++y) {
        std::uint8_t* row = mask.plane(0).data + std::size_t(y) * mask.plane(0).rowBytes;
        for (int x = 0; x < width; ++x, rgba += 4) row[x] = rgba[0];
    }
    return mask;
}

int transitionImage(mlt_frame frame, std::uint8_t** image, mlt_image_format* format, int* width, int* height,
                    int) {
    mlt_frame other = mlt_frame_pop_frame(frame);
    auto transition = static_cast<mlt_transition>(mlt_frame_pop_service(frame));
    *format = mlt_image_rgba;
    const int error = mlt_frame_get_image(frame, image, format, width, height, 0);
    std::uint8_t* second = nullptr;
    int otherWidth = *width, otherHeight = *height;
    mlt_image_format otherFormat = mlt_image_rgba;
    if (error || !*image || mlt_frame_get_image(other, &second, &otherFormat, &otherWidth, &otherHeight, 0))
        return error;
    const bool fits = second && *format == mlt_image_rgba && otherFormat == mlt_image_rgba &&
                      otherWidth == *width && otherHeight == *height;
    if (!fits) return 0;
    mlt_service_lock(MLT_TRANSITION_SERVICE(transition));
    PluginFilter& drawing = serviceOf(transition->child).drawing;
    prepare(serviceOf(transition->child), MLT_TRANSITION_PROPERTIES(transition),
            {mlt_transition_get_position(transition, frame), mlt_transition_get_length(transition),
             framesPerSecond(MLT_TRANSITION_SERVICE(transition))});
    drawing.setNumber("progress", std::clamp(mlt_transition_get_progress(transition, frame), 0.0, 1.0));
    PluginFrames frames{*width, *height, *image, second, {}};
    if (takesMask(drawing.filterClass())) frames.mask = maskOf(second, *width, *height);
    drawInto(frame, drawing, frames, image);
    mlt_service_unlock(MLT_TRANSITION_SERVICE(transition));
    return 0;
}

mlt_frame processFilter(mlt_filter filter, mlt_frame frame) {
    mlt_frame_push_service(frame, filter);
    mlt_frame_push_get_image(frame, filterImage);
    return frame;
}

mlt_frame processTransition(mlt_transition transition, mlt_frame frame, mlt_frame other) {
    mlt_frame_push_service(frame, transition);
    mlt_frame_push_frame(frame, other);
    mlt_frame_push_get_image(frame, transitionImage);
    return frame;
}

/// The properties start as a new filter has them.
void setDefaults(mlt_properties properties, const Service& service) {
    for (const auto& [property, text] : service.defaults)
        mlt_properties_set(properties, std::string(property->name).c_str(), text.c_str());
}

void* newFilterService(mlt_profile, mlt_service_type, const char* id, void*) {
    mlt_filter filter = mlt_filter_new();
    if (!filter) return nullptr;
    auto* service = new Service(*classOf(id));
    filter->child = service;
    filter->process = processFilter;
    filter->close = [](mlt_filter closing) {
        delete static_cast<Service*>(closing->child);
        closing->child = nullptr;
        closing->close = nullptr;
        closing->parent.close = nullptr;
        mlt_service_close(&closing->parent);
    };
    setDefaults(MLT_FILTER_PROPERTIES(filter), *service);
    return filter;
}

void* newTransitionService(mlt_profile, mlt_service_type, const char* id, void*) {
    mlt_transition transition = mlt_transition_new();
    if (!transition) return nullptr;
    auto* service = new Service(*classOf(id));
    transition->child = service;
    transition->process = processTransition;
    transition->close = [](mlt_transition closing) {
        delete static_cast<Service*>(closing->child);
        closing->child = nullptr;
        closing->close = nullptr;
        closing->parent.close = nullptr;
        mlt_service_close(&closing->parent);
    };
    setDefaults(MLT_TRANSITION_PROPERTIES(transition), *service);
    constexpr int kVideo = 1;
    mlt_properties_set_int(MLT_TRANSITION_PROPERTIES(transition), "_transition_type", kVideo);
    return transition;
}

/// Properties that belong to others; `name` is their key there.
mlt_properties child(mlt_properties parent, const char* name) {
    mlt_properties properties = mlt_properties_new();
    mlt_properties_set_data(parent, name, properties, 0, mlt_destructor(mlt_properties_close), nullptr);
    return properties;
}

const char* metadataType(const QVProperty& property) {
    if (!property.variants.empty()) return "string";
    switch (property.type) {
        case QVPropertyType::boolean:
            return "boolean";
        case QVPropertyType::integer:
            return "integer";
        case QVPropertyType::real:
            return "float";
        case QVPropertyType::color:
        case QVPropertyType::colors:
            return "color";
        default:
            return "string";
    }
}

void describe(mlt_properties parameter, const QVProperty& property, const QVMTIFilter& fresh) {
    const auto set = [&](const char* key, const std::string& value) {
        mlt_properties_set(parameter, key, value.c_str());
    };
    set("identifier", std::string(property.name));
    set("title", property.displayTitle());
    set("description", std::string(property.help));
    set("type", metadataType(property));
    set("default", propertyText(property.get(fresh)));
    set("mutable", "yes");
    if (isAnimated(property)) {
        set("animation", "yes");
        if (property.maximum < kUnlimited) {
            set("minimum", propertyText(property.minimum));
            set("maximum", propertyText(property.maximum));
        }
        if (property.unit != QVUnit::none) set("unit", std::string(unitName(property.unit)));
    }
    if (property.variants.empty()) return;
    mlt_properties values = child(parameter, "values");
    for (std::size_t i = 0; i < property.variants.size(); ++i)
        mlt_properties_set(values, std::to_string(i).c_str(), std::string(property.variants[i]).c_str());
    set("default", std::string(property.variants[std::size_t(std::get<std::int64_t>(property.get(fresh)))]));
}

mlt_properties metadata(mlt_service_type type, const char* id, void*) {
    const QVFilterClass& filterClass = *classOf(id);
    mlt_properties all = mlt_properties_new();
    const auto set = [&](const char* key, const std::string& value) {
        mlt_properties_set(all, key, value.c_str());
    };
    const bool isFilter = type == mlt_service_filter_type;
    set("schema_version", "7.0");
    set("type", isFilter ? "filter" : "transition");
    set("identifier", id);
    set("title", serviceTitle(filterClass, isFilter ? MLTServiceKind::filter : MLTServiceKind::transition));
    set("description", std::string(filterClass.help));
    set("version", QV_FILTER_VERSION);
    set("creator", "QVFilterExtension");
    set("license", "MIT");
    set("language", "en");
    mlt_properties_set(child(all, "tags"), "0", "Video");
    mlt_properties parameters = child(all, "parameters");
    const auto fresh = filterClass.create();
    int count = 0;
    for (const QVProperty* property : filterClass.allProperties()) {
        if (isOffered(filterClass, *property))
            describe(child(parameters, std::to_string(count++).c_str()), *property, *fresh);
    }
    return all;
}

}  // namespace

extern "C" {

MLT_REPOSITORY {
    for (const QVFilterClass* filterClass : allFilterClasses()) {
        const std::string name = serviceName(*filterClass);
        if (isService(*filterClass, MLTServiceKind::filter)) {
            MLT_REGISTER(mlt_service_filter_type, name.c_str(), newFilterService);
            MLT_REGISTER_METADATA(mlt_service_filter_type, name.c_str(), metadata, nullptr);
        }
        if (isService(*filterClass, MLTServiceKind::transition)) {
            MLT_REGISTER(mlt_service_transition_type, name.c_str(), newTransitionService);
            MLT_REGISTER_METADATA(mlt_service_transition_type, name.c_str(), metadata, nullptr);
        }
    }
}
}
