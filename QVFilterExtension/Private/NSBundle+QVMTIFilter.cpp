#include "QVFilterExtension/Private/NSBundle+QVMTIFilter.h"

#include "QVFilterCore/QVResourceBundle.h"

namespace qv {

std::shared_ptr<const NSBundle> qv_ResourcesBundle() {
    return resourceBundle();
}

}  // namespace qv
