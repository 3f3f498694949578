#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::host {

/// How a value goes from one key to the next. The curves are the well-known ones of animation: powers, a
/// quarter sine, an exponential, a quarter circle, one that overshoots, a swing and a bounce.
class Easing {
  public:
    /// Even all the way.
    Easing() = default;
    /// "linear"; "hold", which stays and jumps at the end; or "in", "out" or "inOut" with "Sine", "Quad",
    /// "Cubic", "Quart", "Quint", "Expo", "Circ", "Back", "Elastic" or "Bounce". Nothing for another name.
    static std::optional<Easing> named(std::string_view name);
    /// Each of them, the even one first.
    static std::vector<Easing> all();
    /// All names, with commas between them.
    static std::string names();

    /// The share of the way at 0..1 of the time: 0 at 0, 1 at 1, outside of 0..1 where the curve overshoots.
    double operator()(double time) const;
    std::string name() const;
    bool operator==(const Easing&) const = default;

  private:
    enum class Way { in, out, inOut };
    int curve_ = 0;  ///< index into the table of curves
    Way way_ = Way::in;
};

}  // namespace qv::host
