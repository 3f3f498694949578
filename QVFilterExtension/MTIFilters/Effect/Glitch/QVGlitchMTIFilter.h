#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVGlitchMTIFilterClass;

/// A digital signal that breaks: bands jump aside, columns smear into long streaks, blocks show another place
/// in false colours, red and blue part. A strength of 0 leaves the frame as it is.
///
/// - The damage is drawn anew 12 times a second. Six draws are a phrase: five phrases in eight are bursts at
/// full
///   damage, the others rest at a quarter of it.
/// - Bands are about a fifth and a thirtieth of the frame high; at full damage two thirds of the high ones
/// jump by up
///   to 0.11 of the frame's width and a third of the low ones by up to 0.06.
/// - A quarter of the high bands smear: what lies right of a column goes on with that column.
/// - Blocks lie on a grid of nine a shorter side; up to a sixth of them are damaged.
/// - Red and blue part by up to 0.022 of the width each.
class QVGlitchMTIFilter : public QVEffectMTIFilter {
  public:
    /// Seconds that a draw of the damage stands, and how many draws a phrase has.
    static constexpr double kDrawSeconds = 1.0 / 12;
    static constexpr int kDrawsOfPhrase = 6;

    explicit QVGlitchMTIFilter(const QVFilterClass& filterClass = QVGlitchMTIFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// "effectValue", "draw" and "phrase" (their numbers).
    MTIParameters parameters() const override;
};

}  // namespace qv
