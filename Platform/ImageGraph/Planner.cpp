#include "Platform/ImageGraph/Planner.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <string>
#include <unordered_map>
#include <utility>

#include "Platform/ImageGraph/Private/GaussianBlur.h"

namespace qv {

std::optional<TextureFormat> textureFormatOfVulkan(std::int32_t format) {
    switch (format) {
        case 37:
            return TextureFormat::rgba8;
        case 44:
            return TextureFormat::bgra8;
        case 97:
            return TextureFormat::rgba16Float;
        default:
            return std::nullopt;
    }
}

namespace {

/// A value as the words of a uniform of `type`. A number becomes what the shader declares; a vector gives its
/// first components.
void bindValue(const MTIValue& value, UniformType type, std::uint32_t* words) {
    float components[4] = {};
    if (const auto* vector = std::get_if<MTIVector>(&value)) {
        for (std::size_t i = 0; i < vector->count(); ++i) components[i] = (*vector)[i];
    } else if (const auto* real = std::get_if<float>(&value)) {
        components[0] = *real;
    } else if (const auto* wide = std::get_if<double>(&value)) {
        components[0] = float(*wide);
    } else if (const auto* flag = std::get_if<bool>(&value)) {
        components[0] = *flag ? 1.0f : 0.0f;
    }
    // A time or strength that is not a number must not spread over the picture.
    for (float& component : components) {
        if (!std::isfinite(component)) component = 0;
    }
    const auto* integer = std::get_if<std::int32_t>(&value);
    switch (type) {
        case UniformType::intType:
            words[0] = std::uint32_t(
                integer ? *integer : std::int32_t(std::clamp(components[0], -0x1p31f, 0x1.fffffep30f)));
            return;
        case UniformType::boolType:
            words[0] = integer ? *integer != 0 : components[0] != 0.0f;
            return;
        default:
            break;
    }
    if (integer) components[0] = float(*integer);
    for (int i = 0; i < wordCount(type); ++i) words[i] = std::bit_cast<std::uint32_t>(components[i]);
}

/// What a texture filled with a colour holds.
std::array<float, 4> storedColor(const MTIColor& color, TextureFormat format) {
    const auto finite = [](float value) { return std::isfinite(value) ? value : 0.0f; };
    const float alpha = finite(color.alpha);
    std::array<float, 4> stored{finite(color.red) * alpha, finite(color.green) * alpha,
                                finite(color.blue) * alpha, alpha};
    if (format == TextureFormat::rgba8) {
        for (float& component : stored) component = std::round(std::clamp(component, 0.0f, 1.0f) * 255) / 255;
    }
    return stored;
}

/// Pixels that a sample of a plane covers along a side.
int reduction(int side, int samples) {
    return (side + samples - 1) / samples;
}

class PlanBuilder {
  public:
    explicit PlanBuilder(const PlanTarget& target) : target_(target) {}

    RenderPlan build(const MTIImage& image) {
        lower(image);
        if (!failed_) finish(image);
        if (failed_) return {};
        noteLastReaders(plan_);
        return std::move(plan_);
    }

  private:
    // collect and lower: each node becomes a texture that is filled or written once, inputs before readers.
    void lower(const MTIImage& image) {
        for (const ImageNode* node : evaluationOrder(image)) {
            format_ = node == image.node().get() && !target_.planes ? target_.output
                                                                    : textureFormat(node->pixelFormat);
            textureOf_[node] = std::visit([&](const auto& operation) { return lowerNode(*node, operation); },
                                          node->operation);
            if (!failed_ && !node->covered.empty())
                plan_.textures[std::size_t(textureOf_[node])].covered = node->covered;
        }
    }

    int lowerNode(const ImageNode& node, const BitmapSource& source) {
        const int texture = addSource(node, node.width, node.height);
        if (node.width == 1 && node.height == 1) {
            auto& color = plan_.textures.back().color.emplace();
            for (std::size_t i = 0; i < 4; ++i) color[i] = float((*source.bitmap.pixels)[i]) / 255;
        }
        return texture;
    }

    int lowerNode(const ImageNode& node, const PixelBufferSource& source) {
        const PixelBuffer& buffer = source.buffer;
        const bool onProcessor = target_.processor && PixelBuffer::bitDepth(buffer.format()) == 8;
        if (!PixelBuffer::isYUV(buffer.format()) || onProcessor)
            return addSource(node, node.width, node.height);
        return lowerPlanes(node, buffer);
    }

    int lowerNode(const ImageNode& node, const VulkanImageSource& source) {
        return addSource(node, node.width, node.height, *textureFormatOfVulkan(source.image.format));
    }

    int lowerNode(const ImageNode& node, const ColorSource& source) {
        const int texture = addColorPass(node, source.color);
        if (!failed_) plan_.textures.back().color = plan_.passes.back().clearColor;
        return texture;
    }

    int lowerNode(const ImageNode& node, const KernelPass& pass) {
        const std::shared_ptr<const ShaderFunction> function(pass.kernel, &pass.kernel->function());
        return addPass(function, inputsOf(node), node.width, node.height, format_, pass.parameters);
    }

    int lowerNode(const ImageNode& node, const GaussianBlurPass& blur) {
        if (isBlurredBeside(node, blur)) return addSource(node, node.width, node.height);
        int texture = inputsOf(node).front();
        if (isBlurredAtOnce(texture)) {
            if (!blursVisibly(blur.radius)) return texture;
            const int blurred = addPass(stock("MTIGaussianBlur"), {texture}, node.width, node.height, format_,
                                        {{"deviation", blur.radius}});
            if (!failed_) plan_.passes.back().standsAlone = true;
            return blurred;
        }
        for (const BlurPass& pass :
             planGaussianBlur(blur.radius, node.width, node.height, target_.processor)) {
            texture =
                addPass(stock(pass.function), {texture}, pass.width, pass.height, format_, pass.parameters);
        }
        return texture;
    }

    int lowerNode(const ImageNode& node, const PassOverlay& overlay) {
        const bool isVisible = overlay.isVisible(node.width, node.height), isOnNothing = node.inputs.empty();
        if (!isVisible && !isOnNothing) return inputsOf(node).front();
        const int texture =
            isOnNothing ? addColorPass(node, {})
                        : addPass(stock("MTICopy"), inputsOf(node), node.width, node.height, format_, {});
        if (!isVisible) return texture;
        if (!failed_) {
            plan_.passes.back().overlays = {&overlay};
            plan_.passes.back().samples = overlay.kind().style.samples;
        }
        return texture;
    }

    /// Whether a mask in memory is blurred before it is taken in: by code that works on its one channel, a
    /// processor is done with it in a quarter of the time that passes take.
    bool isBlurredBeside(const ImageNode& node, const GaussianBlurPass& blur) const {
        const auto* source = std::get_if<PixelBufferSource>(&node.inputs.front().node()->operation);
        return target_.processor && !target_.native && format_ == TextureFormat::rgba8 && source &&
               source->buffer.format() == PixelFormat::gray8 && blursVisibly(blur.radius) &&
               reducedGaussian(blur.radius).factors.empty();
    }

    /// Whether the context blurs the texture in one pass.
    bool isBlurredAtOnce(int texture) const {
        return target_.native && format_ == TextureFormat::rgba8 &&
               plan_.textures[std::size_t(texture)].format == TextureFormat::rgba8;
    }

    /// Y'CbCr in planes to premultiplied RGB in one pass.
    int lowerPlanes(const ImageNode& node, const PixelBuffer& buffer) {
        const bool interleaved = buffer.format() == PixelFormat::nv12;
        const bool alpha =
            buffer.format() == PixelFormat::i420Alpha && node.alphaType != MTIAlphaType::alphaIsOne;
        const bool deep = PixelBuffer::bitDepth(buffer.format()) > 8;
        std::vector<int> planes;
        for (int plane = 0; plane < PixelBuffer::planeCount(buffer.format()); ++plane) {
            if (plane == 3 && !alpha) break;
            const auto layout =
                PixelBuffer::planeLayout(buffer.format(), plane, buffer.width(), buffer.height());
            const bool pair = interleaved && plane == 1;
            planes.push_back(addSource(node, layout.width, layout.height,
                                       deep   ? TextureFormat::r16
                                       : pair ? TextureFormat::rg8
                                              : TextureFormat::r8,
                                       plane));
        }
        const YUVCoefficients k = yuvCoefficients(buffer.color(), PixelBuffer::bitDepth(buffer.format()));
        MTIParameters parameters;
        for (std::size_t row = 0; row < 3; ++row) {
            const float* m = &k.toRGB[row * 3];
            const float bias = -(m[0] * k.offset[0] + m[1] * k.offset[1] + m[2] * k.offset[2]);
            parameters.set(kRowNames[row], MTIVector{m[0], m[1], m[2], bias});
        }
        const auto chroma = PixelBuffer::planeLayout(buffer.format(), 1, buffer.width(), buffer.height());
        const auto scale = [](int side, int samples) {
            return float(side) / float(samples * reduction(side, samples));
        };
        parameters.set("chromaScale",
                       MTIVector{scale(node.width, chroma.width), scale(node.height, chroma.height)});
        const char* name = interleaved ? "MTINV12ToRGB" : alpha ? "MTIYUVAToRGB" : "MTIYUVToRGB";
        return addPass(stock(name), std::move(planes), node.width, node.height, format_, parameters);
    }

    /// The image itself: written by a pass even when it is a plain source, and converted to planes when asked
    /// for.
    void finish(const MTIImage& image) {
        int texture = textureOf_[image.node().get()];
        if (target_.planes) {
            convertToPlanes(texture);
            return;
        }
        const PlanTexture& result = plan_.textures[std::size_t(texture)];
        if (result.source || result.format != target_.output) {
            texture = addPass(stock("MTICopy"), {texture}, result.width, result.height, target_.output, {});
        }
        plan_.outputs = {texture};
    }

    void convertToPlanes(int texture) {
        const PixelBuffer& buffer = *target_.planes;
        const bool deep = PixelBuffer::bitDepth(buffer.format()) > 8;
        const YUVCoefficients k = yuvCoefficients(buffer.color(), PixelBuffer::bitDepth(buffer.format()));
        const auto row = [&](std::size_t i) {
            return MTIVector{k.fromRGB[i * 3], k.fromRGB[i * 3 + 1], k.fromRGB[i * 3 + 2], k.offset[i]};
        };
        const bool interleaved = buffer.format() == PixelFormat::nv12;
        const bool straight = buffer.format() == PixelFormat::i420Alpha;
        for (int plane = 0; plane < PixelBuffer::planeCount(buffer.format()); ++plane) {
            const auto layout =
                PixelBuffer::planeLayout(buffer.format(), plane, buffer.width(), buffer.height());
            const bool pair = interleaved && plane == 1;
            const TextureFormat format = deep   ? TextureFormat::r16
                                         : pair ? TextureFormat::rg8
                                                : TextureFormat::r8;
            MTIParameters parameters;
            const char* name = "MTIRGBToPlane";
            if (plane == 3) {
                name = "MTIAlphaToPlane";
            } else {
                parameters.set("row", row(std::size_t(plane)));
                if (pair) parameters.set("row2", row(2));
                parameters.set("straight", straight);
                parameters.set("reduction", MTIVector{float(reduction(buffer.width(), layout.width)),
                                                      float(reduction(buffer.height(), layout.height))});
                if (pair) name = "MTIRGBToPlanePair";
            }
            plan_.outputs.push_back(
                addPass(stock(name), {texture}, layout.width, layout.height, format, parameters));
        }
    }

    int addSource(const ImageNode& node, int width, int height, TextureFormat format = TextureFormat::rgba8,
                  int plane = 0) {
        plan_.textures.push_back({width, height, format, &node, plane});
        return int(plan_.textures.size()) - 1;
    }

    int addColorPass(const ImageNode& node, const MTIColor& c) {
        const int texture = addPass(stock("MTIColor"), {}, node.width, node.height, format_,
                                    {{"color", MTIVector{c.red, c.green, c.blue, c.alpha}}});
        if (!failed_) plan_.passes.back().clearColor = storedColor(c, format_);
        return texture;
    }

    int addPass(std::shared_ptr<const ShaderFunction> function, std::vector<int> inputs, int width,
                int height, TextureFormat format, const MTIParameters& parameters) {
        if (!function) {
            failed_ = true;
            return 0;
        }
        PlanPass pass;
        inputs.resize(function->inputs.size(), -1);
        pass.words[0] = std::bit_cast<std::uint32_t>(float(width));
        pass.words[1] = std::bit_cast<std::uint32_t>(float(height));
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            const PlanTexture input =
                inputs[i] < 0 ? PlanTexture{1, 1} : plan_.textures[std::size_t(inputs[i])];
            if (const int offset = function->inputs[i].sizeOffset; offset >= 0) {
                pass.words[std::size_t(offset)] = std::bit_cast<std::uint32_t>(float(input.width));
                pass.words[std::size_t(offset) + 1] = std::bit_cast<std::uint32_t>(float(input.height));
            }
            if (input.width != width || input.height != height) pass.resampled |= 1u << i;
        }
        std::uint32_t bit = 1;
        for (const ShaderUniform& uniform : function->uniforms) {
            const MTIValue* value = parameters.find(uniform.name);
            std::uint32_t words[4] = {};
            if (value) bindValue(*value, uniform.type, words);
            if (uniform.isSelector) {
                pass.selectors.resize(std::max(pass.selectors.size(), std::size_t(uniform.offset) + 1));
                pass.selectors[std::size_t(uniform.offset)] = std::int32_t(words[0]);
                continue;
            }
            if (value) {
                std::copy_n(words, wordCount(uniform.type), pass.words.begin() + uniform.offset);
                pass.given |= bit;
            }
            bit <<= 1;
        }
        plan_.textures.push_back({width, height, format});
        pass.function = std::move(function);
        pass.inputs = std::move(inputs);
        pass.output = int(plan_.textures.size()) - 1;
        plan_.passes.push_back(std::move(pass));
        return plan_.passes.back().output;
    }

    std::vector<int> inputsOf(const ImageNode& node) const {
        std::vector<int> textures;
        for (const MTIImage& input : node.inputs)
            textures.push_back(input ? textureOf_.at(input.node().get()) : -1);
        return textures;
    }

    TextureFormat textureFormat(MTIPixelFormat format) const {
        switch (format) {
            case MTIPixelFormat::rgba8Unorm:
                return TextureFormat::rgba8;
            case MTIPixelFormat::rgba16Float:
                return TextureFormat::rgba16Float;
            case MTIPixelFormat::unspecified:
                break;
        }
        return target_.working;
    }

    static std::shared_ptr<const ShaderFunction> stock(std::string_view name) {
        const auto& library = ShaderLibrary::platform();
        return library ? library->function(name) : nullptr;
    }

    static constexpr const char* kRowNames[3] = {"rowRed", "rowGreen", "rowBlue"};

    const PlanTarget& target_;
    RenderPlan plan_;
    std::unordered_map<const ImageNode*, int> textureOf_;
    TextureFormat format_ = TextureFormat::rgba8;  ///< of the node being lowered
    bool failed_ = false;
};

}  // namespace

void noteLastReaders(RenderPlan& plan) {
    for (PlanTexture& texture : plan.textures) texture.lastReader = -1;
    for (std::size_t i = 0; i < plan.passes.size(); ++i) {
        for (int input : plan.passes[i].inputs) {
            if (input >= 0) plan.textures[std::size_t(input)].lastReader = int(i);
        }
    }
}

float numberOf(const PlanPass& pass, std::string_view uniform, int index) {
    return std::bit_cast<float>(pass.words[std::size_t(pass.function->uniform(uniform)->offset + index)]);
}

int selectorOf(const PlanPass& pass, std::string_view selector) {
    return pass.selectors[std::size_t(pass.function->uniform(selector)->offset)];
}

std::uint64_t peakTextureBytes(const RenderPlan& plan) {
    const auto bytes = [&](int index) {
        const PlanTexture& texture = plan.textures[std::size_t(index)];
        return std::uint64_t(texture.width) * std::uint64_t(texture.height) *
               std::uint64_t(texelBytes(texture.format));
    };
    std::uint64_t held = 0, peak = 0;
    for (std::size_t i = 0; i < plan.textures.size(); ++i) {
        if (plan.textures[i].source && plan.textures[i].lastReader >= 0) held += bytes(int(i));
    }
    for (std::size_t i = 0; i < plan.passes.size(); ++i) {
        const PlanPass& pass = plan.passes[i];
        if (!pass.continues) held += bytes(pass.output);
        const int more = pass.samples > 1 ? pass.samples : 0;  // kept beside their mean while it is drawn
        peak = std::max(peak, held + bytes(pass.output) * std::uint64_t(more));
        std::vector<int> read = pass.inputs;
        std::ranges::sort(read);
        read.erase(std::ranges::unique(read).begin(), read.end());
        for (int input : read) {
            const bool isLast = input >= 0 && plan.textures[std::size_t(input)].lastReader == int(i);
            if (isLast && std::ranges::find(plan.outputs, input) == plan.outputs.end()) held -= bytes(input);
        }
    }
    return peak;
}

RenderPlan planRender(const MTIImage& image, const PlanTarget& target) {
    if (!image) return {};
    return PlanBuilder(target).build(image);
}

}  // namespace qv
