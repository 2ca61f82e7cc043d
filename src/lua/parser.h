#pragma once

#include <string>
#include <string_view>

#include "base/native_stack.h"
#include "lua/lexer.h"
#include "lua/string_pool.h"
#include "lua/syntax_tree.h"

namespace vesper::lua {

// Reads a whole source by recursive descent. Raises GuestError at the first thing that is wrong.
class Parser {
public:
    Parser(std::string_view source, std::string_view chunkName, StringPool& strings,
           const kelmora::NativeStack& stack);

    SyntaxTree parse();

private:
    void advance();
    bool at(TokenKind kind) const { return token_.kind == kind; }
    bool accept(TokenKind kind);
    void expect(TokenKind kind, std::string_view message);
    Value expectName(std::string_view message);
    [[noreturn]] void fail(std::string_view message) const;
    void checkDepth() const;
    template <typename T>
    T* make() {
        return tree_.make<T>(token_.line);
    }

    bool atBlockEnd() const;
    bool atExpressionStart() const;
    Block parseBlock();
    Block parseLoopBody(std::string_view unclosed);
    Stmt* parseStatement();
    Stmt* parseIf();
    Stmt* parseWhile();
    Stmt* parseFor();
    Stmt* parseNumericFor(std::uint32_t line, Value name);
    Stmt* parseGenericFor(std::uint32_t line, Value firstName);
    Stmt* parseFunctionDeclaration();
    Stmt* parseLocal();
    Stmt* parseLocalFunction(std::uint32_t line);
    Stmt* parseReturn();
    Stmt* parseBreak();
    Stmt* parseExpressionStatement();
    Stmt* parseAssignment(std::uint32_t line, Expr* first);

    ExprList parseExpressionList();
    Expr* parseExpression();
    Expr* parseAnd();
    Expr* parseComparison();
    Expr* parseConcat();
    Expr* parseAdditive();
    Expr* parseFactor();
    Expr* parseUnary();
    Expr* parsePrefixExpression();
    Expr* parsePrimary();
    Expr* parseChain(Expr* expression);
    Expr* parseCall(Expr* callee, std::uint32_t line);
    Expr* parseTable();
    TableExpr::Field parseTableField();
    FunctionExpr* parseFunctionBody(std::uint32_t line, bool isMethod);
    Expr* makeLiteral(Value value);
    Expr* makeBinary(BinaryOperator operation, Expr* left, Expr* right, std::uint32_t line);
    Value readNumber(const std::string& text) const;

    Lexer lexer_;
    std::string_view chunkName_;
    StringPool& strings_;
    const kelmora::NativeStack& stack_;
    SyntaxTree tree_;
    Token token_;
    Token ahead_;
    std::size_t loopDepth_ = 0;
};

}  // namespace vesper::lua
