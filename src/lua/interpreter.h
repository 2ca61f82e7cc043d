#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <span>

#include "base/host_services.h"
#include "base/native_stack.h"
#include "lua/globals.h"
#include "lua/multi_value.h"
#include "lua/native_call.h"
#include "lua/object_list.h"
#include "lua/runtime_error.h"
#include "lua/string_pool.h"
#include "lua/table.h"

namespace vesper::lua {

// The world of one machine, and what runs its functions: one stack of values on which each call has a window,
// and one stack of frames. Calls between script functions do not use the native stack.
class Interpreter {
public:
    Interpreter(kelmora::HostServices& host, kelmora::NativeStack& stack);
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;
    ~Interpreter();

    kelmora::HostServices& host() { return host_; }
    const kelmora::NativeStack& nativeStack() const { return nativeStack_; }
    StringPool& strings() { return strings_; }
    Globals& globals() { return globals_; }
    std::mt19937& generator() { return generator_; }

    Value makeTable(std::size_t items = 0, std::size_t fields = 0) {
        return Value(new Table(objects_, items, fields));
    }
    Value makeFunction(kelmora::Ref<const Prototype> prototype) {
        return Value(new FunctionObject(objects_, std::move(prototype)));
    }
    Value makeNative(std::string name, NativeFunction native,
                     FunctionObject::Kind kind = FunctionObject::Kind::Native) {
        return Value(new FunctionObject(objects_, std::move(name), native, kind));
    }
    Value makeBound(std::string name, std::function<void(NativeCall&)> bound) {
        return Value(new FunctionObject(objects_, std::move(name), std::move(bound)));
    }
    // The members that texts and files have when they are indexed.
    void setStringLibrary(Value table) { stringLibrary_ = std::move(table); }
    void setFileMethods(Value table) { fileMethods_ = std::move(table); }

    // Reads a source into its main function. Raises GuestError.
    kelmora::Ref<const Prototype> compile(std::string_view source, std::string_view chunkName);
    // Raises RuntimeError, StopRun and what the host raises.
    MultiValue callValue(const Value& callee, std::span<const Value> arguments);
    // As pcall does: true and the results, or false and the error.
    void callProtected(NativeCall& call);
    [[noreturn]] void raise(NativeCall& call);

    Value indexValue(const Value& object, const Value& key);
    void assignIndex(const Value& object, const Value& key, const Value& value);
    // The same for a key that is a text.
    void assignField(const Value& object, const Value& name, const Value& value);

    // Calls and rounds until the run ends with "Step limit reached".
    void setStepLimit(std::int64_t steps) { steps_ = steps; }
    // For tests: every local variable in a box of its own, fresh each time.
    void setAlwaysBoxed(bool boxed) { alwaysBoxed_ = boxed; }

private:
    struct Frame {
        FunctionObject* function;
        const Instruction* pc;  // behind the call, or behind what failed
        Value* base;            // its registers
        std::uint32_t mode;     // how many results the caller wants, and the flags

        static constexpr std::uint32_t entry = 1u << 16;  // ends the run of the native code that called
        static constexpr std::uint32_t guarded = 2u
                                                 << 16;  // called by pcall: true goes in front of the results
        std::uint16_t wanted() const { return static_cast<std::uint16_t>(mode); }
        bool isEntry() const { return (mode & entry) != 0; }
        bool isProtected() const { return (mode & guarded) != 0; }
        bool wantsOne() const { return mode == 1; }
        // Where the caller wants the results: in place of what it called.
        Value* result() const { return isProtected() ? base - 2 : base - 1; }
    };

    void execute(const Frame* entry);
    void runUntilReturn(const Frame* entry);
    bool raiseToGuard(const Frame* entry, Value error);
    const Frame* guardAbove(const Frame* entry) const;
    void dropFrames(const Frame* entry);
    void pushFrame(FunctionObject& function, Value* base, std::size_t count, std::uint32_t mode);
    void leaveFrame(Value* first, std::size_t count);
    bool callOther(const Frame* entry, Value* callee, std::size_t count, std::uint16_t wanted);
    bool enterProtected(Value* callee, std::size_t count, std::uint16_t wanted);
    void callNative(Value* callee, std::size_t count, std::uint16_t wanted);
    void deliver(MultiValue& results, Value* target, std::uint16_t wanted);
    Value errorValue(std::span<const Value> arguments) const;
    std::string located(std::string_view message, std::size_t level) const;
    Value currentError();
    kelmora::CallTrail trailFrom(const Frame* entry) const noexcept;
    void ensureStack(const Value* end);
    [[noreturn]] void failStack() const;
    [[noreturn]] static void failAssignment(const Value& object);
    [[noreturn]] void stopAtLimit();
    void countStep() {
        if (--steps_ < 0) stopAtLimit();
    }

    void makeClosure(Value& target, const Frame& frame, std::size_t child);
    void indexOther(Value& target, const Value& object, const Value& key);
    void storeList(Value* table, std::size_t count, std::int64_t stored);
    bool prepareLoop(Value* loop);
    bool nextIteration(Value* iterator, std::size_t count);
    static bool nextKey(IteratorState& state, Value& key);
    static bool nextValues(IteratorState& state, Value* target, std::size_t count);
    static void checkIterator(const Value& value);
    static bool advanceFloatLoop(Value* loop);
    void method(Value* target, const Value& object, const Value& name);

    kelmora::HostServices& host_;
    kelmora::NativeStack& nativeStack_;
    ObjectList objects_;
    StringPool strings_;
    Globals globals_;
    Value stringLibrary_;
    Value fileMethods_;
    std::mt19937 generator_;

    Value* stack_;  // zeroed memory of the system's; never moves
    Value* stackEnd_;
    Value* softEnd_;  // in use up to here at most
    Value* top_;      // end of the values of the last open call
    Frame* frames_;
    Frame* frame_;  // the running one; frames_ itself is none
    std::int64_t steps_ = std::numeric_limits<std::int64_t>::max();
    bool alwaysBoxed_ = false;
};

}  // namespace vesper::lua
