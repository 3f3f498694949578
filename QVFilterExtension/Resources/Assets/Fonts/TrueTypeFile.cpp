#include "QVFilterExtension/Resources/Assets/Fonts/TrueTypeFile.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace qv::assets {
namespace {

/// Big-endian bytes.
class Bytes {
  public:
    Bytes& u8(unsigned v) {
        data.push_back(std::uint8_t(v));
        return *this;
    }
    Bytes& u16(int v) { return u8(unsigned(v) >> 8 & 0xff).u8(unsigned(v) & 0xff); }
    Bytes& u32(std::uint32_t v) { return u16(int(v >> 16)).u16(int(v & 0xffff)); }
    Bytes& tag(std::string_view text) {
        for (const char c : text) u8(std::uint8_t(c));
        return *this;
    }
    Bytes& append(const Bytes& other) {
        data.insert(data.end(), other.data.begin(), other.data.end());
        return *this;
    }
    void padTo4() {
        while (data.size() % 4) u8(0);
    }
    int size() const { return int(data.size()); }

    std::vector<std::uint8_t> data;
};

std::uint32_t checksum(const std::vector<std::uint8_t>& data) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < data.size(); ++i) sum += std::uint32_t(data[i]) << (24 - 8 * (i % 4));
    return sum;
}

struct Box {
    int left = 32767, bottom = 32767, right = -32768, top = -32768;
    bool empty() const { return left > right; }
    void add(int x, int y) {
        left = std::min(left, x);
        right = std::max(right, x);
        bottom = std::min(bottom, y);
        top = std::max(top, y);
    }
};

Box boxOf(const FontGlyph& glyph) {
    Box box;
    for (const OutlineContour& contour : glyph.contours)
        for (const OutlinePoint& point : contour) box.add(point.x, point.y);
    return box;
}

int pointCount(const FontGlyph& glyph) {
    int count = 0;
    for (const OutlineContour& contour : glyph.contours) count += int(contour.size());
    return count;
}

Bytes glyphData(const FontGlyph& glyph) {
    Bytes out;
    if (glyph.contours.empty()) return out;
    const Box box = boxOf(glyph);
    out.u16(int(glyph.contours.size())).u16(box.left).u16(box.bottom).u16(box.right).u16(box.top);
    int last = -1;
    for (const OutlineContour& contour : glyph.contours) out.u16(last += int(contour.size()));
    out.u16(0);  // no instructions
    Bytes flags, xs, ys;
    int x = 0, y = 0;
    for (const OutlineContour& contour : glyph.contours)
        for (const OutlinePoint& point : contour) {
            const int dx = point.x - std::exchange(x, point.x), dy = point.y - std::exchange(y, point.y);
            // Bits 1 and 2: one byte instead of two; bits 4 and 5: its sign, or "as before" for two.
            unsigned flag = point.onCurve ? 1 : 0;
            const auto delta = [&](int d, Bytes& bytes, unsigned isShort, unsigned sameOrPositive) {
                if (d == 0)
                    flag |= sameOrPositive;
                else if (std::abs(d) < 256) {
                    flag |= isShort | (d > 0 ? sameOrPositive : 0);
                    bytes.u8(unsigned(std::abs(d)));
                } else
                    bytes.u16(d);
            };
            delta(dx, xs, 2, 16);
            delta(dy, ys, 4, 32);
            flags.u8(flag);
        }
    out.append(flags).append(xs).append(ys).padTo4();
    return out;
}

/// Format 4: runs of characters whose glyphs are consecutive.
Bytes characterMap(const FontDescription& font) {
    struct Run {
        int first, last, glyph;
    };
    std::vector<Run> runs;
    for (std::size_t i = 0; i < font.glyphs.size(); ++i) {
        const int character = int(font.glyphs[i].character);
        if (character == 0) continue;
        if (!runs.empty() && runs.back().last + 1 == character)
            ++runs.back().last;
        else
            runs.push_back({character, character, int(i)});
    }
    runs.push_back({0xffff, 0xffff, 0});
    const int count = int(runs.size());
    int power = 1, log = 0;
    while (power * 2 <= count) power *= 2, ++log;
    Bytes table;
    table.u16(4).u16(16 + 8 * count).u16(0);
    table.u16(2 * count).u16(2 * power).u16(log).u16(2 * count - 2 * power);
    for (const Run& run : runs) table.u16(run.last);
    table.u16(0);
    for (const Run& run : runs) table.u16(run.first);
    for (const Run& run : runs) table.u16(run.first == 0xffff ? 1 : run.glyph - run.first);
    for (int i = 0; i < count; ++i) table.u16(0);

    Bytes out;
    constexpr int kHeader = 4 + 2 * 8;
    out.u16(0).u16(2);
    out.u16(0).u16(3).u32(kHeader);  // Unicode, basic plane
    out.u16(3).u16(1).u32(kHeader);  // Windows, Unicode basic plane
    return out.append(table);
}

Bytes nameTable(const FontDescription& font) {
    const std::pair<int, std::string> names[] = {
        {1, font.familyName},
        {2, font.styleName},
        {3, font.postScriptName + " 1.0"},
        {4, font.familyName + " " + font.styleName},
        {5, "Version 1.0"},
        {6, font.postScriptName},
    };
    Bytes records, text;
    const auto add = [&](int platform, int encoding, int language, int id, const std::string& name,
                         bool wide) {
        records.u16(platform).u16(encoding).u16(language).u16(id);
        records.u16(int(name.size()) * (wide ? 2 : 1)).u16(text.size());
        for (const char c : name) wide ? text.u16(std::uint8_t(c)) : text.u8(std::uint8_t(c));
    };
    for (const auto& [id, name] : names) add(1, 0, 0, id, name, false);
    for (const auto& [id, name] : names) add(3, 1, 0x409, id, name, true);
    Bytes out;
    const int count = int(2 * std::size(names));
    out.u16(0).u16(count).u16(6 + 12 * count).append(records).append(text);
    return out;
}

Bytes metricsForWindows(const FontDescription& font) {
    int total = 0;
    for (const FontGlyph& glyph : font.glyphs) total += glyph.advance;
    const int em = font.unitsPerEm;
    Bytes out;
    out.u16(4).u16(total / int(font.glyphs.size())).u16(400).u16(5).u16(0);
    // Sub- and superscripts, strike-through.
    out.u16(em * 65 / 100).u16(em * 60 / 100).u16(0).u16(em * 8 / 100);
    out.u16(em * 65 / 100).u16(em * 60 / 100).u16(0).u16(em * 35 / 100);
    out.u16(em * 8 / 100).u16(font.xHeight / 2).u16(0);
    for (const unsigned panose : {2, 11, 5, 3, 2, 2, 2, 2, 2, 4}) out.u8(panose);
    out.u32(1).u32(0).u32(0).u32(0);  // Basic Latin
    out.tag("QV  ").u16(0x40).u16(int(font.glyphs[1].character)).u16(int(font.glyphs.back().character));
    out.u16(font.ascender).u16(font.descender).u16(font.lineGap).u16(font.ascender).u16(-font.descender);
    out.u32(1).u32(0);  // Latin 1
    out.u16(font.xHeight).u16(font.capHeight).u16(0).u16(32).u16(1);
    return out;
}

}  // namespace

std::vector<std::uint8_t> trueTypeFile(const FontDescription& font) {
    Box bounds;
    int widest = 0, mostPoints = 0, mostContours = 0, leastLeft = 32767, leastRight = 32767, furthest = 0;
    Bytes glyf, loca, hmtx;
    for (const FontGlyph& glyph : font.glyphs) {
        loca.u32(std::uint32_t(glyf.size()));
        glyf.append(glyphData(glyph));
        const Box box = boxOf(glyph);
        hmtx.u16(glyph.advance).u16(box.empty() ? 0 : box.left);
        widest = std::max(widest, glyph.advance);
        if (box.empty()) continue;
        bounds.add(box.left, box.bottom);
        bounds.add(box.right, box.top);
        leastLeft = std::min(leastLeft, box.left);
        leastRight = std::min(leastRight, glyph.advance - box.right);
        furthest = std::max(furthest, box.right);
        mostPoints = std::max(mostPoints, pointCount(glyph));
        mostContours = std::max(mostContours, int(glyph.contours.size()));
    }
    loca.u32(std::uint32_t(glyf.size()));

    Bytes head, hhea, maxp, post;
    constexpr std::uint32_t kDay = 0xe0000000u;  // seconds since 1904; the same for every build
    head.u32(0x00010000).u32(0x00010000).u32(0).u32(0x5f0f3cf5).u16(0x000b).u16(font.unitsPerEm);
    head.u32(0)
        .u32(kDay)
        .u32(0)
        .u32(kDay)
        .u16(bounds.left)
        .u16(bounds.bottom)
        .u16(bounds.right)
        .u16(bounds.top);
    head.u16(0).u16(8).u16(2).u16(1).u16(0);
    hhea.u32(0x00010000).u16(font.ascender).u16(font.descender).u16(font.lineGap).u16(widest);
    hhea.u16(leastLeft).u16(leastRight).u16(furthest).u16(1).u16(0).u16(0);
    hhea.u16(0).u16(0).u16(0).u16(0).u16(0).u16(int(font.glyphs.size()));
    maxp.u32(0x00010000).u16(int(font.glyphs.size())).u16(mostPoints).u16(mostContours).u16(0).u16(0).u16(1);
    for (int i = 0; i < 8; ++i) maxp.u16(0);
    post.u32(0x00030000).u32(0).u16(-font.unitsPerEm / 10).u16(font.unitsPerEm / 20);
    for (int i = 0; i < 5; ++i) post.u32(0);

    std::array<std::pair<std::string_view, Bytes>, 10> tables{{
        {"OS/2", metricsForWindows(font)},
        {"cmap", characterMap(font)},
        {"glyf", glyf},
        {"head", head},
        {"hhea", hhea},
        {"hmtx", hmtx},
        {"loca", loca},
        {"maxp", maxp},
        {"name", nameTable(font)},
        {"post", post},
    }};
    const int count = int(tables.size());
    Bytes directory, body;
    directory.u32(0x00010000).u16(count).u16(8 * 16).u16(3).u16((count - 8) * 16);
    std::size_t headAt = 0;
    for (auto& [tag, table] : tables) {
        const int length = table.size();
        table.padTo4();
        const std::uint32_t offset = std::uint32_t(12 + 16 * count + body.size());
        if (tag == "head") headAt = offset;
        directory.tag(tag).u32(checksum(table.data)).u32(offset).u32(std::uint32_t(length));
        body.append(table);
    }
    std::vector<std::uint8_t> file = directory.append(body).data;
    Bytes adjustment;
    adjustment.u32(0xb1b0afba - checksum(file));
    std::copy(adjustment.data.begin(), adjustment.data.end(), file.begin() + std::ptrdiff_t(headAt + 8));
    return file;
}

}  // namespace qv::assets
