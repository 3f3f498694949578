#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSplitDirectionFilteClass;

/// Two panels, each the middle of the frame at its own scale, with a white line of 6/1080 of the shorter side
/// between them: side by side, or one above the other, where they show the part about 0.42 of the height from
/// the top.
class QVSplitDirectionFilte : public QVEffectMTIFilter {
  public:
    explicit QVSplitDirectionFilte(const QVFilterClass& filterClass = QVSplitDirectionFilteClass)
        : QVEffectMTIFilter(filterClass) {}

    /// Takes 0 or 1 as the direction; other levels are ignored.
    void setLevel(std::int64_t level) override;

    /// 0 side by side, 1 one above the other.
    int direction() const { return direction_; }
    void setDirection(int direction) { direction_ = direction; }

    /// "splitNumber", "splitDirection".
    MTIParameters parameters() const override;

  private:
    int direction_ = 0;
};

}  // namespace qv
