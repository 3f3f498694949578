#include "Platform/ImageGraph/Private/PassRegions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace qv {

namespace {

using Way = RegionFusion::Way;

/// Shares of a target up to which it is worth to draw a part twice, or to draw a layer by itself.
constexpr double kMostTwice = 0.25, kMostOnTop = 0.7;

double areaOf(std::span<const PixelRect> parts) {
    double area = 0;
    for (const PixelRect& part : parts) area += double(part.width) * part.height;
    return area;
}

double areaOf(const PlanTexture& texture) {
    return double(texture.width) * texture.height;
}

/// The fused pass whose result is that of the plan's pass `root`; nil when others have taken it in.
const FusedPass* fusedPassOf(const PassFusion& fusion, int root) {
    const auto found =
        std::ranges::find(fusion.passes, root, [](const FusedPass& pass) { return pass.members.back(); });
    return found == fusion.passes.end() ? nullptr : &*found;
}

/// Both passes' members, in order.
std::vector<int> membersOf(const FusedPass& a, const FusedPass& b) {
    std::vector<int> members = a.members;
    members.insert(members.end(), b.members.begin(), b.members.end());
    std::ranges::sort(members);
    return members;
}

class RegionFuser {
  public:
    RegionFuser(const RenderPlan& plan, const PassFusion& fusion) : plan_(plan), fusion_(fusion) {}

    std::vector<RegionFusion> run() const {
        std::vector<RegionFusion> result;
        for (std::size_t i = 0; i < fusion_.passes.size(); ++i) {
            auto regions = layerOnTop(i);
            if (!regions) regions = twiceUnderOverlays(i);
            if (regions) result.push_back(*std::move(regions));
        }
        return result;
    }

  private:
    const PlanPass& pass(int index) const { return plan_.passes[std::size_t(index)]; }
    const PlanTexture& texture(int index) const { return plan_.textures[std::size_t(index)]; }

    std::optional<RegionFusion> layerOnTop(std::size_t index) const {
        static const auto blend = ShaderLibrary::platform()->function("MTIBlendNormal");
        const FusedPass& fused = fusion_.passes[index];
        const int root = fused.members.back();
        const PlanPass& blending = pass(root);
        if (!blend || blending.function != blend || blending.inputs[0] < 0 || blending.inputs[1] < 0)
            return {};
        const PlanTexture &target = texture(blending.output), &picture = texture(blending.inputs[0]),
                          &layer = texture(blending.inputs[1]);
        const auto fits = [&](const PlanTexture& one) {
            return one.width == target.width && one.height == target.height;
        };
        if (!fits(layer) || !fits(picture) || picture.format != target.format) return {};
        if (layer.covered.empty() || areaOf(layer.covered) > kMostOnTop * areaOf(target)) return {};

        const auto below = std::ranges::find(plan_.passes, blending.inputs[0], &PlanPass::output);
        if (below == plan_.passes.end() || below->clearColor || below->standsAlone ||
            below->samples != blending.samples)
            return {};
        const int picturePass = int(below - plan_.passes.begin());
        // Over nothing, the blend gives the layer as it is to be laid over the picture.
        RenderPlan apart = plan_;
        apart.passes[std::size_t(root)].inputs[0] = -1;
        const auto readsPicture = [&](const PlanPass& one) {
            return std::ranges::count(one.inputs, below->output) > 0;
        };
        const bool isResult = std::ranges::count(plan_.outputs, below->output) > 0;
        if (isResult || std::ranges::any_of(apart.passes, readsPicture)) return {};
        const PassFusion fusion = fusePlan(apart);
        const FusedPass *own = fusedPassOf(fusion_, picturePass),
                        *everywhere = fusedPassOf(fusion, picturePass), *onTop = fusedPassOf(fusion, root);
        if (!everywhere || !onTop) return {};
        // Not where both read a pass that was part of the one: it would be drawn for them.
        if (membersOf(*everywhere, *onTop) != (own ? membersOf(*own, fused) : fused.members)) return {};
        return RegionFusion{Way::layerOnTop, index, picturePass, *everywhere, *onTop, layer.covered};
    }

    std::optional<RegionFusion> twiceUnderOverlays(std::size_t index) const {
        const FusedPass& fused = fusion_.passes[index];
        for (const PassFusion::Kept& kept : fusion_.kept) {
            if (kept.why != FusionRefusal::overlays || !std::ranges::count(fused.members, kept.pass))
                continue;
            const int input = pass(kept.pass).inputs[std::size_t(kept.input)];
            const auto below = std::ranges::find(plan_.passes, input, &PlanPass::output);
            const PlanTexture& target = texture(input);
            std::vector<PixelRect> parts;
            for (const PassOverlay* overlay : below->overlays) {
                for (const PixelRect& part : overlay->bounds(target.width, target.height))
                    parts.push_back(part);
            }
            if (below->clearColor || parts.empty() || areaOf(parts) > kMostTwice * areaOf(target)) continue;

            const int overlaid = int(below - plan_.passes.begin());
            RenderPlan bare = plan_;
            bare.passes[std::size_t(overlaid)].overlays.clear();
            const PassFusion fusion = fusePlan(bare);
            const FusedPass *own = fusedPassOf(fusion_, overlaid),
                            *everywhere = fusedPassOf(fusion, fused.members.back());
            // Not with a pass that both of them read: in the parts it is drawn for them anyway.
            if (own && everywhere && everywhere->members == membersOf(*own, fused))
                return RegionFusion{Way::twiceUnderOverlays, index, overlaid, *everywhere, fused,
                                    std::move(parts)};
        }
        return {};
    }

    const RenderPlan& plan_;
    const PassFusion& fusion_;
};

}  // namespace

std::vector<RegionFusion> fuseByRegions(const RenderPlan& plan, const PassFusion& fusion) {
    return RegionFuser(plan, fusion).run();
}

void drawByRegions(RenderPlan& drawn, const RenderPlan& plan, const RegionFusion& regions,
                   PlanPass everywhere, PlanPass inParts) {
    const auto drawing = [&](int texture) {
        return std::ranges::find(drawn.passes, texture, &PlanPass::output);
    };
    const auto isThere = [&](int input) {
        return input < 0 || plan.textures[std::size_t(input)].source || drawing(input) != drawn.passes.end();
    };
    if (!std::ranges::all_of(everywhere.inputs, isThere) || !std::ranges::all_of(inParts.inputs, isThere))
        return;

    const int under = plan.passes[std::size_t(regions.below)].output;
    inParts.parts = regions.parts;
    inParts.continues = true;
    if (regions.way == Way::twiceUnderOverlays) {
        everywhere.overlays.clear();
        drawing(under)->parts = regions.parts;
    } else {
        everywhere.output = inParts.output;
        if (const auto apart = drawing(under); apart != drawn.passes.end()) drawn.passes.erase(apart);
    }
    const auto last = drawing(inParts.output);
    *last = std::move(inParts);
    drawn.passes.insert(last, std::move(everywhere));
    noteLastReaders(drawn);
}

namespace {

/// A share of a target above which all of it is drawn: a part is a draw of its own.
constexpr double kMostDrawn = 0.9;

/// A rectangle of a texture, in pixels.
struct Reach {
    double left, top, right, bottom;
};

Reach united(const Reach& a, const Reach& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

Reach allOf(const PlanTexture& texture) {
    return {0, 0, double(texture.width), double(texture.height)};
}

/// What a transform reads of `input` for a part of its `output`.
Reach transformed(const PlanPass& pass, const PlanTexture& input, const PlanTexture& output,
                  const Reach& shown) {
    Reach reach{INFINITY, INFINITY, -INFINITY, -INFINITY};
    for (const double u : {shown.left / output.width, shown.right / output.width}) {
        for (const double v : {shown.top / output.height, shown.bottom / output.height}) {
            const auto place = [&](int axis, int side) {
                return side * (numberOf(pass, "matrix", axis) * u + numberOf(pass, "matrix", axis + 2) * v +
                               numberOf(pass, "offset", axis));
            };
            const double x = place(0, input.width), y = place(1, input.height);
            reach = united(reach, {x, y, x, y});
        }
    }
    return reach;
}

/// What `pass` reads of input `n` for a part of its output.
Reach reachOf(const RenderPlan& plan, const PlanPass& pass, std::size_t n, const Reach& shown) {
    static const auto transform = ShaderLibrary::platform()->function("MTITransform"),
                      gaussian = ShaderLibrary::platform()->function("MTIGaussianFetched");
    const PlanTexture &input = plan.textures[std::size_t(pass.inputs[n])],
                      &output = plan.textures[std::size_t(pass.output)];
    const bool isResampled = pass.resampled >> n & 1u;
    if (transform && pass.function == transform) return transformed(pass, input, output, shown);
    if (gaussian && pass.function == gaussian && !isResampled) {
        const bool isDown = selectorOf(pass, "vertical") != 0;
        const double taps = selectorOf(pass, "radius"), x = isDown ? 0 : taps, y = isDown ? taps : 0;
        return {shown.left - x, shown.top - y, shown.right + x, shown.bottom + y};
    }
    return pass.function->readsOnlyHere(n) && !isResampled ? shown : allOf(input);
}

/// By texture, what is read of it, nothing where it is not read.
std::vector<std::optional<Reach>> whatIsRead(const RenderPlan& plan) {
    std::vector<std::optional<Reach>> read(plan.textures.size());
    for (int output : plan.outputs) read[std::size_t(output)] = allOf(plan.textures[std::size_t(output)]);
    for (auto pass = plan.passes.rbegin(); pass != plan.passes.rend(); ++pass) {
        const auto& shown = read[std::size_t(pass->output)];
        if (!shown) continue;
        for (std::size_t n = 0; n < pass->inputs.size(); ++n) {
            if (pass->inputs[n] < 0) continue;
            // Interpolating reads one more on each side.
            const Reach part = reachOf(plan, *pass, n, *shown);
            auto& all = read[std::size_t(pass->inputs[n])];
            const Reach wider{part.left - 1, part.top - 1, part.right + 1, part.bottom + 1};
            all = all ? united(*all, wider) : wider;
        }
    }
    return read;
}

/// Its pixels; a place outside reads the one at the edge that is nearest.
PixelRect pixelsOf(const Reach& reach, const PlanTexture& texture) {
    const auto range = [](double from, double to, int side) {
        const int first = int(std::clamp(std::floor(from), 0.0, side - 1.0));
        return std::pair(first, int(std::clamp(std::ceil(to), first + 1.0, double(side))) - first);
    };
    const auto [x, width] = range(reach.left, reach.right, texture.width);
    const auto [y, height] = range(reach.top, reach.bottom, texture.height);
    return {x, y, width, height};
}

}  // namespace

void drawOnlyWhatIsRead(RenderPlan& drawn, const RenderPlan& plan) {
    const auto read = whatIsRead(plan);
    for (PlanPass& pass : drawn.passes) {
        const PlanTexture& target = drawn.textures[std::size_t(pass.output)];
        const auto& reach = read[std::size_t(pass.output)];
        const bool isPlain = pass.overlays.empty() && pass.parts.empty() && !pass.clearColor &&
                             !pass.standsAlone && pass.samples == 1;
        if (!reach || !isPlain) continue;
        const PixelRect part = pixelsOf(*reach, target);
        if (areaOf(std::array{part}) <= kMostDrawn * areaOf(target)) pass.parts = {part};
    }
}

}  // namespace qv
