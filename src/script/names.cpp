#include "script/names.h"

#include <deque>
#include <unordered_map>

namespace kelmora {
namespace {

struct NameTable {
    std::deque<std::string> texts;
    std::unordered_map<std::string_view, NameId> numbers;
};

// Never destroyed: file-scope objects may still hold names while the process ends.
NameTable& nameTable() {
    static NameTable& table = *new NameTable;
    return table;
}

}  // namespace

NameId internName(std::string_view name) {
    NameTable& table = nameTable();
    if (const auto found = table.numbers.find(name); found != table.numbers.end()) return found->second;
    const auto number = static_cast<NameId>(table.texts.size());
    table.texts.emplace_back(name);
    table.numbers.emplace(table.texts.back(), number);
    return number;
}

const std::string& nameText(NameId name) {
    return nameTable().texts[name];
}

}  // namespace kelmora
