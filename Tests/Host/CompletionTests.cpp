// The completion scripts, driven as the shells drive them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// What bash offers at the end of a line, a word a line.
std::string completed(const std::string& line) {
    const std::string script =
        "source <(\"$1\" completion bash)\n"
        "[[ $(complete -p qvfilter) == *'-F _qvfilter qvfilter' ]] || exit 9\n"
        "COMP_LINE=$2 COMP_POINT=${#2}\n"
        "_qvfilter\n"
        "[[ ${#COMPREPLY[@]} == 0 ]] || printf '%s\\n' \"${COMPREPLY[@]}\" | sort\n";
    const Outcome outcome = run({"bash", "--norc", "-c", script, "-", QV_TOOL, line});
    EXPECT_EQ(outcome.exitCode, 0) << line;
    EXPECT_EQ(outcome.errors, "") << line;
    return outcome.output;
}

TEST(Completion, OfBash) {
    EXPECT_EQ(completed("qvfilter rend"), "render\n");
    EXPECT_THAT(completed("qvfilter "), AllOf(HasSubstr("transition\n"), HasSubstr("completion\n")));
    EXPECT_THAT(completed("qvfilter render --"),
                AllOf(HasSubstr("--json-progress\n"), Not(HasSubstr("--strip\n"))));
    EXPECT_EQ(completed("qvfilter transition --fit "), "contain\ncover\nstretch\n");
    EXPECT_EQ(completed("qvfilter transition --fit=c"), "contain\ncover\n");
    EXPECT_EQ(completed("qvfilter render -i a.mp4 -e sno"), "snow\n");
    EXPECT_EQ(completed("qvfilter render -e QVSno"), "QVSnowMTIFilter\n");
    EXPECT_EQ(completed("qvfilter transition QVWaveM"), "") << "an effect over one clip is no transition";
    EXPECT_EQ(completed("qvfilter render -e wave:effect"), "effectValue=\n");
    EXPECT_EQ(completed("qvfilter render -e wave:effectValue=1:isPhoto="), "false\ntrue\n");
    // A variant's name with a blank in it is one word.
    EXPECT_THAT(completed("qvfilter transition QVSliceTransitionMTIFilter:type=al"),
                "alternating\\ columns\nalternating\\ rows\n");
    // Files are the shell's own business, and behind a number there are none.
    EXPECT_EQ(completed("qvfilter render -i /et"), "");
    EXPECT_EQ(completed("qvfilter render --crf "), "");
}

TEST(Completion, OfZshIsSound) {
    const Outcome script = qvfilter({"completion", "zsh"});
    EXPECT_TRUE(script.output.starts_with("#compdef qvfilter\n"));
    if (run({"sh", "-c", "command -v zsh"}).exitCode != 0) GTEST_SKIP() << "zsh is not installed";
    const TemporaryFolder folder;
    writeBytes(folder / "_qvfilter", script.output);
    const Outcome read = run({"zsh", "-f", "-c",
                              "compdef() { print -r -- $1 $2; }; source $1 && print -r -- "
                              "${_qvfilter_values[transition --fit]} ${_qvfilter_classes[effect snow]}",
                              "-", folder / "_qvfilter"});
    EXPECT_EQ(read.errors, "");
    EXPECT_EQ(read.output, "_qvfilter qvfilter\ncover|contain|stretch QVSnowMTIFilter\n");
}

}  // namespace
}  // namespace qv
