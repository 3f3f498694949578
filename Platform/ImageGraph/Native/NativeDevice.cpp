#include "Platform/ImageGraph/Native/NativeDevice.h"

#include <fmt/format.h>
#include <unistd.h>

#include "Platform/ImageGraph/Native/NativeComponent.h"
#include "Platform/ImageGraph/Native/NativeContext.h"
#include "Platform/ImageGraph/Private/RenderRequest.h"

namespace qv {

GraphicsDevice nativeDevice(int threads) {
    const NativeTarget* const target = nativeTargetOfMachine();
    if (threads <= 0) threads = WorkerPool::threadCount();
    GraphicsDevice device{
        .index = -1,
        .name = fmt::format("native {}, {} thread{}", target ? nativeTargetName(*target) : "processor",
                            threads, threads == 1 ? "" : "s"),
        .driver = QV_NATIVE_DRIVER,
        .apiVersion = {},
        .isProcessor = true,
        .memoryBytes = std::uint64_t(std::max(0L, ::sysconf(_SC_PHYS_PAGES))) *
                       std::uint64_t(std::max(0L, ::sysconf(_SC_PAGESIZE))),
        .unusable = {},
        .kind = MTIDeviceKind::native};
    if (!target)
        device.unusable = "the processor has no AVX2, FMA and F16C";
    else if (nativeComponentPath().empty())
        device.unusable = fmt::format("{} is not installed", kNativeComponentName);
    return device;
}

std::shared_ptr<MTIContext> makeNativeContext(const MTIContextOptions& options) {
    GraphicsDevice device = nativeDevice(options.threads);
    if (!device.unusable.empty()) throw RenderError("cannot render natively: " + device.unusable);
    return std::make_shared<NativeContext>(nativeCompiler(), *nativeTargetOfMachine(), options,
                                           std::move(device));
}

}  // namespace qv
