#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "script/code.h"
#include "script/fast_expression.h"
#include "script/scopes.h"

namespace kelmora {

// Writes instructions, and those of expressions.
class CodeBuilder {
public:
    CodeBuilder(Code& code, Scopes& scopes, ValuePlace* temporaries)
        : code_(code), scopes_(scopes), temporaries_(temporaries) {}

    std::uint32_t here() const { return static_cast<std::uint32_t>(code_.instructions.size()); }
    void setSite(CodeSite site) { site_ = site; }
    const CodeSite& site() const { return site_; }

    struct Operands {
        Place* a = nullptr;
        Place* b = nullptr;
        Place* c = nullptr;
        std::uint32_t number = 0;
        TokenKind kind = TokenKind::Unknown;
        std::uint8_t flags = 0;
    };
    void emit(Operation operation, Operands operands);
    void emit(Operation operation) { emit(operation, Operands{}); }
    // An instruction that may run script.
    void emitCalling(Operation operation, Operands operands);
    void emitCalling(Operation operation) { emitCalling(operation, Operands{}); }
    // Raises the message when it runs, pointing at the token if there is one.
    void emitFault(const char* message, const char* token = nullptr);
    std::uint32_t addText(CodeText text);

    // Jumps whose target comes later.
    using Jumps = std::vector<std::uint32_t>;
    void emitJump(Jumps& jumps, Operation operation, Operands operands);
    void emitJump(Jumps& jumps, Operation operation) { emitJump(jumps, operation, Operands{}); }
    void land(Jumps& jumps);
    void emitJumpBack(Operation operation, std::uint32_t target);

    // The value, where it stands or in a temporary; there if what follows may change where it stands.
    Place* operand(const FastExprNode& node, bool isKept = false);
    // Into a temporary or a name; nothing but the last instruction writes there, except for temporaries.
    void evaluateInto(const FastExprNode& node, Place* target);
    void callFor(const FastExprNode& node, Place* result);
    void jumpUnless(const FastExprNode& node, Jumps& jumps) { test(node, false, jumps); }
    void jumpIf(const FastExprNode& node, Jumps& jumps) { test(node, true, jumps); }

    Place* cell(NameId name) { return &scopes_.cell(name); }
    Place* constant(const Variable& value);
    // On the stack. Nothing may be pushed while a value there is wanted.
    Place* next() const { return &scopes_.calls().next(); }
    bool isTemporary(const Place* place) const {
        return (place >= temporaries_ && place < temporaries_ + temporaryCount) || place == next();
    }
    // Temporaries are handed out in order and given back to a mark.
    std::size_t mark() const { return held_.size(); }
    void release(std::size_t mark) { held_.resize(mark); }
    Place* newTemporary();
    // From here on the temporary has a value that is wanted later.
    Place* hold(Place* temporary);

private:
    void test(const FastExprNode& node, bool when, Jumps& jumps);
    void logical(const FastExprNode& node, Place* target);
    void array(const FastExprNode& node, Place* target);
    void table(const FastExprNode& node, Place* target);
    void push(const FastExprNode& node);
    // The left operand: on the stack while the right one calls.
    std::pair<Place*, Place*> operands(const FastExprNode& node);

    Code& code_;
    Scopes& scopes_;
    ValuePlace* temporaries_;
    CodeSite site_;
    std::map<std::pair<VarType, const void*>, Place*> constants_;
    std::vector<bool> held_;  // of the temporaries that are handed out
};

}  // namespace kelmora
