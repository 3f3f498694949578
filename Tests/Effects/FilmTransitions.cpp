// The film transitions, the passes that they are made of, and the frames around the film.

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmBlackFlashTransitionMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmCameraFlashTransitionMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmHorizontalTransitionMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmRadiusTransitionMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionExposureFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionMotionBlurFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionRotationBlurFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmVerticalTransitionMTIFilter.h"
#include "Tests/Support/TemporaryBundle.h"
#include "Tests/Support/TestEffect.h"

namespace qv::test {
namespace {

TEST(FilmTransitions, TheFilmJumpsAsideAndSettles) {
    QVFilmRadiusTransitionMTIFilter film;
    film.setInputImage1(sceneImage(100, 60));
    film.setInputImage2(sceneImage(60, 60));

    const std::pair<double, double> places[] = {
        {0, 0},   {0.52, 0}, {0.5200001, 30}, {0.5599999, 30}, {0.56, 2},      {0.5999999, 2},
        {0.6, 0}, {0.64, 0}, {0.6400001, -2}, {0.68, -2},      {0.6800001, 0}, {1, 0}};
    for (const auto& [progress, shift] : places) {
        const CGAffineTransform jump = film.getTranslationTransformWithProgress(progress);
        EXPECT_EQ(jump, CGAffineTransformTranslate(CGAffineTransformIdentity, shift, 0)) << progress;
    }

    const std::vector<std::string> still{"QVFilmRadiusTransitionMTIFilter"}, moved{still[0], "MTITransform"};
    const std::vector<std::string> jammed{still[0], "QVFilmBoxBlurFilter", "MTITransform",
                                          "QVFilmTransitionRadiusBlackFrameFilter"};
    // 0.52f lies below 0.52 and 0.56f above 0.56; 0.6f above 0.6, 0.64f below 0.64, 0.68f above 0.68.
    const std::pair<float, const std::vector<std::string>&> moments[] = {{0.1f, still},
                                                                         {0.52f, still},
                                                                         {std::nextafter(0.52f, 1.f), jammed},
                                                                         {0.54f, jammed},
                                                                         {std::nextafter(0.56f, 0.f), jammed},
                                                                         {0.56f, moved},
                                                                         {0.6f, still},
                                                                         {0.64f, still},
                                                                         {std::nextafter(0.64f, 1.f), moved},
                                                                         {std::nextafter(0.68f, 0.f), moved},
                                                                         {0.68f, still},
                                                                         {0.7f, still}};
    for (const auto& [progress, passes] : moments) {
        film.setProgress(progress);
        std::vector<std::string> drawn;
        for (const DrawnPass& pass : drawnPasses(film.outputImage())) drawn.push_back(pass.function);
        EXPECT_EQ(drawn, passes) << progress;
    }
    film.setProgress(0.54f);
    const Picture jump = render(film.outputImage());
    EXPECT_EQ(jump.at(15, 30), (Pixel{0, 0, 0, 1})) << "where the film has left the gate";
    EXPECT_EQ(jump.at(99, 0), (Pixel{0, 0, 0, 1})) << "outside the gate's round corner";
    EXPECT_GT(jump.at(70, 30)[0], 0.05);
}

TEST(FilmTransitions, PicturesOfTheAssistFilters) {
    // A stop doubles the light, that is 2^(1/2.2) in gamma encoded shadows; white stays white.
    QVFilmTransitionExposureFilter exposure;
    exposure.setExposureValue(1);
    for (const auto& [code, expected] :
         {std::pair{0.02f, 0.02f * std::pow(2.f, 1 / 2.2f)}, {1.f, 1.f}, {0.f, 0.f}}) {
        exposure.setInputImage1(plainImage(4, 4, {code, code, code, 1}));
        EXPECT_NEAR(render(exposure.outputImage()).at(1, 1)[0], expected, 0.6 / 255);
    }
    // A vertical blur keeps what does not change downwards, and levels what does.
    const auto stripes = [](bool upright) {
        return MTIImage::imageWithBitmap(makeBitmap(64, 64, [=](int x, int y) {
            const float tone = float(((upright ? x : y) / 4) % 2);
            return Pixel{tone, tone, tone, 1};
        }));
    };
    QVFilmTransitionMotionBlurFilter motion;
    motion.setBlurRadius(150);
    motion.setInputImage1(stripes(true));
    EXPECT_EQ(render(motion.outputImage()).values, render(stripes(true)).values);
    motion.setInputImage1(stripes(false));
    EXPECT_LT(meanDifference(render(motion.outputImage()), render(plainImage(64, 64, {0.5f, 0.5f, 0.5f, 1}))),
              0.12);
    // A turn about the middle keeps a disc, and moves a spot aside of it.
    QVFilmTransitionRotationBlurFilter rotation;
    rotation.setBlurFilterValue(1);
    rotation.setInputImage1(MTIImage::imageWithBitmap(makeBitmap(80, 60, [](int x, int y) {
        const bool disc = std::hypot(x - 39.5, y - 29.5) < 10, spot = std::hypot(x - 64.0, y - 29.5) < 3;
        return Pixel{disc || spot ? 1.f : 0.f, 0, 0, 1};
    })));
    const Picture turned = render(rotation.outputImage());
    EXPECT_EQ(turned.at(43, 26)[0], 1);
    EXPECT_LT(turned.at(64, 29)[0], 0.6);
    EXPECT_GT(turned.at(63, 38)[0] + turned.at(63, 37)[0] + turned.at(64, 38)[0], 0.1) << "along the circle";
    EXPECT_EQ(turned.at(39, 54)[0], 0) << "farther round than half the angle";
    // Without strength all three are the picture.
    exposure.setExposureValue(0), motion.setBlurRadius(0), rotation.setBlurFilterValue(0);
    for (QVTransitionMTIFilter* filter :
         std::initializer_list<QVTransitionMTIFilter*>{&exposure, &rotation, &motion}) {
        filter->setInputImage1(sceneImage(90, 60));
        EXPECT_TRUE(matches(render(filter->outputImage()), render(sceneImage(90, 60)), 0.01 / 255))
            << filter->filterClass().name;
    }
    // The box blur fades across.
    QVFilmBoxBlurFilter blur;
    blur.setInputImage1(plainImage(96, 54, {0.6f, 0.1f, 0.8f, 1}));
    blur.setInputImage2(plainImage(96, 54, {0.2f, 0.9f, 0.4f, 1}));
    blur.setProgress(0.25f);
    EXPECT_LT(difference(render(blur.outputImage()).at(50, 20), {0.5f, 0.3f, 0.7f, 1}), 1.0 / 255);
}

TEST(FilmTransitions, FrameIsFittedOncePerSizeAndKeepsItsPerforations) {
    // A strip above and below with a square hole in its left corner; the middle is clear.
    const Bitmap asset = makeBitmap(480, 270, [](int x, int y) {
        const bool strip = y < 50 || y >= 220, hole = x >= 4 && x < 20 && y >= 10 && y < 26;
        return Pixel{0, 0, 0, strip && !hole ? 1.f : 0.f};
    });
    auto bundle = std::make_unique<TemporaryBundle>();
    bundle->write("transitions_flim_06.png", asset);
    QVFilmRadiusTransitionMTIFilter film, other;
    EXPECT_FALSE(film.frameImage());
    const auto frameFor = [](QVFilmRadiusTransitionMTIFilter& filter, int width, int height) {
        filter.setInputImage1(plainImage(width, height, {0, 0, 0, 1}));
        return filter.frameImage();
    };
    const MTIImage upright = frameFor(film, 240, 400);
    bundle.reset();  // the shaders lie in the library's own
    EXPECT_EQ(upright.size(), (CGSize{240, 400}));
    // Half as wide: so are the hole and the strips, and only the clear middle is higher.
    const Picture picture = render(upright);
    EXPECT_LT(picture.at(6, 9)[3], 0.1);
    EXPECT_GT(picture.at(12, 9)[3], 0.9);
    EXPECT_GT(picture.at(120, 20)[3], 0.9);
    EXPECT_LT(picture.at(120, 30)[3], 0.1);
    EXPECT_LT(picture.at(120, 370)[3], 0.1);
    EXPECT_GT(picture.at(120, 380)[3], 0.9);
    EXPECT_EQ(frameFor(other, 240, 400), upright) << "shared by all instances";
}

constexpr Pixel kRed{0.8f, 0.1f, 0.1f, 1}, kBlue{0.1f, 0.1f, 0.8f, 1};

template <typename Film>
Picture shown(Film& film, float progress, int width = 160, int height = 90) {
    film.setInputImage1(plainImage(width, height, kRed));
    film.setInputImage2(plainImage(width, height, kBlue));
    film.setProgress(progress);
    return render(film.outputImage());
}

TEST(FilmTransitions, FilmHasAWholeNumberOfPerforationsInAnyFrame) {
    // A perforation in the middle of every 192 columns of the upper band.
    TemporaryBundle bundle;
    bundle.write("transitions_flim_02_word.png", makeBitmap(1920, 1080, [](int x, int y) {
                     const bool band = y < 210 || y >= 870,
                                hole = y > 50 && y < 150 && std::abs(x % 192 - 96) < 40;
                     return Pixel{0, 0, 0, band && !hole ? 1.f : 0.f};
                 }));
    // As many as the shorter side's 1080th, or a fifth of the height for the band, lets in.
    for (const auto& [size, perforations] :
         {std::pair{CGSize{320, 180}, 10}, {{180, 320}, 6}, {{200, 200}, 6}, {{420, 180}, 14}}) {
        QVFilmHorizontalTransitionMTIFilter film;
        film.setInputImage1(plainImage(int(size.width), int(size.height), kRed));
        const Picture frame = render(film.frameImage());
        const double pitch = size.width / perforations, scale = pitch / 192;
        for (int i = 0; i < perforations; ++i) {
            const int row = int(100 * scale);
            EXPECT_LT(frame.at(int((i + 0.5) * pitch), row)[3], 0.3) << size.width << ", perforation " << i;
            EXPECT_GT(frame.at(int(i * pitch), row)[3], 0.7) << size.width << ", before perforation " << i;
        }
        EXPECT_GT(frame.at(int(size.width / 2), int(size.height - 105 * scale))[3], 0.9);
        EXPECT_LT(frame.at(int(size.width / 2), int(size.height / 2))[3], 0.1);
    }
}

TEST(FilmTransitions, FilmSlipsRunsAndStopsAtTheIncomingClip) {
    QVFilmVerticalTransitionMTIFilter down;
    QVFilmHorizontalTransitionMTIFilter aside;
    const std::pair<float, float> slips[] = {
        {0.1f, 0},       {0.1401f, 0.12f}, {0.21f, 0}, {0.2201f, 0.3f},  {0.3f, 0.04f}, {0.3201f, 0.55f},
        {0.41f, -0.06f}, {0.56f, 2.47f},   {0.7f, 5},  {0.72f, 5.0536f}, {0.9f, 5}};
    for (const auto& [progress, frames] : slips) {
        down.setProgress(progress);
        EXPECT_NEAR(down.travel(), frames, 0.002) << progress;
    }
    for (const auto& [progress, frames] :
         {std::pair{0.2f, 0.f}, {0.47f, 1.5f}, {0.66f, 3.02f}, {0.8f, 3.f}}) {
        aside.setProgress(progress);
        EXPECT_NEAR(aside.travel(), frames, 0.001) << progress;
    }
    // Two and a half frames down: the incoming clip above the outgoing one. Light comes through the table.
    const Picture rolling = shown(down, 0.56f);
    EXPECT_GT(rolling.at(80, 75)[0], 0.3);
    EXPECT_GT(rolling.at(80, 10)[2], 0.3);
    EXPECT_GT(shown(aside, 0.3f).at(2, 1)[1], 0.5);
}

TEST(FilmTransitions, FlashesExposeWhatTheCameraSees) {
    QVFilmCameraFlashTransitionMTIFilter camera;
    for (const auto& [progress, gate, incoming] :
         {std::tuple{0.2f, false, false}, {0.45f, true, false}, {0.7f, true, true}, {0.93f, false, true}}) {
        const Picture picture = shown(camera, progress);
        EXPECT_EQ(picture.at(0, 0) == (Pixel{0, 0, 0, 1}), gate) << progress;
        EXPECT_GT(picture.at(80, 30)[incoming ? 2 : 0], 0.6) << progress;
        EXPECT_LT(picture.at(80, 30)[incoming ? 0 : 2], 0.3) << progress;
    }
    for (const float progress : {0.24f, 0.48f, 0.72f})
        EXPECT_GT(shown(camera, progress).at(70, 30)[1], 0.95) << progress;
    // A seventeenth is left of the way: its square.
    camera.setProgress(0.4f);
    EXPECT_NEAR(camera.flash(), 1.0 / 289, 1e-4);
}

TEST(FilmTransitions, LeaderFlashesBetweenTheReels) {
    QVFilmBlackFlashTransitionMTIFilter reel;
    int leaders = 0, changes = 0;
    bool dark = false;
    for (int slot = 0; slot < 33; ++slot) {
        const Picture picture = shown(reel, (float(slot) + 0.5f) / 33);
        double brightness = 0;
        for (int i = 0; i < 20; ++i)
            brightness += picture.at(4 + 8 * i, 80)[0] + picture.at(4 + 8 * i, 80)[2];
        const bool nowDark = brightness / 20 < 0.5;
        leaders += nowDark, changes += nowDark != dark, dark = nowDark;
    }
    EXPECT_EQ(leaders, 11);
    EXPECT_EQ(changes, 14);
    // The cue dot, at 120 from the right and 110 from the top of 1080.
    EXPECT_GT(shown(reel, 4.5f / 33).at(150, 9)[1], 0.8);
    EXPECT_LT(shown(reel, 2.5f / 33).at(150, 9)[1], 0.2);
}

TEST(FilmTransitions, PanelsStandOppositeEachOther) {
    auto panels = makeEffect<QVTransitionMTIFilter>("QVPicMoveTransitionMTIFilter");
    const Picture middle = shown(*panels, 0.5f);
    EXPECT_TRUE(matchesPixels(middle, 0.1, [&](int x, int y) {
        const Pixel other = middle.at(159 - x, y);
        const bool panel = std::abs(other[0] - other[2]) > 0.2;
        return panel ? Pixel{other[2], other[1], other[0], 1} : middle.at(x, y);
    }));
    EXPECT_GT(middle.at(40, 45)[0], 0.5);
    // Where a pinhole camera sees the left panel's inner edge, which is turned towards it.
    const double half = 16 / 9.0, x = -half * (0.3 + 0.425) + std::cos(0.86) * half,
                 distance = 2.4 * 1.6 - std::sin(0.86) * half;
    const int edge = int(80 + 45 * 2.4 * x / distance);
    EXPECT_GT(middle.at(edge - 2, 45)[0], 0.4) << edge;
    EXPECT_LT(middle.at(edge + 2, 45)[0], 0.35) << edge;
}

}  // namespace
}  // namespace qv::test
