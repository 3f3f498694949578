#include "Bindings/Plugin/PluginClass.h"

#include <algorithm>

namespace qv {

bool isPluginClass(const QVFilterClass& filterClass) {
    if (filterClass.kindOrInherited() == QVFilterKind::auxiliary) return false;
    return std::ranges::all_of(filterClass.allInputs(), [&](const QVInput& input) {
        const bool isThere = input.role == QVInputRole::frame || input.role == QVInputRole::mask ||
                             (input.role == QVInputRole::incoming && filterClass.isTransition());
        return isThere || !input.isRequired;
    });
}

bool takesMask(const QVFilterClass& filterClass) {
    return filterClass.input(QVInputRole::mask) != nullptr;
}

bool isOffered(const QVFilterClass& filterClass, const QVProperty& property) {
    return filterClass.driverName(property) == "user";
}

std::string serviceName(const QVFilterClass& filterClass) {
    return "qv." + std::string(filterClass.name);
}

bool isService(const QVFilterClass& filterClass, MLTServiceKind kind) {
    if (!isPluginClass(filterClass)) return false;
    return kind == MLTServiceKind::filter ? !filterClass.isTransition()
                                          : filterClass.isTransition() || takesMask(filterClass);
}

std::string serviceTitle(const QVFilterClass& filterClass, MLTServiceKind kind) {
    const bool isMasked = kind == MLTServiceKind::transition && !filterClass.isTransition();
    return std::string(filterClass.title) + (isMasked ? " (second track is the mask)" : "");
}

bool isAnimated(const QVProperty& property) {
    return property.hasNumbers() &&
           (property.type == QVPropertyType::real || property.type == QVPropertyType::integer);
}

}  // namespace qv
