#include "script/string_constants.h"

#include <unordered_map>

namespace kelmora {
namespace {

constexpr std::size_t longestShared = 40;

using Constants = std::unordered_map<std::string, Variable>;

// Never destroyed: file-scope objects may still hold constants while the process ends.
Constants& constants() {
    static Constants& table = *new Constants;
    return table;
}

}  // namespace

Variable stringConstant(std::string text) {
    if (text.size() > longestShared) return Variable::text(std::move(text));
    const auto found = constants().find(text);
    if (found != constants().end()) return found->second;
    const Variable made = Variable::text(text);
    constants().emplace(std::move(text), made);
    return made;
}

}  // namespace kelmora
