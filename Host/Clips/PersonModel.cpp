#include "Host/Clips/PersonModel.h"

#include <cstdlib>
#include <filesystem>

#include "Host/CommandLine/Failure.h"
#ifdef QV_PERSON_MASK
#include "QVPersonMask/PersonMask.h"
#endif

namespace qv::host {

std::string personModelPath() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value ? value : "");
    };
    if (const std::string path = variable("QVFILTER_PERSON_MODEL"); !path.empty()) return path;
    std::string folder = variable("XDG_DATA_HOME");
    if (folder.empty()) folder = variable("HOME") + "/.local/share";
    return folder + "/qvfilter/selfie_segmentation.tflite";
}

std::shared_ptr<PersonMask> openPersonMask([[maybe_unused]] const std::string& modelPath) {
#ifdef QV_PERSON_MASK
    const std::string path = modelPath.empty() ? personModelPath() : modelPath;
    std::error_code ignored;
    if (modelPath.empty() && !std::filesystem::exists(path, ignored)) {
        fail(ExitCode::input,
             "finding people needs the network '{}', which is not there; qvfilter-fetch-person-model gets it",
             path);
    }
    std::string cause;
    auto mask = PersonMask::create(path, &cause);
    if (!mask) fail(ExitCode::input, "{}", cause);
    return mask;
#else
    fail(ExitCode::usage, "this qvfilter cannot find people: it was built without OpenCV's dnn module");
#endif
}

}  // namespace qv::host
