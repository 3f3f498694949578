#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVBWDissolveTransitionMTIFilterClass;

/// The incoming clip comes in as a grey picture, where it is darker than the outgoing one; in the last three
/// tenths the outgoing clip goes and the colour comes.
class QVBWDissolveTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    explicit QVBWDissolveTransitionMTIFilter(
        const QVFilterClass& filterClass = QVBWDissolveTransitionMTIFilterClass)
        : QVTransitionMTIFilter(filterClass) {}

    MTIImage outputImage() override;
};

}  // namespace qv
