#include "Platform/ImageGraph/Private/FusedShaderStore.h"

#include <fmt/format.h>

#include <algorithm>
#include <list>

#include "Platform/Foundation/Log.h"
#include "Platform/ImageGraph/ShaderCompiler/GlslCompiler.h"
#include "Platform/ImageGraph/ShaderCompiler/ShaderTranslator.h"

namespace qv {

FusedShaderStore::Result FusedShaderStore::find(const FusedShape& shape) {
    std::scoped_lock lock(mutex_);
    const auto found = entries_.find(shape);
    if (found == entries_.end()) return {};
    found->second.lastUse = ++uses_;
    return {true, found->second.program};
}

std::shared_ptr<const ShaderFunction> FusedShaderStore::make(const FusedShape& shape) {
    if (Result known = find(shape); known.isKnown) return known.program;
    auto program = compose(shape);
    std::scoped_lock lock(mutex_);
    if (entries_.size() >= kMostPrograms) {
        entries_.erase(
            std::ranges::min_element(entries_, {}, [](const auto& entry) { return entry.second.lastUse; }));
    }
    // Another thread may have been faster; then its program is the one that pipelines know.
    return entries_.try_emplace(shape, Entry{std::move(program), ++uses_}).first->second.program;
}

std::shared_ptr<const ShaderFunction> FusedShaderStore::compose(const FusedShape& shape) {
    std::vector<std::string> errors;
    std::list<ShaderSource> sources;  // the stages point to them
    std::vector<ShaderStage> stages;
    for (const FusedShape::Stage& stage : shape.stages) {
        auto source = parseArchivedShader(stage.function->name, stage.function->source, errors);
        if (!source) break;
        sources.push_back(*std::move(source));
        stages.push_back({&sources.back(), stage.inputs, stage.given, stage.isClamped});
    }
    const std::string name = shape.name();
    if (errors.empty()) {
        TranslatedShader shader = composeShader(name, stages, shape.values);
        std::string error = std::move(shader.error);
        if (error.empty()) {
            auto program = std::make_shared<ShaderFunction>(std::move(shader.declaration));
            const std::string compiler = glslCompilerVersion();
            program->code = cache_.load(shader.glsl, compiler);
            if (!program->code.empty()) return program;
            program->code = compileFragmentGlsl(shader.glsl, &error);
            if (!program->code.empty()) {
                ++compiled_;
                cache_.store(shader.glsl, compiler, program->code);
                return program;
            }
        }
        errors.push_back(std::move(error));
    }
    logLine(fmt::format("{}: not drawn as one pass: {}", name, errors.front()));
    return nullptr;
}

}  // namespace qv
