// A shader library: the bytes after the header, whose checksum is made right so that what is behind it is
// reached; an odd first byte leaves the whole file as it is.

#include <cstring>
#include <vector>

#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"
#include "Platform/ImageGraph/ShaderLibrary.h"
#include "Tests/Fuzz/FuzzInput.h"

using namespace qv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kSumAt = 8, kHeader = 16;
    if (size < 1 + kHeader) return 0;
    std::vector<std::uint8_t> file(data + 1, data + size);
    if (data[0] % 2 == 0) {
        std::uint64_t sum = 0xCBF29CE484222325;
        for (std::size_t i = kHeader; i < file.size(); ++i) sum = (sum ^ file[i]) * 0x100000001B3;
        std::memcpy(file.data() + kSumAt, &sum, sizeof sum);
    }
    std::string error;
    const auto library = ShaderLibrary::parse(std::as_bytes(std::span(file)), &error);
    fuzz::require((library == nullptr) == !error.empty(), "a library, or why there is none");
    if (!library) return 0;
    std::vector<ShaderFunction> functions;
    for (const std::string& name : library->functionNames()) {
        functions.push_back(*library->function(name));
        std::vector<std::string> errors;
        if (const auto source = parseArchivedShader(name, functions.back().source, errors))
            translateShader(*source);
    }
    const auto again = ShaderLibrary::parse(serializeShaderLibrary(functions));
    fuzz::require(again && again->functionNames() == library->functionNames(),
                  "what was written can be read");
    return 0;
}
