#pragma once

#include <span>

#include <opencv2/core.hpp>

#include "Platform/Media/PixelBuffer.h"
#include "QVPersonMask/Private/SegmentationNetwork.h"

namespace qv {

/// What is kept of a frame until its mask is made. Everything lies as the frame does.
struct PersonEstimate {
    cv::Mat luma;        ///< of the whole frame, 8 bits
    cv::Mat guide;       ///< the frame in the size in which edges are looked for, RGB, 8 bits
    cv::Mat small;       ///< the frame in the network's size, RGB, 8 bits
    cv::Mat likelihood;  ///< of a person, 0..1, in the network's size
};

/// Of a picture with premultiplied colour. Throws what the libraries below throw.
PersonEstimate estimatePerson(SegmentationNetwork& network, const cv::Mat& rgba, int rotation);

/// A frame near another one.
struct Neighbour {
    const PersonEstimate* estimate;
    int distance;  ///< frames from one to the other, 1 to PersonMaskSequence::kReach
};

/// The likelihood of `frame`, averaged with those of frames near it in time, where their pictures are alike.
cv::Mat steadyLikelihood(const PersonEstimate& frame, std::span<const Neighbour> neighbours);

/// The mask of a frame from a likelihood in the network's size: scaled up along the edges of the picture.
PixelBuffer refinedMask(const PersonEstimate& frame, const cv::Mat& likelihood);

}  // namespace qv
