#include "Platform/ImageGraph/Native/Compiler/ObjectLink.h"

#include <llvm/ExecutionEngine/JITLink/JITLink.h>
#include <llvm/ExecutionEngine/JITLink/JITLinkMemoryManager.h>

#include <utility>

namespace qv::native {

namespace {

namespace jitlink = llvm::jitlink;
using Memory = jitlink::JITLinkMemoryManager;

/// Whole pages of this process, for as long as it lives; nil with the cause where there are none.
Memory* memory(std::string& error) {
    static const auto made = [] {
        auto manager = jitlink::InProcessMemoryManager::Create();
        std::pair<std::unique_ptr<Memory>, std::string> result;
        if (manager) {
            result.first = std::move(*manager);
        } else {
            result.second = llvm::toString(manager.takeError());
        }
        return new auto(std::move(result));
    }();
    error = made->second;
    return made->first.get();
}

class Kernel : public LinkedNativeKernel {
  public:
    Kernel(Memory& memory, Memory::FinalizedAlloc code, NativeKernel function)
        : memory_(memory), code_(std::move(code)), function_(function) {}
    ~Kernel() override { llvm::consumeError(memory_.deallocate(std::move(code_))); }
    NativeKernel function() const override { return function_; }

  private:
    Memory& memory_;
    Memory::FinalizedAlloc code_;
    NativeKernel function_;
};

/// What comes of linking; all of it is known when `jitlink::link` returns.
struct Outcome {
    std::uint64_t address = 0;
    Memory::FinalizedAlloc code;
    std::string error;
};

class Linking : public jitlink::JITLinkContext {
  public:
    Linking(Memory& memory, Outcome& outcome) : JITLinkContext(nullptr), memory_(memory), outcome_(outcome) {}

    Memory& getMemoryManager() override { return memory_; }
    void notifyFailed(llvm::Error failure) override { outcome_.error = llvm::toString(std::move(failure)); }
    void lookup(const LookupMap& symbols,
                std::unique_ptr<jitlink::JITLinkAsyncLookupContinuation> next) override {
        if (symbols.empty()) return next->run(jitlink::AsyncLookupResult());
        next->run(llvm::createStringError(llvm::inconvertibleErrorCode(), "the object is not whole"));
    }
    llvm::Error notifyResolved(jitlink::LinkGraph& graph) override {
        for (const jitlink::Symbol* symbol : graph.defined_symbols()) {
            if (symbol->hasName() && symbol->getName() == kNativeKernelSymbol) {
                outcome_.address = symbol->getAddress().getValue();
            }
        }
        return llvm::Error::success();
    }
    void notifyFinalized(Memory::FinalizedAlloc code) override { outcome_.code = std::move(code); }
    llvm::Error modifyPassConfig(jitlink::LinkGraph&, jitlink::PassConfiguration&) override {
        return llvm::Error::success();
    }

  private:
    Memory& memory_;
    Outcome& outcome_;
};

}  // namespace

std::shared_ptr<const LinkedNativeKernel> linkObject(std::span<const std::byte> object, std::string* error) {
    Outcome outcome;
    Memory* const pages = memory(outcome.error);
    if (pages) {
        const llvm::StringRef bytes(reinterpret_cast<const char*>(object.data()), object.size());
        auto graph = jitlink::createLinkGraphFromObject(llvm::MemoryBufferRef(bytes, "kernel"));
        if (graph) {
            jitlink::link(std::move(*graph), std::make_unique<Linking>(*pages, outcome));
        } else {
            outcome.error = llvm::toString(graph.takeError());
        }
    }
    if (outcome.code && outcome.address) {
        return std::make_shared<Kernel>(*pages, std::move(outcome.code),
                                        reinterpret_cast<NativeKernel>(outcome.address));
    }
    if (outcome.code) {
        llvm::consumeError(pages->deallocate(std::move(outcome.code)));
        outcome.error = "the object has no kernel";
    }
    if (error) *error = "a kernel cannot be linked: " + outcome.error.substr(0, outcome.error.find('\n'));
    return nullptr;
}

}  // namespace qv::native
