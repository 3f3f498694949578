#include "Host/Gallery/GalleryPage.h"

#include <cstdint>
#include <string>
#include <string_view>

#include "Host/CommandLine/SmallFiles.h"

#include <nlohmann/json.hpp>

// The build embeds the files of these names.
extern "C" {
extern const char qvGallery_page_html[], qvGallery_page_css[], qvGallery_page_js[], qvGallery_stage_js[];
extern const std::uint64_t qvGallery_page_htmlSize, qvGallery_page_cssSize, qvGallery_page_jsSize,
    qvGallery_stage_jsSize;
}

namespace qv::host {

namespace {

constexpr std::string_view kIndex = "index.html";
/// How a page of ours is known.
constexpr std::string_view kGenerator = "content=\"qvfilter gallery\"";

}  // namespace

void checkPage(const std::filesystem::path& directory, const OverwriteOptions& overwrite) {
    const std::filesystem::path index = directory / kIndex;
    if (readFile(index).find(kGenerator) == std::string::npos) checkOutput(index.string(), overwrite);
}

void writePage(const std::filesystem::path& directory, const Json& data) {
    const auto write = [&](std::string_view name, const char* bytes, std::uint64_t size) {
        writeFile(directory / name, {bytes, std::size_t(size)});
    };
    // The data first: a page never shows more than there is.
    std::string script = dump(data);
    script.pop_back();
    writeFile(directory / "gallery.js", "window.qvGallery = " + script + ";\n");
    write("page.css", qvGallery_page_css, qvGallery_page_cssSize);
    write("stage.js", qvGallery_stage_js, qvGallery_stage_jsSize);
    write("page.js", qvGallery_page_js, qvGallery_page_jsSize);
    write(kIndex, qvGallery_page_html, qvGallery_page_htmlSize);
}

}  // namespace qv::host
