#include "Platform/ImageGraph/Private/PassFuser.h"

#include <fmt/format.h>

#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/Private/PassRegions.h"
#include "Platform/ImageGraph/Private/RenderRequest.h"

namespace qv {

PassFormats formatsOf(const RenderPlan& plan, const PlanPass& pass) {
    PassFormats formats;
    for (int input : pass.inputs) {
        formats.inputs.push_back(input < 0 ? TextureFormat::rgba8 : plan.textures[std::size_t(input)].format);
    }
    formats.output = plan.textures[std::size_t(pass.output)].format;
    return formats;
}

std::size_t PassFuser::Request::hash() const {
    std::size_t hash = shape.hash() ^ std::size_t(pass.samples) ^ std::size_t(formats.output) << 8 ^
                       std::size_t(pass.resampled) << 16 ^ std::size_t(pass.isBlended) << 15;
    for (TextureFormat input : formats.inputs) hash = (hash ^ std::size_t(input)) * 0x9E3779B97F4A7C15;
    for (std::int32_t selector : pass.selectors) hash = (hash ^ std::size_t(selector)) * 0x9E3779B97F4A7C15;
    return hash;
}

RenderPlan PassFuser::fuse(RenderPlan plan, Missing missing, bool sparesPixels) {
    dropCopies(plan);
    if (sparesPixels) resizeTransforms(plan);
    const PassFusion fusion = fusePlan(plan);
    std::vector<std::optional<PlanPass>> ready(fusion.passes.size());
    for (std::size_t i = 0; i < ready.size(); ++i) {
        if (!fusion.passes[i].isPlain()) ready[i] = passFor(plan, fusion.passes[i], missing);
    }
    if (!sparesPixels) return fusedPlan(std::move(plan), fusion, std::move(ready));

    RenderPlan drawn = fusedPlan(plan, fusion, ready);
    for (const RegionFusion& regions : fuseByRegions(plan, fusion)) {
        const std::size_t pass = regions.pass;
        if (!ready[pass] && !fusion.passes[pass].isPlain()) continue;
        const bool isOnTop = regions.way == RegionFusion::Way::layerOnTop;
        auto everywhere = passFor(plan, regions.everywhere, missing);
        auto inParts = passFor(plan, regions.inParts, missing, isOnTop);
        if (everywhere && inParts)
            drawByRegions(drawn, plan, regions, *std::move(everywhere), *std::move(inParts));
    }
    drawOnlyWhatIsRead(drawn, plan);
    return drawn;
}

std::optional<PlanPass> PassFuser::passFor(const RenderPlan& plan, const FusedPass& fused, Missing missing,
                                           bool isBlended) {
    auto [isKnown, program] = programs_.find(fused.shape);
    if (!isKnown && missing == Missing::madeNow) {
        program = programs_.make(fused.shape);
        isKnown = true;
    }
    if (isKnown && !program) return {};
    const bool hasProgram = program != nullptr;
    PlanPass pass = passOf(plan, fused, std::move(program));
    pass.isBlended = isBlended;
    PassFormats formats = formatsOf(plan, pass);
    if (hasProgram && drawn_.canDraw(pass, formats)) return pass;
    Request request{fused.shape, pass, std::move(formats)};
    request.pass.overlays.clear();  // the graph's own
    if (missing == Missing::madeNow) return makeNow(request) ? std::optional(std::move(pass)) : std::nullopt;
    ask(std::move(request));
    return {};
}

bool PassFuser::makeNow(const Request& request) {
    const std::size_t hash = request.hash();
    {
        std::scoped_lock lock(mutex_);
        if (failed_.contains(hash)) return false;
    }
    try {
        drawn_.makeFor(request.pass, request.formats);
        return true;
    } catch (const CompileError& failure) {
        logLine(fmt::format("{} are drawn one by one: {}", request.shape.name(), failure.what()));
    }
    std::scoped_lock lock(mutex_);
    failed_.insert(hash);
    return false;
}

void PassFuser::ask(Request request) {
    const std::size_t hash = request.hash();
    if (!isWanted(hash)) return;
    try {
        const auto shared = std::make_shared<const Request>(std::move(request));
        if (queue_.async([this, shared] { make(*shared); })) return;
    } catch (const std::bad_alloc&) {
    }
    forget(hash);  // so that a later frame asks again
}

bool PassFuser::isWanted(std::size_t hash) {
    std::scoped_lock lock(mutex_);
    if (seen_.size() >= kMostRemembered) seen_.clear();
    if (seen_.insert(hash).second) return false;
    return making_.insert(hash).second;
}

void PassFuser::forget(std::size_t hash) noexcept {
    std::scoped_lock lock(mutex_);
    making_.erase(hash);
}

void PassFuser::make(const Request& request) noexcept {
    if (stop_) return;
    try {
        PlanPass pass = request.pass;
        pass.function = programs_.make(request.shape);
        if (pass.function) drawn_.makeFor(pass, request.formats);
        forget(request.hash());
    } catch (const std::exception& failure) {
        // The plain passes go on drawing, and it is not tried again.
        try {
            logLine(request.shape.name() + ": " + failure.what());
        } catch (const std::bad_alloc&) {
        }
    }
}

}  // namespace qv
