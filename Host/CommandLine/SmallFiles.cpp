#include "Host/CommandLine/SmallFiles.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "Host/CommandLine/Failure.h"
#include "Platform/Foundation/OutputFile.h"

namespace qv::host {

namespace fs = std::filesystem;

void makeFolder(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (!error && !fs::is_directory(path)) error = std::make_error_code(std::errc::not_a_directory);
    if (error) fail(ExitCode::output, "{}", fileErrorLine("create", path.string(), error.message()));
}

std::string readFile(const fs::path& path) {
    std::error_code ignored;
    if (!fs::is_regular_file(path, ignored)) return {};  // a stream opens a folder, and throws on reading it
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const fs::path& path, std::string_view bytes) {
    std::string cause;
    if (!writeWholeFile(path.string(), bytes, &cause)) fail(ExitCode::output, "{}", cause);
}

}  // namespace qv::host
