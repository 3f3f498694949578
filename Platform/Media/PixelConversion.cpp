#include "Platform/Media/PixelConversion.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "Platform/Foundation/WorkerPool.h"
#include "Platform/Media/Bitmap.h"
#include "Platform/Media/Private/PixelBlocks.h"

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

/// Lines of blended chroma with the margins that blocks read.
class ChromaLines {
  public:
    explicit ChromaLines(int count) : count_(count), u_(std::size_t(count + 2 * kMargin)), v_(u_.size()) {}

    std::uint16_t* line(int plane) { return (plane == 1 ? u_ : v_).data() + kMargin; }
    /// Beside their ends they go on as there.
    void extend() {
        for (int plane = 1; plane <= 2; ++plane) {
            std::uint16_t* const samples = line(plane);
            samples[-1] = samples[0];
            samples[count_] = samples[count_ - 1];
        }
    }

  private:
    static constexpr int kMargin = rows::kLineMargin;
    int count_;
    std::vector<std::uint16_t> u_, v_;
};

template <class Sample>
void decodeBand(const PixelBuffer& source, std::uint8_t* rgba, std::size_t rowBytes, int begin, int end) {
    const int width = source.width(), height = source.height();
    const int bits = PixelBuffer::bitDepth(source.format());
    const bool across = halvesAcross(source), down = halvesDown(source);
    const bool pairs = source.format() == PixelFormat::nv12;
    const int chromaWidth = (width + 1) / 2;
    const rows::DecodeFactors factors = rows::decodeFactors(source.color(), bits);
    const bool hasAlpha = source.format() == PixelFormat::i420Alpha;

    const auto blocks = rows::blockFunctions();
    const bool inBlocks = across && sizeof(Sample) == 1 && !blocks.empty();
    ChromaLines lines(across ? chromaWidth : 1);
    std::vector<std::int16_t> wideU(inBlocks ? 0 : std::size_t(width)), wideV(wideU.size());

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
        if (pairs) {
            rows::blendChromaPairs(rowOf<std::uint8_t>(source, 1, near), rowOf<std::uint8_t>(source, 1, far),
                                   lines.line(1), lines.line(2), chromaWidth);
        }
        for (int plane = 1; plane <= 2; ++plane) {
            std::vector<std::int16_t>& wide = plane == 1 ? wideU : wideV;
            if (across && !pairs) {
                rows::blendChromaRows(rowOf<Sample>(source, plane, near), rowOf<Sample>(source, plane, far),
                                      lines.line(plane), chromaWidth);
            }
            if (!across) {
                rows::centerChroma(rowOf<Sample>(source, plane, near), wide.data(), width);
            } else if (!inBlocks) {
                rows::widenChroma(lines.line(plane), wide.data(), width, bits);
            }
        }
        std::uint8_t* out = rgba + std::size_t(y) * rowBytes;
        if (inBlocks) {
            lines.extend();
            blocks.front().toRGBA(rowOf<std::uint8_t>(source, 0, y), lines.line(1), lines.line(2), factors,
                                  out, width);
        } else {
            rows::toRGBA(rowOf<Sample>(source, 0, y), wideU.data(), wideV.data(), factors, out, width);
        }
        if (hasAlpha) {
            rows::setAlpha(rowOf<std::uint8_t>(source, 3, y), out, width);
            premultiply(out, std::size_t(width));
        }
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

/// Where planes hold pairs of chroma, their rows are joined here.
template <class Sample>
class ChromaTarget {
  public:
    explicit ChromaTarget(const PixelBuffer& destination)
        : destination_(destination),
          pairs_(destination.format() == PixelFormat::nv12),
          count_((destination.width() + 1) / 2),
          u_(std::size_t(pairs_ ? count_ : 0)),
          v_(u_.size()) {}

    Sample* row(int plane, int y) {
        if (!pairs_) return rowOf<Sample>(destination_, plane, y);
        return (plane == 1 ? u_ : v_).data();
    }
    /// Both rows are written.
    void finish(int y) {
        if (!pairs_) return;
        Sample* both = rowOf<Sample>(destination_, 1, y);
        for (int i = 0; i < count_; ++i) {
            both[2 * i] = u_[std::size_t(i)];
            both[2 * i + 1] = v_[std::size_t(i)];
        }
    }

  private:
    const PixelBuffer& destination_;
    bool pairs_;
    int count_;
    std::vector<Sample> u_, v_;
};

void encodeBandInBlocks(const rows::BlockFunctions& blocks, const std::uint8_t* rgba, std::size_t rowBytes,
                        const PixelBuffer& destination, int begin, int end) {
    const int width = destination.width(), height = destination.height();
    const bool down = halvesDown(destination);
    const bool hasAlpha = destination.format() == PixelFormat::i420Alpha;
    const rows::EncodeFactors factors = rows::encodeFactors(destination.color(), 8);
    std::vector<std::uint8_t> straight[2];
    for (auto& row : straight) row.resize(hasAlpha ? std::size_t(width) * 4 : 0);
    ChromaTarget<std::uint8_t> chroma(destination);

    for (int y = begin; y < end; y += down ? 2 : 1) {
        const std::uint8_t* pixels[2] = {};
        std::uint8_t* luma[2] = {};
        for (int i = 0; i <= int(down); ++i) {
            // The last row of an odd height counts twice.
            const int row = std::min(y + i, height - 1);
            pixels[i] = straightRow(rgba + std::size_t(row) * rowBytes, width, hasAlpha, straight[i]);
            luma[i] = rowOf<std::uint8_t>(destination, 0, row);
            if (hasAlpha) rows::copyAlpha(pixels[i], rowOf<std::uint8_t>(destination, 3, row), width);
        }
        const int row = down ? y / 2 : y;
        blocks.fromRGBA(pixels[0], pixels[1], factors, luma[0], luma[1], chroma.row(1, row),
                        chroma.row(2, row), width);
        chroma.finish(row);
    }
}

template <class Sample>
void encodeBand(const std::uint8_t* rgba, std::size_t rowBytes, const PixelBuffer& destination, int begin,
                int end) {
    const int width = destination.width(), height = destination.height();
    const PixelFormat format = destination.format();
    const bool across = halvesAcross(destination), down = halvesDown(destination);
    const bool hasAlpha = format == PixelFormat::i420Alpha;
    const rows::EncodeFactors factors =
        rows::encodeFactors(destination.color(), PixelBuffer::bitDepth(format));
    const int log2Samples = int(across) + int(down);

    Channels first(width), second(down ? width : 0), sums(across ? (width + 1) / 2 : 0);
    std::vector<std::uint8_t> straight(hasAlpha ? std::size_t(width) * 4 : 0);
    ChromaTarget<Sample> chroma(destination);

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
        rows::toChroma(samples.red.data(), samples.green.data(), samples.blue.data(), log2Samples, factors.u,
                       chroma.row(1, row), count);
        rows::toChroma(samples.red.data(), samples.green.data(), samples.blue.data(), log2Samples, factors.v,
                       chroma.row(2, row), count);
        chroma.finish(row);
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
        const bool isDeep = PixelBuffer::bitDepth(destination.format()) > 8;
        const auto blocks = rows::blockFunctions();
        if (!isDeep && halvesAcross(destination) && !blocks.empty()) {
            encodeBandInBlocks(blocks.front(), rgba, rowBytes, destination, firstRow, endRow);
        } else if (!isDeep) {
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
