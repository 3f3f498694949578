#pragma once

#include <vector>

#include "Platform/ImageGraph/PassFusion.h"

/// Which passes are drawn in a part of the target only, or as two: one all over it, one in some parts. Where
/// software draws, each pixel of a texture counts; what is small need not be paid for everywhere. Pure
/// functions, no device.
namespace qv {

/// A fused pass, drawn as two into one target.
struct RegionFusion {
    enum class Way {
        /// The pass reads one that little lies on top of. All over, one program draws both as if nothing did;
        /// in the parts where something does, they are drawn as they were.
        twiceUnderOverlays,
        /// The pass blends a layer that is clear in most places over a picture. The picture is drawn all
        /// over,
        /// the layer on top of it where it is not clear.
        layerOnTop
    };
    Way way = Way::twiceUnderOverlays;
    std::size_t pass = 0;           ///< index of the fused pass
    int below = 0;                  ///< the plan's pass that it reads: with the overlays, or the picture
    FusedPass everywhere, inParts;  ///< of the plan's passes
    std::vector<PixelRect> parts;   ///< that `inParts` is drawn in
};

/// What is to be drawn so.
std::vector<RegionFusion> fuseByRegions(const RenderPlan& plan, const PassFusion& fusion);

/// Puts the two passes in the place of one in `drawn`, the plan with its fused passes as one. Leaves it as it
/// is when it lacks a texture that they read.
void drawByRegions(RenderPlan& drawn, const RenderPlan& plan, const RegionFusion& regions,
                   PlanPass everywhere, PlanPass inParts);

/// Draws of what a later pass enlarges only the part that this one shows, in `drawn`, the plan with its fused
/// passes as one.
void drawOnlyWhatIsRead(RenderPlan& drawn, const RenderPlan& plan);

}  // namespace qv
