#version 450

// One sprite: the octagon that holds what its picture shows, so that its transparent corners cost nothing.
layout(location = 0) in vec4 centerAndAxisX;  // normalised device coordinates
layout(location = 1) in vec4 axisYAndHalf;    // half the sprite's sides, pixels of the frame
layout(location = 2) in vec4 placeInAtlas;    // corner and size, 0..1
layout(location = 3) in vec4 factor;          // of the premultiplied texel
layout(location = 4) in vec4 sides;           // reach to the left, right, bottom and top; 1 is the picture's edge
layout(location = 5) in vec4 corners;         // reach along x + y to the left and right bottom, left and right top
layout(location = 6) in vec4 detail;          // half a texel, 0..1 in the atlas

layout(location = 0) out vec4 pixelAndPlace;  // from the sprite's centre, pixels along its sides; in the atlas
layout(location = 1) flat out vec4 edgeAndLimit;
layout(location = 2) flat out vec4 range;
layout(location = 3) flat out vec4 colorFactor;

void main() {
    // A strip from the right side to the left: two vertices each on the right, bottom and top, bottom and top, left.
    int column = gl_VertexIndex >> 1, row = gl_VertexIndex & 1;
    bool isLeft = column >= 2, isOnSide = column == 0 || column == 3;
    vec2 reach = vec2(isLeft ? sides.x : sides.y, row == 0 ? sides.z : sides.w);
    float corner = row == 0 ? (isLeft ? corners.x : corners.y) : (isLeft ? corners.z : corners.w);
    vec2 cut = min(reach, corner - reach.yx);
    vec2 local = (isOnSide ? vec2(reach.x, cut.y) : vec2(cut.x, reach.y)) * vec2(isLeft ? -1 : 1, row * 2 - 1);

    gl_Position = vec4(centerAndAxisX.xy + local.x * centerAndAxisX.zw + local.y * axisYAndHalf.xy, 0.0, 1.0);
    vec2 halfSides = axisYAndHalf.zw;
    pixelAndPlace = vec4(local * halfSides, placeInAtlas.xy + (local * vec2(0.5, -0.5) + 0.5) * placeInAtlas.zw);
    edgeAndLimit = vec4(halfSides + 0.5, min(2.0 * halfSides, 1.0));
    // The outermost half texel would be mixed with what surrounds the picture in the atlas.
    vec2 inset = min(detail.xy, 0.5 * placeInAtlas.zw);
    range = vec4(placeInAtlas.xy + inset, placeInAtlas.xy + placeInAtlas.zw - inset);
    colorFactor = factor;
}
