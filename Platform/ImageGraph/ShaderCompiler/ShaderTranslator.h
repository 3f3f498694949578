#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "Platform/ImageGraph/ShaderCompiler/ShaderSource.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

/// What a stage of a pass reads as one of its inputs.
struct StageInput {
    enum class From {
        nothing,  ///< a missing image: transparent, one pixel
        texture,  ///< of the pass
        stage,    ///< the result of an earlier stage, which can only be read with readHere
        value     ///< one colour for all pixels
    };
    static constexpr int kOutputSize = -1;

    From from = From::nothing;
    int index = 0;  ///< of the texture, stage or value
    int size =
        kOutputSize;  ///< which pushed size a texture or value has; what a stage gives has the output's
    bool operator==(const StageInput&) const = default;
};

/// One function of a pass.
struct ShaderStage {
    const ShaderSource* source;
    std::vector<StageInput> inputs;  ///< one for each of the source's
    /// Bit n: the source's uniform n, selectors not counted, has a value; the others are 0 and take no words.
    std::uint32_t given = ~std::uint32_t(0);
    /// Readers see the result as an 8-bit texture would have kept it.
    bool storesEightBits = false;
};

/// How a value is pushed.
enum class PushedValue {
    eightBits,  ///< one word, a byte a component, red lowest
    floats      ///< four words
};

/// Vulkan GLSL of a fragment stage, and what it declares (all but the code). `error` is empty unless the
/// stages cannot be one pass, which then says why.
struct TranslatedShader {
    std::string glsl;
    ShaderFunction declaration;
    std::string error;
};

/// A pass of one function; its inputs are the textures of the same numbers.
TranslatedShader translateShader(const ShaderSource& source);

/// A pass of several functions; the colour is the last stage's result. The pushed words are the output's
/// size, the sizes that inputs refer to, the values, and each stage's uniforms in turn, without gaps; the
/// constants are each stage's selectors in turn. Both are named "stage.name" with the stage's number. Text
/// that repeats what an earlier stage has included is left out.
TranslatedShader composeShader(std::string name, std::span<const ShaderStage> stages,
                               std::span<const PushedValue> values = {});

}  // namespace qv
