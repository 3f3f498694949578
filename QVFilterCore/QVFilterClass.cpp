#include "QVFilterCore/QVFilterClass.h"

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
    return record ? record->factory(*this) : nullptr;
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

int QVFilterClass::levels() const {
    return inheritedOr(*this, &QVFilterClass::levelCount, 0);
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

QVFilterInputs QVFilterClass::inputsOrInherited() const {
    const auto* record = nearest(*this, [](auto& r) { return r.inputs != QVFilterInputs::inherited; });
    return record ? record->inputs : QVFilterInputs::one;
}

std::string QV_DefaultMetalLibraryURLForClass(const QVFilterClass&) {
    const auto bundle = resourceBundle();
    return bundle ? bundle->path() + "/default.shaderlib" : std::string();
}

}  // namespace qv
