#include "tool/editor/debug_variables.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "script/callable.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

constexpr std::size_t longestText = 400;
constexpr std::size_t mostAtOnce = 10000;

bool isContainer(const Variable& value) {
    return (value.isArray() && !value.items().empty()) || (value.isMulti() && !value.values().empty()) ||
           (value.isTable() && value.table().size() > 0);
}

std::string quotedText(const std::string& text) {
    std::string shown = "\"";
    for (const char c : text.substr(0, longestText)) {
        if (c == '\n') {
            shown += "\\n";
        } else {
            if (c == '"' || c == '\\') shown += '\\';
            shown += c;
        }
    }
    return shown + (text.size() > longestText ? "\" and more" : "\"");
}

}  // namespace

std::string DebugVariables::textOf(const Variable& value) {
    if (value.isString()) return quotedText(value.text());
    if (value.isArray()) return "array of " + std::to_string(value.items().size());
    if (value.isMulti()) return std::to_string(value.values().size()) + " values";
    if (value.isTable()) return "table of " + std::to_string(value.table().size());
    if (value.isFunction()) return "function " + value.function().name;
    if (value.isRaw()) return std::to_string(value.rawBytes().size()) + " bytes";
    return value.toString();
}

std::size_t DebugVariables::numberOf(NamedValues values) {
    if (values.empty()) return 0;
    shown_.emplace_back(std::move(values));
    return shown_.size();
}

std::size_t DebugVariables::numberOf(const Variable& value) {
    if (!isContainer(value)) return 0;
    shown_.emplace_back(value);
    return shown_.size();
}

Json DebugVariables::shown(const std::string& name, const Variable& value) {
    Json json{{"name", name},
              {"value", textOf(value)},
              {"type", std::string(typeName(value.type()))},
              {"variablesReference", numberOf(value)}};
    if (value.isArray()) json["indexedVariables"] = value.items().size();
    return json;
}

Json DebugVariables::inside(std::size_t number, std::size_t first, std::size_t count) {
    Json list = Json::array();
    if (number == 0 || number > shown_.size()) return list;
    count = std::min(count == 0 ? mostAtOnce : count, mostAtOnce);
    const auto held = shown_[number - 1];  // the list grows below
    if (const NamedValues* values = std::get_if<NamedValues>(&held)) {
        for (const auto& [name, value] : *values) list.push_back(shown(name, value));
        return list;
    }
    const Variable& value = std::get<Variable>(held);
    if (value.isTable()) {
        const auto keys = value.table().sortedKeys();
        for (std::size_t i = first; i < keys->keys.size() && list.size() < count; ++i)
            if (const Variable* entry = value.table().findListed(*keys, i))
                list.push_back(shown(keys->keys[i]->text(), *entry));
        return list;
    }
    const std::vector<Variable>& items = value.isArray() ? value.items() : value.values();
    for (std::size_t i = first; i < items.size() && list.size() < count; ++i)
        list.push_back(shown(std::to_string(i + 1), items[i]));
    return list;
}

const Variable* DebugVariables::container(std::size_t number) const {
    return number == 0 || number > shown_.size() ? nullptr : std::get_if<Variable>(&shown_[number - 1]);
}

}  // namespace kelmora
