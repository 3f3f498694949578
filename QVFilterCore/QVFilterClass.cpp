#include "QVFilterCore/QVFilterClass.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Platform/Foundation/Log.h"
#include "QVFilterCore/QVMTIFilter.h"
#include "QVFilterCore/QVResourceBundle.h"

namespace qv {

namespace {

/// The nearest record, from `start` towards the root, for which `given` holds; nil when none does.
template <typename Given>
const QVFilterClass* nearest(const QVFilterClass& start, Given&& given) {
    for (const QVFilterClass* record = &start; record; record = record->superclass) {
        if (given(*record)) return record;
    }
    return nullptr;
}

template <typename Value>
Value inheritedOr(const QVFilterClass& start, std::optional<Value> QVFilterClass::*member, Value fallback) {
    const QVFilterClass* record =
        nearest(start, [&](const QVFilterClass& r) { return (r.*member).has_value(); });
    return record ? *(record->*member) : fallback;
}

}  // namespace

std::string_view categoryName(QVFilterCategory category) {
    static constexpr std::array<std::string_view, 18> kNames = {
        "",       "mosaic", "mirror",    "distortion", "split",   "retro",
        "glitch", "light",  "stylize",   "motion",     "blur",    "particle",
        "film",   "camera", "animation", "transition", "subject", "adjustment"};
    return kNames[std::size_t(category)];
}

std::string_view kindName(QVFilterKind kind) {
    static constexpr std::array<std::string_view, 3> kNames = {"effect", "transition", "auxiliary"};
    return kNames[std::size_t(kind)];
}

std::shared_ptr<const MTIRenderPipelineKernel> QVFilterClass::kernel() const {
    std::scoped_lock lock(kernelMutex);
    if (kernelStore) return kernelStore;
    const MTIFunctionDescriptor wanted = fragmentFunctionDescriptor();
    if (wanted.libraryURL.empty())
        logLineOnce("the resource bundle is missing: no effect can be drawn");
    else
        kernelStore = MTIRenderPipelineKernel::make(wanted);
    return kernelStore;
}

MTIFunctionDescriptor QVFilterClass::fragmentFunctionDescriptor() const {
    const QVFilterClass* record =
        nearest(*this, [](const QVFilterClass& r) { return !r.fragmentFunction.empty(); });
    return {std::string(record ? record->fragmentFunction : name), QV_DefaultMetalLibraryURLForClass(*this)};
}

std::unique_ptr<QVMTIFilter> QVFilterClass::create() const {
    const QVFilterClass* record = nearest(*this, [](const QVFilterClass& r) { return r.factory != nullptr; });
    std::unique_ptr<QVMTIFilter> filter = record ? record->factory(*this) : nullptr;
    const QVProperty* strength = property("effectValue");
    if (filter && strength) strength->set(*filter, double(defaultStrength()));
    return filter;
}

bool QVFilterClass::isSubclassOf(const QVFilterClass& other) const {
    return nearest(*this, [&](const QVFilterClass& r) { return &r == &other; }) != nullptr;
}

std::vector<const QVProperty*> QVFilterClass::allProperties() const {
    std::vector<const QVProperty*> all;
    if (superclass) all = superclass->allProperties();
    for (const QVProperty& own : properties) {
        std::erase_if(all, [&](const QVProperty* inherited) { return inherited->name == own.name; });
        all.push_back(&own);
    }
    return all;
}

const QVProperty* QVFilterClass::property(std::string_view propertyName) const {
    for (const QVFilterClass* record = this; record; record = record->superclass) {
        for (const QVProperty& own : record->properties) {
            if (own.name == propertyName) return &own;
        }
    }
    return nullptr;
}

bool QVFilterClass::ignores(std::string_view propertyName) const {
    const auto named = [propertyName](const QVProperty& own) { return own.name == propertyName; };
    for (const QVFilterClass* record = this; record; record = record->superclass) {
        if (std::ranges::find(record->ignored, propertyName) != record->ignored.end()) return true;
        if (std::ranges::any_of(record->properties, named)) return false;
    }
    return false;
}

std::string_view QVFilterClass::driverName(const QVProperty& property) const {
    if (ignores(property.name)) return "none";
    return property.driver == QVPropertyDriver::host ? "host" : "user";
}

const std::vector<QVInput>& QVFilterClass::allInputs() const {
    static const std::vector<QVInput> kNone;
    const QVFilterClass* record = nearest(*this, [](auto& r) { return r.inputs.has_value(); });
    return record ? *record->inputs : kNone;
}

const QVInput* QVFilterClass::input(std::string_view inputName) const {
    const auto found = std::ranges::find(allInputs(), inputName, &QVInput::name);
    return found == allInputs().end() ? nullptr : &*found;
}

const QVInput* QVFilterClass::input(QVInputRole role) const {
    const auto found = std::ranges::find(allInputs(), role, &QVInput::role);
    return found == allInputs().end() ? nullptr : &*found;
}

int QVFilterClass::levels() const {
    const QVProperty* level = property("level");
    return level ? int(level->variants.size()) : 0;
}
float QVFilterClass::defaultStrength() const {
    return inheritedOr(*this, &QVFilterClass::defaultEffectValue, kDefaultEffectValue);
}
bool QVFilterClass::videoOnly() const {
    return inheritedOr(*this, &QVFilterClass::isVideoOnly, false);
}
bool QVFilterClass::photoTimeConst() const {
    return inheritedOr(*this, &QVFilterClass::isPhotoTimeConst, true);
}
QVFilterKind QVFilterClass::kindOrInherited() const {
    return inheritedOr(*this, &QVFilterClass::kind, QVFilterKind::auxiliary);
}

QVFilterCategory QVFilterClass::categoryOrInherited() const {
    const auto* record = nearest(*this, [](auto& r) { return r.category != QVFilterCategory::inherited; });
    return record ? record->category : QVFilterCategory::adjustment;
}

std::string QV_DefaultMetalLibraryURLForClass(const QVFilterClass&) {
    const auto bundle = resourceBundle();
    return bundle ? bundle->path() + "/default.shaderlib" : std::string();
}

}  // namespace qv
