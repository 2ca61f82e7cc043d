#include <gtest/gtest.h>

#include "codec/codec_test_support.h"

namespace vh::png {
namespace {

// tools/make_png_inputs.py.
TEST(PngManifest, EveryInputReadsAsItsLineSays) {
    ASSERT_GT(read_manifest(image_path("")).size(), 150u);
    check_manifest(image_path(""));
}

}  // namespace
}  // namespace vh::png
