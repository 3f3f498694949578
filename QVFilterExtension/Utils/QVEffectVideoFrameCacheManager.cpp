#include "QVFilterExtension/Utils/QVEffectVideoFrameCacheManager.h"

#include <cstdlib>
#include <filesystem>
#include <new>

#include "Platform/Foundation/OutputFile.h"
#include "Platform/Media/ImageFile.h"
#include "Platform/Media/PixelConversion.h"

namespace qv {

namespace {

namespace fs = std::filesystem;

constexpr int kJPEGQuality = 80;
/// Files that may wait to be written; on a disk that is slower than that, later frames are left for another
/// time.
constexpr int kMostPendingFiles = 64;

/// The time in units of the clip's, with whole runs of the clip taken off.
CMTime wrappedTime(CMTime time, CMTime duration) {
    CMTime wrapped = CMTimeMakeWithSeconds(CMTimeGetSeconds(time), duration.timescale);
    if (duration.value != 0) wrapped.value %= duration.value;
    return wrapped;
}

/// The file of a frame; empty without a frame.
std::vector<std::uint8_t> fileOf(const PixelBuffer& buffer) try {
    if (!buffer) return {};
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(buffer.width()) *
                                                              std::size_t(buffer.height()) * 4);
    const Bitmap bitmap{buffer.width(), buffer.height(), pixels};
    if (!convertToRGBA8(buffer, pixels->data(), bitmap.rowBytes())) return {};
    return jpegBytes(bitmap, kJPEGQuality);
} catch (const std::bad_alloc&) {
    return {};
}

void writeFile(const std::vector<std::uint8_t>& file, const std::string& path) {
    // The temporary folder is everybody's: a link could lead out of it, and a pipe would wait for a reader.
    std::error_code ignored;
    const fs::file_type there = fs::symlink_status(path, ignored).type();
    if (file.empty() || (there != fs::file_type::not_found && there != fs::file_type::regular)) return;
    writeWholeFile(path, {reinterpret_cast<const char*>(file.data()), file.size()});
}

}  // namespace

QVEffectVideoFrameCacheManager& QVEffectVideoFrameCacheManager::sharedManager() {
    static QVEffectVideoFrameCacheManager manager;
    return manager;
}

MTIImage QVEffectVideoFrameCacheManager::imageFromVideo(const std::string& videoPath, CMTime time) {
    const auto decoder = decoderForVideo(videoPath);
    const CMTime wrapped = wrappedTime(time, decoder->duration());
    const std::string path = frameCachePathWithDecoder(*decoder, wrapped);
    std::error_code ignored;
    // A pipe of that name would never end.
    if (fs::is_regular_file(path, ignored)) {
        if (MTIImage image = MTIImage::imageWithContentsOfFile(path, MTIAlphaType::alphaIsOne)) return image;
    }
    return decodeImageFromVideo(videoPath, wrapped);
}

MTIImage QVEffectVideoFrameCacheManager::decodeImageFromVideo(const std::string& videoPath, CMTime time) {
    const auto decoder = decoderForVideo(videoPath);
    const std::int64_t index = decoder->frameIndexWithTime(time);
    std::vector<std::uint8_t> file = fileOf(decoder->frameBufferWithTime(decoder->timeOfFrameIndex(index)));
    const MTIImage image = MTIImage::imageWithBitmap(readImageBytes(file), MTIAlphaType::alphaIsOne);
    if (!image || pendingFiles_ >= kMostPendingFiles) return image;
    ++pendingFiles_;
    const bool queued = writing_.async([this, videoPath, index, file = std::move(file)] {
        writeFile(file, frameCachePathWithVideo(videoPath, index));
        --pendingFiles_;
    });
    if (!queued) --pendingFiles_;
    return image;
}

std::shared_ptr<QVVideoDecoder> QVEffectVideoFrameCacheManager::decoderForVideo(
    const std::string& videoPath) {
    auto decoder =
        decoderCache_.objectForKey(videoPath, [&] { return std::make_shared<QVVideoDecoder>(videoPath); });
    decoder->setupAssetReader();
    return decoder;
}

std::string QVEffectVideoFrameCacheManager::frameCachePathWithDecoder(const QVVideoDecoder& decoder,
                                                                      CMTime time) const {
    return frameCachePathWithVideo(decoder.videoPath(), decoder.frameIndexWithTime(time));
}

std::string QVEffectVideoFrameCacheManager::frameCachePathWithVideo(const std::string& videoPath,
                                                                    std::int64_t index) const {
    return frameCacheDirPathForVideo(videoPath) + "/" + std::to_string(index);
}

void QVEffectVideoFrameCacheManager::cacheBuffer(const PixelBuffer& buffer, const std::string& path) const {
    writeFile(fileOf(buffer), path);
}

std::string QVEffectVideoFrameCacheManager::rootCachePath() {
    const char* folder = std::getenv("TMPDIR");
    return (fs::path(folder && *folder ? folder : "/tmp") / "QVFilterVideoCache").string();
}

std::string QVEffectVideoFrameCacheManager::cachedFileNameForKey(const std::string& videoPath) {
    return fs::path(videoPath).stem().string();
}

std::string QVEffectVideoFrameCacheManager::frameCacheDirPathForVideo(const std::string& videoPath) {
    const std::string folder = rootCachePath() + "/" + cachedFileNameForKey(videoPath);
    std::error_code ignored;
    if (fs::is_directory(folder, ignored)) return folder;
    fs::remove_all(folder, ignored);
    // Only its own folders: a temporary folder that is not there is not made.
    fs::create_directory(rootCachePath(), ignored);
    fs::create_directory(folder, ignored);
    return folder;
}

void QVEffectVideoFrameCacheManager::removeCacheFiles() {
    writing_.async([] {
        std::error_code ignored;
        fs::remove_all(rootCachePath(), ignored);
    });
}

}  // namespace qv
