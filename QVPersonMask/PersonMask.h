#pragma once

#include <memory>
#include <string>

#include "Platform/Media/Bitmap.h"
#include "Platform/Media/PixelBuffer.h"

namespace qv {

/// Finds people in pictures with a small segmentation network: masks for subject effects. A component of its
/// own beside the library; link QVPersonMask to use it.
///
/// Heads, hair, bodies and what is held in the hand come out well where people fill a good part of the
/// picture. The network always looks for somebody: in a picture without people a lamp or a cat may be taken
/// for one.
///
/// One thread at a time. The network itself runs on OpenCV's threads, whose number does not change a mask.
class PersonMask {
  public:
    /// Reads the network from a TensorFlow Lite file: one input of RGB values 0..1, one output of as many
    /// pixels with values 0..1, such as `selfie_segmentation.tflite` of the npm package
    /// `@mediapipe/selfie_segmentation`, which `qvfilter-fetch-person-model` gets. Nil, with one line that
    /// names file and cause in `error` when it is given, for a file that is missing, damaged or another
    /// network.
    static std::shared_ptr<PersonMask> create(const std::string& modelPath, std::string* error = nullptr);
    ~PersonMask();
    PersonMask(const PersonMask&) = delete;
    PersonMask& operator=(const PersonMask&) = delete;

    /// The mask of a picture of any format: gray8, of the picture's size, 255 where a person is, with soft
    /// edges that follow the picture's. Transparent pixels count as black. `rotation` is by how many degrees
    /// clockwise (0, 90, 180, 270) the picture has to be turned to stand upright; the mask lies like the
    /// picture. Nil with a cause when the picture is nil or memory runs out.
    PixelBuffer maskOf(const PixelBuffer& picture, int rotation = 0, std::string* error = nullptr);
    PixelBuffer maskOf(const Bitmap& picture, std::string* error = nullptr);  ///< the same of an upright one

  private:
    friend class PersonMaskSequence;
    struct State;
    explicit PersonMask(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace qv
