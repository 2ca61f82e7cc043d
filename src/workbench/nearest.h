#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kelmora {

// The known word that is nearest to a misspelt one: a few letters changed, missing, added or swapped. Empty
// when none is near.
std::string nearestWord(std::string_view word, std::span<const std::string> known);

}  // namespace kelmora
