#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

extern const QVFilterClass QVFilmTransitionExposureFilterClass;

/// Light through film: the picture brighter or darker, with a soft shoulder.
class QVFilmTransitionExposureFilter : public QVFilmTransitionAssistFilter {
  public:
    explicit QVFilmTransitionExposureFilter(
        const QVFilterClass& filterClass = QVFilmTransitionExposureFilterClass)
        : QVFilmTransitionAssistFilter(filterClass) {}

    /// Stops; 0 leaves the picture as it is.
    double exposureValue() const { return exposureValue_; }
    void setExposureValue(double value) { exposureValue_ = value; }

    /// "exposureValue".
    MTIParameters parameters() const override { return {{"exposureValue", float(exposureValue_)}}; }

  private:
    double exposureValue_ = 0;
};

}  // namespace qv
