#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Foundation/BackgroundQueue.h"
#include "Platform/Foundation/CMTime.h"
#include "Platform/Foundation/Log.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSCache.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

TEST(NSCache, DropsTheLeastRecentlyUsedAndKeepsNoNil) {
    NSCache<std::string, std::shared_ptr<int>> cache(2);
    auto value = [](int number) { return std::make_shared<int>(number); };
    cache.setObject(value(1), "a");
    cache.setObject(value(2), "b");
    EXPECT_EQ(**cache.objectForKey("a"), 1);  // now "b" is the older one
    cache.setObject(value(3), "c");
    EXPECT_EQ(cache.count(), 2u);
    EXPECT_FALSE(cache.objectForKey("b"));
    cache.setObject(value(4), "a");  // replacing drops nothing
    EXPECT_EQ(**cache.objectForKey("a"), 4);
    EXPECT_EQ(**cache.objectForKey("c"), 3);

    int made = 0;
    auto nothing = [&] { return ++made, std::shared_ptr<int>(); };
    EXPECT_EQ(cache.objectForKey("d", nothing), nullptr);
    EXPECT_EQ(cache.objectForKey("d", nothing), nullptr);
    EXPECT_EQ(made, 2);
    EXPECT_EQ(cache.count(), 2u);
}

TEST(NSCache, HoldsAnyNumberWithoutALimitFromManyThreads) {
    NSCache<int, std::shared_ptr<int>> cache;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 2000; ++i)
                EXPECT_EQ(*cache.objectForKey(i, [i] { return std::make_shared<int>(i); }), i);
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(cache.count(), 2000u);
}

TEST(CMTime, RoundsToTheNearestTickAndSaturates) {
    EXPECT_EQ(CMTimeMakeWithSeconds(1.0 / 3, 600), (CMTime{200, 600}));
    EXPECT_EQ(CMTimeMakeWithSeconds(-0.26, 10), (CMTime{-3, 10}));
    EXPECT_EQ(CMTimeMakeWithSeconds(2.5, 0), (CMTime{3, 1}));
    EXPECT_EQ(CMTimeMakeWithSeconds(1e300, 600).value, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(CMTimeMakeWithSeconds(-INFINITY, 600).value, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(CMTimeMakeWithSeconds(NAN, 600), (CMTime{0, 600}));
    EXPECT_EQ(CMTimeGetSeconds({90000, 90000}), 1.0);
    EXPECT_EQ(CMTimeGetSeconds({5, 0}), 0.0);
}

TEST(BackgroundQueue, RunsInOrderDrainsAndFinishesBeforeItEnds) {
    std::vector<int> order;
    auto held = std::make_shared<int>();
    {
        BackgroundQueue queue;
        for (int i = 0; i < 500; ++i) queue.async([&order, held, i] { order.push_back(i); });
        queue.drain();
        ASSERT_EQ(order.size(), 500u);
        EXPECT_EQ(held.use_count(), 1);  // what the tasks held is let go by then
        queue.drain();                   // nothing to wait for
        queue.async([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            order.push_back(500);
        });
    }
    for (int i = 0; i <= 500; ++i) ASSERT_EQ(order.at(i), i);
}

TEST(Log, SendsWholeLinesToTheSinkOneAtATime) {
    std::vector<std::string> lines;
    setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    logLine("first\r\nsecond");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 250; ++i) logLine("from a thread");
        });
    for (auto& thread : threads) thread.join();
    setLogSink({});
    EXPECT_EQ(lines.size(), 1001u);
    EXPECT_EQ(lines.front(), "first  second");

    testing::internal::CaptureStderr();
    logLine("to standard error");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "to standard error\n");
}

class BundleTest : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(root / "b.bundle/sub.bundle");
        for (const char* name : {"b.bundle/x.png", "b.bundle/sub.bundle/y", "secret"})
            std::ofstream(root / name) << "!";
        fs::create_directory_symlink(root, root / "b.bundle/link");
    }
    void TearDown() override { fs::remove_all(root); }

    fs::path root = fs::temp_directory_path() / ("bundle-test-" + std::to_string(getpid()));
};

TEST_F(BundleTest, FindsResourcesAndNeverLeaves) {
    auto path = (root / "b.bundle").string();
    auto bundle = NSBundle::bundleWithPath(path + "/");
    ASSERT_TRUE(bundle);
    EXPECT_EQ(bundle->path(), path);
    EXPECT_EQ(bundle->pathForResource("x.png"), path + "/x.png");
    EXPECT_EQ(bundle->pathForResource("x", "png"), path + "/x.png");
    EXPECT_EQ(bundle->pathForResource("sub", "bundle"), path + "/sub.bundle");
    EXPECT_EQ(bundle->pathForResource("sub.bundle/../x.png"), path + "/x.png");
    for (std::string name : {"missing", "", ".", "sub.bundle/..", "../secret", "sub.bundle/../../secret",
                             "link/../secret", "/etc/hostname", "//x.png"})
        EXPECT_FALSE(bundle->pathForResource(name)) << name;
    EXPECT_FALSE(bundle->pathForResource("a", "/../../secret"));
    EXPECT_FALSE(bundle->pathForResource(std::string("x.png\0.txt", 10)));
    EXPECT_FALSE(NSBundle::bundleWithPath(path + "/x.png"));
    EXPECT_FALSE(NSBundle::bundleWithPath(path + "/missing"));
    EXPECT_FALSE(NSBundle::bundleWithPath(""));
}

TEST_F(BundleTest, KeepsItsPlaceWhenTheProcessMoves) {
    auto before = fs::current_path();
    fs::current_path(root);
    auto bundle = NSBundle::bundleWithPath("b.bundle");
    fs::current_path(before);
    ASSERT_TRUE(bundle);
    EXPECT_TRUE(bundle->pathForResource("x.png"));
}

}  // namespace
}  // namespace qv
