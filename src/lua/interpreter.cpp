#include "lua/interpreter.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>

#include "lua/compiler.h"
#include "lua/iterator_state.h"
#include "lua/operations.h"
#include "lua/parser.h"
#include "lua/resolver.h"

namespace vesper::lua {
namespace {

constexpr std::size_t stackSize = std::size_t{1} << 18;
constexpr std::ptrdiff_t stackStep = 1024;
// A frame for each value, as each call needs at least the place of what it calls, and the one that is none.
constexpr std::size_t frameCount = stackSize + 2;
constexpr std::ptrdiff_t deepestProtected = 1 << 16;

// Zeroed blocks come from the system page by page: only what deep recursion touches costs memory.
template <typename T>
T* allocateZeroed(std::size_t count) {
    void* block = std::calloc(count, sizeof(T));
    if (!block) throw std::bad_alloc();
    return static_cast<T*>(block);
}

}  // namespace

const Value NativeCall::nothing;

RuntimeError::RuntimeError(Value value, kelmora::CallTrail trail)
    : TracedGuestError(value.isString() || value.isNumber()
                           ? value.toString()
                           : "(error value of kind " + std::string(describeValueType(value)) + ")",
                       std::move(trail)),
      value_(std::move(value)) {}

Interpreter::Interpreter(kelmora::HostServices& host, kelmora::NativeStack& stack)
    : host_(host),
      nativeStack_(stack),
      globals_(strings_),
      stack_(allocateZeroed<Value>(stackSize)),
      stackEnd_(stack_ + stackSize),
      softEnd_(stack_ + stackStep),
      top_(stack_),
      frames_(allocateZeroed<Frame>(frameCount)),
      frame_(frames_) {
    frame_->base = stack_;
}

Interpreter::~Interpreter() {
    for (Value* value = stack_; value != softEnd_; ++value) value->reset();
    std::free(stack_);
    std::free(frames_);
}

kelmora::Ref<const Prototype> Interpreter::compile(std::string_view source, std::string_view chunkName) {
    strings_.trim();
    Parser parser(source, chunkName, strings_, nativeStack_);
    SyntaxTree tree = parser.parse();
    Resolver resolver(tree, globals_, chunkName, nativeStack_);
    resolver.setAlwaysBoxed(alwaysBoxed_);
    resolver.resolve();
    return Compiler(strings_.intern(chunkName), std::make_shared<const std::string>(source), nativeStack_)
        .compile(tree);
}

// --- Frames ---

void Interpreter::failStack() const {
    throw std::runtime_error("Stack overflow: calls or expressions are nested too deeply");
}

// The soft end goes ahead of use, so that calls compare with it alone.
void Interpreter::ensureStack(const Value* end) {
    if (end <= softEnd_) return;
    if (end > stackEnd_) failStack();
    const std::ptrdiff_t used = end - stack_;
    softEnd_ = stack_ + std::min<std::ptrdiff_t>(used + stackStep, stackEnd_ - stack_);
}

void Interpreter::pushFrame(FunctionObject& function, Value* base, std::size_t count, std::uint32_t mode) {
    const Prototype& prototype = function.prototype();
    Value* end = base + std::max<std::size_t>(prototype.registers, count);
    if (end > softEnd_) ensureStack(end);
    for (std::size_t i = count; i < prototype.parameters; ++i) base[i].reset();
    for (std::size_t i = prototype.registers; i < count; ++i) base[i].reset();
    *++frame_ = Frame{&function, prototype.code.data(), base, mode};
}

// Hands the results to the caller and lets go of everything in the frame's registers.
void Interpreter::leaveFrame(Value* first, std::size_t count) {
    const Frame& frame = *frame_;
    Value* target = frame.result();
    const std::uint16_t wanted = frame.wanted();
    Value* const end = frame.base + frame.function->prototype().registers;
    std::size_t given = count;
    std::size_t skipped = 0;
    if (frame.isProtected() && wanted != 0) {
        target->setBoolean(true);
        skipped = 1;
    }
    if (wanted != manyValues) given = std::min<std::size_t>(count, wanted - skipped);
    for (std::size_t i = 0; i < given; ++i) target[skipped + i] = std::move(first[i]);
    Value* after = target + skipped + given;
    if (wanted == manyValues) {
        top_ = after;
    } else {
        for (; after < target + wanted; ++after) after->reset();
    }
    for (Value* value = std::max(frame.base, after); value < end; ++value) value->dropReference();
    --frame_;
}

void Interpreter::deliver(MultiValue& results, Value* target, std::uint16_t wanted) {
    const std::size_t count = wanted == manyValues ? results.size() : wanted;
    if (wanted == manyValues) {
        ensureStack(target + count);
        top_ = target + count;
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (i < results.size()) {
            target[i] = std::move(results[i]);
        } else {
            target[i].reset();
        }
    }
}

void Interpreter::dropFrames(const Frame* entry) {
    while (frame_ >= entry) {
        for (Value* value = frame_->base; value < frame_->base + frame_->function->prototype().registers;
             ++value)
            value->reset();
        --frame_;
    }
}

// The innermost frame that pcall called; null when there is none above the entry.
const Interpreter::Frame* Interpreter::guardAbove(const Frame* entry) const {
    const Frame* guard = frame_;
    while (guard > entry && !guard->isProtected()) --guard;
    return guard == entry ? nullptr : guard;
}

// Goes back to the caller of that pcall. False when there is none, and nothing changed.
bool Interpreter::raiseToGuard(const Frame* entry, Value error) {
    const Frame* guard = guardAbove(entry);
    if (!guard) return false;
    Value* target = guard->result();
    const std::uint16_t wanted = guard->wanted();
    dropFrames(guard);
    MultiValue results;
    results.push(Value::boolean(false));
    results.push(std::move(error));
    deliver(results, target, wanted);
    return true;
}

// --- Errors ---

std::string Interpreter::located(std::string_view message, std::size_t level) const {
    const Frame* frame = frame_;
    for (; level > 1 && frame > frames_; --level) --frame;
    if (frame == frames_) return std::string(message);
    const Prototype& prototype = frame->function->prototype();
    const std::ptrdiff_t position = std::max<std::ptrdiff_t>(frame->pc - prototype.code.data() - 1, 0);
    return kelmora::guest::formatError(prototype.chunkName.letters(),
                                       {prototype.lines[static_cast<std::size_t>(position)], 0}, message);
}

// What `error` was called with: a text gets the place of the caller, or at level 2 of the caller's caller.
Value Interpreter::errorValue(std::span<const Value> arguments) const {
    if (arguments.empty()) return {};
    if (!arguments[0].isString()) return arguments[0];
    std::int64_t level = 1;
    if (arguments.size() > 1 && !toWholeNumber(arguments[1], level)) level = 1;
    if (level <= 0) return arguments[0];
    return Value::text(located(arguments[0].letters(), static_cast<std::size_t>(level)));
}

void Interpreter::raise(NativeCall& call) {
    throw RuntimeError(errorValue(call.arguments()));
}

// Of the exception that is being handled.
Value Interpreter::currentError() {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error.value();
    } catch (const kelmora::guest::GuestError& error) {
        return Value::text(error.what());
    } catch (const std::bad_alloc&) {
        return Value::text(located("not enough memory", 1));
    } catch (const std::exception& error) {
        return Value::text(located(error.what(), 1));
    }
}

// Of the exception that is being handled: what it has gathered, and the calls down to the entry.
kelmora::CallTrail Interpreter::trailFrom(const Frame* entry) const noexcept try {
    kelmora::CallTrail trail = kelmora::guest::trailOfFailure();
    for (const Frame* frame = frame_; frame >= entry; --frame) {
        const Prototype& prototype = frame->function->prototype();
        const std::ptrdiff_t position = std::max<std::ptrdiff_t>(frame->pc - prototype.code.data() - 1, 0);
        if (!kelmora::guest::addCall(trail, prototype.name, prototype.chunkName.letters(),
                                     prototype.lines[static_cast<std::size_t>(position)],
                                     prototype.source.get()))
            break;
    }
    return trail;
} catch (...) {
    return {};
}

void Interpreter::stopAtLimit() {
    steps_ = 0;
    throw StopRun{false, 0, located("Step limit reached", 1)};
}

// --- Calls ---

void Interpreter::runUntilReturn(const Frame* entry) {
    for (;;) {
        try {
            execute(entry);
            return;
        } catch (const std::exception&) {
            const Value error = currentError();
            if (raiseToGuard(entry, error)) continue;
            kelmora::CallTrail trail = trailFrom(entry);
            dropFrames(entry);
            throw RuntimeError(error, std::move(trail));
        } catch (...) {
            dropFrames(entry);
            throw;
        }
    }
}

MultiValue Interpreter::callValue(const Value& callee, std::span<const Value> arguments) {
    nativeStack_.check();
    if (!callee.isFunction())
        throw std::runtime_error("attempt to call a " + std::string(describeValueType(callee)) + " value");
    Value* start =
        std::max(top_, frame_ == frames_ ? stack_ : frame_->base + frame_->function->prototype().registers);
    ensureStack(start + 1 + arguments.size());
    Value* const savedTop = top_;
    start[0] = callee;
    std::copy(arguments.begin(), arguments.end(), start + 1);
    MultiValue results;
    FunctionObject& function = start->function();
    if (function.kind() == FunctionObject::Kind::Script) {
        countStep();
        pushFrame(function, start + 1, arguments.size(), manyValues | Frame::entry);
        top_ = start;
        runUntilReturn(frame_);
        for (Value* value = start; value < top_; ++value) results.push(std::move(*value));
    } else {
        top_ = start + 1 + arguments.size();
        NativeCall call(*this, function, {start + 1, arguments.size()});
        function.callNative(call);
        results = std::move(call.results());
    }
    top_ = savedTop;
    return results;
}

void Interpreter::callProtected(NativeCall& call) {
    if (call.count() == 0) throw std::runtime_error("pcall expects at least 1 argument");
    Frame* const frame = frame_;
    Value* const top = top_;
    try {
        const MultiValue results = callValue(call[0], call.arguments().subspan(1));
        call.give(Value::boolean(true));
        call.giveAll(results);
    } catch (const std::exception&) {
        Value error = currentError();
        frame_ = frame;
        top_ = top;
        call.give(Value::boolean(false));
        call.give(std::move(error));
    }
}

// True when another frame is to go on.
bool Interpreter::callOther(const Frame* entry, Value* callee, std::size_t count, std::uint16_t wanted) {
    if (!callee->isFunction())
        throw std::runtime_error("attempt to call a " + std::string(describeValueType(*callee)) + " value");
    FunctionObject& function = callee->function();
    switch (function.kind()) {
        case FunctionObject::Kind::Script:
            pushFrame(function, callee + 1, count, wanted);
            return true;
        case FunctionObject::Kind::ProtectedCall:
            return enterProtected(callee, count, wanted);
        case FunctionObject::Kind::Raise:
            if (guardAbove(entry)) return raiseToGuard(entry, errorValue({callee + 1, count}));
            break;
        default:
            break;
    }
    callNative(callee, count, wanted);
    return false;
}

bool Interpreter::enterProtected(Value* callee, std::size_t count, std::uint16_t wanted) {
    const bool isScript =
        count != 0 && callee[1].isFunction() && callee[1].function().kind() == FunctionObject::Kind::Script;
    if (!isScript) {
        callNative(callee, count, wanted);
        return false;
    }
    // Each pcall around another hands all results on once more.
    if (frame_ - frames_ >= deepestProtected) failStack();
    pushFrame(callee[1].function(), callee + 2, count - 1, wanted | Frame::guarded);
    return true;
}

void Interpreter::callNative(Value* callee, std::size_t count, std::uint16_t wanted) {
    top_ = callee + 1 + count;
    NativeCall call(*this, callee->function(), {callee + 1, count});
    callee->function().callNative(call);
    deliver(call.results(), callee, wanted);
}

// --- Tables and texts ---

Value Interpreter::indexValue(const Value& object, const Value& key) {
    if (object.isTable()) return object.table().get(key);
    if (object.isString()) {
        Value found = key.isString() ? stringLibrary_.table().get(key) : Value();
        if (found.isNil()) throw std::runtime_error("string indexing only supports library methods");
        return found;
    }
    if (object.kind() == ValueKind::Native) {
        if (!key.isString()) throw std::runtime_error("userdata fields must be strings");
        return fileMethods_.table().get(key);
    }
    throw std::runtime_error("attempt to index a " + std::string(describeValueType(object)) + " value");
}

void Interpreter::failAssignment(const Value& object) {
    throw std::runtime_error("attempt to assign into a " + std::string(describeValueType(object)) + " value");
}

void Interpreter::assignIndex(const Value& object, const Value& key, const Value& value) {
    if (!object.isTable()) failAssignment(object);
    tableSetByKey(object.table(), key, value);
}

void Interpreter::assignField(const Value& object, const Value& name, const Value& value) {
    if (!object.isTable()) failAssignment(object);
    object.table().setKey(name, value);
}

// Of what is no table.
void Interpreter::method(Value* target, const Value& object, const Value& name) {
    Value found = indexValue(object, name);
    target[1] = object;
    target[0] = std::move(found);
}

void Interpreter::indexOther(Value& target, const Value& object, const Value& key) {
    target = indexValue(object, key);
}

void Interpreter::storeList(Value* table, std::size_t count, std::int64_t stored) {
    for (std::size_t i = 1; i <= count; ++i)
        table->table().set(stored + static_cast<std::int64_t>(i), std::move(table[i]));
}

void Interpreter::makeClosure(Value& target, const Frame& frame, std::size_t child) {
    Value made = makeFunction(frame.function->prototype().children[child]);
    Value* captures = made.function().captures();
    for (const CaptureSource& source : made.function().prototype().captures) {
        switch (source.from) {
            case CaptureSource::From::Register:
                *captures++ = frame.base[source.index];
                break;
            case CaptureSource::From::Capture:
                *captures++ = frame.function->captures()[source.index];
                break;
            default:
                *captures++ = Value(frame.function);
        }
    }
    target = std::move(made);
}

// --- Loops ---

namespace {

// Holds a float limit to the integers that the loop can reach; false when there is none.
bool integerLimit(const Value& limit, std::int64_t step, std::int64_t& held) {
    if (limit.isInteger()) {
        held = limit.integerValue();
        return true;
    }
    const double value = step > 0 ? std::floor(limit.floatValue()) : std::ceil(limit.floatValue());
    if (std::isnan(value)) return false;
    if (value >= 9223372036854775808.0) {
        held = std::numeric_limits<std::int64_t>::max();
        return step > 0;
    }
    if (value < -9223372036854775808.0) {
        held = std::numeric_limits<std::int64_t>::min();
        return step < 0;
    }
    held = static_cast<std::int64_t>(value);
    return true;
}

bool floatLoopGoesOn(double value, double limit, double step) {
    return step > 0 ? value <= limit : value >= limit;
}

}  // namespace

void Interpreter::checkIterator(const Value& value) {
    if (value.kind() != ValueKind::Iterator && !value.isFunction())
        throw std::runtime_error("generic for loop expects an iterator");
}

// A loop over integers knows its rounds beforehand; they take the limit's place. False when there is none.
bool Interpreter::prepareLoop(Value* loop) {
    if (!loop[0].isNumber() || !loop[1].isNumber() || !loop[2].isNumber())
        throw std::runtime_error("numeric for loop expects numeric bounds");
    if (loop[2].asDouble() == 0) throw std::runtime_error("numeric for step cannot be zero");
    if (!loop[0].isInteger() || !loop[2].isInteger()) {
        for (int i = 0; i < 3; ++i) loop[i].setNumber(loop[i].asDouble());
        loop[3] = numericResult(loop[0].floatValue());
        return floatLoopGoesOn(loop[0].floatValue(), loop[1].floatValue(), loop[2].floatValue());
    }
    const std::int64_t start = loop[0].integerValue();
    const std::int64_t step = loop[2].integerValue();
    std::int64_t limit = 0;
    if (!integerLimit(loop[1], step, limit) || (step > 0 ? start > limit : start < limit)) return false;
    const auto from = static_cast<std::uint64_t>(start);
    const auto to = static_cast<std::uint64_t>(limit);
    const auto width = static_cast<std::uint64_t>(step);
    const std::uint64_t rounds = step > 0 ? (to - from) / width : (from - to) / (0 - width);
    loop[1].setInteger(static_cast<std::int64_t>(rounds));
    loop[3].setInteger(start);
    return true;
}

bool Interpreter::advanceFloatLoop(Value* loop) {
    const double value = loop[0].floatValue() + loop[2].floatValue();
    loop[0].setNumber(value);
    loop[3] = numericResult(value);
    return floatLoopGoesOn(value, loop[1].floatValue(), loop[2].floatValue());
}

// Of an iterator state, never a function. False at its end.
bool Interpreter::nextIteration(Value* iterator, std::size_t count) {
    IteratorState& state = iterator->iterator();
    if (state.givesPairs()) {
        if (count == 2) return state.nextPair(iterator[1], iterator[2]);
        if (count == 1) return nextKey(state, iterator[1]);
    }
    return nextValues(state, iterator + 1, count);
}

bool Interpreter::nextKey(IteratorState& state, Value& key) {
    Value value;
    return state.nextPair(key, value);
}

bool Interpreter::nextValues(IteratorState& state, Value* target, std::size_t count) {
    MultiValue values;
    if (!nextIteratorItem(state, values) || values.first().isNil()) return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (i < values.size()) {
            target[i] = std::move(values[i]);
        } else {
            target[i].reset();
        }
    }
    return true;
}

}  // namespace vesper::lua
