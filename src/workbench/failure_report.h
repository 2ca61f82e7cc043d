#pragma once

#include <string>

#include "script/vesper_script.h"

namespace kelmora {

// What an author gets to see below the message of an exception that ended a script: the place, the calls that
// led there, and what was nothing in a call that failed. Places in one source may be left out. To be called
// in the handler that caught the exception.
std::string failurePlaces(VesperScript& engine, const std::string& message,
                          const std::string& hiddenPath = {});

}  // namespace kelmora
