#include "support/two_ways.h"

// One expression, by itself and inside a protected call.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string expression(reinterpret_cast<const char*>(data), size);
    kelmora::fuzz::requireAgreement(
        "function f(a, b)\n    x = b\n    return a, b\nend\n"
        "x = 3\ny = 2.5\ns = \"text\"\nt = {1, 2, k = \"v\"}\na = [4, 5, 6]\n"
        "function q(...)\n    return " +
        expression + "\nend\nprint(pcall(q, 7, s))\nprint(x, t, a)\nz = " + expression +
        "\nprint(z, x, t, a)\n");
    return 0;
}
