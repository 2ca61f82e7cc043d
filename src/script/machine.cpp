#include "script/machine.h"

#include <algorithm>

#include "script/code_compiler.h"
#include "script/indexing.h"
#include "script/operators.h"
#include "script/parsed_header.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

// --- What the frequent cases do. False, with nothing done, where it takes more. ---

// The right operand: any, or an integer constant.
enum class Right : std::uint8_t { Any, Integer };
template <Right kind>
[[gnu::always_inline]] inline std::int32_t rightOf(const Instruction& i) {
    if constexpr (kind == Right::Any) return i.c->value->intValue();
    return i.integer();
}
template <Right kind>
[[gnu::always_inline]] inline bool areIntegers(const Instruction& i) {
    const Variable* const left = i.b->value;
    return left->isInt() && (kind == Right::Integer || i.c->value->isInt());
}

template <TokenKind operation, Right kind>
[[gnu::always_inline]] inline bool operateOnIntegers(const Instruction& i) {
    std::int32_t result = 0;
    return areIntegers<kind>(i) &&
           applyToIntegers(operation, i.b->value->intValue(), rightOf<kind>(i), result) &&
           i.a->value->assignInteger(result);
}

template <TokenKind operation, Right kind>
[[gnu::always_inline]] inline bool pushIntegers(const Instruction& i, BindingStack<BindingLink>& stack) {
    if (!areIntegers<kind>(i)) return false;
    std::int32_t result = 0;
    applyToIntegers(operation, i.b->value->intValue(), rightOf<kind>(i), result);
    stack.pushInteger(result);
    return true;
}

template <TokenKind operation>
[[gnu::always_inline]] inline bool updateIntegers(const Instruction& i) {
    Variable* const target = i.a->value;
    const Variable* const value = i.b->value;
    return updateInteger(*target, operation, *value);
}

template <TokenKind operation, Right kind>
[[gnu::always_inline]] inline bool compareIntegers(const Instruction& i) {
    const std::int32_t left = i.b->value->intValue();
    const std::int32_t right = rightOf<kind>(i);
    if constexpr (operation == TokenKind::Equal) return left == right;
    if constexpr (operation == TokenKind::NotEqual) return left != right;
    if constexpr (operation == TokenKind::Less) return left < right;
    if constexpr (operation == TokenKind::Greater) return left > right;
    if constexpr (operation == TokenKind::LessEqual) return left <= right;
    return left >= right;
}

[[gnu::always_inline]] inline bool readElement(const Instruction& i) {
    const Variable* const container = i.b->value;
    const Variable* const key = i.c->value;
    Variable* const target = i.a->value;
    const Variable* const element = findElement(*container, *key);
    if (!element) return false;
    if (!target->assignPlain(*element)) {
        if (target->isUnfound()) return false;
        *target = *element;
    }
    useUp(i);
    return true;
}

[[gnu::always_inline]] inline bool storeElement(const Instruction& i) {
    const Variable* const container = i.a->value;
    const Variable* const key = i.b->value;
    const Variable* const value = i.c->value;
    if (!key->isInt() || !container->isArray()) return false;
    Variable* const element = findElementMutable(*container, *key);
    return element && element->assignPlain(*value);
}

[[gnu::always_inline]] inline bool updateElementInteger(const Instruction& i) {
    const Variable* const container = i.a->value;
    const Variable* const key = i.b->value;
    const Variable* const value = i.c->value;
    Variable* const element = findElementMutable(*container, *key);
    if (!element || !updateInteger(*element, i.kind, *value)) return false;
    if (i.temporaries & Instruction::usesUpB) dropValue(*i.b->value);
    return true;
}

}  // namespace

// Gives the variable the next number; false behind the last.
[[gnu::always_inline]] inline bool Machine::roundOfFor(bool isFirst) {
    Variable* const variable = script_.scopes.calls().top() - 1;
    const std::int32_t stop = variable[-3].intValue();
    const std::int32_t step = variable[-2].intValue();
    std::int32_t value = variable[-1].intValue();
    if (!isFirst) {
        value =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(value) + static_cast<std::uint32_t>(step));
        variable[-1].assignInteger(value);
    }
    if (step > 0 ? value > stop : value < stop) return false;
    if (!variable->assignInteger(value)) *variable = Variable::integer(value);
    return true;
}

// --- Calls ---

namespace {

[[gnu::always_inline]] inline void giveResult(const Instruction* i, Variable& result) {
    if (i->flags & CallFlags::dropsResult) {
        dropValue(result);
    } else {
        *i->a->value = std::move(result);
    }
}

}  // namespace

inline void Machine::callLibrary(const Instruction* i, LibraryFunction body, Arguments arguments) {
    enterSite(i);
    ++script_.nativeCalls;
    Variable result = body(script_, spanOf(arguments));
    if (script_.mayNeedAttention && aborted()) result = Variable();
    --script_.nativeCalls;
    script_.scopes.calls().dropTo(arguments.bottom);
    giveResult(i, result);
}

// A protected call of a function of script needs no native stack either.
inline bool Machine::isProtectable(const ScriptCallable& callable, Arguments arguments) const {
    return callable.builtinId == BuiltinId::Pcall && arguments.first != script_.scopes.calls().top() &&
           arguments.first->isFunction() && arguments.first->function().boundCode;
}

#define VESPER_COMPARISONS(COMPARISON) \
    COMPARISON(Equal)                  \
    COMPARISON(NotEqual)               \
    COMPARISON(Less)                   \
    COMPARISON(Greater)                \
    COMPARISON(LessEqual)              \
    COMPARISON(GreaterEqual)

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"  // labels as values
Variable Machine::execute(const Instruction* i, bool attends) {
    static const void* const labels[] = {
#define VESPER_LABEL(name) &&op##name,
        VESPER_OPERATIONS(VESPER_LABEL)
#undef VESPER_LABEL
    };
#define DISPATCH goto * i->handler
#define NEXT      \
    do {          \
        ++i;      \
        DISPATCH; \
    } while (false)
#define JUMP             \
    do {                 \
        i = i->target(); \
        DISPATCH;        \
    } while (false)
#define QUICK_OR(quick, general)     \
    do {                             \
        if (!(quick)) [[unlikely]] { \
            general;                 \
        }                            \
        NEXT;                        \
    } while (false)
// Behind what ran script.
#define NEXT_OR_ATTEND                             \
    do {                                           \
        ++i;                                       \
        if (script_.mayNeedAttention) [[unlikely]] \
            goto attention;                        \
        DISPATCH;                                  \
    } while (false)

    if (!i) [[unlikely]] {
        handlers_ = labels;
        return {};
    }

    // Of a call: what is called, with how many of the values on top of the stack, and what goes with it.
    const Variable* callee = nullptr;
    Arguments arguments{};
    const Instruction* entered = nullptr;

    if (attends && script_.mayNeedAttention) goto attention;
    DISPATCH;

opCopy:
    QUICK_OR(i->a->value->assignPlain(*i->b->value), move(i));
opTake:
    QUICK_OR(i->a->value->assignPlain(*i->b->value), move(i));
opFirst:
    QUICK_OR(!i->a->value->isMulti(), keepFirst(i));
opDrop:
    useUp(*i);
    NEXT;
opSetLocal:
    script_.scopes.setLocal(*static_cast<Cell*>(i->a), takeB(i));
    NEXT;
opDeal:
    deal(i);
    NEXT;
opReadScoped:
    readScoped(i);
    NEXT;
opVarargs:
    makeVarargs(i);
    NEXT;

#define VESPER_ARITHMETIC(name, token)                                           \
    op##name : QUICK_OR((operateOnIntegers<token, Right::Any>(*i)), operate(i)); \
    op##name##Integer : QUICK_OR((operateOnIntegers<token, Right::Integer>(*i)), operate(i));
    VESPER_ARITHMETIC(Add, TokenKind::Plus)
    VESPER_ARITHMETIC(Subtract, TokenKind::Minus)
    VESPER_ARITHMETIC(Multiply, TokenKind::Multiply)
    VESPER_ARITHMETIC(IntegerDivide, TokenKind::IntegerDivide)
    VESPER_ARITHMETIC(Remainder, TokenKind::Remainder)
#undef VESPER_ARITHMETIC
#define VESPER_PUSHED_ARITHMETIC(name, token)                                                            \
    op##name : QUICK_OR((pushIntegers<token, Right::Any>(*i, script_.scopes.calls())), pushOperated(i)); \
    op##name##Integer                                                                                    \
        : QUICK_OR((pushIntegers<token, Right::Integer>(*i, script_.scopes.calls())), pushOperated(i));
    VESPER_PUSHED_ARITHMETIC(PushAdd, TokenKind::Plus)
    VESPER_PUSHED_ARITHMETIC(PushSubtract, TokenKind::Minus)
#undef VESPER_PUSHED_ARITHMETIC
opOperate:
    operate(i);
    NEXT;
opAddTo:
    QUICK_OR(updateIntegers<TokenKind::Plus>(*i), update(i));
opSubtractFrom:
    QUICK_OR(updateIntegers<TokenKind::Minus>(*i), update(i));
opUpdate:
    update(i);
    NEXT;
opNegate:
    negate(i);
    NEXT;
opNot:
    invert(i);
    NEXT;
opLength:
    measure(i);
    NEXT;
opCompare:
    compareInto(i);
    NEXT;

opJump:
    JUMP;
opLoop:
    countStep(i);
    JUMP;
opJumpIf:
    if (!i->b->value->ownsObject() ? isTruthy(*i->b->value) : test(i)) JUMP;
    NEXT;
opJumpUnless:
    if (!(!i->b->value->ownsObject() ? isTruthy(*i->b->value) : test(i))) JUMP;
    NEXT;
opKeepIf:
    if (isTruthy(*i->b->value)) JUMP;
    NEXT;
opKeepUnless:
    if (!isTruthy(*i->b->value)) JUMP;
    NEXT;
#define COMPARE(name, right) \
    (areIntegers<right>(*i) ? compareIntegers<TokenKind::name, right>(*i) : compare(i, TokenKind::name))
#define VESPER_COMPARISON_JUMPS(name)                                       \
    opJumpIf##name : if (COMPARE(name, Right::Any)) JUMP;                   \
    NEXT;                                                                   \
    opJumpUnless##name : if (!COMPARE(name, Right::Any)) JUMP;              \
    NEXT;                                                                   \
    opJumpIf##name##Integer : if (COMPARE(name, Right::Integer)) JUMP;      \
    NEXT;                                                                   \
    opJumpUnless##name##Integer : if (!COMPARE(name, Right::Integer)) JUMP; \
    NEXT;
    VESPER_COMPARISONS(VESPER_COMPARISON_JUMPS)
#undef VESPER_COMPARISON_JUMPS
#undef COMPARE

opElement:
    QUICK_OR(readElement(*i), element(i));
opSetElement:
    QUICK_OR(storeElement(*i), setElement(i));
opUpdateElement:
    QUICK_OR(updateElementInteger(*i), updateElement(i));
opNewArray:
    *i->a->value = Variable::makeArray();
    i->a->value->items().reserve(i->number);
    NEXT;
opAddItems:
    addItems(i);
    NEXT;
opNewTable:
    *i->a->value = Variable::makeTable();
    if (i->number > 4) i->a->value->table().reserve(i->number);
    NEXT;
opCheckKey:
    checkKey(i);
    NEXT;
opSetEntry:
    setEntry(i);
    NEXT;

opPush:
    if (!i->b->value->isUnfound()) [[likely]] {
        script_.scopes.calls().push(*i->b->value);
    } else {
        pushOther(i);
    }
    NEXT;
opPushTaken:
    script_.scopes.calls().push(std::move(*i->b->value));
    NEXT;
opKeep:
    script_.scopes.calls().keep();
    NEXT;
opRetake:
    script_.scopes.calls().retake();
    NEXT;
opPop:
    *i->a->value = script_.scopes.calls().pop();
    NEXT;

opMember:
    member(i);
    NEXT;
opCall:
    callee = i->b->value;
    arguments = newestArguments(i->number, 0);
    goto call;
opCallPushed:
    arguments = newestArguments(i->number, 1);
    callee = arguments.bottom;
    goto call;
opCallMember:
    arguments = newestArguments(i->number, 2);
    callee = arguments.bottom;
    if (callee[1].isString()) --arguments.first;  // which has the method
    goto call;

call:
    if (callee->isFunction()) [[likely]] {
        ScriptCallable& callable = callee->function();
        if (callable.boundCode) {
            i = enter(i, callable, arguments);
            DISPATCH;
        }
        if (callable.library) {
            if (isProtectable(callable, arguments)) {
                i = enterProtected(i, arguments);
                DISPATCH;
            }
            callLibrary(i, callable.library, arguments);
            NEXT_OR_ATTEND;
        }
    }
    entered = callOther(i, callee->isUnfound() ? read(i, i->b) : *callee, arguments);
    if (!entered) goto called;
    i = entered;
    DISPATCH;
called:
    giveResult(i, result_);
    NEXT_OR_ATTEND;

opRunLine:
    runLine(i);
    NEXT_OR_ATTEND;
opTestLine:
    testLine(i);
    NEXT_OR_ATTEND;
opReturnLine:
    returnLine(i);
    NEXT_OR_ATTEND;
opOpenForLine:
    openForLine(i);
    NEXT_OR_ATTEND;
opDeclare:
    declare(i);
    NEXT_OR_ATTEND;

opOpenScope:
    script_.scopes.pushLocalScope();
    NEXT;
opCloseScope:
    script_.scopes.popLocalScope();
    NEXT;
opOpenBlock:
    openBlock(i);
    NEXT;
opCloseBlock:
    closeBlock(i);
    NEXT;

opOpenFor:
    openFor(i);
    NEXT;
opTestFor:
    if (!roundOfFor(true)) JUMP;
    NEXT;
opNextFor:
    countStep(i);
    if (roundOfFor(false)) JUMP;
    NEXT;
opCloseFor:
    script_.scopes.popCallScope(script_.scopes.calls().top() - 4);
    NEXT;
opOpenWalk:
    openWalk(i);
    NEXT_OR_ATTEND;
opNextWalk : {
    Interpreter::OpenWalk& open = script_.walks[script_.walkCount - 1];
    if (!script_.bindNext(*lineOf(i).forHeader, open.scope, open.walk)) JUMP;
    NEXT;
}
opCloseWalk:
    closeWalk();
    NEXT;
opFault:
    fail(i);

opReturn:
    if (script_.callRecords.top() == boundary_) [[unlikely]] {
        result_ = takeB(i);
        goto leaveFunction;
    }
    if (!i->b->value->ownsObject()) {
        const Variable::Plain value = i->b->value->plain();
        i = leave();
        i->a->value->assign(value);
        NEXT_OR_ATTEND;
    }
    result_ = takeB(i);
    i = leave();
    goto called;
opReturnNothing:
    goto leaveFunction;
opFinish:
    enterSite(i);
    return takeB(i);
opFinishNothing:
    return {};

opBefore : {
    const Instruction* const next = between(i++);
    if (!next) goto error;
    i = next;
    DISPATCH;
}
opAfter:
    enterSite(i);
    serveSteps(i->number);
    NEXT;
opLeaveServed:
    enterSite(i);
    leaveServed(i);
    goto leaveFunction;

attention : {
    const Instruction* const next = attend(i);
    if (!next) goto error;
    i = next;
    DISPATCH;
}
error:
    script_.scopes.calls().clearNext();
    leaveForError(i);
    dropValue(result_);
leaveFunction:
    if (!code_->isFunction || script_.callRecords.top() == base_) return std::move(result_);
    if (script_.callRecords.top() == protectedAt_) [[unlikely]] {
        i = leave();
        endProtected();
    } else {
        i = leave();
    }
    goto called;

#undef DISPATCH
#undef NEXT
#undef JUMP
#undef QUICK_OR
#undef NEXT_OR_ATTEND
}
#pragma GCC diagnostic pop

void Machine::link(Interpreter& script, Code& code) {
    static const void* const* const handlers = [&] {
        Machine machine(script);
        machine.execute(nullptr, false);
        return machine.handlers_;
    }();
    for (Instruction& i : code.instructions) i.handler = handlers[static_cast<std::size_t>(i.operation)];
}

// --- Runs ---

Variable Interpreter::runCode(const Code& code, std::optional<std::uint32_t> step) {
    stack.check();
    const std::uint32_t level = scopes.nativeLevel();
    const std::uint32_t localScopes = scopes.localScopeCount();
    const CallScope bottom = scopes.calls().top();
    const std::uint32_t parts = openParts.size();
    const auto restore = [&] {
        scopes.setNativeLevel(level);
        scopes.popLocalScopesTo(localScopes);
        scopes.popCallScope(bottom);
        closePartsTo(parts);
    };
    Machine machine(*this);
    const Instruction* i = machine.begin(code, step);
    for (bool attends = false;; attends = true) {
        try {
            Variable result = machine.execute(i, attends);
            restore();
            return result;
        } catch (const std::exception& error) {
            trail.note(*this, error.what());
            i = machine.recover(error.what());
            if (!i) {
                machine.abandon();
                restore();
                throw;
            }
        } catch (...) {
            machine.abandon();
            restore();
            throw;
        }
    }
}

const Code& Interpreter::chunkCode(const BytecodeProgram& program, std::uint32_t chunk, bool isFunction) {
    const std::size_t index =
        (std::min(static_cast<std::size_t>(chunk), program.chunks.size()) * 2 + isFunction) * 2 +
        fastExpressions;
    return program.code.get(serial, index,
                            [&] { return compileChunk(*this, program, chunk, isFunction, nullptr); });
}

const Code& Interpreter::expressionCode(const FastExpression& expression) {
    return expression.code.get(serial, 0, [&] { return compileExpression(*this, expression); });
}

void Interpreter::prepareCallable(ScriptCallable& callable) {
    std::vector<Cell*>& cells = callable.parameterCells;
    cells.clear();
    bool hasRepeated = false;
    for (const NameId name : callable.parameters) {
        Cell* const cell = &scopes.cell(name);
        hasRepeated = hasRepeated || std::find(cells.begin(), cells.end(), cell) != cells.end();
        cells.push_back(cell);
    }
    callable.parameterCount = static_cast<std::uint32_t>(cells.size());
    callable.code = &chunkCode(*callable.program, callable.chunkIndex, true);
    callable.boundCode = callable.bindsArguments && !hasRepeated ? callable.code : nullptr;
}

}  // namespace kelmora
