#include "tool/play/protected_call.h"

#include <stdexcept>

#include "script/interpreter.h"
#include "tool/play/game_session.h"

namespace kelmora {

std::vector<Variable> protectedCall(VesperScript& engine, const Variable& function,
                                    const std::vector<Variable>& arguments) {
    std::vector<Variable> words{function};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const ErrorTrail& trail = engine.interpreter().trail;
    const ErrorTrail::Foot foot(engine.interpreter());
    const Variable result = engine.callCallable(globalOf(engine, "pcall"), words);
    std::vector<Variable> values = result.isMulti() ? result.values() : std::vector<Variable>{result};
    if (values.empty()) return values;
    const bool isWell = isTruthy(values[0]);
    values.erase(values.begin());
    if (!isWell && values.empty()) throw std::runtime_error("it failed");
    if (!isWell) throw TracedError(values[0].toString(), trail.placesOf(values[0]));
    return values;
}

}  // namespace kelmora
