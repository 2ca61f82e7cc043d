#include "workbench/debugger.h"

#include <filesystem>
#include <utility>

#include "script/interpreter.h"
#include "script/line_parser.h"
#include "script/vesper_script.h"

namespace kelmora {
namespace {

bool isBoundary(const std::string& path, std::size_t before) {
    return before == 0 || path[before - 1] == '/';
}

// One is the other, or its end from a folder on.
bool isSameSource(const std::string& one, const std::string& other) {
    const std::string& longer = one.size() >= other.size() ? one : other;
    const std::string& shorter = one.size() >= other.size() ? other : one;
    return !shorter.empty() && longer.ends_with(shorter) &&
           isBoundary(longer, longer.size() - shorter.size());
}

std::string plainPath(const std::string& path) {
    return std::filesystem::path(VesperScript::normalisePath(path)).lexically_normal().generic_string();
}

}  // namespace

Debugger::Debugger(bool stopsOnEntry, OnStop onStop, WantsPause wantsPause)
    : onStop_(std::move(onStop)), wantsPause_(std::move(wantsPause)), isEntering_(stopsOnEntry) {}

void Debugger::setBreakpoints(const std::string& path, const std::vector<Breakpoint>& breakpoints) {
    const std::string plain = plainPath(path);
    for (auto& [line, placed] : breakpoints_)
        std::erase_if(placed, [&](const Placed& each) { return each.path == plain; });
    std::erase_if(breakpoints_, [](const auto& entry) { return entry.second.empty(); });
    for (const Breakpoint& each : breakpoints) breakpoints_[each.line].push_back({plain, each.condition});
}

void Debugger::hideSource(const std::string& path) {
    hidden_ = path;
}

bool Debugger::isAtBreakpoint(Interpreter& script) const {
    const auto found = breakpoints_.find(script.context.line()->lineNumber + 1);
    if (found == breakpoints_.end()) return false;
    const std::string path = plainPath(script.context.path());
    for (const Placed& each : found->second) {
        if (!isSameSource(each.path, path)) continue;
        if (each.condition.empty()) return true;
        try {
            if (isTruthy(evaluateHere(script, each.condition))) return true;
        } catch (const std::exception&) {
            return true;
        }
    }
    return false;
}

bool Debugger::hasStepped(const Interpreter& script) const {
    if (resume_ == Resume::StepIn) return true;
    if (resume_ == Resume::Continue || script.coroutines.inTurn != stepInTurn_) return false;
    const std::uint32_t depth = script.callRecords.size();
    return resume_ == Resume::StepOver ? depth <= stepDepth_ : depth < stepDepth_;
}

void Debugger::beforeStatement(Interpreter& script) {
    const bool wantsPause = wantsPause_();
    isPausing_ = isPausing_ || wantsPause;
    if (!script.context.line() || (!hidden_.empty() && script.context.path() == hidden_)) return;
    StopReason reason = StopReason::Step;
    if (std::exchange(isPausing_, false)) {
        reason = StopReason::Pause;
    } else if (std::exchange(isEntering_, false)) {
        reason = StopReason::Entry;
    } else if (isAtBreakpoint(script)) {
        reason = StopReason::Breakpoint;
    } else if (!hasStepped(script)) {
        return;
    }
    resume_ = onStop_(script, reason);
    stepDepth_ = script.callRecords.size();
    stepInTurn_ = script.coroutines.inTurn;
}

std::vector<std::uint32_t> statementLines(const std::string& source) {
    SourceContext context;
    std::vector<ParsedScriptLine> lines = parseLines(source, context);
    std::vector<std::uint32_t> numbers;
    for (const ParsedScriptLine& line : lines) {
        const ParsedLineKind kind = line.kind;
        const bool closes = kind == ParsedLineKind::Else || kind == ParsedLineKind::ElseIf ||
                            kind == ParsedLineKind::End || kind == ParsedLineKind::Repeat;
        const std::uint32_t number = line.lineNumber + 1;
        if (kind != ParsedLineKind::Empty && !closes && (numbers.empty() || numbers.back() < number))
            numbers.push_back(number);
    }
    return numbers;
}

Variable evaluateHere(Interpreter& script, const std::string& source) {
    // An error in it is no error of the script that is looked at.
    SoftError own;
    std::swap(script.softError, own);
    struct Restore {
        Interpreter& script;
        SoftError& own;
        ~Restore() { std::swap(script.softError, own); }
    } const restore{script, own};
    return script.face.executeBlock(source);
}

}  // namespace kelmora
