#include <cstdint>
#include <string_view>

#include "base/regex/regex.h"

// First byte: bit 0 ignores case, the others are match flags. Then the pattern, a zero byte, the subject.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelmora::regex;
    if (size == 0) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t split = text.find('\0');
    const std::string_view subject = split == std::string_view::npos ? "" : text.substr(split + 1);
    constexpr Limits limits{.steps = 20'000, .stepsPerByte = 4, .stackBytes = 1 << 20};
    try {
        const Pattern pattern = Pattern::compile(text.substr(0, split), (data[0] & 1) != 0);
        Scratch scratch;
        const auto flags = static_cast<MatchFlags>(data[0] >> 1);
        MatchIterator matches(pattern, subject, scratch, flags, limits);
        for (int i = 0; i < 100 && matches.next(); ++i)
            for (const Capture& capture : matches.captures()) (void)capture.in(subject);
        Captures captures;
        pattern.search(subject, subject.size() / 2, captures, scratch, flags, limits);
    } catch (const SyntaxError&) {
    } catch (const BudgetExceeded&) {
    }
    return 0;
}
