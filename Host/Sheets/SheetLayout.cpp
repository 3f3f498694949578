#include "Host/Sheets/SheetLayout.h"

#include <algorithm>

#include "Host/Sheets/SheetDrawing.h"
#include "Platform/Drawing/BitmapCanvas.h"

namespace qv::host {

namespace {

constexpr double kMargin = 24, kGap = 14, kLabelHeight = 42, kHeadingHeight = 46;

/// `content` scaled to lie within `cell`, centred.
CGRect fitted(CGSize content, const CGRect& cell) {
    const double scale = std::min(cell.size.width / content.width, cell.size.height / content.height);
    const double width = content.width * scale, height = content.height * scale;
    return CGRectMake(cell.midX() - width / 2, cell.midY() - height / 2, width, height);
}

class SheetLayout {
  public:
    SheetLayout(const SheetGroups& groups, PixelSize cell, int columns) : groups_(groups), cell_(cell) {
        std::size_t widest = 1;
        double height = kMargin;
        for (const auto& [category, cells] : groups) widest = std::max(widest, cells.size());
        columns_ = std::min(std::size_t(columns), widest);
        for (const auto& [category, cells] : groups)
            height += kHeadingHeight + double(rows(cells)) * rowHeight();
        size_ = {2 * kMargin + double(columns_) * (cell.width + kGap) - kGap, height + kMargin};
    }

    Bitmap draw() const {
        BitmapCanvas canvas(size_, true);
        if (!canvas) {
            fail(ExitCode::usage,
                 "a sheet of {:.0f}x{:.0f} is too large; ask for smaller cells or fewer classes", size_.width,
                 size_.height);
        }
        canvas.fillRect({{0, 0}, size_}, kPaper);
        double y = kMargin;
        for (const auto& [category, cells] : groups_) {
            canvas.drawText(std::string(categoryName(category)), {kMargin, y}, labelFont(24), kAccent);
            y += kHeadingHeight;
            for (std::size_t i = 0; i < cells.size(); ++i) {
                const double x = kMargin + double(i % columns_) * (cell_.width + kGap);
                drawCell(canvas, cells[i], {x, y + double(i / columns_) * rowHeight()});
            }
            y += double(rows(cells)) * rowHeight();
        }
        return canvas.image().bitmap();
    }

  private:
    double rowHeight() const { return cell_.height + kLabelHeight + kGap; }
    std::size_t rows(const std::vector<SheetCell>& cells) const {
        return (cells.size() + columns_ - 1) / columns_;
    }

    void drawCell(BitmapCanvas& canvas, const SheetCell& cell, CGPoint origin) const {
        const CGRect frame = CGRectMake(origin.x, origin.y, cell_.width, cell_.height);
        canvas.fillRect(frame, {0.2, 0.2, 0.22});
        canvas.drawImage(cell.picture, fitted(cell.picture.size(), frame));
        canvas.drawText(cell.title, {origin.x, frame.maxY() + 4}, fittingFont(cell.title, 15, cell_.width),
                        kInk);
        canvas.drawText(cell.name, {origin.x, frame.maxY() + 23}, fittingFont(cell.name, 12, cell_.width),
                        kAccent);
    }

    const SheetGroups& groups_;
    PixelSize cell_;
    std::size_t columns_;
    CGSize size_;
};

}  // namespace

Bitmap drawSheet(const SheetGroups& groups, PixelSize cell, int columns) {
    return SheetLayout(groups, cell, columns).draw();
}

}  // namespace qv::host
