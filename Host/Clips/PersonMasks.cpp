#include "Host/Clips/PersonMasks.h"

#include "Host/CommandLine/Failure.h"

#ifdef QV_PERSON_MASK

#include <cstdlib>
#include <filesystem>
#include <optional>

#include "Host/Clips/Clip.h"
#include "QVPersonMask/PersonMaskSequence.h"

namespace qv::host {

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string usualModelPath() {
    if (const std::string path = variable("QVFILTER_PERSON_MODEL"); !path.empty()) return path;
    std::string folder = variable("XDG_DATA_HOME");
    if (folder.empty()) folder = variable("HOME") + "/.local/share";
    return folder + "/qvfilter/selfie_segmentation.tflite";
}

class PersonMaskSource : public MaskSource {
  public:
    SubjectMask maskOf(const FramePixels& frame, double seconds) override {
        if (!isCurrent(frame)) {
            std::string cause;
            const PixelBuffer mask =
                frame.picture ? people_->maskOf(frame.picture, &cause) : nextMask(frame, seconds, cause);
            if (!mask) fail(ExitCode::internal, "{}", cause);
            current_ = SubjectMask::fromBuffer(turnedGray(mask, frame.rotation));
            frame_ = frame;
            seconds_ = seconds;
        }
        return current_;
    }

  private:
    /// Kept pixels are not used again for others, so their place tells.
    bool isCurrent(const FramePixels& frame) const {
        if (frame.picture) return frame.picture.pixels == frame_.picture.pixels;
        return frame_.pixels && frame.pixels.plane(0).data == frame_.pixels.plane(0).data;
    }

    PixelBuffer nextMask(const FramePixels& frame, double seconds, std::string& cause) {
        // Another frame at the time of the last one takes its place: a blank one came before the first.
        if (!masks_ || seconds <= seconds_) masks_.emplace(people_, 0);
        return masks_->add(frame.pixels, frame.rotation, &cause) ? masks_->takeMask(&cause) : PixelBuffer();
    }

    std::shared_ptr<PersonMask> people_ = openPersonMask();
    std::optional<PersonMaskSequence> masks_;
    FramePixels frame_;
    double seconds_ = 0;
    SubjectMask current_;
};

}  // namespace

std::shared_ptr<PersonMask> openPersonMask(const std::string& modelPath) {
    const std::string path = modelPath.empty() ? usualModelPath() : modelPath;
    std::error_code ignored;
    if (modelPath.empty() && !std::filesystem::exists(path, ignored)) {
        fail(ExitCode::input,
             "finding people needs the network '{}', which is not there; qvfilter-fetch-person-model gets it",
             path);
    }
    std::string cause;
    auto people = PersonMask::create(path, &cause);
    if (!people) fail(ExitCode::input, "{}", cause);
    return people;
}

std::unique_ptr<MaskSource> openPersonMaskSource() {
    return std::make_unique<PersonMaskSource>();
}

}  // namespace qv::host

#else

namespace qv::host {

namespace {
[[noreturn]] void failUnbuilt() {
    fail(ExitCode::usage, "this qvfilter cannot find people: it was built without OpenCV's dnn module");
}
}  // namespace

std::shared_ptr<PersonMask> openPersonMask(const std::string&) {
    failUnbuilt();
}

std::unique_ptr<MaskSource> openPersonMaskSource() {
    failUnbuilt();
}

}  // namespace qv::host

#endif
