#include "tool/editor/json_rpc.h"

#include <charconv>
#include <istream>
#include <nlohmann/json.hpp>
#include <ostream>

namespace kelmora {
namespace {

constexpr std::size_t maximumLength = std::size_t{64} << 20;
constexpr std::size_t maximumHeader = 4096;  // what is longer is cut
constexpr int maximumDepth = 100;
constexpr std::size_t readAtOnce = 65536;

// The number of a `Content-Length` header, also behind the rest of a message that was too long; npos for
// other lines, and for numbers that are none.
std::size_t contentLength(std::string line) {
    for (char& c : line)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    constexpr std::string_view name = "content-length:";
    std::size_t at = line.rfind(name);
    if (at == std::string::npos) return std::string::npos;
    at = line.find_first_not_of(" \t", at + name.size());
    if (at == std::string::npos) return std::string::npos;
    std::size_t length = 0;
    const char* end = line.data() + line.size();
    const auto [stop, error] = std::from_chars(line.data() + at, end, length);
    return error == std::errc() && stop == end ? length : std::string::npos;
}

}  // namespace

bool MessageReader::hasMore() const {
    return in_.rdbuf()->in_avail() > 0;
}

// A line without its end; false at the end of the stream.
bool MessageReader::headerLine(std::string& line) {
    line.clear();
    for (int c = in_.get(); c != std::istream::traits_type::eof(); c = in_.get()) {
        if (c == '\n') {
            if (line.ends_with('\r')) line.pop_back();
            return true;
        }
        if (line.size() >= maximumHeader) line.erase(0, maximumHeader / 2);
        line += static_cast<char>(c);
    }
    return false;
}

Received MessageReader::read() {
    std::size_t length = std::string::npos;
    bool hasOther = false;
    std::string line;
    for (;;) {
        if (!headerLine(line)) return {};
        if (!line.empty()) {
            const std::size_t found = contentLength(line);
            if (found != std::string::npos) length = found;
            hasOther = true;
        } else if (length != std::string::npos) {
            break;
        } else if (hasOther) {
            return {ReceivedKind::Broken, "a message without a Content-Length"};
        }
    }
    if (length > maximumLength) return {ReceivedKind::Broken, "a message of more than 64 MB"};
    Received received{ReceivedKind::Message, {}};
    while (received.text.size() < length) {
        const std::size_t old = received.text.size();
        const std::size_t part = std::min(length - old, readAtOnce);
        received.text.resize(old + part);
        in_.read(received.text.data() + old, static_cast<std::streamsize>(part));
        if (static_cast<std::size_t>(in_.gcount()) < part) return {};
    }
    return received;
}

Json parseMessage(std::string_view text) {
    const auto isShallow = [](int depth, Json::parse_event_t, const Json&) { return depth <= maximumDepth; };
    return Json::parse(text, isShallow, false);
}

void writeMessage(std::ostream& out, const Json& message) {
    const std::string text = message.dump(-1, ' ', false, Json::error_handler_t::replace);
    out << "Content-Length: " << text.size() << "\r\n\r\n" << text << std::flush;
}

Json rpcResult(const Json& id, Json result) {
    return {{"jsonrpc", "2.0"}, {"id", id}, {"result", std::move(result)}};
}

Json rpcFailure(const Json& id, int code, const std::string& message) {
    return {{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", code}, {"message", message}}}};
}

}  // namespace kelmora
