#pragma once

#include <gtest/gtest.h>

#include "Platform/Media/ImageFile.h"
#include "QVFilterCore/QVResourceBundle.h"
#include "Tests/Media/TemporaryFolder.h"

namespace qv::test {

/// A resource bundle of its own in place of the library's, which comes back when this one goes.
class TemporaryBundle : public TemporaryFolder {
  public:
    TemporaryBundle() { setResourceBundlePath(*this / ""); }
    ~TemporaryBundle() { setResourceBundlePath({}); }
    void write(const std::string& name, const Bitmap& picture) const {
        EXPECT_TRUE(writePNG(picture, *this / name));
    }
};

}  // namespace qv::test
