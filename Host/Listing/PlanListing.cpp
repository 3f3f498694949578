#include "Host/Listing/PlanListing.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/PassFusion.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

Json wordsToJSON(const std::uint32_t* words, UniformType type) {
    if (type == UniformType::intType) return std::int32_t(*words);
    if (type == UniformType::boolType) return *words != 0;
    if (type == UniformType::floatType) return double(std::bit_cast<float>(*words));
    Json vector = Json::array();
    for (int i = 0; i < wordCount(type); ++i) vector.push_back(double(std::bit_cast<float>(words[i])));
    return vector;
}

Json functionToJSON(const PlanPass& pass) {
    Json json = {{"name", pass.function->name}, {"selectors", Json::object()}, {"uniforms", Json::object()}};
    std::uint32_t given = pass.given;
    for (const ShaderUniform& uniform : pass.function->uniforms) {
        if (uniform.isSelector) {
            json["selectors"][uniform.name] = pass.selectors[std::size_t(uniform.offset)];
            continue;
        }
        if (given & 1u)
            json["uniforms"][uniform.name] =
                wordsToJSON(&pass.words[std::size_t(uniform.offset)], uniform.type);
        given >>= 1;
    }
    return json;
}

std::string_view formatName(TextureFormat format) {
    switch (format) {
        case TextureFormat::rgba8:
            return "rgba8";
        case TextureFormat::bgra8:
            return "bgra8";
        case TextureFormat::rgba16Float:
            return "rgba16Float";
        case TextureFormat::rgba32Float:
            return "rgba32Float";
        case TextureFormat::r8:
            return "r8";
        case TextureFormat::rg8:
            return "rg8";
        case TextureFormat::r16:
            return "r16";
    }
    return {};
}

class Lister {
  public:
    Lister(const MTIImage& output, const NamedImages& sources, bool gpuWays) : sources_(sources) {
        plan_ = planRender(output, {.processor = !gpuWays});
        plainPasses_ = plan_.passes.size();
        dropCopies(plan_);
        if (!gpuWays) resizeTransforms(plan_);
        fusion_ = fusePlan(plan_);
        std::vector<std::optional<PlanPass>> ready;
        for (const FusedPass& pass : fusion_.passes) ready.emplace_back(passOf(plan_, pass, nullptr));
        drawn_ = fusedPlan(plan_, fusion_, std::move(ready));
    }

    Json list() const {
        Json json;
        json["passes"] = Json::array();
        for (const FusedPass& pass : fusion_.passes) {
            if (isDrawn(pass)) json["passes"].push_back(passToJSON(pass));
        }
        json["kept"] = Json::array();
        for (const PassFusion::Kept& kept : fusion_.kept) {
            const PlanPass& reader = plan_.passes[std::size_t(kept.pass)];
            json["kept"].push_back({{"function", reader.function->name},
                                    {"pass", passWith(kept.pass)},
                                    {"reads", reader.inputs[std::size_t(kept.input)]},
                                    {"reason", fusionRefusalText(kept.why)}});
        }
        json["output"] = plan_.outputs.empty() ? Json() : Json(plan_.outputs.front());
        json["plainPasses"] = plainPasses_;
        json["peakTextureBytes"] = peakTextureBytes(drawn_);
        return json;
    }

  private:
    int outputOf(const FusedPass& pass) const {
        return plan_.passes[std::size_t(pass.members.back())].output;
    }

    /// A colour that is a value to all its readers is no pass.
    bool isDrawn(const FusedPass& pass) const {
        return std::ranges::find(drawn_.passes, outputOf(pass), &PlanPass::output) != drawn_.passes.end();
    }

    /// The texture that the pass with this member writes.
    int passWith(int member) const {
        const auto found = std::ranges::find_if(fusion_.passes, [&](const FusedPass& pass) {
            return std::ranges::find(pass.members, member) != pass.members.end();
        });
        return outputOf(*found);
    }

    Json textureToJSON(int index) const {
        const PlanTexture& texture = plan_.textures[std::size_t(index)];
        Json json = {{"texture", index},
                     {"size", {texture.width, texture.height}},
                     {"format", formatName(texture.format)}};
        if (!texture.source) return json;
        json["source"] = "picture";
        for (const auto& [name, image] : sources_) {
            if (image.node().get() == texture.source) json["source"] = name;
        }
        if (texture.plane > 0) json["plane"] = texture.plane;
        return json;
    }

    Json passToJSON(const FusedPass& pass) const {
        Json json;
        json["id"] = outputOf(pass);
        json["functions"] = Json::array();
        for (int member : pass.members)
            json["functions"].push_back(functionToJSON(plan_.passes[std::size_t(member)]));
        json["inputs"] = Json::array();
        for (int texture : pass.textures) json["inputs"].push_back(textureToJSON(texture));
        json["values"] = Json::array();
        for (const auto& color : pass.values) {
            Json value = Json::array();
            for (float component : color) value.push_back(double(component));
            json["values"].push_back(std::move(value));
        }
        json["words"] = pass.words();
        std::size_t sprites = 0, curves = 0;
        for (const PassOverlay* overlay : plan_.passes[std::size_t(pass.members.back())].overlays) {
            if (const auto* list = dynamic_cast<const SpritePass*>(overlay)) sprites += list->sprites.size();
            if (const auto* line = dynamic_cast<const LinePass*>(overlay)) curves += line->segments.size();
        }
        json["sprites"] = sprites;
        json["segments"] = curves;
        json["output"] = textureToJSON(outputOf(pass));
        return json;
    }

    const NamedImages& sources_;
    RenderPlan plan_, drawn_;
    std::size_t plainPasses_ = 0;
    PassFusion fusion_;
};

std::string joinedNames(const Json& pass, std::string_view separator) {
    std::string names;
    for (const Json& function : pass["functions"]) {
        if (!names.empty()) names += separator;
        names += function["name"].get<std::string>();
    }
    return names;
}

std::string inputName(const Json& input) {
    if (!input.contains("source")) return fmt::format("#{}", input["texture"].dump());
    const std::string plane = input.contains("plane") ? fmt::format(":{}", input["plane"].dump()) : "";
    return input["source"].get<std::string>() + plane;
}

}  // namespace

Json planToJSON(const MTIImage& output, const NamedImages& sources, bool gpuWays) {
    return Lister(output, sources, gpuWays).list();
}

std::string planToText(const Json& plan) {
    std::string text;
    for (const Json& pass : plan["passes"]) {
        std::string from;
        for (const Json& input : pass["inputs"]) from.append(" ").append(inputName(input));
        text +=
            fmt::format("#{:<3} {}x{} {}  of{}{}  {} words", pass["id"].get<int>(),
                        pass["output"]["size"][0].get<int>(), pass["output"]["size"][1].get<int>(),
                        pass["output"]["format"].get<std::string>(), from.empty() ? " nothing" : from,
                        pass["values"].empty() ? "" : fmt::format("  and {} colours", pass["values"].size()),
                        pass["words"].get<int>());
        for (const char* what : {"sprites", "segments"}) {
            if (pass[what] != 0) text += fmt::format("  {} {} on top", pass[what].get<int>(), what);
        }
        text += "\n";
        for (const Json& function : pass["functions"]) {
            text += fmt::format("     {:<28}{}{}\n", function["name"].get<std::string>(),
                                oneLine("", function["selectors"]), oneLine("", function["uniforms"]));
        }
        for (const Json& kept : plan["kept"]) {
            if (kept["pass"] == pass["id"]) {
                text += fmt::format("     reads #{} from a texture: {}\n", kept["reads"].get<int>(),
                                    kept["reason"].get<std::string>());
            }
        }
    }
    return text + fmt::format("{} passes instead of {}, {:.1f} MB of textures at most\n",
                              plan["passes"].size(), plan["plainPasses"].get<int>(),
                              plan["peakTextureBytes"].get<double>() / 1e6);
}

std::string planToDot(const Json& plan, const std::string& title) {
    std::string text =
        fmt::format("digraph \"{}\" {{\n  rankdir=TB; node [shape=box, fontname=\"sans-serif\"];\n", title);
    for (const Json& pass : plan["passes"]) {
        const int id = pass["id"];
        text += fmt::format("  n{} [label=\"{}\\n{}x{}\"{}];\n", id, joinedNames(pass, "\\n"),
                            pass["output"]["size"][0].get<int>(), pass["output"]["size"][1].get<int>(),
                            id == plan["output"] ? ", penwidth=2" : "");
        for (const Json& input : pass["inputs"]) {
            const int texture = input["texture"];
            if (input.contains("source"))
                text += fmt::format("  n{} [label=\"{}\", shape=ellipse];\n", texture, inputName(input));
            std::string reason;
            for (const Json& kept : plan["kept"]) {
                if (kept["pass"] == id && kept["reads"] == texture) reason = kept["reason"];
            }
            text += fmt::format("  n{} -> n{} [label=\"{}\"];\n", texture, id, reason);
        }
    }
    return text + "}\n";
}

}  // namespace qv::host
