#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Writes small TensorFlow Lite files, for tests of what reads them.
namespace qv::test {

/// A table, a vector or a number of a FlatBuffers file. Children are written after their parents.
class FlatNode {
  public:
    using Bytes = std::string;

    static FlatNode number(std::uint32_t value) {
        return {[value](Bytes& file, std::size_t slot) { std::memcpy(&file[slot], &value, 4); }};
    }
    static FlatNode nothing() { return {{}}; }
    static FlatNode bytes(const Bytes& content) {
        return child([content](Bytes& file) {
            const std::size_t place = begin(file);
            append(file, std::uint32_t(content.size()));
            file += content;
            return place;
        });
    }
    static FlatNode numbers(const std::vector<std::int32_t>& values) {
        return child([values](Bytes& file) {
            const std::size_t place = begin(file);
            append(file, std::uint32_t(values.size()));
            for (std::int32_t value : values) append(file, std::uint32_t(value));
            return place;
        });
    }
    static FlatNode tables(const std::vector<FlatNode>& nodes) {
        return child([nodes](Bytes& file) {
            const std::size_t place = begin(file);
            append(file, std::uint32_t(nodes.size()));
            const std::size_t first = file.size();
            file.resize(first + 4 * nodes.size());
            for (std::size_t i = 0; i < nodes.size(); ++i) nodes[i].write_(file, first + 4 * i);
            return place;
        });
    }
    static FlatNode table(const std::vector<FlatNode>& fields) {
        return child([fields](Bytes& file) {
            const std::size_t list = begin(file);
            const auto half = [&](std::size_t value) {
                file += char(value & 255);
                file += char(value >> 8);
            };
            half(4 + 2 * fields.size());
            half(4 + 4 * fields.size());
            for (std::size_t i = 0; i < fields.size(); ++i) half(fields[i].write_ ? 4 + 4 * i : 0);
            const std::size_t place = begin(file);
            append(file, std::uint32_t(place - list));
            file.resize(file.size() + 4 * fields.size());
            for (std::size_t i = 0; i < fields.size(); ++i) {
                if (fields[i].write_) fields[i].write_(file, place + 4 + 4 * i);
            }
            return place;
        });
    }
    Bytes file(const char* identifier) const {
        Bytes result(4, '\0');
        result += identifier;
        write_(result, 0);
        return result;
    }

  private:
    FlatNode(std::function<void(Bytes&, std::size_t)> write) : write_(std::move(write)) {}
    static FlatNode child(std::function<std::size_t(Bytes&)> write) {
        return {[write](Bytes& file, std::size_t slot) {
            const auto distance = std::uint32_t(write(file) - slot);
            std::memcpy(&file[slot], &distance, 4);
        }};
    }
    static std::size_t begin(Bytes& file) {
        file.resize((file.size() + 3) / 4 * 4);
        return file.size();
    }
    static void append(Bytes& file, std::uint32_t value) {
        file.append(reinterpret_cast<const char*>(&value), 4);
    }

    std::function<void(Bytes&, std::size_t)> write_;
};

/// A network under construction: each function adds an operator and gives the number of its result.
class TinyNetwork {
  public:
    TinyNetwork(int height, int width) { tensor({1, height, width, 3}); }

    enum Code {
        add = 0,
        averagePool = 1,
        convolution = 3,
        depthwise = 4,
        dequantize = 6,
        sigmoid = 14,
        multiply = 18,
        relu = 19,
        resize = 23,
        custom = 32,
        hardSwish = 117
    };
    using Shape = std::vector<std::int32_t>;

    /// Floats of 32 bits.
    int constant(const Shape& shape, const std::vector<float>& values) {
        return tensor(shape, 0, {reinterpret_cast<const char*>(values.data()), values.size() * 4});
    }
    /// Floats of 16 bits, which must hold them, with the operator that widens them.
    int halves(const Shape& shape, const std::vector<float>& values) {
        std::string bytes;
        for (float value : values) {
            int exponent = 0;
            const float part = std::frexp(std::fabs(value), &exponent);  // 0.5 to 1
            const int bits = value == 0 ? 0 : (exponent + 14) << 10 | (int(part * 2048) & 1023);
            bytes += char(bits & 255);
            bytes += char((bits >> 8 & 127) | (std::signbit(value) ? 128 : 0));
        }
        return operation(dequantize, {tensor(shape, 1, bytes)}, shape);
    }
    int operation(Code code, const Shape& inputs, const Shape& shape,
                  const std::vector<FlatNode>& options = {}) {
        const int result = tensor(shape);
        steps_.push_back(
            FlatNode::table({FlatNode::number(codeIndex(code)), FlatNode::numbers(inputs),
                             FlatNode::numbers({result}), FlatNode::nothing(), FlatNode::table(options)}));
        return result;
    }
    std::string file(int output) const {
        const FlatNode graph = FlatNode::table({FlatNode::tables(tensors_), FlatNode::numbers({0}),
                                                FlatNode::numbers({output}), FlatNode::tables(steps_)});
        return FlatNode::table({FlatNode::number(3), FlatNode::tables(codes_), FlatNode::tables({graph}),
                                FlatNode::nothing(), FlatNode::tables(buffers_)})
            .file("TFL3");
    }

  private:
    int tensor(const Shape& shape, std::uint32_t type = 0, const std::string& content = {}) {
        tensors_.push_back(FlatNode::table({FlatNode::numbers(shape), FlatNode::number(type),
                                            FlatNode::number(std::uint32_t(buffers_.size()))}));
        buffers_.push_back(FlatNode::table({FlatNode::bytes(content)}));
        return int(tensors_.size()) - 1;
    }
    std::uint32_t codeIndex(Code code) {
        for (std::size_t i = 0; i < known_.size(); ++i) {
            if (known_[i] == code) return std::uint32_t(i);
        }
        known_.push_back(code);
        codes_.push_back(FlatNode::table(
            {FlatNode::number(code),
             code == custom ? FlatNode::bytes("Convolution2DTransposeBias") : FlatNode::nothing()}));
        return std::uint32_t(known_.size() - 1);
    }

    std::vector<FlatNode> tensors_, buffers_, codes_, steps_;
    std::vector<Code> known_;
};

/// A network that takes for a person what is red: the likelihood is 1/(1 + exp(−`gain` · (red − 0.5))).
inline std::string redNetwork(float gain, int height = 64, int width = 64) {
    TinyNetwork network(height, width);
    const int weights = network.halves({1, 1, 1, 3}, {gain, 0, 0}), bias = network.halves({1}, {-gain / 2});
    const FlatNode one = FlatNode::number(1);
    const int level = network.operation(TinyNetwork::convolution, {0, weights, bias}, {1, height, width, 1},
                                        {FlatNode::nothing(), one, one});
    return network.file(network.operation(TinyNetwork::sigmoid, {level}, {1, height, width, 1}));
}

}  // namespace qv::test
