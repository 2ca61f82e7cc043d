#include <atomic>
#include <condition_variable>
#include <deque>
#include <iostream>
#include <mutex>
#include <thread>

#include "platform/system.h"
#include "tool/editor/debug_adapter.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

// Reads standard input on a thread of its own, so that a running script can be stopped.
class StandardInbox : public DebugInbox {
public:
    StandardInbox() {
        std::thread([shared = shared_] { readAll(*shared); }).detach();
    }

    bool hasMessage() override { return shared_->count.load(std::memory_order_relaxed) > 0; }
    std::optional<std::string> wait() override {
        std::unique_lock lock(shared_->mutex);
        shared_->arrived.wait(lock, [&] { return !shared_->messages.empty() || shared_->isOver; });
        if (shared_->messages.empty()) return std::nullopt;
        std::string message = std::move(shared_->messages.front());
        shared_->messages.pop_front();
        --shared_->count;
        return message;
    }

private:
    // Outlives the object: nothing ends a read that waits.
    struct Shared {
        std::mutex mutex;
        std::condition_variable arrived;
        std::deque<std::string> messages;
        std::atomic<std::size_t> count = 0;  // of messages, and one more when there will be none
        bool isOver = false;
    };

    static void readAll(Shared& shared) {
        MessageReader reader(std::cin);
        for (;;) {
            Received received = reader.read();
            if (received.kind == ReceivedKind::Broken) continue;
            const std::lock_guard lock(shared.mutex);
            ++shared.count;
            if (received.kind == ReceivedKind::End) shared.isOver = true;
            if (received.kind == ReceivedKind::Message) shared.messages.push_back(std::move(received.text));
            shared.arrived.notify_one();
            if (shared.isOver) return;
        }
    }

    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
};

int debugForClient(ToolContext&, std::span<const std::string> words) {
    const ToolOptions options(words, {});
    if (!options.words().empty()) throw UsageError("dap takes no words");
    platform_read_stdin_as_bytes();
    StandardInbox inbox;
    DebugAdapter(inbox, [](const Json& message) { writeMessage(std::cout, message); }).serve();
    // The reading thread may hold standard input for ever.
    std::_Exit(0);
}

}  // namespace

extern const ToolCommand dapCommand{
    "dap", "", "serve a debugger by the debug adapter protocol, on standard input and output",
    "Started by editors; docs/editors.md says how to set them up. What it is told to launch: `program`, a\n"
    "script or the folder of a game, `args`, `stopOnEntry`, and `headless` for a game.\n",
    debugForClient};

}  // namespace kelmora
