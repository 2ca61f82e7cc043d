#include "lua/value.h"

#include <array>
#include <cstdio>

#include "base/pending_destruction.h"
#include "lua/function_object.h"
#include "lua/iterator_state.h"
#include "lua/table.h"
#include "text/number_text.h"

namespace vesper::lua {
namespace {

void deleteObject(ValueKind kind, kelmora::RefCounted* object) {
    switch (kind) {
        case ValueKind::Table:
            delete static_cast<Table*>(object);
            return;
        case ValueKind::Function:
            delete static_cast<FunctionObject*>(object);
            return;
        case ValueKind::Native:
            delete static_cast<NativeObject*>(object);
            return;
        case ValueKind::Iterator:
            delete static_cast<IteratorState*>(object);
            return;
        default:
            delete static_cast<Box*>(object);
    }
}

std::string addressText(std::string_view word, const void* address) {
    std::array<char, 24> digits{};
    std::snprintf(digits.data(), digits.size(), "0x%llx",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(address)));
    return std::string(word).append(": ").append(digits.data());
}

}  // namespace

void Value::destroyObject(ValueKind kind, kelmora::RefCounted* object) {
    if (kind == ValueKind::String) {
        StringObject::destroy(static_cast<StringObject*>(object));
        return;
    }
    kelmora::PendingDestruction<ValueKind, deleteObject>::add(kind, object);
}

std::string Value::toString() const {
    switch (kind_) {
        case ValueKind::Nil:
            return "nil";
        case ValueKind::Integer:
            return kelmora::integerText(payload_.integer);
        case ValueKind::Float:
            return kelmora::floatText(payload_.number);
        case ValueKind::Boolean:
            return booleanValue() ? "true" : "false";
        case ValueKind::String:
            return std::string(letters());
        default:
            return addressText(describeValueType(*this), payload_.object);
    }
}

std::string_view describeValueType(const Value& value) {
    switch (value.kind()) {
        case ValueKind::Nil:
            return "nil";
        case ValueKind::Integer:
        case ValueKind::Float:
            return "number";
        case ValueKind::Boolean:
            return "boolean";
        case ValueKind::String:
            return "string";
        case ValueKind::Table:
            return "table";
        case ValueKind::Function:
            return "function";
        case ValueKind::Native:
            return "userdata";
        case ValueKind::Iterator:
            return "iterator";
        default:
            return "unknown";
    }
}

}  // namespace vesper::lua
