#include "Platform/ImageGraph/ShaderLibrary.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

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

TEST(ShaderLibrary, ReadsBackWhatWasWritten) {
    const auto functions = testFunctions();
    std::string error;
    const auto library = ShaderLibrary::parse(serializeShaderLibrary(functions), &error);
    ASSERT_NE(library, nullptr) << error;
    EXPECT_THAT(library->functionNames(), testing::ElementsAre("A", "sprite.vert"));
    const auto a = library->function("A");
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->source, functions[0].source);
    EXPECT_EQ(a->code, functions[0].code);
    EXPECT_EQ(a->pushedWords, 5);
    ASSERT_EQ(a->uniforms.size(), 2u);
    EXPECT_EQ(a->uniform("x")->offset, 4);
    EXPECT_TRUE(a->uniform("mode")->isSelector);
    EXPECT_EQ(a->uniform("y"), nullptr);
    ASSERT_EQ(a->inputs.size(), 2u);
    EXPECT_EQ(a->inputs[0].sizeOffset, 2);
    EXPECT_TRUE(a->inputs[1].anywhere && a->inputs[1].sizeOffset == -1);
    EXPECT_EQ(library->function("B"), nullptr);
    EXPECT_NE(ShaderLibrary::parse(serializeShaderLibrary({})), nullptr);
}

TEST(ShaderLibrary, RefusesDamagedBytes) {
    const std::vector<std::byte> good = serializeShaderLibrary(testFunctions());
    std::string error;
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

TEST(ShaderLibrary, OpensFilesOnceAndNamesTheCauseOfFailure) {
    const auto folder = std::filesystem::path(testing::TempDir());
    const std::string good = folder / "qv-good.shaderlib", bad = folder / "qv-bad.shaderlib";
    const auto bytes = serializeShaderLibrary(testFunctions());
    std::ofstream(good, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    std::ofstream(bad) << "no library";
    std::string error;
    const auto library = ShaderLibrary::open(good, &error);
    ASSERT_NE(library, nullptr) << error;
    EXPECT_EQ(ShaderLibrary::open(good), library);
    EXPECT_EQ(ShaderLibrary::open(bad, &error), nullptr);
    EXPECT_EQ(error, bad + ": not a shader library");
    EXPECT_EQ(ShaderLibrary::open(folder / "qv-none.shaderlib", &error), nullptr);
    EXPECT_THAT(error, testing::HasSubstr("qv-none.shaderlib: cannot be read"));
    std::filesystem::remove(good);
    std::filesystem::remove(bad);
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
