#include "QVALObjectContour/Private/LevelLines.h"

namespace qv {

namespace {

/// Sides of a square of four samples, each followed by the one that lies a turn to the right of whoever comes
/// in through it.
enum Side { left, bottom, right, top };

/// Follows lines through the squares between the samples. Square (x, y) has sample (x, y) at its bottom
/// right.
class LineWalker {
  public:
    LineWalker(const HeightField& field, float level)
        : field_(field), level_(level), seen_(std::size_t(field.width) * std::size_t(field.height)) {}

    /// Whether an upward line that was not followed yet passes left of the sample.
    bool beginsAt(int x, int y) const { return isHigh(x, y) && !isHigh(x - 1, y) && !seen_[indexOf(x, y)]; }

    QVOutline follow(int x, int y) {
        QVOutline line;
        const int startX = x, startY = y;
        Side entry = bottom;
        do {
            const Side exit = wayOut(x, y, entry);
            line.push_back(crossing(x, y, exit));
            switch (exit) {
                case top:
                    seen_[indexOf(x, --y)] = true;
                    entry = bottom;
                    break;
                case bottom:
                    ++y;
                    entry = top;
                    break;
                case left:
                    --x;
                    entry = right;
                    break;
                case right:
                    ++x;
                    entry = left;
                    break;
            }
        } while (x != startX || y != startY || entry != bottom);
        return line;
    }

  private:
    std::size_t indexOf(int x, int y) const {
        return std::size_t(y) * std::size_t(field_.width) + std::size_t(x);
    }
    bool isHigh(int x, int y) const { return float(field_.at(x, y)) >= level_; }

    /// The side through which the line leaves the square. Of the two of a saddle it takes the one to the
    /// right.
    Side wayOut(int x, int y, Side entry) const {
        const bool a = isHigh(x - 1, y - 1), b = isHigh(x, y - 1), c = isHigh(x, y), d = isHigh(x - 1, y);
        const bool leads[] = {a && !d, d && !c, c && !b, b && !a};  // by Side: high on the right of the way
        for (int turn = 1; turn < 4; ++turn) {
            const Side side = Side((entry + turn) % 4);
            if (leads[side]) return side;
        }
        return entry;  // not reached: a line that comes in also goes out
    }

    /// Where the line meets a side of the square.
    CGPoint crossing(int x, int y, Side side) const {
        const auto between = [&](int x0, int y0, int x1, int y1) -> CGPoint {
            const float low = field_.at(x0, y0), high = field_.at(x1, y1);
            const double t = (level_ - low) / (high - low);
            return {x0 + t * (x1 - x0) - 0.5, y0 + t * (y1 - y0) - 0.5};
        };
        switch (side) {
            case left:
                return between(x - 1, y - 1, x - 1, y);
            case bottom:
                return between(x - 1, y, x, y);
            case right:
                return between(x, y - 1, x, y);
            default:
                return between(x - 1, y - 1, x, y - 1);
        }
    }

    HeightField field_;
    float level_;
    std::vector<bool> seen_;
};

}  // namespace

QVOutlineSet levelLines(const HeightField& field, float level) {
    QVOutlineSet lines;
    LineWalker walker(field, level);
    for (int y = 1; y + 1 < field.height; ++y) {
        for (int x = 1; x + 1 < field.width; ++x) {
            if (walker.beginsAt(x, y)) lines.push_back(walker.follow(x, y));
        }
    }
    return lines;
}

}  // namespace qv
