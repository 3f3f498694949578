#pragma once

#include <exception>
#include <new>
#include <span>
#include <string>
#include <utility>

#include "QVPersonMask/PersonMask.h"
#include "QVPersonMask/Private/FlatTable.h"
#include "QVPersonMask/Private/PersonEstimate.h"
#include "QVPersonMask/Private/SegmentationNetwork.h"

namespace qv {

struct PersonMask::State {
    explicit State(std::span<const std::uint8_t> model) : network(model) {}

    /// Throws ModelError and what the libraries below throw.
    PersonEstimate estimate(const PixelBuffer& picture, int rotation);

    SegmentationNetwork network;
    cv::Mat rgba;  ///< memory for the frame that is worked on
};

/// Runs `work`; when it throws, false with the cause after `subject` in `error`, when that is given.
template <typename Work>
bool withoutExceptions(const std::string& subject, std::string* error, Work&& work) {
    std::string cause;
    try {
        work();
        return true;
    } catch (const cv::Exception& failure) {
        cause =
            failure.code == cv::Error::StsNoMem ? "needs more memory than there is" : "fails: " + failure.err;
    } catch (const std::bad_alloc&) {
        cause = "needs more memory than there is";
    } catch (const std::exception& failure) {
        cause = failure.what();
    }
    if (error) *error = subject + cause;
    return false;
}

}  // namespace qv
