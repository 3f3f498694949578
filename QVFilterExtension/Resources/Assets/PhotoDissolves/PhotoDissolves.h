#pragma once

#include "QVFilterExtension/Resources/Assets/PhotoDissolves/TimeField.h"

namespace qv::assets {

// The pictures 0..3 of each set.
inline constexpr int kPicturesInSet = 4;

/// Ink carried by a swirling liquid: from the left, from drops, combed like marbled paper, rising like smoke.
TimeField flow(int index);

/// Soft wipes: across, along the diagonal, a curtain that opens in folds, clouds.
TimeField fade(int index);

/// Spots of light out of focus, of many sizes: discs, hexagons, discs from one corner, lemons as at the rim
/// of a lens.
TimeField facula(int index);

/// Brush strokes, each at its own time: to and fro, slanting, downwards, in arcs.
TimeField strokes(int index);

/// Around the middle, which comes first: an iris of blades, a fan to both sides, rays, a whirl.
TimeField radial(int index);

}  // namespace qv::assets
