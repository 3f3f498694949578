#include "QVFilterCore/QVInput.h"

#include <array>

#include "QVFilterCore/QVMTIFilter.h"

#include <fmt/format.h>

namespace qv {

std::string_view roleName(QVInputRole role) {
    static constexpr std::array<std::string_view, 6> kNames = {"frame", "incoming", "mask",
                                                               "layer", "table",    "texture"};
    return kNames[std::size_t(role)];
}

bool setInput(QVMTIFilter& filter, std::string_view name, QVInputValue value, std::string* error) {
    const QVInput* input = filter.filterClass().input(name);
    if (!input) {
        if (error) *error = fmt::format("{} has no input '{}'", filter.filterClass().name, name);
        return false;
    }
    if (std::holds_alternative<PixelBuffer>(value) != input->isBuffer) {
        if (error) *error = fmt::format("{} takes {}", name, input->isBuffer ? "a pixel buffer" : "an image");
        return false;
    }
    input->set(filter, std::move(value));
    return true;
}

}  // namespace qv
