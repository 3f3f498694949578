// Which folder may include what: read from the sources themselves.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path kRoot = QV_SOURCE_ROOT;

struct Include {
    std::string file, target;
    bool angled;
};

std::vector<Include> includesBelow(const std::string& folder) {
    static const std::regex pattern(R"(^\s*#include\s+([<"])([^>"]+)[>"])");
    std::vector<Include> all;
    if (!fs::exists(kRoot / folder)) return all;
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
        const auto extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp") continue;
        std::ifstream stream(entry.path());
        std::smatch match;
        for (std::string line; std::getline(stream, line);) {
            if (!std::regex_search(line, match, pattern)) continue;
            all.push_back({fs::relative(entry.path(), kRoot).string(), match[2], match[1] == "<"});
        }
    }
    return all;
}

/// The layers that each layer may include, itself besides.
const std::map<std::string, std::set<std::string>> kMayInclude = {
    {"Platform/Foundation", {}},
    {"Platform/Geometry", {"Platform/Foundation"}},
    {"Platform/Media", {"Platform/Foundation", "Platform/Geometry"}},
    {"Platform/Drawing", {"Platform/Foundation", "Platform/Geometry", "Platform/Media"}},
    {"Platform/ImageGraph",
     {"Platform/Foundation", "Platform/Geometry", "Platform/Media", "Platform/Drawing"}},
    {"QVFilterCore", {"Platform/"}},
    {"QVALObjectContour", {"Platform/"}},
    {"QVFilterExtension", {"Platform/", "QVFilterCore", "QVALObjectContour"}},
    {"Host", {"Platform/", "QVFilterCore", "QVALObjectContour", "QVFilterExtension"}},
};

TEST(Layers, IncludesPointDownOnly) {
    for (const auto& [layer, allowed] : kMayInclude) {
        for (const Include& include : includesBelow(layer)) {
            if (include.angled) continue;
            bool fine = include.target.starts_with(layer + "/");
            for (const std::string& lower : allowed) fine |= include.target.starts_with(lower);
            // A header beside the file that includes it.
            fine |= layer == "Host" && include.target.find('/') == std::string::npos;
            EXPECT_TRUE(fine) << include.file << " includes " << include.target;
        }
    }
}

TEST(Layers, OutsideLibrariesStayInTheirFolders) {
    const std::vector<std::pair<std::regex, std::string>> homes = {
        {std::regex("^vulkan/"), "Platform/ImageGraph/Vulkan/"},
        {std::regex("^(cairo|ft2build|freetype|fontconfig/)"), "Platform/Drawing/"},
        {std::regex("^(libav|libsw|png|jpeglib|libyuv)"), "Platform/Media/"},
        {std::regex("^opencv2/"), "QVALObjectContour/"},
        {std::regex("^(CLI/|nlohmann/)"), "Host/"},
    };
    for (const char* folder :
         {"Platform", "QVFilterCore", "QVALObjectContour", "QVFilterExtension", "Host"}) {
        for (const Include& include : includesBelow(folder)) {
            if (include.file.starts_with("QVFilterExtension/Resources/")) continue;  // programs of the build
            for (const auto& [library, home] : homes) {
                if (!std::regex_search(include.target, library)) continue;
                EXPECT_TRUE(include.file.starts_with(home)) << include.file << " includes " << include.target;
            }
        }
    }
}

TEST(Layers, PublicHeadersIncludeOnlyEachOtherAndTheStandardLibrary) {
    std::set<std::string> publicHeaders;
    std::ifstream list(QV_PUBLIC_HEADERS);
    for (std::string line; std::getline(list, line);) publicHeaders.insert(line);
    ASSERT_GT(publicHeaders.size(), 20u);
    for (const char* folder : {"Platform", "QVFilterCore", "QVALObjectContour", "QVFilterExtension"}) {
        for (const Include& include : includesBelow(folder)) {
            if (!publicHeaders.contains(include.file)) continue;
            const bool standard = include.angled && include.target.find_first_of("/.") == std::string::npos;
            EXPECT_TRUE(standard || publicHeaders.contains(include.target))
                << include.file << " includes " << include.target;
        }
    }
}

}  // namespace
