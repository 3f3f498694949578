#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Media/Bitmap.h"
#include "QVFilterExtension/Resources/Assets/EffectPictures/PixelBuilder.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"

namespace qv::assets {

/// A corner of a sheet and the tear that runs from it to the next one.
struct Tear {
    float x, y;  ///< from the middle of the picture, pixels, y down
    float lip;   ///< how wide the white core shows along the tear, units
};

/// What a blank face is made of.
enum class PaperStock { cream, white, kraft, ruled };

/// A piece torn out of a sheet, or a hole torn into one.
struct TornPiece {
    int width, height;        ///< of its pictures, pixels
    float unit;               ///< pixels that a unit of the paper takes up; a fibre is about one unit thick
    std::vector<Tear> tears;  ///< clockwise as seen; those outside the picture run off it
    std::uint32_t seed;
    PaperStock stock = PaperStock::cream;
    bool hole = false;  ///< the tears are those of a hole; the sheet lies around it
};

/// Torn paper seen from above, lit from the upper right: a face, around it a lip of the paper's white core,
/// ragged on both sides and with loose fibres, and the shadow that it throws. The pictures of one piece
/// register with each other to the pixel.
class TornPaper {
  public:
    explicit TornPaper(const TornPiece& piece);

    /// White where the face is, transparent elsewhere.
    Bitmap face() const;
    /// A sheet that lies under a photograph of the face's shape: what shows of it is the lip.
    Bitmap underPhoto() const;
    /// A blank sheet.
    Bitmap blank() const;
    /// A blank sheet with a window in its middle, sharply cut, pixels; around it a faint line is printed.
    Bitmap framing(int windowWidth, int windowHeight) const;
    /// White where the sheet has a hole.
    Bitmap opening() const;
    /// What is seen of a sheet around its face: its lip, and the shadow that it throws, in a hole into it.
    Bitmap rim() const;

  private:
    void tear();
    void addFibres();
    void addLooseFibres();
    void raiseRelief();
    void throwShadow();
    Rgba shade(int x, int y, bool blank) const;

    TornPiece piece_;
    Raster<float> outer_;     ///< depth inside the sheet, units
    Raster<float> inner_;     ///< depth inside the face, units
    Raster<float> fibres_;    ///< height of fibres, -1..1
    Raster<float> coverage_;  ///< of paper, 0..1
    Raster<float> relief_;    ///< height, units
    Raster<float> shadow_;    ///< 0..1
};

}  // namespace qv::assets
