#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "codec/bmp_read.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vh::png::Image image;
    const bool loaded = vh::png::load_bmp({data, size}, image);
    if (loaded == image.pixels.empty()) std::abort();
    return 0;
}
