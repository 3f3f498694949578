#pragma once

#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAIMattingCopyFilterClass;

/// Base of the effects that work on the subject alone or on the background alone, by another effect and the
/// subject's mask. Nil without a mask.
class QVAIMattingCopyFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVAIMattingCopyFilter(const QVFilterClass& filterClass = QVAIMattingCopyFilterClass);

    /// In a class with levels this chooses the nearest one, too: they are spread evenly from 0 to 1.
    void setEffectValue(float value) override;
    /// Sets the strength to a level's; one that the class lacks is ignored.
    void setLevel(std::int64_t level) override;

  protected:
    /// What `effect` makes of the subject, cut out over transparency, over the untouched frame.
    MTIImage overFrame(QVEffectMTIFilter& effect) const;
    /// The untouched subject over what `effect` makes of the frame.
    MTIImage behindSubject(QVEffectMTIFilter& effect) const;

    /// The first of `extractValues` as a float, `otherwise` without one.
    float firstSetting(float otherwise) const;
    /// Copies of an effect with levels: 2, 4 or 6.
    int copiesOfLevel() const { return level() == 0 ? 2 : level() == 1 ? 4 : 6; }
};

/// Names of the levels of a class whose copies they count.
inline constexpr std::string_view kCopyLevels[] = {"two", "four", "six"};

}  // namespace qv
