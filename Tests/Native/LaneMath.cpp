// Elementary functions against the C library's in double precision, over dense ranges.

#include "Platform/ImageGraph/Native/Compiler/LaneMath.h"

#include <fmt/format.h>
#include <glslang/SPIRV/GLSL.std.450.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "Tests/Native/LaneKernel.h"

namespace qv::native::test {
namespace {

constexpr int kWidth = 1024, kHeight = 512;
constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct Function {
    const char* name;
    unsigned number;
    std::function<double(double, double)> expected;
    float lowX, highX;  ///< where it is looked at
    double mostUnits;   ///< in the last place
    float lowY = 0, highY = 0;
    bool isGeometric = false;  ///< x is spread by its logarithm
};

const std::vector<Function>& functions() {
    using std::numbers::pi;
    static const std::vector<Function> list{
        {"sin", GLSLstd450Sin, [](double x, double) { return std::sin(x); }, -4, 4, 2},
        {"sin, far", GLSLstd450Sin, [](double x, double) { return std::sin(x); }, -10000, 10000, 2},
        {"cos", GLSLstd450Cos, [](double x, double) { return std::cos(x); }, -4, 4, 2},
        {"cos, far", GLSLstd450Cos, [](double x, double) { return std::cos(x); }, -10000, 10000, 2},
        {"tan", GLSLstd450Tan, [](double x, double) { return std::tan(x); }, -20, 20, 3},
        {"asin", GLSLstd450Asin, [](double x, double) { return std::asin(x); }, -1, 1, 2.5},
        {"acos", GLSLstd450Acos, [](double x, double) { return std::acos(x); }, -1, 1, 2},
        {"atan", GLSLstd450Atan, [](double x, double) { return std::atan(x); }, -30, 30, 2.5},
        {"atan2", GLSLstd450Atan2, [](double y, double x) { return std::atan2(y, x); }, -3, 3, 3, -3, 3},
        {"sinh", GLSLstd450Sinh, [](double x, double) { return std::sinh(x); }, -80, 80, 4},
        {"sinh, near", GLSLstd450Sinh, [](double x, double) { return std::sinh(x); }, -1, 1, 4},
        {"cosh", GLSLstd450Cosh, [](double x, double) { return std::cosh(x); }, -80, 80, 4},
        {"tanh", GLSLstd450Tanh, [](double x, double) { return std::tanh(x); }, -10, 10, 4},
        {"asinh", GLSLstd450Asinh, [](double x, double) { return std::asinh(x); }, -30, 30, 4},
        {"acosh", GLSLstd450Acosh, [](double x, double) { return std::acosh(x); }, 1, 30, 4},
        {"atanh", GLSLstd450Atanh, [](double x, double) { return std::atanh(x); }, -0.999f, 0.999f, 5},
        {"exp", GLSLstd450Exp, [](double x, double) { return std::exp(x); }, -87, 88, 2},
        {"exp2", GLSLstd450Exp2, [](double x, double) { return std::exp2(x); }, -125, 127, 2},
        {"log", GLSLstd450Log, [](double x, double) { return std::log(x); }, 1e-37f, 3e38f, 3, 0, 0, true},
        {"log, near", GLSLstd450Log, [](double x, double) { return std::log(x); }, 0.5f, 2, 3},
        {"log2", GLSLstd450Log2, [](double x, double) { return std::log2(x); }, 1e-37f, 3e38f, 3, 0, 0, true},
        {"log2, near", GLSLstd450Log2, [](double x, double) { return std::log2(x); }, 0.5f, 2, 3},
        {"pow", GLSLstd450Pow, [](double x, double y) { return std::pow(x, y); }, 0.001f, 1, 8, 0.1f, 5},
        {"pow, far", GLSLstd450Pow, [](double x, double y) { return std::pow(x, y); }, 1e-10f, 1e10f, 16, -3,
         3, true},
        {"sqrt", GLSLstd450Sqrt, [](double x, double) { return std::sqrt(x); }, 0, 1e30f, 0.5001},
        {"inversesqrt", GLSLstd450InverseSqrt, [](double x, double) { return 1 / std::sqrt(x); }, 1e-30f,
         1e30f, 1.5, 0, 0, true},
        {"degrees", GLSLstd450Degrees, [](double x, double) { return x * 180 / pi; }, -7, 7, 1.5},
    };
    return list;
}

Image argumentsOf(const Function& function) {
    Image image(TextureFormat::rgba32Float, kWidth, kHeight);
    const double count = double(kWidth) * kHeight;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const double t = (y * kWidth + x) / (count - 1);
            const double u = std::fmod(t * 0.6180339887 * count, 1.0);
            const double at = function.isGeometric
                                  ? function.lowX * std::pow(double(function.highX) / function.lowX, t)
                                  : function.lowX + (double(function.highX) - function.lowX) * t;
            float* texel = image.row<float>(y) + 4 * x;
            texel[0] = std::clamp(float(at), function.lowX, function.highX);
            texel[1] = float(function.lowY + (double(function.highY) - function.lowY) * u);
        }
    }
    return image;
}

Body bodyOf(const Function& function) {
    return [&](const Group& group) {
        const Color color = group.floats(0);
        const bool takesTwo = function.lowY != function.highY;
        Value* const result = standardFunction(group.ir, function.number,
                                               llvm::ArrayRef<Value*>(color.data(), takesTwo ? 2 : 1));
        return Color{result, result, result, result};
    };
}

double unitsApart(float actual, double expected) {
    if (std::isnan(actual) || std::isinf(actual)) return kInfinity;
    const float near = float(expected);
    const double unit =
        std::max(double(std::nextafter(std::abs(near), kInfinity)) - std::abs(near), 0x1p-149);
    return std::abs(actual - expected) / unit;
}

TEST(LaneMath, AgreesWithTheCLibrary) {
    for (const Function& function : functions()) {
        Image input = argumentsOf(function);
        std::vector<Image> results;
        for (NativeTarget target : runnableTargets()) {
            const auto kernel = kernelOf(target, TextureFormat::rgba32Float, bodyOf(function));
            ASSERT_TRUE(kernel);
            draw(*kernel, {&input}, results.emplace_back(TextureFormat::rgba32Float, kWidth, kHeight));
            EXPECT_TRUE(results.back() == results.front()) << function.name << " differs between targets";
        }
        double most = 0, sum = 0;
        float where[2] = {};
        for (int y = 0; !results.empty() && y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const float* argument = input.row<float>(y) + 4 * x;
                const double units = unitsApart(results.front().row<float>(y)[4 * x],
                                                function.expected(argument[0], argument[1]));
                sum += units;
                if (units <= most) continue;
                most = units;
                std::copy_n(argument, 2, where);
            }
        }
        fmt::print("{:12} {:6.2f} units in the last place at most, {:.3f} on average, at {}, {}\n",
                   function.name, most, sum / kWidth / kHeight, where[0], where[1]);
        EXPECT_LE(most, function.mostUnits) << function.name;
    }
}

}  // namespace
}  // namespace qv::native::test
