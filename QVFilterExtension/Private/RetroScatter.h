#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Geometry/Geometry.h"
#include "QVFilterCore/SpiritParam.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

/// A random number of a moment and of what it is for, 0..1: neighbouring slots have nothing in common.
double retroDraw(double slot, std::uint32_t purpose);

/// Rises and falls once in a slot of time: 0 at both ends, 1 from `attack` of it on, falling from there.
double retroPulse(double positionInSlot, double attack);

/// Pictures of a set that lie about the frame and change from slot to slot of time: dust, dirt, scratches.
struct RetroScatter {
    std::string prefix;        ///< of the assets' names, before the index and ".png"
    int count = 1;             ///< assets of the set
    double slotSeconds = 0.1;  ///< how long one lies in its place
    double most = 1;           ///< places at strength 1
    double fewest = 0;         ///< and at strength 0
    double chance = 1;         ///< that a place has one
    double smallest = 0.02;  ///< width of a sprite, of the frame's shorter side; upright ones: of the asset's
    double largest = 0.05;   ///< most are small
    double alpha = 1;        ///< of the strongest
    double upright = 0;      ///< the asset's height by its width for what runs down the frame, else 0
    bool isLevel = false;    ///< not turned
    std::uint32_t seed = 0;  ///< tells the sets of an effect apart

    /// Adds the sprites of a moment, in the frame's sprite space. On a photo none is missing by chance.
    void addTo(std::vector<SpiritParam>& sprites, QVAssetCache& assets, double seconds, double strength,
               bool isPhoto, CGSize frame) const;
};

}  // namespace qv
