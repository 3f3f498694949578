#include "Platform/Drawing/Private/FontFace.h"

#include <fmt/format.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <system_error>
#include <unordered_map>
#include <utility>

#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace qv {

namespace {

using Bytes = std::vector<FT_Byte>;
using FacePointer = std::shared_ptr<const UIFont::Face>;

/// The code points of UTF-8 text; U+FFFD for each byte that begins no valid sequence.
std::u32string decodeUTF8(const std::string& text) {
    std::u32string codes;
    for (std::size_t i = 0; i < text.size();) {
        auto lead = static_cast<unsigned char>(text[i]);
        int extra = lead < 0x80 ? 0 : lead >> 5 == 6 ? 1 : lead >> 4 == 14 ? 2 : lead >> 3 == 30 ? 3 : -1;
        char32_t code = extra <= 0 ? lead : lead & (0x3f >> extra);
        int taken = 0;
        while (taken < extra && i + taken + 1 < text.size() && (text[i + taken + 1] & 0xc0) == 0x80)
            code = code << 6 | (text[i + ++taken] & 0x3f);
        constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
        bool valid = extra >= 0 && taken == extra && code >= kSmallest[extra] && code <= 0x10ffff &&
                     (code < 0xd800 || code > 0xdfff);
        codes.push_back(valid ? code : U'�');
        i += valid ? extra + 1 : 1;
    }
    return codes;
}

struct Glyph {
    double advance = 0;
    UIBezierPath outline;
};

/// Font units, y up, to ems, y down.
struct OutlineReader {
    UIBezierPath path;
    double unitsPerEm;

    CGPoint point(const FT_Vector* v) const {
        return {double(v->x) / unitsPerEm, -double(v->y) / unitsPerEm};
    }

    static OutlineReader& of(void* user) { return *static_cast<OutlineReader*>(user); }
    static int move(const FT_Vector* to, void* user) {
        auto& reader = of(user);
        if (!reader.path.isEmpty()) reader.path.closePath();
        reader.path.moveToPoint(reader.point(to));
        return 0;
    }
    static int line(const FT_Vector* to, void* user) {
        of(user).path.addLineToPoint(of(user).point(to));
        return 0;
    }
    static int quadratic(const FT_Vector* control, const FT_Vector* to, void* user) {
        of(user).path.addQuadCurveToPoint(of(user).point(to), of(user).point(control));
        return 0;
    }
    static int cubic(const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* user) {
        auto& reader = of(user);
        reader.path.addCurveToPoint(reader.point(to), reader.point(control1), reader.point(control2));
        return 0;
    }
};

/// A face of a font file that is held in memory, so that the file may change or vanish. It has a FreeType
/// library of its own: those may not be shared between threads.
class FileFace final : public UIFont::Face {
  public:
    FileFace(std::shared_ptr<const Bytes> bytes, FT_Long index) : bytes_(std::move(bytes)) {
        error_ = FT_Init_FreeType(&library_);
        if (error_ == 0)
            error_ = FT_New_Memory_Face(library_, bytes_->data(), FT_Long(bytes_->size()), index, &face_);
        if (error_ != 0 || !usable()) return;
        if (const char* name = FT_Get_Postscript_Name(face_)) postScriptName = name;
        ascender = double(face_->ascender) / face_->units_per_EM;
        descender = double(face_->descender) / face_->units_per_EM;
    }
    ~FileFace() override {
        if (face_ != nullptr) FT_Done_Face(face_);
        if (library_ != nullptr) FT_Done_FreeType(library_);
    }
    FileFace(const FileFace&) = delete;
    FileFace& operator=(const FileFace&) = delete;

    FT_Error error() const { return error_; }
    bool usable() const { return face_ != nullptr && FT_IS_SCALABLE(face_) && face_->units_per_EM > 0; }
    FT_Long faceCount() const { return face_->num_faces; }

    double layOut(const std::string& utf8, const Visit& visit) const override {
        std::scoped_lock lock(mutex_);
        double x = 0;
        FT_UInt previous = 0;
        for (char32_t code : decodeUTF8(utf8)) {
            FT_UInt index = FT_Get_Char_Index(face_, code < ' ' ? ' ' : code);
            FT_Vector kerning{};
            if (previous != 0 && FT_Get_Kerning(face_, previous, index, FT_KERNING_UNSCALED, &kerning) == 0)
                x += double(kerning.x) / face_->units_per_EM;
            const auto& glyph = glyphAt(index);
            if (visit) visit(glyph.outline, x);
            x += glyph.advance;
            previous = index;
        }
        return x;
    }

  private:
    const Glyph& glyphAt(FT_UInt index) const {
        auto [entry, isNew] = glyphs_.try_emplace(index);
        auto& glyph = entry->second;
        if (!isNew || FT_Load_Glyph(face_, index, FT_LOAD_NO_SCALE) != 0) return glyph;
        glyph.advance = double(face_->glyph->metrics.horiAdvance) / face_->units_per_EM;
        if (face_->glyph->format != FT_GLYPH_FORMAT_OUTLINE) return glyph;
        OutlineReader reader{{}, double(face_->units_per_EM)};
        constexpr FT_Outline_Funcs functions{
            OutlineReader::move, OutlineReader::line, OutlineReader::quadratic, OutlineReader::cubic, 0, 0};
        if (FT_Outline_Decompose(&face_->glyph->outline, &functions, &reader) != 0) return glyph;
        if (!reader.path.isEmpty()) reader.path.closePath();
        glyph.outline = std::move(reader.path);
        return glyph;
    }

    std::shared_ptr<const Bytes> bytes_;
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
    FT_Error error_ = 0;
    mutable std::mutex mutex_;
    mutable std::unordered_map<FT_UInt, Glyph> glyphs_;
};

/// What remains where the machine has no font at all.
struct EmptyFace final : UIFont::Face {
    double layOut(const std::string& utf8, const Visit&) const override {
        return 0.5 * double(decodeUTF8(utf8).size());
    }
};

FacePointer findSystemFace() {
    // A configuration of our own, let go after the one question, leaves no global state behind; and unlike
    // the default one it does not complain on standard error where the machine has none.
    std::unique_ptr<FcConfig, decltype(&FcConfigDestroy)> config(FcConfigCreate(), FcConfigDestroy);
    if (!config || !FcConfigParseAndLoad(config.get(), nullptr, FcFalse) || !FcConfigBuildFonts(config.get()))
        return nullptr;
    using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;
    Pattern wanted(FcNameParse(reinterpret_cast<const FcChar8*>("sans-serif:scalable=true")),
                   FcPatternDestroy);
    if (!wanted) return nullptr;
    FcConfigSubstitute(config.get(), wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    Pattern found(FcFontMatch(config.get(), wanted.get(), &result), FcPatternDestroy);
    FcChar8* file = nullptr;
    int index = 0;
    if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch) return nullptr;
    FcPatternGetInteger(found.get(), FC_INDEX, 0, &index);
    auto faces = UIFont::Face::load(reinterpret_cast<const char*>(file), nullptr);
    if (faces.empty()) return nullptr;
    // The upper half of the index names a variation, the lower half the face.
    return faces[std::min(std::size_t(index & 0xffff), faces.size() - 1)];
}

}  // namespace

std::vector<FacePointer> UIFont::Face::load(const std::string& path, std::string* error) {
    auto fail = [&](std::string cause) {
        if (error != nullptr) *error = std::move(cause);
        return std::vector<FacePointer>();
    };
    std::error_code unreadable;
    auto size = std::filesystem::file_size(path, unreadable);
    if (unreadable) return fail(unreadable.message());
    Bytes content(size);
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(content.data()), std::streamsize(size)))
        return fail(errno != 0 ? std::strerror(errno) : "the file changed while it was read");
    auto bytes = std::make_shared<const Bytes>(std::move(content));
    std::vector<FacePointer> faces;
    for (FT_Long index = 0, count = 1; index < count; ++index) {
        auto face = std::make_shared<FileFace>(bytes, index);
        if (face->error() != 0)
            return fail(fmt::format("not a readable font (FreeType error {})", face->error()));
        count = face->faceCount();
        if (face->usable()) faces.push_back(std::move(face));
    }
    return faces.empty() ? fail("a font without outlines") : faces;
}

FacePointer UIFont::Face::system() {
    static const FacePointer face = [] {
        auto found = findSystemFace();
        return found ? found : std::make_shared<EmptyFace>();
    }();
    return face;
}

}  // namespace qv
