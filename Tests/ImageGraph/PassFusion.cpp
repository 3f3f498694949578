// Which passes become one, why others do not, and that no picture changes by it.

#include "Platform/ImageGraph/PassFusion.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <thread>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "Platform/ImageGraph/MTIKernel.h"
#include "Platform/ImageGraph/Private/PassRegions.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using testing::ElementsAre;

MTIImage photo(int width = 40, int height = 24, int seed = 0) {
    return MTIImage::imageWithBitmap(test::makeBitmap(width, height, [&](int x, int y) {
        const float u = float(x) / float(width), v = float(y) / float(height);
        return test::Pixel{u, (x + y + seed) % 5 ? v : 1 - u, 0.5f + 0.5f * std::sin(9 * u + float(seed)),
                           seed % 2 ? 0.4f + 0.6f * v : 1.0f};
    }));
}

MTIImage pass(std::string_view function, std::vector<MTIImage> inputs, MTIParameters parameters = {},
              CGSize size = {}) {
    if (size.width <= 0) size = inputs.front().size();
    return stockKernel(function)->applyToInputImages(std::move(inputs), std::move(parameters), size,
                                                     MTIPixelFormat::unspecified);
}
MTIImage exposed(const MTIImage& image, float gain = 1.5f) {
    return pass("MTIExposure", {image}, {{"gain", gain}});
}
MTIImage faded(const MTIImage& image, float opacity = 0.5f) {
    return pass("MTIOpacity", {image}, {{"opacity", opacity}});
}
MTIImage turned(const MTIImage& image) {
    return image.imageByApplyingTransform(CGAffineTransformMakeRotation(0.3));
}
MTIImage doubled(const MTIImage& image) {
    return image.imageByApplyingTransform(CGAffineTransformMakeScale(2, 2));
}
MTIImage screened(const MTIImage& below, const MTIImage& above) {
    return pass("MTIBlendScreen", {below, above}, {{"intensity", 1.0f}});
}
MTIImage blurred(const MTIImage& image, float radius = 1.5f) {
    MTIGaussianBlurFilter blur;
    blur.setInputImage(image);
    blur.setRadius(radius);
    return blur.outputImage();
}
MTIImage laidOver(const MTIImage& below, const MTIImage& above) {
    return pass("MTIBlendNormal", {below, above}, {{"intensity", 0.9f}});
}
/// A photo that is transparent but in its left third and its right lower corner, and says so.
MTIImage layer(int width = 40, int height = 24) {
    const std::vector<PixelRect> parts{{0, 0, width / 3, height}, {width - 9, height - 8, 20, 20}};
    const MTIImage image = MTIImage::imageWithBitmap(test::makeBitmap(width, height, [&](int x, int y) {
        const bool shows = x < width / 3 || (x >= width - 9 && y >= height - 8);
        return shows ? test::Pixel{0.3f, 0.1f, 0.5f * float(y % 2), 0.6f} : test::Pixel{};
    }));
    return imageCoveredWithin(image, parts);
}
MTIImage mirrored(const MTIImage& image) {
    return image.imageByApplyingTransform(CGAffineTransformMakeScale(-1, 1));
}
MTIImage colored(CGSize size = {40, 24}) {
    return MTIImage::initWithColor({0.8f, 0.3f, 0.1f, 0.7f}, false, size);
}

/// A square, drawn over `image` in the middle or where `place` moves it.
MTIImage withSprite(const MTIImage& image, CGAffineTransform place = CGAffineTransformMakeScale(0.3, 0.3)) {
    static const auto square = std::make_shared<const SpriteTexture>(
        SpriteTexture{test::makeBitmap(4, 4,
                                       [](int, int) {
                                           return test::Pixel{1, 0, 0, 0.5f};
                                       }),
                      "square"});
    SpritePass sprites;
    sprites.sprites.push_back({place, 1, {1, 1, 1, 1}, square});
    auto node = std::make_shared<ImageNode>();
    node->operation = std::move(sprites);
    node->inputs = {image};
    node->width = int(image.size().width);
    node->height = int(image.size().height);
    return MTIImage(std::move(node));
}

struct Fused {
    std::vector<std::string> passes;  ///< function names of each
    std::vector<std::string> kept;    ///< "function of the reader: reason"
};

/// What is drawn once every program is there.
Fused fused(const MTIImage& image, const PlanTarget& target = {.processor = true}) {
    RenderPlan plan = planRender(image, target);
    dropCopies(plan);
    const PassFusion fusion = fusePlan(plan);
    Fused result;
    for (const PassFusion::Kept& kept : fusion.kept) {
        result.kept.push_back(fmt::format("{}: {}", plan.passes[std::size_t(kept.pass)].function->name,
                                          fusionRefusalText(kept.why)));
    }
    std::vector<std::optional<PlanPass>> ready;
    for (const FusedPass& one : fusion.passes) {
        auto program = std::make_shared<ShaderFunction>();
        program->name = one.shape.name();
        ready.push_back(passOf(plan, one, std::move(program)));
    }
    for (const PlanPass& drawn : fusedPlan(plan, fusion, std::move(ready)).passes)
        result.passes.push_back(drawn.function->name);
    return result;
}

TEST(PassFusion, JoinsWhatReadsOnlyAtItsOwnPlace) {
    const MTIImage a = photo(), b = photo(40, 24, 1);
    EXPECT_THAT(fused(exposed(faded(a))).passes, ElementsAre("MTIOpacity + MTIExposure"));
    EXPECT_THAT(fused(screened(exposed(a), faded(b))).passes,
                ElementsAre("MTIExposure + MTIOpacity + MTIBlendScreen"));
    EXPECT_THAT(fused(faded(turned(a))).passes, ElementsAre("MTITransform + MTIOpacity"));
    EXPECT_THAT(fused(pass("MTIBlendWithMask", {a, turned(b), faded(a)})).passes,
                ElementsAre("MTITransform + MTIOpacity + MTIBlendWithMask"));
    // A result that several functions of one pass read is made once.
    const MTIImage twice = exposed(a);
    EXPECT_THAT(fused(screened(twice, faded(twice))).passes,
                ElementsAre("MTIExposure + MTIOpacity + MTIBlendScreen"));
    // What is interpolated twice is read once; narrower blurs end in taps.
    EXPECT_THAT(
        fused(turned(blurred(a, 9))).passes,
        ElementsAre("MTIReduce", "MTIGaussianFetched", "MTIGaussianFetched", "MTIEnlarge + MTITransform"));
    // A mere copy is nothing, wherever it is read.
    EXPECT_THAT(fused(turned(pass("MTICopy", {pass("MTICopy", {a})}))).passes, ElementsAre("MTITransform"));
    // Planes of a video frame, where they are converted in a shader.
    const MTIImage frame = MTIImage::imageWithPixelBuffer(PixelBuffer::create(PixelFormat::i420, 16, 8));
    EXPECT_THAT(fused(exposed(frame), {}).passes, ElementsAre("MTIYUVToRGB + MTIExposure"));
}

TEST(PassFusion, RefusesForAReason) {
    const MTIImage a = photo(), b = photo(40, 24, 1);
    struct Case {
        MTIImage image;
        std::vector<std::string> passes, kept;
    };
    const MTIImage shared = exposed(a);
    const Case cases[] = {
        {turned(faded(a)),
         {"MTIOpacity", "MTITransform"},
         {"MTITransform: it is read away from the pixel being coloured"}},
        {blurred(faded(a)),
         {"MTIOpacity", "MTIGaussianFetched", "MTIGaussianFetched"},
         {"MTIGaussianFetched: it is read away from the pixel being coloured",
          "MTIGaussianFetched: it is read away from the pixel being coloured"}},
        {pass("MTIOpacity", {exposed(a)}, {{"opacity", 0.5f}}, {80, 48}),
         {"MTIExposure", "MTIOpacity"},
         {"MTIOpacity: it has another size"}},
        {screened(shared, turned(shared)),
         {"MTIExposure", "MTITransform + MTIBlendScreen"},
         {"MTIBlendScreen: several passes read it",
          "MTITransform: it is read away from the pixel being coloured"}},
        {faded(withSprite(exposed(a))),
         {"MTIExposure", "MTIOpacity"},
         {"MTIOpacity: something is drawn on top of it"}},
    };
    for (const Case& one : cases) {
        const Fused result = fused(one.image);
        EXPECT_THAT(result.passes, testing::ElementsAreArray(one.passes));
        EXPECT_THAT(result.kept, testing::UnorderedElementsAreArray(one.kept));
    }
}

TEST(PassFusion, DrawsSpritesInThePassBelowThem) {
    EXPECT_THAT(fused(withSprite(exposed(photo()))).passes, ElementsAre("MTIExposure"));
    EXPECT_THAT(fused(withSprite(withSprite(faded(exposed(photo()))))).passes,
                ElementsAre("MTIExposure + MTIOpacity"));
    EXPECT_THAT(fused(withSprite(photo())).passes, ElementsAre("MTICopy"));
    const MTIImage shared = exposed(photo());
    EXPECT_THAT(fused(screened(withSprite(shared), turned(shared))).passes,
                ElementsAre("MTIExposure", "MTICopy", "MTITransform + MTIBlendScreen"));
}

/// The ways in which passes are drawn by regions: what is drawn all over, and in how many parts what else.
std::vector<std::string> regionsOf(const MTIImage& image) {
    RenderPlan plan = planRender(image, {.processor = true});
    dropCopies(plan);
    std::vector<std::string> result;
    for (const RegionFusion& one : fuseByRegions(plan, fusePlan(plan)))
        result.push_back(fmt::format("{} / {} in {}", one.everywhere.shape.name(), one.inParts.shape.name(),
                                     one.parts.size()));
    return result;
}

TEST(PassFusion, DrawsSmallThingsByRegions) {
    const MTIImage a = photo(), b = photo(40, 24, 1);
    EXPECT_THAT(regionsOf(screened(withSprite(exposed(a), CGAffineTransformMakeScale(0.1, 0.1)), b)),
                ElementsAre("MTIExposure + MTIBlendScreen / MTIBlendScreen in 1"));
    EXPECT_THAT(regionsOf(laidOver(withSprite(exposed(a)), faded(layer()))), ElementsAre())
        << "nobody says that the faded layer is clear";
    EXPECT_THAT(regionsOf(laidOver(withSprite(exposed(a)), layer())),
                ElementsAre("MTIExposure / MTIBlendNormal in 2"));
    EXPECT_THAT(regionsOf(laidOver(turned(a), layer())), ElementsAre("MTITransform / MTIBlendNormal in 2"));
    // Not: something large on top, a picture that is read again, a layer below or of another size, a photo
    // itself.
    EXPECT_THAT(regionsOf(screened(withSprite(exposed(a), CGAffineTransformMakeScale(2, 2)), b)),
                ElementsAre());
    const MTIImage twice = exposed(a);
    EXPECT_THAT(regionsOf(laidOver(screened(twice, laidOver(twice, layer())), b)), ElementsAre());
    EXPECT_THAT(regionsOf(laidOver(layer(), exposed(a))), ElementsAre());
    EXPECT_THAT(regionsOf(laidOver(exposed(a), layer(20, 12))), ElementsAre());
    EXPECT_THAT(regionsOf(laidOver(a, layer())), ElementsAre());
}

TEST(PassFusion, DrawsOfWhatIsEnlargedOnlyWhatIsShown) {
    const auto drawn = [](const MTIImage& image) {
        RenderPlan plan = planRender(image, {.processor = true});
        dropCopies(plan);
        RenderPlan result = plan;
        drawOnlyWhatIsRead(result, plan);
        std::vector<PixelRect> parts;
        for (const PlanPass& one : result.passes)
            parts.push_back(one.parts.empty() ? PixelRect{} : one.parts[0]);
        return parts;
    };
    const MTIImage a = photo(80, 40);
    // Of twice the size the middle half is seen, with a pixel around it for each pass that may interpolate;
    // three taps of the blur reach further.
    EXPECT_THAT(drawn(doubled(faded(blurred(a, 1.2f)))),
                ElementsAre(PixelRect{17, 4, 46, 32}, PixelRect{18, 8, 44, 24}, PixelRect{19, 9, 42, 22},
                            PixelRect{}));
    const CGAffineTransform corner{2, 0, 0, 2, 40, 20};
    EXPECT_THAT(drawn(exposed(a).imageByApplyingTransform(corner)),
                ElementsAre(PixelRect{0, 19, 41, 21}, PixelRect{}))
        << "y goes up in a transform";
    // Not: what something else reads too, what is made smaller, what sprites lie on.
    const MTIImage twice = exposed(a);
    EXPECT_THAT(drawn(screened(doubled(twice), twice)), ElementsAre(PixelRect{}, PixelRect{}, PixelRect{}));
    EXPECT_THAT(drawn(turned(exposed(a))), ElementsAre(PixelRect{}, PixelRect{}));
    EXPECT_THAT(drawn(doubled(withSprite(exposed(a)))), ElementsAre(PixelRect{}, PixelRect{}));
}

TEST(PassFusion, TakesColoursAsValues) {
    const MTIImage a = photo();
    const MTIImage dot = MTIImage::imageWithBitmap(test::makeBitmap(1, 1, [](int, int) {
        return test::Pixel{1, 0, 1, 1};
    }));
    EXPECT_THAT(fused(screened(a, colored())).passes, ElementsAre("MTIBlendScreen"));
    EXPECT_THAT(fused(screened(a, faded(colored()))).passes, ElementsAre("MTIOpacity + MTIBlendScreen"));
    EXPECT_THAT(fused(screened(a, colored({7, 7}))).passes, ElementsAre("MTIBlendScreen"));
    EXPECT_THAT(fused(turned(colored())).passes, ElementsAre("MTITransform"));
    EXPECT_THAT(fused(screened(a, dot)).passes, ElementsAre("MTIBlendScreen"));
    // The picture itself is drawn.
    EXPECT_THAT(fused(colored()).passes, ElementsAre("MTIColor"));
}

TEST(PassFusion, SplitsLongChainsAtTheLimits) {
    // A uniform each: 30 words beside the output's size.
    MTIImage image = photo();
    for (int i = 0; i < 36; ++i) image = exposed(image);
    // Without uniforms the number of functions is the limit.
    MTIImage plain = photo();
    for (int i = 0; i < 30; ++i) plain = pass("MTIPremultiply", {plain});
    // A texture each.
    MTIImage wide = photo();
    for (int i = 1; i < 20; ++i) wide = pass("MTIBlendScreen", {wide, photo(8, 8, i)});
    for (const auto& [chain, limit] : {std::pair(image, "MTIExposure: the program would be too long"),
                                       std::pair(plain, "MTIPremultiply: the program would be too long"),
                                       std::pair(wide, "MTIBlendScreen: the textures would be too many")}) {
        const Fused result = fused(chain);
        EXPECT_EQ(result.passes.size(), 2u);
        EXPECT_THAT(result.kept, ElementsAre(limit));
    }
    const auto heavy = [](const MTIImage& input) {
        MTIParameters parameters;
        for (const char* name : {"rowRed", "rowGreen", "rowBlue"})
            parameters.set(name, MTIVector{1, 0, 0, 0});
        return pass("MTIYUVToRGB", {input, photo(), photo()}, std::move(parameters));
    };
    const Fused words = fused(heavy(heavy(heavy(photo()))));
    EXPECT_EQ(words.passes.size(), 2u);
    EXPECT_THAT(words.kept, ElementsAre("MTIYUVToRGB: the uniforms would be too many"));
}

/// Ramps of luma and chroma.
MTIImage videoFrame() {
    const PixelBuffer frame = PixelBuffer::create(PixelFormat::i420, 38, 22);
    for (int plane = 0; plane < 3; ++plane) {
        const auto layout = PixelBuffer::planeLayout(frame.format(), plane, 38, 22);
        for (int y = 0; y < layout.height; ++y) {
            std::uint8_t* row = frame.plane(plane).data + std::size_t(y) * frame.plane(plane).rowBytes;
            for (int x = 0; x < layout.width; ++x) row[x] = std::uint8_t(60 + 3 * x + 2 * y * (plane + 1));
        }
    }
    return MTIImage::imageWithPixelBuffer(frame);
}

/// A context of its own that knows no program yet.
std::shared_ptr<MTIContext> contextWith(MTIFusion fusion, bool gpuWays = false,
                                        MTIPixelFormat working = MTIPixelFormat::rgba8Unorm) {
    MTIContextOptions options;
    options.fusion = fusion;
    options.shaderCacheDirectory.clear();
    options.gpuPaths = gpuWays;
    options.workingPixelFormat = working;
    options.validation = true;
    return MTIContext::create(options);
}

RenderStatistics statisticsOf(MTIContext& context, const MTIImage& image) {
    const auto task = context.startRender(image);
    return task && task->wait() ? task->statistics() : RenderStatistics{-1};
}

TEST(PassFusion, ChangesNoPicture) {
    const std::vector<std::function<MTIImage()>> graphs = {
        [] {
            return faded(exposed(pass("MTIBrightness", {photo()}, {{"brightness", 0.6f}}), 3), 0.4f);
        },
        [] { return screened(turned(photo()), faded(photo(23, 31, 1))); },
        [] {
            return pass("MTIBlendWithMask", {exposed(photo()), photo(9, 9, 1), MTIImage()},
                        {{"component", 1}, {"inverted", 1}});
        },
        [] { return withSprite(withSprite(faded(exposed(withSprite(photo()))))); },
        [] {
            return exposed(pass("MTIResize", {photo()}, {}, {17, 50}));
        },  // uniforms and selectors unset
        [] { return faded(exposed(videoFrame())); },
        [] { return faded(turned(blurred(photo(), 9))); },
        // By regions: sprites that overlap, at the frame's corner and under more sprites; layers on sprites.
        [] {
            const CGAffineTransform corner{0.1, 0.05, -0.05, 0.1, -0.95, 0.55};
            const MTIImage dirty =
                withSprite(withSprite(exposed(photo()), corner), CGAffineTransformMakeScale(0.1, 0.1));
            return withSprite(screened(dirty, faded(photo(40, 24, 1))), corner);
        },
        [] { return laidOver(withSprite(faded(exposed(photo()))), layer()); },
        [] { return withSprite(laidOver(faded(turned(photo(40, 24, 1))), layer())); },
        // What is enlarged: all of it, and turned, which shows a corner.
        [] { return faded(turned(doubled(faded(exposed(blurred(photo())))))); },
        [] {
            const MTIImage soft = blurred(photo());
            return screened(soft.imageByApplyingTransform({2.2, 0.5, -0.4, 1.9, 25, 9}), faded(soft));
        },
    };
    const std::pair<bool, MTIPixelFormat> ways[] = {{false, MTIPixelFormat::rgba8Unorm},
                                                    {true, MTIPixelFormat::rgba8Unorm},
                                                    {true, MTIPixelFormat::rgba16Float}};
    for (const auto& [gpuWays, working] : ways) {
        const auto plain = contextWith(MTIFusion::off, gpuWays, working);
        const auto fused = contextWith(MTIFusion::inBackground, gpuWays, working);
        ASSERT_TRUE(plain && fused);
        for (std::size_t i = 0; i < graphs.size(); ++i) {
            const MTIImage image = graphs[i](), again = graphs[i]();
            fused->prepare(image);
            const test::Picture a = test::pictureOf(fused->renderToBitmap(image));
            const test::Picture b = test::pictureOf(plain->renderToBitmap(again));
            EXPECT_LE(test::worstDifference(a, b), 2.01 / 255) << "graph " << i;  // what is not rounded
            EXPECT_LT(statisticsOf(*fused, image).passes, statisticsOf(*plain, again).passes)
                << "graph " << i;
        }
    }
}

TEST(PassFusion, InterpolatesWhatIsMirroredAndEnlargedOnce) {
    const auto lit = [](const MTIImage& light) { return screened(photo(), light); };
    const MTIImage small = photo(20, 12, 1);
    const auto resized = [&](const MTIImage& image) {
        RenderPlan plan = planRender(image, {.processor = true});
        resizeTransforms(plan);
        return fusePlan(plan).passes.size();
    };
    EXPECT_EQ(resized(lit(faded(mirrored(small)))), 1u);
    EXPECT_EQ(resized(lit(small.imageByApplyingTransform(CGAffineTransformMakeRotation(M_PI)))), 1u);
    EXPECT_EQ(resized(lit(turned(small))), 2u);
    EXPECT_EQ(resized(screened(lit(mirrored(small)), exposed(small))), 1u + 1u);
    // Mirroring and enlarging can change places.
    const auto drawn = [](const MTIImage& image) {
        return test::pictureOf(contextWith(MTIFusion::beforeFirstFrame)->renderToBitmap(image));
    };
    EXPECT_LE(
        test::worstDifference(drawn(lit(mirrored(small))), drawn(lit(mirrored(small.resize({40, 24}))))),
        1.01 / 255);
}

TEST(PassFusion, RoundsNothingBetweenFunctions) {
    const auto brightened = [] { return exposed(exposed(faded(photo(), 0.02f), 8), 6); };
    const auto drawn = [&](MTIFusion fusion, MTIPixelFormat working) {
        return test::pictureOf(contextWith(fusion, false, working)->renderToBitmap(brightened()));
    };
    const test::Picture exact = drawn(MTIFusion::off, MTIPixelFormat::rgba16Float);
    EXPECT_LE(test::worstDifference(drawn(MTIFusion::beforeFirstFrame, MTIPixelFormat::rgba8Unorm), exact),
              1.01 / 255);
    EXPECT_GE(test::worstDifference(drawn(MTIFusion::off, MTIPixelFormat::rgba8Unorm), exact), 4.0 / 255);
}

TEST(PassFusion, DrawsPlainlyUntilTheProgramIsThere) {
    const auto context = contextWith(MTIFusion::inBackground);
    ASSERT_TRUE(context);
    const auto draw = [&](float gain) { return exposed(faded(photo()), gain); };
    const Bitmap first = context->renderToBitmap(draw(1.5f));
    EXPECT_EQ(statisticsOf(*context, draw(1.5f)).passes, 2);
    int passes = 2;
    for (int i = 0; i < 1000 && passes == 2; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        passes = statisticsOf(*context, draw(1.5f)).passes;
    }
    EXPECT_EQ(passes, 1);
    EXPECT_LE(
        test::worstDifference(test::pictureOf(first), test::pictureOf(context->renderToBitmap(draw(1.5f)))),
        1.01 / 255);
}

TEST(PassFusion, IsThereBeforeTheFirstFrameWhereThatIsAskedFor) {
    const auto context = contextWith(MTIFusion::beforeFirstFrame);
    ASSERT_TRUE(context);
    EXPECT_EQ(statisticsOf(*context, exposed(faded(photo()))).passes, 1);
}

TEST(PassFusion, PreparesForTheDestination) {
    for (const auto& [format, passes] :
         {std::pair(PixelFormat::i420Bits10, 4), {PixelFormat::nv12, 3}, {PixelFormat::rgba8, 1}}) {
        const auto context = contextWith(MTIFusion::inBackground, true, MTIPixelFormat::rgba16Float);
        ASSERT_TRUE(context);
        const auto buffer = PixelBuffer::create(format, 40, 24);
        *buffer.plane(0).data = 123;
        context->prepare(exposed(faded(photo())), buffer);
        EXPECT_EQ(*buffer.plane(0).data, 123);
        const auto task = context->startRender(exposed(faded(photo(40, 24, 2))), buffer);
        ASSERT_TRUE(task && task->wait());
        EXPECT_EQ(task->statistics().madePipelines, 0) << int(format);
        EXPECT_EQ(task->statistics().passes, passes) << int(format);
    }
}

TEST(PassFusion, MakesNothingForAGraphThatIsKnown) {
    const auto context = contextWith(MTIFusion::inBackground);
    ASSERT_TRUE(context);
    const auto draw = [&](int i) {
        const float strength = 0.3f + 0.01f * float(i);
        MTIImage image = screened(blurred(exposed(photo(), 1 + strength)), faded(colored(), strength));
        image =
            withSprite(faded(pass("MTIBrightness", {turned(image)}, {{"brightness", strength}}), strength));
        return pass("MTIBlendOverlay", {image, exposed(photo(40, 24, 1))}, {{"intensity", strength}});
    };
    EXPECT_GE(statisticsOf(*contextWith(MTIFusion::off), draw(0)).passes, 10);
    context->prepare(draw(0));
    for (int i = 1; i < 5; ++i) context->renderToBitmap(draw(i));  // as many as may be in flight
    const std::uint64_t bytes = context->allocatedBytes();
    for (int i = 5; i < 30; ++i) {
        const RenderStatistics statistics = statisticsOf(*context, draw(i));
        EXPECT_EQ(statistics.madeTextures, 0);
        EXPECT_EQ(statistics.madePipelines, 0);
        EXPECT_GT(statistics.peakTextureBytes, 2u * 40 * 24 * 4);
    }
    EXPECT_EQ(context->allocatedBytes(), bytes);
}

}  // namespace
}  // namespace qv
