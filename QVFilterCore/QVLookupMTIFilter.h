#pragma once

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVLookupMTIFilterClass;

/// Colour grading by a look-up table: a picture of 512×512 pixels, eight by eight tiles of 64×64 in reading
/// order. Within a tile red grows to the right and green downwards, from the first pixel's centre (0) to the
/// last one's (1); blue grows from tile to tile. Colours between entries are interpolated within
/// tetrahedra, so that greys stay on the table's greys, and the table that holds each entry's own colour
/// changes nothing. Without a table the result
/// is the input itself.
class QVLookupMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVLookupMTIFilter(const QVFilterClass& filterClass = QVLookupMTIFilterClass)
        : QVMTIOneInputFilter(filterClass) {}

    /// The table, 512×512 pixels; nil: none.
    const MTIImage& inputColorLookupTable() const { return inputColorLookupTable_; }
    void setInputColorLookupTable(MTIImage table) { inputColorLookupTable_ = std::move(table); }
    /// 0 leaves the picture, 1 grades it fully.
    float intensity() const { return intensity_; }
    void setIntensity(float intensity) { intensity_ = intensity; }

    MTIParameters parameters() const override { return {{"intensity", intensity_}}; }
    MTIImage outputImage() override;

  private:
    MTIImage inputColorLookupTable_;
    float intensity_ = 1;
};

}  // namespace qv
