#pragma once

#include <memory>
#include <string>

#include "Platform/Media/Private/FFmpegSupport.h"

struct AVFilterContext;
struct AVFilterGraph;

namespace qv::ffmpeg {

/// FFmpeg's filters over the frames of a clip, on one thread.
class FilterGraph {
  public:
    /// `filters` as the command-line tool takes them, for frames of one size and format. False when they
    /// cannot filter such.
    bool open(const std::string& filters, int width, int height, AVPixelFormat format);

    /// Takes the frame's reference; nil for the end. An FFmpeg code.
    int send(AVFrame* frame);
    /// As avcodec_receive_frame(), with times in the unit of those sent.
    int receive(AVFrame& frame);

  private:
    struct FreeGraph {
        void operator()(AVFilterGraph* graph) const;
    };

    std::unique_ptr<AVFilterGraph, FreeGraph> graph_;
    AVFilterContext *source_ = nullptr, *sink_ = nullptr;
};

}  // namespace qv::ffmpeg
