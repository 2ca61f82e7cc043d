#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tool/editor/debug_adapter.h"

namespace {

// The messages of a stream, but for those that start programs.
class StreamInbox : public kelmora::DebugInbox {
public:
    explicit StreamInbox(std::istream& in) : reader_(in) {}
    bool hasMessage() override { return reader_.hasMore(); }
    std::optional<std::string> wait() override {
        for (;;) {
            kelmora::Received received = reader_.read();
            if (received.kind == kelmora::ReceivedKind::End) return std::nullopt;
            if (received.text.find("launch") == std::string::npos) return received.text;
        }
    }

private:
    kelmora::MessageReader reader_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    StreamInbox inbox(in);
    kelmora::DebugAdapter(inbox, [](const kelmora::Json&) {}).serve();
    return 0;
}
