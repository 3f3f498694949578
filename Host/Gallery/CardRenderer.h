#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Host/CommandLine/Interrupt.h"
#include "Host/Gallery/GalleryScene.h"
#include "Platform/Media/Bitmap.h"

namespace qv::host {

/// A transition rests on either clip for a moment, so that a viewer sees what leads to what.
inline constexpr double kTransitionHold = 0.5;

/// Sizes of a gallery's pictures. Frames are rendered larger than they are shown, where that is cheap: edges
/// are smooth then, and what is counted in pixels comes closer to the size that it has in a clip.
struct CardSizes {
    PixelSize preview;  ///< even
    PixelSize render;   ///< of the scene and of the two large stills

    explicit CardSizes(PixelSize preview);
};

/// One value of a level or of a selector.
struct CardStill {
    std::string property, label;
    int value;
    Bitmap picture;
};

/// A building block that changes nothing by itself is shown with one of its numbers going up and back.
struct CardSweep {
    const QVProperty* property;
    double from, to;
};

/// What a card shows. Everything but the frames is at one telling moment.
struct CardPictures {
    std::vector<PixelBuffer> frames;  ///< of the preview, as the encoder takes them
    double moment = 0;                ///< seconds into the preview
    Bitmap after, before;
    Bitmap incoming;  ///< only of a transition, whose outgoing frame is `before`
    std::vector<CardStill> stills;
    bool changes = true;  ///< false when every frame is the source's
    std::optional<CardSweep> sweep;
};

/// Renders the pictures of one class after the other. One thread at a time.
class CardRenderer {
  public:
    /// `pause` is called before each frame: it may wait while others need the device, or fail.
    CardRenderer(const GalleryFiles& files, const CardSizes& sizes, MTIContext& context,
                 std::function<void()> pause = checkInterrupt);

    /// Fails as internal when the class gives no picture. Renders nothing.
    void check(const QVFilterClass& filterClass);
    /// Fails as internal, device or interrupted.
    CardPictures render(const QVFilterClass& filterClass);

    const GalleryScene& scene() const { return scene_; }
    /// The scene that a class is shown on: the drawn one where it needs a mask that the user's clip has not.
    const GalleryScene& sceneFor(const QVFilterClass& filterClass);
    /// The scene's first clip itself, as the frames of a preview.
    const std::vector<PixelBuffer>& sourceFrames() { return sourceFrames(scene_); }

  private:
    std::vector<PixelBuffer> play(const QVFilterClass& filterClass, const std::optional<CardSweep>& sweep);
    std::vector<PixelBuffer> renderFrames(const std::vector<MTIImage>& images);
    const std::vector<PixelBuffer>& sourceFrames(const GalleryScene& scene);
    /// Of each frame from its source, in codes, with its index.
    std::vector<std::pair<double, int>> changes(const std::vector<PixelBuffer>& frames,
                                                const GalleryScene& scene);
    Bitmap still(const MTIImage& image, PixelSize size);

    CardSizes sizes_;
    MTIContext& context_;
    std::function<void()> pause_;
    GalleryScene scene_;
    std::optional<GalleryScene> sampleScene_;  ///< drawn when the first class asks
    std::vector<PixelBuffer> source_, sampleSource_;
};

}  // namespace qv::host
