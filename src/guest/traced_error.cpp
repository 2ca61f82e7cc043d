#include "guest/traced_error.h"

#include <algorithm>

namespace kelmora::guest {
namespace {

std::string statementAt(const std::string& source, std::uint32_t line) {
    std::size_t start = 0;
    for (; line > 1; --line) {
        const std::size_t end = source.find('\n', start);
        if (end == std::string::npos) return {};
        start = end + 1;
    }
    const std::size_t end = std::min(source.find('\n', start), source.size());
    std::string_view text = std::string_view(source).substr(start, end - start);
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    text = text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
    return std::string(text.substr(0, maximumTrailStatement));
}

}  // namespace

bool addCall(CallTrail& trail, std::string_view function, std::string_view chunkName, std::uint32_t line,
             const std::string* source) {
    function = function.substr(0, maximumTrailName);
    if (!trail.empty()) {
        CallPlace& last = trail.back();
        if (last.line == line && last.function == function && last.path == chunkName) {
            ++last.times;
            return true;
        }
    }
    if (trail.size() >= maximumTrailPlaces) return false;
    if (line != 0)
        trail.push_back({std::string(function), std::string(chunkName), line,
                         source ? statementAt(*source, line) : std::string()});
    return true;
}

CallTrail trailOfFailure() {
    try {
        throw;
    } catch (const TracedGuestError& error) {
        return error.trail() ? *error.trail() : CallTrail();
    } catch (const TracedError& error) {
        return error.trail();
    } catch (...) {
        return {};
    }
}

}  // namespace kelmora::guest
