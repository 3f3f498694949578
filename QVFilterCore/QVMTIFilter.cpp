#include "QVFilterCore/QVMTIFilter.h"

#include <mutex>

#include "Platform/ImageGraph/MTIContext.h"

namespace qv {

const QVFilterClass QVMTIFilterClass{
    .name = "QVMTIFilter", .title = "Filter", .help = "Root of all filters", .kind = QVFilterKind::auxiliary};

MTIVector QVMTIFilter::rgbaVectorFromUIColor(const UIColor& color) {
    return {float(color.red()), float(color.green()), float(color.blue()), float(color.alpha())};
}

MTIVector QVMTIFilter::rgbVectorFromUIColor(const UIColor& color) {
    return {float(color.red()), float(color.green()), float(color.blue())};
}

MTIImage QVMTIFilter::applyKernel(std::vector<MTIImage> inputs, MTIParameters parameters) const {
    if (inputs.empty() || !inputs.front()) return {};
    const auto kernel = filterClass().kernel();
    if (!kernel) return {};
    const CGSize size = inputs.front().size();
    return kernel->applyToInputImages(std::move(inputs), std::move(parameters), size, outputPixelFormat());
}

namespace {

struct SharedContext {
    std::mutex mutex;
    std::shared_ptr<MTIContext> context;
    bool tried = false;
};

SharedContext& shared() {
    // Never destroyed: at exit the driver may be gone before it would be.
    static auto& instance = *new SharedContext;
    return instance;
}

}  // namespace

std::shared_ptr<MTIContext> QVMTIFilter::sharedContext() {
    std::scoped_lock lock(shared().mutex);
    if (!shared().tried) {
        shared().tried = true;
        shared().context = MTIContext::create();
    }
    return shared().context;
}

void QVMTIFilter::setSharedContext(std::shared_ptr<MTIContext> context) {
    std::scoped_lock lock(shared().mutex);
    shared().tried = context != nullptr;
    shared().context = std::move(context);
}

}  // namespace qv
