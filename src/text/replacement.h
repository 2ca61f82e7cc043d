#pragma once

#include <string>
#include <string_view>

#include "base/regex/regex.h"

namespace kelmora {

// Inserts a replacement text, whose backslash forms stand for parts of the match: \0 and \& the whole of it,
// \1 to \9 a capture, \` and \' what stands before and behind it, \+ the last capture that took part.
void appendReplacement(std::string& out, std::string_view replacement, const std::string& subject,
                       const regex::Captures& captures);

}  // namespace kelmora
