#include "Host/Gallery/CardStore.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <system_error>

#include "Host/Clips/PictureFile.h"
#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/SmallFiles.h"
#include "Host/Listing/ClassListing.h"
#include "Host/Listing/ClassUsage.h"
#include "Platform/Foundation/Hash.h"
#include "Platform/Foundation/OutputFile.h"
#include "Platform/Media/ClipWriter.h"
#include "Platform/Media/ImageFile.h"

#include <nlohmann/json.hpp>

namespace qv::host {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kRecord = "card.json", kUnfinished = ".unfinished";
constexpr int kJPEGQuality = 84;

/// Bytes of a preview of 320x180; other sizes in proportion, but for what a file needs at least.
constexpr double kBytesPerPixel = 60000.0 / (320 * 180), kFewestBytes = 12000;
/// The quality to begin with, and the last one, at which everything fits.
constexpr double kFirstCRF = 27, kLastCRF = 51;
/// x264 halves its output with about six more.
constexpr double kCRFPerHalving = 6;

[[noreturn]] void failToWrite(const fs::path& path, const std::error_code& error) {
    fail(ExitCode::output, "{}", fileErrorLine("write", path.string(), error.message()));
}

void writeJPEGFile(const Bitmap& bitmap, const fs::path& path) {
    std::string cause;
    if (!writeJPEG(bitmap, path.string(), kJPEGQuality, &cause)) fail(ExitCode::output, "{}", cause);
}

std::int64_t sizeOf(const fs::path& path) {
    std::error_code error;
    const auto size = fs::file_size(path, error);
    if (error) failToWrite(path, error);
    return std::int64_t(size);
}

/// A folder beside the one that it is to become.
class UnfinishedFolder {
  public:
    explicit UnfinishedFolder(const fs::path& finished)
        : finished_(finished), path_(finished.string() + std::string(kUnfinished)) {
        fs::remove_all(path_, ignored_);
        makeFolder(path_);
    }
    ~UnfinishedFolder() { fs::remove_all(path_, ignored_); }
    UnfinishedFolder(const UnfinishedFolder&) = delete;
    UnfinishedFolder& operator=(const UnfinishedFolder&) = delete;

    const fs::path& path() const { return path_; }
    void finish() {
        std::error_code error;
        fs::remove_all(finished_, error);
        if (!error) fs::rename(path_, finished_, error);
        if (error) failToWrite(finished_, error);
    }

  private:
    fs::path finished_, path_;
    std::error_code ignored_;
};

void encode(const std::vector<PixelBuffer>& frames, const fs::path& path, double crf) {
    ClipVideoFormat video;
    video.width = frames.front().width();
    video.height = frames.front().height();
    video.timeBase = {1, kPreviewRate};
    video.averageFrameRate = {kPreviewRate, 1};
    video.pixelFormat = frames.front().format();
    video.color = frames.front().color();
    video.tags = {.primaries = 1, .transfer = 1, .matrix = 1, .rangeIsKnown = true};
    ClipWriterOptions options;
    options.codec = "libx264";
    options.crf = crf;
    options.preset = "medium";
    options.threads = 1;  // cards are encoded side by side
    options.options = {{"movflags", "+faststart"}};
    options.bitstreamFilters = "filter_units=remove_types=6";  // x264's signature, which is a part of 60 kB
    std::string cause;
    const auto writer = ClipWriter::create(path.string(), video, options, nullptr, &cause);
    if (!writer) fail(ExitCode::output, "{}", cause);
    std::int64_t time = 0;
    for (const PixelBuffer& frame : frames) {
        if (!writer->write(ClipFrame{frame, time++, 1})) fail(ExitCode::output, "{}", writer->error());
    }
    if (!writer->finish()) fail(ExitCode::output, "{}", writer->error());
}

}  // namespace

CardStore::CardStore(fs::path directory, PixelSize preview, std::string runKey)
    : cards_(std::move(directory) / "cards"), preview_(preview), runKey_(std::move(runKey)) {
    makeFolder(cards_);
    std::error_code ignored;
    std::vector<fs::path> left;
    for (const auto& entry : fs::directory_iterator(cards_, ignored)) {
        if (entry.path().extension() == kUnfinished) left.push_back(entry.path());
    }
    for (const fs::path& each : left) fs::remove_all(each, ignored);
}

fs::path CardStore::folderOf(const QVFilterClass& filterClass) const {
    return cards_ / filterClass.name;
}

std::string CardStore::keyOf(const QVFilterClass& filterClass) const {
    return fmt::format("{:016x}", hashOf(runKey_ + classToJSON(filterClass).dump()));
}

std::optional<Json> CardStore::finished(const QVFilterClass& filterClass) const {
    const Json record = Json::parse(readFile(folderOf(filterClass) / kRecord), nullptr, false);
    if (!record.is_object() || record.value("key", "") != keyOf(filterClass)) return std::nullopt;
    return record["card"];
}

std::int64_t CardStore::previewBudget() const {
    return std::int64_t(std::max(kFewestBytes, kBytesPerPixel * preview_.width * preview_.height));
}

/// Noise and quick motion take more passes, each as much coarser as the last one was too large.
Json CardStore::writePreview(const std::vector<PixelBuffer>& frames, const fs::path& path) const {
    double crf = kFirstCRF;
    while (true) {
        encode(frames, path, crf);
        const std::int64_t bytes = sizeOf(path);
        if (bytes < previewBudget() || crf >= kLastCRF)
            return {{"file", path.filename()}, {"bytes", bytes}, {"crf", crf}};
        const double halvings = std::log2(double(bytes) / double(previewBudget()));
        crf = std::min(kLastCRF, crf + std::max(1.0, std::ceil(halvings * kCRFPerHalving)));
    }
}

Json CardStore::write(const QVFilterClass& filterClass, Json card, const CardPictures& pictures) const {
    UnfinishedFolder folder(folderOf(filterClass));
    const auto add = [&](const Bitmap& bitmap, const std::string& name) {
        const std::string file = name + ".jpg";
        writeJPEGFile(bitmap, folder.path() / file);
        return file;
    };
    card["command"] = usageCommand(filterClass, {});
    card["snippet"] = usageSnippet(filterClass, {});
    card["preview"] = writePreview(pictures.frames, folder.path() / "preview.mp4");
    card["moment"] = pictures.moment;
    card["changes"] = pictures.changes;
    if (const auto& sweep = pictures.sweep) {
        card["sweep"] = {{"property", sweep->property->name},
                         {"from", shortestNumber(sweep->from)},
                         {"to", shortestNumber(sweep->to)}};
    }
    card["after"] = add(pictures.after, "after");
    card["before"] = add(pictures.before, "before");
    if (pictures.incoming) card["incoming"] = add(pictures.incoming, "incoming");
    card["stills"] = Json::array();
    for (const CardStill& still : pictures.stills) {
        const std::string setting = fmt::format("{}={}", still.property, still.value);
        card["stills"].push_back(
            {{"property", still.property},
             {"label", still.label},
             {"value", still.value},
             {"file", add(still.picture, fmt::format("{}-{}", still.property, still.value))},
             {"command", usageCommand(filterClass, setting)},
             {"snippet", usageSnippet(filterClass, setting)}});
    }
    writeFile(folder.path() / kRecord, dump({{"key", keyOf(filterClass)}, {"card", card}}));
    folder.finish();
    return card;
}

}  // namespace qv::host
