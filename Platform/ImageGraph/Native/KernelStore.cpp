#include "Platform/ImageGraph/Native/KernelStore.h"

#include <fmt/format.h>

#include <algorithm>

#include "Platform/ImageGraph/Private/RenderRequest.h"

namespace qv {

namespace {

/// All that decides what a compiler makes, as bytes.
std::string recipeText(const NativeKernelSource& source, NativeTarget target) {
    std::string text =
        fmt::format("{}.{}.{}", kNativeInterfaceVersion, nativeTargetName(target), int(source.output));
    for (TextureFormat input : source.inputs) text += fmt::format(".{}", int(input));
    text += '\n';
    return text.append(reinterpret_cast<const char*>(source.code.data()), source.code.size_bytes());
}

}  // namespace

KernelStore::Kernel KernelStore::kernel(const std::shared_ptr<const ShaderFunction>& function,
                                        const PassFormats& formats) {
    const Recipe recipe{function, formats};
    if (Kernel known = find(recipe)) return known;
    Kernel made = make(recipe);  // unlocked: it may take long
    std::scoped_lock lock(mutex_);
    if (kernels_.size() >= kMostKernels)
        kernels_.erase(
            std::ranges::min_element(kernels_, {}, [](const auto& entry) { return entry.second.lastUse; }));
    // Another thread may have been faster.
    return kernels_.try_emplace(recipe, Entry{std::move(made), ++uses_}).first->second.kernel;
}

bool KernelStore::canDraw(const PlanPass& pass, const PassFormats& formats) {
    return find({pass.function, formats}) != nullptr;
}

KernelStore::Kernel KernelStore::find(const Recipe& recipe) {
    std::scoped_lock lock(mutex_);
    const auto found = kernels_.find(recipe);
    if (found == kernels_.end()) return nullptr;
    found->second.lastUse = ++uses_;
    return found->second.kernel;
}

KernelStore::Kernel KernelStore::make(const Recipe& recipe) {
    ++made_;
    const ShaderFunction& function = *recipe.function;
    if (!function.source.empty()) {
        const auto object =
            precompiled_.find(kernelKey(function, recipe.formats.inputs, recipe.formats.output));
        if (!object.empty()) {
            std::string cause;
            if (Kernel loaded = LoadedKernel::load(object, &cause)) return loaded;
            throw RenderError(function.name + ": " + cause);  // what is compiled now would fare no better
        }
    }
    return compiled(recipe);
}

KernelStore::Kernel KernelStore::compiled(const Recipe& recipe) {
    std::string cause;
    const auto refuse = [&] { return CompileError(recipe.function->name + ": " + cause); };
    const std::vector<std::uint32_t> code = spirv_.make(*recipe.function, &cause);
    if (code.empty()) throw refuse();
    const NativeKernelSource source{recipe.function->name, code, recipe.formats.inputs,
                                    recipe.formats.output};
    const std::string text = recipeText(source, target_), version = compiler_.version();
    if (const auto object = objects_.loadObject(text, version); !object.empty()) {
        if (Kernel loaded = LoadedKernel::load(object, nullptr)) return loaded;
    }
    const std::vector<std::byte> object = compiler_.compile(source, target_, &cause);
    Kernel loaded = object.empty() ? nullptr : LoadedKernel::load(object, &cause);
    if (!loaded) throw refuse();
    ++compiled_;
    objects_.storeObject(text, version, object);
    return loaded;
}

}  // namespace qv
