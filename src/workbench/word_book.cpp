#include "workbench/word_book.h"

#include <algorithm>
#include <cctype>

namespace kelmora {
namespace {

template <typename Visit>
void forEachLine(std::string_view text, Visit&& visit) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        visit(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

bool isWordByte(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$';
}
std::string_view leadingWord(std::string_view text) {
    std::size_t end = 0;
    while (end < text.size() && isWordByte(text[end])) ++end;
    return text.substr(0, end);
}
bool hasWord(std::string_view text, std::string_view word) {
    for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
        const bool starts = at == 0 || !isWordByte(text[at - 1]);
        const std::size_t end = at + word.size();
        if (starts && (end == text.size() || !isWordByte(text[end]))) return true;
    }
    return false;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \n") + 1 - first);
}

// The cells of a Markdown row; a bar between backticks is none of its own.
std::vector<std::string> cellsOf(std::string_view row) {
    std::vector<std::string> cells;
    std::string cell;
    bool isCode = false;
    for (std::size_t i = 1; i < row.size(); ++i) {
        if (row[i] == '`') isCode = !isCode;
        if (row[i] == '\\' && i + 1 < row.size() && row[i + 1] == '|') {
            cell += row[++i];
        } else if (row[i] == '|' && !isCode) {
            cells.emplace_back(trimmed(cell));
            cell.clear();
        } else {
            cell += row[i];
        }
    }
    return cells;
}

// What stands between backticks in a cell.
std::vector<std::string> codeOf(std::string_view cell) {
    std::vector<std::string> found;
    for (;;) {
        const std::size_t first = cell.find('`');
        if (first == std::string_view::npos) return found;
        const std::size_t last = cell.find('`', first + 1);
        if (last == std::string_view::npos) return found;
        found.emplace_back(cell.substr(first + 1, last - first - 1));
        cell.remove_prefix(last + 1);
    }
}

// The names of a cell of globals: `A_X` ... `A_Z` stands for those between, `_Y` for A_Y.
std::vector<std::string> globalNames(std::string_view cell) {
    std::vector<std::string> names;
    std::string stem;
    while (cell.find('`') != std::string_view::npos) {
        const std::size_t first = cell.find('`');
        const std::size_t last = std::min(cell.find('`', first + 1), cell.size());
        const bool isRange = cell.substr(0, first).find("...") != std::string_view::npos;
        std::string name(cell.substr(first + 1, last - first - 1));
        cell.remove_prefix(std::min(last + 1, cell.size()));
        if (name.starts_with('_')) {
            name = stem + name;
        } else {
            stem = name.substr(0, name.rfind('_'));
        }
        if (isRange && !names.empty())
            for (char c = static_cast<char>(names.back().back() + 1); c < name.back(); ++c)
                names.push_back(names.back().substr(0, names.back().size() - 1) + c);
        names.push_back(std::move(name));
    }
    return names;
}

// The text of a cell that is a link; empty for others.
std::string linkText(std::string_view cell) {
    const std::size_t end = cell.find("](");
    if (!cell.starts_with('[') || !cell.ends_with(')') || end == std::string_view::npos) return {};
    return std::string(cell.substr(1, end - 1));
}

// The forms `a(x) or a(y)` of a function, written as calls of the table's member.
std::vector<std::string> formsOf(std::string_view table, std::string_view signature) {
    std::vector<std::string> forms;
    while (!signature.empty()) {
        const std::size_t end = std::min(signature.find(" or "), signature.size());
        const std::string_view form = signature.substr(0, end);
        const std::string_view name = leadingWord(form);
        forms.push_back(table == "global" ? std::string(form)
                                          : std::string(table) + "[\"" + std::string(name) + "\"]" +
                                                std::string(form.substr(name.size())));
        signature.remove_prefix(std::min(end + 4, signature.size()));
    }
    return forms;
}

}  // namespace

WordBook::WordBook(std::string_view builtins, std::string_view modules, std::string_view language)
    : language_(language) {
    readTables(language.substr(0, language.find("\n## Values and types")));
    readBuiltins(builtins);
    readTables(modules);
}

void WordBook::add(WordEntry entry) {
    if (!find(entry.table, entry.word)) entries_.push_back(std::move(entry));
}

void WordBook::readBuiltins(std::string_view text) {
    std::string table;
    bool inEntry = false;
    forEachLine(text, [&](std::string_view line) {
        if (line.starts_with("@@")) return;
        if (line.starts_with("== ")) {
            table = leadingWord(line.substr(3));
            inEntry = false;
        } else if (line.starts_with("-- ")) {
            WordEntry made;
            made.table = table == "global" ? "" : table;
            made.word = leadingWord(line.substr(3));
            made.forms = formsOf(table, line.substr(3));
            entries_.push_back(std::move(made));
            inEntry = true;
        } else if (inEntry && line.starts_with("! ")) {
            const std::size_t arrow = std::min(line.find(" => "), line.size() - 4);
            entries_.back().failures.push_back("`" + std::string(line.substr(2, arrow - 2)) + "`: \"" +
                                               std::string(line.substr(arrow + 4)) + "\"");
        } else if (inEntry && line.starts_with("    ")) {
            entries_.back().example += std::string(line.substr(4)) + "\n";
        } else if (!inEntry && line.starts_with("| `")) {
            readRow(line);
        } else if (inEntry && !line.empty()) {
            std::string& meaning = entries_.back().meaning;
            meaning += (meaning.empty() ? "" : "\n") + std::string(line);
        }
    });
    for (WordEntry& entry : entries_)
        if (entry.example.starts_with("compiled\n")) entry.example.erase(0, 9);
}

void WordBook::readTables(std::string_view text) {
    forEachLine(text, [&](std::string_view line) {
        if (line.starts_with("| `")) readRow(line);
    });
}

void WordBook::readRow(std::string_view row) {
    const std::vector<std::string> cells = cellsOf(row);
    if (cells.size() < 2) return;
    WordEntry made;
    made.section = linkText(cells.back());
    made.meaning = made.section.empty() ? cells.back() : cells[1];
    if (made.section.empty() && cells.size() > 2) made.result = cells[1];
    // As the row above.
    if (made.meaning.starts_with("likewise") && !entries_.empty())
        made.meaning = entries_.back().meaning + made.meaning.substr(8);
    const std::vector<std::string> forms = codeOf(cells[0]);
    if (!made.section.empty()) {
        made.kind = WordKind::Statement;
        for (const std::string& form : forms) {
            made.word = leadingWord(form);
            made.forms = {form};
            if (find("", made.word)) {
                entries_.back().forms.push_back(form);
            } else {
                entries_.push_back(made);
            }
        }
        return;
    }
    const std::string_view name = leadingWord(forms[0]);
    const std::string_view behind = std::string_view(forms[0]).substr(name.size());
    made.forms = {forms[0]};
    if (behind.starts_with("[\"")) {
        made.table = name;
        made.word = leadingWord(behind.substr(2));
        add(made);
    } else if (behind.starts_with('(')) {
        made.word = name;
        add(made);
    } else {
        made.kind = WordKind::Variable;
        for (const std::string& each : globalNames(cells[0])) {
            made.word = each;
            made.forms = {each};
            add(made);
        }
    }
}

const WordEntry* WordBook::find(std::string_view table, std::string_view word) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const WordEntry& entry) {
        return entry.word == word && entry.table == table;
    });
    return found == entries_.end() ? nullptr : &*found;
}

std::vector<const WordEntry*> WordBook::meant(std::string_view words) const {
    const std::string_view first = leadingWord(words);
    std::string_view rest = words.substr(first.size());
    while (!rest.empty() && !isWordByte(rest.front())) rest.remove_prefix(1);
    const std::string_view second = leadingWord(rest);
    std::vector<const WordEntry*> found;
    for (const WordEntry& entry : entries_) {
        const bool isMeant =
            second.empty() ? entry.word == first : entry.table == first && entry.word == second;
        if (isMeant) found.push_back(&entry);
    }
    if (!found.empty() || !second.empty() || first.empty()) return found;
    for (const WordEntry& entry : entries_)
        if (entry.table == first) found.push_back(&entry);
    return found;
}

std::string WordBook::more(const WordEntry& entry) const {
    std::size_t start =
        entry.section.empty() ? std::string::npos : language_.find("\n## " + entry.section + "\n");
    if (start == std::string::npos) return {};
    start = language_.find('\n', start + 1) + 1;
    const std::size_t end = std::min(language_.find("\n## ", start), language_.size());
    std::string told;
    std::string part;
    bool isCode = false;
    const auto take = [&] {
        if (hasWord(part, entry.word)) told += (told.empty() ? "" : "\n") + part;
        part.clear();
    };
    forEachLine(std::string_view(language_).substr(start, end - start), [&](std::string_view line) {
        if (line.starts_with("```")) {
            isCode = !isCode;
            take();
        } else if (line.empty() && !isCode) {
            take();
        } else {
            part += (isCode ? "    " : "") + std::string(line) + "\n";
        }
    });
    take();
    return told;
}

std::string plainText(const WordEntry& entry) {
    std::string text;
    for (const std::string& form : entry.forms) text += form + "\n";
    if (!entry.result.empty()) text += "gives " + entry.result + "\n";
    if (!entry.meaning.empty()) text += "\n" + entry.meaning + "\n";
    if (!entry.failures.empty()) text += "\nFails:\n";
    for (const std::string& failure : entry.failures) text += "  " + failure + "\n";
    std::string example;
    forEachLine(entry.example, [&](std::string_view line) { example += "    " + std::string(line) + "\n"; });
    return text + (example.empty() ? "" : "\n") + example;
}

std::string markdown(const WordEntry& entry) {
    std::string text = "```vesper\n";
    for (const std::string& form : entry.forms) text += form + "\n";
    text += "```\n";
    if (!entry.result.empty()) text += "gives " + entry.result + "\n\n";
    text += entry.meaning + "\n";
    if (!entry.failures.empty()) text += "\nFails:\n\n";
    for (const std::string& failure : entry.failures) text += "- " + failure + "\n";
    if (!entry.example.empty()) text += "\n```vesper\n" + entry.example + "```\n";
    return text;
}

}  // namespace kelmora
