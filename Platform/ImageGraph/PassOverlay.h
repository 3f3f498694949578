#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

class PictureStore;

/// Some pixels of a frame, (0,0) top left.
struct PixelRect {
    int x = 0, y = 0;           ///< its upper left pixel
    int width = 0, height = 0;  ///< 0 for none
    /// Member by member.
    bool operator==(const PixelRect&) const = default;
};

/// How the vertices of a draw become triangles.
enum class DrawTopology { triangles, triangleStrip };

/// What becomes of a drawn colour and the one that is there, both premultiplied.
enum class DrawBlend {
    replace,     ///< what is there does not count
    sourceOver,  ///< the drawn one over it
    brightest    ///< of each channel the larger
};

/// How a draw reaches its target: what a pipeline depends on besides its stages and the target's format.
struct DrawStyle {
    DrawTopology topology = DrawTopology::triangles;  ///< of its vertices
    DrawBlend blend = DrawBlend::replace;             ///< with what is there
    int instanceVectors = 0;  ///< vec4s that the vertex stage reads of each instance, at locations 0…
    int samples = 1;          ///< of a pixel at least, 1…64; the target gets their mean
    /// An order for tables.
    auto operator<=>(const DrawStyle&) const = default;
};

/// What all overlays of a kind are drawn with.
struct OverlayKind {
    std::shared_ptr<const ShaderFunction> vertexStage, fragmentStage;  ///< a nil one fails the render
    DrawStyle style;                                                   ///< how they are drawn
    int vertices = 0;                                                  ///< of one instance
    int textures = 0;  ///< that the fragment stage reads, at bindings 0…
};

/// Instances of an overlay for one frame.
struct OverlayLayout {
    /// Instances that follow each other and read the same textures.
    struct Draw {
        std::vector<std::shared_ptr<void>> textures;  ///< the context's, as many as the kind says
        std::uint32_t first = 0, count = 0;           ///< instances
    };
    std::vector<float> instances;  ///< the vectors of each in turn
    std::vector<Draw> draws;       ///< in the order in which they are drawn
};

/// What is drawn on top of a pass. Immutable, shared between threads.
class PassOverlay {
  public:
    virtual ~PassOverlay() = default;

    /// The same for as long as it lives.
    virtual const OverlayKind& kind() const = 0;
    /// Whether any pixel of a frame of this size may change.
    virtual bool isVisible(int width, int height) const = 0;
    /// Where pixels of a frame of this size may change: rectangles within it, which may overlap.
    virtual std::vector<PixelRect> bounds(int width, int height) const { return {{0, 0, width, height}}; }
    /// What is drawn on a frame of this size; the pictures that it shows are put into `pictures`. Called on
    /// the thread that records the frame. Throws what `pictures` does.
    virtual OverlayLayout layOut(int width, int height, PictureStore& pictures) const = 0;
};

}  // namespace qv
