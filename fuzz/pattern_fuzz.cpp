#include <exception>
#include <string>

#include "text/pattern.h"

// A script's pattern text, a zero byte, and a subject.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelmora;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::size_t split = text.find('\0');
    const std::string subject = split == std::string::npos ? std::string() : text.substr(split + 1);
    constexpr regex::Limits limits{.steps = 20'000, .stepsPerByte = 4, .stackBytes = 1 << 20};
    try {
        const regex::Pattern pattern = compilePattern(text.substr(0, split));
        regex::Scratch scratch;
        regex::Captures captures;
        pattern.search(subject, 0, captures, scratch, regex::MatchFlags::none, limits);
    } catch (const std::exception&) {
    }
    return 0;
}
