#pragma once

#include <span>

#include "workbench/word_book.h"

namespace kelmora {

// The documents that the build puts into the authors' tool.
std::span<const unsigned char> builtinsText();
std::span<const unsigned char> modulesText();
std::span<const unsigned char> languageText();

// Read once, when it is first asked for.
const WordBook& wordBook();

}  // namespace kelmora
