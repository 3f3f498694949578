#include "Platform/ImageGraph/Native/Compiler/Uniformity.h"

#include <algorithm>
#include <map>
#include <set>

#include "Platform/ImageGraph/Native/Compiler/Arithmetic.h"
#include "Platform/ImageGraph/Native/Compiler/Components.h"

namespace qv::native {

namespace {

Spread join(Spread a, Spread b) {
    if (a == Spread::unset || a == b) return b;
    return b == Spread::unset ? a : Spread::varying;
}

}  // namespace

/// Starts with nothing varying and adds what follows until nothing more does.
class UniformityAnalysis {
  public:
    explicit UniformityAnalysis(Program& program) : program_(program) {
        for (const auto& [id, decorations] : program.module.decorations) {
            if (decorations.builtIn != spv::BuiltInFragCoord) continue;
            result_.spreads_[id] = {Spread::affine, Spread::uniform, Spread::uniform, Spread::uniform};
        }
    }

    Uniformity run() {
        do {
            changed_ = false;
            maskParents_ = {-1};
            scopeMasks_.assign(std::size_t(program_.scopes), 0);
            accesses_.clear();
            path_.clear();
            place(program_.body, 0);
            findWholeStores();
            propagate(program_.body);
        } while (changed_);
        return std::move(result_);
    }

  private:
    struct Access {
        Node* node;
        bool isWholeStore;
        /// The sequences around it and the place in each.
        std::vector<std::pair<const Sequence*, std::size_t>> path;
    };

    int newMask(int parent) {
        maskParents_.push_back(parent);
        return int(maskParents_.size()) - 1;
    }

    void note(bool& flag, bool value) {
        if (value && !flag) flag = changed_ = true;
    }

    /// Numbers the lanes that reach each node. What some lanes leave by way of masks is added to `left`.
    void place(Sequence& sequence, int mask, std::set<int>* left = nullptr) {
        for (std::size_t i = 0; i < sequence.size(); ++i) {
            Node& node = sequence[i];
            node.mask = mask;
            path_.emplace_back(&sequence, i);
            std::set<int> leaving;
            switch (node.kind) {
                case Node::Kind::operation:
                    noteAccess(node);
                    break;
                case Node::Kind::selection: {
                    const int body = node.varying ? newMask(mask) : mask;
                    const int otherwise = node.varying ? newMask(mask) : mask;
                    place(node.body, body, &leaving);
                    place(node.otherwise, otherwise, &leaving);
                    break;
                }
                case Node::Kind::loop:
                case Node::Kind::scope: {
                    const bool parts = node.kind == Node::Kind::loop && node.varying;
                    const int inner = parts ? newMask(mask) : mask;
                    scopeMasks_[std::size_t(node.scope)] = inner;
                    place(node.body, inner, &leaving);
                    // Lanes that leave a loop, wherever to, do not take part in its next turn.
                    if (node.kind == Node::Kind::loop) note(node.varying, !leaving.empty());
                    leaving.erase(node.scope);
                    break;
                }
                case Node::Kind::exit:
                    node.varying = mask != scopeMasks_[std::size_t(node.scope)];
                    if (node.varying) leaving.insert(node.scope);
                    break;
            }
            path_.pop_back();
            node.left.assign(leaving.begin(), leaving.end());
            if (left) left->insert(leaving.begin(), leaving.end());
            if (!leaving.empty()) mask = newMask(mask);
        }
    }

    void noteAccess(Node& node) {
        const Operation& operation = node.operation;
        if (operation.op != spv::OpLoad && operation.op != spv::OpStore) return;
        const Pointer pointer = program_.pointer(operation[0]);
        const bool isStore = operation.op == spv::OpStore;
        const bool isWhole = pointer.type == program_.variables.at(pointer.variable).type;
        accesses_[pointer.variable].push_back({&node, isStore && isWhole, path_});
    }

    bool isWithin(int mask, int outer) const {
        while (mask > outer) mask = maskParents_[std::size_t(mask)];
        return mask == outer;
    }

    /// A store may overwrite all lanes when those that are not its own will not read the variable before they
    /// store it: when all that touches it is reached by its lanes only, but for stores right before a loop
    /// that everything else is in, such as a counter's first.
    void findWholeStores() {
        for (auto& [variable, accesses] : accesses_) {
            std::size_t depth = 0;
            const auto at = [&](std::size_t i) { return accesses[i].path[depth]; };
            const auto shareChild = [&](const std::vector<std::size_t>& some) {
                return std::ranges::all_of(some, [&](std::size_t i) {
                    return accesses[i].path.size() > depth + 1 && at(i) == at(some.front());
                });
            };
            std::vector<std::size_t> inner(accesses.size()), first;
            for (std::size_t i = 0; i < inner.size(); ++i) inner[i] = i;
            while (shareChild(inner)) ++depth;
            for (std::size_t i = 0; i < accesses.size(); ++i) {
                if (accesses[i].isWholeStore && accesses[i].path.size() == depth + 1) first.push_back(i);
            }
            std::erase_if(inner, [&](std::size_t i) { return std::ranges::find(first, i) != first.end(); });
            const bool isInitialised =
                !first.empty() && !inner.empty() && shareChild(inner) &&
                std::ranges::all_of(first, [&](std::size_t i) {
                    return at(i).first == at(inner.front()).first && at(i).second < at(inner.front()).second;
                });
            if (!isInitialised) inner.insert(inner.end(), first.begin(), first.end());

            int home = accesses[inner.front()].node->mask;
            for (std::size_t i : inner) {
                while (!isWithin(accesses[i].node->mask, home)) home = maskParents_[std::size_t(home)];
            }
            for (Access& access : accesses) access.node->isUnmasked = access.node->mask == home;
            if (isInitialised) {
                for (std::size_t i : first) accesses[i].node->isUnmasked = true;
            }
        }
    }

    void propagate(Sequence& sequence) {
        for (Node& node : sequence) {
            if (node.kind == Node::Kind::operation) transfer(node);
            if (node.kind == Node::Kind::selection) {
                const Spread condition = result_.of(node.condition, std::size_t(0));
                note(node.varying, condition == Spread::varying || condition == Spread::affine);
            }
            propagate(node.body);
            propagate(node.otherwise);
        }
    }

    void merge(Id id, std::uint32_t all, std::uint32_t offset, const std::vector<Spread>& spreads) {
        std::vector<Spread>& known = result_.spreads_[id];
        known.resize(all, Spread::unset);
        for (std::size_t i = 0; i < spreads.size(); ++i) {
            const Spread joined = join(known.at(offset + i), spreads[i]);
            if (joined == known[offset + i]) continue;
            known[offset + i] = joined;
            changed_ = true;
        }
    }

    /// Of an index into a variable: varying unless it is the same in all lanes.
    bool isVaryingPlace(const Pointer& pointer) const {
        return std::ranges::any_of(pointer.indices, [&](const Pointer::Index& index) {
            return result_.of(index.value, std::size_t(0)) > Spread::uniform;
        });
    }

    void transfer(const Node& node) {
        const Operation& operation = node.operation;
        const auto of = [&](Id id) { return result_.of(id, program_.components(id)); };
        if (operation.op == spv::OpStore) {
            const Pointer pointer = program_.pointer(operation[0]);
            const Variable& variable = program_.variables.at(pointer.variable);
            const std::uint32_t all = program_.module.type(variable.type).components;
            std::vector<Spread> stored = of(operation[1]);
            const bool parts = (!node.isUnmasked && !variable.isAssignedOnce) || isVaryingPlace(pointer);
            for (Spread& spread : stored) {
                if (parts || (variable.isDynamic && spread == Spread::affine)) spread = Spread::varying;
            }
            if (!variable.isDynamic) return merge(pointer.variable, all, pointer.offset, stored);
            // One array: all of it is alike.
            for (Spread spread : stored) {
                merge(pointer.variable, all, 0, std::vector<Spread>(all, spread));
            }
            return;
        }
        if (operation.result == 0) return;
        const std::uint32_t components = program_.components(operation.result);
        merge(operation.result, components, 0, resultOf(operation, components, of));
    }

    template <class Of>
    std::vector<Spread> resultOf(const Operation& operation, std::uint32_t components, const Of& of) const {
        if (operation.op == spv::OpLoad) {
            const Pointer pointer = program_.pointer(operation[0]);
            if (isVaryingPlace(pointer)) return std::vector<Spread>(components, Spread::varying);
            const Id type = program_.variables.at(pointer.variable).type;
            const std::vector<Spread> all =
                result_.of(pointer.variable, program_.module.type(type).components);
            const auto first = all.begin() + pointer.offset;
            return {first, first + components};
        }
        if (auto moved = movedComponents(program_, operation, of, Spread::uniform)) return *std::move(moved);

        std::vector<Spread> result(components, Spread::uniform);
        std::vector<std::vector<Spread>> operands;
        for (const Operation::Operand& operand : operation.operands) {
            if (operand.isId && program_.module.typeOf.contains(operand.word) &&
                !program_.images.contains(operand.word) && !program_.variables.contains(operand.word) &&
                !program_.pointers.contains(operand.word)) {
                operands.push_back(of(operand.word));
            }
        }
        const bool keepsSteps =
            operation.op == spv::OpIAdd || operation.op == spv::OpISub || operation.op == spv::OpConvertFToS;
        // Matrix products, dot products and the like mix components.
        const bool isByComponent =
            !mixesComponents(operation) && std::ranges::all_of(operands, [&](const auto& one) {
                return one.size() == components || one.size() == 1;
            });
        for (std::size_t i = 0; i < components; ++i) {
            for (std::size_t n = 0; n < operands.size(); ++n) {
                for (std::size_t k = 0; k < operands[n].size(); ++k) {
                    if (isByComponent && operands[n].size() > 1 && k != i) continue;
                    const Spread spread = operands[n][k];
                    if (spread <= Spread::uniform) continue;
                    const bool steps = spread == Spread::affine && keepsSteps &&
                                       result[i] == Spread::uniform &&
                                       !(operation.op == spv::OpISub && n == 1);
                    result[i] = steps ? Spread::affine : Spread::varying;
                }
            }
        }
        return result;
    }

    Program& program_;
    Uniformity result_;
    bool changed_ = false;
    std::vector<int> maskParents_;  ///< the lanes that each mask's are among
    std::vector<int> scopeMasks_;   ///< of the start of each scope
    std::map<Id, std::vector<Access>> accesses_;
    std::vector<std::pair<const Sequence*, std::size_t>> path_;
};

std::vector<Spread> Uniformity::of(Id id, std::uint32_t components) const {
    const auto found = spreads_.find(id);
    return found == spreads_.end() ? std::vector<Spread>(components, Spread::uniform) : found->second;
}

Spread Uniformity::of(Id id, std::size_t component) const {
    const auto found = spreads_.find(id);
    return found == spreads_.end() ? Spread::uniform : found->second.at(component);
}

Uniformity findUniformity(Program& program) {
    return UniformityAnalysis(program).run();
}

}  // namespace qv::native
