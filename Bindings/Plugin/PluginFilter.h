#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "Platform/Media/PixelBuffer.h"
#include "QVFilterCore/QVMTIFilter.h"

namespace qv {

/// Frames of a host in memory: RGBA, straight alpha, rows without padding. `second` is a transition's
/// incoming frame or nil; the mask is nil, or gray8 of any size.
struct PluginFrames {
    int width, height;
    const std::uint8_t *first, *second;
    PixelBuffer mask;
};

/// A filter in a host that knows frames of memory and nothing of the library. It never fails: where a frame
/// cannot be drawn, it passes unchanged, and the log has one line that says why. Used by one thread at a
/// time.
class PluginFilter {
  public:
    explicit PluginFilter(const QVFilterClass& filterClass) : filter_(filterClass.create()) {}

    QVMTIFilter& filter() { return *filter_; }
    const QVFilterClass& filterClass() const { return filter_->filterClass(); }
    /// Sets a property if the class has it.
    void setNumber(std::string_view name, double value);
    void setSeconds(double seconds);
    /// Draws the filter over the frames into `out`, of their size. `out` may be `first`. A class that looks
    /// for a subject takes the mask, or what is opaque in the first frame.
    void draw(const PluginFrames& frames, std::uint8_t* out);

  private:
    void setInputs(const PluginFrames& frames);

    std::unique_ptr<QVMTIFilter> filter_;
};

}  // namespace qv
