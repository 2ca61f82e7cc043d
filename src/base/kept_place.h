#pragma once

#include <string>

namespace kelmora {

// One for the process: from now on files that are named in the one folder lie in the other. Both end with a
// separator.
void keepElsewhere(const std::string& folder, const std::string& place);
// Where a file of that name lies. What opens, replaces or removes files for a game asks here first.
std::string placeOf(const std::string& path);

}  // namespace kelmora
