#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "tool/play/play_script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        kelmora::parsePlayScript({reinterpret_cast<const char*>(data), size}, "fuzz");
    } catch (const std::runtime_error&) {
    }
    return 0;
}
