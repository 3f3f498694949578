#pragma once

#include <algorithm>
#include <cmath>

namespace qv::assets {

/// A point, a direction or a linear-light colour.
struct Vec3 {
    float x = 0, y = 0, z = 0;

    Vec3& operator+=(Vec3 b) { return *this = {x + b.x, y + b.y, z + b.z}; }
    Vec3& operator*=(float k) { return *this = {x * k, y * k, z * k}; }
};

inline Vec3 operator+(Vec3 a, Vec3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(Vec3 a, Vec3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator*(Vec3 a, Vec3 b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline Vec3 operator*(Vec3 a, float k) {
    return {a.x * k, a.y * k, a.z * k};
}
inline float dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(Vec3 a) {
    return std::sqrt(dot(a, a));
}
inline Vec3 normalize(Vec3 a) {
    return a * (1.0f / std::max(length(a), 1e-12f));
}

inline float clamp01(float v) {
    return std::clamp(v, 0.0f, 1.0f);
}
inline float mix(float a, float b, float t) {
    return a + (b - a) * t;
}
inline Vec3 mix(Vec3 a, Vec3 b, float t) {
    return a + (b - a) * t;
}
/// 0 below `from`, 1 above `to`, a cubic between; `from` may be the larger.
inline float smoothstep(float from, float to, float v) {
    const float t = clamp01((v - from) / (to - from));
    return t * t * (3 - 2 * t);
}

}  // namespace qv::assets
