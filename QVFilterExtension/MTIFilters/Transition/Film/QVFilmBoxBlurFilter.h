#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVFilmBoxBlurFilterClass;

/// A cross-fade under a box blur that is widest in the middle and gone at both ends.
class QVFilmBoxBlurFilter : public QVTransitionMTIFilter {
  public:
    explicit QVFilmBoxBlurFilter(const QVFilterClass& filterClass = QVFilmBoxBlurFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    /// "progress" (linear).
    MTIParameters parameters() const override { return {{"progress", progress()}}; }
};

}  // namespace qv
