#include "Host/Sheets/ClassPicture.h"

#include "Host/CommandLine/Failure.h"

namespace qv::host {

Bitmap classPicture(const QVFilterClass& filterClass, const FilterInputs& inputs, std::optional<double> time,
                    MTIContext& context) {
    EffectChoice choice{&filterClass};
    if (filterClass.property("progress")) choice.addSetting(fmt::format("progress={}", kTransitionProgress));
    // Animations rest for much of their clip; early on they all show.
    const bool animation = filterClass.categoryOrInherited() == QVFilterCategory::animation;
    const auto filter = makeFilterOnClip(
        choice, {.time = time.value_or(animation ? 0.1 : 0.4), .startTime = 0.0, .endTime = 1.0});
    setInputs(*filter, inputs);
    std::string cause;
    const Bitmap bitmap = context.renderToBitmap(outputImageOf(*filter), &cause);
    if (!bitmap) fail(ExitCode::device, "{}: {}", filterClass.name, cause);
    return bitmap;
}

}  // namespace qv::host
