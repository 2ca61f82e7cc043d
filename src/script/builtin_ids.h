#pragma once

#include <cstdint>
#include <string_view>

namespace kelmora {

// Numbers of the library functions that the fast paths know.
enum class BuiltinId : std::uint8_t {
    None = 0,
    Assert = 1,
    GetTimeMs,
    ToString,
    ToNumber,
    Error,
    Pcall,
    Load,
    Pairs,
    Ipairs,
    Next,
    Select,
    CollectGarbage,
    Len,
    StringLen,
    StringUpper,
    StringSub,
    StringFind,
    StringMatch,
    StringGmatch,
    StringByte,
    StringFormat,
    StringGsub,
    TableInsert,
    TableRemove,
    TableConcat,
    TableSort,
    MathFloor,
    MathCeil,
    MathAbs,
    MathMin,
    MathMax,
    MathSin,
    MathCos,
    MathRad,
    MathLog,
    MathSqrt,
    Utf8Len,
};

// None for a name outside the list.
BuiltinId builtinIdFromName(std::string_view name);

}  // namespace kelmora
