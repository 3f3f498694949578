// What a program that loads the library gets to see.

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>
#include <string>

namespace {

TEST(ExportedSymbols, AreOnlyTheNamespaceAndWhatItsClassesNeed) {
    static const std::regex ours(
        R"(((typeinfo|typeinfo name|vtable|VTT|guard variable) for |.*thunk to )?qv::.*)");
    std::FILE* pipe = ::popen("nm -DC --defined-only '" QV_LIBRARY "'", "r");
    ASSERT_TRUE(pipe);
    int count = 0, types = 0, tables = 0;
    char text[65536];
    while (std::fgets(text, sizeof text, pipe)) {
        const std::string line(text, std::string(text).find_last_not_of('\n') + 1);
        if (line.size() < 20) continue;
        const std::string name = line.substr(19);  // after an address and a letter
        EXPECT_TRUE(std::regex_match(name, ours)) << name;
        ++count;
        // Without these a program could neither cast to a class of the library nor derive from it.
        types += name == "typeinfo for qv::QVEffectMTIFilter";
        tables += name == "vtable for qv::QVEffectMTIFilter";
    }
    EXPECT_EQ(::pclose(pipe), 0);
    EXPECT_GT(count, 100);
    EXPECT_EQ(types, 1);
    EXPECT_EQ(tables, 1);
}

}  // namespace
