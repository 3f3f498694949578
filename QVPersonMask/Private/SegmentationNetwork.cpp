#include "QVPersonMask/Private/SegmentationNetwork.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string>

#include <opencv2/dnn.hpp>

#include "QVPersonMask/Private/FlatTable.h"

namespace qv {

namespace {

// Numbers of the file format.
enum class Operator {
    add = 0,
    averagePool = 1,
    convolution = 3,
    depthwise = 4,
    dequantize = 6,
    sigmoid = 14,
    multiply = 18,
    relu = 19,
    resizeBilinear = 23,
    custom = 32,
    hardSwish = 117
};
enum class ValueType { float32 = 0, float16 = 1, int32 = 2 };
enum class PaddingRule { same = 0, valid = 1 };

// A file that wants more than this is another network, or made to exhaust the machine. The usual one has 460
// operators and tensors, 0.1 million weights and 60 million multiplications.
constexpr std::size_t kMaximumParts = 4096, kMaximumWeights = 8 << 20;
constexpr std::int64_t kMaximumValues = 64 << 20;
constexpr double kMaximumMultiplications = 4e9;
constexpr int kMaximumKernel = 15;

[[noreturn]] void damaged() {
    throw ModelError("is truncated or damaged");
}

[[noreturn]] void foreign(const std::string& what) {
    throw ModelError("is not a network for masks of people: " + what);
}

float fromHalf(std::uint16_t half) {
    const std::uint32_t sign = std::uint32_t(half & 0x8000) << 16, exponent = half >> 10 & 31,
                        mantissa = half & 1023;
    if (exponent == 0) return std::ldexp(float(mantissa), -24) * (sign ? -1.0f : 1.0f);
    if (exponent == 31) foreign("a weight is not a number");
    return std::bit_cast<float>(sign | (exponent + 112) << 23 | mantissa << 13);
}

/// A value that flows through the network, or a constant: `values` in the file's order, channels last.
struct Tensor {
    int height = 0, width = 0, channels = 0;  ///< of a single picture
    std::vector<std::int32_t> shape;
    ValueType type = ValueType::float32;
    FlatTable::Bytes constant;
    int layer = -1;  ///< that computes it; 0 is the input
};

/// Turns the file's operators into layers, in their order.
class Importer {
  public:
    explicit Importer(FlatTable::Bytes file) {
        const FlatTable model = FlatTable::root(file, "TFL3");
        for (const FlatTable& code : model.tables(1)) {
            operators_.push_back(
                Operator(std::max<int>(code.number<std::int8_t>(0), code.number<std::int32_t>(3))));
            names_.push_back(std::string(code.text(1)));
        }
        const std::vector<FlatTable> graphs = model.tables(2);
        if (graphs.size() != 1) foreign("it has not one graph");
        const FlatTable& graph = graphs.front();
        const std::vector<FlatTable> steps = graph.tables(3);
        if (graph.tables(0).size() > kMaximumParts || steps.size() > kMaximumParts)
            foreign("it is too large");
        readTensors(graph.tables(0), model.tables(4));

        const std::vector<std::int32_t> inputs = graph.numbers(1), outputs = graph.numbers(2);
        if (inputs.size() != 1 || outputs.size() != 1) foreign("it has not one input and one output");
        Tensor& input = tensor(inputs[0]);
        if (input.channels != 3) foreign("its input is not a picture");
        input.layer = 0;
        height = input.height;
        width = input.width;
        for (const FlatTable& step : steps) add(step);

        const Tensor& output = tensor(outputs[0]);
        if (output.layer < 1 || output.layer != lastLayer_ || output.height != height ||
            output.width != width || output.channels != 1)
            foreign("its output is not a mask");
    }

    cv::dnn::Net net;
    int width = 0, height = 0;

  private:
    void readTensors(const std::vector<FlatTable>& tables, const std::vector<FlatTable>& buffers) {
        for (const FlatTable& table : tables) {
            Tensor tensor;
            tensor.shape = table.numbers(0);
            tensor.type = ValueType(table.number<std::int8_t>(1));
            const auto buffer = table.number<std::uint32_t>(2);
            if (buffer >= buffers.size()) damaged();
            tensor.constant = buffers[buffer].bytes(0);
            std::int64_t values = 1;
            for (std::int32_t side : tensor.shape) {
                values *= side;
                if (side < 1 || values > kMaximumValues) foreign("a tensor is too large or empty");
            }
            if (tensor.shape.size() == 4) {
                tensor.height = tensor.shape[1];
                tensor.width = tensor.shape[2];
                tensor.channels = tensor.shape[3];
            }
            tensors_.push_back(std::move(tensor));
        }
    }

    Tensor& tensor(std::int32_t index) {
        if (index < 0 || std::size_t(index) >= tensors_.size()) damaged();
        return tensors_[std::size_t(index)];
    }

    /// A tensor of one picture that has been computed by now.
    const Tensor& computed(std::int32_t index) {
        const Tensor& result = tensor(index);
        if (result.layer < 0 || result.shape.size() != 4 || result.shape[0] != 1)
            foreign("an operator has no picture to work on");
        return result;
    }

    /// All floats of a constant.
    std::vector<float> constant(const Tensor& tensor) {
        std::size_t count = 1;
        for (std::int32_t side : tensor.shape) count *= std::size_t(side);
        weights_ += count;
        if (weights_ > kMaximumWeights) foreign("it is too large");
        const std::size_t bytes = tensor.type == ValueType::float16 ? 2 : 4;
        if (tensor.constant.size() != count * bytes || tensor.type == ValueType::int32)
            foreign("weights are missing");
        std::vector<float> values(count);
        for (std::size_t i = 0; i < count; ++i) {
            if (bytes == 2) {
                std::uint16_t half;
                std::memcpy(&half, tensor.constant.data() + 2 * i, 2);
                values[i] = fromHalf(half);
            } else {
                std::memcpy(&values[i], tensor.constant.data() + 4 * i, 4);
                if (!std::isfinite(values[i])) foreign("a weight is not a number");
            }
        }
        return values;
    }

    /// Adds a layer that reads those tensors, and gives its number.
    int layer(const char* type, cv::dnn::LayerParams params, std::initializer_list<int> sources) {
        const int id = net.addLayer(type + std::to_string(++layers_), type, params);
        int pin = 0;
        for (int source : sources) net.connect(source, 0, id, pin++);
        return lastLayer_ = id;
    }

    /// An operator may say in a field that an activation follows it.
    static void checkNoActivation(const FlatTable& options, int field) {
        if (options.number<std::int8_t>(field) != 0) foreign("an activation is joined to another operator");
    }

    void add(const FlatTable& step) {
        const auto code = step.number<std::uint32_t>(0);
        if (code >= operators_.size()) damaged();
        const std::vector<std::int32_t> inputs = step.numbers(1), outputs = step.numbers(2);
        const bool takesWeights = operators_[code] == Operator::convolution ||
                                  operators_[code] == Operator::depthwise ||
                                  operators_[code] == Operator::custom;
        const bool takesTwo = operators_[code] == Operator::add || operators_[code] == Operator::multiply ||
                              operators_[code] == Operator::resizeBilinear;
        if (outputs.size() != 1 || inputs.size() != (takesWeights ? 3u : takesTwo ? 2u : 1u)) damaged();
        Tensor& result = tensor(outputs[0]);
        if (operators_[code] == Operator::dequantize) {
            result.constant = tensor(inputs[0]).constant;
            result.type = tensor(inputs[0]).type;
            return;
        }
        const Tensor& source = computed(inputs[0]);
        const FlatTable options = step.table(4);
        Tensor made = source;  // with the shape that the operator gives
        switch (operators_[code]) {
            case Operator::convolution:
            case Operator::depthwise:
                made = convolution(source, inputs, options, operators_[code] == Operator::depthwise);
                break;
            case Operator::custom:
                if (names_[code] != "Convolution2DTransposeBias")
                    foreign("it has the operator " + names_[code]);
                made = transposedConvolution(source, inputs);
                break;
            case Operator::add:
            case Operator::multiply:
                checkNoActivation(options, 0);
                made = combination(source, computed(inputs[1]), operators_[code] == Operator::add);
                break;
            case Operator::averagePool:
                checkNoActivation(options, 5);
                if (options.number<std::int32_t>(3) != source.width ||
                    options.number<std::int32_t>(4) != source.height)
                    foreign("a mean is not taken over the whole picture");
                made = mean(source);
                break;
            case Operator::resizeBilinear:
                if (!options.number<std::uint8_t>(3) || options.number<std::uint8_t>(2))
                    foreign("a picture is enlarged from its corners");
                made = enlargement(source, result);
                break;
            case Operator::relu:
                made.layer = layer("ReLU", {}, {source.layer});
                break;
            case Operator::sigmoid:
                made.layer = layer("Sigmoid", {}, {source.layer});
                break;
            case Operator::hardSwish:
                made.layer = layer("HardSwish", {}, {source.layer});
                break;
            default:
                foreign("it has the operator number " + std::to_string(int(operators_[code])));
        }
        if (result.shape.size() != 4 || result.shape[0] != 1 || result.height != made.height ||
            result.width != made.width || result.channels != made.channels)
            foreign("a tensor's shape is not what its operator gives");
        values_ += std::int64_t(made.height) * made.width * made.channels;
        if (values_ > kMaximumValues) foreign("it is too large");
        result.layer = made.layer;
    }

    void count(double multiplications) {
        multiplications_ += multiplications;
        if (multiplications_ > kMaximumMultiplications) foreign("it is too large");
    }

    Tensor convolution(const Tensor& source, const std::vector<std::int32_t>& inputs,
                       const FlatTable& options, bool depthwise) {
        const Tensor& weights = tensor(inputs[1]);
        // Depthwise has its multiplier before the activation and the dilation.
        const int further = depthwise ? 4 : 3;
        const int strideX = options.number<std::int32_t>(1), strideY = options.number<std::int32_t>(2);
        const int outputs = depthwise ? source.channels : weights.shape.empty() ? 0 : weights.shape[0];
        if (weights.shape.size() != 4 || weights.channels != source.channels ||
            (depthwise && weights.shape[0] != 1) || weights.width > kMaximumKernel ||
            weights.height > kMaximumKernel || strideX < 1 || strideX > 8 || strideY != strideX ||
            options.number<std::int32_t>(further + 1, 1) != 1 ||
            options.number<std::int32_t>(further + 2, 1) != 1)
            foreign("a convolution has weights of another shape, or gaps");
        checkNoActivation(options, further);
        const bool same = PaddingRule(options.number<std::int8_t>(0)) == PaddingRule::same;
        Tensor made = source;
        made.channels = outputs;
        cv::dnn::LayerParams params;
        std::array<int, 8> paddings{};  // before and after, of each dimension
        const auto side = [&](int& length, int kernel, int dimension) {
            const int full = length;
            length = same ? (full + strideX - 1) / strideX : (full - kernel) / strideX + 1;
            const int missing = same ? std::max(0, (length - 1) * strideX + kernel - full) : 0;
            if (length < 1 || kernel > full + missing) foreign("a convolution is larger than its picture");
            paddings[std::size_t(2 * dimension)] = missing / 2;
            paddings[std::size_t(2 * dimension + 1)] = missing - missing / 2;
        };
        side(made.height, weights.height, 2);
        side(made.width, weights.width, 3);
        const int perOutput = depthwise ? 1 : source.channels;
        count(double(made.height) * made.width * outputs * perOutput * weights.height * weights.width);

        int input = source.layer;
        if (paddings[4] == paddings[5] && paddings[6] == paddings[7]) {
            params.set("pad_h", paddings[4]);
            params.set("pad_w", paddings[6]);
        } else {
            cv::dnn::LayerParams border;
            border.set("paddings", cv::dnn::DictValue::arrayInt(paddings.data(), int(paddings.size())));
            input = layer("Padding", border, {input});
        }
        params.set("kernel_h", weights.height);
        params.set("kernel_w", weights.width);
        params.set("stride_h", strideY);
        params.set("stride_w", strideX);
        params.set("num_output", outputs);
        params.set("group", depthwise ? source.channels : 1);
        // In the file a plain convolution has its outputs first, one of single channels its channels last.
        const std::vector<float> values = constant(weights);
        const int sizes[] = {outputs, perOutput, weights.height, weights.width};
        cv::Mat kernel(4, sizes, CV_32F);
        const int taps = weights.height * weights.width;
        float* target = kernel.ptr<float>();
        for (int out = 0; out < outputs; ++out)
            for (int in = 0; in < perOutput; ++in)
                for (int tap = 0; tap < taps; ++tap)
                    *target++ = depthwise ? values[std::size_t(tap * outputs + out)]
                                          : values[std::size_t((out * taps + tap) * perOutput + in)];
        params.blobs = {kernel, bias(inputs[2], outputs)};
        made.layer = layer("Convolution", params, {input});
        return made;
    }

    /// One whose results do not overlap.
    Tensor transposedConvolution(const Tensor& source, const std::vector<std::int32_t>& inputs) {
        const Tensor& weights = tensor(inputs[1]);
        if (weights.shape.size() != 4 || weights.channels != source.channels ||
            weights.width > kMaximumKernel || weights.height > kMaximumKernel)
            foreign("a convolution has weights of another shape, or gaps");
        Tensor made = source;
        const int outputs = made.channels = weights.shape[0];
        made.height *= weights.height;
        made.width *= weights.width;
        count(double(made.height) * made.width * outputs * source.channels);
        cv::dnn::LayerParams params;
        params.set("kernel_h", weights.height);
        params.set("kernel_w", weights.width);
        params.set("stride_h", weights.height);
        params.set("stride_w", weights.width);
        params.set("num_output", outputs);
        const std::vector<float> values = constant(weights);
        const int sizes[] = {source.channels, outputs, weights.height, weights.width};
        cv::Mat kernel(4, sizes, CV_32F);
        const int taps = weights.height * weights.width;
        float* target = kernel.ptr<float>();
        for (int in = 0; in < source.channels; ++in)
            for (int out = 0; out < outputs; ++out)
                for (int tap = 0; tap < taps; ++tap)
                    *target++ = values[std::size_t((out * taps + tap) * source.channels + in)];
        params.blobs = {kernel, bias(inputs[2], outputs)};
        made.layer = layer("Deconvolution", params, {source.layer});
        return made;
    }

    cv::Mat bias(std::int32_t index, int outputs) {
        const std::vector<float> values = constant(tensor(index));
        if (values.size() != std::size_t(outputs))
            foreign("a convolution has weights of another shape, or gaps");
        return cv::Mat(values, true).reshape(1, outputs);
    }

    /// Of two pictures, or of a picture and one value a channel.
    Tensor combination(const Tensor& first, const Tensor& second, bool sum) {
        const bool alike = first.height == second.height && first.width == second.width;
        if (first.channels != second.channels || (!alike && (sum || second.height != 1 || second.width != 1)))
            foreign("pictures of different sizes are combined");
        Tensor made = first;
        cv::dnn::LayerParams params;
        if (alike) {
            params.set("operation", sum ? "sum" : "prod");
            made.layer = layer("Eltwise", params, {first.layer, second.layer});
        } else {
            params.set("axis", 1);
            params.set("bias_term", false);
            made.layer = layer("Scale", params, {first.layer, second.layer});
        }
        return made;
    }

    Tensor mean(const Tensor& source) {
        cv::dnn::LayerParams params;
        params.set("pool", "ave");
        params.set("global_pooling", true);
        Tensor made = source;
        made.height = made.width = 1;
        made.layer = layer("Pooling", params, {source.layer});
        return made;
    }

    Tensor enlargement(const Tensor& source, const Tensor& result) {
        Tensor made = source;
        made.height = result.height;
        made.width = result.width;
        if (result.shape.size() != 4) damaged();
        cv::dnn::LayerParams params;
        params.set("interpolation", "bilinear");
        params.set("half_pixel_centers", true);
        params.set("width", result.width);
        params.set("height", result.height);
        made.layer = layer("Resize", params, {source.layer});
        return made;
    }

    std::vector<Operator> operators_;
    std::vector<std::string> names_;
    std::vector<Tensor> tensors_;
    std::size_t weights_ = 0;
    std::int64_t values_ = 0;
    double multiplications_ = 0;
    int layers_ = 0, lastLayer_ = 0;
};

}  // namespace

struct SegmentationNetwork::State {
    cv::dnn::Net net;
    int width, height;
};

SegmentationNetwork::SegmentationNetwork(std::span<const std::uint8_t> file) {
    Importer importer(file);
    state_ = std::make_unique<State>(State{importer.net, importer.width, importer.height});
    state_->net.setPreferableBackend(cv::dnn::DNN_BACKEND_OPENCV);
    state_->net.setPreferableTarget(cv::dnn::DNN_TARGET_CPU);
    // What OpenCV thinks of the network it says at the first use.
    run(std::vector<std::uint8_t>(std::size_t(width()) * std::size_t(height()) * 3));
}

SegmentationNetwork::~SegmentationNetwork() = default;

int SegmentationNetwork::width() const {
    return state_->width;
}

int SegmentationNetwork::height() const {
    return state_->height;
}

std::vector<float> SegmentationNetwork::run(std::span<const std::uint8_t> rgb) {
    const std::size_t pixels = std::size_t(state_->width) * std::size_t(state_->height);
    const int sizes[] = {1, 3, state_->height, state_->width};
    cv::Mat input(4, sizes, CV_32F);
    float* target = input.ptr<float>();
    for (std::size_t channel = 0; channel < 3; ++channel)
        for (std::size_t i = 0; i < pixels; ++i) *target++ = float(rgb[3 * i + channel]) * (1.0f / 255.0f);
    state_->net.setInput(input);
    const cv::Mat output = state_->net.forward();
    if (output.total() != pixels) throw ModelError("gives no mask");
    std::vector<float> result(output.ptr<float>(), output.ptr<float>() + pixels);
    for (float& value : result) value = value > 0 ? std::min(value, 1.0f) : 0;  // also what is not a number
    return result;
}

}  // namespace qv
