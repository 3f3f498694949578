#include "QVFilterExtension/Resources/Assets/Lookups/FilmStock.h"

#include <cmath>

namespace qv::assets {

namespace {

constexpr float kGrey = 0.18f, kFaintest = 2e-4f;

float linear(float code) {
    return code <= 0.04045f ? code / 12.92f : std::pow((code + 0.055f) / 1.055f, 2.4f);
}

float encoded(float light) {
    return light <= 0.0031308f ? 12.92f * light : 1.055f * std::pow(light, 1 / 2.4f) - 0.055f;
}

float luma(Vec3 c) {
    return dot(c, {0.2126f, 0.7152f, 0.0722f});
}

/// 0 well below 0, x well above, bent over a reach of `soft`.
float ramp(float x, float soft) {
    return x > 12 * soft ? x : soft * std::log1p(std::exp(x / soft));
}

/// Stray light in the enlarger and the projector: no black is deeper.
constexpr float kFlare = 0.0012f;

/// Density of the print over that of the negative, the printer's light being `light` decades.
float printed(const FilmLayer& layer, float negative, float light) {
    return layer.print.density(light - negative);
}

/// The printer's light that brings the grey card to its place: the print's density falls with the negative's.
float printerLight(const FilmLayer& layer) {
    const float grey = layer.negative.density(0), wanted = -std::log10(layer.grey);
    float low = -4, high = 6;
    for (int i = 0; i < 40; ++i) {
        const float middle = 0.5f * (low + high);
        (printed(layer, grey, middle) < wanted ? low : high) = middle;
    }
    return 0.5f * (low + high);
}

Vec3 spreadOver(Vec3 v, float share) {
    return Vec3{v.x + share * (v.y + v.z), v.y + share * (v.x + v.z), v.z + share * (v.x + v.y)} *
           (1 / (1 + 2 * share));
}

}  // namespace

float DensityCurve::density(float logExposure) const {
    return gamma * (ramp(logExposure - darkest, toe) - ramp(logExposure - lightest, shoulder));
}

FilmPrinter::FilmPrinter(const FilmStock& stock) : stock_(stock) {
    for (std::size_t i = 0; i < 3; ++i) {
        greys_[i] = stock.layers[i].negative.density(0);
        lights_[i] = printerLight(stock.layers[i]);
    }
}

Vec3 FilmPrinter::operator()(Vec3 code) const {
    const float codes[3] = {code.x, code.y, code.z};
    float off[3];  // what each layer departs from its grey card
    for (std::size_t i = 0; i < 3; ++i)
        off[i] =
            stock_.layers[i].negative.density(std::log10(std::max(linear(codes[i]), kFaintest) / kGrey)) -
            greys_[i];
    const Vec3 coupled = spreadOver({off[0], off[1], off[2]}, -stock_.coupling);
    const float held[3] = {coupled.x, coupled.y, coupled.z};
    float dyes[3];
    for (std::size_t i = 0; i < 3; ++i) dyes[i] = printed(stock_.layers[i], greys_[i] + held[i], lights_[i]);
    const Vec3 dye =
        spreadOver(Vec3{dyes[0], dyes[1], dyes[2]} * stock_.faded, stock_.sideAbsorption) + stock_.stain;
    const auto shown = [](float density) {
        return encoded(clamp01((std::pow(10.0f, -density) + kFlare) / (1 + kFlare)));
    };
    return {shown(dye.x), shown(dye.y), shown(dye.z)};
}

// Curves of negatives: gammas of 0.5 to 0.7 over four decades; of prints: 2 to 2.8 over less than one.

Vec3 darkSilver(Vec3 code) {
    static const FilmPrinter print([] {
        const FilmLayer layer{
            {0.68f, -1.9f, 1.0f, 0.16f, 0.16f}, {2.25f, -0.42f, 0.75f, 0.09f, 0.12f}, 0.130f};
        return FilmStock{{layer, layer, layer}, 0, 0, {1, 1, 1}, {0.01f, 0.012f, 0.02f}};
    }());
    // Little red light counts; faces are lit by what they reflect of the green.
    const float seen = encoded(0.26f * linear(code.x) + 0.48f * linear(code.y) + 0.26f * linear(code.z));
    return print({seen, seen, seen});
}

Vec3 warmHomeMovie(Vec3 code) {
    static const FilmPrinter print(
        FilmStock{{{{{0.62f, -1.8f, 1.0f, 0.20f, 0.22f}, {2.15f, -0.40f, 0.46f, 0.09f, 0.10f}, 0.222f},
                    {{0.59f, -1.8f, 1.0f, 0.20f, 0.22f}, {2.10f, -0.40f, 0.52f, 0.09f, 0.12f}, 0.182f},
                    {{0.54f, -1.9f, 1.0f, 0.22f, 0.24f}, {2.05f, -0.40f, 0.52f, 0.11f, 0.14f}, 0.142f}}},
                  0.04f,
                  0.03f,
                  {1, 1, 1},
                  {0.000f, 0.012f, 0.045f}});
    return print(code);
}

Vec3 portraitNegative(Vec3 code) {
    static const FilmPrinter print(
        FilmStock{{{{{0.620f, -1.75f, 1.1f, 0.20f, 0.20f}, {2.12f, -0.42f, 0.50f, 0.09f, 0.12f}, 0.215f},
                    {{0.585f, -1.85f, 1.1f, 0.22f, 0.20f}, {2.08f, -0.42f, 0.46f, 0.09f, 0.12f}, 0.222f},
                    {{0.545f, -1.95f, 1.1f, 0.24f, 0.20f}, {2.02f, -0.42f, 0.42f, 0.10f, 0.13f}, 0.216f}}},
                  0.10f,
                  0.02f,
                  {1, 1, 1},
                  {0.000f, 0.002f, 0.014f}});
    return print(code);
}

Vec3 pushedNegative(Vec3 code) {
    static const FilmPrinter print(
        FilmStock{{{{{0.80f, -1.5f, 1.0f, 0.15f, 0.16f}, {2.10f, -0.38f, 0.50f, 0.08f, 0.09f}, 0.185f},
                    {{0.72f, -1.65f, 1.0f, 0.17f, 0.18f}, {2.05f, -0.40f, 0.42f, 0.09f, 0.10f}, 0.180f},
                    {{0.63f, -1.8f, 1.0f, 0.20f, 0.20f}, {2.00f, -0.42f, 0.38f, 0.10f, 0.12f}, 0.156f}}},
                  0.05f,
                  0.03f,
                  {1, 1, 1},
                  {0.000f, 0.012f, 0.045f}});
    return print(code);
}

Vec3 fadedPrint(Vec3 code) {
    static const FilmPrinter print([] {
        const FilmLayer layer{{0.62f, -1.8f, 0.9f, 0.18f, 0.20f}, {2.2f, -0.42f, 0.60f, 0.10f, 0.12f}, 0.17f};
        return FilmStock{{layer, layer, layer}, 0.03f, 0.03f, {0.60f, 0.88f, 0.74f}, {0.02f, 0.05f, 0.12f}};
    }());
    return print(code);
}

Vec3 camcorder(Vec3 code) {
    const auto knee = [](float v, float gain) {
        const float lifted = gain * v * (0.86f + 0.28f * v);
        return lifted < 0.82f ? lifted : 0.82f + 0.18f * (1 - std::exp(-(lifted - 0.82f) / 0.16f));
    };
    const float light = luma(code);
    const Vec3 vivid = Vec3{light, light, light} + (code - Vec3{light, light, light}) * 1.16f;
    const Vec3 seen{knee(clamp01(vivid.x), 1.02f), knee(clamp01(vivid.y), 1.05f),
                    knee(clamp01(vivid.z), 1.06f)};
    return seen * (1 - 0.025f) + Vec3{0.004f, 0.010f, 0.014f};
}

Vec3 cassette(Vec3 code) {
    constexpr float kSetUp = 0.075f, kWhite = 0.93f, kColor = 0.86f, kPhase = 0.10f;  // radians
    const float light = luma(code);
    // The colour differences turn with the phase and shrink where brightness is limited.
    const float red = code.x - light, blue = code.z - light;
    const float strength = kColor * (1 - 0.35f * smoothstep(0.75f, 1.0f, light));
    const float turnedRed = strength * (red * std::cos(kPhase) + blue * std::sin(kPhase));
    const float turnedBlue = strength * (blue * std::cos(kPhase) - red * std::sin(kPhase)) + 0.012f;
    const float green = -(0.2126f * turnedRed + 0.0722f * turnedBlue) / 0.7152f;
    const float limited = kSetUp + (kWhite - kSetUp) * light * (1.12f - 0.12f * light);
    return {clamp01(limited + turnedRed + 0.014f * light), clamp01(limited + green),
            clamp01(limited + turnedBlue)};
}

}  // namespace qv::assets
