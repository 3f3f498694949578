#pragma once

#include <optional>
#include <vector>

#include "Platform/ImageGraph/Native/Compiler/Program.h"

namespace qv::native {

/// What an operation that only moves components gives, be they values or what is known of them: nothing for
/// other operations. `of` gives the components of a value, `unset` stands for those that are undefined.
template <class T, class Of>
std::optional<std::vector<T>> movedComponents(const Program& program, const Operation& operation,
                                              const Of& of, const T& unset) {
    const SpirvModule& module = program.module;
    // The components of a part of a value: where it starts and how many they are.
    const auto part = [&](Id type, std::size_t firstIndex) {
        std::uint32_t offset = 0;
        for (std::size_t i = firstIndex; i < operation.size(); ++i)
            offset += module.enter(type, operation[i]);
        return std::pair(offset, module.type(type).components);
    };
    switch (operation.op) {
        case spv::OpUndef:
        case spv::OpConstantNull:
            return std::vector<T>(module.type(operation.type).components, unset);
        case spv::OpCopyObject:
            return of(operation[0]);
        case spv::OpConstantComposite:
        case spv::OpSpecConstantComposite:
        case spv::OpCompositeConstruct: {
            std::vector<T> all;
            for (const Operation::Operand& operand : operation.operands) {
                const std::vector<T> values = of(operand.word);
                all.insert(all.end(), values.begin(), values.end());
            }
            return all;
        }
        case spv::OpCompositeExtract: {
            const std::vector<T> all = of(operation[0]);
            const auto [offset, count] = part(program.typeOf(operation[0]), 1);
            return std::vector<T>(all.begin() + offset, all.begin() + offset + count);
        }
        case spv::OpCompositeInsert: {
            std::vector<T> all = of(operation[1]);
            const std::vector<T> inserted = of(operation[0]);
            const auto [offset, count] = part(program.typeOf(operation[1]), 2);
            std::copy_n(inserted.begin(), count, all.begin() + offset);
            return all;
        }
        case spv::OpVectorShuffle: {
            std::vector<T> from = of(operation[0]);
            const std::vector<T> second = of(operation[1]);
            from.insert(from.end(), second.begin(), second.end());
            std::vector<T> all;
            for (std::size_t i = 2; i < operation.size(); ++i) {
                all.push_back(operation[i] < from.size() ? from[operation[i]] : unset);
            }
            return all;
        }
        case spv::OpTranspose: {
            const std::vector<T> from = of(operation[0]);
            const std::size_t columns = module.type(operation.type).count, rows = from.size() / columns;
            std::vector<T> all;
            for (std::size_t column = 0; column < columns; ++column) {
                for (std::size_t row = 0; row < rows; ++row) all.push_back(from[row * columns + column]);
            }
            return all;
        }
        default:
            return {};
    }
}

}  // namespace qv::native
