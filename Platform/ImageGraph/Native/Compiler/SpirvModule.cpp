#include "Platform/ImageGraph/Native/Compiler/SpirvModule.h"

#include <fmt/format.h>

#include <spirv-tools/libspirv.hpp>

namespace qv::native {

namespace {

/// More than any shader of ours has by far; damaged code must not take all memory.
constexpr std::uint32_t kMostComponents = 1u << 16;

/// Takes the module in instruction by instruction; the words have been validated.
class Parser {
  public:
    SpirvModule parse(std::span<const std::uint32_t> code) {
        const spvtools::Context context(SPV_ENV_VULKAN_1_1);
        const auto header = [](void* self, spv_endianness_t, std::uint32_t, std::uint32_t, std::uint32_t,
                               std::uint32_t bound, std::uint32_t) {
            static_cast<Parser*>(self)->module_.bound = bound;
            return SPV_SUCCESS;
        };
        const auto instruction = [](void* self, const spv_parsed_instruction_t* parsed) {
            auto& parser = *static_cast<Parser*>(self);
            try {
                parser.take(*parsed);
                return SPV_SUCCESS;
            } catch (const std::exception& error) {
                parser.error_ = error.what();
                return SPV_ERROR_INVALID_BINARY;
            }
        };
        const spv_result_t result =
            spvBinaryParse(context.CContext(), this, code.data(), code.size(), header, instruction, nullptr);
        if (!error_.empty()) throw KernelError(error_);
        if (result != SPV_SUCCESS || !module_.functions.contains(module_.entry)) {
            throw KernelError("not a SPIR-V fragment stage");
        }
        return std::move(module_);
    }

  private:
    void take(const spv_parsed_instruction_t& parsed) {
        Operation operation{spv::Op(parsed.opcode), parsed.type_id, parsed.result_id, {}};
        for (int i = 0; i < parsed.num_operands; ++i) {
            const spv_parsed_operand_t& operand = parsed.operands[i];
            if (operand.type == SPV_OPERAND_TYPE_TYPE_ID || operand.type == SPV_OPERAND_TYPE_RESULT_ID)
                continue;
            const bool isId = operand.type == SPV_OPERAND_TYPE_ID ||
                              operand.type == SPV_OPERAND_TYPE_SCOPE_ID ||
                              operand.type == SPV_OPERAND_TYPE_MEMORY_SEMANTICS_ID;
            for (int word = 0; word < operand.num_words; ++word) {
                operation.operands.push_back({parsed.words[operand.offset + word], isId});
            }
        }
        if (operation.result != 0 && operation.type != 0) module_.typeOf[operation.result] = operation.type;
        switch (operation.op) {
            case spv::OpEntryPoint:
                if (module_.entry != 0 || operation[0] != spv::ExecutionModelFragment) {
                    throw KernelError("not one fragment stage");
                }
                module_.entry = operation[1];
                return;
            case spv::OpDecorate:
                return takeDecoration(operation);
            case spv::OpFunction:
                function_ = &module_.functions[operation.result];
                function_->id = operation.result;
                function_->type = operation.type;
                return;
            case spv::OpFunctionEnd:
                function_ = nullptr;
                return;
            default:
                break;
        }
        if (function_) return takeIntoFunction(std::move(operation));
        if (takeType(operation)) return;
        if (operation.op == spv::OpConstant && module_.type(operation.type).components == 1) {
            if (operation.size() != 1) throw KernelError("numbers of another width than 32 bits");
            module_.words[operation.result] = operation[0];
        }
        if (operation.result != 0 && operation.type != 0) module_.globals.push_back(std::move(operation));
    }

    void takeIntoFunction(Operation operation) {
        switch (operation.op) {
            case spv::OpFunctionParameter:
                function_->parameters.push_back(operation.result);
                return;
            case spv::OpLabel:
                function_->blocks.emplace_back().label = operation.result;
                return;
            case spv::OpLine:
            case spv::OpNoLine:
            case spv::OpNop:
                return;
            default:
                break;
        }
        if (function_->blocks.empty()) throw KernelError("an instruction outside a block");
        Block& block = function_->blocks.back();
        switch (operation.op) {
            case spv::OpLoopMerge:
                block.continueBlock = operation[1];
                [[fallthrough]];
            case spv::OpSelectionMerge:
                block.mergeBlock = operation[0];
                return;
            case spv::OpBranch:
            case spv::OpBranchConditional:
            case spv::OpSwitch:
            case spv::OpReturn:
            case spv::OpReturnValue:
            case spv::OpUnreachable:
            case spv::OpKill:
                block.terminator = std::move(operation);
                return;
            default:
                block.operations.push_back(std::move(operation));
        }
    }

    void takeDecoration(const Operation& operation) {
        Decorations& decorations = module_.decorations[operation[0]];
        switch (operation[1]) {
            case spv::DecorationLocation:
                decorations.location = operation[2];
                break;
            case spv::DecorationBinding:
                decorations.binding = operation[2];
                break;
            case spv::DecorationSpecId:
                decorations.constantId = operation[2];
                break;
            case spv::DecorationBuiltIn:
                decorations.builtIn = operation[2];
                break;
            default:
                break;
        }
    }

    bool takeType(const Operation& operation) {
        using Kind = Type::Kind;
        Type type;
        const auto composite = [&](Kind kind, std::uint32_t count) {
            const std::uint64_t components = std::uint64_t(module_.type(operation[0]).components) * count;
            if (components > kMostComponents) throw KernelError("a type of too many components");
            type.kind = kind;
            type.element = operation[0];
            type.count = count;
            type.components = std::uint32_t(components);
        };
        switch (operation.op) {
            case spv::OpTypeBool:
                type = {.kind = Kind::boolean, .components = 1};
                break;
            case spv::OpTypeInt:
                if (operation[0] != 32) throw KernelError("integers of another width than 32 bits");
                type = {.kind = Kind::integer, .isSigned = operation[1] != 0, .components = 1};
                break;
            case spv::OpTypeFloat:
                if (operation[0] != 32) throw KernelError("floats of another width than 32 bits");
                type = {.kind = Kind::floating, .components = 1};
                break;
            case spv::OpTypeVector:
                composite(Kind::vector, operation[1]);
                break;
            case spv::OpTypeMatrix:
                composite(Kind::matrix, operation[1]);
                break;
            case spv::OpTypeArray: {
                const auto length = module_.words.find(operation[1]);
                if (length == module_.words.end()) throw KernelError("an array of unknown length");
                composite(Kind::array, length->second);
                break;
            }
            case spv::OpTypeStruct: {
                type.kind = Kind::structure;
                for (std::size_t i = 0; i < operation.size(); ++i) {
                    type.members.push_back(operation[i]);
                    type.components += module_.type(operation[i]).components;
                    if (type.components > kMostComponents) {
                        throw KernelError("a type of too many components");
                    }
                }
                type.count = std::uint32_t(type.members.size());
                break;
            }
            case spv::OpTypePointer:
                type = {.kind = Kind::pointer, .element = operation[1]};
                break;
            case spv::OpTypeImage:
                if (module_.type(operation[0]).kind != Kind::floating || operation[1] != spv::Dim2D ||
                    operation[3] != 0 || operation[4] != 0) {
                    throw KernelError("an image that is no plain 2-D texture");
                }
                break;
            case spv::OpTypeVoid:
            case spv::OpTypeFunction:
            case spv::OpTypeSampler:
            case spv::OpTypeSampledImage:
                break;
            default:
                return false;
        }
        module_.types[operation.result] = std::move(type);
        return true;
    }

    SpirvModule module_;
    Function* function_ = nullptr;
    std::string error_;
};

}  // namespace

const Type& SpirvModule::type(Id id) const {
    const auto found = types.find(id);
    if (found == types.end()) throw KernelError("a type that is not known");
    return found->second;
}

std::uint32_t SpirvModule::enter(Id& id, std::uint32_t index) const {
    const Type& composite = type(id);
    if (index >= composite.count) throw KernelError("an index outside its composite");
    if (composite.kind != Type::Kind::structure) {
        id = composite.element;
        return index * type(id).components;
    }
    std::uint32_t offset = 0;
    for (std::uint32_t i = 0; i < index; ++i) offset += type(composite.members[i]).components;
    id = composite.members[index];
    return offset;
}

Id SpirvModule::scalar(Id id) const {
    while (type(id).kind == Type::Kind::vector || type(id).kind == Type::Kind::matrix ||
           type(id).kind == Type::Kind::array) {
        id = type(id).element;
    }
    return id;
}

void SpirvModule::appendScalars(Id id, std::vector<Id>& to) const {
    const Type& all = type(id);
    if (all.kind == Type::Kind::structure) {
        for (Id member : all.members) appendScalars(member, to);
    } else if (all.count == 0) {
        to.push_back(id);
    } else {
        for (std::uint32_t i = 0; i < all.count; ++i) appendScalars(all.element, to);
    }
}

SpirvModule parseSpirv(std::span<const std::uint32_t> code) {
    spvtools::SpirvTools tools(SPV_ENV_VULKAN_1_1);
    std::string cause = "not a SPIR-V module";
    tools.SetMessageConsumer(
        [&](spv_message_level_t, const char*, const spv_position_t&, const char* message) {
            cause = std::string(message).substr(0, std::string_view(message).find('\n'));
        });
    if (!tools.Validate(code.data(), code.size())) throw KernelError(cause);
    return Parser().parse(code);
}

}  // namespace qv::native
