#include "QVFilterExtension/MTIFilters/QVInterlayerFilter.h"

#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

MTIImage imageOf(int width, int height, const std::function<Pixel(int x, int y)>& color) {
    return MTIImage::imageWithBitmap(makeBitmap(width, height, color));
}

TEST(QVInterlayerFilter, TheLayerLiesBehindTheSubject) {
    const MTIImage input = imageOf(32, 16, [](int x, int y) {
        return Pixel{float(x) / 32, float(y) / 16, 0.5f, 1};
    });
    // Half transparent magenta in the upper half, at half the size; the mask is red alone, grey in the
    // middle.
    const MTIImage layer = imageOf(16, 8, [](int, int y) { return Pixel{1, 0, 1, y < 4 ? 0.5f : 0}; });
    const MTIImage mask = imageOf(32, 16, [](int x, int) {
        return Pixel{x < 10 ? 0.0f : x < 20 ? 0.4f : 1.0f, 0.7f, 0.1f, 1};
    });
    QVInterlayerFilter filter;
    filter.setMaskImage(mask);
    filter.setInterlayerImage(layer);
    EXPECT_FALSE(filter.outputImage());
    filter.setInputImage(input);
    const Picture before = render(input), both = render(filter.outputImage());

    filter.setMaskImage({});
    const Picture layerAlone = render(filter.outputImage());
    filter.setMaskImage(mask);
    filter.setInterlayerImage({});
    EXPECT_TRUE(matches(render(filter.outputImage()), before, 1.01 / 255)) << "a mask without a layer";
    filter.setMaskImage({});
    EXPECT_EQ(filter.outputImage(), input) << "neither";

    for (int x = 0; x < 32; ++x) {
        for (const int y : {2, 13}) {  // away from the layer's interpolated edge
            const double alpha = y < 8 ? 128 / 255.0 : 0, subject = x < 10 ? 0 : x < 20 ? 0.4 : 1;
            const Pixel color = {1, 0, 1, 1};
            for (std::size_t c = 0; c < 4; ++c) {
                const double was = before.at(x, y)[c], over = color[c] * alpha + was * (1 - alpha);
                EXPECT_NEAR(layerAlone.at(x, y)[c], over, 1.5 / 255);
                EXPECT_NEAR(both.at(x, y)[c], was * subject + over * (1 - subject), 2.0 / 255)
                    << x << "," << y;
            }
        }
    }
}

}  // namespace
}  // namespace qv::test
