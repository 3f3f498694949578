#include "Platform/ImageGraph/ShaderLibrary.h"

#include <gmock/gmock.h>

#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"

namespace qv {
namespace {

std::vector<ShaderFunction> testFunctions() {
    ShaderFunction a;
    a.name = "A";
    a.source = "vec4 A(vec2 uv) { return vec4(uv, 0, 1); }";
    a.uniforms = {{"x", UniformType::floatType, false, 4}, {"mode", UniformType::intType, true, 0}};
    a.inputs = {{true, false, 2}, {false, true, -1}};
    a.pushedWords = 5;
    a.code = {0x07230203, 1, 2, 3, 0xFFFFFFFF};
    ShaderFunction stage;
    stage.name = "sprite.vert";
    stage.code = {0x07230203};
    return {a, stage};
}

TEST(ShaderLibrary, RefusesDamagedBytes) {
    const std::vector<std::byte> good = serializeShaderLibrary(testFunctions());
    std::string error;
    EXPECT_NE(ShaderLibrary::parse(good, &error), nullptr) << error;
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_EQ(ShaderLibrary::parse({good.data(), size}, &error), nullptr) << size;
        EXPECT_NE(error, "");
    }
    for (std::size_t at = 0; at < good.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            std::vector<std::byte> bytes = good;
            bytes[at] ^= std::byte(1 << bit);
            EXPECT_EQ(ShaderLibrary::parse(bytes), nullptr) << at;
        }
    }
    std::vector<std::byte> other = good;
    other[4] = std::byte(9);
    EXPECT_EQ(ShaderLibrary::parse(other, &error), nullptr);
    EXPECT_THAT(error, testing::HasSubstr("version 9"));
}

// A whole file whose sums are right may still say nonsense.
TEST(ShaderLibrary, RefusesImplausibleDeclarations) {
    for (int what = 0; what < 7; ++what) {
        auto functions = testFunctions();
        ShaderFunction& a = functions[0];
        if (what == 0) a.pushedWords = kMaximumPushedWords + 1;
        if (what == 1) a.uniforms[0].offset = 5;
        if (what == 2) a.uniforms[0].type = UniformType(17);
        if (what == 3) a.inputs[0].sizeOffset = 4;
        if (what == 4) a.code[0] = 0;
        if (what == 5) a.name.clear();
        if (what == 6) a.uniforms[0].type = UniformType::vec2;  // its second word lies outside
        EXPECT_EQ(ShaderLibrary::parse(serializeShaderLibrary(functions)), nullptr) << what;
    }
}

// Every function of the platform can be translated again from what its library keeps, to the same
// declaration.
TEST(ShaderLibrary, PlatformFunctionsKeepTheirSource) {
    const auto& library = ShaderLibrary::platform();
    ASSERT_GT(library->functionNames().size(), 30u);
    for (const std::string& name : library->functionNames()) {
        const auto function = library->function(name);
        if (function->source.empty()) {
            EXPECT_NE(name.find('.'), std::string::npos) << name;
            continue;
        }
        std::vector<std::string> errors;
        const auto source = parseArchivedShader(name, function->source, errors);
        ASSERT_TRUE(source) << errors.front();
        const ShaderFunction again = translateShader(*source).declaration;
        EXPECT_EQ(again.pushedWords, function->pushedWords) << name;
        EXPECT_EQ(again.uniforms.size(), function->uniforms.size()) << name;
        EXPECT_EQ(again.inputs.size(), function->inputs.size()) << name;
    }
}

}  // namespace
}  // namespace qv
