#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace qv {

/// A network that tells for each pixel of a small picture how likely it belongs to a person. One thread at a
/// time. Whatever it is made of or run with, the result does not depend on the number of threads.
class SegmentationNetwork {
  public:
    /// Of a TensorFlow Lite file: one input of height × width × 3 values 0..1 (RGB), one output of as many
    /// pixels with one value 0..1, in between convolutions, sums, products, means, bilinear enlargement and
    /// activations, with weights of 16 or 32 bit floats. Throws ModelError.
    explicit SegmentationNetwork(std::span<const std::uint8_t> file);
    ~SegmentationNetwork();

    int width() const;
    int height() const;
    /// `rgb` has width × height pixels of three bytes, row by row; the result as many values 0..1. Throws
    /// what the libraries below throw.
    std::vector<float> run(std::span<const std::uint8_t> rgb);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace qv
