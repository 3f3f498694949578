#pragma once

#include <vector>

#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

extern const QVFilterClass QVEffectMTIFilterClass;

/// An effect: one frame in, one frame out, by a strength, a level, and the time.
class QVEffectMTIFilter : public QVMTIOneInputFilter {
  public:
    explicit QVEffectMTIFilter(const QVFilterClass& filterClass = QVEffectMTIFilterClass);

    /// The user's strength, 0..1. A class that derives its uniforms from it without keeping it says so.
    float effectValue() const { return effectValue_; }
    virtual void setEffectValue(float value) { effectValue_ = value; }

    /// Index of a preset. The base keeps any value; a class with a table ignores what lies outside it.
    std::int64_t level() const { return level_; }
    virtual void setLevel(std::int64_t level) { level_ = level; }

    /// Seconds since the effect started.
    double iTime() const { return iTime_; }
    virtual void setITime(double seconds) { iTime_ = seconds; }

    /// The input is a still picture.
    bool isPhoto() const { return isPhoto_; }
    virtual void setIsPhoto(bool isPhoto) { isPhoto_ = isPhoto; }
    /// Whether the effect is to move on photos too, where its class lets time stand still. False at first.
    bool movesPhotos() const { return movesPhotos_; }
    void setMovesPhotos(bool movesPhotos) { movesPhotos_ = movesPhotos; }
    /// A host lets time stand still on a photo when this is true: the class says so, and not `movesPhotos`.
    bool isPhotoTimeConst() const { return filterClass().photoTimeConst() && !movesPhotos_; }

    /// Extra settings of the effect, in an order that the class states.
    const std::vector<double>& extractValues() const { return extractValues_; }
    void setExtractValues(std::vector<double> values) { extractValues_ = std::move(values); }

    /// "iTime", "level", "effectValue", "isPhoto"; classes replace or extend it.
    MTIParameters parameters() const override;

  protected:
    /// Whether a preset table of `count` entries has an entry `level`; negative levels compare as huge ones.
    static bool isValidLevel(std::int64_t level, std::size_t count) { return std::uint64_t(level) < count; }

  private:
    float effectValue_;
    std::int64_t level_ = 0;
    double iTime_ = 0;
    bool isPhoto_ = false, movesPhotos_ = false;
    std::vector<double> extractValues_;
};

/// The property `level` of a class with presets, from the names of these as `variants`, and a title and a
/// meaning. Classes without presets offer no level.
constexpr QVProperty qvLevels(QVProperty facts) {
    facts.name = "level";
    return qvProperty<&QVEffectMTIFilter::level, &QVEffectMTIFilter::setLevel>(facts);
}

}  // namespace qv
