#pragma once

#include <cstdint>
#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kelmora {

using Json = nlohmann::json;

enum class ReceivedKind : std::uint8_t { Message, Broken, End };

struct Received {
    ReceivedKind kind = ReceivedKind::End;
    std::string text;  // the message, or what is wrong with it
};

// Messages behind headers `Content-Length: N` and an empty line, as the protocols of editors frame them.
// Behind a broken header the next good one is looked for.
class MessageReader {
public:
    explicit MessageReader(std::istream& in) : in_(in) {}

    // Waits for the next message.
    Received read();
    // More has arrived already.
    bool hasMore() const;

private:
    bool headerLine(std::string& line);

    std::istream& in_;
};

// A discarded value for what is no JSON; values that are nested deeper than any message of ours are left out.
Json parseMessage(std::string_view text);

// Text that is no UTF-8 is sent with marks in its place.
void writeMessage(std::ostream& out, const Json& message);

// --- JSON-RPC 2.0 ---

inline constexpr int rpcParseError = -32700;
inline constexpr int rpcInvalidRequest = -32600;
inline constexpr int rpcMethodNotFound = -32601;
inline constexpr int rpcInvalidParams = -32602;
inline constexpr int rpcInternalError = -32603;

// What a request fails with.
class RpcError : public std::runtime_error {
public:
    RpcError(int code, const std::string& message) : std::runtime_error(message), code_(code) {}
    int code() const { return code_; }

private:
    int code_;
};

Json rpcResult(const Json& id, Json result);
Json rpcFailure(const Json& id, int code, const std::string& message);

}  // namespace kelmora
