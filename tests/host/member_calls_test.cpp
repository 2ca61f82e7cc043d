#include "support/member_calls.h"

#include <gtest/gtest.h>

#include <random>

namespace kelmora {
namespace {

unsigned seedCount() {
    const char* asked = std::getenv("KELMORA_MEMBER_SEEDS");
    return asked ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : 60;
}

// Nothing that a script may pass to a function of ours may end the process; the sanitisers watch.
TEST(MemberCalls, NoArgumentsEndTheProcess) {
    for (unsigned seed = 0; seed < seedCount(); ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::vector<unsigned char> choices(4000);
        for (unsigned char& choice : choices) choice = static_cast<unsigned char>(random());
        MemberCalls calls(choices);
        ASSERT_GT(calls.functionCount(), 120u);
        calls.run();
    }
}

}  // namespace
}  // namespace kelmora
