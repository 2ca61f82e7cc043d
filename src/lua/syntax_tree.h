#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "lua/value.h"

namespace vesper::lua {

struct FunctionExpr;

// A `local`, a parameter or a loop's variable.
struct LocalVariable {
    const FunctionExpr* owner = nullptr;
    bool captured = false;    // an inner function uses it
    bool reassigned = false;  // set again after its declaration
    bool isOwnName = false;   // `local function`: in its own body it is the running function
    std::uint16_t place = 0;  // register, while its scope is compiled

    // What is never set again is captured by value.
    bool needsBox() const { return captured && reassigned; }
};

enum class ExprKind : std::uint8_t {
    Literal,
    Variable,
    Table,
    Function,
    Field,
    Index,
    Call,
    Binary,
    Logical,
    Unary,
    Parenthesised
};
enum class StmtKind : std::uint8_t {
    If,
    While,
    NumericFor,
    GenericFor,
    Return,
    Break,
    FunctionDeclaration,
    Assignment,
    Expression
};

// Nodes stand in a SyntaxTree, which owns them all: they hold each other by plain pointers.
struct Node {
    virtual ~Node() = default;
    std::uint32_t line = 0;
};

struct Expr : Node {
    explicit Expr(ExprKind wanted) : kind(wanted) {}
    ExprKind kind;
};
struct Stmt : Node {
    explicit Stmt(StmtKind wanted) : kind(wanted) {}
    StmtKind kind;
};
using Block = std::vector<Stmt*>;
using ExprList = std::vector<Expr*>;

struct LiteralExpr : Expr {
    LiteralExpr() : Expr(ExprKind::Literal) {}
    Value value;
};

// The resolver says which local it is; without one it is a global.
struct VariableExpr : Expr {
    VariableExpr() : Expr(ExprKind::Variable) {}
    Value name;
    LocalVariable* local = nullptr;
    std::uint32_t global = 0;
};

struct TableExpr : Expr {
    struct Field {
        Expr* key = nullptr;  // null: the next item
        Expr* value = nullptr;
    };
    TableExpr() : Expr(ExprKind::Table) {}
    std::vector<Field> fields;
};

struct FunctionExpr : Expr {
    FunctionExpr() : Expr(ExprKind::Function) {}
    std::string name;  // as it was declared or first assigned
    std::vector<Value> parameters;
    std::vector<LocalVariable*> locals;  // of the parameters
    Block body;
    LocalVariable* ownName = nullptr;
};

struct FieldExpr : Expr {
    FieldExpr() : Expr(ExprKind::Field) {}
    Expr* object = nullptr;
    Value name;
};

struct IndexExpr : Expr {
    IndexExpr() : Expr(ExprKind::Index) {}
    Expr* object = nullptr;
    Expr* key = nullptr;
};

// With a method's name the callee is the object.
struct CallExpr : Expr {
    CallExpr() : Expr(ExprKind::Call) {}
    Expr* callee = nullptr;
    ExprList arguments;
    bool isMethod = false;
    Value method;
};

enum class BinaryOperator : std::uint8_t {
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Concat,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual
};
struct BinaryExpr : Expr {
    BinaryExpr() : Expr(ExprKind::Binary) {}
    BinaryOperator operation = BinaryOperator::Add;
    Expr* left = nullptr;
    Expr* right = nullptr;
};

// `and` and `or`.
struct LogicalExpr : Expr {
    LogicalExpr() : Expr(ExprKind::Logical) {}
    bool isAnd = false;
    Expr* left = nullptr;
    Expr* right = nullptr;
};

enum class UnaryOperator : std::uint8_t { Negate, Not, Length };
struct UnaryExpr : Expr {
    UnaryExpr() : Expr(ExprKind::Unary) {}
    UnaryOperator operation = UnaryOperator::Negate;
    Expr* operand = nullptr;
};

// Cuts a call's results to one value.
struct ParenthesisedExpr : Expr {
    ParenthesisedExpr() : Expr(ExprKind::Parenthesised) {}
    Expr* inner = nullptr;
};

struct IfStmt : Stmt {
    struct Branch {
        Expr* condition = nullptr;
        Block block;
    };
    IfStmt() : Stmt(StmtKind::If) {}
    std::vector<Branch> branches;
    Block elseBlock;
};

struct WhileStmt : Stmt {
    WhileStmt() : Stmt(StmtKind::While) {}
    Expr* condition = nullptr;
    Block body;
};

struct NumericForStmt : Stmt {
    NumericForStmt() : Stmt(StmtKind::NumericFor) {}
    Value name;
    LocalVariable* local = nullptr;
    Expr* start = nullptr;
    Expr* limit = nullptr;
    Expr* step = nullptr;  // null: 1
    Block body;
};

struct GenericForStmt : Stmt {
    GenericForStmt() : Stmt(StmtKind::GenericFor) {}
    std::vector<Value> names;
    std::vector<LocalVariable*> locals;
    Expr* iterator = nullptr;
    Block body;
};

struct ReturnStmt : Stmt {
    ReturnStmt() : Stmt(StmtKind::Return) {}
    ExprList values;
};

struct BreakStmt : Stmt {
    BreakStmt() : Stmt(StmtKind::Break) {}
};

// `function a.b:c()` sets its target; `local function` declares its name first.
struct FunctionDeclarationStmt : Stmt {
    FunctionDeclarationStmt() : Stmt(StmtKind::FunctionDeclaration) {}
    Expr* target = nullptr;
    Value localName;
    LocalVariable* local = nullptr;
    FunctionExpr* function = nullptr;
};

// A target is a VariableExpr, FieldExpr or IndexExpr; a local one has names instead.
struct AssignmentStmt : Stmt {
    AssignmentStmt() : Stmt(StmtKind::Assignment) {}
    bool isLocal = false;
    ExprList targets;
    std::vector<Value> names;
    std::vector<LocalVariable*> locals;
    ExprList values;
};

struct ExpressionStmt : Stmt {
    ExpressionStmt() : Stmt(StmtKind::Expression) {}
    CallExpr* call = nullptr;
};

// All nodes and variables of one source. They are freed one by one, however deep they nest.
class SyntaxTree {
public:
    template <typename T>
    T* make(std::uint32_t line) {
        auto made = std::make_unique<T>();
        made->line = line;
        T* node = made.get();
        nodes_.push_back(std::move(made));
        return node;
    }
    LocalVariable* makeLocal(const FunctionExpr* owner) {
        locals_.push_back(std::make_unique<LocalVariable>());
        locals_.back()->owner = owner;
        return locals_.back().get();
    }

    FunctionExpr* main = nullptr;

private:
    std::vector<std::unique_ptr<Node>> nodes_;
    std::vector<std::unique_ptr<LocalVariable>> locals_;
};

}  // namespace vesper::lua
