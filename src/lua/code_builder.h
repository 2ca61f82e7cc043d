#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lua/prototype.h"
#include "lua/syntax_tree.h"

namespace vesper::lua {

using Register = std::uint16_t;
using JumpList = std::vector<std::size_t>;

// Gathers the code of one function: instructions with their lines, constants, registers in use, captures.
class CodeBuilder {
public:
    CodeBuilder(const FunctionExpr& function, CodeBuilder* parent, Value chunkName,
                kelmora::guest::SharedSource source);

    const FunctionExpr& function() const { return function_; }
    CodeBuilder* parent() const { return parent_; }

    void emit(Opcode opcode, std::size_t a, std::size_t b, std::size_t c, std::uint32_t line);
    void emitWide(Opcode opcode, std::size_t a, std::int64_t wide, std::uint32_t line);
    // The jump's target is patched in later.
    std::size_t emitJump(Opcode opcode, std::size_t a, std::uint32_t line);
    std::size_t here() const { return prototype_->code.size(); }
    void patch(std::size_t jump, std::size_t target);
    void patchHere(const JumpList& jumps);

    std::uint32_t constant(const Value& value);

    // Registers are handed out upwards and given back from the top.
    Register allocate(std::uint32_t line, std::size_t count = 1);
    Register top() const { return static_cast<Register>(free_); }
    void releaseTo(Register top) { free_ = top; }
    // Those below hold local variables.
    Register localsEnd() const { return localsEnd_; }
    void setLocalsEnd(Register end) { localsEnd_ = end; }
    bool isTemporary(Register place) const { return place >= localsEnd_; }

    bool isOwnName(const LocalVariable& variable) const {
        return function_.ownName == &variable && !variable.reassigned;
    }
    std::uint16_t captureIndex(const LocalVariable& variable);

    void addChild(kelmora::Ref<const Prototype> child) { prototype_->children.push_back(std::move(child)); }
    std::size_t childCount() const { return prototype_->children.size(); }
    kelmora::Ref<const Prototype> finish();

    // Those of the innermost loop.
    JumpList* breaks = nullptr;

private:
    const FunctionExpr& function_;
    CodeBuilder* parent_;
    kelmora::Ref<Prototype> prototype_;
    std::unordered_map<std::string, std::uint32_t> constants_;
    std::unordered_map<const LocalVariable*, std::uint16_t> captures_;
    std::size_t free_ = 0;
    Register localsEnd_ = 0;
};

}  // namespace vesper::lua
