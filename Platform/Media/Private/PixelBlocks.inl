// Blocks of pixels for one instruction set. The including file has chosen it (`#pragma GCC target`), told the
// size of its vectors and included what is needed: nothing that others share may be compiled here, since the
// linker could take that copy for all.
//
// Vectors of twice 128 bits or more work on each 128 bits by themselves where they pack, unpack and shuffle:
// these are called lanes here.

#define QV_INLINE __attribute__((always_inline)) inline

typedef short Words __attribute__((vector_size(QV_VECTOR_BYTES)));
typedef unsigned short Codes __attribute__((vector_size(QV_VECTOR_BYTES)));

#if QV_VECTOR_BYTES == 64
typedef __m512i Vector;
#define QV_DO(operation) _mm512_##operation
#define QV_CASTED(number) Vector(_mm512_shuffle_ps(_mm512_castsi512_ps(a), _mm512_castsi512_ps(b), number))
QV_INLINE Vector load(const void* from) {
    return _mm512_loadu_si512(from);
}
QV_INLINE void store(void* to, Vector vector) {
    _mm512_storeu_si512(to, vector);
}
QV_INLINE Vector inEachLane(__m128i lane) {
    return _mm512_broadcast_i32x4(lane);
}
/// Of vectors that hold four colours of a lane each, those of the lanes one after another.
QV_INLINE void storeLanes(std::uint8_t* to, Vector a, Vector b, Vector c, Vector d) {
    const Vector ab = _mm512_shuffle_i32x4(a, b, 0x44), cd = _mm512_shuffle_i32x4(c, d, 0x44);
    const Vector abLast = _mm512_shuffle_i32x4(a, b, 0xee), cdLast = _mm512_shuffle_i32x4(c, d, 0xee);
    store(to, _mm512_shuffle_i32x4(ab, cd, 0x88));
    store(to + 64, _mm512_shuffle_i32x4(ab, cd, 0xdd));
    store(to + 128, _mm512_shuffle_i32x4(abLast, cdLast, 0x88));
    store(to + 192, _mm512_shuffle_i32x4(abLast, cdLast, 0xdd));
}
/// The first 32 bits of each lane, then the second, …
QV_INLINE Vector byPlaceInLane(Vector vector) {
    return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15),
                                    vector);
}
/// The first halves of all lanes, and the second ones.
QV_INLINE void storeHalves(std::uint8_t* first, std::uint8_t* second, Vector vector) {
    const Vector halves = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), vector);
    _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(first), _mm512_castsi512_si256(halves));
    _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(second), _mm512_extracti64x4_epi64(halves, 1));
}
#else
typedef __m256i Vector;
#define QV_DO(operation) _mm256_##operation
#define QV_CASTED(number) Vector(_mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), number))
QV_INLINE Vector load(const void* from) {
    return _mm256_loadu_si256(static_cast<const __m256i_u*>(from));
}
QV_INLINE void store(void* to, Vector vector) {
    _mm256_storeu_si256(static_cast<__m256i_u*>(to), vector);
}
QV_INLINE Vector inEachLane(__m128i lane) {
    return _mm256_broadcastsi128_si256(lane);
}
QV_INLINE void storeLanes(std::uint8_t* to, Vector a, Vector b, Vector c, Vector d) {
    store(to, _mm256_permute2x128_si256(a, b, 0x20));
    store(to + 32, _mm256_permute2x128_si256(c, d, 0x20));
    store(to + 64, _mm256_permute2x128_si256(a, b, 0x31));
    store(to + 96, _mm256_permute2x128_si256(c, d, 0x31));
}
QV_INLINE Vector byPlaceInLane(Vector vector) {
    return _mm256_permutevar8x32_epi32(vector, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}
QV_INLINE void storeHalves(std::uint8_t* first, std::uint8_t* second, Vector vector) {
    const Vector halves = _mm256_permute4x64_epi64(vector, 0xd8);
    _mm_storeu_si128(reinterpret_cast<__m128i_u*>(first), _mm256_castsi256_si128(halves));
    _mm_storeu_si128(reinterpret_cast<__m128i_u*>(second), _mm256_extracti128_si256(halves, 1));
}
#endif

/// Pixels that are converted at once.
constexpr int kBlock = QV_VECTOR_BYTES;

/// a × b / 32768, rounded.
QV_INLINE Words product(Words a, Words b) {
    return Words(QV_DO(mulhrs_epi16)(Vector(a), Vector(b)));
}
QV_INLINE Words all(int value) {
    return Words(QV_DO(set1_epi16)(short(value)));
}

/// What 32-bit groups of two vectors' lanes hold in even places, and in odd ones.
QV_INLINE Vector evenPixels(Vector a, Vector b) {
    return QV_CASTED(0x88);
}
QV_INLINE Vector oddPixels(Vector a, Vector b) {
    return QV_CASTED(0xdd);
}

/// Factors in every 16-bit word.
struct Decoding {
    Words offset, luma, redFromV, greenFromU, greenFromV, blueFromU;
};

/// Lines of chroma at every second pixel, as PixelRows scales it: in between lie 3 parts of the near and one
/// of the far sample.
QV_INLINE Words chromaBetween(const std::uint16_t* near, const std::uint16_t* far) {
    const Words sample = Words(load(near));
    const Words sum = sample + sample + sample + Words(load(far));
    return (sum - (16 << 7)) << 3;
}

/// Of each second pixel red with green, and blue with alpha, as pairs of bytes.
QV_INLINE void colorsOf(Words luma, Words u, Words v, const Decoding& f, Vector& redGreen,
                        Vector& blueAlpha) {
    const Words y = product((luma - f.offset) << 7, f.luma) + (1 << (kRGBFraction - 1));
    const Words red = (y + product(v, f.redFromV)) >> kRGBFraction;
    const Words green = (y + product(u, f.greenFromU) + product(v, f.greenFromV)) >> kRGBFraction;
    const Words blue = (y + product(u, f.blueFromU)) >> kRGBFraction;
    const Vector paired = inEachLane(_mm_setr_epi8(0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15));
    redGreen = QV_DO(shuffle_epi8)(QV_DO(packus_epi16)(Vector(red), Vector(green)), paired);
    blueAlpha = QV_DO(shuffle_epi8)(QV_DO(packus_epi16)(Vector(blue), Vector(all(255))), paired);
}

QV_INLINE void blockToRGBA(const std::uint8_t* luma, const std::uint16_t* u, const std::uint16_t* v,
                           const Decoding& factors, std::uint8_t* rgba) {
    const Codes both = Codes(load(luma));
    Vector redGreen[2], blueAlpha[2];
    colorsOf(Words(both & 255), chromaBetween(u, u - 1), chromaBetween(v, v - 1), factors, redGreen[0],
             blueAlpha[0]);
    colorsOf(Words(both >> 8), chromaBetween(u, u + 1), chromaBetween(v, v + 1), factors, redGreen[1],
             blueAlpha[1]);
    const Vector evenLow = QV_DO(unpacklo_epi16)(redGreen[0], blueAlpha[0]);
    const Vector oddLow = QV_DO(unpacklo_epi16)(redGreen[1], blueAlpha[1]);
    const Vector evenHigh = QV_DO(unpackhi_epi16)(redGreen[0], blueAlpha[0]);
    const Vector oddHigh = QV_DO(unpackhi_epi16)(redGreen[1], blueAlpha[1]);
    storeLanes(rgba, QV_DO(unpacklo_epi32)(evenLow, oddLow), QV_DO(unpackhi_epi32)(evenLow, oddLow),
               QV_DO(unpacklo_epi32)(evenHigh, oddHigh), QV_DO(unpackhi_epi32)(evenHigh, oddHigh));
}

void toRGBA(const std::uint8_t* luma, const std::uint16_t* u, const std::uint16_t* v, const DecodeFactors& f,
            std::uint8_t* rgba, int width) {
    const Decoding factors{all(f.lumaOffset), all(f.luma),       all(f.redFromV),
                           all(f.greenFromU), all(f.greenFromV), all(f.blueFromU)};
    int x = 0;
    for (; x + kBlock <= width; x += kBlock)
        blockToRGBA(luma + x, u + x / 2, v + x / 2, factors, rgba + 4 * x);
    if (x == width) return;
    std::uint8_t lastLuma[kBlock] = {}, last[4 * kBlock];
    std::memcpy(lastLuma, luma + x, std::size_t(width - x));
    blockToRGBA(lastLuma, u + x / 2, v + x / 2, factors, last);
    std::memcpy(rgba + 4 * x, last, std::size_t(width - x) * 4);
    if (width % 2 == 0) return;
    // The last sample of an odd width belongs to one column and lies there.
    std::uint16_t sameU[kBlock / 2 + 2], sameV[kBlock / 2 + 2];
    for (std::uint16_t& sample : sameU) sample = u[width / 2];
    for (std::uint16_t& sample : sameV) sample = v[width / 2];
    lastLuma[0] = luma[width - 1];
    blockToRGBA(lastLuma, sameU + 1, sameV + 1, factors, last);
    std::memcpy(rgba + 4 * (width - 1), last, 4);
}

/// Factors of red and blue, and of green, in the words of a pixel.
struct Weights {
    Words redBlue, green;
};
QV_INLINE Words inTurns(std::int16_t low, std::int16_t high) {
    return Words(
        QV_DO(set1_epi32)(int(std::uint32_t(std::uint16_t(low)) | std::uint32_t(std::uint16_t(high)) << 16)));
}
QV_INLINE Weights weightsOf(const std::int16_t (&factors)[3]) {
    return {inTurns(factors[0], factors[2]), inTurns(factors[1], 0)};
}

/// Σ colour × weight of each pixel, as 32 bits.
QV_INLINE Vector weighted(Words redBlue, Words greenAlpha, const Weights& weights) {
    const Words sum = product(redBlue, weights.redBlue) + product(greenAlpha, weights.green);
    return QV_DO(madd_epi16)(Vector(sum), Vector(all(1)));
}

/// Pixels of one vector by colours, or sums of pixels.
struct Colors {
    Codes redBlue, greenAlpha;
};
QV_INLINE Colors colorsFrom(const std::uint8_t* rgba) {
    const Codes pixels = Codes(load(rgba));
    return {pixels & 255, pixels >> 8};
}
QV_INLINE Colors sumOf(const Colors& a, const Colors& b) {
    return {a.redBlue + b.redBlue, a.greenAlpha + b.greenAlpha};
}
/// Of each two neighbours in two vectors.
QV_INLINE Codes sumOfPairs(Codes a, Codes b) {
    return Codes(evenPixels(Vector(a), Vector(b))) + Codes(oddPixels(Vector(a), Vector(b)));
}
QV_INLINE Colors sumOfPairs(const Colors& a, const Colors& b) {
    return {sumOfPairs(a.redBlue, b.redBlue), sumOfPairs(a.greenAlpha, b.greenAlpha)};
}

QV_INLINE Vector weighted(const Colors& colors, int shift, const Weights& weights) {
    const auto bits = static_cast<unsigned short>(shift);
    return weighted(Words(colors.redBlue << bits), Words(colors.greenAlpha << bits), weights);
}

/// Sums of 32 bits as samples of 16.
QV_INLINE Vector samplesOf(Vector a, Vector b, int start, int fraction) {
    return Vector((Words(QV_DO(packs_epi32)(a, b)) + short(start)) >> fraction);
}

QV_INLINE void storeLuma(std::uint8_t* to, const Colors (&colors)[4], const Weights& weights, int start) {
    Vector sums[4];
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) sums[i] = weighted(colors[i], 7, weights);
    const Vector low = samplesOf(sums[0], sums[1], start, kLumaFraction);
    const Vector high = samplesOf(sums[2], sums[3], start, kLumaFraction);
    store(to, byPlaceInLane(QV_DO(packus_epi16)(low, high)));
}

struct Encoding {
    Weights luma, u, v;
    int lumaStart;
};

/// Sums of the same chroma at every second pixel of four vectors, in order.
QV_INLINE Vector chromaOf(const Colors (&pairs)[2], int shift, const Weights& weights) {
    constexpr int kStart = (128 << kChromaFraction) + (1 << (kChromaFraction - 1));
    return byPlaceInLane(samplesOf(weighted(pairs[0], shift, weights), weighted(pairs[1], shift, weights),
                                   kStart, kChromaFraction));
}

QV_INLINE void blockFromRGBA(const std::uint8_t* upper, const std::uint8_t* lower, const Encoding& e,
                             std::uint8_t* upperLuma, std::uint8_t* lowerLuma, std::uint8_t* u,
                             std::uint8_t* v) {
    Colors colors[4];
#pragma GCC unroll 4
    for (int i = 0; i < 4; ++i) colors[i] = colorsFrom(upper + i * kBlock);
    storeLuma(upperLuma, colors, e.luma, e.lumaStart);
    if (lower) {
        Colors below[4];
#pragma GCC unroll 4
        for (int i = 0; i < 4; ++i) below[i] = colorsFrom(lower + i * kBlock);
        storeLuma(lowerLuma, below, e.luma, e.lumaStart);
#pragma GCC unroll 4
        for (int i = 0; i < 4; ++i) colors[i] = sumOf(colors[i], below[i]);
    }
    const Colors pairs[2] = {sumOfPairs(colors[0], colors[1]), sumOfPairs(colors[2], colors[3])};
    const int shift = lower ? 5 : 6;
    storeHalves(u, v, QV_DO(packus_epi16)(chromaOf(pairs, shift, e.u), chromaOf(pairs, shift, e.v)));
}

void fromRGBA(const std::uint8_t* upper, const std::uint8_t* lower, const EncodeFactors& f,
              std::uint8_t* upperLuma, std::uint8_t* lowerLuma, std::uint8_t* u, std::uint8_t* v, int width) {
    const Encoding encoding{weightsOf(f.luma), weightsOf(f.u), weightsOf(f.v),
                            (f.lumaOffset << kLumaFraction) + (1 << (kLumaFraction - 1))};
    int x = 0;
    for (; x + kBlock <= width; x += kBlock) {
        blockFromRGBA(upper + 4 * x, lower ? lower + 4 * x : nullptr, encoding, upperLuma + x,
                      lower ? lowerLuma + x : nullptr, u + x / 2, v + x / 2);
    }
    if (x == width) return;
    const auto count = std::size_t(width - x);
    // The last pixel of an odd width counts twice.
    std::uint8_t pixels[2][4 * kBlock + 4] = {}, luma[2][kBlock], chroma[2][kBlock / 2];
    std::memcpy(pixels[0], upper + 4 * x, count * 4);
    std::memcpy(pixels[0] + count * 4, upper + 4 * (width - 1), 4);
    if (lower) {
        std::memcpy(pixels[1], lower + 4 * x, count * 4);
        std::memcpy(pixels[1] + count * 4, lower + 4 * (width - 1), 4);
    }
    blockFromRGBA(pixels[0], lower ? pixels[1] : nullptr, encoding, luma[0], luma[1], chroma[0], chroma[1]);
    std::memcpy(upperLuma + x, luma[0], count);
    if (lower) std::memcpy(lowerLuma + x, luma[1], count);
    std::memcpy(u + x / 2, chroma[0], (count + 1) / 2);
    std::memcpy(v + x / 2, chroma[1], (count + 1) / 2);
}

constexpr BlockFunctions kFunctions{toRGBA, fromRGBA};

#undef QV_CASTED
#undef QV_DO
#undef QV_INLINE
