#include "Host/Clips/RenderPipeline.h"

#include <array>
#include <exception>
#include <system_error>
#include <thread>
#include <variant>

#include "Host/CommandLine/Failure.h"
#include "Host/CommandLine/Interrupt.h"

namespace qv::host {

namespace {

/// Items between two stages: enough that none waits for another's hiccup, few enough that memory stays small.
constexpr std::size_t kWaiting = 8;
/// How long stages may take to notice that the work is given up; one that reads a silent pipe never does.
constexpr std::chrono::seconds kPatience{2};

/// A frame whose pixels are under way, or there already where it has no task.
struct RenderedFrame {
    ClipFrame frame;
    double seconds = 0;
    std::unique_ptr<RenderTask> task;
};

using Rendered = std::variant<RenderedFrame, ClipPacket, AudioSamples>;

}  // namespace

/// Shared by the stages, so that one that hangs in a read may be left behind.
struct RenderPipeline::State {
    explicit State(Parts given)
        : parts(std::move(given)),
          pool(parts.writer->frameFormat(), parts.size.width, parts.size.height, parts.writer->frameColor()) {
    }

    Parts parts;
    FramePool pool;
    BoundedQueue<FrameSource::Item> decoded{kWaiting};
    BoundedQueue<Rendered> rendered{kWaiting}, finished{kWaiting};

    std::mutex mutex;
    std::condition_variable stageEnded;
    std::exception_ptr failure;  ///< the first one
    int running = 0;

    void decode();
    void render();
    void await();
    void encode(const std::function<void(std::int64_t, double)>& progress);

    RenderedFrame start(SourceFrame frame);
    void guarded(const std::function<void()>& stage);
    void giveUp();
};

void RenderPipeline::State::decode() {
    while (true) {
        checkInterrupt();
        FrameSource::Item item = parts.source->next();
        if (std::holds_alternative<std::monostate>(item)) break;
        if (!decoded.push(std::move(item))) return;
    }
    decoded.close();
}

void RenderPipeline::State::render() {
    while (auto item = decoded.pop()) {
        bool taken = true;
        if (auto* frame = std::get_if<SourceFrame>(&*item)) {
            taken = rendered.push(start(std::move(*frame)));
        } else if (auto* packet = std::get_if<ClipPacket>(&*item)) {
            taken = rendered.push(std::move(*packet));
        } else if (auto* samples = std::get_if<AudioSamples>(&*item)) {
            taken = rendered.push(std::move(*samples));
        }
        if (!taken) return;
    }
    rendered.close();
}

RenderedFrame RenderPipeline::State::start(SourceFrame source) {
    RenderedFrame result{std::move(source.frame), source.seconds};
    source.frame.pixels = result.frame.pixels;
    MTIImage image = parts.source->picture(source);
    if (!image) return result;
    const CGSize size{double(parts.size.width), double(parts.size.height)};
    if (!(image.size() == size)) image = image.resize(size);

    result.frame.pixels = pool.take();
    if (!result.frame.pixels) fail(ExitCode::internal, "no memory for a frame");
    std::string cause;
    result.task = parts.context->startRender(image, result.frame.pixels, &cause);
    if (!result.task) fail(ExitCode::device, "{}", cause);
    return result;
}

void RenderPipeline::State::await() {
    while (auto item = rendered.pop()) {
        auto* frame = std::get_if<RenderedFrame>(&*item);
        if (frame && frame->task) {
            std::string cause;
            if (!frame->task->wait(&cause)) fail(ExitCode::device, "{}", cause);
            frame->task.reset();
        }
        if (!finished.push(std::move(*item))) return;
    }
    finished.close();
}

void RenderPipeline::State::encode(const std::function<void(std::int64_t, double)>& progress) {
    std::int64_t frames = 0;
    ClipWriter& writer = *parts.writer;
    while (auto item = finished.pop()) {
        checkInterrupt();
        const auto* frame = std::get_if<RenderedFrame>(&*item);
        const auto* samples = std::get_if<AudioSamples>(&*item);
        const bool written = frame     ? writer.write(frame->frame)
                             : samples ? writer.write(*samples)
                                       : writer.write(std::get<ClipPacket>(*item));
        if (!written) fail(ExitCode::output, "{}", writer.error());
        if (frame) progress(++frames, frame->seconds);
    }
    checkInterrupt();
    std::scoped_lock lock(mutex);
    if (failure) return;
    if (!writer.finish()) fail(ExitCode::output, "{}", writer.error());
}

/// Runs a stage; its failure, if it is the first, becomes the pipeline's and stops the others.
void RenderPipeline::State::guarded(const std::function<void()>& stage) {
    try {
        stage();
    } catch (...) {
        {
            std::scoped_lock lock(mutex);
            if (!failure) failure = std::current_exception();
        }
        giveUp();
    }
}

void RenderPipeline::State::giveUp() {
    decoded.abandon();
    rendered.abandon();
    finished.abandon();
}

RenderPipeline::RenderPipeline(Parts parts) : state_(std::make_shared<State>(std::move(parts))) {}

void RenderPipeline::run(const std::function<void(std::int64_t, double)>& progress) {
    State& state = *state_;
    constexpr std::array kStages{&State::decode, &State::render, &State::await};
    std::vector<std::thread> threads;
    threads.reserve(kStages.size());
    const auto start = [&](auto stage) {
        threads.emplace_back([shared = state_, stage] {
            shared->guarded([&] { ((*shared).*stage)(); });
            std::scoped_lock lock(shared->mutex);
            --shared->running;
            shared->stageEnded.notify_all();
        });
        std::scoped_lock lock(state.mutex);
        ++state.running;
    };
    // A stage whose thread cannot be started fails the others, too.
    state.guarded([&] {
        try {
            for (auto stage : kStages) start(stage);
        } catch (const std::system_error& error) {
            fail(ExitCode::internal, "cannot start a thread: {}", error.code().message());
        }
        state.encode(progress);
    });
    state.giveUp();

    std::unique_lock lock(state.mutex);
    const bool allEnded = state.stageEnded.wait_for(lock, kPatience, [&] { return state.running == 0; });
    lock.unlock();
    for (std::thread& thread : threads) allEnded ? thread.join() : thread.detach();
    state.parts.writer.reset();
    if (state.failure) std::rethrow_exception(state.failure);
}

}  // namespace qv::host
