#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vesper::lua {

// A value outside the machine: a plain tree that shares nothing with it. Arrays and maps, which are one kind
// inside, are two here. Functions do not leave the machine: only that it was one is told.
class LuaValue {
public:
    enum class Kind : std::uint8_t { Nil, Integer, Float, Boolean, String, Array, Map, Function };
    using Array = std::vector<LuaValue>;
    using Map = std::vector<std::pair<std::string, LuaValue>>;  // in the order of the keys
    struct Function {
        friend bool operator==(const Function&, const Function&) = default;
    };

    LuaValue() = default;
    explicit LuaValue(std::int64_t value) : content_(value) {}
    explicit LuaValue(double value) : content_(value) {}
    explicit LuaValue(bool value) : content_(value) {}
    explicit LuaValue(std::string value) : content_(std::move(value)) {}
    explicit LuaValue(const char* value) : content_(std::string(value)) {}
    explicit LuaValue(Function value) : content_(value) {}
    static LuaValue makeArray(Array items = {});
    static LuaValue makeMap(Map entries = {});

    Kind kind() const { return static_cast<Kind>(content_.index()); }
    bool isNil() const { return kind() == Kind::Nil; }
    // Only nil and false are false.
    bool isTruthy() const;
    // As the language prints it; containers by their word.
    std::string toString() const;

    // Of numbers, truncated and held to the limits or widened; 0 of anything else.
    std::int64_t asInteger() const;
    double asFloat() const;
    bool asBoolean() const { return isTruthy(); }
    // Each raises std::bad_variant_access unless the value is of its kind.
    const std::string& asString() const { return std::get<std::string>(content_); }
    const Array& asArray() const { return std::get<Array>(content_); }
    Array& asArray() { return std::get<Array>(content_); }
    const Map& asMap() const { return std::get<Map>(content_); }
    Map& asMap() { return std::get<Map>(content_); }
    const Function& asFunction() const { return std::get<Function>(content_); }

    friend bool operator==(const LuaValue&, const LuaValue&) = default;

private:
    std::variant<std::monostate, std::int64_t, double, bool, std::string, Array, Map, Function> content_;
};

// "nil", "integer", "float", "boolean", "string", "array", "map", "function".
std::string_view luaValueTypeName(LuaValue::Kind kind);

}  // namespace vesper::lua
