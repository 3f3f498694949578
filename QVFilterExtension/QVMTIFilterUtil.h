#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Platform/Geometry/UIColor.h"
#include "Platform/ImageGraph/MTIImage.h"

namespace qv {

/// What a host may want to know of the device, and the on-screen clock's text. Thread-safe.
class QVMTIFilterUtil {
  public:
    /// The machine's model as its firmware names it, else its architecture; read once.
    static const std::string& getDeviceName();

    /// Whether a host had better choose lighter effects: true for the device families listed in the source.
    static bool isLowEndDevice();
    static bool isLowEndDevice(std::string_view deviceName);

    /// A time as hours, minutes, seconds and tenths, "1:02:05:04", rounded to the nearest tenth. A negative
    /// time or NaN counts as 0.
    static std::string timeFormatterWithMSEC4(double seconds);
};

/// The four components, narrowed to float.
MTIColor MTIColorWithUIColor(const UIColor& color);

/// The colour with its hue moved by `hueOffset` turns; saturation, brightness and alpha stay.
UIColor HueColor(const UIColor& color, double hueOffset);

/// 1 + 2 + … + n. n · (n + 1) wraps around at 32 bits.
std::int32_t SumN(std::int32_t n);

}  // namespace qv
