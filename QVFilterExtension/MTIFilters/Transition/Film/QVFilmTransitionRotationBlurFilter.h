#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

extern const QVFilterClass QVFilmTransitionRotationBlurFilterClass;

/// A blur around the frame's middle, as of a frame that turns while the shutter is open.
class QVFilmTransitionRotationBlurFilter : public QVFilmTransitionAssistFilter {
  public:
    explicit QVFilmTransitionRotationBlurFilter(
        const QVFilterClass& filterClass = QVFilmTransitionRotationBlurFilterClass)
        : QVFilmTransitionAssistFilter(filterClass) {}

    /// Angle swept while the shutter is open, radians.
    double blurFilterValue() const { return blurFilterValue_; }
    void setBlurFilterValue(double value) { blurFilterValue_ = value; }

    /// "angle" from tap to tap, "turn1" to "turn4".
    MTIParameters parameters() const override;

  private:
    double blurFilterValue_ = 0;
};

}  // namespace qv
