#include <algorithm>

#include "lua/interpreter.h"
#include "lua/iterator_state.h"
#include "lua/operations.h"

// Labels as values: each instruction ends in a jump of its own, which the processor predicts by itself.
#pragma GCC diagnostic ignored "-Wpedantic"

namespace vesper::lua {
namespace {

// An instruction's jump to the next one runs no destructors: what has one stays in functions.
void makeBox(Value& target, Value& content) {
    Value initial = std::move(content);
    target = Value(new Box(std::move(initial)));
}

const Value& itemAt(const Table& table, std::int64_t key, const Value& nothing) {
    const Value* found = table.find(key);
    return found ? *found : nothing;
}

inline std::uint64_t bits(const Value& value) {
    return static_cast<std::uint64_t>(value.integerValue());
}

}  // namespace

void Interpreter::execute(const Frame* entry) {
    static const void* const labels[] = {
#define VESPER_LUA_LABEL(name) &&op##name,
        VESPER_LUA_OPCODES(VESPER_LUA_LABEL)
#undef VESPER_LUA_LABEL
    };
    static const Value nothing;

    const Instruction* pc;
    Value* base;
    const Value* constants;
    Instruction i;
    Value* globals;

    // The running frame's state is kept in these while the loop runs; only inlined can they stay in
    // registers.
    const auto load = [&]() __attribute__((always_inline)) {
        pc = frame_->pc;
        base = frame_->base;
        constants = frame_->function->prototype().constants.data();
        globals = globals_.slots();
    };
    // What may fail has to know its place.
    const auto save = [&]() __attribute__((always_inline)) {
        frame_->pc = pc;
    };
    // Going back begins a round.
    const auto jump = [&](std::int32_t distance) __attribute__((always_inline)) {
        if (distance < 0) {
            save();
            countStep();
        }
        pc += distance;
    };
    const auto jumpWhen = [&](bool holds) __attribute__((always_inline)) {
        const Instruction target = *pc++;
        if (holds == (i.c != 0)) jump(target.wide());
    };

#define NEXT                                              \
    do {                                                  \
        i = *pc++;                                        \
        goto* labels[static_cast<std::size_t>(i.opcode)]; \
    } while (false)
#define R(index) base[index]

    load();
    NEXT;

opMove:
    R(i.a) = R(i.b);
    NEXT;
opTake:
    R(i.a) = std::move(R(i.b));
    NEXT;
opLoadConstant:
    R(i.a) = constants[i.wide()];
    NEXT;
opLoadInteger:
    R(i.a).setInteger(i.wide());
    NEXT;
opLoadNil:
    for (Value* value = &R(i.a); value != &R(i.a) + i.b; ++value) value->reset();
    NEXT;
opLoadBoolean:
    R(i.a).setBoolean(i.b != 0);
    NEXT;
opGetGlobal:
    R(i.a) = globals[i.wide()];
    NEXT;
opSetGlobal:
    globals[i.wide()] = R(i.a);
    NEXT;
opTakeGlobal:
    globals[i.wide()] = std::move(R(i.a));
    NEXT;
opGetCapture:
    R(i.a) = frame_->function->captures()[i.b];
    NEXT;
opGetCaptureBox:
    R(i.a) = frame_->function->captures()[i.b].box().value;
    NEXT;
opSetCaptureBox:
    frame_->function->captures()[i.a].box().value = R(i.b);
    NEXT;
opNewBox:
    makeBox(R(i.a), R(i.b));
    NEXT;
opGetBox:
    R(i.a) = R(i.b).box().value;
    NEXT;
opSetBox:
    R(i.a).box().value = R(i.b);
    NEXT;
opLoadSelf:
    R(i.a) = Value(frame_->function);
    NEXT;
opClosure:
    R(i.a) = makeClosure(*frame_, static_cast<std::size_t>(i.wide()));
    NEXT;
opNewTable:
    R(i.a) = makeTable(i.b, i.c);
    NEXT;
opSetList:
    save();
    storeList(&R(i.a), i.b == manyValues ? static_cast<std::size_t>(top_ - &R(i.a) - 1) : i.b, pc->wide());
    ++pc;
    NEXT;

opGetIndex : {
    const Value& object = R(i.b);
    const Value& key = R(i.c);
    if (object.isTable()) {
        const Table& table = object.table();
        if (key.isInteger()) {
            R(i.a) = itemAt(table, key.integerValue(), nothing);
        } else {
            const Value* found = table.find(key);
            R(i.a) = found ? *found : nothing;
        }
        NEXT;
    }
    save();
    R(i.a) = indexValue(object, key);
    NEXT;
}
opGetField : {
    const Value& object = R(i.b);
    if (object.isTable()) {
        const Value* found = object.table().find(constants[i.c].string());
        R(i.a) = found ? *found : nothing;
        NEXT;
    }
    save();
    R(i.a) = indexValue(object, constants[i.c]);
    NEXT;
}
opGetItem : {
    const Value& object = R(i.b);
    if (object.isTable()) {
        R(i.a) = itemAt(object.table(), i.c, nothing);
        NEXT;
    }
    save();
    R(i.a) = indexValue(object, Value::integer(i.c));
    NEXT;
}
opSetIndex : {
    const Value& object = R(i.a);
    const Value& key = R(i.b);
    if (object.isTable() && key.isInteger() && object.table().trySetItem(key.integerValue(), R(i.c))) NEXT;
    save();
    assignIndex(object, key, R(i.c));
    NEXT;
}
opSetField : {
    const Value& object = R(i.a);
    StringObject& name = constants[i.b].string();
    if (object.isTable()) {
        if (object.table().trySetField(name, R(i.c))) NEXT;
        save();
        object.table().set(name, R(i.c));
        NEXT;
    }
    save();
    assignIndex(object, constants[i.b], R(i.c));
    NEXT;
}
opSetItem : {
    const Value& object = R(i.a);
    if (object.isTable() && object.table().trySetItem(i.b, R(i.c))) NEXT;
    save();
    assignIndex(object, Value::integer(i.b), R(i.c));
    NEXT;
}

#define INTEGER_ARITHMETIC(name, right, sign)                                            \
    {                                                                                    \
        const Value& first = R(i.b);                                                     \
        const Value& second = right;                                                     \
        if (first.isInteger() && second.isInteger()) {                                   \
            R(i.a).setInteger(static_cast<std::int64_t>(bits(first) sign bits(second))); \
            NEXT;                                                                        \
        }                                                                                \
        save();                                                                          \
        R(i.a) = arithmetic(Arithmetic::name, first, second);                            \
        NEXT;                                                                            \
    }
opAdd:
    INTEGER_ARITHMETIC(Add, R(i.c), +)
opAddConstant:
    INTEGER_ARITHMETIC(Add, constants[i.c], +)
opSubtract:
    INTEGER_ARITHMETIC(Subtract, R(i.c), -)
opSubtractConstant:
    INTEGER_ARITHMETIC(Subtract, constants[i.c], -)
opMultiply:
    INTEGER_ARITHMETIC(Multiply, R(i.c), *)
opMultiplyConstant:
    INTEGER_ARITHMETIC(Multiply, constants[i.c], *)
#undef INTEGER_ARITHMETIC
opDivide:
    save();
    R(i.a) = arithmetic(Arithmetic::Divide, R(i.b), R(i.c));
    NEXT;
opDivideConstant:
    save();
    R(i.a) = arithmetic(Arithmetic::Divide, R(i.b), constants[i.c]);
    NEXT;

// Division of 32 bits is several times as quick as of 64.
#define MODULO(right)                                                                               \
    {                                                                                               \
        const Value& first = R(i.b);                                                                \
        const Value& second = right;                                                                \
        if (first.isInteger() && second.isInteger() && ((bits(first) | bits(second)) >> 32) == 0 && \
            bits(second) != 0) {                                                                    \
            R(i.a).setInteger(static_cast<std::uint32_t>(bits(first)) %                             \
                              static_cast<std::uint32_t>(bits(second)));                            \
            NEXT;                                                                                   \
        }                                                                                           \
        save();                                                                                     \
        R(i.a) = arithmetic(Arithmetic::Modulo, first, second);                                     \
        NEXT;                                                                                       \
    }
opModulo:
    MODULO(R(i.c))
opModuloConstant:
    MODULO(constants[i.c])
#undef MODULO

opNegate:
    save();
    R(i.a) = negated(R(i.b));
    NEXT;
opNot:
    R(i.a).setBoolean(!R(i.b).isTruthy());
    NEXT;
opLength:
    save();
    R(i.a).setInteger(lengthOf(R(i.b)));
    NEXT;
opConcat:
    save();
    R(i.a) = concatenated(&R(i.b), i.c);
    NEXT;
opAppend:
    save();
    appendTo(R(i.a), &R(i.b), i.c);
    NEXT;
opAppendGlobal:
    save();
    appendTo(globals[pc->wide()], &R(i.b), i.c);
    ++pc;
    NEXT;

opJump:
    jump(i.wide());
    NEXT;
opJumpIf:
    if (R(i.a).isTruthy()) jump(i.wide());
    NEXT;
opJumpIfNot:
    if (!R(i.a).isTruthy()) jump(i.wide());
    NEXT;

opEqual:
    jumpWhen(valuesEqual(R(i.a), R(i.b)));
    NEXT;
opEqualConstant : {
    const Value& first = R(i.a);
    const Value& second = constants[i.b];
    if (first.isInteger() && second.isInteger()) {
        jumpWhen(first.integerValue() == second.integerValue());
    } else {
        jumpWhen(valuesEqual(first, second));
    }
    NEXT;
}

#define COMPARISON(left, right, sign, otherwise)                       \
    {                                                                  \
        const Value& first = left;                                     \
        const Value& second = right;                                   \
        if (first.isInteger() && second.isInteger()) {                 \
            jumpWhen(first.integerValue() sign second.integerValue()); \
            NEXT;                                                      \
        }                                                              \
        save();                                                        \
        jumpWhen(otherwise);                                           \
        NEXT;                                                          \
    }
opLess:
    COMPARISON(R(i.a), R(i.b), <, isLess(first, second))
opLessEqual:
    COMPARISON(R(i.a), R(i.b), <=, isLessOrEqual(first, second))
opLessConstant:
    COMPARISON(R(i.a), constants[i.b], <, isLess(first, second))
opLessEqualConstant:
    COMPARISON(R(i.a), constants[i.b], <=, isLessOrEqual(first, second))
opGreaterConstant:
    COMPARISON(R(i.a), constants[i.b], >, isLess(second, first))
opGreaterEqualConstant:
    COMPARISON(R(i.a), constants[i.b], >=, isLessOrEqual(second, first))
#undef COMPARISON

opCall : {
    Value* callee = &R(i.a);
    const std::size_t count = i.b == manyValues ? static_cast<std::size_t>(top_ - callee - 1) : i.b;
    save();
    countStep();
    if (callee->isFunction()) {
        FunctionObject& function = callee->function();
        if (function.kind() == FunctionObject::Kind::Script) {
            pushFrame(function, callee + 1, count, callee, i.c);
            load();
            NEXT;
        }
        if (function.kind() == FunctionObject::Kind::Raise && guardAbove(entry)) {
            raiseToGuard(entry, errorValue({callee + 1, count}));
            load();
            NEXT;
        }
    }
    callSlow(callee, count, i.c);
    load();
    NEXT;
}
opMethod:
    save();
    method(&R(i.a), R(i.b), constants[i.c]);
    NEXT;
opReturn : {
    const std::size_t count = i.b == manyValues ? static_cast<std::size_t>(top_ - &R(i.a)) : i.b;
    const bool isEntry = frame_->isEntry;
    leaveFrame(&R(i.a), count);
    if (isEntry) return;
    load();
    NEXT;
}
opReturnOne : {
    const Frame& frame = *frame_;
    if (frame.wanted != 1 || frame.isProtected) {
        const bool isEntry = frame.isEntry;
        leaveFrame(&R(i.a), 1);
        if (isEntry) return;
        load();
        NEXT;
    }
    Value* const end = base + frame.function->prototype().registers;
    *frame.result = std::move(R(i.a));  // which may have held the function's last reference
    for (Value* value = base; value < end; ++value) value->reset();
    --frame_;
    load();
    NEXT;
}
opReturnNone : {
    const bool isEntry = frame_->isEntry;
    leaveFrame(base, 0);
    if (isEntry) return;
    load();
    NEXT;
}

opForPrepare:
    save();
    if (!prepareLoop(&R(i.a))) pc += i.wide();
    NEXT;
opForLoop : {
    Value* loop = &R(i.a);
    save();
    countStep();
    if (loop[0].isInteger()) {
        if (loop[1].integerValue() != 0) {
            const auto next = static_cast<std::int64_t>(bits(loop[0]) + bits(loop[2]));
            loop[1].setInteger(static_cast<std::int64_t>(bits(loop[1]) - 1));
            loop[0].setInteger(next);
            loop[3].setInteger(next);
            pc += i.wide();
        }
    } else if (advanceFloatLoop(loop)) {
        pc += i.wide();
    }
    NEXT;
}
opIteratorPrepare:
    if (R(i.a).kind() != ValueKind::Iterator && !R(i.a).isFunction()) {
        save();
        throw std::runtime_error("generic for loop expects an iterator");
    }
    NEXT;
opIteratorNext : {
    Value* iterator = &R(i.a);
    save();
    countStep();
    if (iterator->isFunction()) {
        iterator[1] = *iterator;
        ++pc;  // behind the jump stands the check
        save();
        callSlow(iterator + 1, 0, i.b);
        load();
        NEXT;
    }
    if (nextIteration(iterator, i.b)) {
        pc += 2;
    } else {
        pc += pc->wide() + 1;
    }
    NEXT;
}
opIteratorCheck:
    if (R(i.a).isNil()) pc += i.wide();
    NEXT;
#undef NEXT
#undef R
}

}  // namespace vesper::lua
