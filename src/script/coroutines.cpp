#include "script/coroutines.h"

#include <stdexcept>

#include "script/statements.h"

namespace kelmora {
namespace {

std::shared_ptr<CoroutineState> createCoroutineState(const Variable& function,
                                                     std::span<const Variable> arguments) {
    auto state = std::make_shared<CoroutineState>();
    const ScriptCallable& callable = function.function();
    state->callable = function;
    CoroutineFrame body;
    if (callable.program) {
        state->lines = &callable.program->lines;
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
    Scopes bound;
    bound.pushLocalScope();
    for (std::size_t i = 0; i < callable.parameters.size(); ++i)
        bound.setLocal(callable.parameters[i], i < arguments.size() ? Variable(arguments[i]) : Variable());
    bound.setNativeLevel(callable.nativeScopeIndex + 1);
    bound.exchangeFrames(state->scopes);
    if (callable.isVariadic) {
        const std::size_t fixed = std::min(arguments.size(), callable.parameters.size());
        state->varargs.emplace_back(arguments.begin() + static_cast<std::ptrdiff_t>(fixed), arguments.end());
    }
    return state;
}

}  // namespace

void Coroutines::start(const Variable& callable, std::span<const Variable> arguments) {
    auto state = createCoroutineState(callable, arguments);
    if (!inTurn_) {
        scheduled_ = std::move(state);
        return;
    }
    next_ = std::move(state);
    terminateRequested_ = true;
    throw CoroutineTerminated();
}

void Coroutines::kill() {
    if (inTurn_) {
        terminateRequested_ = true;
        next_.reset();
    }
    scheduled_.reset();
}

// Advances one coroutine by one plain statement or one loop test.
class CoroutineTurn {
public:
    CoroutineTurn(VesperScript& script, CoroutineState& state) : script_(script), state_(state) {}

    // True when the coroutine has finished.
    bool run() {
        for (;;) {
            if (state_.frames.empty()) return true;
            script_.stack_.check();
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
        script_.scopes_.pushLocalScope();
        script_.scopes_.setNativeLevel(script_.scopes_.nativeLevel() + 1);
    }
    void popFrame() {
        const Kind kind = top().kind;
        const CallScope variables = top().variables;
        state_.frames.pop_back();
        if (kind == Kind::NumericFor || kind == Kind::GenericFor) script_.scopes_.popCallScope(variables);
        if (kind == Kind::Block && !state_.frames.empty()) {
            script_.scopes_.popLocalScope();
            script_.scopes_.setNativeLevel(script_.scopes_.nativeLevel() - 1);
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
        script_.context_.setLine(statement);
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
                top().started = true;  // the first round has no test
                pushBlockFrame(top().current, top().end);
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
            script_.context_.setLine(candidate);
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
        script_.throwHeaderFault(opener, opener.forHeader->fault);
        const bool isNumeric = opener.forHeader->isNumeric;
        enterLoop(isNumeric ? Kind::NumericFor : Kind::GenericFor, index, "Missing 'end' for for block");
        CoroutineFrame loop = std::move(top());
        state_.frames.pop_back();  // comes back when its clause is sound
        if (isNumeric) {
            const auto bounds = script_.evaluateForBounds(opener);
            if (bounds.step == 0) throw std::runtime_error("for loop step must not be 0");
            loop.value = bounds.start;
            loop.limit = bounds.stop;
            loop.step = bounds.step;
        } else {
            readIterator(opener, loop);
        }
        loop.variables = script_.scopes_.pushCallScope(opener.forHeader->names);
        state_.frames.push_back(std::move(loop));
    }
    void readIterator(const ParsedScriptLine& opener, CoroutineFrame& loop) {
        const ParsedFor& header = *opener.forHeader;
        constexpr std::string_view leftover = "Unexpected token after for iterator";
        loop.withKeys = script_.isBuiltinWalk(opener);
        loop.container =
            script_.evaluateRange(opener, loop.withKeys ? header.argument : header.iterator, leftover);
        const bool isSequence = loop.container.isArray() || (!loop.withKeys && loop.container.isMulti());
        if (loop.withKeys && loop.container.isTable()) {
            if (header.builtin == BuiltinId::Pairs) loop.keys = loop.container.table().sortedKeys();
        } else if (!isSequence) {
            throw std::runtime_error(!loop.withKeys ? "generic for loops expect an array iterator"
                                     : header.builtin == BuiltinId::Pairs
                                         ? "pairs(container) expects an array or table"
                                         : "ipairs(container) expects an array or table");
        }
    }

    // A test of the loop on top: into its body, or out of it.
    void loopStep() {
        CoroutineFrame& loop = top();
        const ParsedScriptLine& clause = line(loop.loopLine);
        script_.context_.setLine(clause);
        const std::uint32_t first = loop.current;
        const std::uint32_t end = loop.end;
        if (nextRound(loop, clause)) {
            pushBlockFrame(first, end);
        } else {
            popFrame();
        }
    }
    bool nextRound(CoroutineFrame& loop, const ParsedScriptLine& clause) {
        const bool first = !std::exchange(loop.started, true);
        switch (loop.kind) {
            case Kind::While:
                return script_.evaluateCondition(clause, "while");
            case Kind::Repeat:
                return !script_.evaluateCondition(clause, "until");
            case Kind::NumericFor:
                return nextNumber(loop, first);
            default:
                return nextElement(loop, *clause.forHeader);
        }
    }
    bool nextNumber(CoroutineFrame& loop, bool first) {
        if (!first)
            loop.value = static_cast<std::int32_t>(static_cast<std::uint32_t>(loop.value) +
                                                   static_cast<std::uint32_t>(loop.step));
        if (loop.step > 0 ? loop.value > loop.limit : loop.value < loop.limit) return false;
        script_.scopes_.callEntry(loop.variables, 0) = Variable::integer(loop.value);
        return true;
    }
    bool nextElement(CoroutineFrame& loop, const ParsedFor& header) {
        const Variable container = loop.container;
        while (loop.keys && loop.position < loop.keys->keys.size()) {
            const std::size_t at = loop.position++;
            const Variable* value = container.table().findListed(*loop.keys, at);
            if (!value) continue;  // erased meanwhile
            script_.bindPair(header, loop.variables, loop.keys->keyValues[at], *value);
            return true;
        }
        if (loop.keys) return false;
        const std::vector<Variable>& items = container.isTable()   ? container.table().denseValues()
                                             : container.isArray() ? container.items()
                                                                   : container.values();
        if (loop.position >= items.size()) return false;
        const Variable element = items[loop.position++];
        if (loop.withKeys) {
            script_.bindPair(header, loop.variables,
                             Variable::integer(static_cast<std::int32_t>(loop.position)), element);
        } else {
            script_.bindElement(header, loop.variables, element);
        }
        return true;
    }

    void declare(const ParsedScriptLine& opener, std::uint32_t index) {
        script_.throwHeaderFault(opener, opener.functionHeader->fault);
        leaveTo(opener, "Missing 'end' for function block");
        const Variable function = script_.makeDeclaredCallable(opener);
        script_.fillDeclaredBody(function.function(), state_.callable.function(), *state_.lines, index);
        script_.bindFunction(opener, function);
    }

    VesperScript& script_;
    CoroutineState& state_;
};

void VesperScript::serviceScheduledCoroutineTurn() {
    const std::shared_ptr<CoroutineState> state = coroutines_.scheduled_;
    coroutines_.next_.reset();
    coroutines_.inTurn_ = true;
    coroutines_.terminateRequested_ = false;
    const SourceLineGuard line(context_);
    const auto exchange = [&] {
        scopes_.exchangeFrames(state->scopes);
        std::swap(softError_, state->softError);
        varargs_.swap(state->varargs);
    };
    exchange();
    mayNeedAttention_ = true;  // the coroutine's soft error may have been on its way
    bool finished = false;
    {
        const ScriptCallable& callable = state->callable.function();
        const SourceFileGuard source(context_, callable.source);
        try {
            finished = CoroutineTurn(*this, *state).run();
        } catch (const CoroutineTerminated&) {
            finished = true;
        } catch (...) {
            coroutines_.pendingException_ = std::current_exception();
        }
    }
    exchange();
    mayNeedAttention_ = true;
    coroutines_.inTurn_ = false;
    const bool stillScheduled = coroutines_.scheduled_ == state;
    if (coroutines_.terminateRequested_ && coroutines_.next_) {
        coroutines_.scheduled_ = std::move(coroutines_.next_);
    } else if (stillScheduled && (coroutines_.terminateRequested_ || finished)) {
        coroutines_.scheduled_.reset();
    }
}

}  // namespace kelmora
