#pragma once

#include <unordered_map>
#include <vector>

#include "base/native_stack.h"
#include "lua/globals.h"
#include "lua/syntax_tree.h"

namespace vesper::lua {

// Binds each name of a tree to a local variable or to a global's slot, and finds out which locals are
// captured and which are set again. Raises GuestError when the tree is nested too deeply.
class Resolver {
public:
    Resolver(SyntaxTree& tree, Globals& globals, std::string_view chunkName,
             const kelmora::NativeStack& stack)
        : tree_(tree), globals_(globals), chunkName_(chunkName), stack_(stack) {}

    // For tests: every local variable lives in a box that is made anew each time its declaration runs.
    void setAlwaysBoxed(bool boxed) { alwaysBoxed_ = boxed; }
    void resolve() { resolveFunction(*tree_.main); }

private:
    // Names that end with it are undone when it goes.
    class Scope;

    LocalVariable* declare(const Value& name);
    void checkDepth(const Node& node) const;
    void resolveStatements(const Block& block);
    void resolveStatement(Stmt& statement);
    void resolveLoop(NumericForStmt& loop);
    void resolveLoop(GenericForStmt& loop);
    void resolveAssignment(AssignmentStmt& assignment);
    void resolveDeclaration(FunctionDeclarationStmt& declaration);
    void resolveFunction(FunctionExpr& function);
    void resolveList(const ExprList& list);
    void resolveExpression(Expr& expression);
    void resolveVariable(VariableExpr& variable, bool isTarget);
    void resolveTarget(Expr& target);

    SyntaxTree& tree_;
    Globals& globals_;
    std::string_view chunkName_;
    const kelmora::NativeStack& stack_;
    bool alwaysBoxed_ = false;
    const FunctionExpr* function_ = nullptr;
    std::unordered_map<std::string_view, std::vector<LocalVariable*>> visible_;  // names stand in the tree
    std::vector<std::string_view> declared_;  // in order, of all open scopes
};

}  // namespace vesper::lua
