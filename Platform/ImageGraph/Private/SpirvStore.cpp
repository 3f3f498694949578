#include "Platform/ImageGraph/Private/SpirvStore.h"

#include "Platform/ImageGraph/ShaderCompiler/GlslCompiler.h"
#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"

namespace qv {

std::vector<std::uint32_t> SpirvStore::make(const std::string& glsl, std::string* error) {
    const std::string compiler = glslCompilerVersion();
    std::vector<std::uint32_t> code = cache_.load(glsl, compiler);
    if (!code.empty()) return code;
    code = compileFragmentGlsl(glsl, error);
    if (code.empty()) return code;
    ++compiled_;
    cache_.store(glsl, compiler, code);
    return code;
}

std::vector<std::uint32_t> SpirvStore::make(const ShaderFunction& function, std::string* error) {
    if (function.source.empty()) return function.code;  // composed, and so not optimised either
    std::vector<std::string> errors;
    const auto source = parseArchivedShader(function.name, function.source, errors);
    TranslatedShader shader;
    if (source)
        shader = translateShader(*source);
    else
        shader.error = errors.empty() ? "its source cannot be read" : errors.front();
    if (shader.error.empty()) return make(shader.glsl, error);
    if (error) *error = shader.error;
    return {};
}

}  // namespace qv
