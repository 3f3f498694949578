#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace qv {

/// The bytes of a TrueType font with the given PostScript name: 1000 units per em, ascender 800, descender
/// −200. Space is 250 wide; "A" is a square from (100, 0) to (600, 500), 700 wide; "V" is the same square,
/// 600 wide; the pair "AV" is kerned by −100; any other character is the empty replacement glyph, 400 wide.
inline std::string testFont(const std::string& postScriptName) {
    struct Table {
        std::string bytes;
        Table& u16(int value) {
            bytes += char(value >> 8);
            bytes += char(value);
            return *this;
        }
        Table& u32(std::uint32_t value) { return u16(int(value >> 16)).u16(int(value & 0xffff)); }
        Table& many(std::initializer_list<int> values) {
            for (int value : values) u16(value);
            return *this;
        }
    };
    std::map<std::string, Table> tables;
    // One contour of four points on the curve, each flagged 1, with two-byte steps.
    Table square;
    square.many({1, 100, 0, 600, 500, 3, 0});
    square.bytes += std::string(4, '\1');
    square.many({100, 0, 500, 0, 0, 500, 0, -500});
    auto glyphBytes = int(square.bytes.size());
    tables["glyf"].bytes = square.bytes + square.bytes;
    tables["loca"].many({0, 0, 0, glyphBytes / 2, glyphBytes});  // halves of offsets; two glyphs are empty
    tables["hmtx"].many({400, 0, 250, 0, 700, 100, 600, 100});
    tables["head"]
        .u32(0x10000)
        .u32(0x10000)
        .u32(0)
        .u32(0x5f0f3cf5)
        .many({0, 1000})
        .u32(0)
        .u32(0)
        .u32(0)
        .u32(0);
    tables["head"].many({100, 0, 600, 500, 0, 8, 2, 0, 0});
    tables["hhea"].u32(0x10000).many({800, -200, 0, 700, 0, 0, 600, 1, 0, 0, 0, 0, 0, 0, 0, 4});
    tables["maxp"].u32(0x10000).many({4, 4, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0});
    tables["cmap"].many({0, 1, 3, 10}).u32(12).many({12, 0}).u32(16 + 3 * 12).u32(0).u32(3);
    tables["cmap"].u32(' ').u32(' ').u32(1).u32('A').u32('A').u32(2).u32('V').u32('V').u32(3);
    tables["kern"].many({0, 1, 0, 20, 1, 1, 6, 0, 0, 2, 3, -100});
    tables["name"].many({0, 1, 18, 1, 0, 0, 6, int(postScriptName.size()), 0}).bytes += postScriptName;
    tables["post"].u32(0x30000).u32(0).u32(0).u32(0).u32(0).u32(0).u32(0).u32(0);

    Table directory;
    directory.u32(0x10000).many({int(tables.size()), 128, 3, int(tables.size()) * 16 - 128});
    std::string data;
    for (const auto& [tag, table] : tables) {
        directory.bytes += tag;
        directory.u32(0).u32(std::uint32_t(12 + tables.size() * 16 + data.size()));
        directory.u32(std::uint32_t(table.bytes.size()));
        data += table.bytes;
        data.resize((data.size() + 3) / 4 * 4);
    }
    return directory.bytes + data;
}

}  // namespace qv
