#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "Platform/Foundation/Hash.h"
#include "Platform/Foundation/OutputFile.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv {
namespace {

TEST(Hash, GivesThePublishedValues) {
    EXPECT_EQ(hashOf(""), 0xCBF29CE484222325u);
    EXPECT_EQ(hashOf("a"), 0xAF63DC4C8601EC8Cu);
    EXPECT_EQ(hashOf("foobar"), 0x85944171F73967E8u);
    EXPECT_EQ(hashOf("bar", hashOf("foo")), hashOf("foobar"));
    const std::uint8_t bytes[] = {'f', 'o', 'o', 'b', 'a', 'r'};
    EXPECT_EQ(hashOfMemory(bytes, 6), hashOf("foobar"));
}

TEST(OutputFile, ReplacesAFileWholeOrLeavesIt) {
    const TemporaryFolder folder;
    const std::string path = folder / "text", bytes("one\0two", 7);
    ASSERT_TRUE(writeWholeFile(path, "a longer text than the next"));
    ASSERT_TRUE(writeWholeFile(path, bytes));
    EXPECT_EQ(readBytes(path), bytes);

    {
        const auto unfinished = OutputFile::open(path);
        ASSERT_TRUE(unfinished && unfinished->write("x", 1));
    }
    EXPECT_EQ(readBytes(path), bytes);
    EXPECT_EQ(folder.fileCount(), 1u);

    std::string error;
    EXPECT_FALSE(writeWholeFile(folder / "none/text", bytes, &error));
    EXPECT_NE(error.find("none/text"), std::string::npos);
}

}  // namespace
}  // namespace qv
