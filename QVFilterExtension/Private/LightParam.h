#pragma once

namespace qv {

/// One light leak of a light film.
struct LightParam {
    unsigned index = 0;      ///< which light picture of a set
    unsigned flipType = 0;   ///< how the picture is mirrored
    double rotateAngle = 0;  ///< of the picture
    double opacity = 0;      ///< of the picture, 0..1
    bool operator==(const LightParam&) const = default;
};

/// A light leak from its numbers.
constexpr LightParam LightParamMake(unsigned index, unsigned flipType, double rotateAngle, double opacity) {
    return {index, flipType, rotateAngle, opacity};
}

}  // namespace qv
