// Lanes that go different ways: each shader against the same formula for one pixel at a time.

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "Platform/ImageGraph/ShaderCompiler/GlslCompiler.h"
#include "Tests/Native/KernelRun.h"
#include "Tests/Support/Picture.h"

namespace qv::native::test {
namespace {

using qv::test::Pixel;

/// Not a multiple of a group, and more than two.
constexpr int kWidth = 41, kHeight = 5;

/// What every shader here starts with: a whole number that differs between pixels, and some that do not.
constexpr const char* kHead = R"(#version 450
layout(location = 0) flat in uvec4 words;
layout(location = 0) out vec4 color;
layout(constant_id = 1) const int mode = 0;
layout(constant_id = 66) const int resampled = 0;
layout(set = 0, binding = 0) uniform sampler2D image;
#define X int(gl_FragCoord.x)
#define Y int(gl_FragCoord.y)
#define N int(words.y)
)";

struct Case {
    const char* name;
    const char* body;  ///< GLSL of a function f() and what it needs
    std::function<Pixel(int x, int y)> expected;
};

void PrintTo(const Case& one, std::ostream* out) {
    *out << one.name;
}

float texel(int x, int y) {
    return float((x * 7 + y * 31) % 256) / 255;
}

class ControlFlow : public testing::TestWithParam<Case> {};

TEST_P(ControlFlow, GivesWhatOnePixelAtATimeGives) {
    const std::string text = fmt::format("{}{}\nvoid main() {{ color = f(); }}\n", kHead, GetParam().body);
    std::string error;
    const auto code = compileFragmentGlsl(text, &error);
    ASSERT_FALSE(code.empty()) << error;
    Image input(TextureFormat::rgba8, kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            input.row<std::uint8_t>(y)[4 * x] = std::uint8_t(std::lround(texel(x, y) * 255));
        }
    }
    std::array<std::uint32_t, kMaximumPushedWords> words{};
    words[1] = 6;
    const std::int32_t selectors[]{0, 3};
    for (NativeTarget target : runnableTargets()) {
        SCOPED_TRACE(nativeTargetName(target));
        const auto kernel =
            linkedKernel({"test", code, {TextureFormat::rgba8}, TextureFormat::rgba32Float}, target);
        ASSERT_TRUE(kernel);
        Image output(TextureFormat::rgba32Float, kWidth, kHeight);
        const NativeImage source = input.native();
        const NativeKernelArguments arguments{.words = words.data(),
                                              .selectors = selectors,
                                              .resampled = 4,
                                              .inputs = &source,
                                              .target = output.native()};
        kernel->function()(&arguments, 0, 2);
        kernel->function()(&arguments, 2, kHeight);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const Pixel expected = GetParam().expected(x, y);
                for (std::size_t c = 0; c < 4; ++c) {
                    ASSERT_NEAR(output.row<float>(y)[std::size_t(4 * x) + c], expected[c],
                                1e-5 * std::max(1.0f, std::abs(expected[c])))
                        << "component " << c << " at " << x << "," << y;
                }
            }
        }
    }
}

const Case kCases[] = {
    {"NestedLoopsLeftInEveryWay", R"(
vec4 f() {
    int sum = 0, turns = 0;
    for (int i = 0; i < 9; ++i) {
        if (i == X % 4) continue;
        for (int j = 0; j < X % 7 + i; ++j) {
            if ((i + j) % 5 == 3) continue;
            if (j > Y + 2) break;
            if (sum > 60) return vec4(-1.0, i, j, sum);
            sum += i * j + 1;
        }
        ++turns;
        if (sum % 11 == 10) break;
    }
    return vec4(sum, turns, 0.0, 1.0);
})",
     [](int x, int y) -> Pixel {
         int sum = 0, turns = 0;
         for (int i = 0; i < 9; ++i) {
             if (i == x % 4) continue;
             for (int j = 0; j < x % 7 + i; ++j) {
                 if ((i + j) % 5 == 3) continue;
                 if (j > y + 2) break;
                 if (sum > 60) return {-1, float(i), float(j), float(sum)};
                 sum += i * j + 1;
             }
             ++turns;
             if (sum % 11 == 10) break;
         }
         return {float(sum), float(turns), 0, 1};
     }},
    {"WhileAndDoWhileKeepWhatTheyLeftOffWith", R"(
int steps(int n) {
    int count = 0;
    while (n != 1 && count < 40) {
        n = n % 2 == 0 ? n / 2 : 3 * n + 1;
        ++count;
    }
    return count;
}
vec4 f() {
    int again = 0, total = 0, last = 0;
    do {
        total += steps(X + again + 1);
        last = again * X;
        ++again;
    } while (again < X % 3 + 1);
    return vec4(total, last, again, steps(N));
})",
     [](int x, int) -> Pixel {
         const auto steps = [](int n) {
             int count = 0;
             for (; n != 1 && count < 40; ++count) n = n % 2 == 0 ? n / 2 : 3 * n + 1;
             return count;
         };
         int again = 0, total = 0, last = 0;
         do {
             total += steps(x + again + 1);
             last = again * x;
             ++again;
         } while (again < x % 3 + 1);
         return {float(total), float(last), float(again), float(steps(6))};
     }},
    {"EarlyReturnsFromNestedCalls", R"(
float inner(float v) {
    if (v > 20.0) return 20.0;
    if (v < 3.0) { if (v < 1.0) return -1.0; else return 3.0; }
    return v;
}
vec2 outer(int v) {
    float a = inner(float(v));
    if (a < 0.0) return vec2(100.0);
    a += inner(a * 2.0);
    return vec2(a, inner(float(Y)));
}
vec4 f() { return vec4(outer(X), outer(N)); })",
     [](int x, int y) -> Pixel {
         const auto inner = [](float v) { return v > 20 ? 20.0f : v < 1 ? -1.0f : v < 3 ? 3.0f : v; };
         const auto outer = [&](int v) {
             const float a = inner(float(v));
             if (a < 0) return std::pair(100.0f, 100.0f);
             return std::pair(a + inner(a * 2), inner(float(y)));
         };
         const auto [a, b] = outer(x);
         const auto [c, d] = outer(6);
         return {a, b, c, d};
     }},
    {"UniformBranchesAndConstants", R"(
vec4 f() {
    vec4 v = vec4(0.0);
    if (mode == 3) { if (N < 5) return vec4(9.0); v.x = float(X); } else v.x = -1.0;
    for (int i = 0; i < N; ++i) { if (i == mode + 1) break; v.y += float(i); }
    if (resampled == 1) v.z = texelFetch(image, ivec2(gl_FragCoord.xy), 0).r;
    v.w = texelFetch(image, clamp(ivec2(gl_FragCoord.xy) + ivec2(N, -1), ivec2(0), textureSize(image, 0) - 1), 0).r;
    return v;
})",
     [](int x, int y) -> Pixel {
         return {float(x), 6, texel(x, y), texel(std::min(x + 6, kWidth - 1), std::max(y - 1, 0))};
     }},
    {"ArraysReadAndWrittenAtVaryingPlaces", R"(
const float table[5] = float[5](2.0, 3.0, 5.0, 7.0, 11.0);
vec4 f() {
    float a[4] = float[4](1.0, 2.0, 3.0, 4.0);
    a[X % 4] += 10.0;
    a[N % 4] *= 2.0;
    vec2 pairs[3];
    for (int i = 0; i < 3; ++i) pairs[i] = vec2(i, X * i);
    if (X % 3 == 1) pairs[Y % 3].y = -5.0;
    vec4 v = vec4(0.0);
    v[X % 3] = 8.0;
    return vec4(table[X % 5] + table[N - 2], a[(X + 1) % 4] + a[X % 4] + a[2], pairs[X % 3].y, v[X % 2]);
})",
     [](int x, int y) -> Pixel {
         const float table[]{2, 3, 5, 7, 11};
         float a[]{1, 2, 3, 4};
         a[x % 4] += 10;
         a[2] *= 2;
         float second[]{0, float(x), float(2 * x)};
         if (x % 3 == 1) second[y % 3] = -5;
         return {table[x % 5] + 11, a[(x + 1) % 4] + a[x % 4] + a[2], second[x % 3],
                 x % 3 == x % 2 ? 8.0f : 0.0f};
     }},
    {"LogicalOperatorsLeaveOutWhatNeedNotBeKnown", R"(
int calls = 0;
bool odd(int v) { ++calls; return (v & 1) != 0; }
vec4 f() {
    bool a = odd(X) && odd(X / 2) || odd(Y);
    int first = calls;
    bool b = N > 3 && odd(X / 3);
    float c = a ? (b ? 1.0 : 2.0) : float(calls);
    return vec4(a ? 1.0 : 0.0, first, calls, c);
})",
     [](int x, int y) -> Pixel {
         int calls = 0;
         const auto odd = [&](int v) { return ++calls, (v & 1) != 0; };
         const bool a = (odd(x) && odd(x / 2)) || odd(y);
         const int first = calls;
         const bool b = odd(x / 3);
         return {a ? 1.0f : 0.0f, float(first), float(calls), a ? (b ? 1.0f : 2.0f) : float(calls)};
     }},
    {"Switches", R"(
int pick(int v) {
    int r = 0;
    switch (v) {
        case 0: r += 1;
        case 1: r += 10; break;
        default: r += 100;
        case 5: case 6: r += 1000; if (Y == 2) break; r += 5; break;
        case 2: return -7;
        case 3: for (int i = 0; i < 9; ++i) { if (i == Y) break; r += i; } break;
    }
    return r * 2;
}
vec4 f() { return vec4(pick(X % 8), pick(N), pick(Y), 1.0); })",
     [](int x, int y) -> Pixel {
         const auto pick = [&](int v) {
             int r = 0;
             switch (v) {
                 case 0:
                     r += 1;
                     [[fallthrough]];
                 case 1:
                     r += 10;
                     break;
                 default:
                     r += 100;
                     [[fallthrough]];
                 case 5:
                 case 6:
                     r += y == 2 ? 1000 : 1005;
                     break;
                 case 2:
                     return -7.0f;
                 case 3:
                     for (int i = 0; i < 9 && i != y; ++i) r += i;
             }
             return float(r * 2);
         };
         return {pick(x % 8), pick(6), pick(y), 1};
     }},
    {"IntegersThatOverflowOrDivideByNothing", R"(
vec4 f() {
    int zero = N - 6;
    uint big = uint(X) * 0x9E3779B9u ^ (uint(Y) << (uint(X) & 31u));
    int safe = X / zero + X % zero;
    return vec4(big >> 8, int(1e20 * float(X + 1)), bitfieldExtract(X - 9, 1, 3), safe == safe ? (X + 1) % 5 : -1);
})",
     [](int x, int y) -> Pixel {
         const std::uint32_t big = std::uint32_t(x) * 0x9E3779B9u ^ (std::uint32_t(y) << (x & 31));
         const int field = int(std::uint32_t(x - 9) << 28) >> 29;
         return {float(big >> 8), 2147483648.0f, float(field), float((x + 1) % 5)};
     }},
    {"MatricesAndVectors", R"(
vec4 f() {
    float t = float(X) * 0.1;
    mat2 m = mat2(cos(t), sin(t), -sin(t), cos(t));
    mat3 a = mat3(1.0, 2.0, 0.5, 0.0, 1.0 + t, 3.0, 4.0, 0.0, 1.0);
    vec3 back = inverse(a) * (a * vec3(t, 1.0, -2.0));
    vec2 v = transpose(m) * (m * vec2(3.0, t));
    float whole;
    float part = modf(t, whole);
    return vec4(v.x + back.z, determinant(a) + part, length(normalize(vec3(t, 2.0, 1.0))) + whole,
                dot(reflect(vec2(t, -1.0), vec2(0.0, 1.0)), (vec2(1.0, t) * m).yx / float(N)));
})",
     [](int x, int) -> Pixel {
         const double t = float(x) * 0.1f, c = std::cos(t), s = std::sin(t);
         const double row0 = c + s * t, row1 = -s + c * t;
         const double whole = std::trunc(t);
         return {1.0f, float(1 * ((1 + t) * 1 - 0) - 0 * 0 + 4 * (2 * 3 - 0.5 * (1 + t)) + (t - whole)),
                 float(1 + whole), float((t * row1 + row0) / 6)};
     }},
};

INSTANTIATE_TEST_SUITE_P(Cases, ControlFlow, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(DamagedCode, GivesAnErrorAndNeverCrashes) {
    std::string error;
    const auto code = compileFragmentGlsl(
        fmt::format("{}{}\nvoid main() {{ color = f(); }}\n", kHead, kCases[0].body), &error);
    ASSERT_FALSE(code.empty()) << error;
    int refused = 0, built = 0;
    const auto attempt = [&](std::vector<std::uint32_t> words) {
        llvm::LLVMContext context;
        std::string cause;
        const auto module = buildKernel(context, {"damaged", words, {}, TextureFormat::rgba8}, &cause);
        ++(module ? built : refused);
        EXPECT_EQ(module == nullptr, !cause.empty());
        EXPECT_THAT(cause, testing::Not(testing::HasSubstr("\n")));
    };
    for (std::size_t length :
         {std::size_t(0), std::size_t(3), std::size_t(5), code.size() / 2, code.size() - 1})
        attempt({code.begin(), code.begin() + std::ptrdiff_t(length)});
    std::mt19937 random(16);
    for (int i = 0; i < 400; ++i) {
        auto words = code;
        for (int n = i % 3; n >= 0; --n) {
            std::uint32_t& word = words[random() % words.size()];
            word = i % 2 ? word ^ (1u << random() % 32) : random() % (words[3] + 4);
        }
        attempt(std::move(words));
    }
    EXPECT_GT(refused, 200);
    EXPECT_GT(built, 0);  // a name or a number was damaged
}

}  // namespace
}  // namespace qv::native::test
