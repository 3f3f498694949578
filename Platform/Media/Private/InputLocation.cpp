#include "Platform/Media/Private/InputLocation.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include <fmt/format.h>

namespace qv::ffmpeg {

bool InputLocation::find(const std::string& path, const ClipInputFormat& format, std::string& cause) {
    const auto pictures = PictureSequence::unlessFile(path);
    if (path == "-") {
        url = "pipe:0";
    } else if (pictures ? !findPictures(*pictures, cause) : !findFile(path, cause)) {
        return false;
    }
    if (!format.container.empty()) {
        container = av_find_input_format(format.container.c_str());
        if (!container) cause = fmt::format("there is no input format '{}'", format.container);
    }
    const bool isRaw = format.container == "rawvideo";
    if ((pictures || isRaw) && format.rate.numerator > 0)
        options.set("framerate", fmt::format("{}/{}", format.rate.numerator, format.rate.denominator));
    if (isRaw) describeRaw(format, cause);
    return cause.empty();
}

/// The pictures of a sequence, none of which may be missing.
bool InputLocation::findPictures(const PictureSequence& pictures, std::string& cause) {
    const std::vector<int> numbers = pictures.numbers();
    if (numbers.empty()) {
        cause = fmt::format("there is no picture '{}', nor any other number", pictures.path(1));
        return false;
    }
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        if (numbers[i] == numbers[i - 1] + 1) continue;
        cause = fmt::format("number {} of {} to {} is missing", numbers[i - 1] + 1, numbers.front(),
                            numbers.back());
        return false;
    }
    url = "file:" + pictures.pattern();
    container = av_find_input_format("image2");
    options.set("pattern_type", "sequence");
    options.set("start_number", fmt::format("{}", numbers.front()));
    options.set("start_number_range", "1");
    return true;
}

bool InputLocation::findFile(const std::string& path, std::string& cause) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        url = path;
        if (path.find("://") != std::string::npos) return true;
        cause = PictureSequence::hasSeveralNumbers(path) ? PictureSequence::kOneNumber
                                                         : std::generic_category().message(errno);
        return false;
    }
    if (S_ISDIR(status.st_mode)) cause = std::generic_category().message(EISDIR);
    if (S_ISREG(status.st_mode) && status.st_size == 0) cause = "the file is empty";
    url = "file:" + path;
    // A % in the name of a file that exists is just that.
    options.set("pattern_type", "none");
    return cause.empty();
}

void InputLocation::describeRaw(const ClipInputFormat& format, std::string& cause) {
    const std::string& pixels = format.pixelFormat;
    if (format.width < 1 || format.height < 1) cause = "raw video does not tell its size";
    if (!pixels.empty() && av_get_pix_fmt(pixels.c_str()) == AV_PIX_FMT_NONE)
        cause = fmt::format("there is no pixel format '{}'", pixels);
    options.set("video_size", fmt::format("{}x{}", format.width, format.height));
    if (!pixels.empty()) options.set("pixel_format", pixels);
}

}  // namespace qv::ffmpeg
