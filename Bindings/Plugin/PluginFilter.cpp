#include "Bindings/Plugin/PluginFilter.h"

#include <cstring>
#include <mutex>
#include <string>

#include "Bindings/Plugin/PluginClass.h"
#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/MTIContext.h"

#include <fmt/format.h>

namespace qv {

namespace {

/// Made at the first frame: hosts construct plugins only to read what they are.
std::shared_ptr<MTIContext> context() {
    static std::mutex mutex;
    static auto& kept = *new std::shared_ptr<MTIContext>;
    const std::lock_guard lock(mutex);
    if (!kept) {
        MTIContextOptions options;
        options.fusion = MTIFusion::beforeFirstFrame;
        std::string error;
        kept = MTIContext::create(options, &error);
        if (!kept) logLineOnce("frames pass unchanged: " + error);
    }
    return kept;
}

PixelBuffer wrap(const std::uint8_t* pixels, int width, int height) {
    const PixelBuffer::Plane plane{const_cast<std::uint8_t*>(pixels), std::size_t(width) * 4};
    return PixelBuffer::wrap(PixelFormat::rgba8, width, height, {}, {plane}, {pixels, [](const void*) {}});
}

MTIImage imageOf(const std::uint8_t* pixels, const PluginFrames& frames) {
    return pixels ? MTIImage::imageWithPixelBuffer(wrap(pixels, frames.width, frames.height)) : MTIImage();
}

/// White where the frame is opaque; nil when it is so everywhere.
PixelBuffer maskOfAlpha(const PluginFrames& frames) {
    PixelBuffer mask = PixelBuffer::create(PixelFormat::gray8, frames.width, frames.height);
    const std::uint8_t* rgba = frames.first;
    bool opaque = true;
    for (int y = 0; mask && y < frames.height; ++y) {
        std::uint8_t* row = mask.plane(0).data + std::size_t(y) * mask.plane(0).rowBytes;
        for (int x = 0; x < frames.width; ++x, rgba += 4) opaque &= (row[x] = rgba[3]) == 255;
    }
    return opaque ? PixelBuffer() : mask;
}

}  // namespace

void PluginFilter::setNumber(std::string_view name, double value) {
    if (const QVProperty* property = filterClass().property(name)) property->set(*filter_, value);
}

void PluginFilter::setSeconds(double seconds) {
    setNumber("iTime", seconds);
    setNumber("time", seconds);
}

void PluginFilter::setInputs(const PluginFrames& frames) {
    const MTIImage mask = MTIImage::imageWithPixelBuffer(frames.mask, MTIAlphaType::alphaIsOne);
    for (const QVInput& input : filterClass().allInputs()) {
        if (input.role == QVInputRole::texture) continue;  // the class's own
        if (input.isBuffer) {
            input.set(*filter_, input.role == QVInputRole::mask ? frames.mask : PixelBuffer());
            continue;
        }
        MTIImage image;
        if (input.role == QVInputRole::frame) image = imageOf(frames.first, frames);
        if (input.role == QVInputRole::incoming) image = imageOf(frames.second, frames);
        if (input.role == QVInputRole::mask) image = mask;
        input.set(*filter_, std::move(image));
    }
    if (const QVProperty* size = filterClass().property("inputImageOriginalSize"))
        size->set(*filter_, MTIVector{float(frames.width), float(frames.height)});
}

void PluginFilter::draw(const PluginFrames& given, std::uint8_t* out) {
    PluginFrames frames = given;
    if (takesMask(filterClass()) && !frames.mask) frames.mask = maskOfAlpha(frames);
    bool drawn = false;
    if (const auto device = context()) {
        std::string error = "it has no mask, or an asset is missing";
        setInputs(frames);
        const MTIImage output = filter_->outputImage();
        const auto task =
            output ? device->startRender(output, wrap(out, frames.width, frames.height), &error) : nullptr;
        drawn = task && task->wait(&error);
        if (!drawn) logLineOnce(fmt::format("{}: frames pass unchanged: {}", filterClass().name, error));
        setInputs({});  // the host's memory is its own again
    }
    if (!drawn && out != frames.first)
        std::memcpy(out, frames.first, std::size_t(frames.width) * std::size_t(frames.height) * 4);
}

}  // namespace qv
