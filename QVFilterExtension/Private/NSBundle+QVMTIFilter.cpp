#include "QVFilterExtension/Private/NSBundle+QVMTIFilter.h"

#include "QVFilterCore/QVResourceBundle.h"

namespace qv {

std::shared_ptr<const NSBundle> qv_ResourcesBundle() {
    return resourceBundle();
}

std::string qv_pathOfAsset(std::string_view fileName) {
    const auto bundle = qv_ResourcesBundle();
    return bundle ? bundle->pathForResource(fileName).value_or("") : "";
}

}  // namespace qv
