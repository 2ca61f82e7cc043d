#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include "workbench/symbols.h"

namespace kelmora {

// Fills what SourceSymbols holds, statement by statement.
class SymbolReader {
public:
    explicit SymbolReader(SourceSymbols& symbols) : symbols_(symbols) {}
    void run();

private:
    struct Block {
        std::unordered_map<std::string_view, std::uint32_t> bindings;
        std::uint32_t function = noIndex;  // when it is the body of one
        std::uint32_t label = noIndex;     // likewise
        bool isBody = false;
    };

    std::string_view text(std::uint32_t at) const { return symbols_.text(code_[at]); }
    bool isWord(std::uint32_t at) const;
    bool isSign(std::uint32_t at, std::string_view signs) const;
    std::uint32_t groupEnd(std::uint32_t at) const;

    void statement();
    void lastStatement();
    void functionHeader(std::uint32_t at, bool isLocal);
    void parameters(std::uint32_t open);
    void forHeader();
    void declaration();
    void plain(std::uint32_t at);
    std::uint32_t targets(std::uint32_t at, bool declares);
    void nest();
    void reads(std::uint32_t from, std::uint32_t to);

    void openBlock(bool isBody);
    void closeBlock();
    void clearBlock();
    void endBindings(Block& block);
    void bind(std::uint32_t at, NameUse kind);
    void note(std::uint32_t at, NameUse use);
    void noteMember(std::uint32_t at);
    std::uint32_t look(std::string_view name, bool localsOnly) const;
    std::uint32_t currentFunction() const;

    SourceSymbols& symbols_;
    std::vector<std::uint32_t> code_;  // the statement's tokens
    std::vector<Block> blocks_;
};

}  // namespace kelmora
