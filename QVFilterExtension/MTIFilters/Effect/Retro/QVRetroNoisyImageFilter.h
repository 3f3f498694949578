#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterCore/QVSpiritFilter.h"

namespace qv {

extern const QVFilterClass QVRetroNoisyImageFilterClass;

/// An old colour print: yellowed, its blacks gone brown, mottled by its grain, with dust, dirt and creases
/// and a white border with a deckle edge.
///
/// - Blacks fade to 0.05 + 0.13 e (e is the strength), the cyan dye loses 0.4 e of itself; grain of 2 and 7
///   pixels of a frame whose shorter side is 1080, another one 8 times a second.
/// - Up to 5 clouds of dust and 4 spots, which lie for 0.25 s, and 2 creases for 2.5 s.
/// - The border "retroFrame.png" is 600 wide for a frame whose shorter side is 780; its edges are repeated.
class QVRetroNoisyImageFilter : public QVEffectMTIFilter {
  public:
    explicit QVRetroNoisyImageFilter(const QVFilterClass& filterClass = QVRetroNoisyImageFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// The border for the input's size, kept for it; nil without its asset.
    MTIImage frameImage() const;

    MTIImage outputImage() override;

  private:
    QVSpiritFilter spiritFilter_;
    MTIBlendFilter blendFilter_{MTIBlendMode::normal};
};

}  // namespace qv
