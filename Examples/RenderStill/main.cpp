// render-still CLASS IN.png OUT.png [name=value …]: one effect over one picture, in the way an editor uses
// the library.

#include <cstdio>
#include <string>

#include "QVFilterExtension/QVFilterExtension.h"

namespace {
int fail(const std::string& cause) {
    std::fprintf(stderr, "render-still: %s\n", cause.c_str());
    return 1;
}
}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return fail("give a class, an input picture and an output file");
    std::string error;

    // A filter is made once, by class name, and kept for as long as the effect is on the timeline.
    const auto filter = qv::createFilter(argv[1]);
    auto* effect = dynamic_cast<qv::QVEffectMTIFilter*>(filter.get());
    if (!effect) return fail(std::string("there is no effect ") + argv[1]);
    for (int i = 4; i < argc; ++i) {
        const std::string setting = argv[i];
        const std::size_t equals = setting.find('=');
        if (equals == std::string::npos) return fail(setting + " is not name=value");
        if (!qv::setPropertyFromText(*effect, setting.substr(0, equals), setting.substr(equals + 1), &error))
            return fail(error);
    }

    // Per frame: set the inputs, read the output image; nothing has been rendered yet.
    const auto photo = qv::MTIImage::imageWithBitmap(qv::readImageFile(argv[2], &error));
    if (!photo) return fail(error);
    effect->setInputImage(photo);
    effect->setIsPhoto(true);
    effect->setITime(0);
    const qv::MTIImage output = effect->outputImage();

    // The host renders, on whatever Vulkan device there is.
    const auto context = qv::MTIContext::create({}, &error);
    if (!context) return fail(error);
    const qv::Bitmap result = context->renderToBitmap(output, &error);
    if (!result || !qv::writePNG(result, argv[3], &error)) return fail(error);
    std::printf("%s: %dx%d on %s\n", argv[3], result.width, result.height, context->device().name.c_str());
    return 0;
}
