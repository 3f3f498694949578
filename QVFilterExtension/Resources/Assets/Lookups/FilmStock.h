#pragma once

#include <array>

#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

/// A characteristic curve: density over the decimal logarithm of exposure, 0 being the light that a grey card
/// of 18 % gives. Straight between two exposures, bent softly at either end.
struct DensityCurve {
    float gamma;              ///< slope of the straight part
    float darkest, lightest;  ///< where the straight part ends, in decades
    float toe, shoulder;      ///< how far the bends reach, in decades

    /// Above that of the base, which is 0.
    float density(float logExposure) const;
};

/// One of the layers, as the red, the green or the blue third of the light meets it.
struct FilmLayer {
    DensityCurve negative, print;
    float grey;  ///< the light that a grey card is printed to, linear, 0..1
};

/// A negative film and the print that is made of it. What makes a look is told by how the layers differ:
/// steeper or flatter ones cross over, so that shadows and lights take opposite tints; the couplers of a
/// layer hold back its neighbours, which makes colours stronger; dyes that absorb more than their third make
/// them duller.
struct FilmStock {
    std::array<FilmLayer, 3> layers;  ///< that of red light, of green, of blue
    float coupling;                   ///< share of a layer's density that it takes off each neighbour's
    float sideAbsorption;             ///< share of a dye's density that each neighbour's third gains
    Vec3 faded{1, 1, 1};              ///< what years have left of each dye of the print
    Vec3 stain;                       ///< density that they have added to the whites
};

/// Prints a film.
class FilmPrinter {
  public:
    /// Sets the printer's lights so that a grey card of 18 % comes out as each layer's `grey`.
    explicit FilmPrinter(const FilmStock& stock);
    /// The print of a picture's colour, both gamma encoded as sRGB.
    Vec3 operator()(Vec3 code) const;

  private:
    FilmStock stock_;
    float lights_[3], greys_[3];  ///< of the printer, decades; densities of the negative's grey card
};

// The looks of the film groups.

/// An orthochromatic negative on hard paper: dark greys.
Vec3 darkSilver(Vec3 code);
/// Home-movie reversal film: warm, with brown shadows and cream whites.
Vec3 warmHomeMovie(Vec3 code);
/// A portrait negative: soft, cool green shadows, cream lights, clear skin.
Vec3 portraitNegative(Vec3 code);
/// A tungsten negative pushed by two stops: lifted teal shadows, amber lights.
Vec3 pushedNegative(Vec3 code);
/// A print whose cyan dye is nearly gone.
Vec3 fadedPrint(Vec3 code);

// Not film: a camcorder's sensor, and what a cassette keeps of it.

/// A knee that clips early, deep blacks, greens a touch cold.
Vec3 camcorder(Vec3 code);
/// Blacks raised by the set-up level, whites limited, colour weaker and out of phase.
Vec3 cassette(Vec3 code);

}  // namespace qv::assets
