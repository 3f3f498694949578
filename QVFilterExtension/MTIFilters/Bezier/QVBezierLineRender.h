#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Drawing/UIImage.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "QVALObjectContour/QVObjectContour.h"
#include "QVFilterExtension/MTIFilters/Bezier/QVBezierLineColor.h"

namespace qv {

/// Draws smooth closed lines along outlines: a mask of the line first, then its colours, from a ramp across
/// the line or from a picture.
///
/// Each image is a node of a graph, as a filter's is: nothing is drawn before somebody renders it, and nobody
/// waits.
///
/// In the mask red, green and blue are 1 in the middle of the line and fall evenly to 0 at its rim, alpha is
/// the line's coverage; where lines cross the brighter one counts. Across the line the colours follow the
/// fall-off of light: where the mask's brightness is p, place 1 − p² (2 − p) of the ramp shows, or a picture
/// with the opacity p² (2 − p). Between two stops their colours count by their alphas plus 0.15, so that
/// light keeps its colour where it fades out.
///
/// Used by one thread at a time.
class QVBezierLineRender {
  public:
    /// A ramp from white in the middle of the line to black at its rim, 100 triangles a curve, two samples a
    /// pixel.
    QVBezierLineRender();

    /// The line mask, coloured. Nil without outlines or points, for an empty ramp, and where a function is
    /// missing.
    MTIImage renderBezierWithPointsArray(const QVOutlineSet& pointsArray, CGSize size, float lineThickness,
                                         CGSize outSize);
    /// The line mask. Points and thickness are in a space of `size`, y down, which is stretched over the
    /// image of `outSize` pixels, truncated to whole ones. Nil without outlines or points, and when a side is
    /// not one of an image.
    MTIImage renderBlackWhiteBezierWithPointsArray(const QVOutlineSet& pointsArray, CGSize size,
                                                   float lineThickness, CGSize outSize,
                                                   MTIPixelFormat format = MTIPixelFormat::unspecified) const;
    /// A line mask in colours. Nil for a nil one, an empty ramp, and where a function is missing.
    MTIImage renderColorBezierWithBlackWhiteTexure(const MTIImage& texture);

    /// Stops in any order; none: there is no ramp. A ramp takes the picture's place.
    const std::optional<std::vector<QVBezierLineColor>>& colArray() const { return colArray_; }
    void setColArray(std::optional<std::vector<QVBezierLineColor>> stops);
    /// A picture that is stretched over the image and shows where the line is; takes the ramp's place. Taking
    /// it away leaves lines without colour until a ramp is set.
    const UIImage& colorImage() const { return colorImage_; }
    void setColorImage(const UIImage& image);
    /// The ramp's stops as a buffer, in their order.
    std::vector<QVBezierLineColor::Record> colArrayData() const;

    /// Most triangles of a curve's strip.
    std::int32_t elementsPerInstance() const { return elementsPerInstance_; }
    void setElementsPerInstance(std::int32_t triangles) { elementsPerInstance_ = triangles; }
    /// Samples of a pixel that the mask is the mean of; a device draws the next number that it has.
    std::size_t sampleCount() const { return sampleCount_; }
    void setSampleCount(std::size_t samples) { sampleCount_ = samples; }

    /// Outlines that the points were made from: what listings of the graph name beside the curves.
    void setContours(QVOutlineSet contours) { contours_ = std::move(contours); }

  private:
    std::shared_ptr<const MTIRenderPipelineKernel> colorKernel();
    const MTIImage& rampImage();

    std::int32_t elementsPerInstance_ = 100;
    std::size_t sampleCount_ = 2;
    UIImage colorImage_;
    std::optional<std::vector<QVBezierLineColor>> colArray_;
    QVOutlineSet contours_;
    MTIImage colorTexture_;                                       ///< of the picture
    std::shared_ptr<const MTIRenderPipelineKernel> colorKernel_;  ///< made for the source of colour, lazily
    MTIImage rampImage_;                                          ///< of `rampStops_`
    std::vector<QVBezierLineColor> rampStops_;
};

}  // namespace qv
