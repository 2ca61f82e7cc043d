#pragma once

#include <string_view>

#include "guest/source_cursor.h"
#include "lua/token.h"

namespace vesper::lua {

// Hands out the tokens of a source one by one. The source and the chunk's name are borrowed.
class Lexer {
public:
    Lexer(std::string_view source, std::string_view chunkName) : cursor_(source, chunkName) {}

    // The last one is of the kind End, and stays. Raises GuestError.
    Token next();

private:
    void skipBlanks();
    void skipComment();
    std::string readLongString();
    std::string readNumber();
    TokenKind readSymbol();

    kelmora::guest::SourceCursor cursor_;
};

}  // namespace vesper::lua
