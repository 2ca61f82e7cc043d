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
    Value makeNative(std::string name, std::function<void(NativeCall&)> native,
                     FunctionObject::Kind kind = FunctionObject::Kind::Native) {
        return Value(new FunctionObject(objects_, std::move(name), std::move(native), kind));
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

    // Calls and rounds until the run ends with "Step limit reached".
    void setStepLimit(std::int64_t steps) { steps_ = steps; }
    // For tests: every local variable in a box of its own, fresh each time.
    void setAlwaysBoxed(bool boxed) { alwaysBoxed_ = boxed; }

private:
    struct Frame {
        FunctionObject* function;
        const Instruction* pc;  // behind the call, or behind what failed
        Value* base;            // its registers
        Value* result;          // where the caller wants the results
        std::uint16_t wanted;
        bool isEntry;      // ends the run of the native code that called
        bool isProtected;  // called by pcall: true goes in front of the results
    };

    void execute(const Frame* entry);
    void runUntilReturn(const Frame* entry);
    bool raiseToGuard(const Frame* entry, Value error);
    const Frame* guardAbove(const Frame* entry) const;
    void dropFrames(const Frame* entry);
    void pushFrame(FunctionObject& function, Value* base, std::size_t count, Value* result,
                   std::uint16_t wanted);
    void leaveFrame(Value* first, std::size_t count);
    bool callSlow(Value* callee, std::size_t count, std::uint16_t wanted);
    bool enterProtected(Value* callee, std::size_t count, std::uint16_t wanted);
    void callNative(Value* callee, std::size_t count, std::uint16_t wanted);
    void deliver(MultiValue& results, Value* target, std::uint16_t wanted);
    Value errorValue(std::span<const Value> arguments) const;
    std::string located(std::string_view message, std::size_t level) const;
    Value currentError();
    void ensureStack(const Value* end);
    [[noreturn]] void failStack() const;
    [[noreturn]] void stopAtLimit();
    void countStep() {
        if (--steps_ < 0) stopAtLimit();
    }

    Value makeClosure(const Frame& frame, std::size_t child);
    void storeList(Value* table, std::size_t count, std::int64_t stored);
    bool prepareLoop(Value* loop);
    bool nextIteration(Value* iterator, std::size_t count);
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
    Frame* frameEnd_;
    std::int64_t steps_ = std::numeric_limits<std::int64_t>::max();
    bool alwaysBoxed_ = false;
};

}  // namespace vesper::lua
