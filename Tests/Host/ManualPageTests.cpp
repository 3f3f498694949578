// Docs/qvfilter.1 names every command and option that the tool has, and no other; Docs/qvfilter.md every
// command.

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "Tests/Host/Tool.h"

namespace qv {
namespace {

using Names = std::set<std::string>;

const std::string kPage = QV_SOURCE_ROOT "/Docs/qvfilter.1";

void insertOptions(const std::string& text, Names& names) {
    static const std::regex kOption("(^|[ ,\"])(--?[a-z][a-z-]*)");
    for (std::sregex_iterator it(text.begin(), text.end(), kOption), end; it != end; ++it)
        names.insert((*it)[2]);
}

/// The options at the head of each entry, by the command that they stand under; "" holds the shared ones.
std::map<std::string, Names> documented() {
    std::map<std::string, Names> sections;
    std::istringstream page(std::regex_replace(readBytes(kPage), std::regex(R"(\\-)"), "-"));
    std::string line, chapter, section;
    for (bool entry = false; std::getline(page, line);) {
        if (line.starts_with(".SH ")) chapter = line.substr(4), section.clear();
        if (line.starts_with(".SS ") && chapter == "COMMANDS")
            sections[section = line.substr(4, line.find(' ', 4) - 4)];
        if (entry && (chapter == "COMMANDS" || chapter == "SHARED OPTIONS"))
            insertOptions(line, sections[section]);
        entry = line == ".TP";
    }
    return sections;
}

/// The options of each command, as its help names them, but for the help itself.
std::map<std::string, Names> offered() {
    std::map<std::string, Names> commands;
    const std::string all = qvfilter({"--help"}).output;
    std::istringstream help(all.substr(all.find("Subcommands:")));
    std::string line;
    for (std::getline(help, line); std::getline(help, line) && !line.empty();) {
        const std::string command = line.substr(2, line.find(' ', 2) - 2);
        std::istringstream own(qvfilter({command, "--help"}).output);
        for (std::string text; std::getline(own, text);) {
            if (text.starts_with("  -")) insertOptions(text.substr(0, text.find(' ', 2)), commands[command]);
        }
        for (const char* common : {"-h", "--help", "--help-all"})
            EXPECT_EQ(commands[command].erase(common), 1u) << command;
    }
    return commands;
}

TEST(ManualPage, HasTheCommandsAndOptionsOfTheTool) {
    auto pages = documented();
    const auto commands = offered();
    const std::string guide = readBytes(QV_SOURCE_ROOT "/Docs/qvfilter.md");
    const Names shared = pages[""];
    pages.erase("");
    ASSERT_GE(commands.size(), 9u);
    ASSERT_GE(shared.size(), 10u);

    std::map<std::string, int> takers;
    for (const auto& [command, options] : commands) {
        ASSERT_TRUE(pages.contains(command)) << "the page has no command " << command;
        EXPECT_NE(guide.find("\n| `" + command), std::string::npos) << "the guide has no command " << command;
        for (const std::string& option : options) {
            ++takers[option];
            EXPECT_NE(pages[command].contains(option), shared.contains(option))
                << command << " " << option << " stands under the command, or among the shared ones";
        }
        for (const std::string& option : pages[command])
            EXPECT_TRUE(options.contains(option)) << command << " has no " << option;
    }
    for (const auto& [command, options] : pages)
        EXPECT_TRUE(commands.contains(command)) << "the tool has no command " << command;
    for (const std::string& option : shared) EXPECT_GE(takers[option], 2) << option << " is not shared";
}

TEST(ManualPage, IsSoundRoff) {
    if (run({"sh", "-c", "command -v groff"}).exitCode != 0) GTEST_SKIP() << "groff is not installed";
    const Outcome check = run({"groff", "-man", "-ww", "-z", "-K", "utf8", kPage});
    EXPECT_EQ(check.exitCode, 0);
    EXPECT_EQ(check.output + check.errors, "");
}

}  // namespace
}  // namespace qv
