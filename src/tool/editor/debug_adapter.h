#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/console_host.h"
#include "script/vesper_script.h"
#include "tool/editor/debug_variables.h"
#include "tool/editor/json_rpc.h"
#include "workbench/debugger.h"

namespace kelmora {

// Messages of a client in their order.
class DebugInbox {
public:
    DebugInbox() = default;
    DebugInbox(const DebugInbox&) = delete;
    DebugInbox& operator=(const DebugInbox&) = delete;
    virtual ~DebugInbox() = default;

    // A message is there already: a running script looks between statements.
    virtual bool hasMessage() = 0;
    // Nothing when the client is gone.
    virtual std::optional<std::string> wait() = 0;
};

// The adapter's side of the debug adapter protocol: runs one script or game of VesperScript, stands at its
// statements, and shows what it holds. Requests that make no sense fail and end nothing.
class DebugAdapter {
public:
    using Send = std::function<void(const Json&)>;

    DebugAdapter(DebugInbox& inbox, Send send);
    // Until the client leaves.
    void serve();

private:
    struct Launch {
        std::string program;  // a script, or the folder of a game
        std::vector<std::string> arguments;
        bool isHeadless = true;
        bool stopsOnEntry = false;
    };
    // Goes through everything that runs; no failure of script.
    struct Ended {};

    using Request = Json (DebugAdapter::*)(const Json&);

    void handle(const std::string& message);
    Json answer(const std::string& command, const Json& arguments);
    void sendMessage(Json message);
    void event(const std::string& name, Json body);
    void output(const char* category, const std::string& text);

    void run();
    int runProgram();
    int runScript(Debugger& debugger);
    int runGame(Debugger& debugger);
    void attach(Debugger& debugger, VesperScript& engine);
    Resume stop(Interpreter& script, StopReason reason);
    bool lookAtInbox();
    // Raises RpcError while the script runs.
    Interpreter& standing();
    Variable evaluated(const std::string& expression);
    Variable evaluatedIn(const Json& arguments);
    const RunningFrame& frameOf(const Json& arguments);

    Json initialise(const Json& arguments);
    Json launch(const Json& arguments);
    Json setBreakpoints(const Json& arguments);
    Json configurationDone(const Json& arguments);
    Json threads(const Json& arguments);
    Json stackTrace(const Json& arguments);
    Json scopes(const Json& arguments);
    Json variables(const Json& arguments);
    Json setVariable(const Json& arguments);
    Json evaluate(const Json& arguments);
    Json pause(const Json& arguments);
    Json goOn(const Json& arguments);
    Json stepIn(const Json& arguments);
    Json stepOver(const Json& arguments);
    Json stepOut(const Json& arguments);
    Json leave(const Json& arguments);
    Json nothing(const Json& arguments);

    DebugInbox& inbox_;
    Send send_;
    std::int64_t sent_ = 0;
    std::optional<Launch> launch_;
    std::map<std::string, std::vector<Breakpoint>> breakpoints_;  // by the paths of the client
    std::string clientRoot_;                                      // of a game that is played on a copy
    std::string playedRoot_;
    Debugger* debugger_ = nullptr;
    Interpreter* standing_ = nullptr;
    std::optional<Resume> resume_;
    std::vector<RunningFrame> frames_;
    DebugVariables shown_;
    std::set<std::string> libraryNames_;  // globals that were there before the script
    bool isConfigured_ = false;
    bool wantsPause_ = false;
    bool isOver_ = false;
};

}  // namespace kelmora
