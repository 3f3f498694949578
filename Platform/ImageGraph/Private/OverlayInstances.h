#pragma once

namespace qv {

/// What the stages that draw a sprite read of it, vector by vector; see sprite.vert for what it means.
struct SpriteInstanceData {
    float center[2], axisX[2];
    float axisY[2], halfSides[2];
    float place[4];
    float factor[4];
    float sides[4];
    float corners[4];
    float halfTexel[2], unused[2];
};

/// What the stages that draw a line read of one curve; see bezier_vertex.vert.
struct CurveInstanceData {
    float start[2], end[2];
    float control[2], radius, ribs;
    float angle, turn, pixelsPerPoint, strength;
    float pointSize[2], frameSize[2];
};

}  // namespace qv
