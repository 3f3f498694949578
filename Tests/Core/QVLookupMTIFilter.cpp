#include "QVFilterCore/QVLookupMTIFilter.h"

#include <algorithm>

#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

/// A table whose entry for (r, g, b) is `entry`'s colour.
Bitmap tableOf(const std::function<Pixel(float r, float g, float b)>& entry) {
    return makeBitmap(512, 512, [&](int x, int y) {
        return entry(float(x % 64) / 63, float(y % 64) / 63, float(y / 64 * 8 + x / 64) / 63);
    });
}

/// Colours of all kinds, among them every grey; the lower half translucent.
Bitmap manyColors() {
    return makeBitmap(64, 64, [](int x, int y) {
        const float alpha = y < 32 ? 1 : 0.5f;
        if (y % 8 == 0) return Pixel{float(x * 4) / 255, float(x * 4) / 255, float(x * 4) / 255, alpha};
        return Pixel{float((x * 37 + y * 11) % 256) / 255, float((x * 5 + y * 91) % 256) / 255,
                     float((x * 61 + y * 29) % 256) / 255, alpha};
    });
}

TEST(QVLookupMTIFilter, TheIdentityTableChangesNothing) {
    const Bitmap bitmap = manyColors();
    QVLookupMTIFilter filter;
    EXPECT_FALSE(filter.outputImage());
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    EXPECT_EQ(filter.outputImage(), filter.inputImage()) << "without a table";
    filter.setInputColorLookupTable(MTIImage::imageWithBitmap(tableOf([](float r, float g, float b) {
        return Pixel{r, g, b, 1};
    })));
    EXPECT_TRUE(matches(render(filter.outputImage()), pictureOf(bitmap), 1.01 / 255));
}

TEST(QVLookupMTIFilter, InterpolatesTheTable) {
    // Not linear in any channel and mixed between them, with a jump between two blue slices.
    const Bitmap table = tableOf([](float r, float g, float b) {
        return Pixel{1 - r * r, g * (b > 0.5f ? 1.0f : 0.25f), std::abs(b - r) * 0.8f, 1};
    });
    auto entry = [&](int r, int g, int b, std::size_t c) {
        return table.row(b / 8 * 64 + g)[std::size_t(b % 8 * 64 + r) * 4 + c] / 255.0;
    };
    auto trilinear = [&](const Pixel& color, std::size_t c) {
        int cell[3];
        double rest[3];
        for (std::size_t i = 0; i < 3; ++i) {
            const double place = double(color[i]) * 63;
            cell[i] = std::min(int(place), 62);
            rest[i] = place - cell[i];
        }
        double sum = 0;
        for (int corner = 0; corner < 8; ++corner) {
            const int dr = corner & 1, dg = corner >> 1 & 1, db = corner >> 2;
            sum += entry(cell[0] + dr, cell[1] + dg, cell[2] + db, c) * (dr ? rest[0] : 1 - rest[0]) *
                   (dg ? rest[1] : 1 - rest[1]) * (db ? rest[2] : 1 - rest[2]);
        }
        return sum;
    };

    const Bitmap bitmap = manyColors();
    const Picture before = pictureOf(bitmap);
    QVLookupMTIFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    filter.setInputColorLookupTable(MTIImage::imageWithBitmap(table));
    for (const float intensity : {1.0f, 0.3f, 0.0f}) {
        filter.setIntensity(intensity);
        const Picture after = render(filter.outputImage());
        double worst = 0;
        for (int y = 0; y < after.height; ++y) {
            for (int x = 0; x < after.width; ++x) {
                const Pixel pixel = before.at(x, y);
                const Pixel straight = {std::min(pixel[0] / pixel[3], 1.0f),
                                        std::min(pixel[1] / pixel[3], 1.0f),
                                        std::min(pixel[2] / pixel[3], 1.0f), 1};
                for (std::size_t c = 0; c < 3; ++c) {
                    const double graded = trilinear(straight, c) * intensity + straight[c] * (1 - intensity);
                    worst = std::max(worst, std::abs(after.at(x, y)[c] - graded * pixel[3]));
                }
                worst = std::max(worst, double(std::abs(after.at(x, y)[3] - pixel[3])));
            }
        }
        EXPECT_LE(worst, 1.0 / 255) << "intensity " << intensity;
    }
}

}  // namespace
}  // namespace qv::test
