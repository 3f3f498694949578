#pragma once

#include <memory>
#include <string>

#include "Platform/ImageGraph/MTIContext.h"
#include "Tests/Support/PictureMatch.h"

#include <gtest/gtest.h>

namespace qv::test {

/// The context that the tests of one program share, with the validation layer on. Made once; nil, with a
/// failure, when there is no device.
inline const std::shared_ptr<MTIContext>& context() {
    static const std::shared_ptr<MTIContext> instance = [] {
        std::string error;
        MTIContextOptions options;
        options.validation = true;
        options.fusion = MTIFusion::beforeFirstFrame;  // the same codes whatever was drawn before
        options.shaderCacheDirectory = QV_TEST_SHADER_CACHE;
        auto made = MTIContext::create(options, &error);
        if (!made) ADD_FAILURE() << error;
        return made;
    }();
    return instance;
}

/// Renders in float. A failure to render, and a message of the validation layer, fail the test.
inline Picture render(const MTIImage& image) {
    Picture picture;
    if (!image || !context()) {
        ADD_FAILURE() << (image ? "no context" : "the image is nil");
        return picture;
    }
    std::string error;
    const std::size_t messagesBefore = context()->validationMessages().size();
    picture.values = context()->renderToFloats(image, &error);
    picture.width = int(image.size().width);
    picture.height = int(image.size().height);
    const auto messages = context()->validationMessages();
    for (std::size_t i = messagesBefore; i < messages.size(); ++i) ADD_FAILURE() << messages[i];
    if (picture.values.size() != std::size_t(picture.width) * std::size_t(picture.height) * 4) {
        ADD_FAILURE() << "not rendered: " << error;
        picture.values.assign(std::size_t(picture.width) * std::size_t(picture.height) * 4, NAN);
    }
    return picture;
}

}  // namespace qv::test
