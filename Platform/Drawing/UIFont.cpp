#include "Platform/Drawing/UIFont.h"

#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <mutex>
#include <set>

#include "Platform/Drawing/Private/FontFace.h"

namespace qv {

namespace {

/// The fonts of this process.
struct Registry {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<const UIFont::Face>> faces;  ///< by PostScript name
    std::set<std::string> files;
};

Registry& registry() {
    static Registry fonts;
    return fonts;
}

}  // namespace

UIFont::UIFont(std::shared_ptr<const Face> face, double size)
    : face_(std::move(face)), size_(size > 0 ? size : 0) {}

UIFont UIFont::fontWithName(const std::string& postScriptName, double size) {
    auto& fonts = registry();
    std::scoped_lock lock(fonts.mutex);
    auto found = fonts.faces.find(postScriptName);
    return found == fonts.faces.end() ? UIFont() : UIFont(found->second, size);
}

UIFont UIFont::systemFontOfSize(double size) {
    return {Face::system(), size};
}

bool UIFont::registerFontFile(const std::string& path, std::string* error) {
    auto fail = [&](std::string cause) {
        if (error != nullptr) *error = std::move(cause);
        return false;
    };
    std::error_code unresolved;
    auto file = std::filesystem::canonical(path, unresolved).string();
    if (unresolved) return fail(unresolved.message());
    auto& fonts = registry();
    std::scoped_lock lock(fonts.mutex);
    if (fonts.files.contains(file)) return fail("the file is already registered");
    auto faces = Face::load(path, error);
    if (faces.empty()) return false;
    for (const auto& face : faces)
        if (fonts.faces.contains(face->postScriptName))
            return fail(fmt::format("another file has the font {}", face->postScriptName));
    fonts.files.insert(file);
    for (auto& face : faces) fonts.faces.emplace(face->postScriptName, std::move(face));
    return true;
}

const std::string& UIFont::fontName() const {
    static const std::string none;
    return face_ ? face_->postScriptName : none;
}

double UIFont::ascender() const {
    return face_ ? face_->ascender * size_ : 0;
}

double UIFont::descender() const {
    return face_ ? face_->descender * size_ : 0;
}

double UIFont::lineHeight() const {
    return ascender() - descender();
}

CGSize UIFont::sizeOfText(const std::string& utf8) const {
    return face_ ? CGSize{face_->layOut(utf8, {}) * size_, lineHeight()} : CGSize{};
}

}  // namespace qv
