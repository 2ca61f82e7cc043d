#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "codec/inflate.h"

// The first byte sets the output limit, near what is needed; the rest is a zlib stream.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    kelmora::ByteBuffer output;
    vh::png::Inflater one_shot;
    if (!one_shot.inflate_bytes(data + 1, size - 1, output)) return 0;
    const auto limit = static_cast<std::uint32_t>(output.size()) + 1 - data[0] % 3;
    const vh::png::ByteSpan span(data + 1, size - 1);
    vh::png::Inflater limited;
    const bool fits = limit >= output.size();
    if (limited.start({&span, 1}, limit) != fits) std::abort();
    if (fits && !std::ranges::equal(limited.output(), output)) std::abort();
    return 0;
}
