#pragma once

#include <string>

#include "plush/shader/name_resolver.h"

namespace kelmora::plush_shader::detail {

struct BuiltinFunction;

// Compiles expressions. What it returns is the slot that holds the value: a variable's own or a temporary.
class ExpressionCompiler {
public:
    ExpressionCompiler(TokenCursor& cursor, ProgramBuilder& builder, NameResolver& names)
        : cursor_(cursor), builder_(builder), names_(names) {}

    // Takes operators of at least the given level of binding.
    Slot expression(int level = 0);

private:
    Slot unary();
    Slot power();
    Slot primary();
    Slot named(const std::string& name);
    Slot mathMember();
    Slot call(const BuiltinFunction& function);
    bool atMember() const { return cursor_.isSymbol(".") || cursor_.isSymbol("["); }
    std::string memberKey();

    TokenCursor& cursor_;
    ProgramBuilder& builder_;
    NameResolver& names_;
};

}  // namespace kelmora::plush_shader::detail
