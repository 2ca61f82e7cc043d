#pragma once

#include <bit>
#include <cassert>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/memory_budget.h"
#include "base/pooled.h"
#include "base/ref.h"
#include "rwby/string_object.h"

namespace vesper::ruby {

enum class RubyValueType : std::uint8_t {
    Nil = 0,
    Integer = 1,
    Float = 2,
    Boolean = 3,
    String = 4,
    Array = 5,
    Map = 6,
    Function = 7,
    Undefined = 8,  // a variable that has not been assigned; never a value of a program
};

// "nil", "integer", "float" and so on.
std::string_view rubyValueTypeName(RubyValueType type);

class MapObject;
struct ArrayObject;
struct FunctionObject;
class RubyValue;

using RubyItems = std::vector<RubyValue, kelmora::BudgetAllocator<RubyValue>>;

// The value of a Rwby program, for the machine, its library and whoever embeds it. Numbers and booleans are
// held in place, the others are counted references: strings cannot change, arrays, maps and functions are
// shared by all copies. Values live on one thread.
class RubyValue {
public:
    RubyValue() noexcept = default;
    RubyValue(const RubyValue& other) noexcept : bits_(other.bits_), type_(other.type_) {
        if (isCounted()) object()->retain();
    }
    RubyValue(RubyValue&& other) noexcept : bits_(other.bits_), type_(other.type_) {
        other.type_ = RubyValueType::Nil;
    }
    RubyValue& operator=(const RubyValue& other) noexcept {
        if (other.isCounted()) other.object()->retain();
        replace(other.bits_, other.type_);
        return *this;
    }
    RubyValue& operator=(RubyValue&& other) noexcept {
        const std::uint64_t bits = other.bits_;
        const RubyValueType type = other.type_;
        other.type_ = RubyValueType::Nil;
        replace(bits, type);
        return *this;
    }
    ~RubyValue() {
        if (isCounted() && object()->release()) destroyObject(type_, object());
    }

    static RubyValue integer(std::int64_t value) noexcept {
        return RubyValue(RubyValueType::Integer, static_cast<std::uint64_t>(value));
    }
    static RubyValue number(double value) noexcept {
        return RubyValue(RubyValueType::Float, std::bit_cast<std::uint64_t>(value));
    }
    static RubyValue boolean(bool value) noexcept { return RubyValue(RubyValueType::Boolean, value ? 1 : 0); }
    static RubyValue text(std::string_view text) { return string(new StringObject(text)); }
    static RubyValue string(StringObject* object) noexcept { return counted(RubyValueType::String, object); }
    // One-byte strings come from a fixed set, so that walking a string does not allocate.
    static RubyValue character(char byte);
    static RubyValue array(RubyItems items);
    static RubyValue map(MapObject* object) noexcept;
    static RubyValue makeMap();
    static RubyValue function(FunctionObject* object) noexcept;
    static RubyValue undefined() noexcept { return RubyValue(RubyValueType::Undefined, 0); }

    RubyValueType type() const { return type_; }
    bool isNil() const { return type_ == RubyValueType::Nil; }
    bool isInteger() const { return type_ == RubyValueType::Integer; }
    bool isFloat() const { return type_ == RubyValueType::Float; }
    bool isNumeric() const { return isInteger() || isFloat(); }
    bool isBoolean() const { return type_ == RubyValueType::Boolean; }
    bool isString() const { return type_ == RubyValueType::String; }
    bool isArray() const { return type_ == RubyValueType::Array; }
    bool isMap() const { return type_ == RubyValueType::Map; }
    bool isFunction() const { return type_ == RubyValueType::Function; }
    bool isUndefined() const { return type_ == RubyValueType::Undefined; }
    // Only nil and false are false.
    bool isTruthy() const { return isBoolean() ? bits_ != 0 : !isNil(); }

    // These want the value to be of the kind.
    std::int64_t integerValue() const {
        assert(isInteger());
        return static_cast<std::int64_t>(bits_);
    }
    double floatValue() const {
        assert(isFloat());
        return std::bit_cast<double>(bits_);
    }
    bool booleanValue() const {
        assert(isBoolean());
        return bits_ != 0;
    }
    StringObject& stringObject() const {
        assert(isString());
        return static_cast<StringObject&>(*object());
    }
    RubyItems& items() const;
    inline MapObject& mapObject() const;            // in map_object.h
    inline FunctionObject& functionObject() const;  // in program.h
    double numericValue() const { return isInteger() ? static_cast<double>(integerValue()) : floatValue(); }

    // These raise for a value of another kind. Numbers pass into each other: a float is cut to its integer
    // part and held to 64 bits.
    std::int64_t asInteger() const;
    double asFloat() const;
    bool asBoolean() const;
    std::string_view asString() const;
    RubyItems& asArray() const;
    MapObject& asMap() const;

    // Address of the shared object, for comparison by identity.
    const void* identity() const { return address(); }

    // Raises for a container that holds itself and for absurdly large results.
    std::string toString() const;

    // Leaves whatever it holds for a value that needs no count.
    void setInteger(std::int64_t value) {
        setPlain(RubyValueType::Integer, static_cast<std::uint64_t>(value));
    }
    void setFloat(double value) { setPlain(RubyValueType::Float, std::bit_cast<std::uint64_t>(value)); }
    void setBoolean(bool value) { setPlain(RubyValueType::Boolean, value ? 1 : 0); }
    void setNil() { setPlain(RubyValueType::Nil, 0); }
    // Nil in place of a reference; what needs no count stays.
    void dropReference() {
        if (isCounted()) setNil();
    }
    void setUndefined() { setPlain(RubyValueType::Undefined, 0); }

private:
    RubyValue(RubyValueType type, std::uint64_t bits) noexcept : bits_(bits), type_(type) {}
    static RubyValue counted(RubyValueType type, kelmora::RefCounted* object) noexcept {
        object->retain();
        return RubyValue(type, reinterpret_cast<std::uintptr_t>(object));
    }
    static constexpr bool isCountedType(RubyValueType type) {
        return static_cast<std::uint8_t>(static_cast<unsigned>(type) - 4u) < 4u;
    }
    bool isCounted() const { return isCountedType(type_); }
    void* address() const { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(bits_)); }
    kelmora::RefCounted* object() const { return static_cast<kelmora::RefCounted*>(address()); }
    // The old value goes when the new one stands: its destruction may look at this very variable.
    void replace(std::uint64_t bits, RubyValueType type) {
        const std::uint64_t oldBits = bits_;
        const RubyValueType oldType = type_;
        bits_ = bits;
        type_ = type;
        if (isCountedType(oldType)) releaseOld(oldType, oldBits);
    }
    void setPlain(RubyValueType type, std::uint64_t bits) { replace(bits, type); }
    static void releaseOld(RubyValueType type, std::uint64_t bits) {
        auto* old =
            static_cast<kelmora::RefCounted*>(reinterpret_cast<void*>(static_cast<std::uintptr_t>(bits)));
        if (old->release()) destroyObject(type, old);
    }
    [[gnu::noinline]] static void destroyObject(RubyValueType type, kelmora::RefCounted* object);

    std::uint64_t bits_ = 0;
    RubyValueType type_ = RubyValueType::Nil;
};

static_assert(sizeof(RubyValue) == 16);

// No array grows beyond this many elements.
constexpr std::int64_t maximumArraySize = std::int64_t{1} << 26;

struct ArrayObject : kelmora::RefCounted, kelmora::Pooled<ArrayObject> {
    RubyItems items;
};

inline RubyItems& RubyValue::items() const {
    assert(isArray());
    return static_cast<ArrayObject&>(*object()).items;
}

// Numbers by value across integer and float, strings by bytes, all else by identity.
bool valuesEqual(const RubyValue& a, const RubyValue& b);

}  // namespace vesper::ruby
