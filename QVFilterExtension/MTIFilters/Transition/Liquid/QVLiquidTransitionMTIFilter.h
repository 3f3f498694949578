#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVLiquidTransitionMTIFilterClass;

/// Transitions that distort the picture (turbulence, stretching, lenses, kaleidoscopes) and cut from one clip
/// to the other at the height of the distortion. Some of the classes are steps of such transitions: they read
/// `inputImage1` alone and their kind is `auxiliary`.
class QVLiquidTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVLiquidTransitionMTIFilter(const QVFilterClass& filterClass = QVLiquidTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// One pass of the class's kernel over the inputs that its record names. Nil when one of them is nil.
    MTIImage outputImage() override;

  protected:
    /// One pass of the class's kernel over `inputs`, with the size of the outgoing frame.
    MTIImage render(std::vector<MTIImage> inputs) const;
    /// The clip that shows: the outgoing one before the middle, from 0.5 on the incoming one.
    const MTIImage& clipThatShows() const { return progress() < 0.5f ? inputImage1() : inputImage2(); }
};

}  // namespace qv
