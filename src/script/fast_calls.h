#pragma once

#include "script/fast_expression.h"
#include "script/variable.h"

namespace kelmora {

// The code of a Call node: callee, arguments from left to right, then the call.
Variable evaluateCall(Interpreter& script, const FastExprNode& node);
// The same where the callee is a plain name.
Variable evaluateNamedCall(Interpreter& script, const FastExprNode& node);

}  // namespace kelmora
