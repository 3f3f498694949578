#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ImageGraph/Planner.h"
#include "Platform/ImageGraph/ShaderLibrary.h"
#include "Platform/ImageGraph/StageInput.h"

/// Which passes of a plan become one. A pass moves into the one that reads it when that needs its result only
/// at the pixel being coloured: then no texture lies between the two. Pure functions, no device.
namespace qv {

/// Why a pass reads the texture of another one instead of taking that one in.
enum class FusionRefusal {
    result,          ///< the texture is asked for
    readElsewhere,   ///< it is read away from the pixel being coloured
    otherSize,       ///< the reader has another size
    severalReaders,  ///< other passes read it too
    overlays,        ///< something is drawn on top of it
    ownCode,         ///< the context draws it by code of its own
    uniforms,        ///< more words than can be pushed
    textures,        ///< more textures than can be bound
    length           ///< more text than is worth compiling as one
};
/// The reason as a short phrase.
std::string_view fusionRefusalText(FusionRefusal refusal);

/// What the program of a fused pass depends on. Uniforms' values, sizes in pixels and colours are not part of
/// it.
struct FusedShape {
    /// One function of the program.
    struct Stage {
        std::shared_ptr<const ShaderFunction> function;  ///< as it is drawn by itself
        std::vector<StageInput> inputs;                  ///< where each of its inputs comes from
        std::uint32_t given = 0;                         ///< as in PlanPass
        bool isClamped = false;  ///< to 0..1, as the texture of 8 bits would have been that it was written to
        /// Member by member.
        bool operator==(const Stage&) const = default;
    };
    std::vector<Stage> stages;        ///< what is read before what reads it
    std::vector<PushedValue> values;  ///< what is pushed, in the order of the block

    /// Equal shapes are drawn by one program.
    bool operator==(const FusedShape&) const = default;
    /// For tables.
    std::size_t hash() const;
    /// The functions' names with " + " between them.
    std::string name() const;
};

/// Some passes of a plan as one.
struct FusedPass {
    FusedShape shape;  ///< of its program
    std::vector<int>
        members;  ///< the plan's passes, one a stage; the last is the one whose output is written
    std::vector<int> textures;                 ///< the plan's textures that are read
    std::vector<std::array<int, 2>> sizes;     ///< pushed sizes, pixels
    std::vector<std::array<float, 4>> values;  ///< colours that stand for textures

    /// A pass as it was: nothing to compile.
    bool isPlain() const { return members.size() == 1 && values.empty(); }
    /// Words of the pushed block.
    int words() const;
};

/// What becomes of a plan's passes.
struct PassFusion {
    /// An input that stays a texture although a pass makes it.
    struct Kept {
        int pass;           ///< index of the pass that reads it
        int input;          ///< which of the pass's inputs it is
        FusionRefusal why;  ///< what speaks against taking it in
    };
    std::vector<FusedPass> passes;  ///< in order
    std::vector<Kept> kept;         ///< with the reasons
};

/// Leaves out passes that only copy, draws overlays in the pass that makes what they lie on, unless others
/// lie there already that want another number of samples, and drops what nobody reads. Needs no new programs.
void dropCopies(RenderPlan& plan);

/// Draws mirrored or scaled pictures that are read at another size at that size, where nothing else reads
/// them: they are interpolated once, and their reader can take them in.
void resizeTransforms(RenderPlan& plan);

/// Decides, from the last pass to the first, which passes their readers take in.
PassFusion fusePlan(const RenderPlan& plan);

/// A fused pass as it is run by `program`, which is composed from its shape.
PlanPass passOf(const RenderPlan& plan, const FusedPass& fused,
                std::shared_ptr<const ShaderFunction> program);

/// The plan with one pass for each of `fusion.passes`: the one in `ready`, or the plain passes where there is
/// none.
RenderPlan fusedPlan(RenderPlan plan, const PassFusion& fusion, std::vector<std::optional<PlanPass>> ready);

}  // namespace qv
