// The dialect's parser and translator. The text ends at a zero byte; what follows are the include files
// a.glsl, b.glsl, …

#include <vector>

#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"
#include "Tests/Fuzz/FuzzInput.h"

using namespace qv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> files(1);
    for (char c : std::string_view(reinterpret_cast<const char*>(data), size)) {
        if (c)
            files.back() += c;
        else
            files.emplace_back();
    }
    const auto include = [&](std::string_view name) -> std::optional<ShaderInclude> {
        const std::size_t index =
            name.ends_with(".glsl") && name.size() == 6 ? std::size_t(name[0] - 'a') + 1 : 0;
        if (index == 0 || index >= files.size()) return std::nullopt;
        return ShaderInclude{std::string(name), files[index]};
    };
    std::vector<std::string> errors;
    const auto source = parseShaderSource("Test", "Test.glsl", files[0], include, errors);
    fuzz::require(source.has_value() == errors.empty(), "a refused text has an error, a good one none");
    if (!source) {
        parseArchivedShader("Test", files[0], errors);
        return 0;
    }
    const TranslatedShader shader = translateShader(*source);
    fuzz::require(shader.error.empty() == !shader.glsl.empty(), "a shader, or why there is none");
    const auto again = parseArchivedShader("Test", source->archive(), errors);
    fuzz::require(again.has_value(), "what was archived can be read");
    fuzz::require(translateShader(*again).glsl == shader.glsl, "what was archived is the same shader");

    const std::size_t inputs = source->inputs.size();
    ShaderStage stages[2] = {{&*source, std::vector<StageInput>(inputs)},
                             {&*source, std::vector<StageInput>(inputs)}};
    if (inputs > 0) stages[1].inputs[0] = {StageInput::From::stage, 0};
    stages[0].isClamped = true;
    composeShader("Both", stages);
    return 0;
}
