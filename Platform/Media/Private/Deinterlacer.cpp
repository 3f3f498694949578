#include "Platform/Media/Private/Deinterlacer.h"

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
}

#include <fmt/format.h>

namespace qv::ffmpeg {

void Deinterlacer::FreeGraph::operator()(AVFilterGraph* graph) const {
    avfilter_graph_free(&graph);
}

std::unique_ptr<Deinterlacer> Deinterlacer::create(const AVFrame& like, bool everything) {
    const auto format = AVPixelFormat(like.format);
    const char* name = av_get_pix_fmt_name(format);
    if (!name) return nullptr;
    std::unique_ptr<Deinterlacer> made(new Deinterlacer);
    made->graph_.reset(avfilter_graph_alloc());
    if (!made->graph_) return nullptr;
    AVFilterGraph* graph = made->graph_.get();
    graph->nb_threads = 1;
    // Times pass beside the filter, which would halve their unit.
    const std::string input = fmt::format("video_size={}x{}:pix_fmt={}:time_base=1/1:pixel_aspect=1/1",
                                          like.width, like.height, name);
    const std::string filter =
        fmt::format("mode=send_frame:parity=auto:deint={}", everything ? "all" : "interlaced");
    const auto add = [&](AVFilterContext*& context, const char* kind, const char* options) {
        const AVFilter* found = avfilter_get_by_name(kind);
        return found && avfilter_graph_create_filter(&context, found, kind, options, nullptr, graph) >= 0;
    };
    AVFilterContext *middle = nullptr, *same = nullptr;
    // Formats that the filter does not know are converted on the way, and back.
    const bool ready =
        add(made->source_, "buffer", input.c_str()) && add(middle, "bwdif", filter.c_str()) &&
        add(same, "format", name) && add(made->sink_, "buffersink", nullptr) &&
        avfilter_link(made->source_, 0, middle, 0) >= 0 && avfilter_link(middle, 0, same, 0) >= 0 &&
        avfilter_link(same, 0, made->sink_, 0) >= 0 && avfilter_graph_config(graph, nullptr) >= 0;
    if (!ready) return nullptr;
    made->width_ = like.width;
    made->height_ = like.height;
    made->format_ = like.format;
    return made;
}

bool Deinterlacer::takes(const AVFrame& frame) const {
    return frame.width == width_ && frame.height == height_ && frame.format == format_;
}

int Deinterlacer::send(AVFrame* frame) {
    return av_buffersrc_add_frame(source_, frame);
}

int Deinterlacer::receive(AVFrame& frame) {
    return av_buffersink_get_frame(sink_, &frame);
}

}  // namespace qv::ffmpeg
