#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qv {

/// The types that a uniform can have; a boolean is pushed as a whole number.
enum class UniformType { floatType, intType, boolType, vec2, vec3, vec4 };

/// Words that a value of the type takes in the pushed block.
int wordCount(UniformType type);

/// A named value of a shader function: a uniform, which is a pushed value, or a selector, which is a
/// specialisation constant (one pipeline per value).
struct ShaderUniform {
    std::string name;                           ///< as the filter's parameters name it
    UniformType type = UniformType::floatType;  ///< how many words it takes, and how they are read
    bool isSelector = false;                    ///< a specialisation constant instead of a pushed value
    int offset = 0;                             ///< words into the pushed block, or the constant's id
};

/// How a function reaches one of its inputs.
struct ShaderInput {
    bool here = false;      ///< through readHere
    bool anywhere = false;  ///< through readInput or readPixel
    int sizeOffset = -1;    ///< words into the pushed block of its size, −1 when the function does not ask
};

/// A compiled fragment function and what it declares, or a raw stage (a .vert or .frag file, with code
/// alone). Immutable.
///
/// The pushed block is at most 32 words: the output's size first (2 words), then sizes of inputs, then
/// uniforms; it travels to the fragment stage as flat varyings of four words. Selectors have the constant ids
/// 0…; constant id 64+n is 1 when input n has another size than the output, so that readHere(n) samples
/// instead of fetching.
class ShaderFunction {
  public:
    std::string name;                     ///< the stem of its file
    std::string source;                   ///< as written, with its includes; what passes are fused from
    std::vector<ShaderUniform> uniforms;  ///< in the order of their declaration
    std::vector<ShaderInput> inputs;      ///< one for each input up to the last that the function names
    int pushedWords = 2;                  ///< of the pushed block, the output's size included
    std::vector<std::uint32_t> code;      ///< SPIR-V

    /// Nil when the function has none of this name.
    const ShaderUniform* uniform(std::string_view uniformName) const;
    /// True when every read of input `index` is readHere.
    bool readsOnlyHere(std::size_t index) const { return !inputs[index].anywhere; }
};

/// Words that a pushed block may have: 128 bytes, what every device takes.
inline constexpr int kMaximumPushedWords = 32;
/// Constant id of the first input's resampling.
inline constexpr std::uint32_t kResampleConstantBase = 64;

/// A file of compiled shader functions, by name. Immutable, shared between threads.
class ShaderLibrary {
  public:
    /// Opened libraries are kept for the process. Nil with the cause in `error` when the file is missing or
    /// damaged.
    static std::shared_ptr<const ShaderLibrary> open(const std::string& path, std::string* error = nullptr);
    /// Paths of those that are opened, sorted.
    static std::vector<std::string> openedPaths();
    /// Nil when the bytes are not a library of this version.
    static std::shared_ptr<const ShaderLibrary> parse(std::span<const std::byte> bytes,
                                                      std::string* error = nullptr);
    /// The functions of the platform itself, compiled into it.
    static const std::shared_ptr<const ShaderLibrary>& platform();

    /// Nil when there is none of this name.
    std::shared_ptr<const ShaderFunction> function(std::string_view name) const;
    /// All names, sorted.
    std::vector<std::string> functionNames() const;

  private:
    std::unordered_map<std::string, std::shared_ptr<const ShaderFunction>> functions_;
};

/// The bytes of a library that holds `functions`; `parse` reads them back.
std::vector<std::byte> serializeShaderLibrary(std::span<const ShaderFunction> functions);

}  // namespace qv
