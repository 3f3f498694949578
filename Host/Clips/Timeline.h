#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "Host/CommandLine/EffectChoice.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/Media/PixelBuffer.h"
#include "QVFilterCore/QVMTIFilter.h"

/// What an editor does with a filter on its timeline: inputs, strength, times and photo mode.
namespace qv::host {

/// How long a photo stays on the timeline, seconds: effects that know their clip pass over this.
inline constexpr double kPhotoSeconds = 3;

/// The clip that a filter lies on, in seconds of `iTime`. What is absent is left at the class's default.
struct ClipPosition {
    std::optional<double> time;
    std::optional<double> startTime, endTime;
    bool isPhoto = false;
    double frameRate = 0;  ///< of times that are given in frames; 0 when unknown
};

/// The subject of a frame: the mask as an image, and the same in memory (gray8).
struct SubjectMask {
    MTIImage image;
    PixelBuffer buffer;

    explicit operator bool() const { return bool(image); }
    static SubjectMask fromBuffer(const PixelBuffer& gray);
    /// Of a frame's or a picture's own alpha; nil for a frame without alpha and an opaque picture.
    static SubjectMask fromAlpha(const PixelBuffer& frame);
    static SubjectMask fromAlpha(const Bitmap& picture);
};

/// Everything that a filter may be given to work on.
struct FilterInputs {
    MTIImage first;
    MTIImage second;  ///< the incoming clip, or the layer that is laid over the first
    SubjectMask mask;
    CGSize originalSize;  ///< of the clip's frames

    /// What an input of this kind is given; nil when there is nothing for it.
    QVInputValue valueFor(const QVInput& input) const;
};

/// Hands over what the filter's class takes, each picture by its role.
void setInputs(QVMTIFilter& filter, const FilterInputs& inputs);

/// Sets a property if the class has it and the user has not given it.
void setUnlessGiven(QVMTIFilter& filter, const EffectChoice& choice, std::string_view name,
                    const QVPropertyValue& value);
/// The property that carries the time: an effect's is `iTime`, a plain filter may have a `time` of its own.
std::string_view timeProperty(const QVFilterClass& filterClass);

/// A new filter of the choice's class at the class's default strength and the clip's position, then with the
/// choice's settings in their order.
std::unique_ptr<QVMTIFilter> makeFilterOnClip(const EffectChoice& choice, const ClipPosition& clip);

/// What the filter gives. Fails as internal when that is nothing: then the library's own resources are amiss.
MTIImage outputImageOf(QVMTIFilter& filter);

/// Effects over one clip, each fed by the one before. Each one's time begins where its part of the clip does:
/// its keys, `iTime` and `startTime` count from there. Used by one thread at a time.
class EffectChain {
  public:
    EffectChain(std::vector<EffectChoice> choices, const ClipPosition& clip);

    /// Whether a class in the chain works on the subject.
    bool takesMask() const;
    /// Moves every filter's time, except where the user set it and where a class lets time stand still on a
    /// photo; and the properties that have keys. `seconds` are the clip's.
    void moveTo(double seconds);
    /// Whether an effect lies on the clip there, where moveTo() went.
    bool isActive() const;
    /// The picture of the whole chain. Fails when a mask is missing that a class cannot do without, or a
    /// filter gives nothing.
    MTIImage outputImage(const FilterInputs& inputs);

  private:
    /// Parts and keys, which move on photos, too.
    void moveLinks(double seconds);

    struct Link {
        EffectChoice choice;
        std::unique_ptr<QVMTIFilter> filter;
        double from = 0, to = kUnlimited;  ///< seconds of the clip
        bool isActive = true;
    };
    std::vector<Link> links_;
    bool isPhoto_;
    double frameRate_;
};

/// Sets the properties that have keys to what they are that many seconds after the filter's part began.
void applyKeys(QVMTIFilter& filter, const EffectChoice& choice, double seconds, double frameRate);

}  // namespace qv::host
