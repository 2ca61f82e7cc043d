#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "codec/load_store.h"
#include "codec/xcf_read.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A claim of many gigabytes is kept, but under the sanitizers it costs minutes.
    if (size >= 22 &&
        std::uint64_t{vh::png::load_u32_big(data + 14)} * vh::png::load_u32_big(data + 18) > 1u << 20)
        return 0;
    vh::png::Image image;
    const bool loaded = vh::png::load_xcf({data, size}, image);
    if (loaded == image.pixels.empty()) std::abort();
    return 0;
}
