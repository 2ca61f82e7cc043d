#include "script/variable.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "base/pending_destruction.h"
#include "script/callable.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

constexpr std::array<std::string_view, 11> typeNames{
    "not", "int", "float", "string", "raw", "bool", "pointer", "array", "multivalue", "table", "function"};

// Builds the text of nested containers. Nesting and size are held so that no value can exhaust the
// native stack or the memory: a table may hold itself, and a few dozen shared arrays can print as gigabytes.
class TextBuilder {
public:
    void append(const Variable& value) {
        switch (value.type()) {
            case VarType::Array:
                appendArray(value);
                break;
            case VarType::Table:
                appendTable(value);
                break;
            case VarType::String:
                text_ += value.text();
                break;
            default:
                text_ += scalarText(value);
                break;
        }
        if (text_.size() > maximumSize) throw std::runtime_error("toString: the text is too large");
    }
    std::string take() { return std::move(text_); }

private:
    static constexpr std::size_t maximumDepth = 500;
    static constexpr std::size_t maximumSize = std::size_t{1} << 24;

    static std::string scalarText(const Variable& value) {
        switch (value.type()) {
            case VarType::Not:
                return "not";
            case VarType::Int:
                return std::to_string(value.intValue());
            case VarType::Float:
                return std::to_string(value.floatValue());
            case VarType::Bool:
                return value.boolValue() ? "true" : "false";
            case VarType::Pointer:
                return pointerText(value.pointerValue());
            case VarType::Multi:
                return "[multivalue]";
            case VarType::Function:
                return "[function]";
            default:
                return "[unconvertible type]";
        }
    }
    static std::string pointerText(const void* pointer) {
        std::array<char, 24> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "$%llX",
                      static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(pointer)));
        return buffer.data();
    }

    void enter(const Variable& container) {
        const void* identity = container.identity();
        if (std::find(path_.begin(), path_.end(), identity) != path_.end())
            throw std::runtime_error("toString: a container holds itself");
        if (path_.size() >= maximumDepth)
            throw std::runtime_error("toString: containers are nested too deeply");
        path_.push_back(identity);
    }
    void appendArray(const Variable& value) {
        enter(value);
        text_ += '[';
        bool first = true;
        for (const Variable& item : value.items()) {
            if (!std::exchange(first, false)) text_ += ", ";
            append(item);
        }
        text_ += ']';
        path_.pop_back();
    }
    void appendTable(const Variable& value) {
        enter(value);
        text_ += '{';
        bool first = true;
        const TableObject& table = value.table();
        const auto sorted = table.sortedKeys();
        for (std::size_t i = 0; i < sorted->keys.size(); ++i) {
            if (!std::exchange(first, false)) text_ += ", ";
            text_ += sorted->keys[i]->text();
            text_ += ": ";
            append(*table.findListed(*sorted, i));
        }
        text_ += '}';
        path_.pop_back();
    }

    std::string text_;
    std::vector<const void*> path_;
};

void deleteContainer(VarType type, RefCounted* object) {
    switch (type) {
        case VarType::Array:
            delete static_cast<ArrayObject*>(object);
            break;
        case VarType::Multi:
            delete static_cast<MultiResult*>(object);
            break;
        default:
            delete static_cast<TableObject*>(object);
            break;
    }
}

}  // namespace

std::string_view typeName(VarType type) {
    const auto index = static_cast<std::size_t>(type);
    return index < typeNames.size() ? typeNames[index] : "unknown";
}

void Variable::destroyFunction(ScriptCallable* callable) {
    destroyObject(VarType::Function, callable);
}

void Variable::destroyObject(VarType type, RefCounted* object) {
    switch (type) {
        case VarType::String:
            delete static_cast<StringObject*>(object);
            return;
        case VarType::Raw:
            delete static_cast<RawObject*>(object);
            return;
        case VarType::Function:
            delete static_cast<ScriptCallable*>(object);
            return;
        default:
            break;
    }
    PendingDestruction<VarType, deleteContainer>::add(type, object);
}

Variable Variable::character(char byte) {
    static const std::array<Variable, 256>& characters = [] {
        auto& made = *new std::array<Variable, 256>;
        for (std::size_t i = 0; i < made.size(); ++i) made[i] = text(std::string(1, static_cast<char>(i)));
        return std::ref(made);
    }();
    return characters[static_cast<unsigned char>(byte)];
}

Variable Variable::raw(std::vector<char> bytes) {
    auto* object = new RawObject;
    object->bytes = std::move(bytes);
    return counted(VarType::Raw, object);
}

Variable Variable::array(std::vector<Variable> items) {
    auto* object = new ArrayObject;
    object->items = std::move(items);
    return counted(VarType::Array, object);
}

Variable Variable::table(TableObject* object) noexcept {
    return counted(VarType::Table, object);
}

Variable Variable::function(ScriptCallable* callable) noexcept {
    return counted(VarType::Function, callable);
}

Variable Variable::makeArray() {
    return counted(VarType::Array, new ArrayObject);
}

Variable Variable::makeTable() {
    return counted(VarType::Table, new TableObject);
}

Variable Variable::makeMulti(std::vector<Variable> values) {
    auto* object = new MultiResult;
    object->values = std::move(values);
    return counted(VarType::Multi, object);
}

std::string& Variable::editableText() {
    if (stringObject().isShared()) *this = text(stringObject().text());
    return stringObject().editable();
}

std::string Variable::toString() const {
    if (isString()) return text();
    TextBuilder builder;
    builder.append(*this);
    return builder.take();
}

void promoteArrayVariableToTable(Variable& variable) {
    if (!variable.isArray()) return;
    Variable table = Variable::makeTable();
    table.table().denseValues() = variable.items();
    variable = std::move(table);
}

}  // namespace kelmora
