#pragma once

#include <cstdint>
#include <optional>

#include "script/parsed_line.h"

namespace kelmora {

// The token that gives an entry of the render queue a type that is none: in a table with `type` and `layer`,
// or one in a statement that names `renderQueue`.
std::optional<std::uint32_t> wrongEntryType(const ParsedScriptLine& line);

}  // namespace kelmora
