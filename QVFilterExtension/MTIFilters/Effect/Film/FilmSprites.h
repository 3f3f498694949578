#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "QVFilterCore/SpiritParam.h"

namespace qv {

/// One kind of dirt that comes and goes on a film. Its copies lie in slots of a tenth of a second: the slot
/// decides whether a copy is seen, which of the pictures it shows, where, how large and how turned it is.
/// Each copy's slots are shifted against the others', so that never all of them change at once.
struct FilmSpriteKind {
    std::span<const std::string> names;   ///< of the pictures, in the bundle
    int count = 0;                        ///< of copies
    double visibleShare = 1;              ///< of the slots in which a copy is seen, 0..1
    double sizeSpan = 0, leastSize = 10;  ///< half a copy's width: at least, and by how much more at most; in
                                          ///< 1080ths of half the frame's width
    double scale = 1;                     ///< of all sizes
    double alpha = 1;                     ///< 0..1
    bool standsUpright = false;           ///< not turned: what runs along the film
};

/// The dirt of a moment, one kind after another. Within its slot a copy fades in over the first tenth and out
/// over the last one; on a still picture all are seen, at their full alpha.
///
/// Every choice is the first number of a generator seeded with the slot, the copy's number in the whole list
/// and an offset of the choice's own, so a moment looks the same in whatever order it is asked for.
/// `heightPerWidth` is the frame's; a time that is not finite counts as 0.
std::vector<SpiritParam> filmSprites(
    std::span<const FilmSpriteKind> kinds, double time, double heightPerWidth, bool isStill,
    const std::function<SpiritParam::Texture(const std::string&)>& textureNamed);

/// Seeding and drawing once: 0..1 in steps of a ten millionth, as single precision gives it.
double filmDraw(double seed);

/// "prefix" + number + "suffix", the number with at least `digits` digits, from 0 to count − 1.
std::vector<std::string> numberedNames(const std::string& prefix, int count, int digits,
                                       const std::string& suffix);

}  // namespace qv
