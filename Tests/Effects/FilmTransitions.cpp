// The film transition, the passes that its family is made of, and the frame around the film.

#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmRadiusTransitionMTIFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionExposureFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionMotionBlurFilter.h"
#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmTransitionRotationBlurFilter.h"
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

}  // namespace
}  // namespace qv::test
