#include "Host/Gallery/CardRenderer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <numbers>

#include "Host/Sheets/ClassPicture.h"

namespace qv::host {

namespace {

/// Of pixels that may be rendered at twice the preview's size.
constexpr int kCheapPixels = 640 * 360;
/// The telling frame is the one that differs from its source more than this share of all frames: not the
/// height of a flash, which may hide everything, but nothing at rest either.
constexpr double kTellingShare = 0.8;
/// Codes by which a frame differs that is not its source again.
constexpr double kSeenChange = 0.5;
/// Of a range wider than 1, the share that a sweep covers: such ranges go far beyond what looks well.
constexpr double kSweptShare = 0.1;

CGSize sidesOf(PixelSize size) {
    return {double(size.width), double(size.height)};
}

MTIImage resized(const MTIImage& image, PixelSize size) {
    return image.size() == sidesOf(size) ? image : image.resize(sidesOf(size));
}

double transitionProgress(double time) {
    return std::clamp((time - kTransitionHold) / (kPreviewSeconds - 2 * kTransitionHold), 0.0, 1.0);
}

/// The first frame of a transition that is at least that far.
int transitionFrame(double progress) {
    int frame = 0;
    while (transitionProgress(previewTime(frame)) < progress) ++frame;
    return frame;
}

/// A filter on the preview's timeline.
class PreviewFilter {
  public:
    explicit PreviewFilter(EffectChoice choice, std::optional<CardSweep> sweep = std::nullopt)
        : choice_(std::move(choice)),
          sweep_(sweep),
          filter_(makeFilterOnClip(choice_, {.time = 0.0, .startTime = 0.0, .endTime = kPreviewSeconds})) {
        setUnlessGiven(*filter_, choice_, "timeRange",
                       CMTimeRangeMakeWithSeconds(kTransitionHold, kPreviewSeconds - 2 * kTransitionHold));
    }

    MTIImage at(int frame, const GalleryScene& scene) {
        const QVFilterClass& filterClass = *choice_.filterClass;
        const double time = previewTime(frame);
        setUnlessGiven(*filter_, choice_, timeProperty(filterClass), time);
        setUnlessGiven(*filter_, choice_, "progress", transitionProgress(time));
        if (sweep_) {
            const double there = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * time / kPreviewSeconds);
            sweep_->property->set(*filter_, sweep_->from + (sweep_->to - sweep_->from) * there);
        }
        setInputs(*filter_, scene.frame(frame));
        return outputImageOf(*filter_);
    }

  private:
    EffectChoice choice_;
    std::optional<CardSweep> sweep_;
    std::unique_ptr<QVMTIFilter> filter_;
};

double meanDifference(const PixelBuffer& a, const PixelBuffer& b) {
    double sum = 0;
    for (int plane = 0; plane < PixelBuffer::planeCount(a.format()); ++plane) {
        const PlaneLayout layout = PixelBuffer::planeLayout(a.format(), plane, a.width(), a.height());
        std::int64_t total = 0;
        for (int y = 0; y < layout.height; ++y) {
            const std::uint8_t* first = a.plane(plane).data + std::size_t(y) * a.plane(plane).rowBytes;
            const std::uint8_t* second = b.plane(plane).data + std::size_t(y) * b.plane(plane).rowBytes;
            for (int x = 0; x < layout.width; ++x) total += std::abs(first[x] - second[x]);
        }
        sum += double(total) / (double(layout.width) * layout.height);
    }
    return sum;
}

int telling(std::vector<std::pair<double, int>> changes) {
    const auto found = changes.begin() + std::ptrdiff_t(kTellingShare * double(changes.size()));
    std::nth_element(changes.begin(), found, changes.end());
    return found->second;
}

/// The class's first number that can grow and is the user's.
std::optional<CardSweep> sweepFor(const QVFilterClass& filterClass) {
    const auto fresh = filterClass.create();
    for (const QVProperty* property : filterClass.allProperties()) {
        if (property->driver == QVPropertyDriver::host || property->type != QVPropertyType::real) continue;
        const double from = std::get<double>(property->get(*fresh)), range = property->maximum - from;
        if (range <= 0) continue;
        return CardSweep{property, from, from + (range > 1 ? range * kSweptShare : range)};
    }
    return std::nullopt;
}

/// The choices that a card shows beside the class's defaults: every value of a selector, levels among them.
std::vector<CardStill> stillsOf(const QVFilterClass& filterClass) {
    std::vector<CardStill> stills;
    for (const QVProperty* property : filterClass.allProperties()) {
        for (std::size_t i = 0; i < property->variants.size(); ++i)
            stills.push_back({std::string(property->name), std::string(property->variants[i]), int(i), {}});
    }
    return stills;
}

}  // namespace

CardSizes::CardSizes(PixelSize size) : preview(size), render(size) {
    if (size.width * size.height * 4 > kCheapPixels) return;
    render = {size.width * 2, size.height * 2};
}

CardRenderer::CardRenderer(const GalleryFiles& files, const CardSizes& sizes, MTIContext& context,
                           std::function<void()> pause)
    : sizes_(sizes), context_(context), pause_(std::move(pause)), scene_(files, sizes.render, context) {}

const GalleryScene& CardRenderer::sceneFor(const QVFilterClass& filterClass) {
    const bool usable = scene_.hasMask() || !filterClass.input(QVInputRole::mask);
    if (usable) return scene_;
    if (!sampleScene_) sampleScene_.emplace(GalleryFiles{}, sizes_.render, context_);
    return *sampleScene_;
}

void CardRenderer::check(const QVFilterClass& filterClass) {
    PreviewFilter(EffectChoice{&filterClass}).at(0, sceneFor(filterClass));
}

CardPictures CardRenderer::render(const QVFilterClass& filterClass) {
    const GalleryScene& scene = sceneFor(filterClass);
    CardPictures pictures;
    pictures.frames = play(filterClass, std::nullopt);
    auto changed = changes(pictures.frames, scene);
    pictures.changes = std::max_element(changed.begin(), changed.end())->first > kSeenChange;
    if (!pictures.changes && filterClass.kindOrInherited() == QVFilterKind::auxiliary) {
        pictures.sweep = sweepFor(filterClass);
        if (pictures.sweep) pictures.frames = play(filterClass, pictures.sweep);
        changed = changes(pictures.frames, scene);
    }
    const bool hasIncoming = filterClass.input(QVInputRole::incoming);
    const int frame = hasIncoming ? transitionFrame(kTransitionProgress) : telling(changed);
    pictures.moment = previewTime(frame);
    const EffectChoice plain{&filterClass};
    pictures.after = still(PreviewFilter(plain, pictures.sweep).at(frame, scene), sizes_.render);
    pictures.before = still(scene.frame(frame).first, sizes_.render);
    if (hasIncoming) pictures.incoming = still(scene.frame(frame).second, sizes_.render);
    pictures.stills = stillsOf(filterClass);
    for (CardStill& each : pictures.stills) {
        EffectChoice choice = plain;
        choice.addSetting(fmt::format("{}={}", each.property, each.value));
        each.picture = still(PreviewFilter(choice).at(frame, scene), sizes_.preview);
    }
    return pictures;
}

std::vector<PixelBuffer> CardRenderer::play(const QVFilterClass& filterClass,
                                            const std::optional<CardSweep>& sweep) {
    const GalleryScene& scene = sceneFor(filterClass);
    PreviewFilter filter(EffectChoice{&filterClass}, sweep);
    std::vector<MTIImage> images;
    for (int i = 0; i < kPreviewFrames; ++i) images.push_back(filter.at(i, scene));
    return renderFrames(images);
}

/// All are started before the first is waited for, so that the device never idles.
std::vector<PixelBuffer> CardRenderer::renderFrames(const std::vector<MTIImage>& images) {
    std::vector<PixelBuffer> frames;
    std::vector<std::unique_ptr<RenderTask>> tasks;
    std::string cause;
    context_.prepare(resized(images.front(), sizes_.preview));
    for (const MTIImage& image : images) {
        pause_();
        frames.push_back(PixelBuffer::create(PixelFormat::i420, sizes_.preview.width, sizes_.preview.height));
        if (!frames.back()) fail(ExitCode::internal, "no memory for a frame");
        tasks.push_back(context_.startRender(resized(image, sizes_.preview), frames.back(), &cause));
        if (!tasks.back()) fail(ExitCode::device, "{}", cause);
    }
    for (const auto& task : tasks) {
        if (!task->wait(&cause)) fail(ExitCode::device, "{}", cause);
    }
    return frames;
}

const std::vector<PixelBuffer>& CardRenderer::sourceFrames(const GalleryScene& scene) {
    std::vector<PixelBuffer>& source = &scene == &scene_ ? source_ : sampleSource_;
    if (source.empty()) {
        std::vector<MTIImage> images;
        for (int i = 0; i < kPreviewFrames; ++i) images.push_back(scene.frame(i).first);
        source = renderFrames(images);
    }
    return source;
}

std::vector<std::pair<double, int>> CardRenderer::changes(const std::vector<PixelBuffer>& frames,
                                                          const GalleryScene& scene) {
    const std::vector<PixelBuffer>& source = sourceFrames(scene);
    std::vector<std::pair<double, int>> changes;
    for (std::size_t i = 0; i < frames.size(); ++i)
        changes.emplace_back(meanDifference(frames[i], source[i]), int(i));
    return changes;
}

Bitmap CardRenderer::still(const MTIImage& image, PixelSize size) {
    pause_();
    std::string cause;
    Bitmap bitmap = context_.renderToBitmap(resized(image, size), &cause);
    if (!bitmap) fail(ExitCode::device, "{}", cause);
    return bitmap;
}

}  // namespace qv::host
