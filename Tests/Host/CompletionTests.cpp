// The completion of bash offers what the tool has where the cursor stands.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

/// What bash offers for the last word, separated by spaces.
std::string offered(const std::string& words) {
    const std::string script =
        "source " QV_SOURCE_ROOT "/Host/completion.bash; COMP_WORDS=(" QV_TOOL " " + words +
        "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _qvfilter; echo \"${COMPREPLY[*]}\"";
    const Outcome outcome = run({"bash", "-c", script});
    EXPECT_EQ(outcome.errors, "");
    return outcome.output;
}

TEST(Completion, OffersCommandsOptionsAndClasses) {
    if (run({"bash", "-c", ":"}).exitCode != 0) GTEST_SKIP() << "bash is not installed";
    EXPECT_EQ(offered("s"), "show still sheet\n");
    EXPECT_EQ(offered("render --no-a"), "--no-audio\n");
    EXPECT_EQ(offered("still -e QVSnow"), "QVSnowMTIFilter\n");
    EXPECT_EQ(offered("transition QVWave"), "QVWaveTransitionMTIFilter\n");
    EXPECT_EQ(offered("show QVSnowM"), "QVSnowMTIFilter\n");
    EXPECT_EQ(offered("still -i ''"), "\n") << "files are bash's";
}

}  // namespace
}  // namespace qv
