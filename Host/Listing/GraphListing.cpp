#include "Host/Listing/GraphListing.h"

#include <unordered_map>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace qv::host {

namespace {

Json vectorToJSON(const MTIVector& vector, std::size_t count) {
    Json array = Json::array();
    for (std::size_t i = 0; i < count; ++i) array.push_back(double(vector[i]));
    return array;
}

/// A number in the type that the shader declares for it.
template <typename Number>
Json numberToJSON(Number number, UniformType declared) {
    switch (declared) {
        case UniformType::intType:
            return std::int32_t(number);
        case UniformType::boolType:
            return number != Number{};
        default:
            return double(float(number));
    }
}

UniformType ownType(const MTIValue& value) {
    if (std::holds_alternative<bool>(value)) return UniformType::boolType;
    if (std::holds_alternative<std::int32_t>(value)) return UniformType::intType;
    return UniformType::floatType;
}

/// What the shader receives; a value that it does not declare keeps its own type.
Json uniformToJSON(const MTIValue& value, const ShaderUniform* uniform) {
    if (const auto* vector = std::get_if<MTIVector>(&value)) return vectorToJSON(*vector, vector->count());
    const UniformType type = uniform ? uniform->type : ownType(value);
    return std::visit(
        [&](const auto& number) -> Json {
            if constexpr (std::is_same_v<std::decay_t<decltype(number)>, MTIVector>) {
                return {};
            } else {
                return numberToJSON(number, type);
            }
        },
        value);
}

Json colorToJSON(const MTIColor& color) {
    return {double(color.red), double(color.green), double(color.blue), double(color.alpha)};
}

Json spriteToJSON(const SpriteInstance& sprite) {
    const CGAffineTransform& t = sprite.transform;
    Json json;
    json["transform"] = {t.a, t.b, t.c, t.d, t.tx, t.ty};
    json["alpha"] = double(sprite.alpha);
    json["tint"] = colorToJSON(sprite.tint);
    json["texture"] = sprite.texture ? Json(sprite.texture->name) : Json();
    return json;
}

Json linesToJSON(const LinePass& pass) {
    Json contours = Json::array(), segments = Json::array(), stops = Json::array();
    for (const auto& outline : pass.contours) {
        Json points = Json::array();
        for (const CGPoint& point : outline) points.push_back({point.x, point.y});
        contours.push_back(std::move(points));
    }
    for (const LineSegment& s : pass.segments)
        segments.push_back({double(s.start[0]), double(s.start[1]), double(s.end[0]), double(s.end[1]),
                            double(s.control[0]), double(s.control[1])});
    for (const LineStop& stop : pass.stops)
        stops.push_back({{"color", colorToJSON(stop.color)}, {"t", double(stop.t)}});
    return {{"contours", std::move(contours)},
            {"segments", std::move(segments)},
            {"thickness", double(pass.thickness)},
            {"pointSize", {pass.pointSize.width, pass.pointSize.height}},
            {"stops", std::move(stops)}};
}

/// Writes what an operation is into its node's JSON.
struct DescribeOperation {
    Json& json;

    void operator()(const BitmapSource& source) const {
        json["kind"] = "bitmap";
        if (!source.name.empty()) json["name"] = source.name;
    }
    void operator()(const PixelBufferSource&) const { json["kind"] = "pixelBuffer"; }
    void operator()(const VulkanImageSource&) const { json["kind"] = "hostImage"; }
    void operator()(const ColorSource& source) const {
        json["kind"] = "color";
        json["parameters"]["color"] = colorToJSON(source.color);
    }
    void operator()(const KernelPass& pass) const {
        json["kind"] = "kernel";
        json["function"] = pass.kernel->fragmentFunctionDescriptor().name;
        for (const auto& [name, value] : pass.parameters) {
            json["parameters"][name] = uniformToJSON(value, pass.kernel->function().uniform(name));
        }
    }
    void operator()(const GaussianBlurPass& pass) const {
        json["kind"] = "gaussianBlur";
        json["parameters"]["radius"] = double(pass.radius);
    }
    void operator()(const SpritePass& pass) const {
        json["kind"] = "sprites";
        Json sprites = Json::array();
        for (const SpriteInstance& sprite : pass.sprites) sprites.push_back(spriteToJSON(sprite));
        json["sprites"] = std::move(sprites);
    }
    void operator()(const LinePass& pass) const {
        json["kind"] = "lines";
        json.update(linesToJSON(pass));
    }
};

std::string_view formatName(MTIPixelFormat format) {
    return format == MTIPixelFormat::rgba16Float ? "rgba16Float" : "rgba8Unorm";
}

/// A setting as a number, or as several, when it reads as such.
Json settingToJSON(const std::string& text) {
    const Json parsed = Json::parse(text, nullptr, false);
    return parsed.is_number() || parsed.is_boolean() || parsed.is_array() ? parsed : Json(text);
}

Json nodeToJSON(const ImageNode& node, int id, const Json& inputs, const NamedImages& sources) {
    Json json;
    json["id"] = id;
    json["kind"] = Json();
    json["function"] = Json();
    json["inputs"] = inputs;
    json["parameters"] = Json::object();
    json["size"] = {node.width, node.height};
    std::visit(DescribeOperation{json}, node.operation);
    if (node.pixelFormat != MTIPixelFormat::unspecified) json["pixelFormat"] = formatName(node.pixelFormat);
    if (!node.stock.kind.empty()) {
        json["kind"] = node.stock.kind;
        Json settings = Json::object();
        for (const auto& [name, value] : node.stock.settings) settings[name] = settingToJSON(value);
        json["settings"] = std::move(settings);
    }
    for (const auto& [name, image] : sources) {
        if (image.node().get() != &node) continue;
        json["kind"] = "input";
        json["parameters"] = Json::object();
        json["name"] = name;
        break;
    }
    return json;
}

/// A value for reading: numbers with no more digits than they have.
std::string shown(const Json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_number_float()) return fmt::format("{}", shortestNumber(value.get<double>()));
    if (!value.is_array()) return value.dump();
    std::string text;
    for (const Json& element : value) text += (text.empty() ? "" : ", ") + shown(element);
    return "[" + text + "]";
}

std::string sourceName(const Json& node) {
    if (node.contains("name")) return node["name"];
    return node["function"].is_string() ? node["function"].get<std::string>() : std::string();
}

}  // namespace

Json graphToJSON(const MTIImage& output, const NamedImages& sources) {
    std::unordered_map<const ImageNode*, int> ids;
    Json nodes = Json::array();
    for (const ImageNode* node : evaluationOrder(output)) {
        Json inputs = Json::array();
        for (const MTIImage& input : node->inputs) {
            inputs.push_back(input ? Json(ids.at(input.node().get())) : Json());
        }
        const int id = int(ids.size());
        ids.emplace(node, id);
        nodes.push_back(nodeToJSON(*node, id, inputs, sources));
    }
    Json graph;
    graph["nodes"] = std::move(nodes);
    graph["output"] = output ? Json(ids.at(output.node().get())) : Json();
    return graph;
}

std::string oneLine(std::string_view opening, const Json& object) {
    std::string text(opening);
    for (const auto& [name, value] : object.items()) text += fmt::format(" {}={}", name, shown(value));
    return text;
}

namespace {

/// What is drawn in a node, in numbers.
std::string drawnIn(const Json& node, std::string_view separator) {
    std::string text;
    for (const char* what : {"sprites", "segments"}) {
        if (node.contains(what)) text += fmt::format("{}{} {}", separator, node[what].size(), what);
    }
    return text;
}

}  // namespace

std::string graphToText(const Json& graph) {
    std::string text;
    for (const Json& node : graph["nodes"]) {
        std::string from = node["inputs"].empty() ? "" : "  of";
        for (const Json& input : node["inputs"]) from += fmt::format(" #{}", input.dump());
        text += fmt::format("#{:<3} {:<14} {:<28} {}x{}{}{}{}{}\n", node["id"].get<int>(),
                            node["kind"].get<std::string>(), sourceName(node), node["size"][0].get<int>(),
                            node["size"][1].get<int>(), from, oneLine("", node["parameters"]),
                            node.contains("settings") ? oneLine("  with", node["settings"]) : "",
                            drawnIn(node, "  "));
    }
    return text + fmt::format("output #{}\n", graph["output"].dump());
}

std::string graphToDot(const Json& graph, const std::string& title) {
    std::string text =
        fmt::format("digraph \"{}\" {{\n  rankdir=TB; node [shape=box, fontname=\"sans-serif\"];\n", title);
    for (const Json& node : graph["nodes"]) {
        std::string label = node["kind"].get<std::string>();
        if (!sourceName(node).empty()) label += "\\n" + sourceName(node);
        label += fmt::format("\\n{}x{}", node["size"][0].get<int>(), node["size"][1].get<int>());
        for (const char* part : {"parameters", "settings"}) {
            if (!node.contains(part)) continue;
            for (const auto& [name, value] : node[part].items()) {
                label += fmt::format("\\n{} = {}", name, shown(value));
            }
        }
        label += drawnIn(node, "\\n");
        const int id = node["id"];
        text +=
            fmt::format("  n{} [label=\"{}\"{}];\n", id, label, id == graph["output"] ? ", penwidth=2" : "");
        int index = 0;
        for (const Json& input : node["inputs"]) {
            if (!input.is_null())
                text += fmt::format("  n{} -> n{} [label=\"{}\"];\n", input.get<int>(), id, index);
            ++index;
        }
    }
    return text + "}\n";
}

}  // namespace qv::host
