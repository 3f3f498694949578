// Chains of any classes with any settings, on tiny frames: drawn with fused passes they look as without.
// Bytes choose the frame's size, the moment, and for each of up to four layers its class and settings.

#include <fmt/format.h>

#include "QVFilterExtension/QVFilterRegistry.h"
#include "Tests/Fuzz/FuzzInput.h"
#include "Tests/Support/SweepInputs.h"

using namespace qv;

namespace {

std::string listOf(fuzz::Choices& choices, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += fmt::format("{}{:.3f}", i ? "," : "", choices.fraction() * 2 - 0.5);
    return text;
}

std::string valueText(fuzz::Choices& choices, const QVProperty& property) {
    const double number = property.minimum + (property.maximum - property.minimum) * choices.fraction();
    switch (property.type) {
        case QVPropertyType::boolean:
            return choices.byte() % 2 ? "true" : "false";
        case QVPropertyType::integer:
            return fmt::format("{:.0f}", number);
        case QVPropertyType::real:
            return fmt::format("{}", number);
        case QVPropertyType::color:
            return fmt::format("#{:02x}{:02x}{:02x}", choices.byte(), choices.byte(), choices.byte());
        case QVPropertyType::colors:
            return fmt::format("#{:02x}{:02x}20,#{:02x}40{:02x}", choices.byte(), choices.byte(),
                               choices.byte(), choices.byte());
        case QVPropertyType::point:
        case QVPropertyType::size:
            return listOf(choices, 2);
        case QVPropertyType::numbers:
            return listOf(choices, 1 + choices.below(4));
        case QVPropertyType::transform:
            return listOf(choices, 6);
        case QVPropertyType::timeRange:
            return fmt::format("{:.2f},{:.2f}", choices.fraction(), choices.fraction() * 3);
    }
    return "";
}

struct Contexts {
    std::shared_ptr<MTIContext> fused, plain;
};

/// New ones from time to time: they keep the pipelines of all the programs that chance makes.
const Contexts& contexts() {
    constexpr int kUses = 200;
    static auto& made = *new Contexts;  // the driver may be gone at exit
    static int uses = 0;
    if (uses++ % kUses == 0) {
        for (auto* each : {&made.fused, &made.plain}) {
            MTIContextOptions options;
            options.fusion = each == &made.fused ? MTIFusion::beforeFirstFrame : MTIFusion::off;
            options.validation = true;
            options.shaderCacheDirectory.clear();
            std::string error;
            *each = MTIContext::create(options, &error);
            fuzz::require(*each != nullptr, error);
        }
    }
    return made;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int kMostSide = 40, kMostLayers = 4, kMostResultSide = 160;
    fuzz::Choices choices(data, size);
    const int width = 1 + int(choices.below(kMostSide)), height = 1 + int(choices.below(kMostSide));
    const double moment = choices.fraction();
    std::vector<std::unique_ptr<QVMTIFilter>> layers(1 + choices.below(kMostLayers));
    MTIImage image;
    std::string names;
    for (auto& layer : layers) {
        const QVFilterClass& record = *allFilterClasses()[choices.below(allFilterClasses().size())];
        layer = record.create();
        test::setInputs(*layer, width, height);
        test::setMoment(*layer, moment);
        for (const QVProperty* property : record.allProperties()) {
            if (choices.byte() % 4) continue;
            setPropertyFromText(*layer, property->name, valueText(choices, *property), nullptr);
        }
        if (image) {
            if (const QVInput* frame = record.input(QVInputRole::frame)) frame->set(*layer, image);
        }
        image = layer->outputImage();
        if (!image || image.size().width > kMostResultSide || image.size().height > kMostResultSide) return 0;
        names += fmt::format(" {}", record.name);
    }
    const auto& [withFusion, without] = contexts();
    std::string error;
    const Bitmap fused = withFusion->renderToBitmap(image, &error);
    fuzz::require(bool(fused), error);
    const Bitmap plain = without->renderToBitmap(image, &error);
    fuzz::require(bool(plain), error);
    const double worst = test::worstDifference(test::pictureOf(fused), test::pictureOf(plain)) * 255;
    fuzz::require(
        worst < 3.5,
        fmt::format("fused is plain but for the rounding in between, but {:.0f} apart:{}", worst, names));
    for (const auto& each : {withFusion, without}) {
        const auto messages = each->validationMessages();
        fuzz::require(messages.empty(), messages.empty() ? "" : messages.back());
    }
    return 0;
}
