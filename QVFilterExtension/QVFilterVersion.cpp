#include "QVFilterExtension/QVFilterVersion.h"

namespace qv {

std::string_view filterLibraryVersion() {
    return QV_FILTER_VERSION;
}

}  // namespace qv
