#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "Platform/ImageGraph/ShaderCompiler/ShaderSource.h"
#include "Platform/ImageGraph/ShaderLibrary.h"
#include "Platform/ImageGraph/StageInput.h"

namespace qv {

/// One function of a pass.
struct ShaderStage {
    const ShaderSource* source;
    std::vector<StageInput> inputs;  ///< one for each of the source's
    /// Bit n: the source's uniform n, selectors not counted, has a value; the others are 0 and take no words.
    std::uint32_t given = ~std::uint32_t(0);
    /// Readers see the result within 0..1, as an 8-bit texture would have kept it, but not rounded.
    bool isClamped = false;
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
