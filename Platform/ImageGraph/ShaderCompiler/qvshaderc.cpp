// The build's shader compiler.
//   qvshaderc compile --glslc GLSLC [-I DIR]... -o OUT.shader SOURCE    one function (.glsl) or raw stage
//   (.vert, .frag) qvshaderc pack -o OUT @LIST                                         the files that LIST
//   names, as one library

#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Platform/Foundation/OutputFile.h"
#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"

extern char** environ;

namespace {

using namespace qv;
namespace fs = std::filesystem;

struct Arguments {
    std::string command, glslc = "glslc", output, input;
    std::vector<std::string> includeFolders;
};

std::optional<Arguments> parseArguments(std::span<char*> words) {
    Arguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        const bool takesValue = word == "--glslc" || word == "-I" || word == "-o";
        if (takesValue && i + 1 == words.size()) return std::nullopt;
        if (word == "--glslc") {
            arguments.glslc = words[++i];
        } else if (word == "-I") {
            arguments.includeFolders.emplace_back(words[++i]);
        } else if (word == "-o") {
            arguments.output = words[++i];
        } else if (arguments.command.empty()) {
            arguments.command = word;
        } else if (arguments.input.empty()) {
            arguments.input = word;
        } else {
            return std::nullopt;
        }
    }
    if (arguments.output.empty() || arguments.input.empty()) return std::nullopt;
    return arguments;
}

std::optional<std::string> readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

int fail(std::string_view message) {
    fmt::print(stderr, "{}\n", message);
    return 1;
}

/// The exit status. A running program may have an older file open, which stays as it is.
int writeLibrary(const std::string& path, std::span<const ShaderFunction> functions) {
    const std::vector<std::byte> bytes = serializeShaderLibrary(functions);
    std::string error;
    if (writeWholeFile(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, &error)) return 0;
    return fail(error);
}

bool runProgram(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t process = 0;
    int status = 0;
    if (posix_spawnp(&process, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) {
        fail(fmt::format("{}: cannot be run", words[0]));
        return false;
    }
    return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// SPIR-V of a GLSL file; empty when the compiler refuses, which has then said why.
std::vector<std::uint32_t> compileStage(const Arguments& arguments, std::string_view stage,
                                        const fs::path& file) {
    const std::string result = arguments.output + ".spv";
    std::vector<std::string> words{arguments.glslc, fmt::format("-fshader-stage={}", stage), "-O",
                                   "--target-env=vulkan1.1"};
    for (const std::string& folder : arguments.includeFolders) words.insert(words.end(), {"-I", folder});
    words.insert(words.end(), {"-o", result, file.string()});
    if (!runProgram(words)) return {};
    const std::optional<std::string> bytes = readFile(result);
    fs::remove(result);
    if (!bytes) return {};
    std::vector<std::uint32_t> code(bytes->size() / 4);
    std::memcpy(code.data(), bytes->data(), code.size() * 4);
    return code;
}

std::optional<ShaderFunction> compileFunction(const Arguments& arguments, const std::string& text) {
    const ShaderIncludeResolver resolver = [&](std::string_view name) -> std::optional<ShaderInclude> {
        for (const std::string& folder : arguments.includeFolders) {
            const fs::path path = fs::path(folder) / name;
            if (auto content = readFile(path)) return ShaderInclude{path.string(), *std::move(content)};
        }
        return std::nullopt;
    };
    const std::string name = fs::path(arguments.input).stem().string();
    std::vector<std::string> errors;
    const auto source = parseShaderSource(name, arguments.input, text, resolver, errors);
    for (const std::string& error : errors) fail(error);
    if (!source) return std::nullopt;

    TranslatedShader shader = translateShader(*source);
    if (!shader.error.empty()) {
        fail(fmt::format("{}:1: error: {}", arguments.input, shader.error));
        return std::nullopt;
    }
    const std::string generated = arguments.output + ".frag";
    std::string cause;
    if (!writeWholeFile(generated, shader.glsl, &cause)) {
        fail(cause);
        return std::nullopt;
    }
    shader.declaration.code = compileStage(arguments, "fragment", generated);
    if (shader.declaration.code.empty()) return std::nullopt;
    return std::move(shader.declaration);
}

std::optional<ShaderFunction> compileRawStage(const Arguments& arguments) {
    const fs::path path = arguments.input;
    ShaderFunction function;
    function.name = path.filename().string();
    function.code = compileStage(arguments, path.extension() == ".vert" ? "vertex" : "fragment", path);
    if (function.code.empty()) return std::nullopt;
    return function;
}

int compile(const Arguments& arguments) {
    const fs::path folder = fs::path(arguments.output).parent_path();
    std::error_code ignored;
    if (!folder.empty()) fs::create_directories(folder, ignored);
    const auto text = readFile(arguments.input);
    if (!text) return fail(arguments.input + ": cannot be read");
    const bool isFunction = fs::path(arguments.input).extension() == ".glsl";
    const auto function = isFunction ? compileFunction(arguments, *text) : compileRawStage(arguments);
    if (!function) return 1;
    return writeLibrary(arguments.output, {&*function, 1});
}

int pack(const Arguments& arguments) {
    if (!arguments.input.starts_with('@')) return fail("the list of files is given as @LIST");
    std::ifstream list(arguments.input.substr(1));
    if (!list) return fail(arguments.input.substr(1) + ": cannot be read");
    std::vector<ShaderFunction> functions;
    for (std::string path; std::getline(list, path);) {
        if (path.empty()) continue;
        std::string error;
        const auto library = ShaderLibrary::open(path, &error);
        if (!library) return fail(error);
        for (const std::string& name : library->functionNames()) {
            for (const ShaderFunction& other : functions) {
                if (other.name == name)
                    return fail(fmt::format("{}: there are two functions \"{}\"", path, name));
            }
            functions.push_back(*library->function(name));
        }
    }
    const fs::path folder = fs::path(arguments.output).parent_path();
    std::error_code ignored;
    if (!folder.empty()) fs::create_directories(folder, ignored);
    return writeLibrary(arguments.output, functions);
}

}  // namespace

int main(int argc, char** argv) {
    const auto arguments = parseArguments({argv + 1, argv + argc});
    if (arguments && arguments->command == "compile") return compile(*arguments);
    if (arguments && arguments->command == "pack") return pack(*arguments);
    fail("qvshaderc compile --glslc GLSLC [-I DIR]... -o OUT.shader SOURCE\nqvshaderc pack -o OUT @LIST");
    return 2;
}
