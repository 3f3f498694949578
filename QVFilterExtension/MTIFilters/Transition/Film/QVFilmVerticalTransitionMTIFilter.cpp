#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmVerticalTransitionMTIFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Platform/Foundation/Random.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/FilmTiming.h"
#include "QVFilterExtension/Private/FittedImage.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

constexpr FilmGauge kGauge{.pitch = 270, .band = 256, .runsDown = true};
constexpr double kRunBegins = 0.42, kRunEnds = 0.7;

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

float runAt(float progress) {
    return wayBetween(progress, kRunBegins, kRunEnds);
}

}  // namespace

const QVFilterClass QVFilmVerticalTransitionMTIFilterClass{
    .name = "QVFilmVerticalTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Projector loses its loop",
    .help = "The film slips in the projector, runs through in streaks and stops at the next clip",
    .tags = {"cinema", "roll", "slip", "motion blur", "vintage"},
    .factory = makeFilter<QVFilmVerticalTransitionMTIFilter>,
};

MTIImage QVFilmVerticalTransitionMTIFilter::frameImage() const {
    return assets().fittedImage(
        "transitions_film_frame_01.png", inputImage1().size(),
        [](const UIImage& film, CGSize size) { return fittedFilm(film, size, kGauge); });
}

float QVFilmVerticalTransitionMTIFilter::travel() const {
    const float p = progress();
    if (p >= float(kRunEnds)) {
        // Two swings that die away.
        const float after = wayBetween(p, kRunEnds, 0.86);
        return kFrames + kSwing * (1 - after) * (1 - after) * std::sin(4 * std::numbers::pi_v<float> * after);
    }
    float rest = 0;
    for (const Slip& slip : kSlips) {
        if (p < slip.begin) break;
        const float since = wayBetween(p, slip.begin, slip.begin + 1 / 16.0);
        rest = slip.rest + (slip.reach - slip.rest) * (1 - since) * (1 - since);
    }
    return rest + (kFrames - rest) * easeInOutCubic(runAt(p));
}

MTIParameters QVFilmVerticalTransitionMTIFilter::parameters() const {
    const float p = progress();
    const float closed = easeInOutCubic(std::min(wayBetween(p, 0, 0.12), wayBetween(p, 1, 0.84)));
    const float draw = float(randomFromSeed(std::uint32_t(p * 60) + 1) % 1000) / 1000;
    return {{"travel", travel()},
            {"opening", kWideOpening + (1 - kWideOpening) * closed},
            {"cover", std::min(closed * 40, 1.0f)},
            {"lamp", 1 - kFlicker * draw * closed}};
}

MTIImage QVFilmVerticalTransitionMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const MTIImage film =
        applyKernel({inputImage1(), inputImage2().resize(inputImage1().size()), frameImage()}, parameters());
    const float run = runAt(progress());
    // The slope of the ease, 1 in the middle.
    const float speed = 4 * std::min(run, 1 - run) * std::min(run, 1 - run);
    if (speed < 0.03f) return film;
    motionBlurFilter_.setInputImage1(film);
    motionBlurFilter_.setBlurRadius(speed * kStreak);
    return motionBlurFilter_.outputImage();
}

}  // namespace qv
