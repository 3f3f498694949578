#include "Platform/ImageGraph/Native/Overlays/NativeOverlays.h"

#include <utility>

#include "Platform/ImageGraph/Native/Overlays/OverlayLayer.h"

namespace qv {

namespace {

class Layers final : public NativeOverlays {
  public:
    explicit Layers(std::vector<std::unique_ptr<const OverlayLayer>> layers) : layers_(std::move(layers)) {}

    void draw(const NativeImage& target, int firstRow, int endRow) const override {
        for (const auto& layer : layers_) layer->draw(target, firstRow, endRow);
    }

  private:
    std::vector<std::unique_ptr<const OverlayLayer>> layers_;  ///< the lowest first
};

enum class Drawing { sprites, lines };

/// What the stages draw; nothing, with one line in `error`, when they are none of ours.
std::optional<Drawing> drawingOf(const OverlayKind& kind, std::string* error) {
    const auto& vertex = kind.vertexStage;
    const auto fail = [&](std::string text) {
        if (error) *error = std::move(text);
        return std::nullopt;
    };
    if (!vertex || !kind.fragmentStage) return fail("a stock shader is missing");
    const auto& library = ShaderLibrary::platform();
    if (vertex == library->function("sprite.vert") && kind.fragmentStage == library->function("sprite.frag"))
        return Drawing::sprites;
    if (vertex == library->function("bezier_vertex.vert") &&
        kind.fragmentStage == library->function("bezier_fragment.frag"))
        return Drawing::lines;
    return fail("this device cannot draw with the stage " + vertex->name);
}

bool isDrawn(TextureFormat format) {
    return format == TextureFormat::rgba8 || format == TextureFormat::rgba16Float ||
           format == TextureFormat::rgba32Float;
}

}  // namespace

std::unique_ptr<const NativeOverlays> layOutNativeOverlays(const PlanPass& pass, const PlanTexture& output,
                                                           NativePictures& pictures,
                                                           NativeTarget instructions, std::string* error) {
    if (!isDrawn(output.format)) {
        if (error) *error = "this device cannot draw sprites and lines into a format without four channels";
        return nullptr;
    }
    const OverlayTarget target{output.width, output.height, output.format, pass.samples};
    const OverlaySpans& spans = overlaySpans(instructions);
    std::vector<std::unique_ptr<const OverlayLayer>> layers;
    // Lines that follow each other share their samples, of which only the brightest count.
    std::vector<OverlayLayout> lines;
    const auto addLines = [&] {
        if (!lines.empty()) layers.push_back(lineLayer(lines, target, spans));
        lines.clear();
    };
    for (const PassOverlay* overlay : pass.overlays) {
        const auto drawing = drawingOf(overlay->kind(), error);
        if (!drawing) return nullptr;
        OverlayLayout layout = overlay->layOut(output.width, output.height, pictures);
        if (*drawing == Drawing::lines) {
            lines.push_back(std::move(layout));
            continue;
        }
        addLines();
        layers.push_back(spriteLayer(std::move(layout), target, spans));
    }
    addLines();
    return std::make_unique<Layers>(std::move(layers));
}

}  // namespace qv
