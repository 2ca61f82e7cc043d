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

[[gnu::always_inline]] inline void copyFound(Value& target, const Value* found) {
    if (found) {
        target = *found;
    } else {
        target.reset();
    }
}

inline std::uint64_t bits(const Value& value) {
    return static_cast<std::uint64_t>(value.integerValue());
}

// Division of 32 bits is several times as quick as of 64.
inline bool areShort(std::uint64_t first, std::uint64_t second) {
    return ((first | second) >> 32) == 0;
}

// What is not the quick case of an instruction is done here, so that the loop keeps its state in registers.
[[gnu::noinline]] void otherArithmetic(Value& target, Arithmetic operation, const Value& a, const Value& b) {
    target = arithmetic(operation, a, b);
}
[[gnu::noinline]] void otherArithmetic(Value& target, Arithmetic operation, const Value& a, std::int16_t b) {
    target = arithmetic(operation, a, Value::integer(b));
}
[[gnu::noinline]] bool otherLess(const Value& a, const Value& b) {
    return isLess(a, b);
}
[[gnu::noinline]] bool otherLessEqual(const Value& a, const Value& b) {
    return isLessOrEqual(a, b);
}
[[gnu::noinline]] bool otherLess(const Value& a, std::int16_t b) {
    return isLess(a, Value::integer(b));
}
[[gnu::noinline]] bool otherLessEqual(const Value& a, std::int16_t b) {
    return isLessOrEqual(a, Value::integer(b));
}
[[gnu::noinline]] bool otherGreater(const Value& a, std::int16_t b) {
    return isLess(Value::integer(b), a);
}
[[gnu::noinline]] bool otherGreaterEqual(const Value& a, std::int16_t b) {
    return isLessOrEqual(Value::integer(b), a);
}
[[gnu::noinline]] bool otherEqual(const Value& a, std::int16_t b) {
    return valuesEqual(a, Value::integer(b));
}

}  // namespace

void Interpreter::execute(const Frame* entry) {
    static const void* const labels[] = {
#define VESPER_LUA_LABEL(name) &&op##name,
        VESPER_LUA_OPCODES(VESPER_LUA_LABEL)
#undef VESPER_LUA_LABEL
    };

    // The running frame's state, in registers while the loop runs. What may fail saves its place first.
    const Instruction* pc;
    Value* base;
    const Value* constants;
    Instruction i;

#define NEXT                      \
    do {                          \
        i = *pc++;                \
        goto* labels[i.number()]; \
    } while (false)
#define LOAD                                                        \
    do {                                                            \
        pc = frame_->pc;                                            \
        base = frame_->base;                                        \
        constants = frame_->function->prototype().constants.data(); \
    } while (false)
#define SAVE (frame_->pc = pc)
#define COUNT_STEP                       \
    do {                                 \
        if (--steps_ < 0) [[unlikely]] { \
            SAVE;                        \
            stopAtLimit();               \
        }                                \
    } while (false)
// Going back begins a round.
#define JUMP(distance)                    \
    do {                                  \
        const std::int32_t by = distance; \
        if (by < 0) COUNT_STEP;           \
        pc += by;                         \
    } while (false)
#define JUMP_WHEN(holds)         \
    do {                         \
        if (holds) {             \
            ++pc;                \
            JUMP(pc[-1].wide()); \
        } else {                 \
            ++pc;                \
        }                        \
        NEXT;                    \
    } while (false)
#define R(index) base[index]

    LOAD;
    NEXT;

opMove:
    R(i.a()) = R(i.b());
    NEXT;
opTake:
    R(i.a()) = std::move(R(i.b()));
    NEXT;
opLoadConstant:
    R(i.a()) = constants[i.wide()];
    NEXT;
opLoadInteger:
    R(i.a()).setInteger(i.wide());
    NEXT;
opLoadNil:
    for (Value* value = &R(i.a()); value != &R(i.a()) + i.b(); ++value) value->reset();
    NEXT;
opLoadBoolean:
    R(i.a()).setBoolean(i.b() != 0);
    NEXT;
opGetGlobal:
    R(i.a()) = globals_.slots()[i.wide()];
    NEXT;
opSetGlobal:
    globals_.slots()[i.wide()] = R(i.a());
    NEXT;
opTakeGlobal:
    globals_.slots()[i.wide()] = std::move(R(i.a()));
    NEXT;
opGetCapture:
    R(i.a()) = frame_->function->captures()[i.b()];
    NEXT;
opGetCaptureBox:
    R(i.a()) = frame_->function->captures()[i.b()].box().value;
    NEXT;
opSetCaptureBox:
    frame_->function->captures()[i.a()].box().value = R(i.b());
    NEXT;
opNewBox:
    makeBox(R(i.a()), R(i.b()));
    NEXT;
opGetBox:
    R(i.a()) = R(i.b()).box().value;
    NEXT;
opSetBox:
    R(i.a()).box().value = R(i.b());
    NEXT;
opLoadSelf:
    R(i.a()) = Value(frame_->function);
    NEXT;
opClosure:
    SAVE;
    makeClosure(R(i.a()), *frame_, static_cast<std::size_t>(i.wide()));
    NEXT;
opNewTable:
    SAVE;
    R(i.a()) = makeTable(i.b(), i.c());
    NEXT;
opSetList:
    SAVE;
    storeList(&R(i.a()), i.b() == manyValues ? static_cast<std::size_t>(top_ - &R(i.a()) - 1) : i.b(),
              pc->wide());
    ++pc;
    NEXT;

opGetIndex : {
    const Value& object = R(i.b());
    const Value& key = R(i.c());
    if (object.isTable()) [[likely]] {
        copyFound(R(i.a()),
                  key.isInteger() ? object.table().find(key.integerValue()) : object.table().find(key));
        NEXT;
    }
    SAVE;
    indexOther(R(i.a()), object, key);
    NEXT;
}
opGetField : {
    const Value& object = R(i.b());
    if (object.isTable()) [[likely]] {
        copyFound(R(i.a()), object.table().find(constants[i.c()].string()));
        NEXT;
    }
    SAVE;
    indexOther(R(i.a()), object, constants[i.c()]);
    NEXT;
}
opGetItem : {
    const Value& object = R(i.b());
    if (object.isTable()) [[likely]] {
        copyFound(R(i.a()), object.table().find(std::int64_t{i.c()}));
        NEXT;
    }
    SAVE;
    indexOther(R(i.a()), object, Value::integer(i.c()));
    NEXT;
}
opSetIndex : {
    const Value& object = R(i.a());
    const Value& key = R(i.b());
    if (object.isTable() && key.isInteger() && object.table().trySetItem(key.integerValue(), R(i.c()))) NEXT;
    SAVE;
    assignIndex(object, key, R(i.c()));
    NEXT;
}
opSetField : {
    const Value& object = R(i.a());
    const Value& name = constants[i.b()];
    if (object.isTable() && object.table().trySetField(name.string(), R(i.c()))) NEXT;
    SAVE;
    assignField(object, name, R(i.c()));
    NEXT;
}
opSetItem : {
    const Value& object = R(i.a());
    if (object.isTable() && object.table().trySetItem(i.b(), R(i.c()))) NEXT;
    SAVE;
    assignIndex(object, Value::integer(i.b()), R(i.c()));
    NEXT;
}

#define INTEGERS_OR_ANY(name, sign, right)                                                 \
    {                                                                                      \
        const Value& first = R(i.b());                                                     \
        const Value& second = right;                                                       \
        if (first.isInteger() && second.isInteger()) [[likely]] {                          \
            R(i.a()).setInteger(static_cast<std::int64_t>(bits(first) sign bits(second))); \
            NEXT;                                                                          \
        }                                                                                  \
        SAVE;                                                                              \
        otherArithmetic(R(i.a()), Arithmetic::name, first, second);                        \
        NEXT;                                                                              \
    }
#define ARITHMETIC(name, sign)                                                            \
    op##name : INTEGERS_OR_ANY(name, sign, R(i.c())) op##name##Constant                   \
        : INTEGERS_OR_ANY(name, sign, constants[i.c()]) op##name##Integer : {             \
        const Value& first = R(i.b());                                                    \
        if (first.isInteger()) [[likely]] {                                               \
            R(i.a()).setInteger(static_cast<std::int64_t>(                                \
                bits(first) sign static_cast<std::uint64_t>(std::int64_t{i.signedC()}))); \
            NEXT;                                                                         \
        }                                                                                 \
        SAVE;                                                                             \
        otherArithmetic(R(i.a()), Arithmetic::name, first, i.signedC());                  \
        NEXT;                                                                             \
    }
    ARITHMETIC(Add, +)
    ARITHMETIC(Subtract, -)
    ARITHMETIC(Multiply, *)
#undef ARITHMETIC
#undef INTEGERS_OR_ANY
opDivide:
    SAVE;
    otherArithmetic(R(i.a()), Arithmetic::Divide, R(i.b()), R(i.c()));
    NEXT;
opDivideConstant:
    SAVE;
    otherArithmetic(R(i.a()), Arithmetic::Divide, R(i.b()), constants[i.c()]);
    NEXT;
opDivideInteger:
    SAVE;
    otherArithmetic(R(i.a()), Arithmetic::Divide, R(i.b()), i.signedC());
    NEXT;

#define MODULO(right)                                                                         \
    {                                                                                         \
        const Value& first = R(i.b());                                                        \
        const Value& second = right;                                                          \
        if (first.isInteger() && second.isInteger() && areShort(bits(first), bits(second)) && \
            bits(second) != 0) [[likely]] {                                                   \
            R(i.a()).setInteger(static_cast<std::uint32_t>(bits(first)) %                     \
                                static_cast<std::uint32_t>(bits(second)));                    \
            NEXT;                                                                             \
        }                                                                                     \
        SAVE;                                                                                 \
        otherArithmetic(R(i.a()), Arithmetic::Modulo, first, second);                         \
        NEXT;                                                                                 \
    }
opModulo:
    MODULO(R(i.c()))
opModuloConstant:
    MODULO(constants[i.c()])
#undef MODULO
opModuloInteger : {
    const Value& first = R(i.b());
    if (first.isInteger() && areShort(bits(first), 0)) [[likely]] {
        R(i.a()).setInteger(static_cast<std::uint32_t>(bits(first)) % std::uint32_t{i.c()});
        NEXT;
    }
    SAVE;
    otherArithmetic(R(i.a()), Arithmetic::Modulo, first, i.signedC());
    NEXT;
}

opNegate:
    SAVE;
    R(i.a()) = negated(R(i.b()));
    NEXT;
opNot:
    R(i.a()).setBoolean(!R(i.b()).isTruthy());
    NEXT;
opLength:
    SAVE;
    R(i.a()).setInteger(lengthOf(R(i.b())));
    NEXT;
opConcat:
    SAVE;
    R(i.a()) = concatenated(&R(i.b()), i.c());
    NEXT;
opAppend:
    SAVE;
    appendTo(R(i.a()), &R(i.b()), i.c());
    NEXT;
opAppendGlobal:
    SAVE;
    appendTo(globals_.slots()[pc->wide()], &R(i.b()), i.c());
    ++pc;
    NEXT;

opJump:
    JUMP(i.wide());
    NEXT;
opJumpIf:
    if (R(i.a()).isTruthy()) JUMP(i.wide());
    NEXT;
opJumpIfNot:
    if (!R(i.a()).isTruthy()) JUMP(i.wide());
    NEXT;

opIfEqual:
    JUMP_WHEN(valuesEqual(R(i.a()), R(i.b())));
opUnlessEqual:
    JUMP_WHEN(!valuesEqual(R(i.a()), R(i.b())));
opIfEqualConstant:
    JUMP_WHEN(valuesEqual(R(i.a()), constants[i.b()]));
opUnlessEqualConstant:
    JUMP_WHEN(!valuesEqual(R(i.a()), constants[i.b()]));

#define COMPARE(name, sign, otherwise)                                     \
    opIf##name : {                                                         \
        const Value& first = R(i.a());                                     \
        const Value& second = R(i.b());                                    \
        if (first.isInteger() && second.isInteger()) [[likely]]            \
            JUMP_WHEN(first.integerValue() sign second.integerValue());    \
        SAVE;                                                              \
        JUMP_WHEN(otherwise(first, second));                               \
    }                                                                      \
    opUnless##name : {                                                     \
        const Value& first = R(i.a());                                     \
        const Value& second = R(i.b());                                    \
        if (first.isInteger() && second.isInteger()) [[likely]]            \
            JUMP_WHEN(!(first.integerValue() sign second.integerValue())); \
        SAVE;                                                              \
        JUMP_WHEN(!otherwise(first, second));                              \
    }
#define COMPARE_INTEGER(name, sign, otherwise)                   \
    opIf##name##Integer : {                                      \
        const Value& first = R(i.a());                           \
        if (first.isInteger()) [[likely]]                        \
            JUMP_WHEN(first.integerValue() sign i.signedB());    \
        SAVE;                                                    \
        JUMP_WHEN(otherwise(first, i.signedB()));                \
    }                                                            \
    opUnless##name##Integer : {                                  \
        const Value& first = R(i.a());                           \
        if (first.isInteger()) [[likely]]                        \
            JUMP_WHEN(!(first.integerValue() sign i.signedB())); \
        SAVE;                                                    \
        JUMP_WHEN(!otherwise(first, i.signedB()));               \
    }
    COMPARE(Less, <, otherLess)
    COMPARE(LessEqual, <=, otherLessEqual)
    COMPARE_INTEGER(Equal, ==, otherEqual)
    COMPARE_INTEGER(Less, <, otherLess)
    COMPARE_INTEGER(LessEqual, <=, otherLessEqual)
    COMPARE_INTEGER(Greater, >, otherGreater)
    COMPARE_INTEGER(GreaterEqual, >=, otherGreaterEqual)
#undef COMPARE
#undef COMPARE_INTEGER

opCall : {
    Value* const callee = &R(i.a());
    SAVE;
    COUNT_STEP;
    if (callee->isFunction()) [[likely]] {
        FunctionObject& function = callee->function();
        if (i.b() == function.plainArguments()) [[likely]] {
            const Prototype& prototype = function.prototype();
            if (callee + 1 + prototype.registers <= softEnd_) [[likely]] {
                pc = prototype.code.data();
                base = callee + 1;
                constants = prototype.constants.data();
                *++frame_ = Frame{&function, pc, base, i.c()};
                NEXT;
            }
        }
    }
    const std::size_t count = i.b() == manyValues ? static_cast<std::size_t>(top_ - callee - 1) : i.b();
    if (callOther(entry, callee, count, i.c())) LOAD;
    NEXT;
}
opMethod : {
    Value* const target = &R(i.a());
    const Value& object = R(i.b());
    if (object.isTable()) [[likely]] {
        target[1] = object;
        copyFound(target[0], target[1].table().find(constants[i.c()].string()));
        NEXT;
    }
    SAVE;
    method(target, object, constants[i.c()]);
    NEXT;
}
opReturn : {
    const std::size_t count = i.b() == manyValues ? static_cast<std::size_t>(top_ - &R(i.a())) : i.b();
    const bool isEntry = frame_->isEntry();
    leaveFrame(&R(i.a()), count);
    if (isEntry) return;
    LOAD;
    NEXT;
}
opReturnOne : {
    const Frame& frame = *frame_;
    if (!frame.wantsOne()) [[unlikely]] {
        const bool isEntry = frame.isEntry();
        leaveFrame(&R(i.a()), 1);
        if (isEntry) return;
        LOAD;
        NEXT;
    }
    Value* const end = base + frame.function->prototype().registers;
    base[-1] = std::move(R(i.a()));  // which may have held the function's last reference
    for (Value* value = base; value < end; ++value) value->dropReference();
    --frame_;
    LOAD;
    NEXT;
}
opReturnNone : {
    const bool isEntry = frame_->isEntry();
    leaveFrame(base, 0);
    if (isEntry) return;
    LOAD;
    NEXT;
}

opForPrepare:
    SAVE;
    if (!prepareLoop(&R(i.a()))) pc += i.wide();
    NEXT;
opForLoop : {
    Value* const loop = &R(i.a());
    COUNT_STEP;
    if (loop[0].isInteger()) [[likely]] {
        if (loop[1].integerValue() != 0) {
            const auto next = static_cast<std::int64_t>(bits(loop[0]) + bits(loop[2]));
            loop[1].changeInteger(static_cast<std::int64_t>(bits(loop[1]) - 1));
            loop[0].changeInteger(next);
            loop[3].setInteger(next);
            pc += i.wide();
        }
    } else if (advanceFloatLoop(loop)) {
        pc += i.wide();
    }
    NEXT;
}
opIteratorPrepare:
    SAVE;
    checkIterator(R(i.a()));
    NEXT;
opIteratorNext : {
    Value* const iterator = &R(i.a());
    SAVE;
    COUNT_STEP;
    if (iterator->isFunction()) {
        iterator[1] = *iterator;
        ++pc;  // behind the jump stands the check
        SAVE;
        if (callOther(entry, iterator + 1, 0, i.b())) LOAD;
        NEXT;
    }
    if (nextIteration(iterator, i.b())) {
        pc += 2;
    } else {
        pc += pc->wide() + 1;
    }
    NEXT;
}
opIteratorCheck:
    if (R(i.a()).isNil()) pc += i.wide();
    NEXT;
#undef NEXT
#undef LOAD
#undef SAVE
#undef COUNT_STEP
#undef JUMP
#undef JUMP_WHEN
#undef R
}

}  // namespace vesper::lua
