#include "script/coroutines.h"

#include <stdexcept>

#include "script/interpreter.h"

namespace kelmora {
namespace {

std::shared_ptr<CoroutineState> createCoroutineState(Scopes& scopes, const Variable& function,
                                                     std::span<const Variable> arguments) {
    auto state = std::make_shared<CoroutineState>();
    const ScriptCallable& callable = function.function();
    state->callable = function;
    CoroutineFrame body;
    if (callable.program) {
        state->lines = &callable.program->lines.linked();
        for (const FunctionDeclaration& declaration : callable.program->functionDeclarations) {
            if (declaration.bodyChunk != callable.chunkIndex) continue;
            body.current = declaration.firstBodyLine;
            body.end = std::min(declaration.endLine, static_cast<std::uint32_t>(state->lines->size()));
        }
    } else {
        state->lines = &callable.body;
        body.end = static_cast<std::uint32_t>(callable.body.size());
    }
    state->frames.push_back(std::move(body));
    // The parameters are the coroutine's outermost locals.
    state->scopes = scopes.framesWithLocals(callable.parameters, arguments, callable.nativeScopeIndex + 1);
    if (callable.isVariadic) {
        const std::size_t fixed = std::min(arguments.size(), callable.parameters.size());
        state->varargs.emplace_back(arguments.begin() + static_cast<std::ptrdiff_t>(fixed), arguments.end());
    }
    return state;
}

}  // namespace

void Coroutines::start(Scopes& scopes, const Variable& callable, std::span<const Variable> arguments) {
    auto state = createCoroutineState(scopes, callable, arguments);
    if (!inTurn) {
        scheduled = std::move(state);
        return;
    }
    next = std::move(state);
    terminateRequested = true;
    throw CoroutineTerminated();
}

void Coroutines::kill() {
    if (inTurn) {
        terminateRequested = true;
        next.reset();
    }
    scheduled.reset();
}

// Advances one coroutine by one plain statement or one loop test.
class CoroutineTurn {
public:
    CoroutineTurn(Interpreter& script, CoroutineState& state) : script_(script), state_(state) {}

    // True when the coroutine has finished.
    bool run() {
        for (;;) {
            if (state_.frames.empty()) return true;
            script_.stack.check();
            if (top().kind == CoroutineFrame::Kind::Block) {
                if (blockStep()) return state_.frames.empty();
            } else {
                loopStep();
                return state_.frames.empty();
            }
        }
    }

private:
    using Kind = CoroutineFrame::Kind;

    CoroutineFrame& top() { return state_.frames.back(); }
    const ParsedScriptLine& line(std::uint32_t index) const {
        if (index >= state_.lines->size()) throw std::runtime_error("Coroutine line index out of range");
        return (*state_.lines)[index];
    }

    void pushBlockFrame(std::uint32_t first, std::uint32_t end) {
        CoroutineFrame frame;
        frame.current = first;
        frame.end = end;
        state_.frames.push_back(std::move(frame));
        script_.scopes.pushLocalScope();
        script_.scopes.setNativeLevel(script_.scopes.nativeLevel() + 1);
    }
    void popFrame() {
        const Kind kind = top().kind;
        const CallScope variables = top().variables;
        state_.frames.pop_back();
        if (kind == Kind::NumericFor || kind == Kind::GenericFor) script_.scopes.popCallScope(variables);
        if (kind == Kind::Block && !state_.frames.empty()) {
            script_.scopes.popLocalScope();
            script_.scopes.setNativeLevel(script_.scopes.nativeLevel() - 1);
        }
    }
    // Leaves the innermost loop with all the blocks inside it.
    void popLoopFrame() {
        std::size_t loop = state_.frames.size();
        while (loop > 0 && state_.frames[loop - 1].kind == Kind::Block) --loop;
        if (loop == 0) throw std::runtime_error("break used outside a loop");
        while (state_.frames.size() >= loop) popFrame();
    }

    // A line of a block frame. True when the turn is over.
    bool blockStep() {
        CoroutineFrame& frame = top();
        if (frame.current >= frame.end) {
            popFrame();
            return false;
        }
        const std::uint32_t index = frame.current++;
        const ParsedScriptLine& statement = line(index);
        if (statement.kind == ParsedLineKind::Empty) return false;
        script_.context.setLine(statement);
        script_.showStatement();
        return statementStep(statement, index);
    }

    bool statementStep(const ParsedScriptLine& statement, std::uint32_t index) {
        switch (statement.kind) {
            case ParsedLineKind::If:
                enterIf(statement, index);
                return false;
            case ParsedLineKind::While:
                enterLoop(Kind::While, index, "Missing 'end' for while block");
                return false;
            case ParsedLineKind::Repeat:
                enterLoop(Kind::Repeat, index, "Missing 'until' for repeat block");
                pushBlockFrame(top().current, top().end);  // the first round has no test
                return false;
            case ParsedLineKind::For:
                enterFor(statement, index);
                return false;
            case ParsedLineKind::Nest: {
                const std::uint32_t end = leaveTo(statement, "Missing 'end' for nest block");
                pushBlockFrame(index + 1, end);
                return false;
            }
            case ParsedLineKind::Function:
            case ParsedLineKind::DecayFunction:
            case ParsedLineKind::NativeFunction:
            case ParsedLineKind::LocalFunction:
                declare(statement, index);
                return false;
            case ParsedLineKind::Return:
                script_.evaluateReturn(statement);
                state_.frames.clear();
                return true;
            case ParsedLineKind::Break:
                popLoopFrame();
                return false;
            case ParsedLineKind::Other: {
                if (!script_.executeAssignment(statement, nullptr))
                    script_.executeExpressionStatement(statement);
                return true;
            }
            default:
                return false;
        }
    }

    // The block's frame goes on behind the closer; gives the closer's index.
    std::uint32_t leaveTo(const ParsedScriptLine& opener, const char* missing) {
        if (opener.endIndex == noLine) throw std::runtime_error(missing);
        top().current = opener.endIndex + 1;
        return opener.endIndex;
    }

    void enterIf(const ParsedScriptLine& opener, std::uint32_t index) {
        const std::uint32_t end = leaveTo(opener, "Missing 'end' for if block");
        for (std::uint32_t branch = index; branch != noLine; branch = line(branch).nextBranchIndex) {
            const ParsedScriptLine& candidate = line(branch);
            script_.context.setLine(candidate);
            if (candidate.kind != ParsedLineKind::Else && !script_.evaluateCondition(candidate, "if"))
                continue;
            pushBlockFrame(branch + 1, candidate.nextBranchIndex != noLine ? candidate.nextBranchIndex : end);
            return;
        }
    }
    void enterLoop(Kind kind, std::uint32_t index, const char* missing) {
        const std::uint32_t end = leaveTo(line(index), missing);
        CoroutineFrame frame;
        frame.kind = kind;
        frame.current = index + 1;
        frame.end = end;
        frame.loopLine = kind == Kind::Repeat ? end : index;
        state_.frames.push_back(std::move(frame));
    }
    void enterFor(const ParsedScriptLine& opener, std::uint32_t index) {
        const ParsedFor& header = *opener.forHeader;
        script_.throwHeaderFault(opener, header.fault);
        CoroutineFrame loop;
        loop.kind = header.isNumeric ? Kind::NumericFor : Kind::GenericFor;
        loop.current = index + 1;
        loop.end = leaveTo(opener, "Missing 'end' for for block");
        loop.loopLine = index;
        if (header.isNumeric) loop.numbers = script_.openNumericLoop(opener);
        loop.variables = script_.scopes.pushCallScope(header.names);
        if (!header.isNumeric) openWalk(opener, loop);
        state_.frames.push_back(std::move(loop));
    }
    // The loop's variables hide what the iterator names.
    void openWalk(const ParsedScriptLine& opener, CoroutineFrame& loop) {
        try {
            loop.sequence = script_.openSequenceWalk(opener);
        } catch (...) {
            script_.scopes.popCallScope(loop.variables);
            throw;
        }
    }

    // A test of the loop on top: into its body, or out of it.
    void loopStep() {
        CoroutineFrame& loop = top();
        const ParsedScriptLine& clause = line(loop.loopLine);
        script_.context.setLine(clause);
        const std::uint32_t first = loop.current;
        const std::uint32_t end = loop.end;
        if (nextRound(loop, clause)) {
            pushBlockFrame(first, end);
        } else {
            popFrame();
        }
    }
    bool nextRound(CoroutineFrame& loop, const ParsedScriptLine& clause) {
        switch (loop.kind) {
            case Kind::While:
                return script_.evaluateCondition(clause, "while");
            case Kind::Repeat:
                return !script_.evaluateCondition(clause, "until");
            case Kind::NumericFor:
                if (!loop.numbers.next()) return false;
                *loop.variables = Variable::integer(loop.numbers.value);
                return true;
            default:
                return script_.bindNext(*clause.forHeader, loop.variables, loop.sequence);
        }
    }

    void declare(const ParsedScriptLine& opener, std::uint32_t index) {
        script_.throwHeaderFault(opener, opener.functionHeader->fault);
        leaveTo(opener, "Missing 'end' for function block");
        const Variable function = script_.makeDeclaredCallable(opener);
        script_.fillDeclaredBody(function.function(), state_.callable.function(), *state_.lines, index);
        script_.bindFunction(opener, function);
    }

    Interpreter& script_;
    CoroutineState& state_;
};

void Interpreter::serviceScheduledCoroutineTurn() {
    const std::shared_ptr<CoroutineState> state = coroutines.scheduled;
    coroutines.next.reset();
    coroutines.inTurn = true;
    coroutines.callsAround = callRecords.size();
    coroutines.terminateRequested = false;
    const SourceLineGuard line(context);
    const auto exchange = [&] {
        scopes.exchangeFrames(state->scopes);
        std::swap(softError, state->softError);
        varargs.swap(state->varargs);
    };
    exchange();
    askForAttention();  // the coroutine's soft error may have been on its way
    bool finished = false;
    {
        const ScriptCallable& callable = state->callable.function();
        const SourceFileGuard source(context, callable.source);
        try {
            finished = CoroutineTurn(*this, *state).run();
        } catch (const CoroutineTerminated&) {
            finished = true;
        } catch (...) {
            coroutines.pendingException = std::current_exception();
        }
    }
    exchange();
    askForAttention();
    coroutines.inTurn = false;
    const bool stillScheduled = coroutines.scheduled == state;
    if (coroutines.terminateRequested && coroutines.next) {
        coroutines.scheduled = std::move(coroutines.next);
    } else if (stillScheduled && (coroutines.terminateRequested || finished)) {
        coroutines.scheduled.reset();
    }
}

}  // namespace kelmora
