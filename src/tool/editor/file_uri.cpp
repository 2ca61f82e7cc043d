#include "tool/editor/file_uri.h"

#include <cctype>
#include <charconv>

namespace kelmora {
namespace {

bool isDrive(std::string_view path) {
    return path.size() >= 2 && std::isalpha(static_cast<unsigned char>(path[0])) != 0 && path[1] == ':';
}

}  // namespace

std::string pathOfUri(std::string_view uri) {
    constexpr std::string_view scheme = "file://";
    if (!uri.starts_with(scheme)) return {};
    uri.remove_prefix(scheme.size());
    if (uri.starts_with("localhost/")) uri.remove_prefix(9);
    std::string path;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        unsigned byte = 0;
        const char* digits = uri.data() + i + 1;
        if (uri[i] == '%' && i + 2 < uri.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            path += static_cast<char>(byte);
            i += 2;
        } else {
            path += uri[i];
        }
    }
    if (path.size() > 2 && path[0] == '/' && isDrive(std::string_view(path).substr(1))) path.erase(0, 1);
    return path;
}

std::string uriOfPath(const std::string& path) {
    std::string uri = "file://";
    if (isDrive(path)) uri += '/';
    for (const char c : path) {
        const bool isPlain = std::isalnum(static_cast<unsigned char>(c)) != 0 ||
                             std::string_view("/-._~:").find(c) != std::string_view::npos;
        if (isPlain) {
            uri += c;
        } else if (c == '\\') {
            uri += '/';
        } else {
            constexpr std::string_view digits = "0123456789ABCDEF";
            const auto byte = static_cast<unsigned char>(c);
            uri += {'%', digits[byte >> 4], digits[byte & 15]};
        }
    }
    return uri;
}

}  // namespace kelmora
