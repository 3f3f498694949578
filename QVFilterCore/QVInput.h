#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/Media/PixelBuffer.h"

namespace qv {

class QVMTIFilter;

/// What a class does with a picture, so that a host can tell which of its pictures to hand over.
enum class QVInputRole {
    frame,     ///< the frame to work on; a transition's outgoing one
    incoming,  ///< the frame of the next clip, or the second of two
    mask,      ///< white where the subject of the frame is
    layer,     ///< laid over the frame
    table,     ///< a look-up table
    texture,   ///< part of the look, for which the class has a picture of its own
};
/// "frame", "incoming", …
std::string_view roleName(QVInputRole role);

/// A picture that a filter is given: an image, or for an input that reads memory, a buffer.
using QVInputValue = std::variant<MTIImage, PixelBuffer>;

/// A picture that a class works on. Records state what `qvInput` cannot derive.
struct QVInput {
    std::string_view name;                              ///< as `setInput` takes it
    QVInputRole role = QVInputRole::frame;              ///< what the class does with it
    std::string_view help = {};                         ///< one line
    bool isRequired = true;                             ///< while it is nil, so is the output
    bool isBuffer = false;                              ///< it is a PixelBuffer, not an image
    void (*set)(QVMTIFilter&, QVInputValue) = nullptr;  ///< stores it; the value is of the right kind
};

namespace detail {

template <typename Member>
struct SetterTraits;
template <typename C, typename T>
struct SetterTraits<void (C::*)(T)> {
    using Class = C;
    using Value = T;
};

}  // namespace detail

/// An input set through a member of the filter: `qvInput<&F::setInputImage>({.name = "inputImage", …})`.
template <auto Setter>
constexpr QVInput qvInput(QVInput facts) {
    using Traits = detail::SetterTraits<decltype(Setter)>;
    using Value = typename Traits::Value;
    facts.isBuffer = std::is_same_v<Value, PixelBuffer>;
    facts.set = [](QVMTIFilter& filter, QVInputValue value) {
        (static_cast<typename Traits::Class&>(filter).*Setter)(std::get<Value>(std::move(value)));
    };
    return facts;
}

/// Hands a filter a picture by the input's name; a nil one takes it away. False with the cause in `error`:
/// the class has no such input, or it takes the other kind of picture.
bool setInput(QVMTIFilter& filter, std::string_view name, QVInputValue value, std::string* error = nullptr);

}  // namespace qv
