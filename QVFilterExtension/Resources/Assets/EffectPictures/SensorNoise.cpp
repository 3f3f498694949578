#include "QVFilterExtension/Resources/Assets/EffectPictures/EffectPictures.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"

namespace qv::assets {

namespace {

constexpr int kSide = 256;

/// The mean of the random numbers within `reach` pixels, those near the middle weighing more, about 0 and of
/// unit spread; repeats every `kSide`.
float softened(int x, int y, int reach, std::uint32_t seed) {
    float sum = 0, squares = 0;
    for (int j = -reach; j <= reach; ++j) {
        for (int i = -reach; i <= reach; ++i) {
            const float away = float(i * i + j * j) / float((reach + 1) * (reach + 1));
            const float weight = std::max(1 - away, 0.0f);
            sum += weight * (hash01((x + i) & (kSide - 1), (y + j) & (kSide - 1), seed) - 0.5f);
            squares += weight * weight;
        }
    }
    return sum / std::sqrt(squares / 12);
}

}  // namespace

Bitmap sensorNoise() {
    return buildBitmap(kSide, kSide, [](int x, int y) {
        return Rgba{{0.5f + 0.19f * softened(x, y, 1, 601), 0.5f + 0.19f * softened(x, y, 4, 602),
                     0.5f + 0.19f * softened(x, y, 4, 603)},
                    1};
    });
}

}  // namespace qv::assets
