// Drawing several passes as one changes no picture: every class through its class object, read by
// a pass that its own last one joins.

#include <gmock/gmock.h>

#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/SweepInputs.h"

namespace qv {
namespace {

/// Draws every pass by itself.
MTIContext& plainContext() {
    static const auto context = [] {
        MTIContextOptions options;
        options.fusion = MTIFusion::off;
        return MTIContext::create(options);
    }();
    return *context;
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

TEST_P(FusedEqualsPlain, WithinAStepOfEightBits) {
    // Each context keeps the pictures that it is given.
    const auto forFused = record.create(), forPlain = record.create();
    // On odd sides pixel centres lie on the middle line, and on many a border that a class draws.
    for (CGSize size : {CGSize{96, 54}, CGSize{37, 23}, CGSize{101, 57}, CGSize{45, 80}, CGSize{2, 3}}) {
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
            test::context()->prepare(fused);
            EXPECT_LE(passesOf(*test::context(), fused), passesOf(plainContext(), plain));
            const test::Picture a = test::pictureOf(test::context()->renderToBitmap(fused));
            const test::Picture b = test::pictureOf(plainContext().renderToBitmap(plain));
            EXPECT_LE(test::worstDifference(a, b), 1.01 / 255)
                << size.width << " wide, moment " << moment << ", " << passesOf(*test::context(), fused)
                << " of " << passesOf(plainContext(), plain) << " passes";
        }
    }
    EXPECT_THAT(test::context()->validationMessages(), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, FusedEqualsPlain,
                         testing::ValuesIn(allFilterClasses().begin(), allFilterClasses().end()),
                         [](const auto& info) { return std::string(info.param->name); });

}  // namespace
}  // namespace qv
