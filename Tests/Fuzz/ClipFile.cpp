// A clip, or a picture, as the reader of clips opens it: its first frames, a seek, its end.

#include "Platform/Media/ClipReader.h"
#include "Tests/Fuzz/FuzzInput.h"

using namespace qv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int kMostFrames = 6;
    constexpr double kMostPixels = 400 * 400;
    ClipReaderOptions options;
    options.threads = 1;
    options.packets = true;
    std::string error;
    const auto reader = ClipReader::open(fuzz::writeInput({data, size}), options, &error);
    fuzz::require((reader == nullptr) == !error.empty(), "a reader, or why there is none");
    if (!reader) return 0;
    const ClipVideoFormat& video = reader->info().video;
    fuzz::require(video.width > 0 && video.height > 0, "a clip has a size");
    if (double(video.width) * video.height > kMostPixels) return 0;
    const auto read = [&] {
        std::int64_t last = INT64_MIN;
        for (int i = 0; i < kMostFrames; ++i) {
            const auto frame = reader->nextFrame();
            if (!frame) return;
            fuzz::require(frame->time > last, "times grow");
            last = frame->time;
            fuzz::require(frame->pixels.width() == video.width && frame->pixels.height() == video.height,
                          "frames have the clip's size");
        }
    };
    read();
    if (reader->seek(0.1)) read();
    reader->endTime();
    return 0;
}
