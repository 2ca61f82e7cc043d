#include "script/string_object.h"

#include <charconv>

namespace kelmora {

std::uint32_t StringObject::hashOf(std::string_view text) {
    std::uint32_t hash = 2166136261u;
    for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
    hash ^= hash >> 15;
    return hash == 0 ? 1 : hash;
}

void StringObject::classify() const {
    keyClass_ = KeyClass::Text;
    const char* first = text_.data();
    const char* end = first + text_.size();
    if (text_.empty() || text_.size() > 11) return;
    const auto result = std::from_chars(first, end, keyNumber_);
    if (result.ec != std::errc() || result.ptr != end) return;
    // "007" and "-0" parse but are not what the number prints as.
    const char lead = *first == '-' ? first[1] : *first;
    const bool isPlainZero = text_.size() == 1;
    if (lead == '0' && !isPlainZero) return;
    keyClass_ = KeyClass::Integer;
}

}  // namespace kelmora
