#pragma once

#include <bit>
#include <cassert>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/pooled.h"
#include "base/ref.h"
#include "script/string_object.h"

namespace kelmora {

class TableObject;
struct ScriptCallable;

enum class VarType : std::uint8_t {
    Not = 0,
    Int = 1,
    Float = 2,
    String = 3,
    Raw = 4,
    Bool = 5,
    Pointer = 6,
    Array = 7,
    Multi = 8,
    Table = 9,
    Function = 10,
};

// "not", "int", "float" and so on; "unknown" for a number outside the list.
std::string_view typeName(VarType type);

struct RawObject;
struct ArrayObject;
struct MultiResult;

// The script value. Int, Float, Bool and Pointer are held in place; the others are counted references.
// Strings and raw buffers behave as values: whoever changes one takes a copy first when it is shared.
// Arrays, tables, functions and multi values are shared by all copies of the Variable.
class Variable {
public:
    constexpr Variable() noexcept = default;
    Variable(const Variable& other) noexcept : bits_(other.bits_), type_(other.type_) {
        if (isCounted()) object()->retain();
    }
    Variable(Variable&& other) noexcept : bits_(other.bits_), type_(other.type_) {
        other.type_ = VarType::Not;
    }
    Variable& operator=(const Variable& other) noexcept {
        if (other.isCounted()) other.object()->retain();
        const std::uint64_t bits = other.bits_;
        const VarType type = other.type_;
        const Variable old(std::move(*this));  // goes when the new value stands
        bits_ = bits;
        type_ = type;
        return *this;
    }
    Variable& operator=(Variable&& other) noexcept {
        if (isCounted()) {
            swap(other);
        } else {
            bits_ = other.bits_;
            type_ = other.type_;
            other.type_ = VarType::Not;
        }
        return *this;
    }
    ~Variable() {
        if (isCounted() && object()->release()) destroyObject(type_, object());
    }

    static Variable integer(std::int32_t value) noexcept {
        return Variable(VarType::Int, static_cast<std::uint32_t>(value));
    }
    static Variable number(float value) noexcept {
        return Variable(VarType::Float, std::bit_cast<std::uint32_t>(value));
    }
    static Variable boolean(bool value) noexcept { return Variable(VarType::Bool, value ? 1 : 0); }
    static Variable pointer(void* value) noexcept {
        return Variable(VarType::Pointer, reinterpret_cast<std::uintptr_t>(value));
    }
    static Variable text(std::string value) { return string(new StringObject(std::move(value))); }
    static Variable string(StringObject* object) noexcept { return counted(VarType::String, object); }
    // One-byte strings come from a fixed set, so that walking a string does not allocate.
    static Variable character(char byte);
    static Variable raw(std::vector<char> bytes);
    static Variable array(std::vector<Variable> items);
    static Variable table(TableObject* object) noexcept;
    static Variable function(ScriptCallable* callable) noexcept;

    static Variable makeArray();
    static Variable makeTable();
    static Variable makeMulti(std::vector<Variable> values);

    VarType type() const { return type_; }
    bool isNot() const { return type_ == VarType::Not; }
    bool isInt() const { return type_ == VarType::Int; }
    bool isFloat() const { return type_ == VarType::Float; }
    bool isBool() const { return type_ == VarType::Bool; }
    bool isNumeric() const { return isInt() || isFloat() || isBool(); }
    bool isString() const { return type_ == VarType::String; }
    bool isRaw() const { return type_ == VarType::Raw; }
    bool isPointer() const { return type_ == VarType::Pointer; }
    bool isArray() const { return type_ == VarType::Array; }
    bool isMulti() const { return type_ == VarType::Multi; }
    bool isTable() const { return type_ == VarType::Table; }
    bool isFunction() const { return type_ == VarType::Function; }

    bool ownsObject() const { return isCounted(); }
    // What a name without a value refers to; nothing but its address may be looked at.
    static Variable& unfound();
    bool isUnfound() const { return type_ == noType; }
    // Takes the other's value when neither owns anything; false, with nothing done, otherwise.
    bool assignPlain(const Variable& other) {
        if (isCounted() || other.isCounted()) return false;
        bits_ = other.bits_;
        type_ = other.type_;
        return true;
    }

    bool assignInteger(std::int32_t value) {
        if (isCounted()) return false;
        bits_ = static_cast<std::uint32_t>(value);
        type_ = VarType::Int;
        return true;
    }

    // The value of one that owns nothing, to be kept while that goes.
    struct Plain {
        std::uint64_t bits;
        VarType type;
    };
    Plain plain() const {
        assert(!isCounted());
        return {bits_, type_};
    }
    void assign(Plain value) {
        if (isCounted()) [[unlikely]] {
            *this = Variable(value.type, value.bits);
        } else {
            bits_ = value.bits;
            type_ = value.type;
        }
    }

    std::int32_t intValue() const {
        assert(isInt());
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(bits_));
    }
    float floatValue() const {
        assert(isFloat());
        return std::bit_cast<float>(static_cast<std::uint32_t>(bits_));
    }
    bool boolValue() const {
        assert(isBool());
        return bits_ != 0;
    }
    void* pointerValue() const {
        assert(isPointer());
        return address();
    }
    StringObject& stringObject() const {
        assert(isString());
        return static_cast<StringObject&>(*object());
    }
    const std::string& text() const { return stringObject().text(); }
    // The bytes of this String alone: a shared string is copied first.
    std::string& editableText();
    const std::vector<char>& rawBytes() const;
    std::vector<Variable>& items() const;     // of an Array
    std::vector<Variable>& values() const;    // of a Multi
    inline TableObject& table() const;        // in table_object.h
    inline ScriptCallable& function() const;  // in callable.h

    // Address of the shared object behind a reference, for comparison by identity.
    const void* identity() const { return address(); }

    // The value's text. Raises for a container that holds itself and for absurdly large results.
    std::string toString() const;

    // Once its last reference has gone.
    static void destroyFunction(ScriptCallable* callable);

    void swap(Variable& other) noexcept {
        std::swap(bits_, other.bits_);
        std::swap(type_, other.type_);
    }

private:
    Variable(VarType type, std::uint64_t bits) noexcept : bits_(bits), type_(type) {}
    static Variable counted(VarType type, RefCounted* object) noexcept {
        object->retain();
        return Variable(type, reinterpret_cast<std::uintptr_t>(object));
    }
    void* address() const { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(bits_)); }
    RefCounted* object() const { return static_cast<RefCounted*>(address()); }
    bool isCounted() const {
        constexpr unsigned countedTypes =
            1u << 3 | 1u << 4 | 1u << 7 | 1u << 8 | 1u << 9 | 1u << 10 | 1u << static_cast<unsigned>(noType);
        return (countedTypes >> static_cast<unsigned>(type_) & 1u) != 0;
    }
    static void destroyObject(VarType type, RefCounted* object);

    // Of no kind that a quick way of anything takes, neither to read nor to overwrite.
    static constexpr VarType noType = static_cast<VarType>(15);
    union Unfound;
    static Unfound unfound_;

    // Always written as a whole: a narrow store before a wide load would stall the processor.
    std::uint64_t bits_ = 0;
    VarType type_ = VarType::Not;
};

// Never destroyed.
union Variable::Unfound {
    constexpr Unfound() : variable() { variable.type_ = noType; }
    ~Unfound() {}
    Variable variable;
};
inline constinit Variable::Unfound Variable::unfound_;
inline Variable& Variable::unfound() {
    return unfound_.variable;
}

struct RawObject : RefCounted {
    std::vector<char> bytes;
};

struct ArrayObject : RefCounted, Pooled<ArrayObject> {
    std::vector<Variable> items;
};

// The several results of one call, or the value of `...`.
struct MultiResult : RefCounted, Pooled<MultiResult> {
    std::vector<Variable> values;
};

inline const std::vector<char>& Variable::rawBytes() const {
    assert(isRaw());
    return static_cast<RawObject&>(*object()).bytes;
}
inline std::vector<Variable>& Variable::items() const {
    assert(isArray());
    return static_cast<ArrayObject&>(*object()).items;
}
inline std::vector<Variable>& Variable::values() const {
    assert(isMulti());
    return static_cast<MultiResult&>(*object()).values;
}

// Turns an Array variable into a Table in place, keys counting from 1. Other references keep the array.
void promoteArrayVariableToTable(Variable& variable);

// Nil is false, a bool is itself, all else is true.
inline bool isTruthy(const Variable& value) {
    return value.isBool() ? value.boolValue() : !value.isNot();
}

}  // namespace kelmora
