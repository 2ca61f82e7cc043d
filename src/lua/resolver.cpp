#include "lua/resolver.h"

#include <utility>

#include "guest/location_error.h"

namespace vesper::lua {

class Resolver::Scope {
public:
    explicit Scope(Resolver& resolver) : resolver_(resolver), start_(resolver.declared_.size()) {}
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope() {
        auto& declared = resolver_.declared_;
        while (declared.size() > start_) {
            resolver_.visible_[declared.back()].pop_back();
            declared.pop_back();
        }
    }

private:
    Resolver& resolver_;
    std::size_t start_;
};

LocalVariable* Resolver::declare(const Value& name) {
    LocalVariable* local = tree_.makeLocal(function_);
    local->captured = local->reassigned = alwaysBoxed_;
    visible_[name.letters()].push_back(local);
    declared_.push_back(name.letters());
    return local;
}

void Resolver::checkDepth(const Node& node) const {
    try {
        stack_.check();
    } catch (const std::runtime_error& error) {
        kelmora::guest::failParse(chunkName_, {node.line, 0}, error.what());
    }
}

void Resolver::resolveStatements(const Block& block) {
    const Scope scope(*this);
    for (Stmt* statement : block) resolveStatement(*statement);
}

void Resolver::resolveStatement(Stmt& statement) {
    checkDepth(statement);
    switch (statement.kind) {
        case StmtKind::If: {
            auto& node = static_cast<IfStmt&>(statement);
            for (const IfStmt::Branch& branch : node.branches) {
                resolveExpression(*branch.condition);
                resolveStatements(branch.block);
            }
            resolveStatements(node.elseBlock);
            return;
        }
        case StmtKind::While: {
            auto& node = static_cast<WhileStmt&>(statement);
            resolveExpression(*node.condition);
            resolveStatements(node.body);
            return;
        }
        case StmtKind::NumericFor:
            return resolveLoop(static_cast<NumericForStmt&>(statement));
        case StmtKind::GenericFor:
            return resolveLoop(static_cast<GenericForStmt&>(statement));
        case StmtKind::Return:
            return resolveList(static_cast<ReturnStmt&>(statement).values);
        case StmtKind::Break:
            return;
        case StmtKind::FunctionDeclaration:
            return resolveDeclaration(static_cast<FunctionDeclarationStmt&>(statement));
        case StmtKind::Assignment:
            return resolveAssignment(static_cast<AssignmentStmt&>(statement));
        case StmtKind::Expression:
            return resolveExpression(*static_cast<ExpressionStmt&>(statement).call);
    }
    kelmora::guest::failParse(chunkName_, {statement.line, 0}, "unable to resolve statement");
}

void Resolver::resolveLoop(NumericForStmt& loop) {
    resolveExpression(*loop.start);
    resolveExpression(*loop.limit);
    if (loop.step) resolveExpression(*loop.step);
    const Scope scope(*this);
    loop.local = declare(loop.name);
    resolveStatements(loop.body);
}

void Resolver::resolveLoop(GenericForStmt& loop) {
    resolveExpression(*loop.iterator);
    const Scope scope(*this);
    for (const Value& name : loop.names) loop.locals.push_back(declare(name));
    resolveStatements(loop.body);
}

void Resolver::resolveAssignment(AssignmentStmt& assignment) {
    resolveList(assignment.values);
    for (Expr* target : assignment.targets) resolveTarget(*target);
    for (const Value& name : assignment.names) assignment.locals.push_back(declare(name));
}

void Resolver::resolveDeclaration(FunctionDeclarationStmt& declaration) {
    if (declaration.target) {
        resolveTarget(*declaration.target);
    } else {
        declaration.local = declare(declaration.localName);
        declaration.local->isOwnName = true;
        declaration.function->ownName = declaration.local;
    }
    resolveFunction(*declaration.function);
}

void Resolver::resolveFunction(FunctionExpr& function) {
    const FunctionExpr* outer = std::exchange(function_, &function);
    {
        const Scope scope(*this);
        for (const Value& name : function.parameters) function.locals.push_back(declare(name));
        resolveStatements(function.body);
    }
    function_ = outer;
}

void Resolver::resolveList(const ExprList& list) {
    for (Expr* expression : list) resolveExpression(*expression);
}

void Resolver::resolveVariable(VariableExpr& variable, bool isTarget) {
    const auto found = visible_.find(variable.name.letters());
    if (found == visible_.end() || found->second.empty()) {
        variable.global = globals_.resolveGlobalSlot(variable.name.letters());
        return;
    }
    variable.local = found->second.back();
    if (variable.local->owner != function_) variable.local->captured = true;
    if (isTarget) variable.local->reassigned = true;
}

void Resolver::resolveTarget(Expr& target) {
    if (target.kind == ExprKind::Variable) {
        resolveVariable(static_cast<VariableExpr&>(target), true);
    } else {
        resolveExpression(target);
    }
}

void Resolver::resolveExpression(Expr& expression) {
    checkDepth(expression);
    switch (expression.kind) {
        case ExprKind::Literal:
            return;
        case ExprKind::Variable:
            return resolveVariable(static_cast<VariableExpr&>(expression), false);
        case ExprKind::Table:
            for (const TableExpr::Field& field : static_cast<TableExpr&>(expression).fields) {
                if (field.key) resolveExpression(*field.key);
                resolveExpression(*field.value);
            }
            return;
        case ExprKind::Function:
            return resolveFunction(static_cast<FunctionExpr&>(expression));
        case ExprKind::Field:
            return resolveExpression(*static_cast<FieldExpr&>(expression).object);
        case ExprKind::Index:
            resolveExpression(*static_cast<IndexExpr&>(expression).object);
            return resolveExpression(*static_cast<IndexExpr&>(expression).key);
        case ExprKind::Call:
            resolveExpression(*static_cast<CallExpr&>(expression).callee);
            return resolveList(static_cast<CallExpr&>(expression).arguments);
        case ExprKind::Binary:
            resolveExpression(*static_cast<BinaryExpr&>(expression).left);
            return resolveExpression(*static_cast<BinaryExpr&>(expression).right);
        case ExprKind::Logical:
            resolveExpression(*static_cast<LogicalExpr&>(expression).left);
            return resolveExpression(*static_cast<LogicalExpr&>(expression).right);
        case ExprKind::Unary:
            return resolveExpression(*static_cast<UnaryExpr&>(expression).operand);
        case ExprKind::Parenthesised:
            return resolveExpression(*static_cast<ParenthesisedExpr&>(expression).inner);
    }
}

}  // namespace vesper::lua
