#pragma once

#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperDivisionFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Paper/TearPaperCollage.h"

namespace qv {

extern const QVFilterClass QVTearPaperFourPicMTIFilterClass;

/// Four prints on a page of kraft card: the page drops in, prints of both clips, in colour and in black and
/// white, are laid down on it one after the other, each with a piece of tape, and the page is torn away from
/// the left by the incoming clip.
///
/// The tables have a row for each phase that begins at `kBegins`; before the first the outgoing clip is
/// alone, from the last one on the incoming clip.
class QVTearPaperFourPicMTIFilter : public TearPaperCollage {
  public:
    explicit QVTearPaperFourPicMTIFilter(const QVFilterClass& filterClass = QVTearPaperFourPicMTIFilterClass)
        : TearPaperCollage(filterClass) {}

    static constexpr int kBegins[] = {16, 24, 32, 44, 58, 72, 86, 102, 114, 126, 138, 152};  ///< 180ths
    /// The page, "paper06_page.jpg", until it lies.
    static constexpr PaperPose kPage[] = {{1.1, 0.02, 0.72, -5}, {1.1, -0.01, 0.24, 3}};
    /// A print on the page.
    struct Print {
        bool incoming, grey;  ///< which clip, and whether in black and white
        PaperPose pose;       ///< scale of the clip
    };
    /// The prints, "paper02_print.png", of the phases from `kFirst` on. A print is `kThrown` times as large,
    /// and turned the other way, in the phase that it comes.
    static constexpr std::size_t kFirst = 3;  ///< phase of the first print
    static constexpr double kThrown = 1.22;   ///< times as large as it lies
    /// In the order that they come in.
    static constexpr Print kPrints[] = {{false, false, {0.395, -0.24, 0.242, 3}},
                                        {true, true, {0.395, 0.242, -0.244, 3.5}},
                                        {false, true, {0.395, 0.246, 0.235, -3}},
                                        {true, false, {0.395, -0.242, -0.24, -2}}};
    /// "paper02_tape.png" on each print.
    static constexpr PaperPose kTape{1.1, 0, 0.54, -4};
    /// Where the tear crosses the frame's upper and lower side, widths, in the phases from `kTorn` on.
    static constexpr std::size_t kTorn = 9;  ///< phase of the first tear
    /// Upper and lower end of each tear.
    static constexpr double kTears[][2] = {{0.16, 0.05}, {0.34, 0.46}, {0.74, 0.6}};

    /// For each print "print1" to "print4": its middle, fractions of the frame from its top left, cosine and
    /// sine of its turn over its scale; "incoming" and "grey", 0 or 1 for each.
    MTIParameters parameters() const override;
    MTIImage outputImage() override;

  private:
    /// The print as it lies in a phase; scale 0 before it comes.
    PaperPose printPose(std::size_t index, std::size_t phase) const;

    QVPaperDivisionFilter divisionFilter_;
};

}  // namespace qv
