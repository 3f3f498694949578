#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionAssistFilter.h"

namespace qv {

extern const QVFilterClass QVFilmRadiusFrameFilterClass;

/// The film gate with rounded corners, black around it, and the picture zoomed within.
class QVFilmRadiusFrameFilter : public QVFilmTransitionAssistFilter {
  public:
    explicit QVFilmRadiusFrameFilter(const QVFilterClass& filterClass = QVFilmRadiusFrameFilterClass)
        : QVFilmTransitionAssistFilter(filterClass) {}

    /// How much larger the picture is; 0 is its own size.
    double zoomValue() const { return zoomValue_; }
    void setZoomValue(double value) { zoomValue_ = value; }

    /// "zoomValue".
    MTIParameters parameters() const override { return {{"zoomValue", float(zoomValue_)}}; }

  private:
    double zoomValue_ = 0;
};

}  // namespace qv
