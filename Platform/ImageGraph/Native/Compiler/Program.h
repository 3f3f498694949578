#pragma once

#include <map>
#include <vector>

#include "Platform/ImageGraph/Native/Compiler/SpirvModule.h"

namespace qv::native {

struct Node;
using Sequence = std::vector<Node>;

/// A step of a program. What follows "found by" is annotated by `findUniformity`.
struct Node {
    enum class Kind {
        operation,  ///< one instruction
        selection,  ///< `body` where `condition` holds, `otherwise` elsewhere
        loop,       ///< `body` again and again until an exit; `scope` is what a break leaves
        scope,      ///< `body`, whose end an exit from `scope` reaches too
        exit        ///< to the end of `scope`; always last in its sequence
    };
    Kind kind = Kind::operation;
    Operation operation;
    Id condition = 0;
    int scope = -1;
    Sequence body, otherwise;

    int mask = 0;             ///< the lanes that reach this node, found by: equal numbers are equal lanes
    bool varying = false;     ///< lanes may go different ways here
    std::vector<int> left;    ///< scopes around this node that some lanes may leave within, others staying
    bool isUnmasked = false;  ///< of a store: lanes that do not take part may be overwritten
};

struct Variable {
    Id type = 0;             ///< of its value
    bool isDynamic = false;  ///< indexed by values that are not constant
    /// Stored once, as a whole, before and in the same sequence around all that reads it.
    bool isAssignedOnce = false;
};

/// A place within a variable.
struct Pointer {
    struct Index {
        Id value;
        std::uint32_t stride, count;  ///< components between elements, elements
    };
    Id variable = 0, type = 0;
    std::uint32_t offset = 0;  ///< components
    std::vector<Index> indices;
};

/// A fragment stage with all calls inlined: structured, every id defined once, pointers and images resolved.
/// No access chains, calls, phis and loads of images remain.
struct Program {
    SpirvModule module;
    Sequence body;
    std::map<Id, Variable> variables;
    std::unordered_map<Id, Pointer> pointers;
    std::unordered_map<Id, Id> images;  ///< the variable behind a loaded image
    int scopes = 0;
    Id output = 0;  ///< the variable of the colour

    Id typeOf(Id id) const { return module.typeOf.at(id); }
    Pointer pointer(Id id) const;
    std::uint32_t components(Id value) const { return module.type(typeOf(value)).components; }
};

/// Throws KernelError.
Program buildProgram(SpirvModule module);

}  // namespace qv::native
