#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/ImageGraph/MTIParameters.h"

namespace qv {

class ShaderFunction;

/// A shader function by name and the compiled shader library it lies in. An empty URL is the platform's own
/// library.
struct MTIFunctionDescriptor {
    std::string name;        ///< of the function, which is the stem of its file
    std::string libraryURL;  ///< path of the library's file
    bool operator==(const MTIFunctionDescriptor&) const = default;
};

/// A fragment function that can be applied to images: one full-screen pass. Immutable and shared between
/// threads.
class MTIRenderPipelineKernel : public std::enable_shared_from_this<MTIRenderPipelineKernel> {
  public:
    /// Looks the function up. Nil when the library or the function is missing, with one log line naming it,
    /// the first time.
    static std::shared_ptr<const MTIRenderPipelineKernel> make(const MTIFunctionDescriptor& fragment);

    /// What it was made from.
    const MTIFunctionDescriptor& fragmentFunctionDescriptor() const { return descriptor_; }
    /// The compiled function.
    const ShaderFunction& function() const { return *function_; }

    /// The image of one pass over `inputs`; a nil input reads as transparent. Nothing is rendered. Sides of
    /// `dimensions` are truncated to integers; nil when one is outside 1..kMaximumImageSide. A uniform that
    /// `parameters` lacks is 0.
    MTIImage applyToInputImages(std::vector<MTIImage> inputs, MTIParameters parameters, CGSize dimensions,
                                MTIPixelFormat outputPixelFormat) const;

  private:
    MTIRenderPipelineKernel(MTIFunctionDescriptor descriptor, std::shared_ptr<const ShaderFunction> function)
        : descriptor_(std::move(descriptor)), function_(std::move(function)) {}
    MTIFunctionDescriptor descriptor_;
    std::shared_ptr<const ShaderFunction> function_;
};

/// A kernel of the platform's own library, looked up once per name.
const std::shared_ptr<const MTIRenderPipelineKernel>& stockKernel(std::string_view functionName);

}  // namespace qv
