#include "support/two_ways.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelmora::fuzz::requireAgreement(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
