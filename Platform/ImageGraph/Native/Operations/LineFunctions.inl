// The line functions for one instruction set. The including file has chosen it (`#pragma GCC target`), told
// the size of its vectors and included what is needed: nothing that others share may be compiled here, since
// the linker could take that copy for all. Products and sums are contracted where `sumOf` says so and nowhere
// else (see CMakeLists.txt), so that every set gives the same.

constexpr int kVectorBytes = QV_VECTOR_BYTES;
constexpr int kLanes = kVectorBytes / 4;

#define QV_INLINE __attribute__((always_inline)) inline

typedef float Floats __attribute__((vector_size(kVectorBytes)));
typedef int Ints __attribute__((vector_size(kVectorBytes)));
typedef unsigned Colors __attribute__((vector_size(kVectorBytes)));
typedef Floats FloatsInMemory __attribute__((aligned(4), may_alias));
typedef Colors ColorsInMemory __attribute__((aligned(1), may_alias));
typedef unsigned ColorInMemory __attribute__((aligned(1), may_alias));

/// Channels of pixels, 0..255.
struct Pixels {
    Floats red, green, blue, alpha;
};

/// a × b + c, rounded once.
QV_INLINE Floats sumOf(Floats a, Floats b, Floats c) {
#if QV_VECTOR_BYTES == 64
    return Floats(_mm512_fmadd_ps(__m512(a), __m512(b), __m512(c)));
#elif QV_VECTOR_BYTES == 32
    return Floats(_mm256_fmadd_ps(__m256(a), __m256(b), __m256(c)));
#else
    Floats result;
    for (int i = 0; i < kLanes; ++i) result[i] = __builtin_fmaf(a[i], b[i], c[i]);
    return result;
#endif
}

QV_INLINE Floats floatsOf(Colors numbers) {
    return __builtin_convertvector(Ints(numbers), Floats);
}
QV_INLINE Floats channelOf(Colors colors, int shift) {
    return floatsOf(colors >> shift & 255u);
}
QV_INLINE Pixels pixelsOf(Colors colors) {
    return {channelOf(colors, 0), channelOf(colors, 8), channelOf(colors, 16), channelOf(colors, 24)};
}

/// Rounded to the nearest; none is less than 0 or more than 255 by a half.
QV_INLINE Colors colorsOf(const Pixels& p) {
    constexpr float kWhole = 0x1p23f;  // added to, the low bits are the number
    const Colors red = Colors(p.red + kWhole), green = Colors(p.green + kWhole),
                 blue = Colors(p.blue + kWhole), alpha = Colors(p.alpha + kWhole);
    return (red & 255u) | (green & 255u) << 8 | (blue & 255u) << 16 | alpha << 24;
}

QV_INLINE Pixels between(const Pixels& a, const Pixels& b, Floats share) {
    return {sumOf(share, b.red - a.red, a.red), sumOf(share, b.green - a.green, a.green),
            sumOf(share, b.blue - a.blue, a.blue), sumOf(share, b.alpha - a.alpha, a.alpha)};
}

QV_INLINE Pixels taken(const Pixels& p, bool lightsOnly) {
    if (!lightsOnly) return p;
    const Floats one = Floats{} + 1;
    const Floats light =
        sumOf(p.red, Floats{} + 0.2126f, sumOf(p.green, Floats{} + 0.7152f, p.blue * 0.0722f));
    const Floats part = light * light * (1.2f / (255 * 255));
    const Floats factor = part < one ? part : one;
    return {p.red * factor, p.green * factor, p.blue * factor, p.alpha};
}

QV_INLINE void add(Pixels& sum, const Pixels& p, float weight) {
    const Floats factor = Floats{} + weight;
    sum = Pixels{sumOf(p.red, factor, sum.red), sumOf(p.green, factor, sum.green),
                 sumOf(p.blue, factor, sum.blue), sumOf(p.alpha, factor, sum.alpha)};
}

/// Weights 1 3 5 … and … 5 3 1 of a group of taps; those of two groups make 1 together.
struct Ramps {
    float rising[kMostReduction], falling[kMostReduction];
};

QV_INLINE void setRamps(Ramps& ramps, int reduction) {
    const float unit = 1.0f / float(2 * reduction * reduction);
    for (int i = 0; i < reduction; ++i) {
        ramps.rising[i] = float(2 * i + 1) * unit;
        ramps.falling[i] = float(2 * (reduction - i) - 1) * unit;
    }
}

QV_INLINE Colors colorsAt(const std::uint8_t* row, int x, int width) {
    if (x >= 0 && x + kLanes <= width)
        return *reinterpret_cast<const ColorsInMemory*>(row + 4 * std::int64_t(x));
    const auto* pixels = reinterpret_cast<const ColorInMemory*>(row);
    if (x + kLanes <= 0) return Colors{} + pixels[0];
    if (x >= width - 1) return Colors{} + pixels[width - 1];
    Colors colors;
    for (int i = 0; i < kLanes; ++i) {
        const int at = x + i < 0 ? 0 : x + i;
        colors[i] = pixels[at < width ? at : width - 1];
    }
    return colors;
}

QV_INLINE Pixels takenAt(const LinesDown& lines, const LineTap& tap, int line, bool lightsOnly,
                         bool isOnGrid) {
    const int x = tap.x + line;
    // The taps below lie in other pages.
    __builtin_prefetch(tap.row + 4 * std::int64_t(x) + 4 * kVectorBytes);
    const Pixels here = pixelsOf(colorsAt(tap.row, x, lines.width));
    if (isOnGrid) return taken(here, lightsOnly);
    const Pixels next = pixelsOf(colorsAt(tap.row, x + 1, lines.width));
    return taken(between(here, next, Floats{} + tap.share), lightsOnly);
}

QV_INLINE void drawLinesDown(const LinesDown& lines, bool lightsOnly, bool isOnGrid) {
    Ramps ramps;
    setRamps(ramps, lines.reduction);
    for (int line = lines.firstLine; line < lines.endLine; line += kLanes) {
        const LineTap* tap = lines.taps;
        std::uint8_t* out = lines.out + (line - lines.firstLine) * lines.lineStride;
        Pixels before{};
        for (int group = 0; group <= lines.pixels; ++group) {
            Pixels sum = before;
            before = Pixels{};
            for (int i = 0; i < lines.reduction; ++i) {
                const Pixels pixels = takenAt(lines, *tap++, line, lightsOnly, isOnGrid);
                add(sum, pixels, ramps.falling[i]);
                add(before, pixels, ramps.rising[i]);
            }
            if (group == 0) continue;
            const Colors colors = colorsOf(sum);
            if (lines.lineStride == 4) {
                *reinterpret_cast<ColorsInMemory*>(out) = colors;
            } else {
                for (int i = 0; i < kLanes && line + i < lines.endLine; ++i)
                    *reinterpret_cast<ColorInMemory*>(out + i * lines.lineStride) = colors[i];
            }
            out += lines.pixelStride;
        }
    }
}

void down(const LinesDown& lines) {
    if (lines.lightsOnly && lines.isOnGrid) return drawLinesDown(lines, true, true);
    if (lines.lightsOnly) return drawLinesDown(lines, true, false);
    if (lines.isOnGrid) return drawLinesDown(lines, false, true);
    drawLinesDown(lines, false, false);
}

/// Each lane's, so many places on.
QV_INLINE Colors colorsApart(const std::uint32_t* from, Ints places) {
#if QV_VECTOR_BYTES == 64
    return Colors(_mm512_mask_i32gather_epi32(__m512i{}, 0xffff, __m512i(places), from, 4));
#elif QV_VECTOR_BYTES == 32
    return Colors(_mm256_i32gather_epi32(reinterpret_cast<const int*>(from), __m256i(places), 4));
#else
    Colors colors;
    for (int i = 0; i < kLanes; ++i) colors[i] = from[places[i]];
    return colors;
#endif
}

QV_INLINE void store(const Pixels& p, float* to, std::int64_t stride) {
    *reinterpret_cast<FloatsInMemory*>(to) = p.red;
    *reinterpret_cast<FloatsInMemory*>(to + stride) = p.green;
    *reinterpret_cast<FloatsInMemory*>(to + 2 * stride) = p.blue;
    *reinterpret_cast<FloatsInMemory*>(to + 3 * stride) = p.alpha;
}
QV_INLINE Floats sumAt(const float* a, const float* b) {
    return *reinterpret_cast<const FloatsInMemory*>(a) + *reinterpret_cast<const FloatsInMemory*>(b);
}

QV_INLINE void drawLineAcross(const LineAcross& line, bool lightsOnly, bool isOnGrid) {
    Ramps ramps;
    setRamps(ramps, line.reduction);
    Ints places;
    for (int i = 0; i < kLanes; ++i) places[i] = i * line.reduction;
    const std::int64_t stride = line.pixels + 2 * kLineLanes;
    float *const rising = line.sums, *const falling = line.sums + 4 * stride;
    for (int group = 0; group <= line.pixels; group += kLanes) {
        Pixels risingSum{}, fallingSum{};
        for (int i = 0; i < line.reduction; ++i) {
            const std::int64_t first = std::int64_t(group) * line.reduction + i;
            Pixels pixels = pixelsOf(colorsApart(line.upper + first, places));
            if (!isOnGrid) {
                const auto* shares = reinterpret_cast<const std::uint32_t*>(line.shares) + first;
                pixels = between(pixels, pixelsOf(colorsApart(line.lower + first, places)),
                                 Floats(colorsApart(shares, places)));
            }
            pixels = taken(pixels, lightsOnly);
            add(risingSum, pixels, ramps.rising[i]);
            add(fallingSum, pixels, ramps.falling[i]);
        }
        store(risingSum, rising + group, stride);
        store(fallingSum, falling + group, stride);
    }
    for (int x = 0; x < line.pixels; x += kLanes) {
        const float *const here = rising + x, *const next = falling + x + 1;
        *reinterpret_cast<ColorsInMemory*>(line.out + 4 * x) = colorsOf(
            {sumAt(here, next), sumAt(here + stride, next + stride),
             sumAt(here + 2 * stride, next + 2 * stride), sumAt(here + 3 * stride, next + 3 * stride)});
    }
}

void across(const LineAcross& line) {
    const bool isOnGrid = line.lower == nullptr;
    if (line.lightsOnly && isOnGrid) return drawLineAcross(line, true, true);
    if (line.lightsOnly) return drawLineAcross(line, true, false);
    if (isOnGrid) return drawLineAcross(line, false, true);
    drawLineAcross(line, false, false);
}

/// Sums of pixels, two channels to a number: red and blue, green and alpha.
struct Sums {
    Colors even, odd;
};

QV_INLINE void add(Sums& sums, const std::uint8_t* row, int x) {
    constexpr unsigned kEven = 0x00ff00ff;
    const Colors colors = *reinterpret_cast<const ColorsInMemory*>(row + 4 * x);
    sums.even += colors & kEven;
    sums.odd += colors >> 8 & kEven;
}

QV_INLINE Pixels pixelsOf(const Sums& sums) {
    return {floatsOf(sums.even & 0xffffu), floatsOf(sums.odd & 0xffffu), floatsOf(sums.even >> 16),
            floatsOf(sums.odd >> 16)};
}

void box(const RowBox& box) {
    for (int x = 0; x < box.pixels; x += kLanes) {
        Sums whole{}, outermost{};
        for (int k = 0; k < box.count; ++k) add(whole, box.rows[k], x);
        for (const std::uint8_t* row : box.outermost) add(outermost, row, x);
        Pixels sum = pixelsOf(whole), result{};
        add(sum, pixelsOf(outermost), box.weight);
        add(result, sum, box.scale);
        *reinterpret_cast<ColorsInMemory*>(box.out + 4 * x) = colorsOf(result);
    }
}

constexpr LineFunctions kFunctions{down, across, box};

#undef QV_INLINE
