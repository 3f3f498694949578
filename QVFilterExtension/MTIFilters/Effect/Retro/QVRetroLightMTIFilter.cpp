#include "QVFilterExtension/MTIFilters/Effect/Retro/QVRetroLightMTIFilter.h"

#include <cmath>

#include "QVFilterExtension/Private/RetroScatter.h"

namespace qv {

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

/// A light that comes and goes in slots of time.
MTIVector wanderingLight(double clock, double strength, std::uint32_t seed, bool isPhoto) {
    const double slot = std::floor(clock), at = isPhoto ? 0.5 : clock - slot;
    auto draw = [&, purpose = seed * 8]() mutable { return retroDraw(slot, purpose++); };
    const double x = 0.28 * (draw() - 0.5), y = 0.28 * (draw() - 0.5);
    const double driftX = 0.3 * (draw() - 0.5), driftY = 0.3 * (draw() - 0.5);
    const double side = draw() < 0.5 ? 1 : -1, power = 0.45 + 0.55 * draw();
    return {float(x + driftX * (at - 0.5)), float(y + driftY * (at - 0.5)),
            float(power * strength * retroPulse(at, 0.5)), float(side)};
}

}  // namespace

const QVFilterClass QVRetroLightMTIFilterClass{
    .name = "QVRetroLightMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Summer film",
    .help = "Golden small-gauge film with wandering light leaks and flashes at its side",
    .tags = {"light leak", "super 8", "golden hour", "warm", "film burn", "nostalgia"},
    .factory = makeFilter<QVRetroLightMTIFilter>,
    .category = QVFilterCategory::retro,
};

MTIParameters QVRetroLightMTIFilter::parameters() const {
    MTIParameters all = QVEffectMTIFilter::parameters();
    const double strength = 0.65 + 0.4 * double(effectValue());
    all.set("firstLight", wanderingLight(iTime() / 3.1, strength, 11, isPhoto()));
    all.set("secondLight", wanderingLight(iTime() / 2.3 + 0.5, strength, 12, isPhoto()));
    return all;
}

MTIImage QVRetroLightMTIFilter::outputImage() {
    if (!inputImage()) return {};
    const MTIImage film = applyKernel(
        {inputImage(), assets().mtiImageNamed("retroLight1.png"), assets().mtiImageNamed("retroLight2.png")},
        parameters());
    const double clock = iTime() / 1.7, slot = std::floor(clock);
    const bool flashes = isPhoto() || retroDraw(slot, 3) < 0.5;
    sideFlashFilter_.setInputImage(film);
    sideFlashFilter_.setEffectValue(0.45f * effectValue());
    sideFlashFilter_.setITime(iTime());
    sideFlashFilter_.settle();
    lightenBlendFilter_.setInputBackgroundImage(film);
    lightenBlendFilter_.setInputImage(sideFlashFilter_.outputImage());
    const double flash = isPhoto() ? 0.6 : retroPulse(clock - slot, 0.12);
    lightenBlendFilter_.setIntensity(float(flashes ? 0.85 * flash : 0));

    // The lamp behind the perforation, between two of its states.
    const double lamp = iTime() * 12, state = std::floor(lamp), between = lamp - state;
    const double flicker = std::lerp(retroDraw(state, 5), retroDraw(state + 1, 5), between);
    const MTIImage lit = lightenBlendFilter_.outputImage();
    sideFlashLightFilter_.setInputImage(lit);
    sideFlashLightFilter_.setStrength(
        float(std::lerp(0.1, 0.25 + 0.5 * double(effectValue()), isPhoto() ? 0.7 : flicker)));
    normalBlendFilter_.setInputBackgroundImage(lit);
    normalBlendFilter_.setInputImage(sideFlashLightFilter_.outputImage());
    normalBlendFilter_.setIntensity(0.9f);
    normalBlendFilter_.setOutputPixelFormat(outputPixelFormat());
    return normalBlendFilter_.outputImage();
}

}  // namespace qv
