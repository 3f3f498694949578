#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

extern const QVFilterClass QVFilmTransitionMotionBlurFilterClass;

/// A blur along the film, which runs downwards through the gate.
class QVFilmTransitionMotionBlurFilter : public QVFilmTransitionAssistFilter {
  public:
    explicit QVFilmTransitionMotionBlurFilter(
        const QVFilterClass& filterClass = QVFilmTransitionMotionBlurFilterClass)
        : QVFilmTransitionAssistFilter(filterClass) {}

    /// Reach upwards and downwards, 1/1080 of the frame's shorter side.
    double blurRadius() const { return blurRadius_; }
    void setBlurRadius(double value) { blurRadius_ = value; }

    /// "radius".
    MTIParameters parameters() const override { return {{"radius", float(blurRadius_)}}; }

  private:
    double blurRadius_ = 0;
};

}  // namespace qv
