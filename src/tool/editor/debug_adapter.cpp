#include "tool/editor/debug_adapter.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "base/whole_file.h"
#include "host/boot_image.h"
#include "host/registration.h"
#include "host/startup.h"
#include "script/interpreter.h"
#include "tool/game_folder.h"
#include "tool/play/game_session.h"
#include "tool/run_command.h"
#include "tool/tool_options.h"
#include "workbench/failure_report.h"
#include "workbench/symbols.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

constexpr int requestFailed = -32803;
constexpr int onlyThread = 1;

// What a script prints goes to the client: standard output carries the protocol.
class DebuggedHost : public ConsoleHost {
public:
    using Write = std::function<void(const char* category, std::string_view text)>;
    explicit DebuggedHost(Write write) : write_(std::move(write)) {}
    void print(std::string_view text) override { write_("stdout", text); }
    void printError(std::string_view text) override { write_("stderr", text); }
    void flush() override {}

private:
    Write write_;
};

class NoWatcher : public UpdateWatcher {
public:
    void beforeUpdate(int, WindowCore&) override {}
    void afterUpdate(int, WindowCore&) override {}
};

// The part of the path below `from` put below `to`.
std::string moved(const std::string& path, const std::string& from, const std::string& to) {
    if (from.empty() || !path.starts_with(from)) return path;
    return to + path.substr(from.size());
}

std::string plain(const fs::path& path) {
    std::error_code ignored;
    return fs::weakly_canonical(path, ignored).generic_string();
}

const Variable* findNamed(const RunningFrame& frame, const std::string& name) {
    for (const NamedValues* values : {&frame.locals, &frame.parameters})
        for (const auto& [each, value] : *values)
            if (each == name) return &value;
    return nullptr;
}

}  // namespace

DebugAdapter::DebugAdapter(DebugInbox& inbox, Send send) : inbox_(inbox), send_(std::move(send)) {}

void DebugAdapter::serve() {
    while (!isOver_) {
        const std::optional<std::string> message = inbox_.wait();
        if (!message) return;
        handle(*message);
        if (launch_ && isConfigured_) run();
    }
}

void DebugAdapter::sendMessage(Json message) {
    message["seq"] = ++sent_;
    send_(message);
}

void DebugAdapter::event(const std::string& name, Json body) {
    sendMessage({{"type", "event"}, {"event", name}, {"body", std::move(body)}});
}

void DebugAdapter::output(const char* category, const std::string& text) {
    if (!text.empty()) event("output", {{"category", category}, {"output", text}});
}

void DebugAdapter::handle(const std::string& message) {
    const Json request = parseMessage(message);
    if (!request.is_object() || request.value("type", Json()) != "request") return;
    Json response{{"type", "response"}, {"success", true}};
    response["request_seq"] = request.value("seq", Json(0));
    response["command"] = request.value("command", Json(""));
    std::string command;
    try {
        command = request.at("command").get<std::string>();
        response["body"] = answer(command, request.value("arguments", Json::object()));
    } catch (const Json::exception&) {
        response["success"] = false;
        response["message"] = "the arguments are not those of " + command;
    } catch (const std::exception& error) {
        response["success"] = false;
        response["message"] = error.what();
    }
    const bool hasSucceeded = response["success"].get<bool>();
    sendMessage(std::move(response));
    if (command == "initialize" && hasSucceeded) event("initialized", Json::object());
}

Json DebugAdapter::answer(const std::string& command, const Json& arguments) {
    static const std::map<std::string, Request> requests{
        {"initialize", &DebugAdapter::initialise},
        {"launch", &DebugAdapter::launch},
        {"setBreakpoints", &DebugAdapter::setBreakpoints},
        {"setExceptionBreakpoints", &DebugAdapter::nothing},
        {"configurationDone", &DebugAdapter::configurationDone},
        {"threads", &DebugAdapter::threads},
        {"stackTrace", &DebugAdapter::stackTrace},
        {"scopes", &DebugAdapter::scopes},
        {"variables", &DebugAdapter::variables},
        {"setVariable", &DebugAdapter::setVariable},
        {"evaluate", &DebugAdapter::evaluate},
        {"pause", &DebugAdapter::pause},
        {"continue", &DebugAdapter::goOn},
        {"next", &DebugAdapter::stepOver},
        {"stepIn", &DebugAdapter::stepIn},
        {"stepOut", &DebugAdapter::stepOut},
        {"disconnect", &DebugAdapter::leave},
        {"terminate", &DebugAdapter::leave},
    };
    const auto found = requests.find(command);
    if (found == requests.end()) throw RpcError(rpcMethodNotFound, "there is no request " + command);
    return (this->*found->second)(arguments);
}

// --- Running ---

void DebugAdapter::run() {
    const int exitCode = runProgram();
    launch_.reset();
    if (isOver_) return;
    event("exited", {{"exitCode", exitCode}});
    event("terminated", Json::object());
}

int DebugAdapter::runProgram() {
    Debugger debugger(
        launch_->stopsOnEntry,
        [this](Interpreter& script, StopReason reason) { return stop(script, reason); },
        [this] { return lookAtInbox(); });
    debugger_ = &debugger;
    int exitCode = 1;
    try {
        exitCode = fs::is_directory(launch_->program) ? runGame(debugger) : runScript(debugger);
    } catch (const Ended&) {
    } catch (const std::exception& error) {
        output("stderr", std::string(error.what()) + "\n");
    }
    debugger_ = nullptr;
    return exitCode;
}

int DebugAdapter::runScript(Debugger& debugger) {
    DebuggedHost host(
        [this](const char* category, std::string_view text) { output(category, std::string(text)); });
    Runtime runtime(host);
    runtime.path = plain(fs::path(launch_->program).parent_path()) + "/";
    registerFunctions(runtime);
    attach(debugger, runtime.engine);
    std::vector<std::string> words{launch_->program};
    words.insert(words.end(), launch_->arguments.begin(), launch_->arguments.end());
    try {
        return runFile(runtime, words);
    } catch (const std::exception& error) {
        output("stderr", std::string(error.what()) + "\n" + failurePlaces(runtime.engine, error.what()));
        return 1;
    }
}

int DebugAdapter::runGame(Debugger& debugger) {
    const fs::path game = findGame(launch_->program);
    const ScratchFolder scratch;
    const bool isCopied = launch_->isHeadless || lacksParts(game);
    if (isCopied) {
        copyGame(game, scratch.path());
        clientRoot_ = plain(game);
        playedRoot_ = plain(scratch.path());
    }
    DebuggedHost host(
        [this](const char* category, std::string_view text) { output(category, std::string(text)); });
    GameSession session(host, bootText(), isCopied ? scratch.path() : game, launch_->isHeadless);
    Runtime& runtime = session.runtime();
    debugger.hideSource(startupSourcePath(runtime));
    attach(debugger, runtime.engine);
    NoWatcher watcher;
    const std::optional<std::string> failure = session.play(watcher);
    if (failure) output("stderr", toldOf(game, scratch.path(), *failure));
    return failure ? 1 : 0;
}

// With the globals that it has now as those of the library.
void DebugAdapter::attach(Debugger& debugger, VesperScript& engine) {
    for (const auto& [name, value] : engine.globals()) libraryNames_.insert(name);
    for (const auto& [path, points] : breakpoints_)
        debugger.setBreakpoints(moved(path, clientRoot_, playedRoot_), points);
    engine.interpreter().watchStatements(&debugger);
}

bool DebugAdapter::lookAtInbox() {
    while (inbox_.hasMessage()) {
        const std::optional<std::string> message = inbox_.wait();
        if (!message) throw Ended();
        handle(*message);
        if (isOver_) throw Ended();
    }
    return std::exchange(wantsPause_, false);
}

Resume DebugAdapter::stop(Interpreter& script, StopReason reason) {
    static constexpr const char* names[] = {"entry", "step", "breakpoint", "pause"};
    standing_ = &script;
    resume_.reset();
    frames_ = runningFrames(script);
    event("stopped", {{"reason", names[static_cast<std::size_t>(reason)]},
                      {"threadId", onlyThread},
                      {"allThreadsStopped", true}});
    while (!resume_) {
        const std::optional<std::string> message = inbox_.wait();
        if (message) handle(*message);
        if (!message || isOver_) {
            standing_ = nullptr;
            throw Ended();
        }
    }
    standing_ = nullptr;
    frames_.clear();
    shown_.forget();
    return *resume_;
}

Interpreter& DebugAdapter::standing() {
    if (!standing_) throw RpcError(requestFailed, "the script is not stopped");
    return *standing_;
}

// --- Requests ---

Json DebugAdapter::initialise(const Json&) {
    return {{"supportsConfigurationDoneRequest", true},
            {"supportsConditionalBreakpoints", true},
            {"supportsEvaluateForHovers", true},
            {"supportsSetVariable", true},
            {"supportsTerminateRequest", true}};
}

Json DebugAdapter::launch(const Json& arguments) {
    if (launch_ || debugger_) throw RpcError(requestFailed, "a program runs already");
    Launch made;
    made.program = arguments.at("program").get<std::string>();
    made.arguments = arguments.value("args", std::vector<std::string>());
    made.isHeadless = arguments.value("headless", false);
    made.stopsOnEntry = arguments.value("stopOnEntry", false);
    if (!fs::exists(made.program)) throw RpcError(requestFailed, "there is no " + made.program);
    launch_ = std::move(made);
    return Json::object();
}

// A breakpoint where there is no statement stands at the next one.
Json DebugAdapter::setBreakpoints(const Json& arguments) {
    const std::string path = arguments.at("source").at("path").get<std::string>();
    std::vector<std::uint32_t> lines;
    if (const auto source = readWholeFile(path)) {
        try {
            lines = statementLines(*source);
        } catch (const std::exception&) {  // none can be stopped at
        }
    }
    std::vector<Breakpoint> points;
    Json told = Json::array();
    for (const Json& each : arguments.value("breakpoints", Json::array())) {
        const auto wanted = each.at("line").get<std::uint32_t>();
        const auto found = std::lower_bound(lines.begin(), lines.end(), wanted);
        if (found == lines.end()) {
            told.push_back({{"verified", false}, {"line", wanted}, {"message", "no statement from here on"}});
            continue;
        }
        points.push_back({*found, each.value("condition", "")});
        told.push_back({{"verified", true}, {"line", *found}});
    }
    const std::string known = plain(path);
    breakpoints_[known] = points;
    if (debugger_) debugger_->setBreakpoints(moved(known, clientRoot_, playedRoot_), points);
    return {{"breakpoints", told}};
}

Json DebugAdapter::configurationDone(const Json&) {
    isConfigured_ = true;
    return Json::object();
}

Json DebugAdapter::threads(const Json&) {
    return {{"threads", Json::array({{{"id", onlyThread}, {"name", "script"}}})}};
}

Json DebugAdapter::stackTrace(const Json& arguments) {
    standing();
    const auto first = arguments.value("startFrame", std::size_t{0});
    auto count = arguments.value("levels", std::size_t{0});
    if (count == 0) count = frames_.size();
    Json list = Json::array();
    for (std::size_t i = first; i < frames_.size() && list.size() < count; ++i) {
        const RunningFrame& frame = frames_[i];
        Json shown{{"id", i + 1},
                   {"name", frame.function.empty() ? "(script)" : frame.function},
                   {"line", frame.line},
                   {"column", 1}};
        if (!frame.path.empty()) {
            const std::string path = moved(plain(frame.path), playedRoot_, clientRoot_);
            shown["source"] = {{"name", fs::path(path).filename().generic_string()}, {"path", path}};
        }
        list.push_back(std::move(shown));
    }
    return {{"stackFrames", list}, {"totalFrames", frames_.size()}};
}

const RunningFrame& DebugAdapter::frameOf(const Json& arguments) {
    const auto number = arguments.value("frameId", std::size_t{1});
    if (number == 0 || number > frames_.size()) throw RpcError(requestFailed, "there is no such frame");
    return frames_[number - 1];
}

Json DebugAdapter::scopes(const Json& arguments) {
    Interpreter& script = standing();
    const RunningFrame& frame = frameOf(arguments);
    NamedValues globals = script.face.globals();
    std::erase_if(globals, [this](const auto& each) { return libraryNames_.contains(each.first); });
    std::sort(globals.begin(), globals.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    Json list = Json::array();
    const auto add = [&](const char* name, NamedValues values, bool isExpensive) {
        list.push_back({{"name", name},
                        {"variablesReference", shown_.numberOf(std::move(values))},
                        {"expensive", isExpensive}});
    };
    add("Locals", frame.locals, false);
    add("Parameters", frame.parameters, false);
    if (NamedValues natives = visibleNatives(script); !natives.empty())
        add("Natives", std::move(natives), false);
    add("Globals", std::move(globals), true);
    return {{"scopes", list}};
}

Json DebugAdapter::variables(const Json& arguments) {
    standing();
    return {{"variables", shown_.inside(arguments.at("variablesReference").get<std::size_t>(),
                                        arguments.value("start", std::size_t{0}),
                                        arguments.value("count", std::size_t{0}))}};
}

Variable DebugAdapter::evaluated(const std::string& expression) {
    return evaluateHere(standing(), expression);
}

// A name of the frame that is asked for; everything else with the names of the innermost.
Variable DebugAdapter::evaluatedIn(const Json& arguments) {
    const std::string expression = arguments.at("expression").get<std::string>();
    standing();
    if (isVariableName(expression))
        if (const Variable* found = findNamed(frameOf(arguments), expression)) return *found;
    return evaluated(expression);
}

Json DebugAdapter::evaluate(const Json& arguments) {
    const Variable value = evaluatedIn(arguments);
    frames_ = runningFrames(standing());
    Json shown = shown_.shown("", value);
    return {{"result", shown["value"]},
            {"type", shown["type"]},
            {"variablesReference", shown["variablesReference"]}};
}

Json DebugAdapter::setVariable(const Json& arguments) {
    Interpreter& script = standing();
    const std::string name = arguments.at("name").get<std::string>();
    const Variable value = evaluated(arguments.at("value").get<std::string>());
    if (const Variable* held = shown_.container(arguments.at("variablesReference").get<std::size_t>())) {
        Variable container = *held;
        // Arrays go by number.
        const Variable key = container.isTable() ? Variable::text(name) : evaluated(name);
        Interpreter::setIndexedValue(container, key, value, true);
    } else if (isVariableName(name)) {
        script.scopes.assignDefault(internName(name), Variable(value));
        frames_ = runningFrames(script);
    }
    Json shown = shown_.shown(name, value);
    shown.erase("name");
    return shown;
}

Json DebugAdapter::pause(const Json&) {
    wantsPause_ = !standing_;
    return Json::object();
}

Json DebugAdapter::goOn(const Json&) {
    standing();
    resume_ = Resume::Continue;
    return {{"allThreadsContinued", true}};
}
Json DebugAdapter::stepIn(const Json&) {
    standing();
    resume_ = Resume::StepIn;
    return Json::object();
}
Json DebugAdapter::stepOver(const Json&) {
    standing();
    resume_ = Resume::StepOver;
    return Json::object();
}
Json DebugAdapter::stepOut(const Json&) {
    standing();
    resume_ = Resume::StepOut;
    return Json::object();
}

Json DebugAdapter::leave(const Json&) {
    isOver_ = true;
    return Json::object();
}

Json DebugAdapter::nothing(const Json&) {
    return Json::object();
}

}  // namespace kelmora
