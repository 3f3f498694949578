#include "Host/CommandLine/Easing.h"

#include <array>
#include <cmath>
#include <numbers>

namespace qv::host {

namespace {

constexpr double kPi = std::numbers::pi;
/// Overshoots by a tenth.
constexpr double kBack = 1.70158;

double bounceOut(double t) {
    // Parabolas that touch 1, each bounce half as wide as the one before.
    constexpr double kSteep = 7.5625, kWidth = 2.75;
    if (t < 1 / kWidth) return kSteep * t * t;
    if (t < 2 / kWidth) return kSteep * (t - 1.5 / kWidth) * (t - 1.5 / kWidth) + 0.75;
    if (t < 2.5 / kWidth) return kSteep * (t - 2.25 / kWidth) * (t - 2.25 / kWidth) + 0.9375;
    return kSteep * (t - 2.625 / kWidth) * (t - 2.625 / kWidth) + 0.984375;
}

struct Curve {
    std::string_view name;
    double (*in)(double);  ///< as it begins; the other ways are made of it
};

/// The first two have no way.
constexpr std::array kCurves{
    Curve{"linear", [](double t) { return t; }},
    Curve{"hold", [](double t) { return t < 1 ? 0.0 : 1.0; }},
    Curve{"Sine", [](double t) { return 1 - std::cos(t * kPi / 2); }},
    Curve{"Quad", [](double t) { return t * t; }},
    Curve{"Cubic", [](double t) { return t * t * t; }},
    Curve{"Quart", [](double t) { return t * t * t * t; }},
    Curve{"Quint", [](double t) { return t * t * t * t * t; }},
    Curve{"Expo", [](double t) { return t <= 0 ? 0 : std::exp2(10 * t - 10); }},
    Curve{"Circ", [](double t) { return 1 - std::sqrt(1 - t * t); }},
    Curve{"Back", [](double t) { return t * t * ((kBack + 1) * t - kBack); }},
    Curve{"Elastic",
          [](double t) { return -std::exp2(10 * t - 10) * std::sin((10 * t - 10.75) * 2 * kPi / 3); }},
    Curve{"Bounce", [](double t) { return 1 - bounceOut(1 - t); }},
};
constexpr int kWithoutWay = 2;
constexpr std::array<std::string_view, 3> kWays{"in", "out", "inOut"};

}  // namespace

std::vector<Easing> Easing::all() {
    std::vector<Easing> all;
    for (int curve = 0; curve < int(kCurves.size()); ++curve) {
        for (int way = 0; way < (curve < kWithoutWay ? 1 : int(kWays.size())); ++way) {
            Easing& easing = all.emplace_back();
            easing.curve_ = curve;
            easing.way_ = Way(way);
        }
    }
    return all;
}

std::optional<Easing> Easing::named(std::string_view name) {
    for (const Easing& easing : all()) {
        if (easing.name() == name) return easing;
    }
    return std::nullopt;
}

std::string Easing::names() {
    std::string all = "linear, hold, and in, out or inOut with";
    for (std::size_t i = kWithoutWay; i < kCurves.size(); ++i)
        all.append(i == kWithoutWay ? " " : ", ").append(kCurves[i].name);
    return all;
}

std::string Easing::name() const {
    const std::string curve(kCurves[std::size_t(curve_)].name);
    return curve_ < kWithoutWay ? curve : std::string(kWays[std::size_t(way_)]) + curve;
}

double Easing::operator()(double time) const {
    if (time <= 0) return 0;
    if (time >= 1) return 1;
    const auto in = kCurves[std::size_t(curve_)].in;
    if (way_ == Way::in) return in(time);
    if (way_ == Way::out) return 1 - in(1 - time);
    return time < 0.5 ? in(2 * time) / 2 : 1 - in(2 - 2 * time) / 2;
}

}  // namespace qv::host
