#pragma once

#include "Platform/Foundation/CMTime.h"
#include "QVFilterCore/QVMTIFilter.h"

namespace qv {

extern const QVFilterClass QVTransitionMTIFilterClass;

/// A transition from an outgoing clip (`inputImage1`, whose size the result has) to an incoming one
/// (`inputImage2`).
class QVTransitionMTIFilter : public QVMTIFilter {
  public:
    explicit QVTransitionMTIFilter(const QVFilterClass& filterClass = QVTransitionMTIFilterClass)
        : QVMTIFilter(filterClass) {}

    /// The outgoing frame; nil until it is set, and so is the output then.
    const MTIImage& inputImage1() const { return inputImage1_; }
    virtual void setInputImage1(MTIImage image) { inputImage1_ = std::move(image); }
    /// The incoming frame, which may have another size: it is stretched over the outgoing one.
    const MTIImage& inputImage2() const { return inputImage2_; }
    void setInputImage2(MTIImage image) { inputImage2_ = std::move(image); }

    /// Position in the transition, 0..1.
    float progress() const { return progress_; }
    virtual void setProgress(float progress) { progress_ = progress; }
    /// Progress as the class eases it; the base's is a cubic ease in and out.
    virtual float newProgress() const { return easeInOutCubic(progress_); }

    /// The transition's span on the timeline.
    const CMTimeRange& timeRange() const { return timeRange_; }
    virtual void setTimeRange(CMTimeRange range) { timeRange_ = range; }

    /// Width over height of the outgoing frame; 1 without one.
    float ratio() const;

    /// "progress" (eased), "start", "duration" in seconds, "ratio".
    virtual MTIParameters parameters() const;
    MTIImage outputImage() override;

    /// 0..1 to 0..1: 4p³ up to the middle, mirrored after it.
    static float easeInOutCubic(float progress);
    /// The same shape with the fifth power: a longer rest at both ends, a faster middle.
    static float easeInOutHeavy(float progress);

  protected:
    /// "progress" with the given value, "start", "duration" in seconds: what most dictionaries begin with.
    MTIParameters timingParameters(float progress) const;

  private:
    MTIImage inputImage1_, inputImage2_;
    float progress_ = 0;
    CMTimeRange timeRange_ = CMTimeRangeMakeWithSeconds(0, 1);
};

/// The inputs of a transition, for the records of its parts that read the first alone.
inline constexpr QVInput kInputImage1 = qvInput<&QVTransitionMTIFilter::setInputImage1>(
    {.name = "inputImage1", .role = QVInputRole::frame, .help = "the frame of the outgoing clip"});
inline constexpr QVInput kInputImage2 = qvInput<&QVTransitionMTIFilter::setInputImage2>(
    {.name = "inputImage2", .role = QVInputRole::incoming, .help = "the frame of the incoming clip"});

}  // namespace qv
