// Compiles kernels beforehand, in the build.
//   qvnativec TARGET OUT LIBRARY...    every function of the shader libraries, for 8-bit textures, as one
//   library of kernels. TARGET is avx2, avx512 or neon. What OUT holds already is not compiled again.

#include <fmt/format.h>

#include <atomic>
#include <cstdio>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Foundation/OutputFile.h"
#include "Platform/ImageGraph/Native/KernelLibrary.h"
#include "Platform/ImageGraph/ShaderCompiler/GlslCompiler.h"
#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"

extern "C" const qv::NativeCompiler* qvNativeCompiler(int interfaceVersion);

namespace {

using namespace qv;

std::optional<NativeTarget> targetNamed(std::string_view name) {
    if (name == "avx2") return NativeTarget::avx2;
    if (name == "avx512") return NativeTarget::avx512;
    if (name == "neon") return NativeTarget::neon;
    return {};
}

/// Not optimised; empty with one line in `error` on failure.
std::vector<std::uint32_t> spirvOf(const ShaderFunction& function, std::string& error) {
    std::vector<std::string> errors;
    const auto source = parseArchivedShader(function.name, function.source, errors);
    if (source) return compileFragmentGlsl(translateShader(*source).glsl, &error);
    error = errors.front();
    return {};
}

/// Compiles on all processors. Thread-safe where it says so.
class Build {
  public:
    Build(NativeTarget target, const std::string& output)
        : target_(target), before_(KernelLibrary::open(output, compiler_.version())) {}

    void add(const std::shared_ptr<const ShaderLibrary>& library) {
        for (const std::string& name : library->functionNames()) {
            auto function = library->function(name);
            if (!function->source.empty()) functions_.push_back(std::move(function));
        }
    }

    /// The library's bytes; empty when a function cannot be compiled, which has then been said.
    std::vector<std::byte> run() {
        std::vector<std::thread> threads;
        for (unsigned i = std::max(1u, std::thread::hardware_concurrency()); i > 0; --i) {
            threads.emplace_back([this] { work(); });
        }
        for (std::thread& thread : threads) thread.join();
        if (failed_) return {};
        return KernelLibrary::serialize(compiler_.version(), objects_);
    }

  private:
    /// Thread-safe.
    void work() {
        while (!failed_) {
            const std::size_t i = next_++;
            if (i >= functions_.size()) return;
            compile(*functions_[i]);
        }
    }

    void compile(const ShaderFunction& function) {
        const std::vector<TextureFormat> inputs(function.inputs.size(), TextureFormat::rgba8);
        const std::uint64_t key = kernelKey(function, inputs, TextureFormat::rgba8);
        std::vector<std::byte> object;
        std::string error;
        if (const auto known = before_ ? before_->object(key) : std::span<const std::byte>();
            !known.empty()) {
            object.assign(known.begin(), known.end());
        } else if (const auto code = spirvOf(function, error); !code.empty()) {
            object = compiler_.compile({function.name, code, inputs, TextureFormat::rgba8}, target_, &error);
        }
        std::scoped_lock lock(mutex_);
        if (object.empty()) {
            if (!failed_.exchange(true)) fmt::print(stderr, "{}: {}\n", function.name, error);
            return;
        }
        objects_[key] = std::move(object);
    }

    const NativeCompiler& compiler_ = *qvNativeCompiler(kNativeInterfaceVersion);
    const NativeTarget target_;
    const std::shared_ptr<const KernelLibrary> before_;
    std::vector<std::shared_ptr<const ShaderFunction>> functions_;
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> failed_{false};
    std::mutex mutex_;
    std::map<std::uint64_t, std::vector<std::byte>> objects_;
};

}  // namespace

int main(int count, char** words) {
    const auto target = count > 3 ? targetNamed(words[1]) : std::nullopt;
    if (!target) {
        fmt::print(stderr, "usage: qvnativec avx2|avx512|neon OUT LIBRARY...\n");
        return 2;
    }
    std::string error;
    Build build(*target, words[2]);
    for (const char* path : std::span(words, std::size_t(count)).subspan(3)) {
        const auto library = ShaderLibrary::open(path, &error);
        if (!library) {
            fmt::print(stderr, "{}: {}\n", path, error);
            return 1;
        }
        build.add(library);
    }
    const std::vector<std::byte> bytes = build.run();
    if (bytes.empty()) return 1;
    if (writeWholeFile(words[2], {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, &error))
        return 0;
    fmt::print(stderr, "{}\n", error);
    return 1;
}
