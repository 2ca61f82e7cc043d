#include "tool/play/protected_call.h"

#include <stdexcept>

#include "tool/play/game_session.h"

namespace kelmora {

std::vector<Variable> protectedCall(VesperScript& engine, const Variable& function,
                                    const std::vector<Variable>& arguments) {
    std::vector<Variable> words{function};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const Variable result = engine.callCallable(globalOf(engine, "pcall"), words);
    std::vector<Variable> values = result.isMulti() ? result.values() : std::vector<Variable>{result};
    if (values.empty()) return values;
    const bool isWell = isTruthy(values[0]);
    values.erase(values.begin());
    if (!isWell) throw std::runtime_error(values.empty() ? "it failed" : values[0].toString());
    return values;
}

}  // namespace kelmora
