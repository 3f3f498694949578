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

    // A link is written through, an existing file keeps its permissions.
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    std::filesystem::create_symlink("text", folder / "link");
    ASSERT_TRUE(writeWholeFile(folder / "link", "two"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(readBytes(path), "two");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));

    for (const auto& [where, cause] : {std::pair(folder / "none/text", "No such file or directory"),
                                       {folder / "", "Is a directory"},
                                       {"/dev/full", "No space left on device"}}) {
        std::string error;
        EXPECT_FALSE(writeWholeFile(where, bytes, &error));
        EXPECT_NE(error.find(where), std::string::npos) << error;
        EXPECT_NE(error.find(cause), std::string::npos) << error;
    }
}

}  // namespace
}  // namespace qv
