#pragma once

#include <memory>

#include "Host/CommandLine/CommandLine.h"
#include "Host/CommandLine/Device.h"
#include "QVFilterCore/QVFilterClass.h"

namespace qv::host {

/// What a frame of a class costs in this process's device, at its defaults.
struct ClassCost {
    double copies = 0;  ///< median time of a frame in copy passes of the same size, taken in turns
    double milliseconds = 0;
    int passes = 0;
};

/// Measures as `qvfilter bench` does. One thread at a time, on a machine that does nothing else.
class CostMeter {
  public:
    CostMeter(const DeviceOptions& device, PixelSize size, int rounds);
    ~CostMeter();
    ClassCost measure(const QVFilterClass& filterClass);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace qv::host
