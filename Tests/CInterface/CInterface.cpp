// Every class through the C interface, beside the library itself; and what the interface refuses.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <memory>
#include <regex>
#include <set>
#include <thread>

#include "Bindings/C/qv.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/SweepInputs.h"

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;
using ::testing::HasSubstr;

constexpr int kWidth = 96, kHeight = 54;
constexpr double kTime = 1.2, kEnd = 3;

using Filter = std::unique_ptr<qv_filter, decltype(&qv_filter_destroy)>;
using Image = std::unique_ptr<qv_image, decltype(&qv_image_destroy)>;

std::array<char, 256> message;
#define ERROR message.data(), message.size()

Filter newFilter(const char* name) {
    return {qv_filter_create(name, ERROR), qv_filter_destroy};
}

/// Pixels of the caller's and the frame that tells of them.
struct Pixels {
    std::vector<std::uint8_t> bytes;
    qv_frame frame{};

    Pixels(int format, int bytesPerPixel, int width = kWidth, int height = kHeight)
        : bytes(std::size_t(width) * std::size_t(height) * std::size_t(bytesPerPixel)) {
        frame = {
            sizeof frame, format, width, height, 0, 0, {bytes.data()}, {bytes.size() / std::size_t(height)}};
    }
    Image image() const { return {qv_image_from_frame(&frame, nullptr, nullptr, ERROR), qv_image_destroy}; }
};

/// Two different pictures and a mask, all with hard and soft places.
Pixels picture(int seed) {
    Pixels pixels(QV_FORMAT_RGBA8, 4);
    for (std::size_t i = 0; i < pixels.bytes.size(); ++i) {
        const std::size_t x = i / 4 % kWidth, y = i / 4 / kWidth;
        pixels.bytes[i] =
            i % 4 == 3 ? 255 : std::uint8_t((x * (3 + i % 4) + y * 5 + std::size_t(seed) * 80) % 256);
    }
    return pixels;
}
Pixels mask() {
    Pixels pixels(QV_FORMAT_GRAY8, 1);
    for (int i = 0; i < kWidth * kHeight; ++i) {
        const double r = std::hypot(i % kWidth - kWidth / 2.0, i / kWidth - kHeight / 2.0);
        pixels.bytes[std::size_t(i)] = std::uint8_t(std::clamp((20 - r) * 60, 0.0, 255.0));
    }
    return pixels;
}
Pixels pictureFor(const std::string& role) {
    if (role == "mask") return mask();
    return picture(role == "frame" ? 0 : 1);
}
qv::PixelBuffer bufferOf(const Pixels& pixels) {
    const auto format = qv::PixelFormat(pixels.frame.format);
    qv::PixelBuffer buffer = qv::PixelBuffer::create(format, kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        std::copy_n(pixels.bytes.data() + std::size_t(y) * pixels.frame.strides[0], pixels.frame.strides[0],
                    buffer.plane(0).data + std::size_t(y) * buffer.plane(0).rowBytes);
    }
    return buffer;
}

/// What the library itself draws for the same.
std::vector<std::uint8_t> drawnByTheLibrary(const std::string& name) {
    const auto filter = qv::createFilter(name);
    for (const qv::QVInput& input : filter->filterClass().allInputs()) {
        const auto buffer = bufferOf(pictureFor(std::string(roleName(input.role))));
        input.set(*filter,
                  input.isBuffer ? qv::QVInputValue(buffer) : qv::MTIImage::imageWithPixelBuffer(buffer));
    }
    qv::test::setNumber(*filter, "iTime", kTime);
    qv::test::setNumber(*filter, "time", kTime);
    qv::test::setNumber(*filter, "endTime", kEnd);
    qv::test::setNumber(*filter, "progress", kTime / kEnd);
    if (filter->filterClass().property("timeRange")) qv::setPropertyFromText(*filter, "timeRange", "0,3");
    if (filter->filterClass().property("inputImageOriginalSize"))
        qv::setPropertyFromText(*filter, "inputImageOriginalSize", "96,54");
    const auto result = qv::PixelBuffer::create(qv::PixelFormat::rgba8, kWidth, kHeight);
    EXPECT_TRUE(qv::QVMTIFilter::sharedContext()->startRender(filter->outputImage(), result)->wait());
    Pixels pixels(QV_FORMAT_RGBA8, 4);
    for (int y = 0; y < kHeight; ++y) {
        std::copy_n(result.plane(0).data + std::size_t(y) * result.plane(0).rowBytes, pixels.frame.strides[0],
                    pixels.bytes.data() + std::size_t(y) * pixels.frame.strides[0]);
    }
    return pixels.bytes;
}

class EveryClass : public testing::TestWithParam<std::string> {
  protected:
    static void SetUpTestSuite() {
        qv::MTIContextOptions options;
        options.fusion = qv::MTIFusion::off;  // what is compared is drawn by the same passes
        qv::QVMTIFilter::setSharedContext(qv::MTIContext::create(options));
    }
};

TEST_P(EveryClass, IsDrawnAsByTheLibrary) {
    const Filter filter = newFilter(GetParam().c_str());
    ASSERT_TRUE(filter) << message.data();
    const json record = json::parse(qv_class_json(GetParam().c_str(), ERROR));
    EXPECT_EQ(record["name"], GetParam());
    std::set<std::string> roles;
    for (const json& input : record["inputs"]) roles.insert(input["role"]);
    std::vector<Image> images;
    for (const std::string& role : roles) {
        images.push_back(pictureFor(role).image());
        EXPECT_TRUE(qv_filter_set_input(filter.get(), role.c_str(), images.back().get(), ERROR))
            << message.data();
    }
    qv_filter_set_moment(filter.get(), kTime, 0, kEnd);

    const Image output(qv_filter_output(filter.get(), ERROR), qv_image_destroy);
    ASSERT_TRUE(output) << message.data();
    Pixels result(QV_FORMAT_RGBA8, 4);
    ASSERT_TRUE(qv_render(nullptr, output.get(), &result.frame, ERROR)) << message.data();
    EXPECT_EQ(result.bytes, drawnByTheLibrary(GetParam()));
}

TEST_P(EveryClass, TakesTheTextThatItGives) {
    const Filter filter = newFilter(GetParam().c_str());
    const json record = json::parse(qv_class_json(GetParam().c_str(), ERROR));
    for (const json& property : record["properties"]) {
        const std::string name = property["name"];
        std::array<char, 512> text, again;
        ASSERT_GT(qv_filter_get(filter.get(), name.c_str(), text.data(), text.size(), ERROR), 0u)
            << message.data();
        if (text[0] == 0) continue;  // a place that is not set
        EXPECT_TRUE(qv_filter_set(filter.get(), name.c_str(), text.data(), ERROR))
            << name << ": " << message.data();
        qv_filter_get(filter.get(), name.c_str(), again.data(), again.size(), ERROR);
        EXPECT_STREQ(text.data(), again.data()) << name;
    }
}

std::vector<std::string> allNames() {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < qv_class_count(); ++i) names.emplace_back(qv_class_name(i));
    return names;
}
INSTANTIATE_TEST_SUITE_P(C, EveryClass, testing::ValuesIn(allNames()),
                         [](const auto& info) { return info.param; });

TEST(CInterface, WhatIsRefusedSaysWhy) {
    const Filter mosaic = newFilter("QVMosaicMTIFilter");
    Pixels good = picture(0), small(QV_FORMAT_RGBA8, 4, 8, 8);
    const Image image = good.image();
    ASSERT_TRUE(mosaic && image);
    const auto frame = [&](auto change) {
        qv_frame changed = good.frame;
        change(changed);
        return qv_image_from_frame(&changed, nullptr, nullptr, ERROR) == nullptr;
    };
    const auto refused = [](bool isRefused, const char* cause) {
        EXPECT_TRUE(isRefused) << cause;
        EXPECT_THAT(message.data(), HasSubstr(cause));
        message.fill('x');
    };
    refused(!qv_filter_create("QVMosaikMTIFilter", ERROR), "QVMosaicMTIFilter");
    refused(!qv_filter_create("wave", ERROR), "QVWaveMTIFilter or QVWaveTransitionMTIFilter");
    refused(!qv_filter_create(nullptr, ERROR), "no class name is given");
    refused(!qv_filter_set(mosaic.get(), "nothing", "1", ERROR), "no property 'nothing'");
    refused(!qv_filter_set(mosaic.get(), "effectValue", "2", ERROR), "outside 0 to 1");
    refused(!qv_filter_set(mosaic.get(), "effectValue", "much", ERROR), "takes a number");
    refused(!qv_filter_set_number(newFilter("QVMirrorMTIFilter").get(), "level", 0.5, ERROR), "whole number");
    refused(!qv_filter_set_number(mosaic.get(), "effectValue", NAN, ERROR), "not a number");
    refused(!qv_filter_set(nullptr, "effectValue", "1", ERROR), "no filter is given");
    refused(!qv_filter_set_input(mosaic.get(), "incoming", image.get(), ERROR), "inputImage (frame)");
    refused(!qv_filter_output(mosaic.get(), ERROR), "required input is missing");
    refused(!qv_image_from_file("/nowhere.png", ERROR), "/nowhere.png");
    refused(frame([](qv_frame& f) { f.size = 0; }), "size is not set");
    refused(frame([](qv_frame& f) { f.width = 0; }), "outside 1 to");
    refused(frame([](qv_frame& f) { f.strides[0] = kWidth * 4 - 1; }), "stride");
    refused(frame([](qv_frame& f) { f.format = QV_FORMAT_I420; }), "plane 1");
    refused(frame([](qv_frame& f) { f.format = 42; }), "no format 42");
    refused(frame([](qv_frame& f) { f.matrix = 3; }), "no matrix 3");
    refused(!qv_render(nullptr, image.get(), &small.frame, ERROR), "96x54");
    refused(!qv_render(nullptr, nullptr, &good.frame, ERROR), "no image is given");
    qv_context_options options = QV_CONTEXT_OPTIONS;
    options.device = 99;
    refused(!qv_context_create(&options, ERROR), "99");
    qv_filter_destroy(nullptr);
    qv_image_destroy(nullptr);

    // Cut to fit, with its zero; and no buffer at all.
    std::array<char, 8> tiny;
    EXPECT_FALSE(qv_filter_create("QVNoSuchFilter", tiny.data(), tiny.size()));
    EXPECT_STREQ(tiny.data(), "there i");
    EXPECT_FALSE(qv_filter_create("QVNoSuchFilter", nullptr, 0));
}

TEST(CInterface, StructsOfEarlierCallersAreTaken) {
    struct {
        std::size_t size;
        std::int32_t device;
    } early = {offsetof(qv_context_options, deep), -1};
    qv_context* context = qv_context_create(reinterpret_cast<const qv_context_options*>(&early), ERROR);
    ASSERT_TRUE(context) << message.data();
    qv_context_destroy(context);
}

TEST(CInterface, PackedFramesComeBackAsTheyWent) {
    const int formats[][2] = {
        {QV_FORMAT_RGB8, 3}, {QV_FORMAT_BGR8, 3}, {QV_FORMAT_BGRA8, 4}, {QV_FORMAT_RGBA8, 4}};
    for (const auto& [format, bytes] : formats) {
        Pixels in(format, bytes), out(format, bytes);
        for (std::size_t i = 0; i < in.bytes.size(); ++i)
            in.bytes[i] = bytes == 4 && i % 4 == 3 ? 255 : std::uint8_t(i * 7 % 251);
        ASSERT_TRUE(qv_render(nullptr, in.image().get(), &out.frame, ERROR)) << message.data();
        EXPECT_EQ(in.bytes, out.bytes) << format;
        // The same pixel in another order.
        Pixels rgba(QV_FORMAT_RGBA8, 4);
        ASSERT_TRUE(qv_render(nullptr, in.image().get(), &rgba.frame, ERROR)) << message.data();
        const bool blueFirst = format == QV_FORMAT_BGR8 || format == QV_FORMAT_BGRA8;
        EXPECT_EQ(rgba.bytes[4], in.bytes[std::size_t(bytes) + (blueFirst ? 2 : 0)]);
    }
}

TEST(CInterface, MemoryIsGivenBackOnce) {
    std::atomic<int> released = 0;
    const auto release = [](void* count) { ++*static_cast<std::atomic<int>*>(count); };
    Pixels pixels = picture(0), result(QV_FORMAT_RGBA8, 4);
    qv_image* image = qv_image_from_frame(&pixels.frame, release, &released, ERROR);
    const Filter filter = newFilter("QVMosaicMTIFilter");
    ASSERT_TRUE(qv_filter_set_input(filter.get(), "frame", image, ERROR));
    qv_image_destroy(image);
    EXPECT_EQ(released, 0);  // the filter has it
    Image output(qv_filter_output(filter.get(), ERROR), qv_image_destroy);
    EXPECT_TRUE(qv_filter_set_input(filter.get(), "frame", nullptr, ERROR));
    EXPECT_TRUE(qv_render(nullptr, output.get(), &result.frame, ERROR)) << message.data();
    EXPECT_EQ(released, 0);  // and the graph
    output.reset();
    EXPECT_EQ(released, 1);
    // A frame that is refused, and one that is copied all the same.
    qv_frame bad = pixels.frame;
    bad.width = -1;
    EXPECT_FALSE(qv_image_from_frame(&bad, release, &released, ERROR));
    EXPECT_EQ(released, 2);
    Pixels rgb(QV_FORMAT_RGB8, 3);
    const Image packed(qv_image_from_frame(&rgb.frame, release, &released, ERROR), qv_image_destroy);
    EXPECT_EQ(released, 3);
}

TEST(CInterface, FramesOfSeveralThreadsAreUnderWayAtOnce) {
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&failures] {
            std::array<char, 256> error;
            const Filter filter(qv_filter_create("QVSnowMTIFilter", error.data(), error.size()),
                                qv_filter_destroy);
            for (int frame = 0; frame < 4; ++frame) {
                Pixels in = picture(frame), first(QV_FORMAT_RGB8, 3), second = first;
                second.frame.planes[0] = second.bytes.data();
                const Image image = in.image();
                qv_filter_set_input(filter.get(), "frame", image.get(), error.data(), error.size());
                qv_filter_set_moment(filter.get(), frame, 0, 4);
                const Image output(qv_filter_output(filter.get(), error.data(), error.size()),
                                   qv_image_destroy);
                qv_task* tasks[] = {
                    qv_render_start(nullptr, output.get(), &first.frame, error.data(), error.size()),
                    qv_render_start(nullptr, output.get(), &second.frame, error.data(), error.size())};
                for (qv_task* task : tasks) failures += !qv_task_wait(task, error.data(), error.size());
                failures += first.bytes != second.bytes;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(failures, 0);
}

TEST(CInterface, ExportsWhatTheHeaderDeclares) {
    const std::string header = [] {
        std::ifstream stream(QV_SOURCE_ROOT "/Bindings/C/qv.h");
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }();
    std::set<std::string> declared, exported;
    const std::regex declaration(R"((?:^|\n)[a-z][^\n;{]*?\b(qv_[a-z_]+)\()");
    for (std::sregex_iterator i(header.begin(), header.end(), declaration), end; i != end; ++i)
        declared.insert((*i)[1]);
    std::FILE* pipe = ::popen("nm -D --defined-only '" QV_C_LIBRARY "'", "r");
    ASSERT_TRUE(pipe);
    char line[4096];
    while (std::fgets(line, sizeof line, pipe)) {
        char kind = 0, name[256] = {};
        if (std::sscanf(line, "%*s %c %255s", &kind, name) == 2 && kind == 'T')
            exported.insert(std::string(name).substr(0, std::string(name).find('@')));
        else
            EXPECT_THAT(line, HasSubstr(" A QV_")) << "only the level's own name besides";
    }
    ::pclose(pipe);
    EXPECT_EQ(declared, exported);
    EXPECT_GE(declared.size(), 25u);
}

}  // namespace
