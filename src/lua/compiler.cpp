#include "lua/compiler.h"

#include <utility>

#include "guest/location_error.h"

namespace vesper::lua {

void Compiler::checkDepth(const Node& node) const {
    try {
        stack_.check();
    } catch (const std::runtime_error& error) {
        kelmora::guest::failParse(chunkName_.letters(), {node.line, 0}, error.what());
    }
}

kelmora::Ref<const Prototype> Compiler::compileFunction(const FunctionExpr& function) {
    CodeBuilder builder(function, code_, chunkName_, source_);
    CodeBuilder* outer = std::exchange(code_, &builder);
    const Register first = code_->allocate(function.line, function.parameters.size());
    for (std::size_t i = 0; i < function.locals.size(); ++i)
        declareLocal(*function.locals[i], static_cast<Register>(first + i), function.line);
    compileStatements(function.body);
    code_->emit(Opcode::ReturnNone, 0, 0, 0, function.line);
    code_ = outer;
    return builder.finish();
}

void Compiler::declareLocal(LocalVariable& local, Register place, std::uint32_t line) {
    local.place = place;
    code_->setLocalsEnd(static_cast<Register>(place + 1));
    if (local.needsBox()) code_->emit(Opcode::NewBox, place, place, 0, line);
}

void Compiler::compileBlock(const Block& block) {
    const Register top = code_->top();
    const Register locals = code_->localsEnd();
    compileStatements(block);
    code_->releaseTo(top);
    code_->setLocalsEnd(locals);
}

void Compiler::compileStatements(const Block& block) {
    for (const Stmt* statement : block) {
        compileStatement(*statement);
        code_->releaseTo(code_->localsEnd());
    }
}

void Compiler::compileStatement(const Stmt& statement) {
    checkDepth(statement);
    switch (statement.kind) {
        case StmtKind::If:
            return compileIf(static_cast<const IfStmt&>(statement));
        case StmtKind::While:
            return compileWhile(static_cast<const WhileStmt&>(statement));
        case StmtKind::NumericFor:
            return compileNumericFor(static_cast<const NumericForStmt&>(statement));
        case StmtKind::GenericFor:
            return compileGenericFor(static_cast<const GenericForStmt&>(statement));
        case StmtKind::Return:
            return compileReturn(static_cast<const ReturnStmt&>(statement));
        case StmtKind::Break:
            code_->breaks->push_back(code_->emitJump(Opcode::Jump, 0, statement.line));
            return;
        case StmtKind::FunctionDeclaration:
            return compileFunctionDeclaration(static_cast<const FunctionDeclarationStmt&>(statement));
        case StmtKind::Assignment: {
            const auto& assignment = static_cast<const AssignmentStmt&>(statement);
            return assignment.isLocal ? compileLocal(assignment) : compileAssignment(assignment);
        }
        case StmtKind::Expression: {
            const CallExpr& call = *static_cast<const ExpressionStmt&>(statement).call;
            return compileCall(call, code_->allocate(call.line), 0);
        }
    }
    kelmora::guest::failParse(chunkName_.letters(), {statement.line, 0}, "unsupported statement");
}

void Compiler::compileIf(const IfStmt& statement) {
    JumpList ends;
    for (const IfStmt::Branch& branch : statement.branches) {
        JumpList skips;
        condition(*branch.condition, false, skips);
        code_->releaseTo(code_->localsEnd());
        compileBlock(branch.block);
        const bool isLast = &branch == &statement.branches.back() && statement.elseBlock.empty();
        if (!isLast) ends.push_back(code_->emitJump(Opcode::Jump, 0, statement.line));
        code_->patchHere(skips);
    }
    compileBlock(statement.elseBlock);
    code_->patchHere(ends);
}

// A condition stands at the end too, so that a round takes one jump; one with functions in it would double
// with each nesting.
void Compiler::compileWhile(const WhileStmt& statement) {
    const std::size_t head = code_->here();
    JumpList exits;
    condition(*statement.condition, false, exits);
    code_->releaseTo(code_->localsEnd());
    const std::size_t body = code_->here();
    JumpList* outer = std::exchange(code_->breaks, &exits);
    compileBlock(statement.body);
    code_->breaks = outer;
    if (expressionContainsFunction(*statement.condition)) {
        code_->patch(code_->emitJump(Opcode::Jump, 0, statement.line), head);
    } else {
        JumpList rounds;
        condition(*statement.condition, true, rounds);
        for (const std::size_t jump : rounds) code_->patch(jump, body);
    }
    code_->patchHere(exits);
}

void Compiler::compileNumericFor(const NumericForStmt& statement) {
    const Register locals = code_->localsEnd();
    const Register base = toTemporary(*statement.start);
    toTemporary(*statement.limit);
    if (statement.step) {
        toTemporary(*statement.step);
    } else {
        literalToRegister(Value::integer(1), code_->allocate(statement.line), statement.line);
    }
    const Register variable = code_->allocate(statement.line);
    const std::size_t prepare = code_->emitJump(Opcode::ForPrepare, base, statement.line);
    const std::size_t body = code_->here();
    declareLocal(*statement.local, variable, statement.line);
    JumpList breaks;
    JumpList* outer = std::exchange(code_->breaks, &breaks);
    compileBlock(statement.body);
    code_->breaks = outer;
    const std::size_t round = code_->emitJump(Opcode::ForLoop, base, statement.line);
    code_->patch(round, body);
    code_->patch(prepare, code_->here());
    code_->patchHere(breaks);
    code_->setLocalsEnd(locals);
}

void Compiler::compileGenericFor(const GenericForStmt& statement) {
    const Register locals = code_->localsEnd();
    const Register base = toTemporary(*statement.iterator);
    const Register first = code_->allocate(statement.line, statement.locals.size());
    code_->emit(Opcode::IteratorPrepare, base, 0, 0, statement.line);
    const std::size_t head = code_->here();
    code_->emit(Opcode::IteratorNext, base, statement.locals.size(), 0, statement.line);
    JumpList exits{code_->emitJump(Opcode::Jump, 0, statement.line)};
    exits.push_back(code_->emitJump(Opcode::IteratorCheck, first, statement.line));
    for (std::size_t i = 0; i < statement.locals.size(); ++i)
        declareLocal(*statement.locals[i], static_cast<Register>(first + i), statement.line);
    JumpList* outer = std::exchange(code_->breaks, &exits);
    compileBlock(statement.body);
    code_->breaks = outer;
    code_->patch(code_->emitJump(Opcode::Jump, 0, statement.line), head);
    code_->patchHere(exits);
    code_->setLocalsEnd(locals);
}

void Compiler::compileReturn(const ReturnStmt& statement) {
    const ExprList& values = statement.values;
    if (values.empty()) {
        code_->emit(Opcode::ReturnNone, 0, 0, 0, statement.line);
    } else if (values.size() == 1 && values[0]->kind != ExprKind::Call) {
        code_->emit(Opcode::ReturnOne, operand(*values[0]), 0, 0, statement.line);
    } else {
        const Register first = code_->top();
        const std::uint16_t count = compileOpenValues(values);
        code_->emit(Opcode::Return, first, count, 0, statement.line);
    }
}

void Compiler::compileFunctionDeclaration(const FunctionDeclarationStmt& statement) {
    if (statement.target) {
        assignTarget(*statement.target, toTemporary(*statement.function), statement.line);
        return;
    }
    const Register place = code_->allocate(statement.line);
    if (!statement.local->needsBox()) {
        declareLocal(*statement.local, place, statement.line);
        functionToRegister(*statement.function, place);
        return;
    }
    code_->emit(Opcode::LoadNil, place, 1, 0, statement.line);
    declareLocal(*statement.local, place, statement.line);
    code_->emit(Opcode::SetBox, place, toTemporary(*statement.function), 0, statement.line);
}

void Compiler::compileLocal(const AssignmentStmt& statement) {
    const Register first = compileValues(statement.values, statement.locals.size(), statement.line);
    for (std::size_t i = 0; i < statement.locals.size(); ++i)
        declareLocal(*statement.locals[i], static_cast<Register>(first + i), statement.line);
}

Register Compiler::compileValues(const ExprList& values, std::size_t wanted, std::uint32_t line) {
    const Register first = code_->top();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool isLast = i + 1 == values.size();
        if (isLast && i + 1 < wanted && values[i]->kind == ExprKind::Call) {
            const Register base = code_->allocate(line, wanted - i);
            code_->releaseTo(static_cast<Register>(base + 1));
            compileCall(static_cast<const CallExpr&>(*values[i]), base,
                        static_cast<std::uint16_t>(wanted - i));
            code_->allocate(line, wanted - i - 1);
            return first;
        }
        const Register place = toTemporary(*values[i]);
        if (i >= wanted) code_->releaseTo(place);
    }
    if (values.size() < wanted) {
        const std::size_t missing = wanted - values.size();
        code_->emit(Opcode::LoadNil, code_->allocate(line, missing), missing, 0, line);
    }
    return first;
}

void Compiler::compileAssignment(const AssignmentStmt& statement) {
    if (statement.targets.size() == 1 && statement.values.size() == 1) {
        compileSingleAssignment(*statement.targets[0], *statement.values[0], statement.line);
        return;
    }
    const Register first = compileValues(statement.values, statement.targets.size(), statement.line);
    const Register top = code_->top();
    for (std::size_t i = 0; i < statement.targets.size(); ++i) {
        assignTarget(*statement.targets[i], static_cast<Register>(first + i), statement.line);
        code_->releaseTo(top);
    }
}

void Compiler::compileSingleAssignment(const Expr& target, const Expr& value, std::uint32_t line) {
    if (target.kind == ExprKind::Variable) {
        const auto& variable = static_cast<const VariableExpr&>(target);
        if (compileAppend(variable, value, line)) return;
        if (const LocalVariable* local = plainLocal(variable)) {
            toRegister(value, local->place);
            return;
        }
    }
    assignTarget(target, operand(value), line);
}

void Compiler::assignTarget(const Expr& target, Register value, std::uint32_t line) {
    switch (target.kind) {
        case ExprKind::Variable:
            return assignVariable(static_cast<const VariableExpr&>(target), value, line);
        case ExprKind::Field: {
            const auto& field = static_cast<const FieldExpr&>(target);
            const Register object = operand(*field.object);
            const std::uint32_t name = code_->constant(field.name);
            if (name <= UINT16_MAX) {
                code_->emit(Opcode::SetField, object, name, value, line);
                return;
            }
            const Register key = code_->allocate(line);
            literalToRegister(field.name, key, line);
            code_->emit(Opcode::SetIndex, object, key, value, line);
            return;
        }
        default: {
            const auto& index = static_cast<const IndexExpr&>(target);
            const Register object = operand(*index.object);
            if (index.key->kind == ExprKind::Literal) {
                const Value& key = static_cast<const LiteralExpr&>(*index.key).value;
                if (key.isInteger() && key.integerValue() >= 0 && key.integerValue() <= UINT16_MAX) {
                    code_->emit(Opcode::SetItem, object, static_cast<std::size_t>(key.integerValue()), value,
                                line);
                    return;
                }
            }
            code_->emit(Opcode::SetIndex, object, operand(*index.key), value, line);
        }
    }
}

void Compiler::assignVariable(const VariableExpr& target, Register value, std::uint32_t line) {
    const LocalVariable* local = target.local;
    if (!local) {
        const Opcode opcode = code_->isTemporary(value) ? Opcode::TakeGlobal : Opcode::SetGlobal;
        code_->emitWide(opcode, value, target.global, line);
    } else if (local->owner != &code_->function()) {
        code_->emit(Opcode::SetCaptureBox, code_->captureIndex(*local), value, 0, line);
    } else if (local->needsBox()) {
        code_->emit(Opcode::SetBox, local->place, value, 0, line);
    } else {
        move(local->place, value, line);
    }
}

}  // namespace vesper::lua
