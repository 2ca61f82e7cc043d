#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "base/ref.h"
#include "lua/string_object.h"

namespace vesper::lua {

class Table;
class FunctionObject;
class NativeObject;
class IteratorState;
class Box;

// The order of the counted kinds begins at String. Box never reaches a script: it is the shared place of a
// captured variable.
enum class ValueKind : std::uint32_t {
    Nil,
    Integer,
    Float,
    Boolean,
    String,
    Table,
    Function,
    Native,
    Iterator,
    Box
};

// What the interpreter works with: 16 bytes, a tag and a payload. A block of zero bytes is nil.
class Value {
public:
    Value() : kind_(ValueKind::Nil) { payload_.integer = 0; }
    Value(const Value& other) : kind_(other.kind_), payload_(other.payload_) { retain(); }
    Value(Value&& other) noexcept : kind_(other.kind_), payload_(other.payload_) {
        other.kind_ = ValueKind::Nil;
    }
    Value& operator=(const Value& other) {
        other.retain();
        replace(other.kind_, other.payload_);
        return *this;
    }
    Value& operator=(Value&& other) noexcept {
        const ValueKind kind = other.kind_;
        other.kind_ = ValueKind::Nil;
        replace(kind, other.payload_);
        return *this;
    }
    ~Value() { release(); }

    static Value integer(std::int64_t value) {
        Value made(ValueKind::Integer);
        made.payload_.integer = value;
        return made;
    }
    static Value number(double value) {
        Value made(ValueKind::Float);
        made.payload_.number = value;
        return made;
    }
    static Value boolean(bool value) {
        Value made(ValueKind::Boolean);
        made.payload_.integer = value ? 1 : 0;
        return made;
    }
    static Value text(std::string_view letters) { return Value(StringObject::make(letters)); }
    explicit Value(StringObject* object) : Value(ValueKind::String, object) {}
    explicit Value(Table* object);
    explicit Value(FunctionObject* object);
    explicit Value(NativeObject* object);
    explicit Value(IteratorState* object);
    explicit Value(Box* object);

    ValueKind kind() const { return kind_; }
    bool isNil() const { return kind_ == ValueKind::Nil; }
    bool isInteger() const { return kind_ == ValueKind::Integer; }
    bool isFloat() const { return kind_ == ValueKind::Float; }
    bool isNumber() const { return isInteger() || isFloat(); }
    bool isBoolean() const { return kind_ == ValueKind::Boolean; }
    bool isString() const { return kind_ == ValueKind::String; }
    bool isTable() const { return kind_ == ValueKind::Table; }
    bool isFunction() const { return kind_ == ValueKind::Function; }
    bool isCounted() const { return kind_ >= ValueKind::String; }
    // Only nil and false are false.
    bool isTruthy() const { return !isNil() && !(isBoolean() && payload_.integer == 0); }

    // Each wants the kind it names.
    std::int64_t integerValue() const { return payload_.integer; }
    double floatValue() const { return payload_.number; }
    bool booleanValue() const { return payload_.integer != 0; }
    StringObject& string() const { return static_cast<StringObject&>(*payload_.object); }
    std::string_view letters() const { return string().view(); }
    Table& table() const;
    FunctionObject& function() const;
    NativeObject& native() const;
    IteratorState& iterator() const;
    Box& box() const;
    // Of a number of either kind.
    double asDouble() const { return isInteger() ? static_cast<double>(payload_.integer) : payload_.number; }
    const kelmora::RefCounted* identity() const { return payload_.object; }

    void setInteger(std::int64_t value) {
        Payload payload;
        payload.integer = value;
        replace(ValueKind::Integer, payload);
    }
    void setNumber(double value) {
        Payload payload;
        payload.number = value;
        replace(ValueKind::Float, payload);
    }
    void setBoolean(bool value) {
        Payload payload;
        payload.integer = value ? 1 : 0;
        replace(ValueKind::Boolean, payload);
    }
    void reset() { replace(ValueKind::Nil, payload_); }
    // Of a value that is an integer already.
    void changeInteger(std::int64_t value) { payload_.integer = value; }
    // Nil in place of a reference; what needs no count may stay as it is.
    void dropReference() {
        if (isCounted()) reset();
    }

    // Floats with 14 digits; tables, functions and the like as a word and their address.
    std::string toString() const;

private:
    union Payload {
        std::int64_t integer;
        double number;
        kelmora::RefCounted* object;
    };

    explicit Value(ValueKind kind) : kind_(kind) {}
    Value(ValueKind kind, kelmora::RefCounted* object) : kind_(kind) {
        payload_.object = object;
        object->retain();
    }

    void retain() const {
        if (isCounted()) payload_.object->retain();
    }
    void release() {
        if (isCounted()) releaseObject(kind_, payload_.object);
    }
    // The old value goes when the new one stands: its destruction may look at this very place.
    void replace(ValueKind kind, Payload payload) {
        const ValueKind oldKind = kind_;
        const Payload old = payload_;
        kind_ = kind;
        payload_ = payload;
        if (oldKind >= ValueKind::String) [[unlikely]]
            releaseObject(oldKind, old.object);
    }
    static void releaseObject(ValueKind kind, kelmora::RefCounted* object) {
        if (object->release()) destroyObject(kind, object);
    }
    [[gnu::noinline]] static void destroyObject(ValueKind kind, kelmora::RefCounted* object);

    ValueKind kind_;
    Payload payload_;
};
static_assert(sizeof(Value) == 16);

// "nil", "number", "boolean", "string", "table", "function", "userdata", "iterator".
std::string_view describeValueType(const Value& value);

// Integers and floats by value, texts by bytes, tables and functions by identity.
bool valuesEqual(const Value& a, const Value& b);

// The place that a captured variable shares with the functions that captured it.
class Box : public kelmora::RefCounted {
public:
    explicit Box(Value initial) : value(std::move(initial)) {}
    Value value;
};

// Objects of the host that scripts hold: open files.
class NativeObject : public kelmora::RefCounted {
public:
    enum class Kind : std::uint8_t { File };
    explicit NativeObject(Kind kind) : kind_(kind) {}
    virtual ~NativeObject() = default;
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

inline Value::Value(NativeObject* object) : Value(ValueKind::Native, object) {}
inline Value::Value(Box* object) : Value(ValueKind::Box, object) {}
inline NativeObject& Value::native() const {
    return static_cast<NativeObject&>(*payload_.object);
}
inline Box& Value::box() const {
    return static_cast<Box&>(*payload_.object);
}

}  // namespace vesper::lua
