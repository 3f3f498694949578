#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/ImageGraph/ShaderLibrary.h"

namespace qv {

/// A function may read this many inputs: what every Vulkan device can bind to one stage.
inline constexpr int kMaximumShaderInputs = 16;

/// An include file: its text, and the path that messages name it by.
struct ShaderInclude {
    std::string path, text;
};

/// Gives an include file by the name between the quotes; nothing when there is none.
using ShaderIncludeResolver = std::function<std::optional<ShaderInclude>(std::string_view name)>;

/// A shader function as its file in the shader dialect says it, read but not yet compiled. The dialect is
/// described in Docs/shaders.md.
struct ShaderSource {
    struct Include {
        std::string name, path;
        std::string text;  ///< as written
        std::string body;  ///< the text with its own #include lines blanked
    };
    struct Uniform {
        std::string name;
        UniformType type;
        bool isSelector;
        int line;  ///< of the declaration
    };

    std::string name;               ///< of the function: the file's stem
    std::string path;               ///< that messages name the file by
    std::string text;               ///< as written
    std::string body;               ///< the text with declarations and #include lines blanked, line for line
    std::vector<Include> includes;  ///< each once, after those it includes itself
    std::vector<Uniform> uniforms;  ///< in the order of the text
    std::vector<ShaderInput>
        inputs;  ///< up to the highest that is mentioned; `sizeOffset` 0 when the size is asked
    std::vector<std::string> globals;  ///< other names that the text declares outside functions

    /// Text and includes as one text, from which `parseArchivedShader` makes the same source without any
    /// file.
    std::string archive() const;
};

/// Reads a function file. Nothing is returned when there are mistakes: each adds a line "path:line: error: …"
/// to `errors`.
std::optional<ShaderSource> parseShaderSource(std::string name, std::string path, std::string text,
                                              const ShaderIncludeResolver& resolver,
                                              std::vector<std::string>& errors);

/// Reads what `ShaderSource::archive` wrote.
std::optional<ShaderSource> parseArchivedShader(std::string name, std::string_view archive,
                                                std::vector<std::string>& errors);

/// `text` with the names of `from` replaced by prefix + name; member names after a dot are left alone.
std::string prefixNames(std::string_view text, const std::vector<std::string>& from, std::string_view prefix);

}  // namespace qv
