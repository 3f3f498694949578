#include "Platform/ImageGraph/Native/Compiler/ObjectLink.h"

#include <llvm/ExecutionEngine/JITLink/JITLink.h>
#include <llvm/ExecutionEngine/JITLink/JITLinkMemoryManager.h>
#include <llvm/Object/ELFObjectFile.h>

#include <cstring>
#include <memory>
#include <utility>

#include "Platform/ImageGraph/Native/LoadedKernel.h"

namespace qv::native {

namespace {

namespace jitlink = llvm::jitlink;
using llvm::orc::ExecutorAddr;
using Memory = jitlink::JITLinkMemoryManager;

llvm::Error failure(const char* cause) {
    return llvm::createStringError(llvm::inconvertibleErrorCode(), cause);
}

/// Segments one after another, as if they began at an address.
class Layout : public Memory {
  public:
    explicit Layout(std::uint64_t base) : base_(base) {}
    const std::vector<char>& bytes() const { return bytes_; }
    using Memory::allocate, Memory::deallocate;

    void allocate(const jitlink::JITLinkDylib*, jitlink::LinkGraph& graph,
                  OnAllocatedFunction next) override {
        jitlink::BasicLayout layout(graph);
        std::uint64_t end = 0;
        for (auto& [group, segment] : layout.segments()) {
            end = llvm::alignTo(end, segment.Alignment);
            segment.Addr = ExecutorAddr(base_ + end);
            end += segment.ContentSize + segment.ZeroFillSize;
        }
        bytes_.assign(end, 0);
        for (auto& [group, segment] : layout.segments())
            segment.WorkingMem = bytes_.data() + (segment.Addr.getValue() - base_);
        if (llvm::Error error = layout.apply()) return next(std::move(error));
        next(std::make_unique<Placed>(base_));
    }
    void deallocate(std::vector<FinalizedAlloc> places, OnDeallocatedFunction next) override {
        for (FinalizedAlloc& place : places) place.release();
        next(llvm::Error::success());
    }

  private:
    struct Placed : InFlightAlloc {
        explicit Placed(std::uint64_t base) : base(base) {}
        void abandon(OnAbandonedFunction next) override { next(llvm::Error::success()); }
        void finalize(OnFinalizedFunction next) override { next(FinalizedAlloc(ExecutorAddr(base))); }
        const std::uint64_t base;
    };
    const std::uint64_t base_;
    std::vector<char> bytes_;
};

/// What comes of linking; all of it is known when `jitlink::link` returns.
struct Outcome {
    std::uint64_t address = 0;
    std::string error;
};

class Linking : public jitlink::JITLinkContext {
  public:
    Linking(Memory& memory, Outcome& outcome) : JITLinkContext(nullptr), memory_(memory), outcome_(outcome) {}

    Memory& getMemoryManager() override { return memory_; }
    void notifyFailed(llvm::Error failed) override { outcome_.error = llvm::toString(std::move(failed)); }
    void lookup(const LookupMap& symbols,
                std::unique_ptr<jitlink::JITLinkAsyncLookupContinuation> next) override {
        if (symbols.empty()) return next->run(jitlink::AsyncLookupResult());
        next->run(failure("the object is not whole"));
    }
    llvm::Error notifyResolved(jitlink::LinkGraph& graph) override {
        for (const jitlink::Symbol* symbol : graph.defined_symbols()) {
            if (symbol->hasName() && symbol->getName() == kNativeKernelSymbol) {
                outcome_.address = symbol->getAddress().getValue();
            }
        }
        return outcome_.address ? llvm::Error::success() : failure("the object has no kernel");
    }
    void notifyFinalized(Memory::FinalizedAlloc code) override { code.release(); }
    llvm::Error modifyPassConfig(jitlink::LinkGraph&, jitlink::PassConfiguration&) override {
        return llvm::Error::success();
    }

  private:
    Memory& memory_;
    Outcome& outcome_;
};

/// Whether the object has data to write to, which its code would not find writable.
bool hasVariables(llvm::StringRef bytes) {
    auto object = llvm::object::ObjectFile::createObjectFile(llvm::MemoryBufferRef(bytes, "kernel"));
    if (!object) {
        llvm::consumeError(object.takeError());
        return false;  // linking tells
    }
    return llvm::any_of((*object)->sections(), [](const llvm::object::ELFSectionRef& section) {
        return section.getFlags() & llvm::ELF::SHF_WRITE && section.getSize() > 0;
    });
}

/// The code with its header, as if it was going to lie at an address.
std::vector<std::byte> linkedAt(std::uint64_t base, llvm::StringRef object, std::string& error) {
    auto graph = jitlink::createLinkGraphFromObject(llvm::MemoryBufferRef(object, "kernel"));
    if (!graph) {
        error = llvm::toString(graph.takeError());
        return {};
    }
    Layout layout(base);
    Outcome outcome;
    jitlink::link(std::move(*graph), std::make_unique<Linking>(layout, outcome));
    if (!outcome.error.empty()) {
        error = outcome.error;
        return {};
    }
    KernelCodeHeader header;
    header.entry = std::uint32_t(outcome.address - base);
    std::vector<std::byte> code(sizeof header + layout.bytes().size());
    std::memcpy(code.data(), &header, sizeof header);
    std::memcpy(code.data() + sizeof header, layout.bytes().data(), layout.bytes().size());
    return code;
}

}  // namespace

std::vector<std::byte> linkedCode(std::span<const std::byte> object, std::string* error) {
    constexpr std::uint64_t kHere = 1u << 20, kElsewhere = std::uint64_t(0x5A5) << 32;
    const llvm::StringRef bytes(reinterpret_cast<const char*>(object.data()), object.size());
    std::string cause;
    std::vector<std::byte> code;
    if (hasVariables(bytes))
        cause = "the code writes to data of its own";
    else
        code = linkedAt(kHere, bytes, cause);
    if (!code.empty() && linkedAt(kElsewhere, bytes, cause) != code) {
        code.clear();
        if (cause.empty()) cause = "the code depends on where it lies";
    }
    if (error && code.empty()) *error = "a kernel cannot be linked: " + cause.substr(0, cause.find('\n'));
    return code;
}

}  // namespace qv::native
