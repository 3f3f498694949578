#include "Host/Gallery/GalleryPage.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "Host/Gallery/CardStore.h"

// The build embeds the files page.html, page.css and page.js of this folder.
extern "C" {
extern const char qvGalleryPageHTML[], qvGalleryPageCSS[], qvGalleryPageJS[];
extern const std::uint64_t qvGalleryPageHTMLSize, qvGalleryPageCSSSize, qvGalleryPageJSSize;
}

namespace qv::host {

namespace {

constexpr std::string_view kIndex = "index.html";
/// How a page of ours is known.
constexpr std::string_view kGenerator = "content=\"qvfilter gallery\"";

}  // namespace

void checkPage(const std::filesystem::path& directory, const OverwriteOptions& overwrite) {
    const std::filesystem::path index = directory / kIndex;
    std::ifstream stream(index, std::ios::binary);
    if (!stream) return;
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (text.find(kGenerator) == std::string::npos) checkOutput(index.string(), overwrite);
}

void writePage(const std::filesystem::path& directory, const Json& data) {
    const auto text = [](const char* bytes, std::uint64_t size) {
        return std::string_view(bytes, std::size_t(size));
    };
    // The data first: a page never shows more than there is.
    std::string script = dump(data);
    script.pop_back();
    writeFile(directory / "gallery.js", "window.qvGallery = " + script + ";\n");
    writeFile(directory / "page.css", text(qvGalleryPageCSS, qvGalleryPageCSSSize));
    writeFile(directory / "page.js", text(qvGalleryPageJS, qvGalleryPageJSSize));
    writeFile(directory / kIndex, text(qvGalleryPageHTML, qvGalleryPageHTMLSize));
}

}  // namespace qv::host
