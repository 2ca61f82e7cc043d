#include "support/member_calls.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    kelmora::MemberCalls(std::span(data, size)).run();
    return 0;
}
