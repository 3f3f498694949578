#include <array>
#include <cmath>
#include <memory>

#include "QVFilterExtension/Resources/Assets/SceneClips/SceneClips.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"
#include "QVFilterExtension/Resources/Assets/Support/Tone.h"

namespace qv::assets {

namespace {

constexpr float kTurn = 6.2831853f;
/// The front repeats after its twelve floors, which are as high as the frame and pass in one run of the clip.
constexpr int kRise = 6, kFrames = kSceneHeight / kRise;
constexpr int kFloorHeight = 60, kFloors = kSceneHeight / kFloorHeight;
/// Windows stand in bays between pillars: a single one, a double one with a balcony, a single one.
constexpr int kBayWidth = 256, kBays = kSceneWidth / kBayWidth, kWindowsOfBay = 3;
constexpr int kWindowsOfFloor = kBays * kWindowsOfBay;

struct Window {
    int left, top, width, height;
    Vec3 color;             ///< of its light
    float lampX, lampY;     ///< 0..1 of the window
    float curtains, blind;  ///< how far they are drawn, 0..1
    int figure;             ///< column of somebody at the window, pixels; -1 without
    bool balcony;
    enum { dark, lit, switched, television } light;
    float on, off;  ///< when a switched light changes, 0..1 of the loop
};

Window makeWindow(int floor, int column) {
    HashStream draw(std::uint32_t(floor * 97 + column * 13 + 5));
    const int place = column % kWindowsOfBay;
    constexpr std::array<int, 3> kLefts{30, 92, 190}, kWidths{38, 74, 38};
    Window w{};
    w.left = column / kWindowsOfBay * kBayWidth + kLefts[std::size_t(place)];
    w.width = kWidths[std::size_t(place)];
    w.top = floor * kFloorHeight + 12;
    w.balcony = place == 1;
    w.height = w.balcony ? 42 : 36;
    constexpr std::array<Vec3, 5> kColors{Vec3{1.0f, 0.50f, 0.13f},
                                          {1.0f, 0.60f, 0.22f},
                                          {1.0f, 0.70f, 0.38f},
                                          {0.62f, 0.85f, 1.0f},
                                          {1.0f, 0.34f, 0.13f}};
    w.color = kColors[std::min(std::size_t(draw.next() * 5.0f), std::size_t(4))] * draw.range(0.6f, 1.2f);
    w.lampX = draw.range(0.15f, 0.85f);
    w.lampY = draw.range(0.1f, 0.55f);
    w.curtains = draw.next() < 0.55f ? draw.range(0.15f, 0.45f) : 0;
    w.blind = draw.next() < 0.3f ? draw.range(0.2f, 0.7f) : 0;
    w.figure = draw.next() < 0.13f ? int(draw.range(0.25f, 0.75f) * float(w.width)) : -1;
    const float kind = draw.next();
    w.light = kind < 0.40f   ? Window::dark
              : kind < 0.80f ? Window::lit
              : kind < 0.93f ? Window::switched
                             : Window::television;
    if (w.light == Window::television) w.color = {0.42f, 0.66f, 1.15f};
    w.on = draw.next();
    w.off = w.on + draw.range(0.25f, 0.75f);
    return w;
}

/// How bright a window is at a time of the loop, 0..1.
float brightness(const Window& window, float time) {
    if (window.light == Window::dark) return 0;
    if (window.light == Window::lit) return 1;
    if (window.light == Window::television) {
        // Cuts every fifteenth of the loop, with a little flicker in between.
        const int cut = int(time * 15);
        return 0.45f + 0.5f * hash01(cut, int(window.on * 1000)) + 0.06f * std::sin(kTurn * 40 * time);
    }
    const auto since = [&](float moment) { return time - moment - std::floor(time - moment); };
    const float lasts = window.off - window.on, on = since(window.on);
    return on < lasts ? smoothstep(0, 0.012f, on) : smoothstep(0.02f, 0, on - lasts);
}

/// What a lit window shows: the room's light between curtains, behind frame, blind and balcony.
Vec3 roomLight(const Window& w, int x, int y) {
    const float u = (float(x) + 0.5f) / float(w.width), v = (float(y) + 0.5f) / float(w.height);
    const float dx = (u - w.lampX) * float(w.width) / 40, dy = (v - w.lampY) * float(w.height) / 40;
    float light = 0.5f + 1.5f * std::exp(-5 * (dx * dx + dy * dy));
    light *= 1.06f - 0.35f * v;
    const float fromSide = std::min(u, 1 - u) * (w.width > 50 ? 2.0f : 1.0f);
    if (fromSide < w.curtains * 0.5f)
        light *= 0.38f + 0.16f * std::sin(float(x) * 1.9f) * smoothstep(0, 0.06f, fromSide);
    if (v < w.blind) light *= y % 4 < 2 ? 0.34f : 0.62f;
    if (w.figure >= 0) {
        const float hx = float(x - w.figure), head = std::hypot(hx, float(y) - 0.45f * float(w.height));
        const float shoulder = std::abs(hx) - 4.5f - 5 * smoothstep(0.58f, 0.78f, v);
        const float covered =
            std::max(smoothstep(5.2f, 4.0f, head), v > 0.56f ? smoothstep(1, -1, shoulder) : 0.0f);
        light *= 1 - 0.88f * covered;
    }
    return w.color * light;
}

/// Bars of frame and balcony, 0 or 1, at a place of the window.
bool isBar(const Window& w, int x, int y) {
    if (x < 2 || y < 2 || x >= w.width - 2 || y >= w.height - 2) return true;
    const int panes = w.width > 50 ? 3 : 2;
    for (int i = 1; i < panes; ++i)
        if (std::abs(x - w.width * i / panes) < 1) return true;
    if (!w.balcony && y == w.height * 3 / 10) return true;
    if (w.balcony && y > w.height - 17) return x % 4 == 1 || y < w.height - 14;
    return false;
}

struct Facade {
    Raster<Vec3> wall{kSceneWidth, kSceneHeight};  ///< without any window's light
    Raster<Vec3> room{kSceneWidth, kSceneHeight};  ///< of a window at its brightest
    Raster<int> windowAt{kSceneWidth, kSceneHeight, -1};
    std::vector<Window> windows;
    FilmTable film;

    Facade() {
        for (int floor = 0; floor < kFloors; ++floor)
            for (int column = 0; column < kWindowsOfFloor; ++column)
                windows.push_back(makeWindow(floor, column));
        parallelFor(kSceneHeight, [&](int y) {
            for (int x = 0; x < kSceneWidth; ++x) wall.at(x, y) = wallAt(x, y);
        });
        for (std::size_t i = 0; i < windows.size(); ++i) draw(windows[i], int(i));
    }

    static Vec3 wallAt(int x, int y) {
        const int inBay = x % kBayWidth, inFloor = y % kFloorHeight;
        Vec3 light =
            Vec3{0.016f, 0.036f, 0.050f} * (0.8f + 0.4f * noise(float(x) * 0.35f, float(y) * 0.35f, 3));
        // Courses of stone.
        if (inFloor % 15 == 7) light *= 0.78f;
        // A ledge under each row: lit from the street, with its shadow below.
        if (inFloor < 4) light = Vec3{0.050f, 0.085f, 0.105f} * (1.1f - 0.12f * float(inFloor));
        if (inFloor >= 4 && inFloor < 9) light *= 0.42f + 0.1f * float(inFloor - 4);
        // Pillars, rounded.
        if (inBay < 18) {
            const float across = (float(inBay) - 8.5f) / 9;
            light = Vec3{0.036f, 0.070f, 0.090f} * (1.25f - across - 0.7f * across * across);
        } else if (inBay < 26) {
            light *= 0.5f + 0.06f * float(inBay - 18);
        }
        return light;
    }

    void draw(const Window& w, int index) {
        for (int y = -3; y < w.height + 5; ++y) {
            for (int x = -3; x < w.width + 3; ++x) {
                const bool inside = x >= 0 && y >= 0 && x < w.width && y < w.height;
                Vec3& stone = wall.at(w.left + x, w.top + y);
                if (!inside) {
                    // The reveal; the sill takes the room's light.
                    stone = y >= w.height ? Vec3{0.06f, 0.095f, 0.115f} : stone * 0.55f;
                    if (y >= w.height && y < w.height + 3) {
                        windowAt.at(w.left + x, w.top + y) = index;
                        room.at(w.left + x, w.top + y) = w.color * 0.10f;
                    }
                    continue;
                }
                windowAt.at(w.left + x, w.top + y) = index;
                if (isBar(w, x, y)) {
                    stone = {0.010f, 0.018f, 0.024f};
                    room.at(w.left + x, w.top + y) = w.color * 0.05f;
                } else {
                    // Dark panes mirror the sky over the street.
                    const float sky = 1 - float(y) / float(w.height), streak = (x + y) % 31 < 7 ? 1.6f : 1;
                    stone = Vec3{0.012f, 0.040f, 0.060f} * (0.35f + 1.1f * sky * sky) * streak;
                    room.at(w.left + x, w.top + y) =
                        roomLight(w, x, y) * (y < 5 ? 0.55f + 0.09f * float(y) : 1.0f);
                }
            }
        }
    }

    /// Light that the windows throw on the wall around them, at an eighth of the size.
    Raster<Vec3> glow(const std::vector<float>& levels) const {
        constexpr int kScale = 8, kReach = 7;
        Raster<Vec3> small(kSceneWidth / kScale, kSceneHeight / kScale);
        for (std::size_t i = 0; i < windows.size(); ++i) {
            const Window& w = windows[i];
            const int cx = (w.left + w.width / 2) / kScale, cy = (w.top + w.height / 2) / kScale;
            for (int dy = -kReach; dy <= kReach && levels[i] > 0; ++dy) {
                for (int dx = -kReach; dx <= kReach; ++dx) {
                    const int x = cx + dx, y = (cy + dy + small.height()) % small.height();
                    if (x < 0 || x >= small.width()) continue;
                    const float wide = float(dx) * 38 / float(w.width) * 1.3f;
                    small.at(x, y) +=
                        w.color * (0.05f * levels[i] * std::exp(-0.13f * (wide * wide + float(dy * dy))));
                }
            }
        }
        return small;
    }

    SceneFrame frame(int index) const {
        const float time = float(index) / kFrames;
        std::vector<float> levels;
        for (const Window& window : windows) levels.push_back(brightness(window, time));
        const Raster<Vec3> around = glow(levels);
        SceneFrame rgba(std::size_t(kSceneWidth) * kSceneHeight * 4);
        parallelFor(kSceneHeight, [&](int y) {
            const int row = (y - index * kRise + kSceneHeight) % kSceneHeight;
            for (int x = 0; x < kSceneWidth; ++x) {
                // A sign across the street, and the sky's last light from the other side; they stay where
                // they are.
                const float left = 1 - float(x) / kSceneWidth,
                            pulse = 0.75f + 0.25f * std::sin(kTurn * 2 * time);
                const Vec3 street = Vec3{1, 1, 1} + Vec3{2.6f, 0.1f, 0.9f} * (left * left * pulse) +
                                    Vec3{0.1f, 1.0f, 1.1f} * ((1 - left) * (1 - left));
                const float sampleY = (float(row) + 0.5f) / 8;
                Vec3 light = wall.at(x, row) * street +
                             around.sample((float(x) + 0.5f) / 8, sampleY) * Vec3{0.8f, 0.8f, 0.8f};
                if (const int window = windowAt.at(x, row); window >= 0)
                    light += room.at(x, row) * (0.72f * levels[std::size_t(window)]);
                develop(film, light, x, y, std::uint32_t(index), 1.0f,
                        &rgba[(std::size_t(y) * kSceneWidth + std::size_t(x)) * 4]);
            }
        });
        return rgba;
    }
};

}  // namespace

SceneClip nightFacade() {
    return {kFrames, [facade = std::make_shared<const Facade>()](int index) { return facade->frame(index); }};
}

}  // namespace qv::assets
