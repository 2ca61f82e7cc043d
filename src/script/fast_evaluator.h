#pragma once

#include "script/fast_expression.h"
#include "script/variable.h"

namespace kelmora {

class VesperScript;

// Evaluates compiled expressions, with the results and the messages of the token walk. Operands that are
// names or constants are used where they stand; only what a call could change under it is copied.
class FastEvaluator {
public:
    FastEvaluator(VesperScript& script, const FastExpression& expression)
        : script_(script), expression_(expression) {}

    // Nil when a soft error ends the evaluation half-way.
    Variable evaluate() { return evaluate(node(expression_.root)); }
    bool evaluateCondition() { return condition(node(expression_.root)); }

private:
    const FastExprNode& node(std::int32_t index) const {
        return expression_.nodes[static_cast<std::size_t>(index)];
    }
    bool aborted() const;

    Variable evaluate(const FastExprNode& node);
    bool condition(const FastExprNode& node);
    // The node's value where it stands, or put into `storage`. With `keep` it is always in `storage`.
    const Variable& operand(const FastExprNode& node, Variable& storage, bool keep);
    const Variable& read(const FastExprNode& node) const;
    Variable binary(const FastExprNode& node);
    bool compare(const FastExprNode& node);
    Variable negate(const FastExprNode& node);
    Variable index(const FastExprNode& node);
    Variable call(const FastExprNode& node);

    VesperScript& script_;
    const FastExpression& expression_;
};

}  // namespace kelmora
