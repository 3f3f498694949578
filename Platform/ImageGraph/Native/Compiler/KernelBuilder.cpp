#include "Platform/ImageGraph/Native/Compiler/KernelBuilder.h"

#include <fmt/format.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/MDBuilder.h>
#include <llvm/IR/Verifier.h>
#include <llvm/Support/raw_ostream.h>

#include <cstddef>

#include "Platform/ImageGraph/Native/Compiler/Emitter.h"

namespace qv::native {

namespace {

/// The kernel's own loops: over rows, and over the groups of each.
class KernelFunction {
  public:
    KernelFunction(llvm::Module& module, const NativeKernelSource& source)
        : module_(module), source_(source), context_(module.getContext()) {}

    void build(const Program& program, const Uniformity& uniformity) {
        llvm::Type* word = llvm::Type::getInt32Ty(context_);
        llvm::Type* pointer = llvm::PointerType::get(context_, 0);
        auto* type = llvm::FunctionType::get(llvm::Type::getVoidTy(context_), {pointer, word, word}, false);
        function_ =
            llvm::Function::Create(type, llvm::Function::ExternalLinkage, kNativeKernelSymbol, module_);
        function_->setDoesNotThrow();
        function_->addParamAttr(0, llvm::Attribute::ReadOnly);
        llvm::Argument *arguments = function_->getArg(0), *firstRow = function_->getArg(1),
                       *endRow = function_->getArg(2);

        Builder entry(block()), row(block()), start(block()), group(block()), rowEnd(block());
        const auto target = [&](llvm::Type* kind, std::size_t offset) {
            offset += offsetof(NativeKernelArguments, target);
            return entry.CreateLoad(kind, entry.CreateConstGEP1_64(entry.getInt8Ty(), arguments, offset));
        };
        Value* pixels = target(pointer, offsetof(NativeImage, pixels));
        Value* rowBytes = target(entry.getInt64Ty(), offsetof(NativeImage, rowBytes));
        Value* width = target(word, offsetof(NativeImage, width));

        llvm::PHINode* y = row.CreatePHI(word, 2);
        Value* address = row.CreateGEP(row.getInt8Ty(), pixels,
                                       row.CreateMul(row.CreateSExt(y, row.getInt64Ty()), rowBytes));
        llvm::PHINode* x = start.CreatePHI(word, 2);
        llvm::BasicBlock *rowStart = row.GetInsertBlock(), *groupStart = start.GetInsertBlock();
        llvm::BasicBlock* first = entry.GetInsertBlock();
        llvm::BasicBlock* groupCode = group.GetInsertBlock();

        const KernelFrame frame{entry, start, group, x, y, arguments, source_.inputs};
        const Color color = Emitter(program, uniformity, frame).emit();
        Value* column = group.CreateMul(group.CreateSExt(x, group.getInt64Ty()),
                                        group.getInt64(std::uint64_t(texelBytes(source_.output))));
        storeTexels(group, source_.output, group.CreateGEP(group.getInt8Ty(), address, column), color);

        llvm::BasicBlock* done = block();
        llvm::ReturnInst::Create(context_, done);
        Value* isAny = entry.CreateAnd(entry.CreateICmpSLT(firstRow, endRow),
                                       entry.CreateICmpSGT(width, entry.getInt32(0)));
        entry.CreateCondBr(isAny, rowStart, done);
        row.CreateBr(groupStart);
        start.CreateBr(groupCode);
        Value* nextX = group.CreateAdd(x, group.getInt32(kKernelLanes));
        llvm::BasicBlock* lastCode = group.GetInsertBlock();
        group.CreateCondBr(group.CreateICmpSLT(nextX, width), groupStart, rowEnd.GetInsertBlock());
        Value* nextY = rowEnd.CreateAdd(y, rowEnd.getInt32(1));
        rowEnd.CreateCondBr(rowEnd.CreateICmpSLT(nextY, endRow), rowStart, done);
        x->addIncoming(entry.getInt32(0), rowStart);
        x->addIncoming(nextX, lastCode);
        y->addIncoming(firstRow, first);
        y->addIncoming(nextY, rowEnd.GetInsertBlock());
        noteMemory();
    }

  private:
    llvm::BasicBlock* block() { return llvm::BasicBlock::Create(context_, "", function_); }

    /// A pass never reads what it writes, and nobody writes what it reads: loads may move out of loops, and
    /// past stores. What a kernel keeps for itself is not concerned.
    void noteMemory() {
        llvm::MDBuilder metadata(context_);
        llvm::MDNode* domain = metadata.createAnonymousAliasScopeDomain();
        llvm::MDNode* read = llvm::MDNode::get(context_, {metadata.createAnonymousAliasScope(domain)});
        llvm::MDNode* none = llvm::MDNode::get(context_, {});
        for (llvm::Instruction& instruction : llvm::instructions(*function_)) {
            const Value* address = llvm::getLoadStorePointerOperand(&instruction);
            const auto* call = llvm::dyn_cast<llvm::IntrinsicInst>(&instruction);
            if (call && call->getIntrinsicID() == llvm::Intrinsic::masked_gather)
                address = call->getArgOperand(0);
            if (!address || isOwn(address)) continue;
            if (llvm::isa<llvm::StoreInst>(instruction)) {
                instruction.setMetadata(llvm::LLVMContext::MD_noalias, read);
            } else {
                instruction.setMetadata(llvm::LLVMContext::MD_alias_scope, read);
                if (llvm::isa<llvm::LoadInst>(instruction)) {
                    instruction.setMetadata(llvm::LLVMContext::MD_invariant_load, none);
                }
            }
        }
    }

    static bool isOwn(const Value* address) {
        while (const auto* step = llvm::dyn_cast<llvm::GetElementPtrInst>(address)) {
            address = step->getPointerOperand();
        }
        return llvm::isa<llvm::AllocaInst>(address);
    }

    llvm::Module& module_;
    const NativeKernelSource& source_;
    llvm::LLVMContext& context_;
    llvm::Function* function_ = nullptr;
};

}  // namespace

std::unique_ptr<llvm::Module> buildKernel(llvm::LLVMContext& context, const NativeKernelSource& source,
                                          std::string* error) {
    const auto refuse = [&](const char* cause) {
        if (error) *error = fmt::format("{}: {}", source.name, cause);
        return nullptr;
    };
    try {
        Program program = buildProgram(parseSpirv(source.code));
        const Uniformity uniformity = findUniformity(program);
        auto module = std::make_unique<llvm::Module>(source.name, context);
        KernelFunction(*module, source).build(program, uniformity);
        std::string fault;
        llvm::raw_string_ostream text(fault);
        if (llvm::verifyModule(*module, &text)) return refuse(text.str().substr(0, fault.find('\n')).c_str());
        return module;
    } catch (const std::exception& cause) {
        return refuse(cause.what());
    }
}

}  // namespace qv::native
