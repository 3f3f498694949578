#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/ShaderLibrary.h"

extern "C" {
extern const std::byte qvPlatformShaderLibrary[];
extern const std::uint64_t qvPlatformShaderLibrarySize;
}

namespace qv {

const std::shared_ptr<const ShaderLibrary>& ShaderLibrary::platform() {
    static const std::shared_ptr<const ShaderLibrary> library = [] {
        std::string error;
        auto parsed = parse({qvPlatformShaderLibrary, std::size_t(qvPlatformShaderLibrarySize)}, &error);
        if (!parsed) {
            logLine("the library's own shaders: " + error);
            parsed = std::make_shared<ShaderLibrary>();
        }
        return parsed;
    }();
    return library;
}

}  // namespace qv
