#include "Platform/ImageGraph/PassFusion.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "Platform/ImageGraph/ShaderCompiler/ShaderSource.h"

namespace qv {

namespace {

constexpr std::size_t kMostStages = 24;
/// Of the functions' own programs together. Compilers, the driver's too, take longer than linearly.
constexpr std::size_t kMostCodeWords = 16000;

using From = StageInput::From;

struct Reader {
    int pass, input;
};

/// Who makes and who reads each texture.
struct Links {
    explicit Links(const RenderPlan& plan)
        : producer(plan.textures.size(), -1), readers(plan.textures.size()) {
        for (std::size_t p = 0; p < plan.passes.size(); ++p) {
            const PlanPass& pass = plan.passes[p];
            producer[std::size_t(pass.output)] = int(p);
            for (std::size_t n = 0; n < pass.inputs.size(); ++n) {
                if (pass.inputs[n] >= 0) readers[std::size_t(pass.inputs[n])].push_back({int(p), int(n)});
            }
        }
    }
    std::vector<int> producer;  ///< pass by texture, −1: filled from a source
    std::vector<std::vector<Reader>> readers;
};

bool isOutput(const RenderPlan& plan, int texture) {
    return std::ranges::find(plan.outputs, texture) != plan.outputs.end();
}

std::shared_ptr<const ShaderFunction> stock(std::string_view name) {
    return ShaderLibrary::platform()->function(name);
}

bool isCopy(const PlanPass& pass) {
    static const auto copy = stock("MTICopy");
    return copy && pass.function == copy;
}

/// Whether the reader does nothing but to interpolate what `between` has interpolated: it may as well ask for
/// that at the places that it reads.
bool interpolatesTwice(const PlanPass& reader, const PlanPass& between) {
    static const auto transform = stock("MTITransform"), enlarge = stock("MTIEnlarge");
    return transform && reader.function == transform && between.function == enlarge;
}

void dropUnreadPasses(RenderPlan& plan) {
    std::vector<bool> wanted(plan.textures.size(), false);
    for (int output : plan.outputs) wanted[std::size_t(output)] = true;
    std::vector<PlanPass> kept;
    for (auto pass = plan.passes.rbegin(); pass != plan.passes.rend(); ++pass) {
        if (!wanted[std::size_t(pass->output)]) continue;
        for (int input : pass->inputs) {
            if (input >= 0) wanted[std::size_t(input)] = true;
        }
        kept.push_back(std::move(*pass));
    }
    std::ranges::reverse(kept);
    plan.passes = std::move(kept);
    noteLastReaders(plan);
}

/// Calls `visit` with each uniform that has a value, in the order in which they are pushed.
template <typename Visit>
void forGivenUniforms(const ShaderFunction& function, std::uint32_t given, Visit visit) {
    for (const ShaderUniform& uniform : function.uniforms) {
        if (uniform.isSelector) continue;
        if (given & 1u) visit(uniform);
        given >>= 1;
    }
}

/// Index of `value` in `values`, at whose end it is put when it is not there.
template <typename Value>
int indexIn(std::vector<Value>& values, const Value& value) {
    const auto found = std::ranges::find(values, value);
    if (found != values.end()) return int(found - values.begin());
    values.push_back(value);
    return int(values.size()) - 1;
}

class Fuser {
  public:
    explicit Fuser(const RenderPlan& plan)
        : plan_(plan),
          links_(plan),
          root_(plan.passes.size(), -1),
          groups_(plan.passes.size()),
          takesValues_(plan.passes.size(), true) {}

    PassFusion run() {
        for (int p = int(plan_.passes.size()) - 1; p >= 0; --p) place(p);
        for (std::size_t p = 0; p < plan_.passes.size(); ++p) {
            if (!groups_[p].empty()) fusion_.passes.push_back(assemble(groups_[p]));
        }
        return std::move(fusion_);
    }

  private:
    const PlanPass& pass(int index) const { return plan_.passes[std::size_t(index)]; }
    const PlanTexture& texture(int index) const { return plan_.textures[std::size_t(index)]; }

    /// Puts the pass into its reader's group, or opens one; all readers have been placed.
    void place(int p) {
        const auto& readers = links_.readers[std::size_t(pass(p).output)];
        if (!readers.empty() && !isTakenAsValue(p, readers)) {
            const std::optional<FusionRefusal> why = join(p, readers);
            if (!why) return;
            for (const Reader& reader : readers) {
                fusion_.kept.push_back({reader.pass, reader.input, refusalOf(reader, p).value_or(*why)});
            }
        }
        root_[std::size_t(p)] = p;
        groups_[std::size_t(p)] = {p};
        takesValues_[std::size_t(p)] = !pass(p).standsAlone && !limitOf(assemble({p}));
    }

    /// A pass of one colour is no texture to readers that have room for its value.
    bool isTakenAsValue(int p, const std::vector<Reader>& readers) const {
        return texture(pass(p).output).color && std::ranges::all_of(readers, [&](const Reader& reader) {
                   return takesValues_[std::size_t(root_[std::size_t(reader.pass)])];
               });
    }

    /// Why this reader cannot take the pass in, whatever others do.
    std::optional<FusionRefusal> refusalOf(const Reader& reader, int p) const {
        const PlanPass& readingPass = pass(reader.pass);
        const PlanTexture &between = texture(pass(p).output), &target = texture(readingPass.output);
        if (!readingPass.function->readsOnlyHere(std::size_t(reader.input)) &&
            !interpolatesTwice(readingPass, pass(p)))
            return FusionRefusal::readElsewhere;
        if (between.width != target.width || between.height != target.height) return FusionRefusal::otherSize;
        return {};
    }

    /// Adds the pass to the group of all its readers, or tells why not.
    std::optional<FusionRefusal> join(int p, const std::vector<Reader>& readers) {
        if (isOutput(plan_, pass(p).output)) return FusionRefusal::result;
        for (const Reader& reader : readers) {
            if (const auto why = refusalOf(reader, p))
                return readers.size() > 1 ? FusionRefusal::severalReaders : why;
        }
        const int root = root_[std::size_t(readers.front().pass)];
        const bool together = std::ranges::all_of(
            readers, [&](const Reader& reader) { return root_[std::size_t(reader.pass)] == root; });
        if (!together) return FusionRefusal::severalReaders;
        if (!pass(p).overlays.empty()) return FusionRefusal::overlays;
        if (pass(p).standsAlone) return FusionRefusal::ownCode;

        std::vector<int>& group = groups_[std::size_t(root)];
        group.insert(group.begin(), p);
        root_[std::size_t(p)] = root;
        const auto limit = limitOf(assemble(group));
        if (limit) group.erase(group.begin());
        return limit;
    }

    static std::optional<FusionRefusal> limitOf(const FusedPass& fused) {
        std::size_t code = 0, selectors = 0;
        for (const FusedShape::Stage& stage : fused.shape.stages) {
            code += stage.function->code.size();
            selectors +=
                std::size_t(std::ranges::count(stage.function->uniforms, true, &ShaderUniform::isSelector));
        }
        if (fused.words() > kMaximumPushedWords) return FusionRefusal::uniforms;
        if (fused.textures.size() > std::size_t(kMaximumShaderInputs)) return FusionRefusal::textures;
        const bool isLong = fused.members.size() > kMostStages || selectors > kResampleConstantBase ||
                            (code > kMostCodeWords && fused.members.size() > 1);
        if (isLong) return FusionRefusal::length;
        return {};
    }

    /// The passes of `group`, in order, as one.
    FusedPass assemble(const std::vector<int>& group) const {
        FusedPass fused;
        fused.members = group;
        fused.shape.stages.reserve(group.size());
        for (int p : group) {
            const PlanPass& member = pass(p);
            FusedShape::Stage& stage = fused.shape.stages.emplace_back();
            stage.function = member.function;
            stage.given = member.given;
            stage.isClamped = p != group.back() && texture(member.output).format == TextureFormat::rgba8;
            for (std::size_t n = 0; n < member.inputs.size(); ++n)
                stage.inputs.push_back(inputOf(fused, member, n));
        }
        return fused;
    }

    StageInput inputOf(FusedPass& fused, const PlanPass& member, std::size_t n) const {
        const int index = member.inputs[n];
        if (index < 0) return {};
        const PlanTexture& input = texture(index);
        if (const int producer = links_.producer[std::size_t(index)]; producer >= 0) {
            const auto stage = std::ranges::find(fused.members, producer);
            if (stage != fused.members.end()) return {From::stage, int(stage - fused.members.begin())};
        }
        StageInput result{From::texture};
        if (input.color && takesValues_[std::size_t(fused.members.back())]) {
            result.from = From::value;
            const std::size_t before = fused.values.size();
            result.index = indexIn(fused.values, *input.color);
            const bool packed = input.format == TextureFormat::rgba8;
            if (fused.values.size() > before)
                fused.shape.values.push_back(packed ? PushedValue::eightBits : PushedValue::floats);
        } else {
            result.index = indexIn(fused.textures, index);
        }
        const PlanTexture& output = texture(member.output);
        const bool sameSize = input.width == output.width && input.height == output.height;
        if (member.function->inputs[n].sizeOffset >= 0 && !sameSize)
            result.size = indexIn(fused.sizes, {input.width, input.height});
        return result;
    }

    const RenderPlan& plan_;
    const Links links_;
    std::vector<int> root_;                 ///< of each placed pass: the last pass of its group
    std::vector<std::vector<int>> groups_;  ///< by root
    std::vector<bool> takesValues_;         ///< by root: one of its own has room for its values
    PassFusion fusion_;
};

}  // namespace

std::string_view fusionRefusalText(FusionRefusal refusal) {
    switch (refusal) {
        case FusionRefusal::result:
            return "it is asked for";
        case FusionRefusal::readElsewhere:
            return "it is read away from the pixel being coloured";
        case FusionRefusal::otherSize:
            return "it has another size";
        case FusionRefusal::severalReaders:
            return "several passes read it";
        case FusionRefusal::overlays:
            return "something is drawn on top of it";
        case FusionRefusal::ownCode:
            return "it is drawn by code of the context's own";
        case FusionRefusal::uniforms:
            return "the uniforms would be too many";
        case FusionRefusal::textures:
            return "the textures would be too many";
        case FusionRefusal::length:
            return "the program would be too long";
    }
    return {};
}

std::size_t FusedShape::hash() const {
    std::uint64_t hash = values.size();
    const auto mix = [&hash](std::uint64_t value) {
        hash = (hash ^ value) * 0x9E3779B97F4A7C15;
        hash ^= hash >> 32;
    };
    for (const Stage& stage : stages) {
        mix(reinterpret_cast<std::uintptr_t>(stage.function.get()));
        mix(stage.given | std::uint64_t(stage.isClamped) << 32);
        for (const StageInput& input : stage.inputs)
            mix(std::uint64_t(input.from) | std::uint64_t(input.index) << 8 |
                std::uint64_t(input.size + 1) << 16);
    }
    for (PushedValue value : values) mix(std::uint64_t(value));
    return std::size_t(hash);
}

std::string FusedShape::name() const {
    std::string name;
    for (const Stage& stage : stages) name += (name.empty() ? "" : " + ") + stage.function->name;
    return name;
}

int FusedPass::words() const {
    int words = 2 + 2 * int(sizes.size());
    for (PushedValue value : shape.values) words += value == PushedValue::eightBits ? 1 : 4;
    for (const FusedShape::Stage& stage : shape.stages) {
        forGivenUniforms(*stage.function, stage.given,
                         [&](const ShaderUniform& uniform) { words += wordCount(uniform.type); });
    }
    return words;
}

void dropCopies(RenderPlan& plan) {
    for (std::size_t p = 0; p < plan.passes.size(); ++p) {
        const PlanPass copy = plan.passes[p];
        if (!isCopy(copy) || copy.inputs.front() < 0) continue;
        const int from = copy.inputs.front();
        const PlanTexture &input = plan.textures[std::size_t(from)],
                          &output = plan.textures[std::size_t(copy.output)];
        if (input.width != output.width || input.height != output.height || input.format != output.format)
            continue;
        if (copy.overlays.empty() && !isOutput(plan, copy.output)) {
            for (PlanPass& reader : plan.passes) std::ranges::replace(reader.inputs, copy.output, from);
            continue;
        }
        const Links links(plan);
        const int producer = links.producer[std::size_t(from)];
        if (producer < 0 || links.readers[std::size_t(from)].size() != 1 || isOutput(plan, from)) continue;
        PlanPass& maker = plan.passes[std::size_t(producer)];
        if (!copy.overlays.empty()) {
            if (!maker.overlays.empty() && maker.samples != copy.samples) continue;
            maker.overlays.insert(maker.overlays.end(), copy.overlays.begin(), copy.overlays.end());
            maker.samples = copy.samples;
        }
        maker.output = copy.output;
        plan.passes.erase(plan.passes.begin() + std::ptrdiff_t(p--));
    }
    dropUnreadPasses(plan);
}

namespace {

/// Lets the pass that makes `texture` make it as large as `size`, if it is smaller, a transform along the
/// axes, faded or not, and nothing else reads it.
bool resizeTransform(RenderPlan& plan, const Links& links, int texture, const PlanTexture& size) {
    static const auto transform = stock("MTITransform"), opacity = stock("MTIOpacity");
    const int producer = links.producer[std::size_t(texture)];
    if (producer < 0 || links.readers[std::size_t(texture)].size() != 1 || isOutput(plan, texture))
        return false;
    PlanPass& pass = plan.passes[std::size_t(producer)];
    PlanTexture& own = plan.textures[std::size_t(texture)];
    if (!pass.overlays.empty() || own.width > size.width || own.height > size.height) return false;
    if (transform && pass.function == transform) {
        constexpr float kRounding = 1e-6f;  // of a turn by 180 degrees
        if (std::abs(numberOf(pass, "matrix", 1)) > kRounding ||
            std::abs(numberOf(pass, "matrix", 2)) > kRounding)
            return false;
        const float ratios[] = {float(size.width) / float(own.width), float(size.height) / float(own.height)};
        for (int i = 0; i < 2; ++i)
            pass.words[std::size_t(pass.function->uniform("edge")->offset + i)] =
                std::bit_cast<std::uint32_t>(numberOf(pass, "edge", i) * ratios[i]);
        pass.resampled = 1;
    } else if (!opacity || pass.function != opacity ||
               !resizeTransform(plan, links, pass.inputs.front(), size)) {
        return false;
    }
    own.width = size.width;
    own.height = size.height;
    pass.words[0] = std::bit_cast<std::uint32_t>(float(own.width));
    pass.words[1] = std::bit_cast<std::uint32_t>(float(own.height));
    return true;
}

}  // namespace

void resizeTransforms(RenderPlan& plan) {
    const Links links(plan);
    for (PlanPass& reader : plan.passes) {
        const PlanTexture size = plan.textures[std::size_t(reader.output)];
        for (std::size_t n = 0; n < reader.inputs.size(); ++n) {
            const bool isResampled = reader.resampled >> n & 1u;
            if (!isResampled || reader.inputs[n] < 0 || !reader.function->readsOnlyHere(n) ||
                reader.function->inputs[n].sizeOffset >= 0)
                continue;
            if (resizeTransform(plan, links, reader.inputs[n], size)) reader.resampled &= ~(1u << n);
        }
    }
}

PassFusion fusePlan(const RenderPlan& plan) {
    return Fuser(plan).run();
}

RenderPlan fusedPlan(RenderPlan plan, const PassFusion& fusion, std::vector<std::optional<PlanPass>> ready) {
    std::vector<PlanPass> passes;
    passes.reserve(plan.passes.size());
    for (std::size_t i = 0; i < fusion.passes.size(); ++i) {
        if (ready[i]) {
            passes.push_back(*std::move(ready[i]));
            continue;
        }
        for (int member : fusion.passes[i].members)
            passes.push_back(std::move(plan.passes[std::size_t(member)]));
    }
    plan.passes = std::move(passes);
    dropUnreadPasses(plan);
    return plan;
}

PlanPass passOf(const RenderPlan& plan, const FusedPass& fused,
                std::shared_ptr<const ShaderFunction> program) {
    const PlanPass& last = plan.passes[std::size_t(fused.members.back())];
    PlanPass pass;
    pass.function = std::move(program);
    pass.inputs = fused.textures;
    pass.output = last.output;
    pass.overlays = last.overlays;
    pass.samples = last.samples;
    const PlanTexture& output = plan.textures[std::size_t(pass.output)];
    for (std::size_t n = 0; n < fused.textures.size(); ++n) {
        const PlanTexture& input = plan.textures[std::size_t(fused.textures[n])];
        if (input.width != output.width || input.height != output.height) pass.resampled |= 1u << n;
    }

    auto word = pass.words.begin();
    const auto pushNumber = [&word](float value) { *word++ = std::bit_cast<std::uint32_t>(value); };
    pushNumber(float(output.width));
    pushNumber(float(output.height));
    for (const auto& size : fused.sizes) {
        for (int side : size) pushNumber(float(side));
    }
    for (std::size_t i = 0; i < fused.values.size(); ++i) {
        const auto& color = fused.values[i];
        if (fused.shape.values[i] == PushedValue::floats) {
            for (float component : color) pushNumber(component);
            continue;
        }
        std::uint32_t packed = 0;
        for (std::size_t c = 0; c < 4; ++c) packed |= std::uint32_t(std::lround(color[c] * 255)) << 8 * c;
        *word++ = packed;
    }
    for (int index : fused.members) {
        const PlanPass& member = plan.passes[std::size_t(index)];
        forGivenUniforms(*member.function, member.given, [&](const ShaderUniform& uniform) {
            word = std::copy_n(member.words.begin() + uniform.offset, wordCount(uniform.type), word);
        });
        pass.selectors.insert(pass.selectors.end(), member.selectors.begin(), member.selectors.end());
    }
    return pass;
}

}  // namespace qv
