#pragma once

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "Bindings/C/qv.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/Media/PixelBuffer.h"
#include "QVFilterCore/QVMTIFilter.h"

#include <fmt/format.h>

/// What the functions of qv.h share: the handles, and the way from a failure to the caller's buffer.

struct qv_filter {
    std::unique_ptr<qv::QVMTIFilter> filter;
};

struct qv_image {
    qv::MTIImage image;
    qv::PixelBuffer buffer;  ///< the same in memory, when it was made of memory
};

namespace qv::c {

/// Where a failure's text goes.
struct ErrorBuffer {
    char* text;
    std::size_t size;

    void write(std::string_view cause) const;
};

/// Ends a call with this cause. Caught before it leaves the library.
struct Failure {
    std::string cause;
};

template <typename... Args>
[[noreturn]] void fail(fmt::format_string<Args...> format, Args&&... args) {
    throw Failure{fmt::format(format, std::forward<Args>(args)...)};
}

/// The result of `body`, or a zero when that fails, with the cause in the buffer.
template <typename Body>
auto guarded(ErrorBuffer error, Body&& body) noexcept -> decltype(body()) {
    try {
        return body();
    } catch (const Failure& failure) {
        error.write(failure.cause);
    } catch (const std::bad_alloc&) {
        error.write("out of memory");
    } catch (const std::exception& exception) {
        error.write(exception.what());
    }
    return {};
}

/// The argument, which must not be NULL; `what` names it.
template <typename T>
T& required(T* pointer, std::string_view what) {
    if (!pointer) fail("no {} is given", what);
    return *pointer;
}
std::string_view requiredText(const char* text, std::string_view what);

/// A caller's struct as this version knows it: what the caller's lacks is zero.
template <typename Struct>
Struct known(const Struct* given, std::string_view what) {
    const std::size_t size = required(given, what).size;
    if (size < sizeof(std::size_t) + 1) fail("the {}'s size is not set", what);
    Struct whole{};
    std::memcpy(&whole, given, std::min(size, sizeof whole));
    return whole;
}

/// Copies a text with its ending zero as far as it fits; the bytes of the whole.
std::size_t copyText(std::string_view text, char* target, std::size_t size);

/// The planes of a checked frame in a format that the library takes as it is, kept alive by `owner`.
PixelBuffer wrapFrame(const qv_frame& frame, std::shared_ptr<const void> owner);
/// Fails unless the sizes, strides and planes are those of its format.
void checkFrame(const qv_frame& frame);
/// Whether the format is only known here, and has to be converted from and to RGBA8.
bool isPacked(const qv_frame& frame);
/// A packed frame as RGBA8, in new memory.
PixelBuffer unpacked(const qv_frame& frame);
/// RGBA8 as a packed frame of the same size.
void pack(const PixelBuffer& rgba, const qv_frame& frame);

}  // namespace qv::c
