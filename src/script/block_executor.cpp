#include <span>
#include <stdexcept>

#include "script/interpreter.h"
#include "script/line_parser.h"

namespace kelmora {

namespace {

// Pops the scope of a loop's variables on every way out.
class LoopScope {
public:
    LoopScope(Scopes& scopes, std::span<const NameId> names)
        : scopes_(scopes), scope_(scopes.pushCallScope(names)) {}
    LoopScope(const LoopScope&) = delete;
    LoopScope& operator=(const LoopScope&) = delete;
    ~LoopScope() { scopes_.popCallScope(scope_); }

    CallScope scope() const { return scope_; }

private:
    Scopes& scopes_;
    CallScope scope_;
};

}  // namespace

// Runs prepared lines where they stand: a nested block is the same lines from another index.
class BlockExecutor {
public:
    BlockExecutor(Interpreter& script, const std::vector<ParsedScriptLine>& lines, std::uint32_t& index,
                  BlockSignal& signal)
        : script_(script),
          lines_(lines),
          index_(index),
          signal_(signal),
          scope_(script.scopes, true),
          level_(script.scopes, script.scopes.nativeLevel() + (index != 0 ? 1 : 0)) {}

    Variable run() {
        script_.stack.check();
        script_.countStep();
        while (index_ < lines_.size()) {
            script_.rethrowPendingCoroutineException();
            if (script_.shouldAbortForSoftRaisedError()) return {};
            const ParsedScriptLine& line = lines_[index_];
            if (line.kind == ParsedLineKind::Empty) {
                ++index_;
                continue;
            }
            if (endsBlock(line.kind)) break;
            script_.countStep();
            script_.context.setLine(line);
            script_.showStatement();
            statement(line);
            script_.serviceCoroutines();
            if (signal_.isNormal() && script_.labels.jumpPending()) signal_.kind = BlockSignal::Kind::Jump;
            if (!signal_.isNormal()) return std::move(signal_.value);
        }
        return std::move(result_);
    }

private:
    static bool endsBlock(ParsedLineKind kind) {
        return kind == ParsedLineKind::ElseIf || kind == ParsedLineKind::Else ||
               kind == ParsedLineKind::End || kind == ParsedLineKind::Until;
    }

    void statement(const ParsedScriptLine& line) {
        switch (line.kind) {
            case ParsedLineKind::If:
                runIf(line);
                break;
            case ParsedLineKind::While:
                runWhile(line);
                break;
            case ParsedLineKind::Repeat:
                runRepeat(line);
                break;
            case ParsedLineKind::For:
                runFor(line);
                break;
            case ParsedLineKind::Nest:
                runNest(line);
                break;
            case ParsedLineKind::Return:
                signal_.value = script_.evaluateReturn(line);
                signal_.kind = BlockSignal::Kind::Return;
                break;
            case ParsedLineKind::Break:
                signal_.kind = BlockSignal::Kind::Break;
                break;
            case ParsedLineKind::Function:
            case ParsedLineKind::DecayFunction:
            case ParsedLineKind::NativeFunction:
            case ParsedLineKind::LocalFunction:
                declareFunction(line);
                break;
            default:
                if (!script_.executeAssignment(line, &result_))
                    result_ = script_.executeExpressionStatement(line);
                ++index_;
                break;
        }
    }

    static std::uint32_t requireEnd(const ParsedScriptLine& line, const char* message) {
        if (line.endIndex == noLine) throw std::runtime_error(message);
        return line.endIndex;
    }

    // Runs the block that starts at `first`; gives the index of the line that ended it.
    std::uint32_t runNested(std::uint32_t first) {
        std::uint32_t index = first;
        Variable value = BlockExecutor(script_, lines_, index, signal_).run();
        if (signal_.kind == BlockSignal::Kind::Return) signal_.value = std::move(value);
        return index;
    }
    // The body of a loop; false ends the loop.
    bool runBody(std::uint32_t first) {
        runNested(first);
        return !signal_.endsLoop() && !script_.shouldAbortForSoftRaisedError();
    }

    void runIf(const ParsedScriptLine& opener) {
        const std::uint32_t end = requireEnd(opener, "Missing 'end' for if block");
        for (std::uint32_t branch = index_; branch != noLine; branch = lines_[branch].nextBranchIndex) {
            const ParsedScriptLine& line = lines_[branch];
            script_.context.setLine(line);
            const bool taken = line.kind == ParsedLineKind::Else || script_.evaluateCondition(line, "if");
            if (script_.shouldAbortForSoftRaisedError()) break;
            if (!taken) continue;
            runNested(branch + 1);
            break;
        }
        index_ = end + 1;
    }
    void runWhile(const ParsedScriptLine& opener) {
        const std::uint32_t end = requireEnd(opener, "Missing 'end' for while block");
        for (;;) {
            script_.context.setLine(opener);
            if (!script_.evaluateCondition(opener, "while") || !runBody(index_ + 1)) break;
        }
        index_ = end + 1;
    }
    void runRepeat(const ParsedScriptLine& opener) {
        const std::uint32_t until = requireEnd(opener, "Missing 'until' for repeat block");
        const ParsedScriptLine& condition = lines_[until];
        for (;;) {
            const std::uint32_t ended = runNested(index_ + 1);
            if (signal_.endsLoop() || script_.shouldAbortForSoftRaisedError()) break;
            if (ended != until) throw std::runtime_error("repeat block did not terminate at matching until");
            script_.context.setLine(condition);
            if (condition.tokens.size() < 2) script_.context.throwError("Missing until condition", "until");
            if (script_.evaluateCondition(condition, "until") || script_.shouldAbortForSoftRaisedError())
                break;
        }
        index_ = until + 1;
    }
    void runFor(const ParsedScriptLine& opener) {
        const std::uint32_t end = requireEnd(opener, "Missing 'end' for for block");
        if (opener.forHeader->isNumeric) {
            runNumericFor(opener);
        } else {
            runGenericFor(opener);
        }
        index_ = end + 1;
    }
    void runNumericFor(const ParsedScriptLine& opener) {
        NumericLoop loop = script_.openNumericLoop(opener);
        if (script_.shouldAbortForSoftRaisedError()) return;
        const LoopScope scope(script_.scopes, opener.forHeader->names);
        while (loop.next()) {
            *scope.scope() = Variable::integer(loop.value);
            if (!runBody(index_ + 1)) return;
        }
    }
    void runGenericFor(const ParsedScriptLine& opener) {
        script_.throwHeaderFault(opener, opener.forHeader->fault);
        const LoopScope scope(script_.scopes, opener.forHeader->names);
        SequenceWalk walk = script_.openSequenceWalk(opener);
        if (script_.shouldAbortForSoftRaisedError()) return;
        while (script_.bindNext(*opener.forHeader, scope.scope(), walk))
            if (!runBody(index_ + 1)) return;
    }
    void runNest(const ParsedScriptLine& opener) {
        const std::uint32_t end = requireEnd(opener, "Missing 'end' for nest block");
        runNested(index_ + 1);
        index_ = end + 1;
    }
    void declareFunction(const ParsedScriptLine& opener) {
        script_.throwHeaderFault(opener, opener.functionHeader->fault);
        const std::uint32_t end = requireEnd(opener, "Missing 'end' for function block");
        const Variable function = script_.makeDeclaredCallable(opener);
        ScriptCallable& callable = function.function();
        callable.source = script_.context.file();
        const std::span body = std::span(lines_).subspan(index_ + 1, end - index_ - 1);
        callable.body.assign(body.begin(), body.end());
        prepareParsedLines(callable.body);
        script_.bindFunction(opener, function);
        index_ = end + 1;
    }

    Interpreter& script_;
    const std::vector<ParsedScriptLine>& lines_;
    std::uint32_t& index_;
    BlockSignal& signal_;
    LocalScopeGuard scope_;
    NativeLevelGuard level_;
    Variable result_;
};

Variable Interpreter::executeParsedBlock(const std::vector<ParsedScriptLine>& lines, std::uint32_t& index,
                                         BlockSignal& signal) {
    return BlockExecutor(*this, lines, index, signal).run();
}

}  // namespace kelmora
