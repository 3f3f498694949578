#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

#include "Platform/ImageGraph/Native/Overlays/NativePictures.h"
#include "Platform/ImageGraph/Native/Overlays/OverlayLayer.h"
#include "Platform/ImageGraph/Private/OverlayInstances.h"

namespace qv {

namespace {

/// A value that is linear in a place.
struct Linear {
    double x, y, constant;

    double at(double px, double py) const { return x * px + y * py + constant; }
    Linear operator*(double k) const { return {x * k, y * k, constant * k}; }
    Linear operator+(const Linear& other) const {
        return {x + other.x, y + other.y, constant + other.constant};
    }
    Linear plus(double k) const { return {x, y, constant + k}; }
};

/// A sprite as it is rasterised: the part of each row that its octagon holds, and what is linear there.
class Sprite {
  public:
    Sprite(const SpriteInstanceData& v, const NativeImage& page, const OverlayTarget& target) {
        // From the sprite's own axes, half a side each, to pixels of the target.
        const double w = target.width * 0.5, h = target.height * 0.5;
        const double ax = v.axisX[0] * w, ay = v.axisX[1] * h, bx = v.axisY[0] * w, by = v.axisY[1] * h;
        const double cx = (double(v.center[0]) + 1) * w, cy = (double(v.center[1]) + 1) * h;
        const double area = ax * by - ay * bx;
        if (!(std::abs(area) > 1e-9)) return;
        const Linear across{by / area, -bx / area, (bx * cy - by * cx) / area};
        const Linear down{-ay / area, ax / area, (ay * cx - ax * cy) / area};
        // Rows that the corners of the box around the octagon reach.
        double low = cy, high = cy;
        for (int corner = 0; corner < 4; ++corner) {
            const double lx = corner & 1 ? v.sides[1] : -v.sides[0],
                         ly = corner & 2 ? v.sides[3] : -v.sides[2];
            low = std::min(low, cy + lx * ay + ly * by);
            high = std::max(high, cy + lx * ay + ly * by);
        }
        firstRow_ = int(std::clamp(std::floor(low), 0.0, double(target.height)));
        endRow_ = int(std::clamp(std::ceil(high), 0.0, double(target.height)));

        // The octagon: what is not negative inside.
        addBound(across.plus(v.sides[0]));
        addBound((across * -1).plus(v.sides[1]));
        addBound(down.plus(v.sides[2]));
        addBound((down * -1).plus(v.sides[3]));
        addBound((across + down).plus(v.corners[0]));
        addBound((across * -1 + down).plus(v.corners[1]));
        addBound((across + down * -1).plus(v.corners[2]));
        addBound((across * -1 + down * -1).plus(v.corners[3]));

        span_.texels = page.pixels;
        span_.rowBytes = std::int32_t(page.rowBytes);
        across_ = across * v.halfSides[0];
        down_ = down * v.halfSides[1];
        u_ = ((across * 0.5).plus(0.5) * v.place[2]).plus(v.place[0]) * page.width;
        v_ = ((down * -0.5).plus(0.5) * v.place[3]).plus(v.place[1]) * page.height;
        for (int i = 0; i < 2; ++i) {
            // The outermost half texel would be mixed with what surrounds the picture on its page.
            const float inset = std::min(v.halfTexel[i], 0.5f * v.place[2 + i]);
            const float side = float(i == 0 ? page.width : page.height);
            float* limits = i == 0 ? span_.uLimits : span_.vLimits;
            limits[0] = std::clamp((v.place[i] + inset) * side - 0.5f, 0.0f, side - 1);
            limits[1] = std::clamp((v.place[i] + v.place[2 + i] - inset) * side - 0.5f, 0.0f, side - 1);
            span_.edge[i] = v.halfSides[i] + 0.5f;
            span_.limit[i] = std::min(2 * v.halfSides[i], 1.0f);
        }
        std::ranges::copy(v.factor, span_.factor);
    }

    int firstRow() const { return firstRow_; }
    int endRow() const { return endRow_; }

    void draw(const NativeImage& target, int y, TextureFormat format, const OverlaySpans& spans) const {
        double low = 0, high = target.width;
        for (int i = 0; i < lefts_; ++i) low = std::max(low, borders_[std::size_t(i)].at(y));
        for (int i = 0; i < rights_; ++i)
            high = std::min(high, borders_[borders_.size() - 1 - std::size_t(i)].at(y));
        if (!(low < high)) return;
        const int begin = int(std::ceil(low)), end = int(std::ceil(high));
        if (begin == end) return;
        const auto valueOf = [&](const Linear& value) {
            return SpanValue{float(value.at(begin + 0.5, y + 0.5)), float(value.x)};
        };
        SpriteSpan span = span_;
        span.across = valueOf(across_);
        span.down = valueOf(down_);
        span.u = valueOf(u_.plus(-0.5));
        span.v = valueOf(v_.plus(-0.5));
        spans.sprite(span, target.pixels + y * target.rowBytes, format, begin, end);
    }

  private:
    /// Where a side of the octagon crosses the rows' middles, by the row: the first pixel behind it.
    struct Border {
        double slope, constant;
        double at(int y) const { return y * slope + constant; }
    };

    void addBound(const Linear& bound) {
        if (bound.x != 0) {
            const Border border{-bound.y / bound.x, -bound.at(0.5, 0.5) / bound.x};
            borders_[bound.x > 0 ? std::size_t(lefts_++) : borders_.size() - 1 - std::size_t(rights_++)] =
                border;
            return;
        }
        const double row = std::clamp(-bound.at(0, 0.5) / bound.y, 0.0, double(endRow_));
        if (bound.y > 0)
            firstRow_ = std::max(firstRow_, int(std::ceil(row)));
        else
            endRow_ = std::min(endRow_, int(std::ceil(row)));
    }

    std::array<Border, 8> borders_{};  ///< those on the left from the front, on the right from the back
    int lefts_ = 0, rights_ = 0;
    Linear across_{}, down_{}, u_{}, v_{};
    SpriteSpan span_{};
    int firstRow_ = 0, endRow_ = 0;
};

class SpriteLayer final : public OverlayLayer {
  public:
    SpriteLayer(const OverlayLayout& layout, const OverlayTarget& target, const OverlaySpans& spans)
        : format_(target.format), spans_(spans), bins_(target.height) {
        sprites_.reserve(layout.instances.size() * sizeof(float) / sizeof(SpriteInstanceData));
        for (const OverlayLayout::Draw& draw : layout.draws) {
            pages_.push_back(draw.textures.front());
            const auto& page = *static_cast<const NativePictures::Page*>(pages_.back().get());
            for (std::uint32_t i = draw.first; i < draw.first + draw.count; ++i) {
                SpriteInstanceData data;
                std::memcpy(&data, layout.instances.data() + i * (sizeof data / sizeof(float)), sizeof data);
                const Sprite sprite(data, page.image, target);
                bins_.add(std::uint32_t(sprites_.size()), sprite.firstRow(), sprite.endRow());
                sprites_.push_back(sprite);
            }
        }
    }

    void draw(const NativeImage& target, int firstRow, int endRow) const override {
        bins_.forEach(firstRow, endRow, [&](const std::vector<std::uint32_t>& things, int first, int end) {
            for (std::uint32_t thing : things) {
                const Sprite& sprite = sprites_[thing];
                const int last = std::min(end, sprite.endRow());
                for (int y = std::max(first, sprite.firstRow()); y < last; ++y)
                    sprite.draw(target, y, format_, spans_);
            }
        });
    }

  private:
    TextureFormat format_;
    const OverlaySpans& spans_;
    std::vector<std::shared_ptr<void>> pages_;  ///< kept alive
    std::vector<Sprite> sprites_;
    RowBins bins_;
};

}  // namespace

std::unique_ptr<const OverlayLayer> spriteLayer(OverlayLayout layout, const OverlayTarget& target,
                                                const OverlaySpans& spans) {
    return std::make_unique<SpriteLayer>(std::move(layout), target, spans);
}

}  // namespace qv
