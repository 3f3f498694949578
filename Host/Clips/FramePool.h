#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "Platform/Media/PixelBuffer.h"

namespace qv::host {

/// Pixel buffers of one kind that are used again once nobody holds them. Thread-safe; buffers may outlive it.
class FramePool {
  public:
    FramePool(PixelFormat format, int width, int height, ColorDescription color)
        : format_(format), width_(width), height_(height), color_(color), idle_(std::make_shared<Idle>()) {}

    /// A buffer with arbitrary pixels; nil without memory.
    PixelBuffer take();

  private:
    struct Idle {
        std::mutex mutex;
        std::vector<PixelBuffer> buffers;
    };

    PixelFormat format_;
    int width_, height_;
    ColorDescription color_;
    std::shared_ptr<Idle> idle_;
};

}  // namespace qv::host
