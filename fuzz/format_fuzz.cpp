#include <cstdint>
#include <cstring>
#include <exception>
#include <string>

#include "script/library/format.h"

// Four bytes for the numbers that are formatted, then the format text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelmora;
    if (size < 4) return 0;
    std::uint32_t bits = 0;
    std::memcpy(&bits, data, sizeof bits);
    const std::string text(reinterpret_cast<const char*>(data) + 4, size - 4);
    const auto whole = static_cast<std::int32_t>(bits);
    const Variable arguments[] = {Variable::text(text),
                                  Variable::integer(whole),
                                  Variable::number(static_cast<float>(whole) / 1000.0f),
                                  Variable::text(text),
                                  Variable(),
                                  Variable::boolean(whole > 0),
                                  Variable::number(1e30f)};
    try {
        formatValues(arguments);
    } catch (const std::exception&) {
    }
    return 0;
}
