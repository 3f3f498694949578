#pragma once

namespace qv {

/// What a stage of a pass reads as one of its inputs.
struct StageInput {
    enum class From {
        nothing,  ///< a missing image: transparent, one pixel
        texture,  ///< of the pass
        stage,    ///< the result of an earlier stage, which can only be read with readHere
        value     ///< one colour for all pixels
    };
    static constexpr int kOutputSize = -1;

    From from = From::nothing;
    int index = 0;  ///< of the texture, stage or value
    int size =
        kOutputSize;  ///< which pushed size a texture or value has; what a stage gives has the output's
    bool operator==(const StageInput&) const = default;
};

/// How a value is pushed.
enum class PushedValue {
    eightBits,  ///< one word, a byte a component, red lowest
    floats      ///< four words
};

}  // namespace qv
