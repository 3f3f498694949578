#include "Platform/ImageGraph/ShaderLibrary.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>

#include "Platform/Foundation/Hash.h"

namespace qv {

static_assert(std::endian::native == std::endian::little, "a library is written in the machine's byte order");

namespace {

// A library is: magic, version, checksum of all that follows, function count, functions.
constexpr std::uint32_t kMagic = 0x4C535651;  // "QVSL"
constexpr std::uint32_t kVersion = 1;
constexpr std::size_t kHeaderBytes = 16;
constexpr std::uint32_t kSpirvMagic = 0x07230203;

/// A damaged file must not reach the driver's compiler.
std::uint64_t checksum(std::span<const std::byte> bytes) {
    return hashOfMemory(bytes.data(), bytes.size());
}

class Writer {
  public:
    void word(std::uint32_t value) { raw(&value, sizeof value); }
    void text(std::string_view value) {
        word(std::uint32_t(value.size()));
        raw(value.data(), value.size());
    }
    void raw(const void* data, std::size_t size) {
        const auto* first = static_cast<const std::byte*>(data);
        bytes.insert(bytes.end(), first, first + size);
    }
    std::vector<std::byte> bytes;
};

/// Reads as long as there is something to read; `good` tells whether there was.
class Reader {
  public:
    explicit Reader(std::span<const std::byte> bytes) : bytes_(bytes) {}

    std::uint32_t word() {
        std::uint32_t value = 0;
        if (take(sizeof value)) std::memcpy(&value, taken_.data(), sizeof value);
        return value;
    }
    std::uint64_t doubleWord() {
        const std::uint64_t low = word();
        return low | std::uint64_t(word()) << 32;
    }
    std::string text() {
        if (!take(word())) return {};
        return {reinterpret_cast<const char*>(taken_.data()), taken_.size()};
    }
    std::vector<std::uint32_t> words(std::size_t count) {
        if (count > bytes_.size() / 4 || !take(count * 4)) good_ = false;
        if (!good_ || count == 0) return {};
        std::vector<std::uint32_t> values(count);
        std::memcpy(values.data(), taken_.data(), taken_.size());
        return values;
    }
    /// A number of things that take at least `bytesEach`.
    std::size_t count(std::size_t bytesEach) {
        const std::size_t value = word();
        if (value > bytes_.size() / bytesEach) good_ = false;
        return good_ ? value : 0;
    }
    bool good() const { return good_; }
    bool atEnd() const { return bytes_.empty(); }

  private:
    bool take(std::size_t size) {
        good_ = good_ && size <= bytes_.size();
        if (!good_) return false;
        taken_ = bytes_.first(size);
        bytes_ = bytes_.subspan(size);
        return true;
    }
    std::span<const std::byte> bytes_, taken_;
    bool good_ = true;
};

void write(Writer& out, const ShaderFunction& function) {
    out.text(function.name);
    out.text(function.source);
    out.word(std::uint32_t(function.uniforms.size()));
    for (const ShaderUniform& uniform : function.uniforms) {
        out.text(uniform.name);
        out.word(std::uint32_t(uniform.type));
        out.word(uniform.isSelector);
        out.word(std::uint32_t(uniform.offset));
    }
    out.word(std::uint32_t(function.inputs.size()));
    for (const ShaderInput& input : function.inputs) {
        out.word(std::uint32_t(input.here) | std::uint32_t(input.anywhere) << 1);
        out.word(std::uint32_t(input.sizeOffset));
    }
    out.word(std::uint32_t(function.pushedWords));
    out.word(std::uint32_t(function.code.size()));
    out.raw(function.code.data(), function.code.size() * 4);
}

ShaderFunction readFunction(Reader& in) {
    ShaderFunction function;
    function.name = in.text();
    function.source = in.text();
    for (std::size_t count = in.count(16); count > 0 && in.good(); --count) {
        ShaderUniform& uniform = function.uniforms.emplace_back();
        uniform.name = in.text();
        uniform.type = UniformType(in.word());
        uniform.isSelector = in.word() != 0;
        uniform.offset = int(in.word());
    }
    for (std::size_t count = in.count(8); count > 0 && in.good(); --count) {
        ShaderInput& input = function.inputs.emplace_back();
        const std::uint32_t flags = in.word();
        input.here = flags & 1;
        input.anywhere = flags & 2;
        input.sizeOffset = int(in.word());
    }
    function.pushedWords = int(in.word());
    function.code = in.words(in.word());
    return function;
}

bool isPlausible(const ShaderFunction& function) {
    if (function.name.empty() || function.pushedWords < 0 || function.pushedWords > kMaximumPushedWords)
        return false;
    if (function.code.empty() || function.code.front() != kSpirvMagic) return false;
    for (const ShaderUniform& uniform : function.uniforms) {
        if (uniform.type > UniformType::vec4 || uniform.offset < 0) return false;
        const int end = uniform.isSelector ? int(kResampleConstantBase) : function.pushedWords;
        const int words = uniform.isSelector ? 1 : wordCount(uniform.type);
        if (uniform.offset > end - words) return false;
    }
    return std::ranges::all_of(function.inputs, [&](const ShaderInput& input) {
        return input.sizeOffset >= -1 && input.sizeOffset <= function.pushedWords - 2;
    });
}

void setError(std::string* error, std::string_view message) {
    if (error) *error = message;
}

}  // namespace

int wordCount(UniformType type) {
    switch (type) {
        case UniformType::floatType:
        case UniformType::intType:
        case UniformType::boolType:
            return 1;
        case UniformType::vec2:
            return 2;
        case UniformType::vec3:
            return 3;
        case UniformType::vec4:
            return 4;
    }
    return 1;
}

const ShaderUniform* ShaderFunction::uniform(std::string_view uniformName) const {
    const auto found = std::ranges::find(uniforms, uniformName, &ShaderUniform::name);
    return found == uniforms.end() ? nullptr : &*found;
}

std::vector<std::byte> serializeShaderLibrary(std::span<const ShaderFunction> functions) {
    Writer body;
    body.word(std::uint32_t(functions.size()));
    for (const ShaderFunction& function : functions) write(body, function);
    const std::uint64_t sum = checksum(body.bytes);

    Writer out;
    out.word(kMagic);
    out.word(kVersion);
    out.raw(&sum, sizeof sum);
    out.raw(body.bytes.data(), body.bytes.size());
    return std::move(out.bytes);
}

std::shared_ptr<const ShaderLibrary> ShaderLibrary::parse(std::span<const std::byte> bytes,
                                                          std::string* error) {
    Reader in(bytes);
    if (in.word() != kMagic || !in.good()) {
        setError(error, "not a shader library");
        return nullptr;
    }
    if (const std::uint32_t version = in.word(); version != kVersion || !in.good()) {
        setError(error, "shader library of version " + std::to_string(version) + ", version " +
                            std::to_string(kVersion) + " is needed");
        return nullptr;
    }
    const std::uint64_t sum = in.doubleWord();
    if (!in.good() || sum != checksum(bytes.subspan(kHeaderBytes))) {
        setError(error, "damaged shader library");
        return nullptr;
    }
    auto library = std::make_shared<ShaderLibrary>();
    bool good = true;
    for (std::size_t count = in.count(1); count > 0 && good; --count) {
        auto function = std::make_shared<ShaderFunction>(readFunction(in));
        good = in.good() && isPlausible(*function);
        const std::string& name = function->name;
        if (good) library->functions_.emplace(name, std::move(function));
    }
    if (good && in.good() && in.atEnd()) return library;
    setError(error, "damaged shader library");
    return nullptr;
}

namespace {

struct OpenedLibraries {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<const ShaderLibrary>> byPath;
};

OpenedLibraries& openedLibraries() {
    static OpenedLibraries opened;
    return opened;
}

}  // namespace

std::vector<std::string> ShaderLibrary::openedPaths() {
    OpenedLibraries& opened = openedLibraries();
    std::scoped_lock lock(opened.mutex);
    std::vector<std::string> paths;
    for (const auto& [path, library] : opened.byPath) paths.push_back(path);
    return paths;
}

std::shared_ptr<const ShaderLibrary> ShaderLibrary::open(const std::string& path, std::string* error) {
    OpenedLibraries& opened = openedLibraries();
    std::scoped_lock lock(opened.mutex);
    if (const auto found = opened.byPath.find(path); found != opened.byPath.end()) return found->second;

    std::ifstream file(path, std::ios::binary);
    const std::string content((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!file) {
        setError(error, path + ": cannot be read");
        return nullptr;
    }
    std::string cause;
    auto library = parse(std::as_bytes(std::span(content)), &cause);
    if (!library) {
        setError(error, path + ": " + cause);
        return nullptr;
    }
    opened.byPath.emplace(path, library);
    return library;
}

std::shared_ptr<const ShaderFunction> ShaderLibrary::function(std::string_view name) const {
    const auto found = functions_.find(std::string(name));
    return found == functions_.end() ? nullptr : found->second;
}

std::vector<std::string> ShaderLibrary::functionNames() const {
    std::vector<std::string> names;
    for (const auto& [name, function] : functions_) names.push_back(name);
    std::ranges::sort(names);
    return names;
}

}  // namespace qv
