// The row functions for one instruction set. The including file has chosen it (`#pragma GCC target`), told
// the size of its vectors and included what is needed: nothing that others share may be compiled here, since
// the linker could take that copy for all. Templates are compiled where they are used, so there are none.
// Everything is an integer, so the width of vectors changes no result.

constexpr int kVectorBytes = QV_VECTOR_BYTES;
constexpr int kLanes = kVectorBytes / 2, kVectors = kRowGroup / kLanes;

#define QV_INLINE __attribute__((always_inline)) inline

typedef short Words __attribute__((vector_size(kVectorBytes)));
typedef unsigned short Products __attribute__((vector_size(kVectorBytes)));
typedef unsigned char Bytes __attribute__((vector_size(kVectorBytes / 2)));
typedef unsigned Colors __attribute__((vector_size(kVectorBytes)));
typedef long long Pixels __attribute__((vector_size(kVectorBytes)));
typedef short TwoPixels __attribute__((vector_size(16)));
typedef unsigned short TwoProducts __attribute__((vector_size(16)));
typedef unsigned SixteenColors __attribute__((vector_size(64)));
typedef unsigned char SixteenBytes __attribute__((vector_size(16)));

/// What lies anywhere in memory.
#define QV_IN_MEMORY(Vector) typedef Vector Vector##InMemory __attribute__((aligned(1), may_alias))
QV_IN_MEMORY(Words);
QV_IN_MEMORY(Bytes);
QV_IN_MEMORY(Colors);
QV_IN_MEMORY(TwoPixels);
QV_IN_MEMORY(SixteenColors);
QV_IN_MEMORY(SixteenBytes);
#undef QV_IN_MEMORY
#define QV_AT(Vector, place) (*reinterpret_cast<Vector##InMemory*>(place))
#define QV_FROM(Vector, place) (*reinterpret_cast<const Vector##InMemory*>(place))

// What stands behind a row's end may be anything, so sums and differences wrap.
QV_INLINE Words sum(Words a, Words b) {
    return Words(Products(a) + Products(b));
}
QV_INLINE Words difference(Words a, Words b) {
    return Words(Products(a) - Products(b));
}

/// a × b / 32768, rounded.
#if QV_VECTOR_BYTES == 64
QV_INLINE Words scaled(Words a, Words b) {
    return Words(_mm512_mulhrs_epi16(__m512i(a), __m512i(b)));
}
#elif QV_VECTOR_BYTES == 32
QV_INLINE Words scaled(Words a, Words b) {
    return Words(_mm256_mulhrs_epi16(__m256i(a), __m256i(b)));
}
#else
QV_INLINE Words scaled(Words a, Words b) {
    Words result;
    for (int i = 0; i < kLanes; ++i) result[i] = short((((a[i] * b[i]) >> 14) + 1) >> 1);
    return result;
}
#endif
#if QV_VECTOR_BYTES > 16
QV_INLINE TwoPixels scaled(TwoPixels a, TwoPixels b) {
    return TwoPixels(_mm_mulhrs_epi16(__m128i(a), __m128i(b)));
}
#endif

/// The mean, rounded up; both are words.
QV_INLINE Words mean(Words a, Words b) {
    return sum(sum(a, b), Words{} + 1) >> 1;
}

QV_INLINE Bytes bytesOf(Words words) {
    const Words zero{}, top = zero + 255, rounded = sum(words, zero + 32) >> 6;
    const Words low = rounded < zero ? zero : rounded;
    return __builtin_convertvector(low > top ? top : low, Bytes);
}

/// Of values `at` the place in two rows.
QV_INLINE Words sumOfTwo(const void* a, const void* b, int at, bool areBytes) {
    if (!areBytes) {
        return sum(QV_FROM(Words, static_cast<const std::int16_t*>(a) + at),
                   QV_FROM(Words, static_cast<const std::int16_t*>(b) + at));
    }
    return (__builtin_convertvector(QV_FROM(Bytes, static_cast<const std::uint8_t*>(a) + at), Words) +
            __builtin_convertvector(QV_FROM(Bytes, static_cast<const std::uint8_t*>(b) + at), Words))
           << 6;
}

QV_INLINE void sumPairs(const void* const* upper, const void* const* lower, bool areBytes,
                        const std::int16_t* weights, int pairs, int values, std::int16_t* out) {
    for (int first = 0; first < values; first += kRowGroup) {
        Words sums[kVectors] = {};
        for (int k = 0; k < pairs; ++k) {
            const Words weight = Words{} + weights[k];
#pragma GCC unroll 8
            for (int i = 0; i < kVectors; ++i)
                sums[i] =
                    sum(sums[i], scaled(sumOfTwo(upper[k], lower[k], first + i * kLanes, areBytes), weight));
        }
#pragma GCC unroll 8
        for (int i = 0; i < kVectors; ++i) QV_AT(Words, out + first + i * kLanes) = sums[i];
    }
}

void sumOfPairs(const void* const* upper, const void* const* lower, const std::int16_t* weights, int pairs,
                int values, std::int16_t* out) {
    sumPairs(upper, lower, false, weights, pairs, values, out);
}
void sumOfBytePairs(const void* const* upper, const void* const* lower, const std::int16_t* weights,
                    int pairs, int values, std::int16_t* out) {
    sumPairs(upper, lower, true, weights, pairs, values, out);
}

QV_INLINE Words between(Words from, Words to, std::int16_t weight) {
    return sum(from, scaled(difference(to, from), Words{} + weight));
}

void mixed(const std::int16_t* a, const std::int16_t* b, std::int16_t weight, int values, std::int16_t* out) {
    for (int i = 0; i < values; i += kLanes) {
        QV_AT(Words, out + i) = between(QV_FROM(Words, a + i), QV_FROM(Words, b + i), weight);
    }
}
void mixedBytes(const std::uint8_t* a, const std::uint8_t* b, std::int16_t weight, int values,
                std::int16_t* out) {
    for (int i = 0; i < values; i += kLanes) {
        const Words from = __builtin_convertvector(QV_FROM(Bytes, a + i), Words) << 6;
        const Words to = __builtin_convertvector(QV_FROM(Bytes, b + i), Words) << 6;
        QV_AT(Words, out + i) = between(from, to, weight);
    }
}

/// The first ones of `a` and `b`'s pairs of pixels, or the second ones.
QV_INLINE Words everyOther(Words a, Words b, int second) {
#if QV_VECTOR_BYTES == 64
    const Pixels places = Pixels{0, 2, 4, 6, 8, 10, 12, 14} + second;
#elif QV_VECTOR_BYTES == 32
    const Pixels places = Pixels{0, 2, 4, 6} + second;
#else
    const Pixels places = Pixels{0, 2} + second;
#endif
    return Words(__builtin_shuffle(Pixels(a), Pixels(b), places));
}

void joined(const std::int16_t* means, const std::int16_t* ramps, int pixels, std::int16_t* meansOut,
            std::int16_t* rampsOut) {
    for (int i = 0; i < pixels * 4; i += kLanes) {
        const Words m0 = QV_FROM(Words, means + 2 * i), m1 = QV_FROM(Words, means + 2 * i + kLanes);
        const Words r0 = QV_FROM(Words, ramps + 2 * i), r1 = QV_FROM(Words, ramps + 2 * i + kLanes);
        const Words left = everyOther(m0, m1, 0), right = everyOther(m0, m1, 1);
        QV_AT(Words, meansOut + i) = mean(left, right);
        QV_AT(Words, rampsOut + i) = mean(mean(everyOther(r0, r1, 0), everyOther(r0, r1, 1)), right);
    }
}

void tents(const std::int16_t* means, const std::int16_t* ramps, int values, std::int16_t* out) {
    for (int i = 0; i < values; i += kLanes) {
        const Words before = QV_FROM(Words, ramps + i), here = QV_FROM(Words, ramps + i + 4);
        QV_AT(Words, out + i) = sum(QV_FROM(Words, means + i + 4), difference(before, here) >> 1);
    }
}

/// Two pixels of a row, which lie between others.
QV_INLINE TwoPixels twoBetween(const std::int16_t* row, const std::int32_t* left,
                               const std::int16_t* weights) {
    const TwoPixels first = scaled(QV_FROM(TwoPixels, row + 4 * left[0]), QV_FROM(TwoPixels, weights));
    const TwoPixels second = scaled(QV_FROM(TwoPixels, row + 4 * left[1]), QV_FROM(TwoPixels, weights + 8));
    return TwoPixels(TwoProducts(__builtin_shuffle(first, second, TwoPixels{0, 1, 2, 3, 8, 9, 10, 11})) +
                     TwoProducts(__builtin_shuffle(first, second, TwoPixels{4, 5, 6, 7, 12, 13, 14, 15})));
}

/// Side by side.
QV_INLINE Words wordsOf(const TwoPixels* parts) {
#if QV_VECTOR_BYTES == 64
    return Words(_mm512_maskz_inserti64x4(
        0xff, _mm512_castsi256_si512(_mm256_set_m128i(__m128i(parts[1]), __m128i(parts[0]))),
        _mm256_set_m128i(__m128i(parts[3]), __m128i(parts[2])), 1));
#elif QV_VECTOR_BYTES == 32
    return Words(_mm256_set_m128i(__m128i(parts[1]), __m128i(parts[0])));
#else
    return parts[0];
#endif
}

void between(const std::int16_t* row, const std::int32_t* left, const std::int16_t* weights, int pixels,
             std::uint8_t* out) {
    for (int x = 0; x < pixels; x += kLanes / 4) {
        TwoPixels parts[kLanes / 8];
#pragma GCC unroll 4
        for (int i = 0; i < kLanes / 8; ++i)
            parts[i] = twoBetween(row, left + x + 2 * i, weights + 8 * (x + 2 * i));
        QV_AT(Bytes, out + 4 * x) = bytesOf(wordsOf(parts));
    }
}

void bytes(const std::int16_t* row, int values, std::uint8_t* out) {
    for (int i = 0; i < values; i += kLanes) QV_AT(Bytes, out + i) = bytesOf(QV_FROM(Words, row + i));
}

void opaque(const std::uint8_t* in, int pixels, std::uint8_t* out) {
    for (int i = 0; i < pixels * 4; i += kVectorBytes)
        QV_AT(Colors, out + i) = QV_FROM(Colors, in + i) | 0xff000000u;
}

void premultiplied(const std::uint8_t* in, int pixels, std::uint8_t* out) {
    for (int i = 0; i < pixels * 4; i += kLanes) {
        const Products color = __builtin_convertvector(QV_FROM(Bytes, in + i), Products);
        // Each pixel's alpha as the factor of its colours, and 255 as its own.
        Pixels alpha = Pixels(color) >> 48 & 0xffff;
        alpha |= alpha << 16 | alpha << 32 | 255ll << 48;
        const Products sum = color * Products(alpha) + 128;
        QV_AT(Bytes, out + i) = __builtin_convertvector((sum + (sum >> 8)) >> 8, Bytes);
    }
}

void alphas(const std::uint8_t* in, int pixels, std::uint8_t* out) {
    for (int x = 0; x < pixels; x += 16)
        QV_AT(SixteenBytes, out + x) =
            __builtin_convertvector(QV_FROM(SixteenColors, in + 4 * x) >> 24, SixteenBytes);
}

constexpr RowFunctions kFunctions{sumOfPairs, sumOfBytePairs, mixed,  mixedBytes,    joined, tents,
                                  between,    bytes,          opaque, premultiplied, alphas};

#undef QV_FROM
#undef QV_AT
#undef QV_INLINE
