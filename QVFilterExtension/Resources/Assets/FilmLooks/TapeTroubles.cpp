#include <cmath>

#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/FilmLooks/FilmLooks.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"

namespace qv::assets {

namespace {

constexpr int kWidth = 640, kHeight = 960;
constexpr float kCalmNoise = 0.25f, kNoThrow = 0.5f;

/// Noise about `kCalmNoise`, throw about `kNoThrow`, loss of colour.
struct Tape {
    float noise = kCalmNoise, throwAside = kNoThrow, loss = 0;
};
using Picture = Raster<Tape>;

/// A moment without signal: a bright head with a tail that dies away to the right.
void dash(Picture& tape, int x, int y, int length, float strength) {
    for (int i = 0; i < length && x + i < kWidth; ++i) {
        const float t = float(i) / float(length);
        Tape& pixel = tape.at(x + i, y);
        pixel.noise = std::max(pixel.noise, kCalmNoise + strength * (i < 2 ? 0.5f : 1) * (1 - t) * (1 - t));
        pixel.loss = std::max(pixel.loss, strength * (1 - t));
    }
}

/// Bad tracking about a line: dashes that crowd towards it, and lines thrown aside.
void band(Picture& tape, float middle, float height, float strength, HashStream& draw) {
    for (int y = 0; y < kHeight; ++y) {
        const float off = (float(y) - middle) / height, near = std::exp(-off * off);
        if (near < 0.02f) continue;
        const float lean = 0.10f * strength * near * near * (noise(float(y) * 0.09f, 1, 77) - 0.35f);
        // Heads touch the track in turn, so that the noise comes in rows.
        const float row = near * strength * (0.35f + 0.65f * noise(float(y) * 0.31f, 2, 78));
        for (int x = 0; x < kWidth; ++x) {
            tape.at(x, y).throwAside += lean;
            tape.at(x, y).loss = std::max(tape.at(x, y).loss, 0.8f * near * strength);
        }
        const int count = int(row * row * 15 + draw.next());
        for (int i = 0; i < count; ++i)
            dash(tape, int(draw.next() * kWidth), y, int(draw.range(5, 18 + 46 * row)),
                 row * draw.range(0.2f, 0.75f));
    }
}

/// Lines are thrown aside at once and swing back.
void tear(Picture& tape, int top, float reach, float strength) {
    for (int y = top; y < kHeight; ++y) {
        const float t = float(y - top) / reach;
        const float swing = std::exp(-t) * std::cos(2.2f * t);
        for (int x = 0; x < kWidth; ++x) tape.at(x, y).throwAside += strength * swing;
    }
}

}  // namespace

Bitmap tapeTrouble(int index) {
    Picture tape(kWidth, kHeight);
    HashStream draw(3100 + std::uint32_t(index) * 41);
    const std::uint32_t seed = 600 + std::uint32_t(index) * 3;
    const float middle = kHeight / 2;
    for (int y = 0; y < kHeight; ++y) {
        // The drum never turns quite evenly.
        const float shiver =
            0.010f * (noise(float(y) * 0.11f, 0, seed) - 0.5f) + 0.004f * (hash01(0, y, seed) - 0.5f);
        for (int x = 0; x < kWidth; ++x) {
            Tape& pixel = tape.at(x, y);
            pixel.throwAside += shiver;
            pixel.noise += 0.065f * (noise(float(x) * 0.33f, float(y) * 1.7f, seed + 1) - 0.5f) +
                           0.04f * (hash01(x, y, seed + 2) - 0.5f);
        }
    }
    for (int i = 0; i < 10; ++i)
        dash(tape, int(draw.next() * kWidth), int(draw.next() * kHeight), int(draw.range(6, 30)),
             0.3f * draw.next());

    switch (index) {
        case 2:
            band(tape, middle, 26, 0.9f, draw);
            break;
        case 3:
            band(tape, middle - 30, 84, 1, draw);
            band(tape, middle + 150, 20, 0.6f, draw);
            break;
        case 4:
            for (int i = 0; i < 260; ++i)
                dash(tape, int(draw.next() * kWidth), int(draw.next() * kHeight), int(draw.range(8, 120)),
                     0.75f * draw.next());
            break;
        case 5:
            tear(tape, int(middle) - 60, 46, 0.22f);
            band(tape, middle - 62, 7, 0.7f, draw);
            break;
        case 6:
            for (int y = 0; y < kHeight; ++y) {
                const float off = (float(y) - middle) / 110, near = std::exp(-off * off * off * off);
                for (int x = 0; x < kWidth; ++x) {
                    tape.at(x, y).loss = std::max(tape.at(x, y).loss, near);
                    tape.at(x, y).throwAside += 0.035f * near * std::sin(float(y) * 0.16f);
                }
            }
            band(tape, middle + 116, 9, 0.6f, draw);
            break;
        case 7:
            for (int i = 0; i < 6; ++i)
                band(tape, draw.range(200, 760), draw.range(5, 34), draw.range(0.5f, 1), draw);
            tear(tape, int(middle) + 40, 80, -0.12f);
            break;
        default:
            break;
    }
    return buildBitmap(kWidth, kHeight, [&](int x, int y) {
        const Tape& pixel = tape.at(x, y);
        return Rgba{{pixel.noise, clamp01(pixel.throwAside), pixel.loss}, 1};
    });
}

}  // namespace qv::assets
