#include "QVPersonMask/PersonMask.h"

#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "Platform/Media/PixelConversion.h"
#include "QVPersonMask/Private/PersonMaskState.h"

namespace qv {

namespace {

/// The usual model has a quarter of a megabyte.
constexpr std::streamoff kMaximumFileBytes = 32 << 20;

std::vector<std::uint8_t> readModel(const std::string& path) {
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    if (!stream || !std::filesystem::is_regular_file(path)) throw ModelError("cannot be read");
    const std::streamoff size = stream.tellg();
    if (size < 0 || size > kMaximumFileBytes) throw ModelError("is too large for a model");
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    stream.seekg(0);
    if (!stream.read(reinterpret_cast<char*>(bytes.data()), size)) throw ModelError("cannot be read");
    return bytes;
}

}  // namespace

PersonEstimate PersonMask::State::estimate(const PixelBuffer& picture, int rotation) {
    if (!picture) throw ModelError("has no pixels");
    rgba.create(picture.height(), picture.width(), CV_8UC4);
    if (!convertToRGBA8(picture, rgba.data, rgba.step)) throw ModelError("cannot be converted");
    return estimatePerson(network, rgba, rotation);
}

PersonMask::PersonMask(std::unique_ptr<State> state) : state_(std::move(state)) {}
PersonMask::~PersonMask() = default;

std::shared_ptr<PersonMask> PersonMask::create(const std::string& modelPath, std::string* error) {
    std::shared_ptr<PersonMask> result;
    withoutExceptions("'" + modelPath + "' ", error,
                      [&] { result.reset(new PersonMask(std::make_unique<State>(readModel(modelPath)))); });
    return result;
}

PixelBuffer PersonMask::maskOf(const PixelBuffer& picture, int rotation, std::string* error) {
    PixelBuffer mask;
    withoutExceptions("the picture ", error, [&] {
        const PersonEstimate estimate = state_->estimate(picture, rotation);
        mask = refinedMask(estimate, estimate.likelihood);
    });
    return mask;
}

PixelBuffer PersonMask::maskOf(const Bitmap& picture, std::string* error) {
    PixelBuffer mask;
    withoutExceptions("the picture ", error, [&] {
        if (!picture) throw ModelError("has no pixels");
        const cv::Mat rgba(picture.height, picture.width, CV_8UC4,
                           const_cast<std::uint8_t*>(picture.pixels->data()));
        const PersonEstimate estimate = estimatePerson(state_->network, rgba, 0);
        mask = refinedMask(estimate, estimate.likelihood);
    });
    return mask;
}

}  // namespace qv
