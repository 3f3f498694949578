// A picture saved too often: blocks of a few coarse cosine coefficients, colours in blocks of twice the side, ringing
// where there is contrast. The file is damaged too: six times a second other rows of blocks slip and lose their
// colour.
#include "borders.glsl"
#include "noise.glsl"
#include "wave.glsl"

uniform float iTime;
uniform float effectValue;

// Rec. BT.601 without offsets: x luma, y blue and z red difference.
vec3 toYCC(vec3 c) {
    float y = dot(c, vec3(0.299, 0.587, 0.114));
    return vec3(y, (c.b - y) * 0.564, (c.r - y) * 0.713);
}
vec3 fromYCC(vec3 c) { return c.x + vec3(1.402 * c.z, -0.344 * c.y - 0.714 * c.z, 1.772 * c.y); }
float quantize(float value, float quantum) { return floor(value / quantum + 0.5) * quantum; }
float brightness(ivec2 pixel) { return dot(readPixel(0, pixel).rgb, vec3(0.299, 0.587, 0.114)); }

vec4 QVJPEGMTIFilter(vec2 uv) {
    float shortSide = min(outputSize().x, outputSize().y);
    int side = int(wholePixels(shortSide / mix(110.0, 32.0, effectValue) * 0.25)) * 4;  // pixels, whole quarters
    ivec2 pixel = pixelHere();
    ivec2 block = ivec2((vec2(pixel) + 0.5) / float(side));
    float slot = mod(floor(iTime * 6.0), 65536.0);

    // A damaged row of blocks: from a place on it reads what belongs elsewhere, and its colours drift.
    vec3 damage = random3Of(vec3(0.0, block.y >> 1, slot));
    float broken = step(damage.x, 0.22 * effectValue) *
                   step(damage.y * outputSize().x, float((block.x & ~1) * side));
    int slip = int(broken * floor(damage.z * 7.0 - 3.0)) * side * 2;
    vec2 drift = broken * (vec2(fract(damage.z * 17.0), fract(damage.y * 23.0)) - 0.5) * 0.3;

    // Luma: the mean and the three lowest frequencies, from the middles of the block's quarters.
    ivec2 corner = block * side + ivec2(slip, 0);
    int quarter = side / 4, far = side - side / 4;
    float a = brightness(corner + ivec2(quarter, quarter)), b = brightness(corner + ivec2(far, quarter));
    float c = brightness(corner + ivec2(quarter, far)), d = brightness(corner + ivec2(far, far));
    float coarse = 0.02 + 0.1 * effectValue;
    float mean = quantize((a + b + c + d) * 0.25, coarse * 0.6);
    float across = quantize((a + c - b - d) * 0.35, coarse), down = quantize((a + b - c - d) * 0.35, coarse);
    float both = quantize((a + d - b - c) * 0.35, coarse);
    vec2 place = (vec2(pixel - block * side) + 0.5) / float(side);
    vec2 cosine = wave(place * 0.5);
    float luma601 = mean + across * cosine.x + down * cosine.y + both * cosine.x * cosine.y;
    // What survives of the finer detail, and ringing of a frequency that is the block's own.
    vec4 here = readPixel(0, pixel + ivec2(slip, 0));
    float detail = dot(here.rgb, vec3(0.299, 0.587, 0.114)) - luma601;
    luma601 += quantize(detail * (1.0 - 0.35 * effectValue), coarse * 1.6);
    vec3 own = random3Of(vec3(vec2(block), slot));
    float contrast = abs(across) + abs(down) + abs(both);
    vec2 ringing = wave(place * (1.0 + floor(own.xy * 3.0)) * 0.5 + 0.5);
    luma601 += ringing.x * ringing.y * (own.z - 0.5) * (contrast * 0.5 + 0.03) * effectValue;

    // Chroma: one coarse value for a square of four blocks.
    ivec2 square = (block & ~1) * side + ivec2(slip, 0);
    vec2 chroma = toYCC(readPixel(0, square + side).rgb).yz;
    float colorStep = 0.012 + 0.04 * effectValue;
    chroma = vec2(quantize(chroma.x, colorStep), quantize(chroma.y, colorStep)) + drift;

    return vec4(clamp(fromYCC(vec3(luma601, chroma)), vec3(0.0), here.aaa), here.a);
}
