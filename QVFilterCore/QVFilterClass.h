#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ImageGraph/MTIKernel.h"
#include "QVFilterCore/QVInput.h"
#include "QVFilterCore/QVProperty.h"

namespace qv {

class QVMTIFilter;

/// What kind of thing a class is for a host: an effect over a clip, a transition from one clip to the next,
/// or a part that others are made of.
enum class QVFilterKind { effect, transition, auxiliary };
/// "effect", "transition" or "auxiliary".
std::string_view kindName(QVFilterKind kind);

/// Groups for browsing. `inherited` takes the superclass's.
enum class QVFilterCategory {
    inherited,
    mosaic,
    mirror,
    distortion,
    split,
    retro,
    glitch,
    light,
    stylize,
    motion,
    blur,
    particle,
    film,
    camera,
    animation,
    transition,
    subject,
    adjustment,
};
/// "mosaic", "mirror", …; empty for `inherited`.
std::string_view categoryName(QVFilterCategory category);

/// Everything about a filter class that is not an operation of an instance. One constant record per class;
/// what a record leaves out is its superclass's. Records live as long as the process and are thread-safe.
struct QVFilterClass {
    std::string_view name;                      ///< as `createFilter` takes it
    const QVFilterClass* superclass = nullptr;  ///< nil for the root
    std::string_view title = {};                ///< of its own, as a designer names the look
    std::string_view help = {};                 ///< one line: what it does to the picture
    std::vector<std::string_view> tags = {};    ///< of its own: what else one may look for to find it
    std::unique_ptr<QVMTIFilter> (*factory)(const QVFilterClass&) = nullptr;  ///< see `makeFilter`
    QVFilterCategory category = QVFilterCategory::inherited;                  ///< the group to browse it in
    std::optional<std::vector<QVInput>> inputs = {};  ///< all of them, in order, when they are not the base's
    std::string_view fragmentFunction = {};  ///< empty: the superclass's choice, else the class's own name
    std::optional<float> defaultEffectValue = {};  ///< strength of a new filter, 0..1
    std::optional<bool> isVideoOnly = {};          ///< a host does not offer it for photos
    std::optional<bool> isPhotoTimeConst = {};     ///< a host lets time stand still on a photo
    std::vector<QVProperty> properties = {};       ///< the class's own; bases add theirs
    std::vector<std::string_view> ignored = {};    ///< inherited ones that are kept and change no picture
    std::optional<QVFilterKind> kind = {};         ///< effect, transition, or a part of them

    /// The class's kernel, built on first request and kept: one per class, shared by its instances. Nil while
    /// the shader library or the function is missing.
    std::shared_ptr<const MTIRenderPipelineKernel> kernel() const;
    /// The function and the library that the kernel is built from; it need not exist.
    MTIFunctionDescriptor fragmentFunctionDescriptor() const;

    /// A new filter of this class, at its default strength.
    std::unique_ptr<QVMTIFilter> create() const;
    /// Whether `other` is this class or one that it inherits from.
    bool isSubclassOf(const QVFilterClass& other) const;
    /// Own and inherited properties, the bases' first. A name that a subclass gives again replaces the
    /// base's.
    std::vector<const QVProperty*> allProperties() const;
    /// Nil when neither the class nor a base has it.
    const QVProperty* property(std::string_view propertyName) const;
    /// Whether setting the property changes no picture of the class.
    bool ignores(std::string_view propertyName) const;
    /// Who sets a property of the class: "user", "host", or "none" where that changes no picture.
    std::string_view driverName(const QVProperty& property) const;

    /// What the class works on, in order; the first is the frame that the result has the size of.
    const std::vector<QVInput>& allInputs() const;
    /// Nil when the class takes no such input.
    const QVInput* input(std::string_view inputName) const;
    /// Nil when the class takes none for that purpose; else the first.
    const QVInput* input(QVInputRole role) const;

    /// Whether it turns one clip into another: at progress 0 its picture is the outgoing frame, at 1 the
    /// incoming one. Its parts are auxiliary, whatever class they derive from.
    bool isTransition() const { return kindOrInherited() == QVFilterKind::transition; }
    /// Presets that the property `level` chooses from; 0 for a class without that property.
    int levels() const;

    /// The record's fact of this name, or the nearest superclass's.
    float defaultStrength() const;
    bool videoOnly() const;
    bool photoTimeConst() const;
    QVFilterCategory categoryOrInherited() const;
    QVFilterKind kindOrInherited() const;

    /// What `kernel` keeps; of no use to others.
    mutable std::mutex kernelMutex = {};
    mutable std::shared_ptr<const MTIRenderPipelineKernel> kernelStore = {};
};

/// The factory of a class whose instances are `Filter`s; the record that it was reached through becomes the
/// instance's class, so a class without operations of its own is its record alone.
template <typename Filter>
std::unique_ptr<QVMTIFilter> makeFilter(const QVFilterClass& filterClass) {
    return std::make_unique<Filter>(filterClass);
}

/// File of the compiled shader library for a class: "default.shaderlib" in the resource bundle. Empty without
/// a bundle.
std::string QV_DefaultMetalLibraryURLForClass(const QVFilterClass& filterClass);

}  // namespace qv
