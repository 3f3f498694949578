#include "Platform/ImageGraph/Native/NativeDraw.h"

#include "Platform/ImageGraph/Private/SourcePixels.h"

namespace qv {

namespace {

/// Memory for one band of an image, described as if it were a part of the whole.
class Band {
  public:
    Band(const NativeDraw& draw, const NativeImage& whole, TextureFormat format, int firstRow)
        : texture_(draw.bands->acquire(whole.width, draw.bandRows, format)), image_(texture_->image()) {
        texture_->lastUse = draw.serial;
        image_.pixels -= firstRow * image_.rowBytes;
        image_.height = whole.height;
    }
    const NativeImage& image() const { return image_; }

  private:
    std::shared_ptr<NativeTexture> texture_;
    NativeImage image_;
};

}  // namespace

void NativeDraw::drawStage(int stage, int firstRow, int endRow) const {
    operation->draw(stage, inputs.data(), target, scratch, firstRow, endRow);
}

void NativeDraw::drawPixels(const NativeImage* bandInputs, const NativeImage& rows, int firstRow,
                            int endRow) const {
    if (color) {
        fillRows(rows, format, *color, firstRow, endRow);
    } else if (operation) {
        operation->draw(operation->stageCount() - 1, bandInputs, rows, scratch, firstRow, endRow);
    } else {
        const NativeKernelArguments arguments{.words = words.data(),
                                              .selectors = selectors.data(),
                                              .resampled = resampled,
                                              .inputs = bandInputs,
                                              .target = rows};
        kernel->function()(&arguments, firstRow, endRow);
    }
}

void NativeDraw::draw(int firstRow, int endRow) const {
    std::vector<Band> taken;
    taken.reserve(bandSources.size() + 1);
    std::vector<NativeImage> bandInputs;
    if (!bandSources.empty()) bandInputs = inputs;
    for (const auto& [input, texture] : bandSources) {
        NativeImage& image = bandInputs[input];
        image = taken.emplace_back(*this, image, texture.format, firstRow).image();
        writeSourceRows(texture, image.pixels, std::size_t(image.rowBytes), firstRow, endRow);
    }
    NativeImage rows = target;
    if (!rows.pixels) rows = taken.emplace_back(*this, target, format, firstRow).image();
    drawPixels(bandSources.empty() ? inputs.data() : bandInputs.data(), rows, firstRow, endRow);
    if (overlays) overlays->draw(rows, firstRow, endRow);
    if (deliver) deliver(rows, firstRow, endRow);
}

}  // namespace qv
