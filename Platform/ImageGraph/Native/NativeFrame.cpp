#include "Platform/ImageGraph/Native/NativeFrame.h"

namespace qv {

std::shared_ptr<NativeTexture> NativeFrame::takeTexture(int width, int height, TextureFormat format) {
    const auto found = std::ranges::find_if(
        free_, [&](const auto& texture) { return texture->isLike(width, height, format); });
    std::shared_ptr<NativeTexture> texture;
    if (found == free_.end()) {
        texture = pool_.acquire(width, height, format);
        texture->lastUse = serial_;
        kept_.push_back(texture);
    } else {
        texture = std::move(*found);
        free_.erase(found);
    }
    return texture;
}

void NativeFrame::finish() {
    statistics.gpuMilliseconds =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begun_).count();
    free_.clear();
    kept_.clear();
    draws_.clear();
    destination_ = {};
}

}  // namespace qv
