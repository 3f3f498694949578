#include "Platform/Media/Private/FilterGraph.h"

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
}

#include <string_view>

#include <fmt/format.h>

namespace qv::ffmpeg {

void FilterGraph::FreeGraph::operator()(AVFilterGraph* graph) const {
    avfilter_graph_free(&graph);
}

bool FilterGraph::open(const std::string& filters, int width, int height, AVPixelFormat format) {
    graph_.reset(avfilter_graph_alloc());
    if (!graph_) return false;
    AVFilterGraph* graph = graph_.get();
    graph->nb_threads = 1;
    const std::string input = fmt::format(
        "buffer=video_size={}x{}:pix_fmt={}:time_base=1/1:pixel_aspect=1/1[in];[in]{}[out];[out]buffersink",
        width, height, av_get_pix_fmt_name(format), filters);
    AVFilterInOut *inputs = nullptr, *outputs = nullptr;
    const bool parsed = avfilter_graph_parse2(graph, input.c_str(), &inputs, &outputs) >= 0;
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    if (!parsed || avfilter_graph_config(graph, nullptr) < 0) return false;
    for (unsigned i = 0; i < graph->nb_filters; ++i) {
        const std::string_view kind = graph->filters[i]->filter->name;
        if (kind == "buffer") source_ = graph->filters[i];
        if (kind == "buffersink") sink_ = graph->filters[i];
    }
    return source_ && sink_;
}

int FilterGraph::send(AVFrame* frame) {
    return av_buffersrc_add_frame(source_, frame);
}

int FilterGraph::receive(AVFrame& frame) {
    const int code = av_buffersink_get_frame(sink_, &frame);
    // Filters may halve the unit of times.
    if (code >= 0) frame.pts = av_rescale_q(frame.pts, av_buffersink_get_time_base(sink_), {1, 1});
    return code;
}

}  // namespace qv::ffmpeg
