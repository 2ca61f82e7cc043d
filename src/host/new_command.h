#pragma once

#include <span>
#include <string>

namespace kelmora {

// `vesper new`: makes the folder of a game that plays at once, and says what to do with it. Raises UsageError
// for a name that is no folder's or is taken.
void makeProject(std::span<const std::string> words);

}  // namespace kelmora
