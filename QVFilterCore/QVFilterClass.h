#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Platform/Foundation/CMTime.h"
#include "Platform/Geometry/Geometry.h"
#include "Platform/Geometry/MTIVector.h"
#include "Platform/Geometry/UIColor.h"
#include "Platform/ImageGraph/MTIKernel.h"

namespace qv {

class QVMTIFilter;

/// What a host-settable property holds. `real` values are doubles here, whatever width the filter keeps; a
/// `color` is a list of exactly one.
enum class QVPropertyType { boolean, integer, real, vector, color, colors, numbers, transform, timeRange };

/// A property's value. A `color` and `colors` are both a list, a `real` is a double.
using QVPropertyValue = std::variant<bool, std::int64_t, double, MTIVector, std::vector<UIColor>,
                                     std::vector<double>, CGAffineTransform, CMTimeRange>;

/// A property of a filter class that a host may set by name.
struct QVProperty {
    std::string_view name;    ///< as `setProperty` takes it
    QVPropertyType type;      ///< which alternative of QVPropertyValue it is
    double minimum, maximum;  ///< of numbers; what lies outside is refused by `setProperty`
    std::string_view help;    ///< one line, with the unit
    QVPropertyValue (*get)(const QVMTIFilter&);         ///< reads it from a filter of the class
    void (*set)(QVMTIFilter&, const QVPropertyValue&);  ///< stores it, unchecked
    std::span<const std::string_view> variants = {};    ///< names of the values 0, 1, … of a selector
};

/// What kind of thing a class is for a host.
enum class QVFilterKind { effect, transition, auxiliary };

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

/// The inputs that a class reads.
enum class QVFilterInputs { inherited, one, two, oneAndMask };

/// Everything about a filter class that is not an operation of an instance. One constant record per class;
/// what a record leaves out is its superclass's. Records live as long as the process and are thread-safe.
struct QVFilterClass {
    std::string_view name;                      ///< as `createFilter` takes it
    const QVFilterClass* superclass = nullptr;  ///< nil for the root
    std::string_view help = {};                 ///< one line: what it does to the picture
    std::unique_ptr<QVMTIFilter> (*factory)(const QVFilterClass&) = nullptr;  ///< see `makeFilter`
    QVFilterCategory category = QVFilterCategory::inherited;                  ///< the group to browse it in
    QVFilterInputs inputs = QVFilterInputs::inherited;                        ///< what a host has to set
    std::string_view fragmentFunction = {};  ///< empty: the superclass's choice, else the class's own name
    std::optional<int> levelCount = {};      ///< presets that `level` chooses from, 0 for none
    std::optional<float> defaultEffectValue = {};  ///< strength of a new filter, 0..1
    std::optional<bool> isVideoOnly = {};          ///< a host does not offer it for photos
    std::optional<bool> isPhotoTimeConst = {};     ///< a host lets time stand still on a photo
    std::vector<QVProperty> properties = {};       ///< the class's own; bases add theirs
    std::optional<QVFilterKind> kind = {};         ///< effect, transition, or a part of them

    /// The class's kernel, built on first request and kept: one per class, shared by its instances. Nil while
    /// the shader library or the function is missing.
    std::shared_ptr<const MTIRenderPipelineKernel> kernel() const;
    /// The function and the library that the kernel is built from; it need not exist.
    MTIFunctionDescriptor fragmentFunctionDescriptor() const;

    /// A new filter of this class, with its defaults set.
    std::unique_ptr<QVMTIFilter> create() const;
    /// Whether `other` is this class or one that it inherits from.
    bool isSubclassOf(const QVFilterClass& other) const;
    /// Own and inherited properties, the bases' first. A name that a subclass gives again replaces the
    /// base's.
    std::vector<const QVProperty*> allProperties() const;
    /// Nil when neither the class nor a base has it.
    const QVProperty* property(std::string_view propertyName) const;

    /// The record's fact of this name, or the nearest superclass's.
    int levels() const;
    float defaultStrength() const;
    bool videoOnly() const;
    bool photoTimeConst() const;
    QVFilterCategory categoryOrInherited() const;
    QVFilterInputs inputsOrInherited() const;
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

namespace detail {

template <typename Member>
struct AccessorTraits;
template <typename C, typename T>
struct AccessorTraits<T (C::*)() const> {
    using Class = C;
    using Value = std::remove_cvref_t<T>;
};

template <typename Value>
constexpr QVPropertyType propertyType() {
    if constexpr (std::is_same_v<Value, bool>)
        return QVPropertyType::boolean;
    else if constexpr (std::is_integral_v<Value> || std::is_enum_v<Value>)
        return QVPropertyType::integer;
    else if constexpr (std::is_floating_point_v<Value>)
        return QVPropertyType::real;
    else if constexpr (std::is_same_v<Value, MTIVector>)
        return QVPropertyType::vector;
    else if constexpr (std::is_same_v<Value, std::vector<UIColor>>)
        return QVPropertyType::colors;
    else if constexpr (std::is_same_v<Value, UIColor>)
        return QVPropertyType::color;
    else if constexpr (std::is_same_v<Value, std::vector<double>>)
        return QVPropertyType::numbers;
    else if constexpr (std::is_same_v<Value, CGAffineTransform>)
        return QVPropertyType::transform;
    else
        return QVPropertyType::timeRange;
}

template <typename Value>
QVPropertyValue toPropertyValue(const Value& value) {
    if constexpr (std::is_same_v<Value, bool>)
        return value;
    else if constexpr (std::is_integral_v<Value> || std::is_enum_v<Value>)
        return std::int64_t(value);
    else if constexpr (std::is_floating_point_v<Value>)
        return double(value);
    else if constexpr (std::is_same_v<Value, UIColor>)
        return std::vector<UIColor>{value};
    else
        return value;
}

template <typename Value>
Value fromPropertyValue(const QVPropertyValue& value) {
    if constexpr (std::is_same_v<Value, bool>)
        return std::get<bool>(value);
    else if constexpr (std::is_integral_v<Value> || std::is_enum_v<Value>)
        return Value(std::get<std::int64_t>(value));
    else if constexpr (std::is_floating_point_v<Value>)
        return Value(std::get<double>(value));
    else if constexpr (std::is_same_v<Value, UIColor>)
        return std::get<std::vector<UIColor>>(value).front();
    else
        return std::get<Value>(value);
}

}  // namespace detail

/// A property read and written through two members of the filter: `qvProperty<&F::angle,
/// &F::setAngle>("angle", …)`.
template <auto Getter, auto Setter>
QVProperty qvProperty(std::string_view name, double minimum, double maximum, std::string_view help,
                      std::span<const std::string_view> variants = {}) {
    using Traits = detail::AccessorTraits<decltype(Getter)>;
    using Filter = typename Traits::Class;
    using Value = typename Traits::Value;
    return {name,
            detail::propertyType<Value>(),
            minimum,
            maximum,
            help,
            [](const QVMTIFilter& filter) {
                return detail::toPropertyValue<Value>((static_cast<const Filter&>(filter).*Getter)());
            },
            [](QVMTIFilter& filter, const QVPropertyValue& value) {
                (static_cast<Filter&>(filter).*Setter)(detail::fromPropertyValue<Value>(value));
            },
            variants};
}

/// A property without a numeric range.
template <auto Getter, auto Setter>
QVProperty qvProperty(std::string_view name, std::string_view help) {
    return qvProperty<Getter, Setter>(name, 0, 1, help);
}

/// Reads a property's value from text: numbers, "true"/"false"/0/1, vectors and numbers as "0.1,0.2", colours
/// as
/// "#ff00fc,#ffffff", transforms as six numbers, time ranges as "start,duration" in seconds. Nothing, with
/// one line naming what was wrong in `error`, when the text does not fit the property or its range.
std::optional<QVPropertyValue> parseProperty(const QVProperty& property, std::string_view text,
                                             std::string* error);

/// Sets a property of a filter by name, after checking type and range. False with the cause in `error`.
bool setProperty(QVMTIFilter& filter, std::string_view name, const QVPropertyValue& value,
                 std::string* error);
/// The same from text.
bool setPropertyFromText(QVMTIFilter& filter, std::string_view name, std::string_view text,
                         std::string* error);

/// File of the compiled shader library for a class: "default.shaderlib" in the resource bundle. Empty without
/// a bundle.
std::string QV_DefaultMetalLibraryURLForClass(const QVFilterClass& filterClass);

}  // namespace qv
