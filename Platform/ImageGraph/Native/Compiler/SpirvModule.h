#pragma once

#include <glslang/SPIRV/spirv.hpp>

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <unordered_map>
#include <vector>

namespace qv::native {

using Id = std::uint32_t;

/// Why code cannot be made a kernel, in one line. Never leaves the component.
struct KernelError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Type {
    enum class Kind { other, boolean, integer, floating, vector, matrix, array, structure, pointer };
    Kind kind = Kind::other;
    bool isSigned = false;
    Id element = 0;                ///< of a vector, matrix (its columns) or array; what a pointer points to
    std::uint32_t count = 0;       ///< of elements
    std::vector<Id> members;       ///< of a structure
    std::uint32_t components = 0;  ///< scalars that it is made of; 0 for what is no value
};

/// An instruction with its operands in order, the types and results of its own left out.
struct Operation {
    struct Operand {
        std::uint32_t word;
        bool isId;
    };
    spv::Op op = spv::OpNop;
    Id type = 0, result = 0;
    std::vector<Operand> operands;

    std::uint32_t operator[](std::size_t index) const { return operands.at(index).word; }
    std::size_t size() const { return operands.size(); }
};

struct Block {
    Id label = 0;
    std::vector<Operation> operations;  ///< without merges and the terminator
    Id mergeBlock = 0;                  ///< of a selection or loop that starts here
    Id continueBlock = 0;               ///< of a loop
    Operation terminator;
};

struct Function {
    Id id = 0, type = 0;
    std::vector<Id> parameters;
    std::vector<Block> blocks;
};

struct Decorations {
    std::optional<std::uint32_t> location, binding, constantId, builtIn;
};

/// A SPIR-V module by its parts.
struct SpirvModule {
    Id bound = 0;
    std::unordered_map<Id, Type> types;
    std::vector<Operation> globals;  ///< constants and variables outside functions
    std::unordered_map<Id, Decorations> decorations;
    std::unordered_map<Id, Id> typeOf;            ///< of every result
    std::unordered_map<Id, std::uint32_t> words;  ///< of scalar constants that are known
    std::unordered_map<Id, Function> functions;
    Id entry = 0;

    const Type& type(Id id) const;
    /// Component at which element `index` of a composite starts; `type` becomes the element's.
    std::uint32_t enter(Id& type, std::uint32_t index) const;
    /// The scalar that a vector, matrix or array is made of; the type itself for a scalar.
    Id scalar(Id type) const;
    /// The scalar types of all components, in order.
    void appendScalars(Id type, std::vector<Id>& to) const;
};

/// Throws KernelError for what is no valid module of one fragment stage.
SpirvModule parseSpirv(std::span<const std::uint32_t> code);

}  // namespace qv::native
