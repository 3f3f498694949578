#pragma once

#include <string>

#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVSceneBlendFilterClass;

/// Turns the subject into a scene: it loses its colours, and from a height that the strength raises it
/// dissolves downwards into a clip. Around it lies a background. A layer whose picture or mask is missing is
/// left out.
class QVSceneBlendFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVSceneBlendFilter(const QVFilterClass& filterClass = QVSceneBlendFilterClass)
        : QVAIEffectMTIFilter(filterClass) {}

    /// Full path of the clip, which runs in a loop; empty for none.
    const std::string& sceneAssetPath() const { return sceneAssetPath_; }
    void setSceneAssetPath(std::string path) { sceneAssetPath_ = std::move(path); }
    /// Stretched over what is not the subject; nil leaves that as it is.
    const MTIImage& backgroundImage() const { return backgroundImage_; }
    void setBackgroundImage(MTIImage image) { backgroundImage_ = std::move(image); }

    /// Where bytes above 10 lie in a mask of a byte a pixel, in its pixels; `CGRectZero` where none does.
    static CGRect getMinRectFromMask(const PixelBuffer& mask);
    /// From the pixels of `maskPixelBuffer` to the frame's orientation about its middle, y down.
    CGAffineTransform uiTransform() const;
    /// White where the subject stays, black where it is the scene: white down to the share 1 − strength of
    /// its height, black from 0.2 further on. As high as `maskImage`, and one pixel wide since all columns
    /// are alike. Nil without either form of the mask.
    MTIImage getGradientMask() const;

    MTIImage outputImage() override;

  private:
    std::string sceneAssetPath_;
    MTIImage backgroundImage_;
};

}  // namespace qv
