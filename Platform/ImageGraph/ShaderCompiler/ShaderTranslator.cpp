#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <map>

namespace qv {

namespace {

std::string_view typeName(UniformType type) {
    switch (type) {
        case UniformType::floatType:
            return "float";
        case UniformType::intType:
            return "int";
        case UniformType::boolType:
            return "bool";
        case UniformType::vec2:
            return "vec2";
        case UniformType::vec3:
            return "vec3";
        case UniformType::vec4:
            return "vec4";
    }
    return "float";
}

/// Words first, first + 1, … of the pushed block as one unsigned value or vector.
std::string pushedWords(int first, int count) {
    auto word = [](int index) { return fmt::format("qv_words{}.{}", index / 4, "xyzw"[index % 4]); };
    if (count == 1) return word(first);
    if (first / 4 == (first + count - 1) / 4) {
        return fmt::format("qv_words{}.{}", first / 4,
                           std::string_view("xyzw").substr(std::size_t(first % 4), count));
    }
    std::string list;
    for (int i = 0; i < count; ++i) list += fmt::format("{}{}", i == 0 ? "" : ", ", word(first + i));
    return fmt::format("uvec{}({})", count, list);
}

std::string unpacked(UniformType type, int offset) {
    const std::string words = pushedWords(offset, wordCount(type));
    if (type == UniformType::intType) return fmt::format("int({})", words);
    if (type == UniformType::boolType) return fmt::format("({} != 0u)", words);
    return fmt::format("uintBitsToFloat({})", words);
}

/// Builds the text of one pass.
class Composer {
  public:
    Composer(std::string name, std::span<const ShaderStage> stages, std::span<const PushedValue> values)
        : stages_(stages), values_(values) {
        shader_.declaration.name = std::move(name);
        shader_.declaration.pushedWords = 0;
    }

    TranslatedShader compose() {
        collectInputs();
        if (!shader_.error.empty()) return std::move(shader_);
        placeSizesAndValues();
        emitIncludes();
        for (std::size_t i = 0; i < stages_.size() && shader_.error.empty(); ++i) emitStage(int(i));
        if (shader_.error.empty() && shader_.declaration.pushedWords > kMaximumPushedWords) {
            shader_.error = fmt::format("{} words of uniforms and sizes are pushed, {} is the most",
                                        shader_.declaration.pushedWords, kMaximumPushedWords);
        }
        shader_.glsl = head() + text_ + mainFunction();
        return std::move(shader_);
    }

  private:
    using From = StageInput::From;

    /// Prefix of the stage's own names; a pass of one function keeps them.
    std::string prefix(int stage) const { return stages_.size() == 1 ? "" : fmt::format("s{}_", stage); }

    void collectInputs() {
        ShaderFunction& declaration = shader_.declaration;
        for (std::size_t i = 0; i < stages_.size(); ++i) {
            const ShaderSource& source = *stages_[i].source;
            for (std::size_t n = 0; n < source.inputs.size(); ++n) {
                const ShaderInput& read = source.inputs[n];
                const StageInput& from = stages_[i].inputs[n];
                if (from.from == From::stage && (read.anywhere || std::size_t(from.index) >= i)) {
                    shader_.error = fmt::format("{} reads input {} away from its own place", source.name, n);
                }
                if (read.sizeOffset >= 0) sizes_ = std::max(sizes_, from.size + 1);
                if (from.from != From::texture) continue;
                if (from.index >= kMaximumShaderInputs) {
                    shader_.error = fmt::format("the pass reads more than {} textures", kMaximumShaderInputs);
                    return;
                }
                if (declaration.inputs.size() <= std::size_t(from.index)) {
                    declaration.inputs.resize(std::size_t(from.index) + 1);
                }
                ShaderInput& texture = declaration.inputs[std::size_t(from.index)];
                texture.here |= read.here;
                texture.anywhere |= read.anywhere;
                if (read.sizeOffset >= 0) texture.sizeOffset = 2 * (from.size + 1);
            }
        }
    }

    int push(int words) {
        const int offset = shader_.declaration.pushedWords;
        shader_.declaration.pushedWords += words;
        return offset;
    }

    void placeSizesAndValues() {
        unpack_ += fmt::format("    qv_outputSize = {};\n", unpacked(UniformType::vec2, push(2)));
        for (int i = 0; i < sizes_; ++i) {
            text_ += fmt::format("vec2 qv_size{};\n", i);
            unpack_ += fmt::format("    qv_size{} = {};\n", i, unpacked(UniformType::vec2, push(2)));
        }
        for (std::size_t i = 0; i < values_.size(); ++i) {
            text_ += fmt::format("vec4 qv_value{};\n", i);
            const bool packed = values_[i] == PushedValue::eightBits;
            const int offset = push(packed ? 1 : 4);
            unpack_ += fmt::format("    qv_value{} = {};\n", i,
                                   packed ? fmt::format("unpackUnorm4x8({})", pushedWords(offset, 1))
                                          : unpacked(UniformType::vec4, offset));
        }
    }

    void emitIncludes() {
        text_ += "#define outputSize() qv_outputSize\n#define pixelHere() qv_pixel\n";
        std::map<std::string_view, std::string_view> emitted;
        for (const ShaderStage& stage : stages_) {
            for (const ShaderSource::Include& include : stage.source->includes) {
                const auto [first, isNew] = emitted.emplace(include.name, include.text);
                if (isNew) {
                    text_ += fmt::format("#line 1 \"{}\"\n{}\n", include.path, include.body);
                } else if (first->second != include.text) {
                    shader_.error = fmt::format("{} includes another {} than an earlier function",
                                                stage.source->name, include.name);
                }
            }
        }
    }

    void emitStage(int index) {
        const ShaderStage& stage = stages_[std::size_t(index)];
        const ShaderSource& source = *stage.source;
        emitAccessors(index);
        std::vector<std::string> names = source.globals;
        std::uint32_t given = stage.given;
        for (const ShaderSource::Uniform& uniform : source.uniforms) {
            emitUniform(index, uniform, (given & 1u) != 0);
            if (!uniform.isSelector) given >>= 1;
            names.push_back(uniform.name);
        }
        const std::string own = prefix(index);
        text_ += fmt::format("#line 1 \"{}\"\n{}\n", source.path,
                             own.empty() ? source.body : prefixNames(source.body, names, own));
        for (const char* macro : {"readHere", "readInput", "readPixel", "inputSize"}) {
            text_ += fmt::format("#undef {}\n", macro);
        }
        calls_ += fmt::format("    qv_result{0} = {1}{2}(qv_uv);\n", index, own, source.name);
        if (stage.isClamped)
            calls_ += fmt::format("    qv_result{0} = clamp(qv_result{0}, 0.0, 1.0);\n", index);
    }

    /// The words by which a stage reaches its inputs.
    void emitAccessors(int index) {
        const ShaderStage& stage = stages_[std::size_t(index)];
        text_ += fmt::format("vec4 qv_result{};\n", index);
        for (std::size_t n = 0; n < stage.inputs.size(); ++n) {
            const StageInput& from = stage.inputs[n];
            const auto define = [&](std::string_view word, std::string_view parameters,
                                    std::string_view text) {
                text_ += fmt::format("#define qv{}_{}{}{} {}\n", index, word, n, parameters, text);
            };
            if (from.from == From::texture) {
                define("here", "()", fmt::format("qv_fetch{}()", from.index));
                define("input", "(uv)", fmt::format("textureLod(qv_input{}, uv, 0.0)", from.index));
                define("pixel", "(p)", fmt::format("qv_texel(qv_input{}, p)", from.index));
            } else {
                const std::string color = from.from == From::stage   ? fmt::format("qv_result{}", from.index)
                                          : from.from == From::value ? fmt::format("qv_value{}", from.index)
                                                                     : "vec4(0.0)";
                define("here", "()", color);
                define("input", "(uv)", color);
                define("pixel", "(p)", color);
            }
            define("size", "",
                   from.from == From::nothing             ? "vec2(1.0)"
                   : from.from == From::stage             ? "qv_outputSize"
                   : from.size == StageInput::kOutputSize ? "qv_outputSize"
                                                          : fmt::format("qv_size{}", from.size));
        }
        text_ += fmt::format(
            "#define readHere(n) qv{0}_here##n()\n"
            "#define readInput(n, uv) qv{0}_input##n(uv)\n"
            "#define readPixel(n, p) qv{0}_pixel##n(p)\n"
            "#define inputSize(n) qv{0}_size##n\n",
            index);
    }

    void emitUniform(int index, const ShaderSource::Uniform& uniform, bool isGiven) {
        ShaderFunction& declaration = shader_.declaration;
        const ShaderSource& source = *stages_[std::size_t(index)].source;
        const std::string name = prefix(index) + uniform.name;
        const std::string publicName =
            stages_.size() == 1 ? uniform.name : fmt::format("{}.{}", index, uniform.name);
        text_ += fmt::format("#line {} \"{}\"\n", uniform.line, source.path);
        if (uniform.isSelector) {
            const int id = selectors_++;
            if (selectors_ > int(kResampleConstantBase)) {
                shader_.error = fmt::format("{} selectors are the most", kResampleConstantBase);
            }
            text_ += fmt::format("layout(constant_id = {}) const int {} = 0;\n", id, name);
            declaration.uniforms.push_back({publicName, uniform.type, true, id});
            return;
        }
        if (!isGiven) {
            text_ += fmt::format("const {0} {1} = {0}(0);\n", typeName(uniform.type), name);
            return;
        }
        const int offset = push(wordCount(uniform.type));
        text_ += fmt::format("{} {};\n", typeName(uniform.type), name);
        unpack_ += fmt::format("    {} = {};\n", name, unpacked(uniform.type, offset));
        declaration.uniforms.push_back({publicName, uniform.type, false, offset});
    }

    std::string head() const {
        std::string head =
            "#version 450\n"
            "#extension GL_GOOGLE_cpp_style_line_directive : require\n";
        for (int i = 0; i < (shader_.declaration.pushedWords + 3) / 4; ++i) {
            head += fmt::format("layout(location = {0}) flat in uvec4 qv_words{0};\n", i);
        }
        head +=
            "layout(location = 0) out vec4 qv_color;\n"
            "vec2 qv_outputSize, qv_uv;\n"
            "ivec2 qv_pixel;\n"
            "vec4 qv_texel(sampler2D image, ivec2 pixel) {\n"
            "    return texelFetch(image, clamp(pixel, ivec2(0), textureSize(image, 0) - 1), 0);\n"
            "}\n";
        for (std::size_t n = 0; n < shader_.declaration.inputs.size(); ++n) {
            const ShaderInput& input = shader_.declaration.inputs[n];
            if (input.here || input.anywhere) {
                head += fmt::format("layout(set = 0, binding = {0}) uniform sampler2D qv_input{0};\n", n);
            }
            if (!input.here) continue;
            head += fmt::format(
                "layout(constant_id = {1}) const int qv_resample{0} = 0;\n"
                "vec4 qv_fetch{0}() {{\n"
                "    if (qv_resample{0} != 0) return textureLod(qv_input{0}, qv_uv, 0.0);\n"
                "    return texelFetch(qv_input{0}, qv_pixel, 0);\n"
                "}}\n",
                n, kResampleConstantBase + n);
        }
        return head;
    }

    std::string mainFunction() const {
        return fmt::format(
            "void main() {{\n"
            "{}"
            "    qv_uv = gl_FragCoord.xy / qv_outputSize;\n"
            "    qv_pixel = ivec2(gl_FragCoord.xy);\n"
            "{}"
            "    qv_color = qv_result{};\n"
            "}}\n",
            unpack_, calls_, stages_.size() - 1);
    }

    std::span<const ShaderStage> stages_;
    std::span<const PushedValue> values_;
    int sizes_ = 0;  ///< pushed besides the output's
    TranslatedShader shader_;
    std::string text_, unpack_, calls_;
    int selectors_ = 0;
};

}  // namespace

TranslatedShader translateShader(const ShaderSource& source) {
    ShaderStage stage{&source, {}};
    int sizes = 0;
    for (std::size_t n = 0; n < source.inputs.size(); ++n) {
        const int size = source.inputs[n].sizeOffset >= 0 ? sizes++ : StageInput::kOutputSize;
        stage.inputs.push_back({StageInput::From::texture, int(n), size});
    }
    TranslatedShader shader = composeShader(source.name, {&stage, 1});
    shader.declaration.source = source.archive();
    return shader;
}

TranslatedShader composeShader(std::string name, std::span<const ShaderStage> stages,
                               std::span<const PushedValue> values) {
    return Composer(std::move(name), stages, values).compose();
}

}  // namespace qv
