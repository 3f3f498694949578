#include "Platform/ImageGraph/Native/Compiler/ObjectCode.h"

#include <fmt/format.h>
#include <llvm-c/Target.h>
#include <llvm/ADT/SmallVector.h>
#include <llvm/Analysis/TargetLibraryInfo.h>
#include <llvm/IR/DiagnosticInfo.h>
#include <llvm/IR/DiagnosticPrinter.h>
#include <llvm/IR/LegacyPassManager.h>
#include <llvm/IR/Verifier.h>
#include <llvm/MC/TargetRegistry.h>
#include <llvm/Object/ObjectFile.h>
#include <llvm/Passes/PassBuilder.h>
#include <llvm/Support/raw_ostream.h>
#include <llvm/Target/TargetMachine.h>
#include <llvm/Transforms/InstCombine/InstCombine.h>
#include <llvm/Transforms/Scalar/ADCE.h>
#include <llvm/Transforms/Scalar/EarlyCSE.h>
#include <llvm/Transforms/Scalar/GVN.h>
#include <llvm/Transforms/Scalar/LICM.h>
#include <llvm/Transforms/Scalar/LoopPassManager.h>
#include <llvm/Transforms/Scalar/LoopRotation.h>
#include <llvm/Transforms/Scalar/SROA.h>
#include <llvm/Transforms/Scalar/SimplifyCFG.h>

#include <memory>

#include "Platform/ImageGraph/Native/Compiler/Contraction.h"
#include "Platform/ImageGraph/Native/Compiler/FatalErrors.h"
#include "Platform/ImageGraph/Native/Compiler/Redundancies.h"
#include "Platform/ImageGraph/Native/Compiler/TargetCalls.h"

namespace qv::native {

namespace {

/// What a target is to LLVM.
struct Machine {
    const char *triple, *processor, *features;
};

Machine machineOf(NativeTarget target) {
    switch (target) {
        case NativeTarget::avx2:
            return {"x86_64-unknown-linux-gnu", "x86-64-v3", "+fast-gather"};
        case NativeTarget::avx512:
            return {"x86_64-unknown-linux-gnu", "x86-64-v3", "+avx512f,+avx512bw,+avx512dq,+avx512vl"};
        case NativeTarget::neon:
            break;
    }
    return {"aarch64-unknown-linux-gnu", "generic", "+neon"};
}

void initialiseTargets() {
    static const bool done = [] {
        LLVMInitializeX86TargetInfo();
        LLVMInitializeX86Target();
        LLVMInitializeX86TargetMC();
        LLVMInitializeX86AsmPrinter();
        LLVMInitializeAArch64TargetInfo();
        LLVMInitializeAArch64Target();
        LLVMInitializeAArch64TargetMC();
        LLVMInitializeAArch64AsmPrinter();
        return true;
    }();
    (void)done;
}

std::unique_ptr<llvm::TargetMachine> targetMachine(const Machine& machine, std::string& error) {
    initialiseTargets();
    const llvm::Target* const target = llvm::TargetRegistry::lookupTarget(machine.triple, error);
    if (!target) return nullptr;
    llvm::TargetOptions options;
    options.AllowFPOpFusion = llvm::FPOpFusion::Strict;
    return std::unique_ptr<llvm::TargetMachine>(
        target->createTargetMachine(machine.triple, machine.processor, machine.features, options,
                                    llvm::Reloc::PIC_, llvm::CodeModel::Small, llvm::CodeGenOpt::Default));
}

void describeTarget(llvm::Function& function, const Machine& machine) {
    function.addFnAttr("target-cpu", machine.processor);
    function.addFnAttr("target-features", machine.features);
    function.addFnAttr("prefer-vector-width", "512");
    function.addFnAttr("min-legal-vector-width", "512");
    function.addFnAttr(llvm::Attribute::NoUnwind);
}

/// Nothing here knows the target, nor makes vectors of its own.
void simplify(llvm::Module& module) {
    llvm::PassBuilder builder;
    llvm::LoopAnalysisManager loops;
    llvm::FunctionAnalysisManager functions;
    llvm::CGSCCAnalysisManager graph;
    llvm::ModuleAnalysisManager modules;
    // No call of a C function is made or understood.
    functions.registerPass([&] {
        llvm::TargetLibraryInfoImpl none(llvm::Triple(module.getTargetTriple()));
        none.disableAllFunctions();
        return llvm::TargetLibraryAnalysis(std::move(none));
    });
    builder.registerModuleAnalyses(modules);
    builder.registerCGSCCAnalyses(graph);
    builder.registerFunctionAnalyses(functions);
    builder.registerLoopAnalyses(loops);
    builder.crossRegisterProxies(loops, functions, graph, modules);

    llvm::FunctionPassManager first;
    first.addPass(llvm::SROAPass());
    first.addPass(llvm::EarlyCSEPass());
    first.addPass(llvm::SimplifyCFGPass());
    first.addPass(llvm::InstCombinePass());
    llvm::LoopPassManager inLoops;
    inLoops.addPass(llvm::LoopRotatePass());
    inLoops.addPass(llvm::LICMPass(llvm::LICMOptions()));
    first.addPass(llvm::createFunctionToLoopPassAdaptor(std::move(inLoops), true));
    first.addPass(llvm::GVNPass());
    first.addPass(llvm::InstCombinePass());
    first.addPass(llvm::SimplifyCFGPass());
    first.addPass(llvm::ADCEPass());
    for (llvm::Function& function : module) {
        if (function.isDeclaration()) continue;
        first.run(function, functions);
        dropNeedlessChecks(function);
        contractProducts(function);
        dropNeedlessBounds(function);
    }
}

/// Gathers what LLVM would print, and keeps it from ending the process.
struct Messages : llvm::DiagnosticHandler {
    explicit Messages(std::string& error) : error_(error) {}
    bool handleDiagnostics(const llvm::DiagnosticInfo& info) override {
        if (info.getSeverity() == llvm::DS_Error && error_.empty()) {
            llvm::raw_string_ostream stream(error_);
            llvm::DiagnosticPrinterRawOStream printer(stream);
            info.print(printer);
        }
        return true;
    }
    std::string& error_;
};

/// Code that asks for a function of the C library cannot be linked; nothing here should.
std::string undefinedSymbols(llvm::StringRef bytes) {
    auto object = llvm::object::ObjectFile::createObjectFile(llvm::MemoryBufferRef(bytes, "object"));
    if (!object) return llvm::toString(object.takeError());
    std::string names;
    for (const llvm::object::SymbolRef& symbol : (*object)->symbols()) {
        llvm::Expected<std::uint32_t> flags = symbol.getFlags();
        llvm::Expected<llvm::StringRef> name = symbol.getName();
        const bool isKnown = flags && name && !name->empty();
        if (isKnown && (*flags & llvm::object::SymbolRef::SF_Undefined)) names += " " + name->str();
        llvm::consumeError(flags.takeError());
        llvm::consumeError(name.takeError());
    }
    return names.empty() ? names : "the code needs functions that it has not:" + names;
}

std::vector<std::byte> make(llvm::Module& module, NativeTarget target, std::string& error) {
    const Machine machine = machineOf(target);
    const Abandonable maker(targetMachine(machine, error));
    if (!maker) return {};
    module.setTargetTriple(machine.triple);
    module.setDataLayout(maker->createDataLayout());
    for (llvm::Function& function : module) {
        if (!function.isDeclaration()) describeTarget(function, machine);
    }
    simplify(module);
    lowerTargetCalls(module, target);

    llvm::SmallVector<char, 0> bytes;
    llvm::raw_svector_ostream stream(bytes);
    const Abandonable passes(std::make_unique<llvm::legacy::PassManager>());
    if (maker->addPassesToEmitFile(*passes, stream, nullptr, llvm::CGFT_ObjectFile)) {
        error = fmt::format("LLVM makes no objects for {}", machine.triple);
        return {};
    }
    passes->run(module);
    if (error.empty()) error = undefinedSymbols({bytes.data(), bytes.size()});
    if (!error.empty()) return {};
    const auto* const begin = reinterpret_cast<const std::byte*>(bytes.data());
    return {begin, begin + bytes.size()};
}

}  // namespace

std::vector<std::byte> objectOf(llvm::Module& module, NativeTarget target, std::string* error) {
    std::string message;
    llvm::LLVMContext& context = module.getContext();
    auto before = context.getDiagnosticHandler();
    context.setDiagnosticHandler(std::make_unique<Messages>(message));
    std::vector<std::byte> object;
    survives([&] { object = make(module, target, message); }, message);
    context.setDiagnosticHandler(std::move(before));
    if (error && object.empty()) *error = message.substr(0, message.find('\n'));
    return object;
}

}  // namespace qv::native
