#pragma once

#include <exception>
#include <stdexcept>
#include <string>

#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/ImageGraph/Private/PassFuser.h"

/// What every context does with a render before and after it runs.
namespace qv {

/// A render that cannot be; caught where the platform's interface begins.
struct RenderError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A program that this machine cannot compile, however often it is tried.
struct CompileError : RenderError {
    using RenderError::RenderError;
};

/// The cause as one line, in words of the field.
void setError(std::string* error, const std::exception& failure) noexcept;

/// For what fails again in the render that follows, which tells.
template <typename Work>
void quietly(Work&& work) {
    try {
        work();
    } catch (const std::exception&) {
    }
}

/// Throws RenderError when the image is nil or has another size.
void checkSize(const MTIImage& image, int width, int height);

/// What a render into the destination is planned for, by a context that converts planes beside the passes or
/// in them. Throws RenderError when the image does not fit it.
PlanTarget targetFor(const MTIImage& image, const PixelBuffer& destination, bool onProcessor);

/// The passes of the image, fused as far as the options and what is compiled allow. Throws RenderError.
RenderPlan planFused(const MTIImage& image, PlanTarget target, const MTIContextOptions& options,
                     PassFuser& fuser, PassFuser::Missing missing);

/// Copies rows of `bytes` between images whose rows lie apart.
void copyRows(const std::uint8_t* from, std::size_t fromRowBytes, std::uint8_t* to, std::size_t toRowBytes,
              std::size_t bytes, int rows);

}  // namespace qv
