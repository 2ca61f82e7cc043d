#include "script/builtin_ids.h"

#include <array>
#include <cstddef>

namespace kelmora {
namespace {

// In the order of the numbers, from 1.
constexpr std::array<std::string_view, 37> builtinNames{
    "assert",        "getTimeMs",   "toString",      "toNumber",    "error",        "pcall",
    "load",          "pairs",       "ipairs",        "next",        "select",       "collectGarbage",
    "len",           "string.len",  "string.upper",  "string.sub",  "string.find",  "string.match",
    "string.gmatch", "string.byte", "string.format", "string.gsub", "table.insert", "table.remove",
    "table.concat",  "table.sort",  "math.floor",    "math.ceil",   "math.abs",     "math.min",
    "math.max",      "math.sin",    "math.cos",      "math.rad",    "math.log",     "math.sqrt",
    "utf8.len",
};

}  // namespace

BuiltinId builtinIdFromName(std::string_view name) {
    for (std::size_t i = 0; i < builtinNames.size(); ++i)
        if (builtinNames[i] == name) return static_cast<BuiltinId>(i + 1);
    return BuiltinId::None;
}

}  // namespace kelmora
