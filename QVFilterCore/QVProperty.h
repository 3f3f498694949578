#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "Platform/Foundation/CMTime.h"
#include "Platform/Geometry/Geometry.h"
#include "Platform/Geometry/MTIVector.h"
#include "Platform/Geometry/UIColor.h"

namespace qv {

class QVMTIFilter;

/// What a host-settable property holds. `real` values are doubles here, whatever width the filter keeps; a
/// `color` is a list of exactly one; a `point` and a `size` are vectors of two.
enum class QVPropertyType {
    boolean,
    integer,
    real,
    point,
    size,
    color,
    colors,
    numbers,
    transform,
    timeRange,
};

/// A property's value. A `color` and `colors` are both a list, a `real` is a double.
using QVPropertyValue = std::variant<bool, std::int64_t, double, MTIVector, std::vector<UIColor>,
                                     std::vector<double>, CGAffineTransform, CMTimeRange>;

/// "bool", "int", "float", "point", "size", "color", "colors", "numbers", "transform" or "timeRange".
std::string_view typeName(QVPropertyType type);

/// What a property's numbers count. Colours, switches, selectors, transforms and spans of time need none.
enum class QVUnit {
    none,
    fraction,        ///< of what the meaning says: 1 is all of it; a host may show percent
    factor,          ///< multiplies what the meaning says
    count,           ///< of things
    seconds,         ///< of time
    pixels,          ///< of the input
    pixels1080,      ///< of a frame whose shorter side is 1080; in proportion in others
    frameSides,      ///< widths of the frame across, heights along
    halfFrameSides,  ///< half of these
    radians,         ///< anticlockwise
    turns,           ///< whole ones
    percent,         ///< of white
    stops,           ///< of exposure: 1 doubles the light
};
/// "fraction", "factor", …; empty for `none`.
std::string_view unitName(QVUnit unit);

/// As a limit of a range: none, but what keeps numbers finite.
inline constexpr double kUnlimited = 1e9;

/// Who sets a property: the user by a control, or the host, which knows the time, the clip and the frame.
enum class QVPropertyDriver { user, host };

/// A property of a filter class that a host may set by name. Records state what `qvProperty` cannot derive.
struct QVProperty {
    std::string_view name;            ///< as `setProperty` takes it
    std::string_view title = {};      ///< of its control; empty: derived, see `displayTitle`
    std::string_view help = {};       ///< one line
    double minimum = 0, maximum = 1;  ///< of numbers, also in points, sizes and lists; outside is refused
    QVUnit unit = QVUnit::none;       ///< what these numbers count
    double step = 0;                  ///< of a control; 0: derived, see `controlStep`
    QVPropertyDriver driver = QVPropertyDriver::user;      ///< who sets it
    std::span<const std::string_view> variants = {};       ///< names of the values 0, 1, … of a selector
    QVPropertyType type = {};                              ///< which alternative of QVPropertyValue it is
    QVPropertyValue (*get)(const QVMTIFilter&) = nullptr;  ///< reads it from a filter of the class
    void (*set)(QVMTIFilter&, const QVPropertyValue&) = nullptr;  ///< stores it, unchecked

    /// The title, or one made of the name: "sliceNumber" is "Slice number".
    std::string displayTitle() const;
    /// Whether it holds numbers, which `minimum` and `maximum` bound, and not the index of a variant.
    bool hasNumbers() const;
    /// The step of a control: 1 for whole numbers, else what the record says, else 1, 2 or 5 times a power of
    /// ten so that about a hundred make up the range. 0 for what holds no numbers.
    double controlStep() const;
};

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
        return QVPropertyType::point;
    else if constexpr (std::is_same_v<Value, CGSize>)
        return QVPropertyType::size;
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
    else if constexpr (std::is_same_v<Value, CGSize>)
        return MTIVector::vectorWithCGSize(value);
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
    else if constexpr (std::is_same_v<Value, CGSize>)
        return CGSize{std::get<MTIVector>(value)[0], std::get<MTIVector>(value)[1]};
    else if constexpr (std::is_same_v<Value, UIColor>)
        return std::get<std::vector<UIColor>>(value).front();
    else
        return std::get<Value>(value);
}

}  // namespace detail

/// A property read and written through two members of the filter, which also give its type:
/// `qvProperty<&F::angle, &F::setAngle>({.name = "angle", …})`. A selector's range is that of its variants.
template <auto Getter, auto Setter>
constexpr QVProperty qvProperty(QVProperty facts) {
    using Traits = detail::AccessorTraits<decltype(Getter)>;
    using Filter = typename Traits::Class;
    using Value = typename Traits::Value;
    facts.type = detail::propertyType<Value>();
    if (!facts.variants.empty()) facts.maximum = double(facts.variants.size() - 1);
    facts.get = [](const QVMTIFilter& filter) {
        return detail::toPropertyValue<Value>((static_cast<const Filter&>(filter).*Getter)());
    };
    facts.set = [](QVMTIFilter& filter, const QVPropertyValue& value) {
        (static_cast<Filter&>(filter).*Setter)(detail::fromPropertyValue<Value>(value));
    };
    return facts;
}

/// Reads a property's value from text: numbers, "true"/"false"/0/1, points, sizes and numbers as
/// "0.1,0.2", colours as "#ff00fc,#ffffff", transforms as six numbers, time ranges as "start,duration" in
/// seconds. Nothing, with one line naming what was wrong in `error`, when the text does not fit the property
/// or its range.
std::optional<QVPropertyValue> parseProperty(const QVProperty& property, std::string_view text,
                                             std::string* error);

/// A value as `parseProperty` reads it, whole numbers without a point; a number that was a float has no more
/// digits than it needs as one.
std::string propertyText(const QVPropertyValue& value);

/// A number that prints with the fewest digits that read back as the same float, if it is one.
double shortestNumber(double value);

/// Sets a property of a filter by name, after checking type and range. False with the cause in `error`.
bool setProperty(QVMTIFilter& filter, std::string_view name, const QVPropertyValue& value,
                 std::string* error = nullptr);
/// The same from text.
bool setPropertyFromText(QVMTIFilter& filter, std::string_view name, std::string_view text,
                         std::string* error = nullptr);

}  // namespace qv
