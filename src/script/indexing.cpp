#include "script/indexing.h"

#include <stdexcept>

#include "script/interpreter.h"
#include "script/numbers.h"

namespace kelmora {
namespace {

// An array grown by one far-off index must not take the memory of the machine.
constexpr std::int64_t maximumArrayLength = std::int64_t{1} << 26;

}  // namespace

const Variable* findInTable(const TableObject& table, const Variable& key) {
    if (key.isString()) return table.find(key.stringObject());
    return key.isInt() ? table.find(key.intValue()) : nullptr;
}

namespace {

// The function of the global string table, with the string bound as its first argument.
Variable stringMethod(Interpreter& script, const Variable& subject, const Variable& name) {
    const Variable* member = script.findStringMethod(name);
    if (!member) return {};
    const auto method = [&script, subject, function = *member](const std::vector<Variable>& arguments) {
        std::vector<Variable> all;
        all.reserve(arguments.size() + 1);
        all.push_back(subject);
        all.insert(all.end(), arguments.begin(), arguments.end());
        return script.invokeCallable(function, all);
    };
    return makeNativeCallable(method, name.text());
}

Variable stringElement(Interpreter& script, const Variable& container, const Variable& key) {
    if (key.isString()) return stringMethod(script, container, key);
    if (!key.isInt()) throw std::runtime_error("String index must be an int or string method name");
    const std::string& text = container.text();
    const std::int64_t index = key.intValue();
    if (index < 1 || index > static_cast<std::int64_t>(text.size())) return {};
    return Variable::character(text[static_cast<std::size_t>(index - 1)]);
}

void setStringElement(Variable& container, const Variable& key, const Variable& value) {
    if (!key.isInt()) throw std::runtime_error("String index must be an int");
    if (!value.isString()) throw std::runtime_error("String element assignment requires a string value");
    if (value.text().size() != 1)
        throw std::runtime_error("String element assignment requires a single-character string");
    const std::int64_t index = key.intValue();
    if (index < 1 || index > static_cast<std::int64_t>(container.text().size()))
        throw std::runtime_error("String index out of range");
    const char byte = value.text()[0];
    container.editableText()[static_cast<std::size_t>(index - 1)] = byte;
}

Variable* tableElement(Variable& container, const Variable& key, bool create) {
    TableObject& table = container.table();
    const TableKey tableKey = tableKeyOf(key);
    if (create) return &table.findOrInsert(tableKey);
    if (Variable* found = table.find(tableKey)) return found;
    throw std::runtime_error("Table key not found: " + tableKey.toString());
}

Variable* arrayElement(Variable& container, const Variable& key, bool create) {
    std::int64_t index = 0;
    const bool isWhole = isWholeIndex(key, index);
    if (!isWhole || index < 1) {
        if (!create)
            throw std::runtime_error(isWhole ? "Array index must be >= 1" : "Array index must be an int");
        promoteArrayVariableToTable(container);
        return tableElement(container, key, true);
    }
    std::vector<Variable>& items = container.items();
    if (index > static_cast<std::int64_t>(items.size())) {
        if (!create) throw std::runtime_error("Array index out of range");
        if (index > maximumArrayLength) throw std::runtime_error("Array index is too large");
        // Doubling must not go past the limit either.
        if (items.size() > maximumArrayLength / 2) items.reserve(maximumArrayLength);
        items.resize(static_cast<std::size_t>(index));
    }
    return &items[static_cast<std::size_t>(index - 1)];
}

}  // namespace

const Variable* Interpreter::findStringMethod(const Variable& name) {
    static const NameId stringName = internName("string");
    const Variable* library = scopes.findExplicit(stringName, 1);
    if (!library || !library->isTable()) return nullptr;
    const Variable* member = library->table().find(name.stringObject());
    return member && member->isFunction() ? member : nullptr;
}

Variable Interpreter::getIndexedValue(const Variable& container, const Variable& key) {
    switch (container.type()) {
        case VarType::Table: {
            const Variable* found = container.table().find(tableKeyOf(key));
            return found ? *found : Variable();
        }
        case VarType::Array: {
            std::int64_t index = 0;
            const std::vector<Variable>& items = container.items();
            if (!isWholeIndex(key, index) || index < 1 || index > static_cast<std::int64_t>(items.size()))
                return {};
            return items[static_cast<std::size_t>(index - 1)];
        }
        case VarType::String:
            return stringElement(*this, container, key);
        default:
            throw std::runtime_error("Indexing requires an array, table, or string");
    }
}

Variable* Interpreter::getIndexedValueMutable(Variable& container, const Variable& key, bool create) {
    if (container.isTable()) return tableElement(container, key, create);
    if (container.isArray()) return arrayElement(container, key, create);
    throw std::runtime_error("Indexing requires an array or table");
}

void Interpreter::setIndexedValue(Variable& container, const Variable& key, const Variable& value,
                                  bool create) {
    switch (container.type()) {
        case VarType::String:
            setStringElement(container, key, value);
            return;
        case VarType::Table:
            *tableElement(container, key, create) = value;
            return;
        case VarType::Array:
            *arrayElement(container, key, create) = value;
            return;
        default:
            throw std::runtime_error("Indexing requires an array, table, or string");
    }
}

}  // namespace kelmora
