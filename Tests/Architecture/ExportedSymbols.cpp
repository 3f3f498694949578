// What a program that loads the library gets to see.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <regex>
#include <string>
#include <vector>

namespace {

/// The names that a shared object exports.
std::vector<std::string> exportedBy(const std::string& library) {
    std::vector<std::string> names;
    std::FILE* pipe = ::popen(("nm -DC --defined-only '" + library + "'").c_str(), "r");
    char text[65536];
    while (pipe && std::fgets(text, sizeof text, pipe)) {
        const std::string line(text, std::string(text).find_last_not_of('\n') + 1);
        if (line.size() >= 20) names.push_back(line.substr(19));  // after an address and a letter
    }
    EXPECT_TRUE(pipe && ::pclose(pipe) == 0) << library;
    return names;
}

TEST(ExportedSymbols, AreOnlyTheNamespaceAndWhatItsClassesNeed) {
    static const std::regex ours(
        R"(((typeinfo|typeinfo name|vtable|VTT|guard variable) for |.*thunk to )?qv::.*)");
    const std::vector<std::string> names = exportedBy(QV_LIBRARY);
    EXPECT_GT(names.size(), 100u);
    for (const std::string& name : names) EXPECT_TRUE(std::regex_match(name, ours)) << name;
    // Without these a program could neither cast to a class of the library nor derive from it.
    EXPECT_EQ(std::count(names.begin(), names.end(), "typeinfo for qv::QVEffectMTIFilter"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "vtable for qv::QVEffectMTIFilter"), 1);
#ifdef QV_PERSON_MASK_LIBRARY
    for (const std::string& name : exportedBy(QV_PERSON_MASK_LIBRARY))
        EXPECT_TRUE(std::regex_match(name, ours)) << name;
#endif
#ifdef QV_NATIVE_LIBRARY
    EXPECT_EQ(exportedBy(QV_NATIVE_LIBRARY), std::vector<std::string>{"qvNativeCompiler"});
#endif
}

}  // namespace
