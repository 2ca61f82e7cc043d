#include "base/number_parse.h"

#include <cerrno>
#include <cstdlib>

namespace kelmora {
namespace {

template <typename Real, typename Parse>
bool parseWhole(const std::string& text, Real& value, Parse parse) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = parse(text.c_str(), &end);
    return errno != ERANGE && end == text.c_str() + text.size();
}

}  // namespace

bool parseFloatStrict(const std::string& text, float& value) {
    return parseWhole(text, value, std::strtof);
}

bool parseDoubleStrict(const std::string& text, double& value) {
    return parseWhole(text, value, std::strtod);
}

}  // namespace kelmora
