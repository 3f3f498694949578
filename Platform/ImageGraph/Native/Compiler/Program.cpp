#include "Platform/ImageGraph/Native/Compiler/Program.h"

#include <fmt/format.h>
#include <glslang/SPIRV/GLSL.std.450.h>

#include <algorithm>
#include <set>

namespace qv::native {

namespace {

/// Bounds for damaged code; shaders of ours stay far below.
constexpr int kMostOperations = 1 << 20;
constexpr int kDeepestNesting = 200;

Node operationNode(Operation operation) {
    Node node;
    node.operation = std::move(operation);
    return node;
}

/// Inlines the entry function and all that it calls.
class Inliner {
  public:
    explicit Inliner(Program& program) : program_(program), module_(program.module) {}

    void run() {
        for (const Operation& global : module_.globals) {
            if (global.op != spv::OpVariable) continue;
            addVariable(global.result, module_.type(global.type).element);
            if (global[0] == spv::StorageClassOutput) program_.output = global.result;
            if (global.size() > 1) store(program_.body, global.result, global[1]);
        }
        inlineFunction(module_.functions.at(module_.entry), {}, 0, program_.body);
    }

  private:
    /// Where a branch to `block` leads: out of `scope`, or to what follows a selection when that is −1.
    struct Frame {
        Id block;
        int scope;
    };
    /// One inlined call.
    struct Call {
        const Function& function;
        std::unordered_map<Id, Id> ids;  ///< of the function's own
        std::unordered_map<Id, const Block*> blocks;
        std::set<Id> visited;
        std::vector<Frame> frames;
        int scope;
        Id result;  ///< variable of the value that is returned, or 0
    };

    Id fresh(Id type) {
        const Id id = module_.bound++;
        module_.typeOf[id] = type;
        return id;
    }

    Id addVariable(Id id, Id type) {
        program_.variables[id] = {.type = type};
        return id;
    }
    Id newVariable(Id type) {
        const Id id = module_.bound++;
        return addVariable(id, type);
    }

    void append(Sequence& out, Operation operation) {
        if (++operations_ > kMostOperations) throw KernelError("the shader is too large");
        out.push_back(operationNode(std::move(operation)));
    }
    void store(Sequence& out, Id pointer, Id value) {
        append(out, {spv::OpStore, 0, 0, {{pointer, true}, {value, true}}});
    }
    Id load(Sequence& out, Id pointer, Id type, Id result = 0) {
        if (result == 0) result = fresh(type);
        append(out, {spv::OpLoad, type, result, {{pointer, true}}});
        return result;
    }
    Id compute(Sequence& out, spv::Op op, Id type, Id a, Id b) {
        const Id result = fresh(type);
        append(out, {op, type, result, {{a, true}, {b, true}}});
        return result;
    }
    Id constant(Id type, std::uint32_t word) {
        const Id id = fresh(type);
        const bool isBoolean = module_.type(type).kind == Type::Kind::boolean;
        const spv::Op op = !isBoolean ? spv::OpConstant : word ? spv::OpConstantTrue : spv::OpConstantFalse;
        module_.globals.push_back({op, type, id, {{word, false}}});
        return id;
    }

    /// The program's id of an id of the function.
    Id rename(Call& call, Id id) {
        if (auto own = call.ids.find(id); own != call.ids.end()) return own->second;
        return id;
    }

    /// The arguments are ids of the program.
    void inlineFunction(const Function& function, const std::vector<Id>& arguments, Id result,
                        Sequence& out) {
        if (++depth_ > kDeepestNesting || function.blocks.empty())
            throw KernelError("calls are nested too deeply");
        Call call{function, {}, {}, {}, {}, program_.scopes++, result};
        for (std::size_t i = 0; i < function.parameters.size(); ++i) {
            call.ids[function.parameters[i]] = arguments.at(i);
        }
        for (const Block& block : function.blocks) {
            call.blocks[block.label] = &block;
            for (const Operation& operation : block.operations) {
                if (operation.result == 0) continue;
                // What a phi chooses from is stored in a variable where it comes from.
                call.ids[operation.result] = fresh(operation.type);
                if (operation.op == spv::OpPhi)
                    phis_[call.ids[operation.result]] = newVariable(operation.type);
            }
        }
        Node scope{.kind = Node::Kind::scope, .scope = call.scope};
        build(call, function.blocks.front().label, scope.body);
        appendScope(std::move(scope), out);
        --depth_;
    }

    void exit(int scope, Sequence& out) {
        exited_.insert(scope);
        out.push_back({.kind = Node::Kind::exit, .scope = scope});
    }
    /// A scope that nothing leaves early is just its body.
    void appendScope(Node scope, Sequence& out) const {
        if (exited_.contains(scope.scope)) {
            out.push_back(std::move(scope));
        } else {
            std::ranges::move(scope.body, std::back_inserter(out));
        }
    }

    /// Ends `out` at a jump to one of the constructs around it; false when the block is none of their ends.
    bool leave(Call& call, Id block, Sequence& out) {
        for (std::size_t i = call.frames.size(); i-- > 0;) {
            const Frame& frame = call.frames[i];
            if (frame.block != block) continue;
            if (i + 1 == call.frames.size()) return true;
            if (frame.scope < 0) throw KernelError("a jump out of a selection");
            exit(frame.scope, out);
            return true;
        }
        return false;
    }

    /// From a block to the end of the sequence that it belongs to.
    void build(Call& call, Id label, Sequence& out) {
        if (++depth_ > kDeepestNesting) throw KernelError("blocks are nested too deeply");
        while (label != 0 && !leave(call, label, out)) {
            const auto found = call.blocks.find(label);
            if (found == call.blocks.end() || !call.visited.insert(label).second) {
                throw KernelError("control flow that is not structured");
            }
            const Block& block = *found->second;
            if (block.continueBlock != 0) {
                buildLoop(call, block, out);
                label = block.mergeBlock;
            } else {
                appendOperations(call, block, out);
                label = terminate(call, block, out);
            }
        }
        --depth_;
    }

    void buildLoop(Call& call, const Block& header, Sequence& out) {
        if (header.continueBlock == header.label) throw KernelError("a loop of one block");
        Node loop{.kind = Node::Kind::loop, .scope = program_.scopes++};
        Node turn{.kind = Node::Kind::scope, .scope = program_.scopes++};
        call.frames.push_back({header.mergeBlock, loop.scope});
        call.frames.push_back({header.continueBlock, turn.scope});
        appendOperations(call, header, turn.body);
        build(call, terminate(call, header, turn.body), turn.body);
        call.frames.back() = {header.label, -1};
        appendScope(std::move(turn), loop.body);
        build(call, header.continueBlock, loop.body);
        call.frames.resize(call.frames.size() - 2);
        out.push_back(std::move(loop));
    }

    void appendOperations(Call& call, const Block& block, Sequence& out) {
        for (const Operation& operation : block.operations) {
            const Id result = rename(call, operation.result);
            switch (operation.op) {
                case spv::OpPhi:
                    load(out, phis_.at(result), operation.type, result);
                    break;
                case spv::OpVariable:
                    addVariable(result, module_.type(operation.type).element);
                    if (operation.size() > 1) store(out, result, rename(call, operation[1]));
                    break;
                case spv::OpAccessChain:
                case spv::OpInBoundsAccessChain:
                    addPointer(call, operation, result);
                    break;
                case spv::OpFunctionCall: {
                    std::vector<Id> arguments;
                    for (std::size_t i = 1; i < operation.size(); ++i) {
                        arguments.push_back(rename(call, operation[i]));
                    }
                    const bool isVoid = module_.type(operation.type).components == 0;
                    const Id variable = isVoid ? 0 : newVariable(operation.type);
                    inlineFunction(module_.functions.at(operation[0]), arguments, variable, out);
                    if (!isVoid) load(out, variable, operation.type, result);
                    break;
                }
                case spv::OpImage:
                    program_.images[result] = imageOf(rename(call, operation[0]));
                    break;
                case spv::OpLoad: {
                    const Pointer from = program_.pointer(rename(call, operation[0]));
                    if (module_.type(from.type).components == 0) {
                        program_.images[result] = from.variable;
                        break;
                    }
                    [[fallthrough]];
                }
                default: {
                    Operation renamed = operation;
                    renamed.result = result;
                    for (Operation::Operand& operand : renamed.operands) {
                        if (operand.isId) operand.word = rename(call, operand.word);
                    }
                    if (!appendSplit(renamed, out)) append(out, std::move(renamed));
                }
            }
        }
        // A successor's phis have their values from here.
        for (const Operation::Operand& operand : block.terminator.operands) {
            const auto next = operand.isId ? call.blocks.find(operand.word) : call.blocks.end();
            if (next == call.blocks.end()) continue;
            for (const Operation& phi : next->second->operations) {
                if (phi.op != spv::OpPhi) break;
                for (std::size_t i = 0; i + 1 < phi.size(); i += 2) {
                    if (phi[i + 1] != block.label) continue;
                    store(out, phis_.at(rename(call, phi.result)), rename(call, phi[i]));
                }
            }
        }
    }

    /// The functions that give a second result through a pointer, as those that give both in a structure.
    bool appendSplit(Operation& operation, Sequence& out) {
        if (operation.op != spv::OpExtInst) return false;
        const bool isFraction = operation[1] == GLSLstd450Modf;
        if (!isFraction && operation[1] != GLSLstd450Frexp) return false;
        const Id pointer = operation[3], second = program_.pointer(pointer).type, both = module_.bound++;
        module_.types[both] = {.kind = Type::Kind::structure,
                               .count = 2,
                               .members = {operation.type, second},
                               .components = 2 * module_.type(second).components};
        const Id result = fresh(both), other = fresh(second);
        append(out, {spv::OpExtInst,
                     both,
                     result,
                     {operation.operands[0],
                      {std::uint32_t(isFraction ? GLSLstd450ModfStruct : GLSLstd450FrexpStruct), false},
                      operation.operands[2]}});
        append(out,
               {spv::OpCompositeExtract, operation.type, operation.result, {{result, true}, {0, false}}});
        append(out, {spv::OpCompositeExtract, second, other, {{result, true}, {1, false}}});
        store(out, pointer, other);
        return true;
    }

    Id imageOf(Id value) const {
        const auto found = program_.images.find(value);
        if (found == program_.images.end()) throw KernelError("an image that is not known");
        return found->second;
    }

    void addPointer(Call& call, const Operation& operation, Id result) {
        Pointer pointer = program_.pointer(rename(call, operation[0]));
        for (std::size_t i = 1; i < operation.size(); ++i) {
            const Id index = rename(call, operation[i]);
            if (auto known = module_.words.find(index); known != module_.words.end()) {
                pointer.offset += module_.enter(pointer.type, known->second);
                continue;
            }
            const std::uint32_t count = module_.type(pointer.type).count;
            module_.enter(pointer.type, 0);
            pointer.indices.push_back({index, module_.type(pointer.type).components, count});
            program_.variables.at(pointer.variable).isDynamic = true;
        }
        program_.pointers[result] = std::move(pointer);
    }

    /// Ends a block; the block to go on with in the same sequence, or 0.
    Id terminate(Call& call, const Block& block, Sequence& out) {
        const Operation& end = block.terminator;
        switch (end.op) {
            case spv::OpBranch:
                return end[0];
            case spv::OpBranchConditional: {
                if (block.mergeBlock != 0 && block.continueBlock == 0) {
                    call.frames.push_back({block.mergeBlock, -1});
                }
                Node selection{.kind = Node::Kind::selection, .condition = rename(call, end[0])};
                build(call, end[1], selection.body);
                build(call, end[2], selection.otherwise);
                out.push_back(std::move(selection));
                if (block.mergeBlock == 0 || block.continueBlock != 0) return 0;
                call.frames.pop_back();
                return block.mergeBlock;
            }
            case spv::OpSwitch:
                if (block.continueBlock != 0) throw KernelError("a switch that starts a loop");
                buildSwitch(call, block, out);
                return block.mergeBlock;
            case spv::OpReturnValue:
                store(out, call.result, rename(call, end[0]));
                [[fallthrough]];
            case spv::OpReturn:
                if (!call.frames.empty()) exit(call.scope, out);
                return 0;
            case spv::OpUnreachable:
                return 0;
            default:
                throw KernelError(fmt::format("an instruction that is not supported: {}", int(end.op)));
        }
    }

    /// A chain of selections, each for the cases of one block; lanes that fall through stay in.
    void buildSwitch(Call& call, const Block& block, Sequence& out) {
        const Operation& end = block.terminator;
        const Id selector = rename(call, end[0]), number = module_.typeOf.at(selector);
        Id boolean = 0;
        for (const auto& [id, type] : module_.types) {
            if (type.kind == Type::Kind::boolean) boolean = id;
        }
        if (boolean == 0)
            module_.types[boolean = module_.bound++] = {.kind = Type::Kind::boolean, .components = 1};

        std::vector<std::pair<Id, Id>> cases;  // block, whether it is chosen
        Id any = constant(boolean, 0);
        for (std::size_t i = 2; i + 1 < end.size(); i += 2) {
            const Id isCase = compute(out, spv::OpIEqual, boolean, selector, constant(number, end[i]));
            any = compute(out, spv::OpLogicalOr, boolean, any, isCase);
            if (!cases.empty() && cases.back().first == end[i + 1]) {
                cases.back().second = compute(out, spv::OpLogicalOr, boolean, cases.back().second, isCase);
            } else {
                cases.emplace_back(end[i + 1], isCase);
            }
        }
        const Id none = compute(out, spv::OpLogicalEqual, boolean, any, constant(boolean, 0));
        const auto shared = std::ranges::find(cases, end[1], &std::pair<Id, Id>::first);
        if (shared != cases.end()) {
            shared->second = compute(out, spv::OpLogicalOr, boolean, shared->second, none);
        } else if (end[1] != block.mergeBlock) {
            cases.emplace_back(end[1], none);
            placeDefault(call, cases);
        }

        Node whole{.kind = Node::Kind::scope, .scope = program_.scopes++};
        const Id isInside = newVariable(boolean);
        store(whole.body, isInside, constant(boolean, 0));
        call.frames.push_back({block.mergeBlock, whole.scope});
        for (std::size_t i = 0; i < cases.size(); ++i) {
            if (cases[i].first == block.mergeBlock) continue;
            Node selection{.kind = Node::Kind::selection};
            const Id fallen = load(whole.body, isInside, boolean);
            selection.condition = compute(whole.body, spv::OpLogicalOr, boolean, fallen, cases[i].second);
            // A jump to the next case falls through; one to the end leaves the whole.
            const Id next = i + 1 < cases.size() ? cases[i + 1].first : 0;
            call.frames.push_back({next, -1});
            build(call, cases[i].first, selection.body);
            call.frames.pop_back();
            const bool leaves = !selection.body.empty() && selection.body.back().kind == Node::Kind::exit;
            if (!leaves) store(selection.body, isInside, constant(boolean, 1));
            whole.body.push_back(std::move(selection));
        }
        call.frames.pop_back();
        out.push_back(std::move(whole));
    }

    /// Moves the default, which is last, before the case that it falls through to.
    void placeDefault(const Call& call, std::vector<std::pair<Id, Id>>& cases) const {
        const auto place = [&](Id label) {
            return std::ranges::find(call.function.blocks, label, &Block::label) -
                   call.function.blocks.begin();
        };
        std::ranges::stable_sort(cases, {}, [&](const auto& one) { return place(one.first); });
    }

    Program& program_;
    SpirvModule& module_;
    std::unordered_map<Id, Id> phis_;  ///< the variable of each
    std::set<int> exited_;             ///< scopes
    int operations_ = 0, depth_ = 0;
};

/// Values that are made in a loop and used after it travel in variables: lanes leave a loop at different
/// times.
class LoopValues {
  public:
    explicit LoopValues(Program& program) : program_(program) {}

    void run() {
        find(program_.body, 0);
        if (!variables_.empty()) carry(program_.body, 0);
    }

  private:
    void find(const Sequence& sequence, int loop) {
        for (const Node& node : sequence) {
            if (node.kind == Node::Kind::operation) {
                for (const Operation::Operand& operand : node.operation.operands) {
                    if (operand.isId) use(operand.word, loop);
                }
                if (node.operation.result != 0) definedIn_[node.operation.result] = loop;
            } else if (node.kind == Node::Kind::selection) {
                use(node.condition, loop);
            }
            int inner = loop;
            if (node.kind == Node::Kind::loop) {
                inner = int(parents_.size());
                parents_.push_back(loop);
            }
            find(node.body, inner);
            find(node.otherwise, inner);
        }
    }

    bool isSeen(Id value, int loop) const {
        const auto defined = definedIn_.find(value);
        if (defined == definedIn_.end()) return true;
        while (loop > defined->second) loop = parents_[std::size_t(loop)];
        return loop == defined->second;
    }

    void use(Id id, int loop) {
        if (auto pointer = program_.pointers.find(id); pointer != program_.pointers.end()) {
            for (const Pointer::Index& index : pointer->second.indices) {
                if (!isSeen(index.value, loop))
                    throw KernelError("a place computed in a loop is used after it");
            }
        }
        if (isSeen(id, loop) || variables_.contains(id)) return;
        const Id variable = program_.module.bound++;
        program_.variables[variable] = {.type = program_.typeOf(id)};
        variables_[id] = variable;
    }

    /// The value as it is seen in `loop`; a load before it where it has to be one.
    Id seen(Id id, int loop, Sequence& out) {
        const auto variable = variables_.find(id);
        if (variable == variables_.end() || isSeen(id, loop)) return id;
        const Id result = program_.module.bound++, type = program_.typeOf(id);
        program_.module.typeOf[result] = type;
        out.push_back(operationNode({spv::OpLoad, type, result, {{variable->second, true}}}));
        return result;
    }

    void carry(Sequence& sequence, int loop) {
        Sequence out;
        for (Node& node : sequence) {
            for (Operation::Operand& operand : node.operation.operands) {
                if (operand.isId) operand.word = seen(operand.word, loop, out);
            }
            if (node.kind == Node::Kind::selection) node.condition = seen(node.condition, loop, out);
            const int inner = node.kind == Node::Kind::loop ? ++loops_ : loop;
            carry(node.body, inner);
            carry(node.otherwise, inner);
            const Id result = node.operation.result;
            out.push_back(std::move(node));
            if (auto variable = variables_.find(result); result != 0 && variable != variables_.end()) {
                out.push_back(
                    operationNode({spv::OpStore, 0, 0, {{variable->second, true}, {result, true}}}));
            }
        }
        sequence = std::move(out);
    }

    Program& program_;
    std::unordered_map<Id, int> definedIn_;
    std::vector<int> parents_{0};  ///< of each loop, by number; 0 is outside of all
    std::unordered_map<Id, Id> variables_;
    int loops_ = 0;
};

/// Finds the variables that are assigned once.
class Assignments {
  public:
    explicit Assignments(Program& program) : program_(program) {}

    void run() {
        walk(program_.body);
        for (auto& [id, variable] : program_.variables) {
            const auto found = id == program_.output ? uses_.end() : uses_.find(id);
            variable.isAssignedOnce =
                found != uses_.end() && found->second.stores == 1 && found->second.isFit;
        }
    }

  private:
    struct Uses {
        int stores = 0;
        bool isFit = true;      ///< so far
        std::vector<int> path;  ///< sequences around the store
    };

    void walk(const Sequence& sequence) {
        path_.push_back(sequences_++);
        for (const Node& node : sequence) {
            const Operation& operation = node.operation;
            if (operation.op == spv::OpLoad || operation.op == spv::OpStore) {
                const Pointer pointer = program_.pointer(operation[0]);
                Uses& uses = uses_[pointer.variable];
                if (operation.op == spv::OpStore) {
                    ++uses.stores;
                    uses.path = path_;
                    uses.isFit &= program_.variables.at(pointer.variable).type == pointer.type;
                } else {
                    // The store comes earlier, in a sequence around this one.
                    uses.isFit &= uses.stores == 1 && uses.path.size() <= path_.size() &&
                                  std::equal(uses.path.begin(), uses.path.end(), path_.begin());
                }
            }
            walk(node.body);
            walk(node.otherwise);
        }
        path_.pop_back();
    }

    Program& program_;
    std::unordered_map<Id, Uses> uses_;
    std::vector<int> path_;
    int sequences_ = 0;
};

}  // namespace

Pointer Program::pointer(Id id) const {
    if (const auto found = pointers.find(id); found != pointers.end()) return found->second;
    const auto variable = variables.find(id);
    if (variable == variables.end()) throw KernelError("a pointer that is not known");
    return {id, variable->second.type, 0, {}};
}

Program buildProgram(SpirvModule module) {
    Program program{.module = std::move(module)};
    Inliner(program).run();
    LoopValues(program).run();
    Assignments(program).run();
    return program;
}

}  // namespace qv::native
