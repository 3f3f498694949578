#pragma once

#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVSceneBlendFilter.h"

namespace qv {

extern const QVFilterClass QVDesertFilterClass;

/// The subject turns to blown sand from the feet up, under a pale desert sky.
class QVDesertFilter : public QVSceneBlendFilter {
  public:
    explicit QVDesertFilter(const QVFilterClass& filterClass = QVDesertFilterClass);

    /// A frame whose width or height differs by 2 pixels or more from the last one's gets a new background.
    void setInputImage(MTIImage image) override;

  private:
    MTIImage createBackgroundImage() const;
};

}  // namespace qv
