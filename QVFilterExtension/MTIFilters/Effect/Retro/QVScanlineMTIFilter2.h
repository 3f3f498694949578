#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Retro/QVScanlineMTIFilter.h"

namespace qv {

extern const QVFilterClass QVScanlineMTIFilter2Class;

/// `QVScanlineMTIFilter` under a second name: the same patterns, parameters and fragment function.
class QVScanlineMTIFilter2 : public QVScanlineMTIFilter {
  public:
    explicit QVScanlineMTIFilter2(const QVFilterClass& filterClass = QVScanlineMTIFilter2Class)
        : QVScanlineMTIFilter(filterClass) {}
};

}  // namespace qv
