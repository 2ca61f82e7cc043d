#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "base/small_stack.h"
#include "script/code_compiler.h"
#include "script/indexing.h"
#include "script/interpreter.h"
#include "script/numbers.h"
#include "script/operators.h"
#include "script/parsed_header.h"
#include "script/protected_result.h"
#include "script/table_object.h"

// The loop that runs code. An instruction looks at its operands where they stand and does the frequent case, mostly
// of integers, in place; everything else it leaves to a function, which first notes the place for messages.
namespace kelmora {
namespace {

// Calls inside running code take no native stack.
constexpr std::uint32_t maximumCallDepth = 1 << 16;

const Variable nilValue;

[[noreturn]] void failTooDeep() {
    throw std::runtime_error("Stack overflow: calls or expressions are nested too deeply");
}

// --- What the frequent cases do. False, with nothing done, where it takes more. ---

template <TokenKind operation>
[[gnu::always_inline]] inline bool operateOnIntegers(const Instruction& i) {
    const Variable* const left = i.b->value;
    const Variable* const right = i.c->value;
    Variable* const target = i.a->value;
    if (!left->isInt() || !right->isInt()) return false;
    std::int32_t result = 0;
    return applyToIntegers(operation, left->intValue(), right->intValue(), result) &&
           target->assignPlain(Variable::integer(result));
}

template <TokenKind operation>
[[gnu::always_inline]] inline bool updateIntegers(const Instruction& i) {
    Variable* const target = i.a->value;
    const Variable* const value = i.b->value;
    return updateInteger(*target, operation, *value);
}

template <TokenKind operation, typename Number>
[[gnu::always_inline]] inline bool holds(Number left, Number right) {
    if constexpr (operation == TokenKind::Equal) return left == right;
    if constexpr (operation == TokenKind::NotEqual) return left != right;
    if constexpr (operation == TokenKind::Less) return left < right;
    if constexpr (operation == TokenKind::Greater) return left > right;
    if constexpr (operation == TokenKind::LessEqual) return left <= right;
    return left >= right;
}

[[gnu::always_inline]] inline bool areIntegers(const Instruction& i) {
    const Variable* const left = i.b->value;
    const Variable* const right = i.c->value;
    return left->isInt() && right->isInt();
}

template <TokenKind operation>
[[gnu::always_inline]] inline bool compareIntegers(const Instruction& i) {
    return holds<operation>(i.b->value->intValue(), i.c->value->intValue());
}

bool compareValues(TokenKind operation, const Variable& left, const Variable& right) {
    switch (operation) {
        case TokenKind::Equal:
            return left.isFloat() && right.isFloat() ? left.floatValue() == right.floatValue()
                                                     : variablesEqual(left, right);
        case TokenKind::NotEqual:
            return left.isFloat() && right.isFloat() ? left.floatValue() != right.floatValue()
                                                     : !variablesEqual(left, right);
        case TokenKind::Less:
            return compareVariables(left, right) < 0;
        case TokenKind::Greater:
            return compareVariables(left, right) > 0;
        case TokenKind::LessEqual:
            return compareVariables(left, right) <= 0;
        default:
            return compareVariables(left, right) >= 0;
    }
}

[[gnu::always_inline]] inline void reset(Variable& value) {
    const Variable old(std::move(value));
}

// Lets go of what the instruction's temporaries hold.
[[gnu::always_inline]] inline void useUp(const Instruction& i) {
    if (i.temporaries & 2) reset(*i.b->value);
    if (i.temporaries & 4) reset(*i.c->value);
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
    if (i.temporaries & 2) reset(*i.b->value);
    return true;
}

}  // namespace

class Machine {
public:
    explicit Machine(Interpreter& script)
        : script_(script),
          scopes_(script.scopes),
          level_(script.scopes.nativeLevel()),
          base_(script.callRecords.size()),
          depth_(script.callDepth) {}

    // The first instruction: of a step of the outermost block, which holds labels, or of all.
    const Instruction* begin(const Code& code, std::optional<std::uint32_t> step) {
        code_ = &codeForNow(code);
        if (!step || code_->blocks.empty()) return code_->begin();
        openBlock(code_->begin());
        return code_->begin() + code_->blocks[0].starts[*step];
    }
    // What the code returns. From behind a call, with `attends` set.
    Variable execute(const Instruction* i, bool attends);
    // After an exception: ends all calls down to the newest protected one, which gives false and the message,
    // and tells where to go on; null where there is none.
    const Instruction* recover(const char* message);
    // Ends all calls of this run.
    void abandon();

private:
    bool aborted() const { return script_.shouldAbortForSoftRaisedError(); }

    // Notes the instruction's place, for what may fail or look at it.
    void enterSite(const Instruction* i) {
        const CodeSite& site = code_->siteOf(i);
        if (site.line) script_.context.setLine(*site.line);
        scopes_.setNativeLevel(level_ + site.depth);
    }
    const ParsedScriptLine& lineOf(const Instruction* i) const { return *code_->siteOf(i).line; }

    const Variable& read(const Instruction* i, Place* place) {
        if (!place->value->isUnfound()) return *place->value;
        enterSite(i);
        const Variable* const found = scopes_.find(*static_cast<Cell*>(place));
        return found ? *found : nilValue;
    }
    Variable take(const Instruction* i, Place* place, bool isTemporary) {
        return isTemporary ? Variable(std::move(*place->value)) : Variable(read(i, place));
    }
    void store(Place* place, Variable&& value) {
        if (!place->value->isUnfound()) {
            *place->value = std::move(value);
        } else {
            scopes_.assignDefault(*static_cast<Cell*>(place), std::move(value));
        }
    }
    Variable takeB(const Instruction* i) { return take(i, i->b, i->temporaries & 2); }
    Variable takeC(const Instruction* i) { return take(i, i->c, i->temporaries & 4); }

    // The general ways of the instructions.
    void move(const Instruction* i);
    void keepFirst(const Instruction* i);
    void deal(const Instruction* i);
    void readScoped(const Instruction* i);
    void makeVarargs(const Instruction* i);
    void operate(const Instruction* i);
    void update(const Instruction* i);
    void negate(const Instruction* i);
    void invert(const Instruction* i);
    void measure(const Instruction* i);
    bool compare(const Instruction* i, TokenKind comparison);
    void compareInto(const Instruction* i);
    bool test(const Instruction* i);
    void element(const Instruction* i);
    void setElement(const Instruction* i);
    void updateElement(const Instruction* i);
    void addItems(const Instruction* i);
    void checkKey(const Instruction* i);
    void setEntry(const Instruction* i);
    void pushOther(const Instruction* i);
    void runLine(const Instruction* i);
    void testLine(const Instruction* i);
    void returnLine(const Instruction* i);
    void declare(const Instruction* i);
    void openBlock(const Instruction* i);
    void closeBlock(const Instruction* i);
    void openFor(const Instruction* i);
    void openForLine(const Instruction* i);
    void pushLoop(const ParsedFor& header, const NumericLoop& loop);
    bool roundOfFor(bool isFirst);
    void openWalk(const Instruction* i);
    void closeWalk();
    [[noreturn]] void fail(const Instruction* i);

    // Calls. The arguments are on top of the stack; everything from `bottom` on goes with the call.
    [[gnu::always_inline]] inline const Instruction* enter(const Instruction* i, ScriptCallable& callable,
                                                           std::uint32_t count, CallScope bottom);
    [[gnu::always_inline]] inline void callLibrary(const Instruction* i, LibraryFunction body, CallScope bottom);
    [[gnu::always_inline]] inline bool isProtectable(const ScriptCallable& callable, std::uint32_t count) const;
    const Instruction* enterProtected(const Instruction* i, CallScope bottom);
    void endProtected(const char* thrown = nullptr);
    void clearTemporaries() {
        for (std::size_t i = 0; i < temporaryCount; ++i) script_.temporaries[i].own = Variable();
    }
    const Instruction* callOther(const Instruction* i, const Variable& callee, CallScope bottom);
    [[gnu::always_inline]] inline const Instruction* leave();

    // The attentive code while there is something to look for.
    const Code& codeForNow(const Code& plain) {
        return script_.mayNeedAttention ? attentiveIfNeeded(plain) : plain;
    }
    const Code& attentiveIfNeeded(const Code& plain);
    // Behind an instruction that ran script, with something to look for: where to go on, or null to leave the
    // code with nothing, since an error is on its way.
    const Instruction* attend(const Instruction* behind);
    void leaveForError(const Instruction* behind);
    const Instruction* between(const Instruction* i);
    const Instruction* jumpToLabel(const Instruction* i);
    bool activeBlockHas(const std::string& label) const;
    bool runRegisteredTarget(const std::string& label);
    void serveSteps(std::uint32_t count) {
        while (count-- > 0) script_.serviceCoroutines();
    }
    void leaveServed(const Instruction* i);

    Interpreter& script_;
    Scopes& scopes_;
    const Code* code_ = nullptr;
    std::uint32_t level_;  // native level of the running function
    std::uint32_t base_;   // calls that this run did not make
    std::uint32_t depth_;  // of the calls around it
    Variable result_;      // of a call or of the code

    // The running protected calls of this run, by the number of calls with theirs.
    SmallStack<std::uint32_t> protected_;
    std::uint32_t protectedAt_ = 0;  // the newest one, or 0
};

// --- Values ---

void Machine::move(const Instruction* i) {
    enterSite(i);
    store(i->a, takeB(i));
}

void Machine::keepFirst(const Instruction* i) {
    Variable& value = *i->a->value;
    if (!value.isMulti()) return;
    const Variable multi = std::move(value);
    value = multi.values().empty() ? Variable() : multi.values()[0];
}

// A multi value is dealt out among the names.
void Machine::deal(const Instruction* i) {
    enterSite(i);
    const Variable value = takeB(i);
    const std::span<const Variable> dealt = value.isMulti() ? value.values() : std::span(&value, 1);
    const ParsedScriptLine& line = lineOf(i);
    std::size_t next = 0;
    for (const ParsedAssignmentTarget& target : line.assignment->targets) {
        Cell& name = scopes_.cell(line.analysis[target.tokenIndex].name);
        Variable part = next < dealt.size() ? dealt[next] : Variable();
        ++next;
        if (i->flags) {
            scopes_.setLocal(name, std::move(part));
        } else {
            scopes_.assignDefault(name, std::move(part));
        }
    }
}

void Machine::readScoped(const Instruction* i) {
    enterSite(i);
    const Variable* const found =
        scopes_.findExplicit(static_cast<const Cell*>(i->b)->name, static_cast<int>(i->number));
    store(i->a, found ? Variable(*found) : Variable());
}

void Machine::makeVarargs(const Instruction* i) {
    enterSite(i);
    if (script_.varargs.empty()) script_.context.throwError("Unknown token: ...", "...");
    store(i->a, Variable::makeMulti(script_.varargs.back()));
}

void Machine::operate(const Instruction* i) {
    enterSite(i);
    const Variable& left = read(i, i->b);
    const Variable& right = read(i, i->c);
    if (left.isFloat() && right.isFloat()) {
        const float a = left.floatValue();
        const float b = right.floatValue();
        if (i->kind == TokenKind::Plus) return store(i->a, Variable::number(a + b));
        if (i->kind == TokenKind::Minus) return store(i->a, Variable::number(a - b));
        if (i->kind == TokenKind::Multiply) return store(i->a, Variable::number(a * b));
    }
    // A text that was built on the way to a longer one is lengthened where it stands.
    const bool lengthens = i->kind == TokenKind::Plus && (i->temporaries & 2) && left.isString() &&
                           !left.stringObject().isShared();
    Variable result;
    if (lengthens) {
        appendInPlace(*i->b->value, right);
        result = std::move(*i->b->value);
    } else {
        result = performOperation(left, i->kind, right);
    }
    useUp(*i);
    store(i->a, std::move(result));
}

void Machine::update(const Instruction* i) {
    enterSite(i);
    const Variable& value = read(i, i->b);
    Variable* const target = scopes_.find(*static_cast<Cell*>(i->a));
    if (!target) script_.throwVariableNotFound(lineOf(i), lineOf(i).assignment->targets[0]);
    updateInPlace(*target, i->kind, value);
    useUp(*i);
}

void Machine::negate(const Instruction* i) {
    enterSite(i);
    const Variable& value = read(i, i->b);
    if (value.isFloat()) return store(i->a, Variable::number(-value.floatValue()));
    if (!value.isNumeric()) script_.context.throwError("Unary '-' requires a numeric value", "-");
    store(i->a, Variable::integer(static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(toInt(value)))));
}

void Machine::invert(const Instruction* i) {
    store(i->a, Variable::boolean(!test(i)));
}

void Machine::measure(const Instruction* i) {
    enterSite(i);
    const std::int32_t length = arrayLength(read(i, i->b));
    useUp(*i);
    store(i->a, Variable::integer(length));
}

bool Machine::compare(const Instruction* i, TokenKind comparison) {
    enterSite(i);
    const bool result = compareValues(comparison, read(i, i->b), read(i, i->c));
    useUp(*i);
    return result;
}

void Machine::compareInto(const Instruction* i) {
    store(i->a, Variable::boolean(compare(i, i->kind)));
}

bool Machine::test(const Instruction* i) {
    enterSite(i);
    const bool result = isTruthy(read(i, i->b));
    useUp(*i);
    return result;
}

void Machine::element(const Instruction* i) {
    enterSite(i);
    const Variable& container = read(i, i->b);
    const Variable& key = read(i, i->c);
    const Variable* const found = findElement(container, key);
    Variable result = found ? *found : script_.getIndexedValue(container, key);
    useUp(*i);
    store(i->a, std::move(result));
}

void Machine::setElement(const Instruction* i) {
    enterSite(i);
    const Variable key = takeB(i);
    Cell& name = *static_cast<Cell*>(i->a);
    Variable* const container = scopes_.find(name);
    if (container && container->isTable()) {
        container->table().set(tableKeyOf(key), takeC(i));
        return;
    }
    if (Variable* const item = container ? findElementMutable(*container, key) : nullptr) {
        *item = takeC(i);
        return;
    }
    TokenAnalysis token;
    token.kind = TokenKind::Identifier;
    token.name = name.name;
    script_.storeKeyed(token, ScopeTarget::Default, {&key, 1}, takeC(i));
}

void Machine::updateElement(const Instruction* i) {
    enterSite(i);
    const Variable key = takeB(i);
    Variable value = takeC(i);
    const Variable* const container = scopes_.find(*static_cast<Cell*>(i->a));
    if (Variable* const found = container ? findElementMutable(*container, key) : nullptr) {
        updateInPlace(*found, i->kind, value);
        return;
    }
    const ParsedAssignment& assignment = *lineOf(i).assignment;
    script_.updateKeyed(lineOf(i), assignment, assignment.targets[0], {&key, 1}, std::move(value));
}

void Machine::addItems(const Instruction* i) {
    BindingStack& stack = scopes_.calls();
    std::vector<Variable>& items = i->a->value->items();
    const BindingIndex first = stack.size() - static_cast<BindingIndex>(i->number);
    for (BindingIndex place = first; place < stack.size(); ++place) items.push_back(std::move(stack.value(place)));
    stack.drop(static_cast<BindingIndex>(i->number));
}

void Machine::checkKey(const Instruction* i) {
    enterSite(i);
    static_cast<void>(tableKeyOf(read(i, i->b)));
}

void Machine::setEntry(const Instruction* i) {
    enterSite(i);
    const Variable key = takeB(i);
    i->a->value->table().set(tableKeyOf(key), takeC(i));
}

void Machine::pushOther(const Instruction* i) {
    enterSite(i);
    scopes_.calls().push(read(i, i->b));
}

// --- Lines ---

void Machine::runLine(const Instruction* i) {
    enterSite(i);
    const ParsedScriptLine& line = lineOf(i);
    if (!script_.executeAssignment(line, nullptr)) script_.executeExpressionStatement(line);
}

void Machine::testLine(const Instruction* i) {
    enterSite(i);
    const bool result = script_.evaluateCondition(lineOf(i), code_->texts[i->number].text);
    *i->a->value = Variable::boolean(result);
}

void Machine::returnLine(const Instruction* i) {
    enterSite(i);
    Variable value = script_.evaluateReturn(lineOf(i));
    *i->a->value = std::move(value);
}

void Machine::declare(const Instruction* i) {
    enterSite(i);
    const FunctionDeclaration& declaration = code_->program->functionDeclarations[i->number];
    const ParsedScriptLine& line = lineOf(i);
    script_.throwHeaderFault(line, line.functionHeader->fault);
    const Variable function = script_.makeDeclaredCallable(line);
    ScriptCallable& callable = function.function();
    callable.setProgram(code_->program->shared_from_this(), declaration.bodyChunk);
    callable.source = declaration.source;
    script_.labels.registerCallable(callable);
    script_.bindFunction(line, function);
}

// --- Blocks and loops. What they remember lies on the stack. ---

void Machine::openBlock(const Instruction* i) {
    scopes_.calls().push(Variable::integer(static_cast<std::int32_t>(scopes_.localScopeCount())));
    if (i->flags & BlockFlags::holdsLabels) script_.activeChunks.push({code_->program, i->number});
    const bool joins = !(i->flags & BlockFlags::keepsScope) && scopes_.hasVisibleLocalScope();
    if ((i->flags & BlockFlags::opensScope) || joins) scopes_.pushLocalScope();
}

void Machine::closeBlock(const Instruction* i) {
    const Variable count = scopes_.calls().pop();
    if (i->flags & BlockFlags::holdsLabels) script_.activeChunks.drop();
    scopes_.popLocalScopesTo(static_cast<std::uint32_t>(count.intValue()));
}

// Last number, step and current number of a loop, under its variable.
void Machine::pushLoop(const ParsedFor& header, const NumericLoop& loop) {
    BindingStack& stack = scopes_.calls();
    stack.push(Variable::integer(loop.stop));
    stack.push(Variable::integer(loop.step));
    stack.push(Variable::integer(loop.value));
    stack.push(Variable());
    if (!header.names.empty()) scopes_.nameCallEntry(stack.size() - 1, scopes_.cell(header.names[0]));
}

void Machine::openFor(const Instruction* i) {
    enterSite(i);
    NumericLoop loop;
    loop.value = toInt(read(i, i->a));
    loop.stop = toInt(read(i, i->b));
    loop.step = i->c ? toInt(read(i, i->c)) : 1;
    if (i->temporaries & 1) reset(*i->a->value);
    useUp(*i);
    if (loop.step == 0) throw std::runtime_error("for loop step must not be 0");
    pushLoop(*lineOf(i).forHeader, loop);
}

void Machine::openForLine(const Instruction* i) {
    enterSite(i);
    const NumericLoop loop = script_.openNumericLoop(lineOf(i));
    if (!aborted()) pushLoop(*lineOf(i).forHeader, loop);
}

// Gives the variable the next number; false behind the last.
[[gnu::always_inline]] inline bool Machine::roundOfFor(bool isFirst) {
    BindingStack& stack = scopes_.calls();
    Variable* const variable = &stack.value(stack.size() - 1);
    const std::int32_t stop = variable[-3].intValue();
    const std::int32_t step = variable[-2].intValue();
    std::int32_t value = variable[-1].intValue();
    if (!isFirst) {
        value = static_cast<std::int32_t>(static_cast<std::uint32_t>(value) + static_cast<std::uint32_t>(step));
        variable[-1].assignPlain(Variable::integer(value));
    }
    if (step > 0 ? value > stop : value < stop) return false;
    if (!variable->assignPlain(Variable::integer(value))) *variable = Variable::integer(value);
    return true;
}

void Machine::openWalk(const Instruction* i) {
    enterSite(i);
    const ParsedScriptLine& line = lineOf(i);
    script_.throwHeaderFault(line, line.forHeader->fault);
    const CallScope scope = scopes_.pushCallScope(line.forHeader->names);
    SequenceWalk walk = script_.openSequenceWalk(line);
    if (script_.walkCount == script_.walks.size()) script_.walks.emplace_back();
    script_.walks[script_.walkCount++] = {std::move(walk), scope};
}

void Machine::closeWalk() {
    script_.closeWalksTo(script_.walkCount - 1);
    scopes_.popCallScope(script_.walks[script_.walkCount].scope);
}

void Machine::fail(const Instruction* i) {
    enterSite(i);
    const CodeText& text = code_->texts[i->number];
    if (text.token) script_.context.throwError(text.text, text.token);
    throw std::runtime_error(text.text);
}

// --- Calls ---

inline const Instruction* Machine::enter(const Instruction* i, ScriptCallable& callable, std::uint32_t count,
                                         CallScope bottom) {
    enterSite(i);
    script_.countStep();
    if (script_.callDepth >= maximumCallDepth) [[unlikely]] failTooDeep();
    const CallScope arguments = scopes_.calls().size() - static_cast<CallScope>(count);
    callable.retain();  // what it is called by may be overwritten
    script_.callRecords.push({script_.context.line(), &script_.context.file(), scopes_.callerView(), bottom,
                              script_.walkCount, script_.activeChunks.size(), level_, code_, i, &callable});
    ++script_.callDepth;
    level_ = callable.nativeScopeIndex;
    scopes_.enterCall(level_);
    scopes_.nameArguments(arguments, callable.parameterCells);
    if (callable.source.isKnown()) script_.context.setFile(callable.source);
    code_ = &codeForNow(*callable.boundCode);
    return code_->begin();
}

// Gives back what the newest call has taken; its instruction.
inline const Instruction* Machine::leave() {
    const Interpreter::CallRecord& record = script_.callRecords.back();
    const Instruction* const call = record.call;
    ScriptCallable* const callable = record.callable;
    level_ = record.level;
    code_ = record.code;
    script_.context.restoreLine(record.line);
    script_.context.setFile(*record.file);
    scopes_.leaveCall(record.view, record.bottom);
    script_.closeWalksTo(record.walks);
    script_.activeChunks.dropTo(record.activeChunks);
    script_.callRecords.drop();
    --script_.callDepth;
    if (callable->release()) Variable::destroyFunction(callable);
    return call;
}

inline void Machine::callLibrary(const Instruction* i, LibraryFunction body, CallScope bottom) {
    enterSite(i);
    BindingStack& stack = scopes_.calls();
    ++script_.callDepth;
    Variable result = body(script_, stack.from(stack.size() - static_cast<BindingIndex>(i->number)));
    if (script_.mayNeedAttention && aborted()) result = Variable();
    --script_.callDepth;
    stack.drop(stack.size() - bottom);
    if (i->a) *i->a->value = std::move(result);
}

// A protected call of a function of script needs no native stack either.
inline bool Machine::isProtectable(const ScriptCallable& callable, std::uint32_t count) const {
    if (callable.builtinId != BuiltinId::Pcall || count == 0) return false;
    BindingStack& stack = scopes_.calls();
    const Variable& wanted = stack.value(stack.size() - static_cast<BindingIndex>(count));
    return wanted.isFunction() && wanted.function().boundCode;
}

const Instruction* Machine::enterProtected(const Instruction* i, CallScope bottom) {
    BindingStack& stack = scopes_.calls();
    ScriptCallable& wanted = stack.value(stack.size() - static_cast<BindingIndex>(i->number)).function();
    ++script_.callDepth;
    script_.softError.enterProtected(script_.callDepth);
    protected_.push(protectedAt_);
    protectedAt_ = script_.callRecords.size() + 1;
    return enter(i, wanted, i->number - 1, bottom);
}

// With the protected call left: what it returned, or a failure that was thrown.
void Machine::endProtected(const char* thrown) {
    protectedAt_ = protected_.back();
    protected_.drop();
    script_.softError.leaveProtected();
    std::string message;
    if (script_.softError.take(script_.callDepth, message)) {
        result_ = protectedFailure(std::move(message));
    } else {
        result_ = thrown ? protectedFailure(thrown) : protectedSuccess(result_);
    }
    --script_.callDepth;
}

const Instruction* Machine::recover(const char* message) {
    clearTemporaries();
    if (protectedAt_ == 0) return nullptr;
    const Instruction* call = nullptr;
    while (script_.callRecords.size() >= protectedAt_) call = leave();
    // The exception may have come out of calls that have no record here.
    script_.callDepth = depth_ + (protectedAt_ - 1 - base_) + protected_.size();
    endProtected(message);
    if (call->a) *call->a->value = std::move(result_);
    reset(result_);
    return call + 1;
}

void Machine::abandon() {
    clearTemporaries();
    while (script_.callRecords.size() > base_) leave();
    for (; protected_.size() > 0; protected_.drop()) script_.softError.leaveProtected();
    protectedAt_ = 0;
    script_.callDepth = depth_;
}

// Enters a script function or calls anything else; where to go on.
const Instruction* Machine::callOther(const Instruction* i, const Variable& callee, CallScope bottom) {
    enterSite(i);
    const Variable kept = callee;
    if (kept.isFunction() && kept.function().bindsArguments) {
        if (!kept.function().boundCode) script_.prepareCallable(kept.function());
        return enter(i, kept.function(), i->number, bottom);
    }
    BindingStack& stack = scopes_.calls();
    result_ = script_.invokeCallable(kept, stack.from(stack.size() - static_cast<BindingIndex>(i->number)));
    stack.drop(stack.size() - bottom);
    return nullptr;
}

// --- Attention ---

const Code& Machine::attentiveIfNeeded(const Code& plain) {
    if (!plain.program || plain.isAttentive || !script_.lookForAttention()) return plain;
    if (!plain.attentive)
        plain.attentive = compileChunk(script_, *plain.program, plain.chunk, plain.isFunction, &plain);
    return *plain.attentive;
}

const Instruction* Machine::attend(const Instruction* behind) {
    if (aborted()) return nullptr;
    const Code& plain = *code_;
    code_ = &attentiveIfNeeded(plain);
    if (code_ == &plain) return behind;
    const auto place = static_cast<std::uint32_t>(plain.placeOf(behind));
    const auto found = std::lower_bound(plain.behindCalls.begin(), plain.behindCalls.end(), place);
    return code_->begin() + code_->behindCalls[static_cast<std::size_t>(found - plain.behindCalls.begin())];
}

void Machine::leaveForError(const Instruction* behind) {
    if (!code_->program || !script_.mayNeedAttention) return;
    serveSteps(code_->siteOf(behind - 1).depth + 1);
    if (code_->isFunction) script_.rethrowPendingCoroutineException();
}

void Machine::leaveServed(const Instruction* i) {
    result_ = i->b ? takeB(i) : Variable();
    serveSteps(i->number);
    if (!code_->isFunction) return;
    script_.rethrowPendingCoroutineException();
    if (aborted()) result_ = Variable();
}

// Null to leave the code with nothing.
const Instruction* Machine::between(const Instruction* i) {
    const bool atEnd = i->flags != 0;
    if (!script_.needsAttention()) {
        code_ = code_->plain;
        return code_->begin() + code_->betweenSteps[i->number].at;
    }
    enterSite(i);
    if (script_.labels.jumpPending()) return jumpToLabel(i);
    if (atEnd) return i + 1;
    script_.rethrowPendingCoroutineException();
    return aborted() ? nullptr : i + 1;
}

// With a jump on its way.
const Instruction* Machine::jumpToLabel(const Instruction* i) {
    script_.countStep();
    const CodeBlock& block = code_->blocks[code_->betweenSteps[i->number].block];
    const std::string label = script_.labels.jumpLabel();
    std::uint32_t step = 0;
    if (Labels::findInChunk(*code_->program, block.chunk, label, step)) {
        script_.labels.clearJump();
        return code_->begin() + block.starts[step];
    }
    if (activeBlockHas(label)) return code_->begin() + block.exit;
    script_.labels.clearJump();
    if (!runRegisteredTarget(label)) throw std::runtime_error("jumpTo target not found: " + label);
    // It has ended, and with it all the blocks around here.
    serveSteps(code_->siteOf(i).depth);
    return code_->begin() + code_->blocks[0].exit;
}

bool Machine::activeBlockHas(const std::string& label) const {
    std::uint32_t step = 0;
    for (std::uint32_t n = script_.activeChunks.size(); n > 0; --n) {
        const Interpreter::ActiveBytecodeChunk& active = script_.activeChunks[n - 1];
        if (Labels::findInChunk(*active.program, active.chunk, label, step)) return true;
    }
    return false;
}

bool Machine::runRegisteredTarget(const std::string& label) {
    Labels::Target target;
    if (!script_.labels.find(label, target)) return false;
    script_.stack.check();
    const SourceLineGuard line(script_.context);
    const SourceFileGuard source(script_.context, target.program->source);
    const NativeLevelGuard level(scopes_, target.nativeLevel);
    script_.runCode(script_.chunkCode(*target.program, target.chunk, false), target.instruction);
    script_.rethrowPendingCoroutineException();
    return true;
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
#define DISPATCH goto* labels[static_cast<std::size_t>(i->operation)]
#define NEXT      \
    do {          \
        ++i;      \
        DISPATCH; \
    } while (false)
#define JUMP                                \
    do {                                    \
        i = code_->begin() + i->number;     \
        DISPATCH;                           \
    } while (false)
#define QUICK_OR(quick, general)         \
    do {                                 \
        if (!(quick)) [[unlikely]] {     \
            general;                     \
        }                                \
        NEXT;                            \
    } while (false)
// Behind what ran script.
#define NEXT_OR_ATTEND                                            \
    do {                                                          \
        ++i;                                                      \
        if (script_.mayNeedAttention) [[unlikely]] goto attention; \
        DISPATCH;                                                 \
    } while (false)

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
    scopes_.setLocal(*static_cast<Cell*>(i->a), takeB(i));
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

opAdd:
    QUICK_OR(operateOnIntegers<TokenKind::Plus>(*i), operate(i));
opSubtract:
    QUICK_OR(operateOnIntegers<TokenKind::Minus>(*i), operate(i));
opMultiply:
    QUICK_OR(operateOnIntegers<TokenKind::Multiply>(*i), operate(i));
opIntegerDivide:
    QUICK_OR(operateOnIntegers<TokenKind::IntegerDivide>(*i), operate(i));
opRemainder:
    QUICK_OR(operateOnIntegers<TokenKind::Remainder>(*i), operate(i));
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
    script_.countStep();
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
#define VESPER_COMPARISON_JUMPS(name)                                                                  \
    opJumpIf##name : if (areIntegers(*i) ? compareIntegers<TokenKind::name>(*i)                        \
                                         : compare(i, TokenKind::name)) JUMP;                          \
    NEXT;                                                                                              \
    opJumpUnless##name : if (!(areIntegers(*i) ? compareIntegers<TokenKind::name>(*i)                  \
                                               : compare(i, TokenKind::name))) JUMP;                   \
    NEXT;
    VESPER_COMPARISONS(VESPER_COMPARISON_JUMPS)
#undef VESPER_COMPARISON_JUMPS

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
        scopes_.calls().push(*i->b->value);
    } else {
        pushOther(i);
    }
    NEXT;
opPushTaken:
    scopes_.calls().push(std::move(*i->b->value));
    NEXT;
opPop:
    *i->a->value = scopes_.calls().pop();
    NEXT;

opCall : {
    const Variable* const callee = i->b->value;
    const CallScope bottom = scopes_.calls().size() - static_cast<CallScope>(i->number);
    if (callee->isFunction()) [[likely]] {
        ScriptCallable& callable = callee->function();
        if (callable.boundCode) {
            i = enter(i, callable, i->number, bottom);
            DISPATCH;
        }
        if (callable.library) {
            if (isProtectable(callable, i->number)) {
                i = enterProtected(i, bottom);
                DISPATCH;
            }
            callLibrary(i, callable.library, bottom);
            NEXT_OR_ATTEND;
        }
    }
    const Instruction* const entered = callOther(i, read(i, i->b), bottom);
    if (!entered) goto called;
    i = entered;
    DISPATCH;
}
opCallPushed : {
    const CallScope bottom = scopes_.calls().size() - static_cast<CallScope>(i->number) - 1;
    const Variable& callee = scopes_.calls().value(bottom);
    if (callee.isFunction()) [[likely]] {
        ScriptCallable& callable = callee.function();
        if (callable.boundCode) {
            i = enter(i, callable, i->number, bottom);
            DISPATCH;
        }
        if (callable.library) {
            if (isProtectable(callable, i->number)) {
                i = enterProtected(i, bottom);
                DISPATCH;
            }
            callLibrary(i, callable.library, bottom);
            NEXT_OR_ATTEND;
        }
    }
    const Instruction* const entered = callOther(i, callee, bottom);
    if (!entered) goto called;
    i = entered;
    DISPATCH;
}
called:
    if (i->a) {
        *i->a->value = std::move(result_);
    } else {
        reset(result_);
    }
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
    scopes_.pushLocalScope();
    NEXT;
opCloseScope:
    scopes_.popLocalScope();
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
    script_.countStep();
    if (roundOfFor(false)) JUMP;
    NEXT;
opCloseFor:
    scopes_.popCallScope(scopes_.calls().size() - 4);
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
    // A temporary outlasts the call.
    if ((i->temporaries & 2) && script_.callRecords.size() != base_ &&
        script_.callRecords.size() != protectedAt_) {
        Variable* const value = i->b->value;
        i = leave();
        if (i->a) {
            if (!i->a->value->assignPlain(*value)) *i->a->value = std::move(*value);
        } else {
            reset(*value);
        }
        NEXT_OR_ATTEND;
    }
    result_ = takeB(i);
    goto leaveFunction;
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
    leaveForError(i);
    reset(result_);
leaveFunction:
    if (!code_->isFunction || script_.callRecords.size() == base_) return std::move(result_);
    if (script_.callRecords.size() == protectedAt_) [[unlikely]] {
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

// --- Runs ---

Variable Interpreter::runCode(const Code& code, std::optional<std::uint32_t> step) {
    stack.check();
    const std::uint32_t level = scopes.nativeLevel();
    const std::uint32_t localScopes = scopes.localScopeCount();
    const BindingIndex bottom = scopes.calls().size();
    const std::uint32_t openWalks = walkCount;
    const std::uint32_t active = activeChunks.size();
    const auto restore = [&] {
        scopes.setNativeLevel(level);
        scopes.popLocalScopesTo(localScopes);
        scopes.popCallScope(bottom);
        closeWalksTo(openWalks);
        activeChunks.dropTo(active);
    };
    Machine machine(*this);
    const Instruction* i = machine.begin(code, step);
    for (bool attends = false;; attends = true) {
        try {
            Variable result = machine.execute(i, attends);
            restore();
            return result;
        } catch (const std::exception& error) {
            trail.note(*this);
            i = machine.recover(error.what());
            if (!i) {
                machine.abandon();
                restore();
                throw;
            }
        } catch (...) {
            trail.note(*this);
            machine.abandon();
            restore();
            throw;
        }
    }
}

const Code& Interpreter::chunkCode(const BytecodeProgram& program, std::uint32_t chunk, bool isFunction) {
    const std::size_t index =
        (std::min(static_cast<std::size_t>(chunk), program.chunks.size()) * 2 + isFunction) * 2 + fastExpressions;
    return program.code.get(serial, index,
                            [&] { return compileChunk(*this, program, chunk, isFunction, nullptr); });
}

const Code& Interpreter::expressionCode(const FastExpression& expression) {
    return expression.code.get(serial, 0, [&] { return compileExpression(*this, expression); });
}

void Interpreter::prepareCallable(ScriptCallable& callable) {
    callable.parameterCells.clear();
    for (const NameId name : callable.parameters) {
        Cell* const cell = &scopes.cell(name);
        const bool isRepeated = std::find(callable.parameterCells.begin(), callable.parameterCells.end(), cell) !=
                                callable.parameterCells.end();
        callable.parameterCells.push_back(isRepeated ? nullptr : cell);
    }
    callable.code = &chunkCode(*callable.program, callable.chunkIndex, true);
    callable.boundCode = callable.bindsArguments ? callable.code : nullptr;
}

}  // namespace kelmora
