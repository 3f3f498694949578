#include "Platform/Media/PixelConversion.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "Platform/Foundation/WorkerPool.h"
#include "Platform/Media/Bitmap.h"
#include "Platform/Media/Private/PixelRows.h"

namespace qv {
namespace {

template <class Sample>
Sample* rowOf(const PixelBuffer& buffer, int plane, int y) {
    const PixelBuffer::Plane& p = buffer.plane(plane);
    return reinterpret_cast<Sample*>(p.data + std::size_t(y) * p.rowBytes);
}

bool halvesAcross(const PixelBuffer& buffer) {
    return PixelBuffer::planeLayout(buffer.format(), 1, 2, 2).width == 1;
}

bool halvesDown(const PixelBuffer& buffer) {
    return PixelBuffer::planeLayout(buffer.format(), 1, 2, 2).height == 1;
}

/// The chroma rows around a row of luma, taken apart where they are stored in pairs.
template <class Sample>
struct ChromaRows {
    ChromaRows(const PixelBuffer& source)
        : source(source),
          pairs(source.format() == PixelFormat::nv12),
          split(pairs ? std::size_t(source.width() + 1) / 2 * 2 : 0) {}

    const Sample* row(int plane, int y) {
        if (!pairs) return rowOf<Sample>(source, plane, y);
        const Sample* both = rowOf<Sample>(source, 1, y) + (plane - 1);
        const int count = (source.width() + 1) / 2;
        // The near row's half and the far row's half: neighbouring rows differ in parity.
        Sample* out = split.data() + (y & 1) * (split.size() / 2);
        for (int i = 0; i < count; ++i) out[i] = both[2 * i];
        return out;
    }

    const PixelBuffer& source;
    bool pairs;
    std::vector<Sample> split;
};

template <class Sample>
void decodeBand(const PixelBuffer& source, std::uint8_t* rgba, std::size_t rowBytes, int begin, int end) {
    const int width = source.width(), height = source.height();
    const int bits = PixelBuffer::bitDepth(source.format());
    const bool across = halvesAcross(source), down = halvesDown(source);
    const int chromaWidth = (width + 1) / 2;
    const rows::DecodeFactors factors = rows::decodeFactors(source.color(), bits);
    const bool hasAlpha = source.format() == PixelFormat::i420Alpha;

    std::vector<std::uint16_t> line(static_cast<std::size_t>(chromaWidth));
    std::vector<std::int16_t> wideU(static_cast<std::size_t>(width)), wideV(wideU.size());
    const std::vector<std::uint8_t> opaque(wideU.size(), 255);
    ChromaRows<Sample> chroma(source);

    for (int y = begin; y < end; ++y) {
        int near = y, far = y;
        if (down) {
            near = far = y / 2;
            // The last sample of an odd height belongs to one row and lies there.
            if (y & 1)
                far = std::min(near + 1, (height - 1) / 2);
            else if (y > 0 && y + 1 < height)
                far = near - 1;
        }
        for (int plane = 1; plane <= 2; ++plane) {
            std::vector<std::int16_t>& wide = plane == 1 ? wideU : wideV;
            if (across) {
                const Sample* nearRow = chroma.row(plane, near);
                const Sample* farRow = far == near ? nearRow : chroma.row(plane, far);
                rows::blendChromaRows(nearRow, farRow, line.data(), chromaWidth);
                rows::widenChroma(line.data(), wide.data(), width, bits);
            } else {
                rows::centerChroma(chroma.row(plane, near), wide.data(), width);
            }
        }
        std::uint8_t* out = rgba + std::size_t(y) * rowBytes;
        const std::uint8_t* alpha = hasAlpha ? rowOf<std::uint8_t>(source, 3, y) : opaque.data();
        rows::toRGBA(rowOf<Sample>(source, 0, y), wideU.data(), wideV.data(), alpha, factors, out, width);
        if (hasAlpha) premultiply(out, std::size_t(width));
    }
}

/// One line per channel and the same summed over what a chroma sample covers.
struct Channels {
    explicit Channels(int width)
        : red(static_cast<std::size_t>(width)), green(red.size()), blue(red.size()) {}

    void split(const std::uint8_t* rgba) {
        rows::splitRGBA(rgba, red.data(), green.data(), blue.data(), int(red.size()));
    }

    std::vector<std::int16_t> red, green, blue;
};

/// Straight alpha for the formats that store it; otherwise the row itself.
const std::uint8_t* straightRow(const std::uint8_t* rgba, int width, bool straight,
                                std::vector<std::uint8_t>& scratch) {
    if (!straight || rows::isOpaque(rgba, width)) return rgba;
    std::memcpy(scratch.data(), rgba, scratch.size());
    unpremultiply(scratch.data(), std::size_t(width));
    return scratch.data();
}

template <class Sample>
void encodeBand(const std::uint8_t* rgba, std::size_t rowBytes, const PixelBuffer& destination, int begin,
                int end) {
    const int width = destination.width(), height = destination.height();
    const PixelFormat format = destination.format();
    const bool across = halvesAcross(destination), down = halvesDown(destination);
    const bool hasAlpha = format == PixelFormat::i420Alpha, pairs = format == PixelFormat::nv12;
    const rows::EncodeFactors factors =
        rows::encodeFactors(destination.color(), PixelBuffer::bitDepth(format));
    const int log2Samples = int(across) + int(down);

    Channels first(width), second(down ? width : 0), sums(across ? (width + 1) / 2 : 0);
    std::vector<std::uint8_t> straight(hasAlpha ? std::size_t(width) * 4 : 0);
    std::vector<Sample> pairedU(pairs ? sums.red.size() : 0), pairedV(pairedU.size());

    const auto readRow = [&](int y, Channels& channels) {
        const std::uint8_t* row = straightRow(rgba + std::size_t(y) * rowBytes, width, hasAlpha, straight);
        channels.split(row);
        rows::toLuma(channels.red.data(), channels.green.data(), channels.blue.data(), factors,
                     rowOf<Sample>(destination, 0, y), width);
        if (hasAlpha) rows::copyAlpha(row, rowOf<std::uint8_t>(destination, 3, y), width);
    };

    for (int y = begin; y < end; y += down ? 2 : 1) {
        readRow(y, first);
        if (down) {
            const bool last = y + 1 == height;
            if (!last) readRow(y + 1, second);
            const Channels& below = last ? first : second;
            rows::addRow(first.red.data(), below.red.data(), width);
            rows::addRow(first.green.data(), below.green.data(), width);
            rows::addRow(first.blue.data(), below.blue.data(), width);
        }
        if (across) {
            rows::addPairs(first.red.data(), sums.red.data(), width);
            rows::addPairs(first.green.data(), sums.green.data(), width);
            rows::addPairs(first.blue.data(), sums.blue.data(), width);
        }
        const Channels& samples = across ? sums : first;
        const int count = int(samples.red.size()), row = down ? y / 2 : y;
        Sample* u = pairs ? pairedU.data() : rowOf<Sample>(destination, 1, row);
        Sample* v = pairs ? pairedV.data() : rowOf<Sample>(destination, 2, row);
        rows::toChroma(samples.red.data(), samples.green.data(), samples.blue.data(), log2Samples, factors.u,
                       u, count);
        rows::toChroma(samples.red.data(), samples.green.data(), samples.blue.data(), log2Samples, factors.v,
                       v, count);
        if (pairs) {
            Sample* both = rowOf<Sample>(destination, 1, row);
            for (int i = 0; i < count; ++i) both[2 * i] = u[i], both[2 * i + 1] = v[i];
        }
    }
}

}  // namespace

bool convertRowsToRGBA8(const PixelBuffer& source, std::uint8_t* rgba, std::size_t rowBytes, int firstRow,
                        int endRow) {
    if (!source || !rgba || rowBytes < std::size_t(source.width()) * 4) return false;
    if (PixelBuffer::isYUV(source.format())) {
        if (PixelBuffer::bitDepth(source.format()) == 8) {
            decodeBand<std::uint8_t>(source, rgba, rowBytes, firstRow, endRow);
        } else {
            decodeBand<std::uint16_t>(source, rgba, rowBytes, firstRow, endRow);
        }
        return true;
    }
    const int width = source.width();
    for (int y = firstRow; y < endRow; ++y) {
        std::uint8_t* out = rgba + std::size_t(y) * rowBytes;
        const auto* in = rowOf<std::uint8_t>(source, 0, y);
        if (source.format() == PixelFormat::gray8) {
            rows::grayToRGBA(in, out, width);
        } else {
            std::memcpy(out, in, std::size_t(width) * 4);
            if (!rows::isOpaque(out, width)) premultiply(out, std::size_t(width));
        }
    }
    return true;
}

bool convertRowsFromRGBA8(const std::uint8_t* rgba, std::size_t rowBytes, const PixelBuffer& destination,
                          int firstRow, int endRow) {
    if (!destination || !rgba || rowBytes < std::size_t(destination.width()) * 4) return false;
    if (PixelBuffer::isYUV(destination.format())) {
        if (PixelBuffer::bitDepth(destination.format()) == 8) {
            encodeBand<std::uint8_t>(rgba, rowBytes, destination, firstRow, endRow);
        } else {
            encodeBand<std::uint16_t>(rgba, rowBytes, destination, firstRow, endRow);
        }
        return true;
    }
    const int width = destination.width();
    const bool gray = destination.format() == PixelFormat::gray8;
    const rows::EncodeFactors factors = rows::encodeFactors({destination.color().matrix, true}, 8);
    Channels channels(gray ? width : 0);
    for (int y = firstRow; y < endRow; ++y) {
        const std::uint8_t* in = rgba + std::size_t(y) * rowBytes;
        auto* out = rowOf<std::uint8_t>(destination, 0, y);
        if (gray) {
            channels.split(in);
            rows::toLuma(channels.red.data(), channels.green.data(), channels.blue.data(), factors, out,
                         width);
        } else {
            std::memcpy(out, in, std::size_t(width) * 4);
            if (!rows::isOpaque(out, width)) unpremultiply(out, std::size_t(width));
        }
    }
    return true;
}

bool convertToRGBA8(const PixelBuffer& source, std::uint8_t* rgba, std::size_t rowBytes) {
    if (!source || !rgba || rowBytes < std::size_t(source.width()) * 4) return false;
    runOverRows(source.height(), rowBytes,
                [&](int begin, int end) { convertRowsToRGBA8(source, rgba, rowBytes, begin, end); });
    return true;
}

bool convertFromRGBA8(const std::uint8_t* rgba, std::size_t rowBytes, const PixelBuffer& destination) {
    if (!destination || !rgba || rowBytes < std::size_t(destination.width()) * 4) return false;
    runOverRows(destination.height(), rowBytes,
                [&](int begin, int end) { convertRowsFromRGBA8(rgba, rowBytes, destination, begin, end); });
    return true;
}

}  // namespace qv
