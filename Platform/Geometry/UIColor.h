#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qv {

/// A colour as four doubles, not premultiplied, gamma encoded (sRGB primaries). Components may lie outside
/// 0..1; nothing clamps them.
class UIColor {
  public:
    /// A colour of the hexcone HSV model.
    struct HSBA {
        /// All 0..1; the hue in turns.
        double hue, saturation, brightness, alpha;
    };

    UIColor() = default;
    /// From its components: 0 is none, 1 full.
    UIColor(double red, double green, double blue, double alpha = 1)
        : red_(red), green_(green), blue_(blue), alpha_(alpha) {}

    /// The same by name.
    static UIColor colorWithRedGreenBlueAlpha(double red, double green, double blue, double alpha) {
        return {red, green, blue, alpha};
    }
    /// A grey: 0 black, 1 white.
    static UIColor colorWithWhiteAlpha(double white, double alpha) { return {white, white, white, alpha}; }
    /// Hexcone HSV to RGB; hue is in turns and wraps, saturation and brightness are clamped to 0..1.
    static UIColor colorWithHueSaturationBrightnessAlpha(double hue, double saturation, double brightness,
                                                         double alpha);
    /// Opaque black, opaque white, transparent black.
    static UIColor blackColor() { return {0, 0, 0, 1}; }
    static UIColor whiteColor() { return {1, 1, 1, 1}; }
    static UIColor clearColor() { return {0, 0, 0, 0}; }

    /// "#rgb", "#rrggbb" or "#rrggbbaa"; nothing for any other text.
    static std::optional<UIColor> fromHex(std::string_view text);
    /// "#rrggbb", or "#rrggbbaa" when not opaque; components are clamped and rounded.
    std::string hex() const;

    /// As it was made; not clamped.
    double red() const { return red_; }
    double green() const { return green_; }
    double blue() const { return blue_; }
    double alpha() const { return alpha_; }

    /// Hue in [0, 1) turns; a grey has hue 0 and saturation 0.
    HSBA getHueSaturationBrightnessAlpha() const;

    bool operator==(const UIColor&) const = default;

  private:
    double red_ = 0, green_ = 0, blue_ = 0, alpha_ = 1;
};

}  // namespace qv
