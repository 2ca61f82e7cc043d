#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelmora {

enum class WordKind : std::uint8_t { Statement, Function, Variable };

// What the documents say of a word. Texts are as the documents mark them up.
struct WordEntry {
    WordKind kind = WordKind::Function;
    std::string table;  // whose member it is; empty for statements and globals
    std::string word;
    std::vector<std::string> forms;  // as it is written, with its parameters
    std::string result;
    std::string meaning;
    std::vector<std::string> failures;  // `call`: "message"
    std::string example;                // lines of code
    std::string section;                // the part of the language's document that tells more
};

// The built-in functions, the members of modules and library tables, the statements and the globals, read
// from docs/builtins.txt, docs/modules.md and docs/language.md.
class WordBook {
public:
    WordBook(std::string_view builtins, std::string_view modules, std::string_view language);

    std::span<const WordEntry> entries() const { return entries_; }
    // Null when there is none. The table is empty for statements and globals.
    const WordEntry* find(std::string_view table, std::string_view word) const;
    // Those that a person may mean: a word alone, `Table.word`, `Table["word"]` or a table's name, which
    // stands for all its members.
    std::vector<const WordEntry*> meant(std::string_view words) const;
    // The paragraphs and examples of an entry's section that have the word in them.
    std::string more(const WordEntry& entry) const;

private:
    void readBuiltins(std::string_view text);
    void readTables(std::string_view text);
    void readRow(std::string_view row);
    void add(WordEntry entry);

    std::vector<WordEntry> entries_;
    std::string language_;
};

// For a terminal: the forms, the meaning, failures, the example, each as plain lines.
std::string plainText(const WordEntry& entry);
// For editors, as Markdown.
std::string markdown(const WordEntry& entry);

}  // namespace kelmora
