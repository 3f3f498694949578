#include "Platform/ImageGraph/Private/RenderRequest.h"

#include <cstring>
#include <new>

namespace qv {

void setError(std::string* error, const std::exception& failure) noexcept {
    if (!error) return;
    const bool noMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
    try {
        *error = noMemory ? "out of memory" : failure.what();
    } catch (const std::bad_alloc&) {
        *error = "out of memory";  // short enough to need none
    }
}

void checkSize(const MTIImage& image, int width, int height) {
    if (!image) throw RenderError("the image is nil");
    if (int(image.size().width) != width || int(image.size().height) != height)
        throw RenderError("the destination's size is not the image's");
}

PlanTarget targetFor(const MTIImage& image, const PixelBuffer& destination, bool onProcessor) {
    if (!image) throw RenderError("the image is nil");
    if (!destination) throw RenderError("there is no destination");
    checkSize(image, destination.width(), destination.height());
    PlanTarget target;
    const bool deep = PixelBuffer::bitDepth(destination.format()) > 8;
    if (deep || (!onProcessor && PixelBuffer::isYUV(destination.format()))) target.planes = &destination;
    return target;
}

RenderPlan planFused(const MTIImage& image, PlanTarget target, const MTIContextOptions& options,
                     PassFuser& fuser, PassFuser::Missing missing) {
    if (!image) throw RenderError("the image is nil");
    target.working = options.workingPixelFormat == MTIPixelFormat::rgba16Float ? TextureFormat::rgba16Float
                                                                               : TextureFormat::rgba8;
    RenderPlan plan = planRender(image, target);
    if (plan.passes.empty()) throw RenderError("a stock shader is missing");
    if (options.fusion == MTIFusion::off) return plan;
    if (options.fusion == MTIFusion::beforeFirstFrame) missing = PassFuser::Missing::madeNow;
    return fuser.fuse(std::move(plan), missing, target.processor && !target.native);
}

void copyRows(const std::uint8_t* from, std::size_t fromRowBytes, std::uint8_t* to, std::size_t toRowBytes,
              std::size_t bytes, int rows) {
    for (int y = 0; y < rows; ++y)
        std::memcpy(to + std::size_t(y) * toRowBytes, from + std::size_t(y) * fromRowBytes, bytes);
}

}  // namespace qv
