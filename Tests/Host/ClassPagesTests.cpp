// list --markdown: the committed pages of the families say what the class objects say, and their command
// lines work.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "Tests/Host/Tool.h"


namespace qv {
namespace {

using ::testing::HasSubstr;

namespace fs = std::filesystem;
const std::string kCommitted = QV_SOURCE_ROOT "/Docs/families";

std::set<std::string> namesIn(const std::string& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
    return names;
}

/// All that `expression` finds, its first group.
std::vector<std::string> found(const std::string& text, const std::string& expression) {
    const std::regex regex(expression);
    std::vector<std::string> results;
    for (std::sregex_iterator it(text.begin(), text.end(), regex), end; it != end; ++it)
        results.push_back((*it)[1]);
    return results;
}

TEST(ClassPages, TheCommittedOnesAreUpToDate) {
    const TemporaryFolder folder;
    const std::string fresh = folder / "families";
    const Outcome outcome = qvfilter({"list", "--markdown", fresh});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    const char* const remedy = "cmake --build build --target class-pages refreshes them";
    EXPECT_EQ(namesIn(kCommitted), namesIn(fresh)) << remedy;
    for (const std::string& name : namesIn(fresh)) {
        EXPECT_TRUE(readBytes(kCommitted + "/" + name) == readBytes(fresh + "/" + name))
            << "Docs/families/" << name << " is out of date; " << remedy;
    }
}

TEST(ClassPages, CommandLinesAreOnesThatTheToolTakes) {
    // It reads all choices, and names a wrong one, before it looks for the device.
    Arguments bench{"bench", "--device", "99"};
    for (const std::string& name : namesIn(kCommitted)) {
        const std::string page = readBytes(kCommitted + "/" + name);
        for (const std::string& choice :
             found(page, "    qvfilter (?:transition |.*-e |.*--only )('[^']*'|[^ \n]*)"))
            bench.push_back(choice.front() == '\'' ? choice.substr(1, choice.size() - 2) : choice);
    }
    const Outcome outcome = qvfilter(bench);
    EXPECT_EQ(outcome.exitCode, 4) << outcome.errors;
    EXPECT_EQ(bench.size() - 3, qvfilterJSON({"list", "--json"}).size());
}

TEST(ClassPages, LinksLeadToHeadings) {
    for (const std::string& name : namesIn(kCommitted)) {
        const std::string page = readBytes(kCommitted + "/" + name);
        for (const std::string& link : found(page, R"(\]\(([^)]*)\))")) {
            const std::size_t hash = link.find('#');
            const std::string target = readBytes(kCommitted + "/" + link.substr(0, hash));
            EXPECT_FALSE(target.empty()) << name << ": " << link;
            if (hash == std::string::npos) continue;
            bool leads = false;
            for (std::string heading : found(target, "\n#+ ([A-Za-z0-9_]+)\n")) {
                std::transform(heading.begin(), heading.end(), heading.begin(), ::tolower);
                leads = leads || heading == link.substr(hash + 1);
            }
            EXPECT_TRUE(leads) << name << ": " << link;
        }
    }
}

TEST(ClassPages, AreReplacedOnlyWhenTheyDifferAndThatIsAllowed) {
    const TemporaryFolder folder;
    const Arguments command{"list", "--markdown", folder / ""};
    ASSERT_EQ(qvfilter(command).exitCode, 0);
    EXPECT_EQ(qvfilter(command).exitCode, 0) << "nothing to replace";
    writeBytes(folder / "mosaic.md", "mine");
    EXPECT_EQ(qvfilter(command).exitCode, 5);
    EXPECT_EQ(readBytes(folder / "mosaic.md"), "mine");
    EXPECT_EQ(qvfilter({"list", "--markdown", folder / "", "-y"}).exitCode, 0);
    EXPECT_THAT(readBytes(folder / "mosaic.md"), HasSubstr("# Mosaic"));
    EXPECT_EQ(qvfilter({"list", "--markdown", folder / "", "--json"}).exitCode, 2);
}

}  // namespace
}  // namespace qv
