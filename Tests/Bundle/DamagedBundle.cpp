// What becomes of the classes when a file of the resource bundle is missing, truncated or garbled. In a
// program of its own, since what has once been loaded is never looked for again.

#include <gmock/gmock.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "Platform/Foundation/Log.h"
#include "QVFilterCore/QVResourceBundle.h"
#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Support/SceneClip.h"
#include "Tests/Support/SweepInputs.h"

namespace qv {
namespace {

namespace fs = std::filesystem;

/// Which files of a folder are opened.
class OpenedFiles {
  public:
    explicit OpenedFiles(const std::string& folder) : events_(inotify_init1(IN_NONBLOCK)) {
        EXPECT_GE(inotify_add_watch(events_, folder.c_str(), IN_OPEN), 0);
    }
    ~OpenedFiles() { close(events_); }
    OpenedFiles(const OpenedFiles&) = delete;
    OpenedFiles& operator=(const OpenedFiles&) = delete;

    /// Whether this one was, since the last call.
    bool take(const std::string& name) {
        alignas(inotify_event) char buffer[16384];
        bool found = false;
        for (ssize_t bytes; (bytes = read(events_, buffer, sizeof buffer)) > 0;) {
            for (const char* at = buffer; at < buffer + bytes;) {
                const auto* event = reinterpret_cast<const inotify_event*>(at);
                found = found || (event->len > 0 && name == event->name);
                at += sizeof *event + event->len;
            }
        }
        return found;
    }

  private:
    int events_;
};

constexpr int kSettings = 8, kWidth = 32, kHeight = 18;

/// Images of a new filter at several times, levels and values of its selectors, so that it asks for every
/// asset that it knows; nil ones are left out.
std::vector<MTIImage> imagesOf(const QVFilterClass& record) {
    const auto filter = record.create();
    test::setInputs(*filter, kWidth, kHeight);
    std::vector<MTIImage> images;
    for (int i = 0; i < kSettings; ++i) {
        for (const QVProperty* property : record.allProperties()) {
            const double values = property->maximum - property->minimum + 1;
            if (property->type == QVPropertyType::integer && values < 100)
                property->set(*filter, std::int64_t(property->minimum) + i % int(values));
            if (property->type == QVPropertyType::timeRange)
                property->set(*filter,
                              CMTimeRange{CMTimeMakeWithSeconds(i, 600), CMTimeMakeWithSeconds(2, 600)});
        }
        test::setMoment(*filter, double(i % 3) / 2);
        if (MTIImage image = filter->outputImage()) images.push_back(std::move(image));
    }
    return images;
}

/// The image of a look that chooses its assets by the time, at full strength in one of many moments.
constexpr int kMoments = 900;
MTIImage imageAtMoment(QVMTIFilter& filter, int moment) {
    test::setNumber(filter, "effectValue", 1);
    test::setNumber(filter, "iTime", moment * 0.137);
    return filter.outputImage();
}

class DamagedBundle : public testing::Test {
  protected:
    DamagedBundle() {
        source_ = resourceBundle()->path();
        fs::create_directory(bundle_);
        setLogSink([this](std::string_view line) { lines_.emplace_back(line); });
    }
    ~DamagedBundle() override {
        setLogSink({});
        setResourceBundlePath("");
    }

    void restore(const std::string& name) {
        fs::copy_file(source_ / name, bundle_ / name, fs::copy_options::overwrite_existing);
    }
    void truncate(const std::string& name) {
        restore(name);
        fs::resize_file(bundle_ / name, fs::file_size(source_ / name) * 2 / 3);
    }
    void garble(const std::string& name) {
        std::string bytes = readBytes(source_ / name);
        for (std::size_t i = 40; i < bytes.size(); i += 61) bytes[i] = char(bytes[i] ^ 0x5A);
        writeBytes(bundle_ / name, bytes);
    }

    /// Looks at the classes with the file in each of its states and returns those that opened it.
    std::vector<const QVFilterClass*> lookWhileDamaged(const std::string& name) {
        std::vector<const QVFilterClass*> users;
        OpenedFiles opened(bundle_);
        truncate(name);
        for (const QVFilterClass* record : allFilterClasses()) {
            const auto images = imagesOf(*record);
            if (opened.take(name)) users.push_back(record);
            if (!users.empty() && users.back() == record) expectPictures(images, name);
        }
        expectFewLines(name);
        if (users.empty()) return lookForLong(name, opened);
        garble(name);
        for (const QVFilterClass* record : users) expectPictures(imagesOf(*record), name);
        expectFewLines(name);
        fs::remove(bundle_ / name);
        for (const QVFilterClass* record : users) expectPictures(imagesOf(*record), name);
        expectFewLines(name);
        return users;
    }
    /// The same for an asset that a look shows now and then.
    std::vector<const QVFilterClass*> lookForLong(const std::string& name, OpenedFiles& opened) {
        for (const QVFilterClass* record : allFilterClasses()) {
            if (record->categoryOrInherited() != QVFilterCategory::film || !record->property("iTime"))
                continue;
            const auto filter = record->create();
            test::setInputs(*filter, kWidth, kHeight);
            for (int moment = 0; moment < kMoments; ++moment) {
                const MTIImage image = imageAtMoment(*filter, moment);
                if (!opened.take(name)) continue;
                expectPictures({image}, name);
                garble(name);
                expectPictures({imageAtMoment(*filter, moment)}, name);
                fs::remove(bundle_ / name);
                expectPictures({imageAtMoment(*filter, moment)}, name);
                expectFewLines(name);
                return {record};
            }
        }
        return {};
    }
    void expectPictures(const std::vector<MTIImage>& images, const std::string& name) {
        for (std::size_t i = 0; i < images.size(); i += 3) {
            std::string error;
            EXPECT_TRUE(test::context()->renderToBitmap(images[i], &error)) << name << ": " << error;
        }
    }
    void expectFewLines(const std::string& name) {
        // Of each missing sprite there is a line.
        std::erase_if(lines_, [](const std::string& line) { return line.starts_with("init spiritTexture"); });
        EXPECT_LE(lines_.size(), 1u) << name << ": " << testing::PrintToString(lines_);
        lines_.clear();
    }

    test::TemporaryFileFolder folder_;  // damaged scenes leave no frames for others
    fs::path bundle_ = folder_ / "a.bundle", source_;
    std::vector<std::string> lines_;
};

TEST_F(DamagedBundle, IsNilOrAPictureAndIsLookedForAgain) {
    const std::string library = "default.shaderlib";
    setResourceBundlePath(folder_ / "none.bundle");
    for (const QVFilterClass* record : allFilterClasses()) expectPictures(imagesOf(*record), "no bundle");
    expectFewLines("no bundle");
    setResourceBundlePath(bundle_);
    lookWhileDamaged(library);
    restore(library);

    std::vector<std::string> assets;
    for (const auto& entry : fs::directory_iterator(source_)) {
        if (entry.path().filename() != library) assets.push_back(entry.path().filename());
    }
    std::ranges::sort(assets);
    ASSERT_GT(assets.size(), 30u) << "the assets have not been drawn";
    for (const std::string& name : assets) {
        EXPECT_FALSE(lookWhileDamaged(name).empty()) << "nothing opened " << name;
        restore(name);
    }
    for (const QVFilterClass* record : allFilterClasses())
        EXPECT_EQ(imagesOf(*record).size(), kSettings) << record->name;
}

}  // namespace
}  // namespace qv
