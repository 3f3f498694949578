#pragma once

#include <memory>

#include "Host/CommandLine/EffectChoice.h"
#include "Platform/Foundation/CMTime.h"
#include "QVFilterCore/QVMTIFilter.h"

namespace qv::host {

/// A transition where it lies on the timeline. Used by one thread at a time.
class TransitionFilter {
  public:
    /// `range` becomes the filter's time range, unless the user set it. Keys count from its start, those in
    /// frames at `frameRate`.
    TransitionFilter(EffectChoice choice, CMTimeRange range, double frameRate = 0);

    /// The picture at 0..1 between two frames, with the size of the outgoing one. Fails when the class gives
    /// none.
    MTIImage outputImage(const MTIImage& outgoing, const MTIImage& incoming, double progress);

  private:
    EffectChoice choice_;
    std::unique_ptr<QVMTIFilter> filter_;
    double seconds_, frameRate_;
};

}  // namespace qv::host
