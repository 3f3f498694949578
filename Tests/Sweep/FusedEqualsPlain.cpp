// Drawing several passes as one changes no picture: every class through its class object, read by
// a pass that its own last one joins.

#include <gmock/gmock.h>

#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/SweepInputs.h"

namespace qv {
namespace {

/// A context of the working format that joins passes, and one that draws every pass by itself.
struct Pair {
    std::shared_ptr<MTIContext> fusing, plain;
    /// What joined functions do not round: half a step of each texture in between, as later passes enlarge
    /// it.
    double tolerance;
};

Pair pairOf(MTIPixelFormat working, double tolerance) {
    MTIContextOptions options;
    options.workingPixelFormat = working;
    options.validation = true;
    options.fusion = MTIFusion::beforeFirstFrame;
    const auto fusing = MTIContext::create(options);
    options.fusion = MTIFusion::off;
    return {fusing, MTIContext::create(options), tolerance};
}

const std::vector<Pair>& pairs() {
    static const std::vector<Pair> made{pairOf(MTIPixelFormat::rgba16Float, 2.5e-3),
                                        pairOf(MTIPixelFormat::rgba8Unorm, 3.0 / 255)};
    return made;
}

int passesOf(MTIContext& context, const MTIImage& image) {
    const auto task = context.startRender(image);
    return task && task->wait() ? task->statistics().passes : -1;
}

/// An image with a reader that its last pass joins.
MTIImage read(const MTIImage& image) {
    MTIOpacityFilter reader;
    reader.setInputImage(image);
    reader.setOpacity(0.9f);
    return reader.outputImage();
}

class FusedEqualsPlain : public testing::TestWithParam<const QVFilterClass*> {
  protected:
    const QVFilterClass& record = *GetParam();
};

TEST_P(FusedEqualsPlain, ButForTheRoundingInBetween) {
    // Each context keeps the pictures that it is given.
    const auto forFused = record.create(), forPlain = record.create();
    // On odd sides pixel centres lie on the middle line, and on many a border that a class draws.
    for (CGSize size : {CGSize{96, 54}, CGSize{37, 23}, CGSize{45, 80}, CGSize{2, 3}}) {
        for (double moment : {0.27, 0.5, 0.81}) {
            for (QVMTIFilter* filter : {forFused.get(), forPlain.get()}) {
                test::setInputs(*filter, int(size.width), int(size.height));
                test::setMoment(*filter, moment);
                test::setNumber(*filter, "effectValue", std::round(moment * 2) / 2);
                if (record.levels() > 0)
                    test::setNumber(*filter, "level", int(moment * 10) % record.levels());
            }
            const MTIImage fused = read(forFused->outputImage()), plain = read(forPlain->outputImage());
            if (!fused) continue;
            for (const Pair& pair : pairs()) {
                EXPECT_LE(passesOf(*pair.fusing, fused), passesOf(*pair.plain, plain));
                const test::Picture a{int(size.width), int(size.height), pair.fusing->renderToFloats(fused)};
                const test::Picture b{int(size.width), int(size.height), pair.plain->renderToFloats(plain)};
                EXPECT_LE(test::worstDifference(a, b), pair.tolerance)
                    << size.width << " wide, moment " << moment << ", " << passesOf(*pair.fusing, fused)
                    << " of " << passesOf(*pair.plain, plain) << " passes";
            }
        }
    }
    for (const Pair& pair : pairs()) EXPECT_THAT(pair.fusing->validationMessages(), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, FusedEqualsPlain,
                         testing::ValuesIn(allFilterClasses().begin(), allFilterClasses().end()),
                         [](const auto& info) { return std::string(info.param->name); });

}  // namespace
}  // namespace qv
