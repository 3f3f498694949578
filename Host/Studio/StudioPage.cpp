#include "Host/Studio/StudioPage.h"

#include <cstdint>
#include <string>

// The build embeds Page/studio.css as the bytes qvStudio_studio_css and their number.
#define QV_STUDIO_FILES(FILE)                                            \
    FILE(studio_html, "", "text/html; charset=utf-8")                    \
    FILE(studio_css, "studio.css", "text/css; charset=utf-8")            \
    FILE(panels_css, "panels.css", "text/css; charset=utf-8")            \
    FILE(studio_js, "studio.js", "text/javascript; charset=utf-8")       \
    FILE(server_js, "server.js", "text/javascript; charset=utf-8")       \
    FILE(model_js, "model.js", "text/javascript; charset=utf-8")         \
    FILE(elements_js, "elements.js", "text/javascript; charset=utf-8")   \
    FILE(catalogue_js, "catalogue.js", "text/javascript; charset=utf-8") \
    FILE(chain_js, "chain.js", "text/javascript; charset=utf-8")         \
    FILE(controls_js, "controls.js", "text/javascript; charset=utf-8")   \
    FILE(stage_js, "stage.js", "text/javascript; charset=utf-8")         \
    FILE(scrubber_js, "scrubber.js", "text/javascript; charset=utf-8")   \
    FILE(dialogs_js, "dialogs.js", "text/javascript; charset=utf-8")

#define QV_DECLARE(symbol, name, type)     \
    extern const char qvStudio_##symbol[]; \
    extern const std::uint64_t qvStudio_##symbol##Size;
extern "C" {
QV_STUDIO_FILES(QV_DECLARE)
}

namespace qv::host {

std::optional<StudioFile> studioFile(std::string_view name) {
#define QV_FIND(symbol, file, type) \
    if (name == file) return StudioFile{type, {qvStudio_##symbol, std::size_t(qvStudio_##symbol##Size)}};
    QV_STUDIO_FILES(QV_FIND)
    return std::nullopt;
}

}  // namespace qv::host
