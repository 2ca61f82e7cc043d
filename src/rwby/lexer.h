#pragma once

#include <string_view>

#include "guest/source_cursor.h"
#include "rwby/token.h"

namespace vesper::ruby {

// Cuts a source into tokens, one at a time. Between parentheses and brackets line feeds are blanks. The
// source and the chunk's name are borrowed. Raises GuestError.
class Lexer {
public:
    Lexer(std::string_view source, std::string_view chunkName) : cursor_(source, chunkName) {}

    Token next();

private:
    void skipBlanks();
    Token readName(Token token);
    Token readNumber(Token token);
    TokenKind readOperator(kelmora::guest::Location place);

    kelmora::guest::SourceCursor cursor_;
    std::size_t openBrackets_ = 0;
};

}  // namespace vesper::ruby
