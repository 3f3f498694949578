// What shaders share is found by reading one list, Docs/shaders.md, and nothing lies there that no shader
// uses.

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// All matches of the pattern's first group.
std::set<std::string> matchesIn(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern, std::regex::ECMAScript | std::regex::multiline);
    std::set<std::string> all;
    for (std::sregex_iterator i(text.begin(), text.end(), expression), end; i != end; ++i)
        all.insert((*i)[1].str());
    return all;
}

/// GLSL files below a folder, by path.
std::map<fs::path, std::string> shadersBelow(const fs::path& folder) {
    std::map<fs::path, std::string> all;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const fs::path extension = entry.path().extension();
        if (extension == ".glsl" || extension == ".vert" || extension == ".frag")
            all[entry.path()] = textOf(entry.path());
    }
    return all;
}

/// How often `name(` stands in the text.
int calls(const std::string& text, const std::string& name) {
    const auto isWord = [](unsigned char c) { return std::isalnum(c) || c == '_'; };
    const std::string call = name + "(";
    int count = 0;
    for (std::size_t at = text.find(call); at != std::string::npos; at = text.find(call, at + 1))
        count += at == 0 || !isWord(static_cast<unsigned char>(text[at - 1]));
    return count;
}

TEST(ShaderIncludes, AreListedAndUsed) {
    const fs::path root = QV_SOURCE_ROOT;
    std::map<fs::path, std::string> shaders;
    for (const char* folder :
         {"Platform/ImageGraph/Shaders", "QVFilterCore/Shaders", "QVFilterExtension/Resources/Shaders"})
        shaders.merge(shadersBelow(root / folder));

    std::map<std::string, std::set<std::string>> listed;
    const std::string page = textOf(root / "Docs/shaders.md");
    const std::regex row(R"(^\| `(\w+\.glsl)` \|(.*)\|$)", std::regex::ECMAScript | std::regex::multiline);
    for (std::sregex_iterator i(page.begin(), page.end(), row), end; i != end; ++i)
        listed[(*i)[1].str()] = matchesIn((*i)[2].str(), "`(\\w+)");

    std::set<std::string> files;
    for (const auto& [path, text] : shaders) {
        if (path.parent_path().filename() != "include") continue;
        const std::string file = path.filename().string();
        EXPECT_TRUE(files.insert(file).second) << "two files are named " << file;
        auto defined = matchesIn(text, "^(?:float|int|uint|bool|u?i?vec[234]|mat[234]) (\\w+)\\(");
        defined.merge(matchesIn(text, "^#define (\\w+)\\("));
        for (const std::string& name : defined) {
            bool elsewhere = false;
            for (const auto& [other, otherText] : shaders)
                elsewhere |= other != path && calls(otherText, name) > 0;
            EXPECT_TRUE(elsewhere || calls(text, name) > 1) << "nothing calls " << name << " of " << file;
            EXPECT_TRUE(!elsewhere || listed[file].contains(name))
                << file << " in Docs/shaders.md lacks " << name;
        }
        for (const std::string& name : listed[file])
            EXPECT_TRUE(defined.contains(name)) << file << " has no " << name;
    }
    for (const auto& [file, names] : listed) EXPECT_TRUE(files.contains(file)) << "there is no " << file;
    EXPECT_FALSE(files.empty());
}

}  // namespace
