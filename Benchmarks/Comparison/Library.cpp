// This library's part of the comparison: milliseconds a frame of each job, one a line.

#include <cmath>
#include <memory>
#include <stdexcept>

#include "Benchmarks/Comparison/Comparison.h"
#include "Platform/ImageGraph/MTIContext.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "QVFilterCore/QVLookupMTIFilter.h"
#include "QVFilterExtension/QVFilterRegistry.h"

namespace {

using namespace qv;

MTIImage blended(MTIBlendMode mode, const MTIImage& below, const MTIImage& above, float intensity) {
    MTIBlendFilter filter(mode);
    filter.setInputBackgroundImage(below);
    filter.setInputImage(above);
    filter.setIntensity(intensity);
    return filter.outputImage();
}

MTIImage saturated(const MTIImage& image, float saturation) {
    MTISaturationFilter filter;
    filter.setInputImage(image);
    filter.setSaturation(saturation);
    return filter.outputImage();
}

MTIImage exposed(const MTIImage& image, float stops) {
    MTIExposureFilter filter;
    filter.setInputImage(image);
    filter.setExposure(stops);
    return filter.outputImage();
}

MTIImage blurred(const MTIImage& image, float sigma) {
    MTIGaussianBlurFilter filter;
    filter.setInputImage(image);
    filter.setRadius(sigma);
    return filter.outputImage();
}

MTIImage chained(MTIImage image, const MTIImage& other) {
    for (const auto& step : comparison::kChain) {
        image = exposed(saturated(image, step.saturation), step.stops);
        if (step.mix > 0) image = blended(MTIBlendMode::normal, image, other, step.mix);
    }
    return image;
}

MTIImage ofClass(std::string_view name, const MTIImage& first, const MTIImage& second,
                 std::string_view property, double value) {
    const auto filter = createFilter(name);
    if (!filter || !setProperty(*filter, property, value))
        throw std::runtime_error(std::string(name) + " cannot be set up");
    for (const QVInput& input : filter->filterClass().allInputs())
        input.set(*filter, input.role == QVInputRole::incoming ? second : first);
    return filter->outputImage();
}

MTIImage graded(const MTIImage& image, const MTIImage& table) {
    QVLookupMTIFilter filter;
    filter.setInputImage(image);
    filter.setInputColorLookupTable(table);
    return filter.outputImage();
}

/// The table of 64³ colours that changes nothing: what it holds makes no difference to the cost.
MTIImage lookupTable() {
    constexpr int kSide = 512;
    auto pixels = std::make_shared<std::vector<std::uint8_t>>();
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            for (int entry : {x % 64, y % 64, y / 64 * 8 + x / 64})
                pixels->push_back(std::uint8_t(entry * 255 / 63));
            pixels->push_back(255);
        }
    }
    return MTIImage::imageWithBitmap({kSide, kSide, std::move(pixels)});
}

/// The picture at half its opacity.
Bitmap halved(const Bitmap& picture) {
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(*picture.pixels);
    for (std::uint8_t& value : *pixels) value /= 2;
    return {picture.width, picture.height, std::move(pixels)};
}

void compare(const comparison::Pictures& pictures) {
    std::string error;
    const auto context = MTIContext::create({}, &error);
    if (!context) throw std::runtime_error(error);
    const MTIImage first = MTIImage::imageWithBitmap(pictures.first);
    const MTIImage second = MTIImage::imageWithBitmap(pictures.second);
    const MTIImage translucent = MTIImage::imageWithBitmap(halved(pictures.second));
    const MTIImage table = lookupTable();

    const auto job = [&](const std::string& name, const std::function<MTIImage()>& makeImage) {
        context->prepare(makeImage());
        comparison::report(name, [&] {
            const auto task = context->startRender(makeImage(), &error);
            if (!task || !task->wait(&error)) throw std::runtime_error(error);
        });
        if (pictures.folder.empty()) return;
        const Bitmap result = context->renderToBitmap(makeImage(), &error);
        if (!result || !writePNG(result, pictures.folder + "/ours-" + name + ".png", &error))
            throw std::runtime_error(error);
    };
    const auto copyKernel = stockKernel("MTICopy");
    job("copy", [&] {
        return copyKernel->applyToInputImages({first}, {}, first.size(), MTIPixelFormat::unspecified);
    });
    job("dissolve", [&] { return blended(MTIBlendMode::normal, first, second, 0.5f); });
    job("overlay", [&] { return blended(MTIBlendMode::normal, first, translucent, 1); });
    job("screen", [&] { return blended(MTIBlendMode::screen, first, second, 1); });
    job("saturation", [&] { return saturated(first, comparison::kSaturation); });
    job("hue", [&] { return ofClass("QVHueMTIFilter", first, second, "hue", 1); });
    job("lookup", [&] { return graded(first, table); });
    job("rgbshift", [&] { return ofClass("QVRGBMTIFilter", first, second, "effectValue", 0.5); });
    job("mosaic", [&] { return ofClass("QVMosaicMTIFilter", first, second, "factor", 58); });
    job("blur", [&] { return blurred(first, comparison::kBlurSigma); });
    job("slide", [&] { return ofClass("QVScrollTransitionMTIFilter", first, second, "progress", 0.5); });
    job("wipe",
        [&] { return ofClass("QVPhotoDissolveTransitionMTIFilter", first, second, "progress", 0.5); });
    job("chain", [&] { return chained(first, second); });
}

}  // namespace

int main(int argc, char** argv) {
    qv::comparison::Pictures pictures;
    if (!qv::comparison::readPictures(argc, argv, pictures)) return 2;
    try {
        compare(pictures);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
