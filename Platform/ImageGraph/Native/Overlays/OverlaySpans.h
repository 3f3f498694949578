#pragma once

#include <cstdint>

#include "Platform/ImageGraph/Native/NativeCompiler.h"

namespace qv {

/// Pixels that spans are drawn by; they may be read and written beyond a span's end, unchanged.
inline constexpr int kSpanLanes = 8;

/// A linear function of a pixel's place in a span.
struct SpanValue {
    float first = 0, step = 0;
};

/// One sprite on one row.
struct SpriteSpan {
    const std::uint8_t* texels;  ///< first pixel of the page, 8-bit RGBA; a row and a pixel follow it
    std::int32_t rowBytes;
    SpanValue across, down;        ///< from the sprite's middle, pixels along its sides
    SpanValue u, v;                ///< on the page, pixels from the middle of its first one
    float uLimits[2], vLimits[2];  ///< on the page
    float edge[2], limit[2];       ///< half a side and a half; most of a pixel that a side covers
    float factor[4];               ///< of the premultiplied texel
};

/// A piece of a line, which is light that falls off from its middle.
struct LinePiece {
    float start[2], way[2];  ///< points
    float pointsAPixel[2], pixelsAPoint;
    float oneByRadius;  ///< 1 / points
    float coverage;     ///< in the middle
    float reach;        ///< half the width and a half, pixels
    float oneByWaySquared;
};

/// Of one sample of the pixels of a row, where a piece covers it, in pixels: two parts.
struct SampleCover {
    float begin[2], end[2];
    float offset;  ///< of the sample in its pixel, across
};
inline constexpr int kMostSamples = 4;

/// The samples of a row as far as something was drawn there.
struct SampleRow {
    std::uint8_t* target;  ///< the row
    TextureFormat format;
    int samples;            ///< of a pixel
    std::int64_t stride;    ///< floats of a channel; a multiple of kSpanLanes
    float* values;          ///< channels of samples
    std::uint8_t* isDrawn;  ///< of each kSpanLanes pixels
};

/// What draws spans into 8-bit and float RGBA, in floats whose order is fixed: all give the same bytes.
struct OverlaySpans {
    /// The sprite over the pixels [begin, end) of a row.
    void (*sprite)(const SpriteSpan& span, std::uint8_t* row, TextureFormat format, int begin, int end);
    /// The brighter of a piece of a line and what is there, for covered samples of the pixels [begin, end).
    void (*line)(const LinePiece& piece, const SampleCover* covers, const SampleRow& row, int y, int begin,
                 int end);
    /// Writes the means of the samples where anything was drawn, and forgets them.
    void (*resolve)(const SampleRow& row);
};

/// Compiled for the instruction set; portable code stands for those of other machines.
const OverlaySpans& overlaySpans(NativeTarget instructions);

}  // namespace qv
