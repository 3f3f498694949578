#pragma once

#include "QVFilterCore/QVPeriodicEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVColCoverPEMTIFilterClass;

/// A colour closes over the picture on the beat, from the corners inwards as an iris does, and opens again.
/// At a strength of 1 nothing of the picture is left at the height of the beat. The rim of the iris is soft
/// over 0.32 of half the frame's diagonal.
class QVColCoverPEMTIFilter : public QVPeriodicEffectMTIFilter {
  public:
    explicit QVColCoverPEMTIFilter(const QVFilterClass& filterClass = QVColCoverPEMTIFilterClass)
        : QVPeriodicEffectMTIFilter(filterClass) {}

    /// Black; its alpha is how much it can cover.
    const UIColor& coverCol() const { return coverCol_; }
    void setCoverCol(UIColor color) { coverCol_ = color; }

    /// The base's and "coverCol", straight RGBA.
    MTIParameters parameters() const override;

  private:
    UIColor coverCol_ = UIColor::blackColor();
};

}  // namespace qv
