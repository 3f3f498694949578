#pragma once

namespace qv {

/// What a stage of a pass reads as one of its inputs.
struct StageInput {
    /// Where it comes from.
    enum class From {
        nothing,  ///< a missing image: transparent, one pixel
        texture,  ///< of the pass
        stage,    ///< the result of an earlier stage; away from its own place only if that reads nothing with
                  ///< readHere
        value     ///< one colour for all pixels
    };
    /// As `size`: that of the output.
    static constexpr int kOutputSize = -1;

    From from = From::nothing;  ///< what is read
    int index = 0;              ///< of the texture, stage or value
    /// Which pushed size a texture or value has; what a stage gives has the output's.
    int size = kOutputSize;
    /// Member by member.
    bool operator==(const StageInput&) const = default;
};

/// How a value is pushed.
enum class PushedValue {
    eightBits,  ///< one word, a byte a component, red lowest
    floats      ///< four words
};

}  // namespace qv
