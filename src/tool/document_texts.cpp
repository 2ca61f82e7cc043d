#include "tool/document_texts.h"

namespace kelmora {
namespace {

std::string_view textOf(std::span<const unsigned char> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

const WordBook& wordBook() {
    static const WordBook book(textOf(builtinsText()), textOf(modulesText()), textOf(languageText()));
    return book;
}

}  // namespace kelmora
