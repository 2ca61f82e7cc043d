#pragma once

#include "base/native_stack.h"
#include "lua/code_builder.h"
#include "lua/syntax_tree.h"

namespace vesper::lua {

// Makes the register code of a resolved tree. Raises GuestError for what is nested too deeply or needs too
// many registers.
class Compiler {
public:
    Compiler(Value chunkName, kelmora::guest::SharedSource source, const kelmora::NativeStack& stack)
        : chunkName_(std::move(chunkName)), source_(std::move(source)), stack_(stack) {}

    kelmora::Ref<const Prototype> compile(const SyntaxTree& tree) { return compileFunction(*tree.main); }

private:
    static bool expressionContainsFunction(const Expr& expression);
    void checkDepth(const Node& node) const;
    kelmora::Ref<const Prototype> compileFunction(const FunctionExpr& function);

    void compileBlock(const Block& block);
    void compileStatements(const Block& block);
    void compileStatement(const Stmt& statement);
    void compileIf(const IfStmt& statement);
    void compileWhile(const WhileStmt& statement);
    void compileNumericFor(const NumericForStmt& statement);
    void compileGenericFor(const GenericForStmt& statement);
    void compileReturn(const ReturnStmt& statement);
    void compileFunctionDeclaration(const FunctionDeclarationStmt& statement);
    void compileLocal(const AssignmentStmt& statement);
    void compileAssignment(const AssignmentStmt& statement);
    void compileSingleAssignment(const Expr& target, const Expr& value, std::uint32_t line);
    bool compileAppend(const VariableExpr& target, const Expr& value, std::uint32_t line);
    void assignTarget(const Expr& target, Register value, std::uint32_t line);
    void assignVariable(const VariableExpr& target, Register value, std::uint32_t line);
    void declareLocal(LocalVariable& local, Register place, std::uint32_t line);
    // Into registers from the top on, as many as wanted.
    Register compileValues(const ExprList& values, std::size_t wanted, std::uint32_t line);

    // Into registers from the top on; manyValues when the last gives an open number.
    std::uint16_t compileOpenValues(const ExprList& values);
    // Of this function, in a register of its own; else null.
    const LocalVariable* plainLocal(const Expr& expression) const;
    // The register where the value is, which may be a local variable's own.
    Register operand(const Expr& expression);
    // The same for the first of two operands, where the result's own register can hold it meanwhile.
    Register operandOver(const Expr& expression, Register target);
    Register toTemporary(const Expr& expression);
    void toRegister(const Expr& expression, Register target);
    void literalToRegister(const Value& value, Register target, std::uint32_t line);
    void variableToRegister(const VariableExpr& variable, Register target);
    void tableToRegister(const TableExpr& table, Register target);
    void tableItems(const TableExpr& table, Register place);
    void functionToRegister(const FunctionExpr& function, Register target);
    void indexToRegister(const Expr& object, const Expr& key, Register target, std::uint32_t line);
    void arithmeticToRegister(const BinaryExpr& binary, Register target);
    void concatToRegister(const BinaryExpr& binary, Register target);
    std::size_t concatOperands(const std::vector<const Expr*>& operands, Register start, std::uint32_t line);
    void logicalToRegister(const LogicalExpr& logical, Register target);
    void comparisonToRegister(const Expr& comparison, Register target);
    void unaryToRegister(const UnaryExpr& unary, Register target);
    void callToRegister(const CallExpr& call, Register target);
    // Its results stand from `base` on, which is the top.
    void compileCall(const CallExpr& call, Register base, std::uint16_t wanted);
    // Emits jumps that are taken when the value's truth is `wanted`.
    void condition(const Expr& expression, bool wanted, JumpList& jumps);
    void comparison(const BinaryExpr& binary, bool wanted, JumpList& jumps);
    void equality(const Expr& left, const Expr& right, bool wanted, JumpList& jumps, std::uint32_t line);
    void emitComparison(Opcode opcode, std::size_t a, std::size_t b, bool wanted, JumpList& jumps,
                        std::uint32_t line);
    // True when the value is a literal that 16 bits can name.
    bool constantOperand(const Expr& expression, std::uint16_t& index);
    void move(Register target, Register source, std::uint32_t line);

    Value chunkName_;
    kelmora::guest::SharedSource source_;
    const kelmora::NativeStack& stack_;
    CodeBuilder* code_ = nullptr;
};

}  // namespace vesper::lua
