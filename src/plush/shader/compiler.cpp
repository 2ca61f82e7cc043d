#include "plush/shader/compiler.h"

#include <algorithm>
#include <string_view>

#include "plush/shader/expression_compiler.h"

namespace kelmora::plush_shader {
namespace detail {
namespace {

constexpr std::string_view unsupportedStatements[] = {"while", "for", "repeat", "function"};

}  // namespace

class Compiler {
public:
    Compiler(const std::string& source, const CompileOptions& options)
        : cursor_(tokenise(source)),
          builder_(source, cursor_),
          names_(options, cursor_, builder_),
          expressions_(cursor_, builder_, names_) {}

    std::shared_ptr<const Program> compile() {
        block();
        if (!cursor_.isKind(TokenKind::InputEnd)) cursor_.fail("unexpected " + cursor_.quoted());
        builder_.halt();
        return builder_.finish();
    }

private:
    void block() {
        const TokenCursor::Nesting nesting(cursor_);
        const NameResolver::Scope scope(names_);
        for (;;) {
            while (cursor_.isKind(TokenKind::StatementEnd)) cursor_.advance();
            if (cursor_.isBlockEnd()) return;
            statement();
        }
    }

    void statement() {
        builder_.beginStatement();
        if (!cursor_.isKind(TokenKind::Name)) cursor_.fail("unexpected " + cursor_.quoted());
        if (cursor_.isName("if")) return ifStatement();
        if (cursor_.acceptName("do")) return doStatement();
        for (const std::string_view word : unsupportedStatements)
            if (cursor_.isName(word)) cursor_.fail(cursor_.quoted() + " is not supported inside a shader");
        if (cursor_.acceptName("local"))
            localStatement();
        else if (cursor_.acceptName("return"))
            returnStatement();
        else
            assignment();
        if (!cursor_.isKind(TokenKind::StatementEnd) && !cursor_.isBlockEnd())
            cursor_.fail("unexpected " + cursor_.quoted() + " after statement");
    }

    void ifStatement() {
        std::vector<std::size_t> exits;
        do {
            cursor_.advance();
            const std::size_t skip = builder_.jumpIfZero(expressions_.expression());
            cursor_.acceptName("then");
            block();
            if (cursor_.isName("elseif") || cursor_.isName("else")) exits.push_back(builder_.jump());
            builder_.land(skip);
        } while (cursor_.isName("elseif"));
        if (cursor_.acceptName("else")) block();
        if (!cursor_.acceptName("end")) cursor_.fail("expected 'end' to close 'if'");
        for (const std::size_t exit : exits) builder_.land(exit);
        builder_.requireReachableTargets();
    }

    void doStatement() {
        block();
        if (!cursor_.acceptName("end")) cursor_.fail("expected 'end' to close 'do'");
    }

    void localStatement() {
        std::vector<std::string> names;
        do names.push_back(cursor_.requireName("expected a name after 'local'"));
        while (cursor_.acceptSymbol(","));
        std::vector<Slot> values;
        if (cursor_.acceptSymbol("=")) values = heldValues();
        while (values.size() < names.size()) values.push_back(builder_.heldInTemporary(builder_.constant(0)));
        for (std::size_t i = 0; i < names.size(); ++i)
            builder_.move(names_.declareLocal(names[i]), values[i]);
    }

    void returnStatement() {
        std::vector<Slot> values;
        if (!cursor_.isKind(TokenKind::StatementEnd) && !cursor_.isBlockEnd()) values = heldValues();
        if (values.size() > 4) cursor_.fail("return accepts at most r, g, b, a");
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto channel = static_cast<Slot>(i);
            builder_.move(channel, values[i]);
            builder_.markWrite(channel);
        }
        builder_.halt();
    }

    void assignment() {
        std::vector<std::string> names;
        do {
            if (!cursor_.isKind(TokenKind::Name))
                cursor_.fail("expected a name but found " + cursor_.quoted());
            names.push_back(cursor_.token().text);
            cursor_.advance();
            if (cursor_.isSymbol("("))
                cursor_.fail("calling '" + names.back() +
                             "' as a statement is not supported inside a shader");
        } while (cursor_.acceptSymbol(","));
        cursor_.requireSymbol("=");
        const std::vector<Slot> values = heldValues();
        if (values.size() != names.size())
            cursor_.fail("assignment has " + std::to_string(names.size()) + " targets but " +
                         std::to_string(values.size()) + " values");
        for (std::size_t i = 0; i < names.size(); ++i) builder_.move(names_.write(names[i]), values[i]);
    }

    // A list of expressions, all evaluated before any of them is stored.
    std::vector<Slot> heldValues() {
        std::vector<Slot> values;
        do values.push_back(builder_.heldInTemporary(expressions_.expression()));
        while (cursor_.acceptSymbol(","));
        return values;
    }

    TokenCursor cursor_;
    ProgramBuilder builder_;
    NameResolver names_;
    ExpressionCompiler expressions_;
};

}  // namespace detail

std::shared_ptr<const Program> compile(const std::string& source, const CompileOptions& options) {
    return detail::Compiler(source, options).compile();
}

}  // namespace kelmora::plush_shader
