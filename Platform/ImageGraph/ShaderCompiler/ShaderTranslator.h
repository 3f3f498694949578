#pragma once

#include <span>
#include <string>
#include <vector>

#include "Platform/ImageGraph/ShaderCompiler/ShaderSource.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

/// One function of a pass, and where its inputs come from.
struct ShaderStage {
    /// A texture of the pass, or the result of an earlier stage (which can only be read with readHere).
    /// Exactly one is not −1.
    struct Input {
        int texture = -1;
        int stage = -1;
    };
    const ShaderSource* source;
    std::vector<Input> inputs;  ///< one for each of the source's
    bool clampsResult = false;  ///< readers see 0..1, as if the result had been stored in an 8-bit texture
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

/// A pass of several functions; the colour is the last stage's result. Uniforms and selectors are named
/// "stage.name" with the stage's number. Text that repeats what an earlier stage has included is left out.
TranslatedShader composeShader(std::string name, std::span<const ShaderStage> stages);

}  // namespace qv
