#include "Platform/ImageGraph/MTIKernel.h"

#include <fmt/format.h>

#include <map>
#include <mutex>

#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/Private/StockPass.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

namespace {

MTIImage imageOfPass(std::shared_ptr<const MTIRenderPipelineKernel> kernel, StockPass pass) {
    auto node = std::make_shared<ImageNode>();
    node->operation = KernelPass{std::move(kernel), std::move(pass.parameters)};
    node->inputs = std::move(pass.inputs);
    node->width = int(pass.size.width);
    node->height = int(pass.size.height);
    node->pixelFormat = pass.pixelFormat;
    node->alphaType = pass.alphaType;
    node->stock = std::move(pass.description);
    return MTIImage(std::move(node));
}

}  // namespace

std::shared_ptr<const MTIRenderPipelineKernel> MTIRenderPipelineKernel::make(
    const MTIFunctionDescriptor& fragment) {
    std::string error;
    const auto library = fragment.libraryURL.empty() ? ShaderLibrary::platform()
                                                     : ShaderLibrary::open(fragment.libraryURL, &error);
    if (!library) {
        logLineOnce(error);  // not each function of the library
        return nullptr;
    }
    auto function = library->function(fragment.name);
    if (!function) {
        logLineOnce(fmt::format("shader function \"{}\" is not in the library {}", fragment.name,
                                fragment.libraryURL.empty() ? "of the platform" : fragment.libraryURL));
        return nullptr;
    }
    return std::shared_ptr<const MTIRenderPipelineKernel>(
        new MTIRenderPipelineKernel(fragment, std::move(function)));
}

MTIImage MTIRenderPipelineKernel::applyToInputImages(std::vector<MTIImage> inputs, MTIParameters parameters,
                                                     CGSize dimensions,
                                                     MTIPixelFormat outputPixelFormat) const {
    if (!isImageSide(dimensions.width) || !isImageSide(dimensions.height)) return {};
    // What the function never looks at is not worth rendering.
    inputs.resize(function_->inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const ShaderInput& input = function_->inputs[i];
        if (!input.here && !input.anywhere && input.sizeOffset < 0) inputs[i] = {};
    }
    return imageOfPass(shared_from_this(), {.inputs = std::move(inputs),
                                            .parameters = std::move(parameters),
                                            .size = dimensions,
                                            .pixelFormat = outputPixelFormat});
}

const std::shared_ptr<const MTIRenderPipelineKernel>& stockKernel(std::string_view functionName) {
    static std::mutex mutex;
    static std::map<std::string, std::shared_ptr<const MTIRenderPipelineKernel>, std::less<>> kernels;
    std::scoped_lock lock(mutex);
    auto found = kernels.find(functionName);
    if (found == kernels.end()) {
        std::string name(functionName);
        auto kernel = MTIRenderPipelineKernel::make({name, {}});
        found = kernels.emplace(std::move(name), std::move(kernel)).first;
    }
    return found->second;
}

MTIImage imageOfStockPass(StockPass pass) {
    const auto& kernel = stockKernel(pass.function);
    if (!kernel || !isImageSide(pass.size.width) || !isImageSide(pass.size.height)) return {};
    return imageOfPass(kernel, std::move(pass));
}

std::string listed(double value) {
    return fmt::format("{:.6g}", value);
}

bool isImageSide(double side) {
    return side >= 1 && side < kMaximumImageSide + 1.0;
}

}  // namespace qv
