// Which folder may include what: read from the sources themselves.

#include <gtest/gtest.h>

#include <algorithm>
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
    {"QVFilterExtension/Resources", {"Platform/"}},
    {"Bindings", {"Platform/", "QVFilterCore", "QVFilterExtension"}},
    {"QVPersonMask", {"Platform/"}},
    {"Examples/DemoFootage", {"Platform/", "QVFilterExtension/Resources/Assets/Support/"}},
};

/// The tool's rooms, each with those that it may include besides the library.
const std::map<std::string, std::set<std::string>> kToolMayInclude = {
    {"CommandLine", {}},
    {"Clips", {"CommandLine"}},
    {"Sheets", {"CommandLine", "Clips"}},
    {"Edit", {"CommandLine", "Clips"}},
    {"Farm", {"CommandLine", "Clips", "Edit"}},
    {"Listing", {"CommandLine", "Clips", "Sheets"}},
    {"Gallery", {"CommandLine", "Clips", "Sheets", "Listing"}},
    {"Studio", {"CommandLine", "Clips", "Sheets", "Edit", "Listing", "Gallery"}},
    {"Commands", {"CommandLine", "Clips", "Sheets", "Edit", "Farm", "Listing", "Gallery", "Studio"}},
};

/// Those that are installed.
std::set<std::string> publicHeaders() {
    std::set<std::string> names;
    std::ifstream list(QV_PUBLIC_HEADERS);
    for (std::string line; std::getline(list, line);) names.insert(line);
    return names;
}

TEST(Layers, IncludesPointDownOnly) {
    for (const auto& [layer, allowed] : kMayInclude) {
        for (const Include& include : includesBelow(layer)) {
            if (include.angled) continue;
            bool fine = include.target.starts_with(layer + "/");
            for (const std::string& lower : allowed) fine |= include.target.starts_with(lower);
            EXPECT_TRUE(fine) << include.file << " includes " << include.target;
        }
    }
}

TEST(Layers, PrivateRoomsAreEnteredFromTheirOwnLayer) {
    for (const char* folder : {"Platform", "QVFilterCore", "QVALObjectContour", "QVFilterExtension",
                               "QVPersonMask", "Host", "Examples", "Benchmarks"}) {
        for (const Include& include : includesBelow(folder)) {
            const std::size_t room = include.target.find("/Private/");
            if (room == std::string::npos) continue;
            EXPECT_TRUE(include.file.starts_with(include.target.substr(0, room + 1)))
                << include.file << " includes " << include.target;
        }
    }
}

TEST(Layers, ToolAndExamplesUsePublicHeaders) {
    const std::set<std::string> headers = publicHeaders();
    for (const char* folder : {"Host", "Bindings", "Examples/RenderStill", "Examples/HostDevice"}) {
        const std::vector<Include> all = includesBelow(folder);
        EXPECT_FALSE(all.empty()) << folder;
        for (const Include& include : all) {
            const bool own = include.target.starts_with(std::string(folder) + "/") ||
                             fs::exists(kRoot / folder / include.target);
            // What the tool exports is what other hosts get.
            const bool described = include.target == "Bindings/Plugin/PluginClass.h";
            EXPECT_TRUE(include.angled || own || described || headers.contains(include.target))
                << include.file << " includes " << include.target;
        }
    }
}

TEST(Layers, RoomsOfTheToolPointDownOnly) {
    for (const auto& entry : fs::directory_iterator(kRoot / "Host")) {
        if (!entry.is_directory()) continue;
        const std::string room = entry.path().filename().string();
        ASSERT_TRUE(kToolMayInclude.contains(room)) << room << " is a new room: which others may it include?";
        for (const Include& include : includesBelow("Host/" + room)) {
            if (!include.target.starts_with("Host/")) continue;
            const std::string other = include.target.substr(5, include.target.find('/', 5) - 5);
            EXPECT_TRUE(other == room || kToolMayInclude.at(room).contains(other))
                << include.file << " includes " << include.target;
        }
    }
}

TEST(Layers, OutsideLibrariesStayInTheirFolders) {
    const std::vector<std::pair<std::regex, std::vector<std::string>>> homes = {
        {std::regex("^vulkan/"), {"Platform/ImageGraph/Vulkan/"}},
        {std::regex("^llvm"), {"Platform/ImageGraph/Native/Compiler/"}},
        {std::regex("^(cairo|ft2build|freetype|fontconfig/)"), {"Platform/Drawing/"}},
        {std::regex("^(libav|libsw|webp/|png|jpeglib|libyuv)"), {"Platform/Media/"}},
        {std::regex("^opencv2/"), {"QVALObjectContour/", "QVPersonMask/"}},
        {std::regex("^CLI/"), {"Host/CommandLine/CommandParser.cpp"}},
        {std::regex("^httplib"), {"Host/Studio/StudioServer.cpp"}},
        {std::regex("^nlohmann/"), {"Host/", "Bindings/C/", "QVFilterExtension/QVFilterClassJSON.cpp"}},
    };
    for (const char* folder : {"Platform", "QVFilterCore", "QVALObjectContour", "QVFilterExtension",
                               "QVPersonMask", "Bindings", "Host"}) {
        for (const Include& include : includesBelow(folder)) {
            if (include.file.starts_with("QVFilterExtension/Resources/")) continue;  // programs of the build
            for (const auto& [library, rooms] : homes) {
                if (!std::regex_search(include.target, library)) continue;
                EXPECT_TRUE(std::ranges::any_of(
                    rooms, [&](const std::string& room) { return include.file.starts_with(room); }))
                    << include.file << " includes " << include.target;
            }
        }
    }
}

TEST(Layers, PublicHeadersIncludeOnlyEachOtherAndTheStandardLibrary) {
    const std::set<std::string> headers = publicHeaders();
    ASSERT_GT(headers.size(), 20u);
    for (const char* folder :
         {"Platform", "QVFilterCore", "QVALObjectContour", "QVFilterExtension", "QVPersonMask"}) {
        for (const Include& include : includesBelow(folder)) {
            if (!headers.contains(include.file)) continue;
            const bool standard = include.angled && include.target.find_first_of("/.") == std::string::npos;
            EXPECT_TRUE(standard || headers.contains(include.target))
                << include.file << " includes " << include.target;
        }
    }
}

}  // namespace
