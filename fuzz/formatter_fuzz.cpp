#include <cstdlib>
#include <string>

#include "workbench/formatter.h"

// Formats a source: nothing but blanks may change, and nothing the second time.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string source(reinterpret_cast<const char*>(data), size);
    std::string made = kelmora::formatSource(source).text;
    if (kelmora::formatSource(made).text != made) std::abort();
    std::erase_if(made, [](char c) { return c == ' ' || c == '\t'; });
    std::string bare = source;
    std::erase_if(bare, [](char c) { return c == ' ' || c == '\t'; });
    if (made != bare) std::abort();
    return 0;
}
