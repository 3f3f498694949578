// Equilateral triangles of one colour.
#include "borders.glsl"
#include "frame.glsl"

uniform float factor;  // height of a triangle, 1/1080 of the frame's shorter side

// Mean of three pixels between the centre and the corners; `reach` (pixels) is negative for a triangle that points
// down.
vec4 triangleColor(vec2 center, float reach) {
    vec4 sum = readPixel(0, pixelAt(center - vec2(0.0, reach)));
    sum += readPixel(0, pixelAt(center + vec2(0.866 * reach, 0.5 * reach)));
    return (sum + readPixel(0, pixelAt(center + vec2(-0.866 * reach, 0.5 * reach)))) * (1.0 / 3.0);
}

vec4 QVTriangleMosaicMTIFilter(vec2 uv) {
    vec2 middle = 0.5 * outputSize();
    float height = max(factor * unitPixels(outputSize()), 3.0);
    vec2 lattice = vec2(height * 1.1547005, height);
    // Lattice coordinates: two triangles share a cell, one on each side of its diagonal.
    vec2 place = (offBorders(uv) * outputSize() - middle) / lattice;
    place.x -= 0.5 * place.y;
    vec2 cell = floor(place), f = place - cell;
    float second = step(1.0, f.x + f.y);
    vec2 g = mix(f, 1.0 - f, second);
    vec3 edges = vec3(g, 1.0 - g.x - g.y);  // distances to the three edges, in heights
    vec2 center = cell + mix(vec2(1.0 / 3.0), vec2(2.0 / 3.0), second);
    // The centre of the neighbour beyond the nearest edge.
    float nearest = min(edges.x, min(edges.y, edges.z));
    float away = 1.0 - 2.0 * second;
    vec2 across = nearest == edges.x ? vec2(-2.0, 1.0) : vec2(1.0, -2.0);
    if (nearest == edges.z) across = vec2(1.0);
    vec2 other = center + away * across * (1.0 / 3.0);
    center.x += 0.5 * center.y;
    other.x += 0.5 * other.y;
    float reach = height * 0.33;
    vec4 own = triangleColor(center * lattice + middle, -reach * away);
    vec4 beyond = triangleColor(other * lattice + middle, reach * away);
    return mix(beyond, own, clamp(nearest * height + 0.5, 0.0, 1.0));
}
