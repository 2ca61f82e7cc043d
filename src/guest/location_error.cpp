#include "guest/location_error.h"

namespace kelmora::guest {

std::string formatError(std::string_view chunkName, Location location, std::string_view message) {
    std::string text(chunkName);
    text += ':';
    text += std::to_string(location.line);
    if (location.column != 0) text.append(":").append(std::to_string(location.column));
    return text.append(": ").append(message);
}

void failParse(std::string_view chunkName, Location location, std::string_view message) {
    throw GuestError(formatError(chunkName, location, message));
}

}  // namespace kelmora::guest
