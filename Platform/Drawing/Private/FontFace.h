#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Drawing/UIBezierPath.h"
#include "Platform/Drawing/UIFont.h"

namespace qv {

/// A typeface. Lengths are in ems, y down, the baseline at 0. Glyphs are outlines without hinting, so that
/// text looks the same at every size and place. Thread-safe.
struct UIFont::Face {
    std::string postScriptName;
    double ascender = 0.8, descender = -0.2;

    using Visit = std::function<void(const UIBezierPath& outline, double x)>;

    virtual ~Face() = default;
    /// Calls `visit` with each glyph's outline and the x of its origin, left to right, with pair kerning;
    /// returns the line's advance width. An empty `visit` only measures. Characters that the face lacks get
    /// its own replacement glyph; control characters count as spaces; broken UTF-8 counts as U+FFFD.
    virtual double layOut(const std::string& utf8, const Visit& visit) const = 0;

    /// All faces of a font file; empty, with the cause in `error`, when it has none with outlines.
    static std::vector<std::shared_ptr<const Face>> load(const std::string& path, std::string* error);
    /// The machine's default sans-serif face, or one without glyphs whose characters are half an em wide.
    static std::shared_ptr<const Face> system();
};

}  // namespace qv
