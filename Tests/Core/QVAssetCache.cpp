#include "QVFilterExtension/Private/QVAssetCache.h"

#include <filesystem>

#include "Tests/Support/TemporaryBundle.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

Bitmap orange() {
    return makeBitmap(6, 4, [](int, int) { return Pixel{1, 0.5f, 0, 1}; });
}

TEST(QVAssetCache, LoadsAnAssetOnce) {
    const TemporaryBundle bundle;
    QVAssetCache cache;
    EXPECT_FALSE(cache.mtiImageNamed("dot.png"));
    EXPECT_FALSE(cache.textureNamed("dot.png"));
    bundle.write("dot.png", orange());
    const MTIImage image = cache.mtiImageNamed("dot.png");
    const SpiritParam::Texture texture = cache.textureNamed("dot.png");
    ASSERT_TRUE(image && texture) << "a missing asset is asked for again";
    EXPECT_EQ(image.size(), (CGSize{6, 4}));

    std::filesystem::remove(bundle / "dot.png");
    EXPECT_EQ(cache.mtiImageNamed("dot.png"), image);
    EXPECT_EQ(cache.textureNamed("dot.png"), texture);
}

TEST(QVAssetCache, KeepsFittedImagesOfTheLastSizes) {
    const TemporaryBundle bundle;
    QVAssetCache cache;
    bundle.write("frame.png", orange());
    int made = 0;
    auto fitted = [&](const std::string& name, CGSize size) {
        return cache.fittedImage(name, size, [&](const UIImage& asset, CGSize wanted) {
            ++made;
            return scaleToSize(asset, wanted);
        });
    };
    EXPECT_FALSE(fitted("missing.png", {12, 8}));
    EXPECT_EQ(made, 0);
    const MTIImage preview = fitted("frame.png", {12, 8});
    EXPECT_EQ(preview.size(), (CGSize{12, 8}));
    const MTIImage full = fitted("frame.png", {24, 16});
    EXPECT_EQ(fitted("frame.png", {12, 8}), preview);
    EXPECT_EQ(fitted("frame.png", {24, 16}), full);
    EXPECT_EQ(made, 2);
    fitted("frame.png", {30, 20});
    EXPECT_NE(fitted("frame.png", {12, 8}), preview) << "a third size drops the oldest";
}

}  // namespace
}  // namespace qv::test
