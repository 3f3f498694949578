#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"

#include <gmock/gmock.h>

namespace qv {
namespace {

using testing::HasSubstr;

std::optional<ShaderInclude> testInclude(std::string_view name) {
    if (name == "shape.glsl")
        return ShaderInclude{"inc/shape.glsl",
                             "#include \"base.glsl\"\nfloat shape(float x) { return base(x); }\n"};
    if (name == "base.glsl") return ShaderInclude{"inc/base.glsl", "float base(float x) { return x; }\n"};
    if (name == "reads.glsl")
        return ShaderInclude{"inc/reads.glsl", "\nvec4 reads() { return readHere(0); }\n"};
    return std::nullopt;
}

struct Parsed {
    std::optional<ShaderSource> source;
    std::vector<std::string> errors;
};

Parsed parse(std::string text, std::string name = "Test") {
    Parsed parsed;
    parsed.source =
        parseShaderSource(name, "dir/" + name + ".glsl", std::move(text), testInclude, parsed.errors);
    return parsed;
}

TEST(ShaderTranslator, PacksSizesAndUniformsTightly) {
    const Parsed parsed = parse(R"(
uniform float amount;      // word 6
uniform vec3 color;        // 7 to 9, across two vectors
selector int mode;
uniform bool flag; uniform int count, more;
uniform vec4 last;
vec4 Test(vec2 uv) {
    return readHere(0) + readInput(2, uv * inputSize(2)) * inputSize(0).x + readPixel(1, pixelHere());
}
)");
    ASSERT_THAT(parsed.errors, testing::IsEmpty());
    const TranslatedShader shader = translateShader(*parsed.source);
    EXPECT_EQ(shader.error, "");
    const ShaderFunction& f = shader.declaration;
    ASSERT_EQ(f.inputs.size(), 3u);
    EXPECT_EQ(f.inputs[0].sizeOffset, 2);
    EXPECT_EQ(f.inputs[1].sizeOffset, -1);
    EXPECT_EQ(f.inputs[2].sizeOffset, 4);
    EXPECT_TRUE(f.inputs[0].here && f.readsOnlyHere(0));
    EXPECT_TRUE(!f.inputs[1].here && f.inputs[1].anywhere);
    EXPECT_FALSE(f.readsOnlyHere(2));

    const std::vector<std::pair<std::string, int>> offsets{{"amount", 6}, {"color", 7}, {"flag", 10},
                                                           {"count", 11}, {"more", 12}, {"last", 13}};
    for (const auto& [name, offset] : offsets) {
        const ShaderUniform* uniform = f.uniform(name);
        ASSERT_NE(uniform, nullptr) << name;
        EXPECT_EQ(uniform->offset, offset) << name;
        EXPECT_FALSE(uniform->isSelector);
    }
    ASSERT_NE(f.uniform("mode"), nullptr);
    EXPECT_TRUE(f.uniform("mode")->isSelector);
    EXPECT_EQ(f.uniform("mode")->offset, 0);
    EXPECT_EQ(f.pushedWords, 17);
}

TEST(ShaderTranslator, IncludesEachFileOnceAfterWhatItNeeds) {
    const std::string text =
        "#include \"shape.glsl\"\n#include \"base.glsl\"\nuniform float a;\n"
        "vec4 Test(vec2 uv) { return vec4(shape(a)); }\n";
    const Parsed parsed = parse(text);
    ASSERT_THAT(parsed.errors, testing::IsEmpty());
    ASSERT_EQ(parsed.source->includes.size(), 2u);
    EXPECT_EQ(parsed.source->includes[0].name, "base.glsl");

    std::vector<std::string> errors;
    EXPECT_FALSE(parseArchivedShader("Test", "#pragma qv_include x\ncut off", errors));
    EXPECT_EQ(errors.size(), 1u);
}

TEST(ShaderTranslator, RefusesMistakesWithFileAndLine) {
    struct Case {
        const char* text;
        const char* expected;
    };
    const std::string good = "\nvec4 Test(vec2 uv) { return vec4(0.0); }\n";
    const Case cases[] = {
        {"\nuniform mat3 m;", "dir/Test.glsl:2: error: uniform \"m\" has the unknown type mat3"},
        {"uniform float a;\nuniform int a;", "dir/Test.glsl:2: error: \"a\" is declared twice"},
        {"selector float s;", "dir/Test.glsl:1: error: selector \"s\" is of type float, not int"},
        {"uniform float;", "a uniform is declared outside functions as"},
        {"uniform float a", "a uniform is declared outside functions as"},
        {"uniform float a,;", "a uniform is declared outside functions as"},
        {"uniform float uv;", "\"uv\" is the function's own name or parameter"},
        {"uniform float qv_a;", "names that begin with gl_ or qv_"},
        {"float f() {\n uniform float a; return a; }",
         "dir/Test.glsl:2: error: a uniform is declared outside"},
        {"\n\nfloat f() { return dFdx(1.0); }", "dir/Test.glsl:3: error: dFdx: not available"},
        {"void f() { discard; }", "dir/Test.glsl:1: error: discard: not available"},
        {"vec4 f(vec2 p) { return texture(qx, p); }", "texture: inputs are read through readHere"},
        {"vec2 f() { return gl_FragCoord.xy; }", "gl_FragCoord: names that begin"},
        {"vec4 f(int i) { return readHere(i); }", "readHere names its input by a whole number, 0 to 15"},
        {"vec4 f(vec2 p) { return readInput(16, p); }", "readInput names its input by a whole number"},
        {"vec4 f() { return readHere(0x1); }", "readHere names its input by a whole number"},
        {"#define A readHere", "readHere names its input by a whole number"},
        {"#include \"none.glsl\"", "dir/Test.glsl:1: error: include file \"none.glsl\" is not found"},
        {"#include <x>", "an include is written #include \"name.glsl\""},
        {"float f;\n#include \"base.glsl\"", "dir/Test.glsl:2: error: includes come before definitions"},
        {"#include \"reads.glsl\"", "inc/reads.glsl:2: error: readHere: an include file reads no inputs"},
        {"#version 450", "dir/Test.glsl:1: error: #version is not available"},
        {"layout(location = 0) in vec2 x;", "layout: the interface of the stage"},
    };
    for (const Case& c : cases) {
        const Parsed parsed = parse(c.text + good);
        EXPECT_FALSE(parsed.source) << c.text;
        EXPECT_THAT(parsed.errors, testing::Contains(HasSubstr(c.expected))) << c.text;
    }
    EXPECT_THAT(parse("vec4 Other(vec2 uv) { return vec4(0.0); }").errors,
                testing::Contains(HasSubstr("the function vec4 Test(vec2 uv) is missing")));
    // Comments, members and longer names are no mistakes.
    EXPECT_THAT(
        parse("// discard, texture(\n/* readHere(i)\n uniform */ struct S { float texture_; };" + good)
            .errors,
        testing::IsEmpty());
}

TEST(ShaderTranslator, PushesAtMost32Words) {
    std::string text =
        "uniform vec4 a, b, c, d, e, f, g;\nuniform vec2 h;\nvec4 Test(vec2 uv) { return readHere(0); }\n";
    EXPECT_EQ(translateShader(*parse(text).source).declaration.pushedWords, 32);
    EXPECT_EQ(translateShader(*parse(text).source).error, "");
    EXPECT_THAT(translateShader(*parse("uniform bool i;" + text).source).error, HasSubstr("33 words"));
}

TEST(ShaderTranslator, ComposesStagesUnderTheirOwnNames) {
    using From = StageInput::From;
    const Parsed first = parse(
        "uniform float a;\nfloat f(float x) { return x * a; }\nvec4 First(vec2 uv) { return readHere(0) * "
        "f(uv.x); }\n",
        "First");
    const Parsed second = parse(
        "uniform float a;\nselector int s;\n#define K 2.0\nfloat f(float x) { return x + a; }\n"
        "vec4 Second(vec2 uv) { return (readHere(0) + readInput(1, uv).a * K) * inputSize(0).x; }\n",
        "Second");
    ASSERT_TRUE(first.source && second.source);
    const ShaderStage stages[] = {{&*first.source, {{From::texture, 0}}},
                                  {&*second.source, {{From::stage, 0}, {From::texture, 1}}}};
    const TranslatedShader shader = composeShader("Both", stages);
    EXPECT_EQ(shader.error, "");
    EXPECT_EQ(shader.declaration.pushedWords, 4);
    EXPECT_NE(shader.declaration.uniform("0.a"), nullptr);
    EXPECT_NE(shader.declaration.uniform("1.a"), nullptr);
    EXPECT_TRUE(shader.declaration.inputs[0].here);
    EXPECT_TRUE(shader.declaration.inputs[1].anywhere);
    EXPECT_THAT(shader.glsl, HasSubstr("float s0_f(float x) { return x * s0_a; }"));
    EXPECT_THAT(shader.glsl, HasSubstr("uv).a * s1_K"));  // a member keeps its name

    // What reads elsewhere cannot follow in the same pass.
    const ShaderStage wrong[] = {{&*first.source, {{From::texture, 0}}},
                                 {&*second.source, {{From::texture, 1}, {From::stage, 0}}}};
    EXPECT_THAT(composeShader("Wrong", wrong).error,
                HasSubstr("Second reads input 1 away from its own place"));
}

}  // namespace
}  // namespace qv
