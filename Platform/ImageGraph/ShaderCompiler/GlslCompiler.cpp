#include "Platform/ImageGraph/ShaderCompiler/GlslCompiler.h"

#include <fmt/format.h>
#include <glslang/Include/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>
#include <glslang/build_info.h>

namespace qv {

namespace {

constexpr int kGlslVersion = 450;
constexpr auto kRules = EShMessages(EShMsgSpvRules | EShMsgVulkanRules);

/// Initialised once and never let go: another thread may be compiling when the process ends.
void initialise() {
    static const bool done = glslang::InitializeProcess();
    (void)done;
}

/// What our stages may use; the compiler looks at few of the other limits.
TBuiltInResource limits() {
    TBuiltInResource limits{};
    limits.maxTextureImageUnits = limits.maxCombinedTextureImageUnits = 32;
    limits.maxDrawBuffers = 1;
    limits.maxVaryingComponents = limits.maxFragmentInputComponents = 128;
    limits.limits.nonInductiveForLoops = limits.limits.whileLoops = limits.limits.doWhileLoops = true;
    limits.limits.generalUniformIndexing = limits.limits.generalAttributeMatrixVectorIndexing = true;
    limits.limits.generalVaryingIndexing = limits.limits.generalSamplerIndexing = true;
    limits.limits.generalVariableIndexing = limits.limits.generalConstantMatrixVectorIndexing = true;
    return limits;
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

}  // namespace

std::vector<std::uint32_t> compileFragmentGlsl(const std::string& text, std::string* error) {
    initialise();
    const auto refuse = [&](const std::string& cause) {
        if (error) *error = firstLine(cause);
        return std::vector<std::uint32_t>();
    };
    const char* strings[] = {text.c_str()};
    glslang::TShader shader(EShLangFragment);
    shader.setStrings(strings, 1);
    shader.setEnvInput(glslang::EShSourceGlsl, EShLangFragment, glslang::EShClientVulkan, 100);
    shader.setEnvClient(glslang::EShClientVulkan, glslang::EShTargetVulkan_1_1);
    shader.setEnvTarget(glslang::EShTargetSpv, glslang::EShTargetSpv_1_3);
    static const TBuiltInResource kLimits = limits();
    if (!shader.parse(&kLimits, kGlslVersion, false, kRules)) return refuse(shader.getInfoLog());
    glslang::TProgram program;
    program.addShader(&shader);
    if (!program.link(kRules)) return refuse(program.getInfoLog());

    // Drivers optimise what they compile; doing it here as well would only take time.
    glslang::SpvOptions options;
    options.disableOptimizer = true;
    spv::SpvBuildLogger logger;
    std::vector<unsigned> code;
    glslang::GlslangToSpv(*program.getIntermediate(EShLangFragment), code, &logger, &options);
    if (code.empty()) return refuse("the compiler gave no code");
    return code;
}

std::string glslCompilerVersion() {
    const glslang::Version version = glslang::GetVersion();
    return fmt::format("glslang {}.{}.{}", version.major, version.minor, version.patch);
}

}  // namespace qv
