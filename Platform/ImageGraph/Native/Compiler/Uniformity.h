#pragma once

#include <unordered_map>
#include <vector>

#include "Platform/ImageGraph/Native/Compiler/Program.h"

namespace qv::native {

/// How a component differs between the lanes of a row.
enum class Spread : std::uint8_t {
    unset,    ///< has no value that anything could depend on
    uniform,  ///< not at all
    affine,   ///< one more in each lane than in the one before: the pixel's x, plus what is uniform
    varying
};

/// The spread of every component of values and variables, by id.
class Uniformity {
  public:
    /// Of a value or variable; uniform for those that nothing was found for, such as constants.
    std::vector<Spread> of(Id id, std::uint32_t components) const;
    Spread of(Id id, std::size_t component) const;

  private:
    friend class UniformityAnalysis;
    std::unordered_map<Id, std::vector<Spread>> spreads_;
};

/// Finds what is the same in all lanes, and annotates the nodes: which lanes reach each, where lanes part,
/// and which stores need not spare lanes that are elsewhere.
Uniformity findUniformity(Program& program);

}  // namespace qv::native
