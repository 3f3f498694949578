// The span functions for one instruction set. The including file has chosen it (`#pragma GCC target`) and
// included what is needed: nothing that others share may be compiled here, since the linker could take that
// copy for all. Products and sums are not contracted (see CMakeLists.txt), so that every set gives the same.

#define QV_INLINE __attribute__((always_inline)) inline

typedef float Floats __attribute__((vector_size(kSpanLanes * 4)));
typedef int Ints __attribute__((vector_size(kSpanLanes * 4)));
typedef unsigned Colors __attribute__((vector_size(kSpanLanes * 4)));
typedef Floats FloatsInMemory __attribute__((aligned(4), may_alias));
typedef Colors ColorsInMemory __attribute__((aligned(1), may_alias));

struct Pixels {
    Floats red, green, blue, alpha;
};

constexpr Ints kPlaces{0, 1, 2, 3, 4, 5, 6, 7};

QV_INLINE Floats larger(Floats a, Floats b) {
    return a > b ? a : b;
}
QV_INLINE Floats smaller(Floats a, Floats b) {
    return a < b ? a : b;
}
QV_INLINE Floats clamped(Floats value, float low, float high) {
    return smaller(larger(value, Floats{} + low), Floats{} + high);
}
QV_INLINE Floats floatsOf(Ints values) {
    return __builtin_convertvector(values, Floats);
}
QV_INLINE Ints intsOf(Floats values) {
    return __builtin_convertvector(values, Ints);
}
QV_INLINE Floats channelOf(Colors colors, int shift) {
    return floatsOf(Ints(colors >> shift & 255u));
}

QV_INLINE Floats squareRoot(Floats value) {
#if QV_HAS_AVX2
    return Floats(_mm256_sqrt_ps(__m256(value)));
#else
    Floats result;
    for (int i = 0; i < kSpanLanes; ++i) result[i] = __builtin_sqrtf(value[i]);
    return result;
#endif
}

/// Four values of each pixel, side by side.
struct Interleaved {
    alignas(32) float values[4 * kSpanLanes];
};

QV_INLINE Pixels pixelsOf(const Interleaved& in) {
    Pixels p;
    for (int i = 0; i < kSpanLanes; ++i) {
        p.red[i] = in.values[4 * i];
        p.green[i] = in.values[4 * i + 1];
        p.blue[i] = in.values[4 * i + 2];
        p.alpha[i] = in.values[4 * i + 3];
    }
    return p;
}

QV_INLINE void interleave(const Pixels& p, Interleaved& out) {
    for (int i = 0; i < kSpanLanes; ++i) {
        out.values[4 * i] = p.red[i];
        out.values[4 * i + 1] = p.green[i];
        out.values[4 * i + 2] = p.blue[i];
        out.values[4 * i + 3] = p.alpha[i];
    }
}

QV_INLINE void floatsOfHalves(const std::uint8_t* from, float* to) {
#if QV_HAS_AVX2
    for (int i = 0; i < 4; ++i)
        _mm256_storeu_ps(to + 8 * i,
                         _mm256_cvtph_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from) + i)));
#else
    for (int i = 0; i < 4 * kSpanLanes; ++i) {
        _Float16 half;
        __builtin_memcpy(&half, from + 2 * i, 2);
        to[i] = float(half);
    }
#endif
}

QV_INLINE void halvesOfFloats(const float* from, std::uint8_t* to) {
#if QV_HAS_AVX2
    for (int i = 0; i < 4; ++i)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to) + i,
                         _mm256_cvtps_ph(_mm256_loadu_ps(from + 8 * i), _MM_FROUND_TO_NEAREST_INT));
#else
    for (int i = 0; i < 4 * kSpanLanes; ++i) {
        const _Float16 half = _Float16(from[i]);
        __builtin_memcpy(to + 2 * i, &half, 2);
    }
#endif
}

QV_INLINE Pixels loaded(const std::uint8_t* row, TextureFormat format, int x) {
    if (format == TextureFormat::rgba8) {
        const Colors colors = *reinterpret_cast<const ColorsInMemory*>(row + 4 * x);
        constexpr float kScale = 1.0f / 255;
        return {channelOf(colors, 0) * kScale, channelOf(colors, 8) * kScale, channelOf(colors, 16) * kScale,
                channelOf(colors, 24) * kScale};
    }
    Interleaved values;
    if (format == TextureFormat::rgba16Float)
        floatsOfHalves(row + 8 * x, values.values);
    else
        __builtin_memcpy(values.values, row + 16 * x, sizeof values);
    return pixelsOf(values);
}

QV_INLINE Colors byteOf(Floats value, int shift) {
    return Colors(intsOf(clamped(value, 0, 1) * 255.0f + 0.5f)) << shift;
}

/// Writes the pixels of which `mask` is set.
QV_INLINE void stored(const Pixels& pixels, const Ints& mask, std::uint8_t* row, TextureFormat format,
                      int x) {
    if (format == TextureFormat::rgba8) {
        ColorsInMemory& to = *reinterpret_cast<ColorsInMemory*>(row + 4 * x);
        const Colors colors = byteOf(pixels.red, 0) | byteOf(pixels.green, 8) | byteOf(pixels.blue, 16) |
                              byteOf(pixels.alpha, 24);
        to = mask ? colors : Colors(to);
        return;
    }
    Interleaved values;
    interleave(pixels, values);
    const int texel = format == TextureFormat::rgba16Float ? 8 : 16;
    std::uint8_t bytes[16 * kSpanLanes];
    if (format == TextureFormat::rgba16Float)
        halvesOfFloats(values.values, bytes);
    else
        __builtin_memcpy(bytes, values.values, sizeof values);
    for (int i = 0; i < kSpanLanes; ++i) {
        if (mask[i]) __builtin_memcpy(row + (x + i) * texel, bytes + i * texel, std::size_t(texel));
    }
}

QV_INLINE Floats valuesOf(const SpanValue& value, Floats places) {
    return places * value.step + value.first;
}

QV_INLINE Floats magnitude(Floats value) {
    return larger(value, -value);
}

QV_INLINE Colors texelsAt(const std::uint8_t* texels, Ints offsets) {
#if QV_HAS_AVX2
    return Colors(_mm256_i32gather_epi32(reinterpret_cast<const int*>(texels), __m256i(offsets), 1));
#else
    Colors result{};
    for (int i = 0; i < kSpanLanes; ++i) {
        unsigned color;
        __builtin_memcpy(&color, texels + offsets[i], 4);
        result[i] = color;
    }
    return result;
#endif
}

/// Between four texels, times a factor.
QV_INLINE Floats blended(const Colors* texels, int shift, Floats u, Floats v, Floats factor) {
    const Floats upperLeft = channelOf(texels[0], shift), upperRight = channelOf(texels[1], shift);
    const Floats lowerLeft = channelOf(texels[2], shift), lowerRight = channelOf(texels[3], shift);
    const Floats upper = upperLeft + (upperRight - upperLeft) * u;
    const Floats lower = lowerLeft + (lowerRight - lowerLeft) * u;
    return (upper + (lower - upper) * v) * factor;
}

QV_INLINE void drawSprite(const SpriteSpan& span, std::uint8_t* row, TextureFormat format, int begin,
                          int end) {
    for (int x = begin; x < end; x += kSpanLanes) {
        const Floats places = floatsOf(kPlaces + (x - begin));
        const Floats across = magnitude(valuesOf(span.across, places));
        const Floats down = magnitude(valuesOf(span.down, places));
        const Floats cover =
            clamped(span.edge[0] - across, 0, span.limit[0]) * clamped(span.edge[1] - down, 0, span.limit[1]);
        const Floats u = clamped(valuesOf(span.u, places), span.uLimits[0], span.uLimits[1]);
        const Floats v = clamped(valuesOf(span.v, places), span.vLimits[0], span.vLimits[1]);
        const Ints left = intsOf(u), top = intsOf(v), offsets = top * span.rowBytes + 4 * left;
        const std::uint8_t *upper = span.texels, *lower = span.texels + span.rowBytes;
        const Colors texels[4]{texelsAt(upper, offsets), texelsAt(upper + 4, offsets),
                               texelsAt(lower, offsets), texelsAt(lower + 4, offsets)};
        const Floats right = u - floatsOf(left), below = v - floatsOf(top);
        const Floats strength = cover * (1.0f / 255);
        const Floats alpha = blended(texels, 24, right, below, strength * span.factor[3]);
        const Floats rest = 1.0f - alpha;
        Pixels pixels = loaded(row, format, x);
        pixels.red = blended(texels, 0, right, below, strength * span.factor[0]) + pixels.red * rest;
        pixels.green = blended(texels, 8, right, below, strength * span.factor[1]) + pixels.green * rest;
        pixels.blue = blended(texels, 16, right, below, strength * span.factor[2]) + pixels.blue * rest;
        pixels.alpha = alpha + pixels.alpha * rest;
        stored(pixels, kPlaces < Ints{} + (end - x), row, format, x);
    }
}

void sprite(const SpriteSpan& span, std::uint8_t* row, TextureFormat format, int begin, int end) {
    if (format == TextureFormat::rgba8)
        drawSprite(span, row, TextureFormat::rgba8, begin, end);
    else
        drawSprite(span, row, format, begin, end);
}

QV_INLINE float* valuesOf(const SampleRow& row, int sample, int channel, int x) {
    return row.values + (sample * 4 + channel) * row.stride + x;
}

QV_INLINE FloatsInMemory& floatsAt(float* place) {
    return *reinterpret_cast<FloatsInMemory*>(place);
}

void line(const LinePiece& piece, const SampleCover* covers, const SampleRow& row, int y, int begin,
          int end) {
    for (int x = begin / kSpanLanes * kSpanLanes; x < end; x += kSpanLanes) {
        const Floats places = floatsOf(kPlaces + x);
        Ints isCovered[kMostSamples], isAny{};
        for (int s = 0; s < row.samples; ++s) {
            const SampleCover& c = covers[s];
            const Floats at = places + c.offset;
            isCovered[s] = ((at >= c.begin[0]) & (at < c.end[0])) | ((at >= c.begin[1]) & (at < c.end[1]));
            isAny |= isCovered[s];
        }
        int any = 0;
        for (int i = 0; i < kSpanLanes; ++i) any |= isAny[i];
        if (!any) continue;

        std::uint8_t& isDrawn = row.isDrawn[x / kSpanLanes];
        if (!isDrawn) {
            const Pixels below = loaded(row.target, row.format, x);
            for (int s = 0; s < row.samples; ++s) {
                floatsAt(valuesOf(row, s, 0, x)) = below.red;
                floatsAt(valuesOf(row, s, 1, x)) = below.green;
                floatsAt(valuesOf(row, s, 2, x)) = below.blue;
                floatsAt(valuesOf(row, s, 3, x)) = below.alpha;
            }
            isDrawn = 1;
        }
        const Floats awayX = (places + 0.5f) * piece.pointsAPixel[0] - piece.start[0];
        const Floats awayY = Floats{} + ((float(y) + 0.5f) * piece.pointsAPixel[1] - piece.start[1]);
        const Floats along =
            clamped((awayX * piece.way[0] + awayY * piece.way[1]) * piece.oneByWaySquared, 0, 1);
        const Floats restX = awayX - along * piece.way[0], restY = awayY - along * piece.way[1];
        const Floats distance = squareRoot(restX * restX + restY * restY);
        const Floats alpha = clamped(piece.reach - distance * piece.pixelsAPoint, 0, 1) * piece.coverage;
        const Floats light = larger(1.0f - distance * piece.oneByRadius, Floats{});
        for (int s = 0; s < row.samples; ++s) {
            for (int c = 0; c < 4; ++c) {
                FloatsInMemory& value = floatsAt(valuesOf(row, s, c, x));
                const Floats here = value;
                value = isCovered[s] ? larger(here, c == 3 ? alpha : light) : here;
            }
        }
    }
}

QV_INLINE Floats meanOf(const SampleRow& row, int channel, int x) {
    Floats sum{};
    for (int s = 0; s < row.samples; ++s) sum += floatsAt(valuesOf(row, s, channel, x));
    return sum / float(row.samples);
}

void resolve(const SampleRow& row) {
    for (int group = 0; group * kSpanLanes < row.stride; ++group) {
        if (!row.isDrawn[group]) continue;
        row.isDrawn[group] = 0;
        const int x = group * kSpanLanes;
        const Pixels pixels{meanOf(row, 0, x), meanOf(row, 1, x), meanOf(row, 2, x), meanOf(row, 3, x)};
        stored(pixels, Ints{} == Ints{}, row.target, row.format, x);
    }
}

constexpr OverlaySpans kFunctions{sprite, line, resolve};

#undef QV_INLINE
