#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

extern const QVFilterClass QVPhotoDissolveTransitionMTIFilterClass;

/// A dissolve that runs through the grey levels of a picture: where the picture is dark the incoming clip
/// shows first, or where it is bright. A soft front, lit a little, passes between the two.
///
/// The picture is one of a numbered set of bundle files, `prefix` + "00.png", "01.png" … It is chosen at random
/// from where the transition ends on the timeline, so the same transition always shows the same one.
class QVPhotoDissolveTransitionMTIFilter : public QVTransitionMTIFilter {
  public:
    /// The style of type 0.
    explicit QVPhotoDissolveTransitionMTIFilter(
        const QVFilterClass& filterClass = QVPhotoDissolveTransitionMTIFilterClass);
    /// A set of `count` pictures of the host's own, used as they are and from dark to bright.
    QVPhotoDissolveTransitionMTIFilter(
        std::string photoPrefix, std::int64_t count,
        const QVFilterClass& filterClass = QVPhotoDissolveTransitionMTIFilterClass);
    /// A new transition of one of the styles 0..4 (see `setType`); nil for another type.
    static std::unique_ptr<QVPhotoDissolveTransitionMTIFilter> filterWithType(std::int64_t type);

    /// The style last set; −1 for a set of the host's own.
    std::int64_t type() const { return type_; }
    /// Takes the picture set, its fitting and the direction from a style: 0 flow (ink that spreads in
    /// swirls), 1 fade (soft wipes), 2 facula (spots of light), 3 stroke (brush strokes), 4 radial (irises,
    /// fans, bursts; from bright to dark). An unknown type is taken as 0.
    void setType(std::int64_t type);

    /// What the names of the set's files begin with.
    const std::string& prefix() const { return prefix_; }
    void setPrefix(std::string prefix);
    /// Number of pictures in the set; of 0 the first is shown.
    std::int64_t count() const { return count_; }
    void setCount(std::int64_t count);
    /// Cut the picture to the frame's aspect ratio, turned first on portrait frames, instead of stretching
    /// it.
    bool needCrop() const { return needCrop_; }
    void setNeedCrop(bool needCrop);
    /// Turn the picture a quarter, anticlockwise, on portrait frames.
    bool needRotate() const { return needRotate_; }
    void setNeedRotate(bool needRotate);
    /// Whether the incoming clip shows first where the picture is bright.
    bool fromBrightToDark() const { return fromBrightToDark_; }
    void setFromBrightToDark(bool fromBrightToDark) { fromBrightToDark_ = fromBrightToDark; }

    /// 0..`count` − 1: which picture a transition with this span shows. Depends on the tenth of a second in
    /// which the span ends.
    std::int64_t photoImageIndexFromTimeRange(const CMTimeRange& range) const;

    /// The picture fitted to the outgoing frame, prepared on first use and kept until it no longer fits. Nil
    /// without an outgoing frame or without the file.
    MTIImage photoImage();

    /// Drops the prepared picture when the new span shows another one.
    void setTimeRange(CMTimeRange range) override;
    /// Drops the prepared picture when the frame's size changes.
    void setInputImage1(MTIImage image) override;

    /// "progress" (eased), "fromBrightToDark".
    MTIParameters parameters() const override;
    /// Nil without either clip or without the picture.
    MTIImage outputImage() override;

  private:
    std::int64_t type_ = -1;
    std::string prefix_;
    std::int64_t count_ = 0;
    bool needCrop_ = false, needRotate_ = false, fromBrightToDark_ = false;
    MTIImage photoImage_;
};

}  // namespace qv
