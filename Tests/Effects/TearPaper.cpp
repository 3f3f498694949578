// The torn-paper transitions: where their pieces stand, what lies on what, and how assets are drawn and kept.

#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperVideoBlendFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperMoveLeftMTIFilter.h"
#include "Tests/Support/TemporaryBundle.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

constexpr Pixel kOutgoing{0.9f, 0.8f, 0, 1}, kIncoming{0, 0.7f, 0.8f, 1};
constexpr Pixel kSmall{0, 1, 0, 1}, kMedium{1, 0, 1, 1}, kPhotoPaper{1, 0, 0, 1}, kSheet{0, 0, 1, 1};
constexpr Pixel kClear{0, 0, 0, 0}, kWhite{1, 1, 1, 1};

/// A bundle of assets in flat colours, known to the pixel.
class TearPaper : public testing::Test {
  protected:
    TearPaper() {
        // Kernels are kept, so they outlive the exchange of the bundle.
        EXPECT_TRUE(QVPaperVideoBlendFilterClass.kernel());
        bundle_ = std::make_unique<TemporaryBundle>();
        write("trans_paper_small.png", 200, 200, 0, kSmall);
        write("trans_paper_medium.png", 800, 400, 0, kMedium);
        write("paper01_smallframe.png", 1000, 360, 0, kPhotoPaper);
        write("paper01_viderSize.png", 480, 240, 0, kWhite);
        write("paper01_biggerButtom.png", 192, 108, 12, kSheet);
        write("paper01_biggerSize.png", 192, 108, 36, kWhite);
    }
    void write(const std::string& name, int width, int height, int clearColumns, const Pixel& color) {
        bundle_->write(
            name, makeBitmap(width, height, [&](int x, int) { return x < clearColumns ? kClear : color; }));
    }
    static void setFrame(QVTransitionMTIFilter& filter, int width, int height) {
        filter.setInputImage1(plainImage(width, height, kOutgoing));
        filter.setInputImage2(plainImage(width, height, kIncoming));
    }

    std::unique_ptr<TemporaryBundle> bundle_;
    QVTearPaperMoveLeftMTIFilter filter_;
};

void expectMatrix(const CGAffineTransform& actual, const CGAffineTransform& wanted, const char* what,
                  double p) {
    const double difference = std::max({std::abs(actual.a - wanted.a), std::abs(actual.b - wanted.b),
                                        std::abs(actual.c - wanted.c), std::abs(actual.d - wanted.d),
                                        std::abs(actual.tx - wanted.tx), std::abs(actual.ty - wanted.ty)});
    EXPECT_LT(difference, 2e-5) << what << " at " << p << ": " << actual.a << " " << actual.b << " "
                                << actual.c << " " << actual.d << " " << actual.tx << " " << actual.ty;
}

TEST_F(TearPaper, StandsStillWithinAPhaseAndJumpsAtItsBeginning) {
    setFrame(filter_, 200, 100);
    using Filter = QVTearPaperMoveLeftMTIFilter;
    constexpr auto kBottom = &Filter::getButtomTransformWithProgress,
                   kTop = &Filter::getTopImageRotateTransformWithProgress,
                   kMiddle = &Filter::getMiddleImageRotateTransformWithProgress,
                   kMask1 = &Filter::getMask1BlendImageTransformWithProgress,
                   kMask2 = &Filter::getMask2BlendImageTransformWithProgress;
    const struct {
        const char* what;
        CGAffineTransform (Filter::*at)(double) const;
        double begin;  ///< progress, on a boundary
        CGAffineTransform before, from;
    } cases[] = {
        {"bottom", kBottom, 0.24444444444444444, {}, {1.05, 0, 0, 1.05}},
        {"bottom", kBottom, 0.4111111111111111, {1.1, 0, 0, 1.1}, {1.12, 0, 0, 1.12, -6, 0}},
        {"bottom", kBottom, 0.8277777777777777, {1.5, 0, 0, 1.5}, {0, 0, 0, 0}},
        {"mask 1", kMask1, 0.3277777777777778, {0, 0, 0, 0}, {1.4, 0, 0, 1.4, -36, 5}},
        {"mask 1", kMask1, 0.49444444444444446, {1.57, 0, 0, 1.57, -40, 18}, {0.8, 0, 0, 0.8}},
        {"mask 1", kMask1, 0.7444444444444445, {1.2, 0, 0, 1.2}, {0, 0, 0, 0}},
        {"mask 2", kMask2, 0.4111111111111111, {0, 0, 0, 0}, {1.2, 0, 0, 1.2}},
        {"mask 2", kMask2, 0.5777777777777777, {1.4, 0, 0, 1.4}, {1.25, 0, 0, 1.25}},
        {"mask 2", kMask2, 0.8277777777777777, {1.1, 0, 0, 1.1}, {}},
        {"top", kTop, 0.16111111111111112, {0, 0, 0, 0}, {1, 0, 0, 1, 14, -3}},
        {"top",
         kTop,
         0.4111111111111111,
         {0.65, 0, 0, 0.65, 14, 9},
         {0.799901, -0.012566, 0.012566, 0.799901, -25.82401, 11.40703}},
        {"top",
         kTop,
         0.5777777777777777,
         {0.999391, -0.0348995, 0.0348995, 0.999391, -43.44970, 16.52644},
         {0.978148, 0.207912, -0.207912, 0.978148, -69.08444, 36.43268}},
        {"top",
         kTop,
         0.7444444444444445,
         {0.965926, 0.258819, -0.258819, 0.965926, -81.07340, 32.11081},
         {0, 0, 0, 0}},
        {"middle", kMiddle, 0.4111111111111111, {}, {0.965926, -0.258819, 0.258819, 0.965926, 180, -32}},
        {"middle",
         kMiddle,
         0.49444444444444446,
         {0.965926, -0.258819, 0.258819, 0.965926, 180, -32},
         {1, 0, 0, 1, 150, 0}},
        {"middle", kMiddle, 0.6611111111111111, {1, 0, 0, 1, 102, 0}, {1, 0, 0, 1, 50, 0}},
        {"middle", kMiddle, 0.8277777777777777, {1, 0, 0, 1, 10, 0}, {}}};
    for (const auto& each : cases) {
        const double before = std::nextafter(each.begin, 0.0);
        expectMatrix((filter_.*each.at)(before), each.before, each.what, before);
        expectMatrix((filter_.*each.at)(each.begin), each.from, each.what, each.begin);
    }
}

TEST_F(TearPaper, LaysPiecesOverOneAnother) {
    // Places worked out by hand from the assets' sizes, a tenth of a frame 1920 wide, and the transforms.
    const struct {
        double step;  ///< of 180
        int x, y;
        Pixel color;
    } places[] = {
        {20, 96, 54, kOutgoing},   {30, 109, 57, kSmall},     {30, 95, 57, kOutgoing},
        {50, 90, 50, kMedium},     {50, 107, 50, kOutgoing},  {65, 109, 44, kOutgoing},
        {65, 91, 44, kPhotoPaper}, {65, 190, 106, kOutgoing}, {74.5, 190, 106, kOutgoing},
        {80, 190, 106, kSheet},    {80, 150, 106, kOutgoing}, {95, 168, 54, kSheet},
        {95, 186, 54, kIncoming},  {95, 120, 100, kOutgoing}, {95, 54, 36, kIncoming},
        {95, 26, 37, kPhotoPaper}, {110, 120, 90, kSheet},    {110, 150, 90, kIncoming},
        {110, 28, 13, kIncoming},  {110, 56, 7, kPhotoPaper}, {125, 72, 80, kSheet},
        {125, 64, 9, kPhotoPaper}, {125, 20, 90, kOutgoing},  {140, 33, 54, kSheet},
        {140, 5, 54, kOutgoing},   {140, 28, 13, kSheet},     {140, 100, 54, kIncoming},
        {149.1, 5, 54, kIncoming}, {180, 100, 54, kIncoming},
    };
    setFrame(filter_, 192, 108);
    for (const auto& place : places) {
        filter_.setProgress(float(place.step / 180));
        EXPECT_LT(difference(render(filter_.outputImage()).at(place.x, place.y), place.color), 2.0 / 255)
            << place.step << " at " << place.x << ", " << place.y;
    }
    filter_.setProgress(0.1f);
    EXPECT_EQ(filter_.outputImage(), filter_.inputImage1()) << "nothing to draw";
}

TEST_F(TearPaper, CutsByTheShapesAlpha) {
    const auto cut = makeEffect<QVTransitionMTIFilter>("QVPaperVideoBlendFilter");
    cut->setInputImage1(plainImage(2, 1, {0.8f, 0.4f, 0.2f, 1}));
    cut->setInputImage2(MTIImage::imageWithBitmap(makeBitmap(2, 1, [](int x, int) {
        return x == 0 ? Pixel{0, 0, 0, 1} : Pixel{1, 1, 1, 0.25f};
    })));
    EXPECT_TRUE(matchesPixels(render(cut->outputImage()), 1.0 / 255, [](int x, int) {
        return x == 0 ? Pixel{0.8f, 0.4f, 0.2f, 1} : Pixel{0.2f, 0.1f, 0.05f, 0.25f};
    }));
}

/// The pixels that something covers by more than half.
CGRect covered(const Bitmap& bitmap) {
    int left = bitmap.width, top = bitmap.height, right = 0, bottom = 0;
    for (int y = 0; y < bitmap.height; ++y) {
        for (int x = 0; x < bitmap.width; ++x) {
            if (bitmap.row(y)[x * 4 + 3] < 128) continue;
            left = std::min(left, x), right = std::max(right, x + 1);
            top = std::min(top, y), bottom = std::max(bottom, y + 1);
        }
    }
    return right ? CGRectMake(left, top, right - left, bottom - top) : CGRectZero;
}

TEST_F(TearPaper, DrawsAssetsForTheFrame) {
    const struct {
        CGSize frame, drawn;
        CGRect inMiddle, fromCorner;
    } cases[] = {
        {{192, 108}, {80, 40}, CGRectMake(56, 34, 80, 40), CGRectMake(0, 0, 192, 96)},
        {{108, 192}, {45, 22.5}, CGRectMake(31, 85, 46, 22), CGRectMake(0, 0, 108, 96)},
        {{480, 480}, {200, 100}, CGRectMake(140, 190, 200, 100), CGRectMake(0, 0, 480, 240)},
    };
    for (const auto& each : cases) {
        setFrame(filter_, int(each.frame.width), int(each.frame.height));
        const UIImage inMiddle = filter_.getScaleFrameImageWithName("trans_paper_medium.png");
        EXPECT_EQ(inMiddle.size(), each.frame);
        EXPECT_EQ(filter_.imageSize(), each.drawn);
        const CGRect place = covered(inMiddle.bitmap()), wanted = each.inMiddle;
        for (const auto& [edge, at] : {std::pair{place.minX(), wanted.minX()},
                                       {place.minY(), wanted.minY()},
                                       {place.maxX(), wanted.maxX()},
                                       {place.maxY(), wanted.maxY()}})
            EXPECT_NEAR(edge, at, 1);
        EXPECT_EQ(covered(filter_.getScaleImageWithName("trans_paper_medium.png").bitmap()), each.fromCorner);
    }
}

TEST_F(TearPaper, TheSheetIsAsHighAsTheFrame) {
    // As high as the frame, from the left: 36 of 192 columns of the shape are clear.
    setFrame(filter_, 90, 160);
    const Picture shape = render(filter_.biggerVideoSizeImage());
    EXPECT_LT(shape.at(50, 80)[3], 0.01f);
    EXPECT_GT(shape.at(56, 80)[3], 0.99f);
    EXPECT_GT(shape.at(89, 0)[3], 0.99f);
    EXPECT_GT(shape.at(89, 159)[3], 0.99f);
}

enum Seen { red, blue, grey, other };

Seen seenIn(const Pixel& p) {
    const float spread = std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]});
    if (p[0] > 0.6f && p[1] < 0.3f && p[2] < 0.3f) return red;
    if (p[2] > 0.6f && p[0] < 0.3f) return blue;
    return spread < 0.02f && p[0] < 0.3f ? grey : other;
}

TEST(TearPaperStories, ShowTheClipsWhereTheirPiecesLie) {
    // Steps of 180, places in a frame of 192×108; red goes, blue comes. `grey` is a clip in black and white.
    const struct {
        const char* stem;
        int step, x, y;
        Seen seen;
    } places[] = {
        {"Second", 40, 3, 54, red},       {"Second", 40, 96, 80, other},    {"Second", 80, 96, 54, blue},
        {"Second", 80, 3, 3, red},        {"Second", 80, 43, 54, other},    {"Second", 155, 8, 54, blue},
        {"MoveDown", 30, 96, 60, red},    {"MoveDown", 90, 96, 8, blue},    {"MoveDown", 90, 96, 90, red},
        {"MoveDown", 90, 96, 45, other},  {"MoveDown", 150, 96, 50, blue},  {"MoveRight", 50, 96, 54, red},
        {"MoveRight", 50, 8, 8, other},   {"MoveRight", 105, 170, 54, red}, {"MoveRight", 105, 20, 50, blue},
        {"MoveRight", 130, 96, 54, blue}, {"Zoom", 20, 20, 54, red},        {"Zoom", 60, 96, 54, blue},
        {"Zoom", 60, 20, 54, red},        {"Zoom", 120, 96, 54, blue},      {"Zoom", 120, 4, 4, red},
        {"Zoom", 150, 4, 4, blue},        {"FourPic", 95, 50, 28, red},     {"FourPic", 95, 142, 79, grey},
        {"FourPic", 95, 143, 29, grey},   {"FourPic", 95, 50, 79, blue},    {"FourPic", 50, 50, 79, other},
        {"FourPic", 130, 30, 54, blue},   {"FourPic", 130, 143, 29, grey},  {"Last", 30, 20, 54, red},
        {"Last", 80, 40, 20, red},        {"Last", 80, 186, 10, blue},      {"Last", 150, 20, 20, blue},
    };
    for (const auto& place : places) {
        const auto story =
            makeEffect<QVTransitionMTIFilter>("QVTearPaper" + std::string(place.stem) + "MTIFilter");
        story->setInputImage1(plainImage(192, 108, {0.9f, 0.1f, 0.1f, 1}));
        story->setInputImage2(plainImage(192, 108, {0.1f, 0.1f, 0.9f, 1}));
        story->setProgress(float(place.step) / 180);
        const Pixel p = render(story->outputImage()).at(place.x, place.y);
        EXPECT_EQ(seenIn(p), place.seen) << place.stem << " " << place.step << " at " << place.x << ", "
                                         << place.y << ": " << p[0] << " " << p[1] << " " << p[2];
    }
}

TEST(TearPaperStories, StandStillAndJump) {
    for (const char* stem : {"Second", "MoveDown", "MoveRight", "Zoom", "FourPic", "Last"}) {
        const auto story = makeEffect<QVTransitionMTIFilter>("QVTearPaper" + std::string(stem) + "MTIFilter");
        story->setInputImage1(sceneImage(96, 54));
        story->setInputImage2(rampsImage(96, 54));
        int jumps = 0, stills = 0;
        Picture last = render(story->inputImage1());
        for (int step = 0; step < 180; step += 2) {
            story->setProgress((float(step) + 0.5f) / 180);
            Picture now = render(story->outputImage());
            (now.values == last.values ? stills : jumps) += 1;
            last = std::move(now);
        }
        // On twos to fives at thirty frames a second.
        EXPECT_GE(jumps, 11) << stem;
        EXPECT_LE(jumps, 14) << stem;
        EXPECT_EQ(jumps + stills, 90);
    }
}

}  // namespace
}  // namespace qv::test
