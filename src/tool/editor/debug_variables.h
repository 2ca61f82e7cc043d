#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "script/inspection.h"
#include "script/variable.h"
#include "tool/editor/json_rpc.h"

namespace kelmora {

// What a debugger shows of values while the script stands: texts, and numbers by which a client asks for what
// is inside. They hold until the script goes on.
class DebugVariables {
public:
    void forget() { shown_.clear(); }

    // 0 for what has nothing inside.
    std::size_t numberOf(NamedValues values);
    std::size_t numberOf(const Variable& value);
    // {name, value, type, variablesReference}
    Json shown(const std::string& name, const Variable& value);
    // Of the elements of a long array those from `first` on, `count` of them, where 0 is all.
    Json inside(std::size_t number, std::size_t first, std::size_t count);
    // Null for names and for numbers that are not given out.
    const Variable* container(std::size_t number) const;

    static std::string textOf(const Variable& value);

private:
    std::vector<std::variant<NamedValues, Variable>> shown_;
};

}  // namespace kelmora
