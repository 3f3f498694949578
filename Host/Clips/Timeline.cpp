#include "Host/Clips/Timeline.h"

#include <algorithm>

#include "Host/Clips/Clip.h"
#include "Host/CommandLine/Diagnostics.h"
#include "Host/CommandLine/Failure.h"
#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv::host {

namespace {

/// One byte of every `step` bytes of each row.
PixelBuffer grayOf(int width, int height, const std::uint8_t* first, std::size_t rowBytes, int step) {
    PixelBuffer gray = PixelBuffer::create(PixelFormat::gray8, width, height);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* source = first + std::size_t(y) * rowBytes;
        std::uint8_t* target = gray.plane(0).data + std::size_t(y) * gray.plane(0).rowBytes;
        for (int x = 0; x < width; ++x) target[x] = source[x * step];
    }
    return gray;
}

}  // namespace

SubjectMask SubjectMask::fromBuffer(const PixelBuffer& gray) {
    return {MTIImage::imageWithPixelBuffer(gray, MTIAlphaType::alphaIsOne), gray};
}

SubjectMask SubjectMask::fromAlpha(const PixelBuffer& frame) {
    if (frame.format() == PixelFormat::rgba8) {
        const PixelBuffer::Plane& plane = frame.plane(0);
        return fromBuffer(grayOf(frame.width(), frame.height(), plane.data + 3, plane.rowBytes, 4));
    }
    if (frame.format() == PixelFormat::i420Alpha) {
        const PixelBuffer::Plane& plane = frame.plane(3);
        return fromBuffer(grayOf(frame.width(), frame.height(), plane.data, plane.rowBytes, 1));
    }
    return {};
}

SubjectMask SubjectMask::fromAlpha(const Bitmap& picture) {
    const std::vector<std::uint8_t>& rgba = *picture.pixels;
    bool opaque = true;
    for (std::size_t i = 3; i < rgba.size() && opaque; i += 4) opaque = rgba[i] == 255;
    if (opaque) return {};
    return fromBuffer(grayOf(picture.width, picture.height, rgba.data() + 3, picture.rowBytes(), 4));
}

QVInputValue FilterInputs::valueFor(const QVInput& input) const {
    if (input.role == QVInputRole::mask && input.isBuffer) return mask.buffer;
    if (input.isBuffer) return PixelBuffer();
    switch (input.role) {
        case QVInputRole::frame:
            return first;
        case QVInputRole::incoming:
        case QVInputRole::layer:
            return second;
        case QVInputRole::mask:
            return mask.image;
        case QVInputRole::table:
        case QVInputRole::texture:
            break;
    }
    return MTIImage();
}

void setInputs(QVMTIFilter& filter, const FilterInputs& given) {
    const QVFilterClass& filterClass = filter.filterClass();
    FilterInputs inputs = given;
    // The mask in memory is as it came; its picture is as the frame is.
    if (const QVProperty* transform = filterClass.property("extraTransform")) {
        const auto toFrame = std::get<CGAffineTransform>(transform->get(filter));
        const MTIImage moved = inputs.mask.image.imageByApplyingTransform(toFrame, true);
        if (moved && toFrame != CGAffineTransformIdentity) inputs.mask.image = moved;
    }
    for (const QVInput& input : filterClass.allInputs()) {
        // A texture is the class's own.
        if (input.role != QVInputRole::texture) input.set(filter, inputs.valueFor(input));
    }
    if (const QVProperty* size = filterClass.property("inputImageOriginalSize"))
        size->set(filter, MTIVector::vectorWithCGSize(inputs.originalSize));
}

void setUnlessGiven(QVMTIFilter& filter, const EffectChoice& choice, std::string_view name,
                    const QVPropertyValue& value) {
    const QVProperty* property = filter.filterClass().property(name);
    if (property && !choice.sets(name)) property->set(filter, value);
}

std::string_view timeProperty(const QVFilterClass& filterClass) {
    return filterClass.property("iTime") ? "iTime" : "time";
}

std::unique_ptr<QVMTIFilter> makeFilterOnClip(const EffectChoice& choice, const ClipPosition& clip) {
    const QVFilterClass& filterClass = *choice.filterClass;
    std::unique_ptr<QVMTIFilter> filter = filterClass.create();
    if (!filter) fail(ExitCode::internal, "{} cannot be created", filterClass.name);
    setUnlessGiven(*filter, choice, "isPhoto", clip.isPhoto);
    if (clip.startTime) setUnlessGiven(*filter, choice, "startTime", *clip.startTime);
    if (clip.endTime) setUnlessGiven(*filter, choice, "endTime", *clip.endTime);
    if (clip.time) setUnlessGiven(*filter, choice, timeProperty(filterClass), *clip.time);
    for (const auto& [property, value] : choice.settings) property->set(*filter, value);
    return filter;
}

namespace {

bool standsStillOnPhotos(const QVMTIFilter& filter) {
    const auto* effect = dynamic_cast<const QVEffectMTIFilter*>(&filter);
    return effect ? effect->isPhotoTimeConst() : filter.filterClass().photoTimeConst();
}

}  // namespace

MTIImage outputImageOf(QVMTIFilter& filter) {
    MTIImage image = filter.outputImage();
    if (!image) {
        fail(ExitCode::internal, "{} gives no picture{}", filter.filterClass().name, lastLogLineInBrackets());
    }
    return image;
}

void applyKeys(QVMTIFilter& filter, const EffectChoice& choice, double seconds, double frameRate) {
    for (const PropertyKeys& moving : choice.keys)
        moving.property->set(filter, moving.at(seconds, frameRate));
}

EffectChain::EffectChain(std::vector<EffectChoice> choices, const ClipPosition& clip)
    : isPhoto_(clip.isPhoto), frameRate_(clip.frameRate) {
    for (EffectChoice& choice : choices) {
        Link link{.choice = std::move(choice)};
        ClipPosition part = clip;
        if (const auto& span = link.choice.span) {
            link.from = span->from.seconds(frameRate_);
            if (span->to) part.endTime = link.to = span->to->seconds(frameRate_);
            if (part.endTime) *part.endTime -= link.from;
            if (part.time) *part.time -= link.from;
        }
        link.filter = makeFilterOnClip(link.choice, part);
        links_.push_back(std::move(link));
    }
    moveLinks(clip.time.value_or(0));
}

bool EffectChain::takesMask() const {
    return std::any_of(links_.begin(), links_.end(), [](const Link& link) {
        return link.choice.filterClass->input(QVInputRole::mask) != nullptr;
    });
}

bool EffectChain::isActive() const {
    return std::any_of(links_.begin(), links_.end(), [](const Link& link) { return link.isActive; });
}

void EffectChain::moveLinks(double seconds) {
    for (Link& link : links_) {
        link.isActive = !link.choice.span ||
                        (seconds >= link.from - kTimeTolerance && seconds < link.to - kTimeTolerance);
        applyKeys(*link.filter, link.choice, seconds - link.from, frameRate_);
    }
}

void EffectChain::moveTo(double seconds) {
    moveLinks(seconds);
    for (const Link& link : links_) {
        if (isPhoto_ && standsStillOnPhotos(*link.filter)) continue;
        setUnlessGiven(*link.filter, link.choice, timeProperty(*link.choice.filterClass),
                       seconds - link.from);
    }
}

MTIImage EffectChain::outputImage(const FilterInputs& inputs) {
    FilterInputs next = inputs;
    for (const Link& link : links_) {
        if (!link.isActive) continue;
        const QVInput* mask = link.choice.filterClass->input(QVInputRole::mask);
        if (mask && mask->isRequired && !inputs.mask) {
            fail(ExitCode::usage, "{} needs --mask FILE, or an input with an alpha channel",
                 link.choice.filterClass->name);
        }
        setInputs(*link.filter, next);
        next.first = outputImageOf(*link.filter);
    }
    return next.first;
}

}  // namespace qv::host
