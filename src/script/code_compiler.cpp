#include "script/code_compiler.h"

#include <algorithm>
#include <stdexcept>

#include "script/bytecode_program.h"
#include "script/code_builder.h"
#include "script/interpreter.h"
#include "script/machine.h"
#include "script/parsed_header.h"
#include "script/program_walk.h"

namespace kelmora {
namespace {

class ChunkCompiler {
public:
    ChunkCompiler(Interpreter& script, const BytecodeProgram& program, Code& code)
        : script_(script),
          program_(program),
          code_(code),
          builder_(code, script.scopes, script.temporaries.get()),
          mayHoldLabels_(!program.nestBlocks.empty()),
          compiled_(program.chunks.size()) {}

    void run() {
        compileBlock(code_.chunk, false);
        leave(nullptr, 0);
        if (!code_.isAttentive() || code_.blocks.empty()) return;
        code_.blocks[0].exit = builder_.here();
        leave(nullptr, 0);
    }

private:
    using Jumps = CodeBuilder::Jumps;
    static constexpr const char* badLine = "Bytecode line index out of range";

    // What a `break` closes on its way out, and where it goes.
    struct Loop {
        Jumps breaks;
        std::size_t openBlocks;
    };
    enum class Opened : std::uint8_t { Nothing, Scope, Block };

    const ParsedScriptLine* lineAt(std::uint32_t index) const {
        return index < program_.lines.size() ? &program_.lines[index] : nullptr;
    }
    const FastExprNode* nodesOf(const PreparedExpression& expression) const {
        return script_.fastExpressions && expression.fast.valid() ? &expression.fast.root() : nullptr;
    }
    void setLine(const ParsedScriptLine* line) { builder_.setSite({line, depth_}); }

    // --- Blocks ---

    // Names a variable of the local scopes, which a statement may make there.
    bool writesVisibleLocals(const BytecodeChunk& chunk) const {
        const auto namesLocal = [](const TokenAnalysis& token) {
            return token.isScoped() && token.scope == 3;
        };
        for (std::uint32_t i = 0; i < chunk.instructionCount; ++i) {
            const ParsedScriptLine* line = lineOf(program_.instructions[chunk.firstInstruction + i]);
            if (line && std::any_of(line->analysis.begin(), line->analysis.end(), namesLocal)) return true;
        }
        return false;
    }
    const ParsedScriptLine* lineOf(const BytecodeInstruction& instruction) const {
        const std::uint32_t operand = instruction.operand;
        if (const std::vector<BytecodeLoop>* loops = loopsOf(program_, instruction.opcode))
            return operand < loops->size() ? lineAt((*loops)[operand].line) : nullptr;
        switch (instruction.opcode) {
            case Opcode::If:
                return nullptr;
            case Opcode::DeclareFunction:
                return operand < program_.functionDeclarations.size()
                           ? lineAt(program_.functionDeclarations[operand].line)
                           : nullptr;
            case Opcode::Nest:
                return operand < program_.nestBlocks.size() ? lineAt(program_.nestBlocks[operand].line)
                                                            : nullptr;
            default:
                return lineAt(operand);
        }
    }

    // Where the statement begins; of a `repeat` where it ends.
    const ParsedScriptLine* firstLineOf(const BytecodeInstruction& instruction) const {
        if (instruction.opcode != Opcode::If) return lineOf(instruction);
        if (instruction.operand >= program_.ifGroups.size()) return nullptr;
        const IfGroup& group = program_.ifGroups[instruction.operand];
        return group.empty() ? nullptr : lineAt(group[0].line);
    }

    // Neither makes locals nor is looked into by jumps.
    bool isPlain(const BytecodeChunk& chunk) const {
        return !chunk.declaresLocals && !mayHoldLabels_ && !writesVisibleLocals(chunk);
    }
    Opened open(std::uint32_t index, const BytecodeChunk& chunk, bool hasScope) {
        if (isPlain(chunk) || (hasScope && !mayHoldLabels_)) return Opened::Nothing;
        if (chunk.declaresLocals && !mayHoldLabels_) {
            builder_.emit(Operation::OpenScope);
            return Opened::Scope;
        }
        std::uint8_t flags = mayHoldLabels_ ? BlockFlags::holdsLabels : 0;
        if (hasScope) {
            flags |= BlockFlags::keepsScope;
        } else if (chunk.declaresLocals) {
            flags |= BlockFlags::opensScope;
        }
        builder_.emit(Operation::OpenBlock, {.number = index, .flags = flags});
        return Opened::Block;
    }
    void close(Opened opened) {
        if (opened == Opened::Scope) builder_.emit(Operation::CloseScope);
        if (opened == Opened::Block)
            builder_.emit(Operation::CloseBlock,
                          {.flags = mayHoldLabels_ ? BlockFlags::holdsLabels : std::uint8_t{0}});
    }

    // `hasScope` where the statement around it has opened one for it.
    void compileBlock(std::uint32_t index, bool hasScope) {
        opened_.push_back(Opened::Nothing);
        const char* fault = faultOf(index);
        if (fault) {
            builder_.emitFault(fault);
            return;
        }
        compiled_[index] = true;
        script_.stack.check();
        const BytecodeChunk& chunk = program_.chunks[index];
        const std::size_t block = code_.blocks.size();
        code_.blocks.push_back({index, {}, 0});
        opened_.back() = open(index, chunk, hasScope);
        for (std::uint32_t i = 0; i < chunk.instructionCount; ++i) {
            setLine(firstLineOf(program_.instructions[chunk.firstInstruction + i]));
            between(block, false);
            compileStep(program_.instructions[chunk.firstInstruction + i]);
            setLine(nullptr);
            after();
        }
        between(block, true);
        close(opened_.back());
    }
    const char* faultOf(std::uint32_t index) const {
        // In a sound program each block stands in one place.
        if (index >= program_.chunks.size() || compiled_[index]) return "Invalid bytecode chunk index";
        const BytecodeChunk& chunk = program_.chunks[index];
        const bool fits =
            std::uint64_t{chunk.firstInstruction} + chunk.instructionCount <= program_.instructions.size();
        return fits ? nullptr : "Bytecode chunk range is out of bounds";
    }

    // A body of the statement in hand. A jump that goes on outside takes one of the `exits`.
    void compileBody(std::uint32_t chunk, bool hasScope, Jumps& exits) {
        const ParsedScriptLine* const line = builder_.site().line;
        const std::size_t block = code_.blocks.size();
        ++depth_;
        compileBlock(chunk, hasScope);
        if (code_.isAttentive() && mayHoldLabels_ && block < code_.blocks.size()) {
            Jumps past;
            builder_.emitJump(past, Operation::Jump);
            code_.blocks[block].exit = builder_.here();
            close(opened_.back());
            builder_.emitJump(exits, Operation::Jump);
            builder_.land(past);
        }
        opened_.pop_back();
        --depth_;
        setLine(line);
    }

    // Between two steps, or behind the last one of a block.
    void between(std::size_t block, bool atEnd) {
        const auto place = static_cast<std::uint32_t>(code_.betweenSteps.size());
        code_.betweenSteps.push_back({builder_.here(), static_cast<std::uint32_t>(block)});
        code_.blocks[block].starts.push_back(builder_.here());
        if (!code_.isAttentive()) return;
        builder_.emit(Operation::Before, {.number = place, .flags = atEnd});
    }
    void after(std::uint32_t times = 1) {
        if (code_.isAttentive()) builder_.emit(Operation::After, {.number = times});
    }

    // --- Steps ---

    void compileStep(const BytecodeInstruction& instruction) {
        const std::uint32_t operand = instruction.operand;
        switch (instruction.opcode) {
            case Opcode::Line:
            case Opcode::SimpleAssignment:
                return compileStatement(lineAt(operand));
            case Opcode::If:
                return compileIf(operand);
            case Opcode::While:
                return compileWhile(operand);
            case Opcode::Repeat:
                return compileRepeat(operand);
            case Opcode::NumericFor:
                return compileNumericFor(operand);
            case Opcode::GenericFor:
                return compileGenericFor(operand);
            case Opcode::DeclareFunction:
                return compileDeclaration(operand);
            case Opcode::Return:
                return compileReturn(lineAt(operand));
            case Opcode::Break:
                return compileBreak(lineAt(operand));
            case Opcode::Nest:
                return compileNest(operand);
        }
        builder_.emitFault("Unknown bytecode opcode");
    }

    void compileStatement(const ParsedScriptLine* line) {
        if (!line) return builder_.emitFault(badLine);
        setLine(line);
        const std::size_t mark = builder_.mark();
        const bool isCompiled =
            line->assignment ? compileAssignment(*line, *line->assignment) : compileEffect(*line);
        if (!isCompiled) builder_.emitCalling(Operation::RunLine);
        builder_.release(mark);
    }

    bool compileEffect(const ParsedScriptLine& line) {
        const FastExprNode* value = nodesOf(line.expression);
        if (!value) return false;
        if (value->kind == FastExprNodeKind::Call) {
            builder_.callFor(*value, nullptr);
        } else {
            builder_.emit(Operation::Drop, {.b = builder_.operand(*value, true)});
        }
        return true;
    }

    // The value of an assignment: of a lone call's multi value the first.
    Place* assignedValue(const FastExprNode& node, bool isCall, bool isKept) {
        Place* const value = builder_.operand(node, isKept || isCall);
        if (isCall) builder_.emit(Operation::First, {.a = value});
        return value;
    }

    bool compileAssignment(const ParsedScriptLine& line, const ParsedAssignment& assignment) {
        const bool isLocal = assignment.scopeTarget == ScopeTarget::Local;
        const bool isUpdate = assignment.operation != TokenKind::Assign;
        if (assignment.scopeTarget != ScopeTarget::Default && (!isLocal || isUpdate)) return false;
        for (const ParsedAssignmentTarget& target : assignment.targets) {
            if (line.analysis[target.tokenIndex].isScoped() || target.keys.size() > 1) return false;
            if (target.keys.size() == 1 && (isLocal || !nodesOf(target.keys[0]))) return false;
        }
        for (const PreparedExpression& value : assignment.values)
            if (!nodesOf(value)) return false;
        if (assignment.targets.size() == 1 && assignment.values.size() == 1)
            return isUpdate ? compileUpdate(line, assignment) : compileSingle(line, assignment, isLocal);
        return !isUpdate && compileSeveral(line, assignment, isLocal);
    }

    static NameId nameOf(const ParsedScriptLine& line, const ParsedAssignmentTarget& target) {
        return line.analysis[target.tokenIndex].name;
    }

    void store(const ParsedScriptLine& line, const ParsedAssignmentTarget& target, Place* value,
               bool isLocal) {
        Place* const name = builder_.cell(nameOf(line, target));
        if (!target.keys.empty()) {
            Place* const key = builder_.operand(*nodesOf(target.keys[0]));
            builder_.emit(Operation::SetElement, {.a = name, .b = key, .c = value});
        } else if (isLocal) {
            builder_.emit(Operation::SetLocal, {.a = name, .b = value});
        } else {
            builder_.emit(builder_.isTemporary(value) ? Operation::Take : Operation::Copy,
                          {.a = name, .b = value});
        }
    }

    // One whose last instruction alone writes the result.
    static bool writesOnce(const FastExprNode& node) {
        return node.kind == FastExprNodeKind::Index || node.kind == FastExprNodeKind::Length ||
               node.kind == FastExprNodeKind::Negate ||
               (node.kind == FastExprNodeKind::Binary && !node.isComparison());
    }

    bool compileSingle(const ParsedScriptLine& line, const ParsedAssignment& assignment, bool isLocal) {
        const ParsedAssignmentTarget& target = assignment.targets[0];
        const FastExprNode& value = *nodesOf(assignment.values[0]);
        if (target.keys.empty() && !isLocal && writesOnce(value)) {
            builder_.evaluateInto(value, builder_.cell(nameOf(line, target)));
            return true;
        }
        const bool keyCalls = !target.keys.empty() && nodesOf(target.keys[0])->mayCall;
        store(line, target, assignedValue(value, assignment.valueIsSingleCall, keyCalls), isLocal);
        return true;
    }

    bool compileUpdate(const ParsedScriptLine& line, const ParsedAssignment& assignment) {
        const ParsedAssignmentTarget& target = assignment.targets[0];
        const TokenKind operation = compoundOperation(assignment.operation);
        Place* const name = builder_.cell(nameOf(line, target));
        const bool keyCalls = !target.keys.empty() && nodesOf(target.keys[0])->mayCall;
        Place* const value =
            assignedValue(*nodesOf(assignment.values[0]), assignment.valueIsSingleCall, keyCalls);
        if (!target.keys.empty()) {
            Place* const key = builder_.operand(*nodesOf(target.keys[0]));
            builder_.emit(Operation::UpdateElement, {.a = name, .b = key, .c = value, .kind = operation});
            return true;
        }
        Operation update = Operation::Update;
        if (operation == TokenKind::Plus) update = Operation::AddTo;
        if (operation == TokenKind::Minus) update = Operation::SubtractFrom;
        builder_.emit(update, {.a = name, .b = value, .kind = operation});
        return true;
    }

    bool compileSeveral(const ParsedScriptLine& line, const ParsedAssignment& assignment, bool isLocal) {
        if (assignment.values.size() == 1) {
            for (const ParsedAssignmentTarget& target : assignment.targets)
                if (!target.keys.empty()) return false;
            Place* const value = builder_.operand(*nodesOf(assignment.values[0]));
            builder_.emit(Operation::Deal, {.b = value, .flags = isLocal});
            return true;
        }
        if (assignment.targets.size() == 1 || assignment.values.size() != assignment.targets.size() ||
            assignment.values.size() > 16)
            return false;
        std::vector<Place*> values;
        for (const PreparedExpression& value : assignment.values)
            values.push_back(builder_.operand(*nodesOf(value), true));
        for (std::size_t i = 0; i < values.size(); ++i)
            store(line, assignment.targets[i], values[i], isLocal);
        return true;
    }

    // Goes on behind here when the condition does not hold.
    void testCondition(const ParsedScriptLine& line, const PreparedExpression& condition,
                       const char* statement, Jumps& otherwise) {
        setLine(&line);
        const std::size_t mark = builder_.mark();
        if (const FastExprNode* nodes = nodesOf(condition)) {
            builder_.jumpUnless(*nodes, otherwise);
        } else {
            Place* const holds = builder_.newTemporary();
            builder_.emitCalling(Operation::TestLine, {.a = holds, .number = builder_.addText({statement})});
            builder_.emitJump(otherwise, Operation::JumpUnless, {.b = holds});
        }
        builder_.release(mark);
    }

    void compileIf(std::uint32_t operand) {
        if (operand >= program_.ifGroups.size())
            return builder_.emitFault("Bytecode if-group index out of range");
        Jumps ends;
        const IfGroup& group = program_.ifGroups[operand];
        for (const IfBranch& branch : group) {
            Jumps otherwise;
            if (!branch.isElse) {
                const ParsedScriptLine* line = lineAt(branch.line);
                if (!line) {
                    builder_.emitFault(badLine);
                    break;
                }
                testCondition(*line, line->expression, "if", otherwise);
            }
            compileBody(branch.bodyChunk, false, ends);
            if (&branch != &group.back()) builder_.emitJump(ends, Operation::Jump);
            builder_.land(otherwise);
            if (branch.isElse) break;
        }
        builder_.land(ends);
    }

    void compileWhile(std::uint32_t operand) {
        if (operand >= program_.whileLoops.size())
            return builder_.emitFault("Bytecode while-loop index out of range");
        const ParsedScriptLine* line = lineAt(program_.whileLoops[operand].line);
        if (!line) return builder_.emitFault(badLine);
        const std::uint32_t start = builder_.here();
        Jumps otherwise;
        testCondition(*line, line->expression, "while", otherwise);
        compileLoopBody(program_.whileLoops[operand].bodyChunk);
        builder_.emitJumpBack(Operation::Loop, start);
        builder_.land(otherwise);
        landBreaks();
    }

    void compileLoopBody(std::uint32_t chunk, bool hasScope = false) {
        loops_.push_back({{}, opened_.size()});
        Jumps exits;
        compileBody(chunk, hasScope, exits);
        Jumps& breaks = loops_.back().breaks;
        breaks.insert(breaks.end(), exits.begin(), exits.end());
    }
    void landBreaks() {
        builder_.land(loops_.back().breaks);
        loops_.pop_back();
    }

    // The scope of the body is open for the condition.
    void compileRepeat(std::uint32_t operand) {
        if (operand >= program_.repeatLoops.size())
            return builder_.emitFault("Bytecode repeat-loop index out of range");
        const ParsedScriptLine* line = lineAt(program_.repeatLoops[operand].line);
        if (!line) return builder_.emitFault(badLine);
        const std::uint32_t body = program_.repeatLoops[operand].bodyChunk;
        const bool hasScope =
            body < program_.chunks.size() && !faultOf(body) && !isPlain(program_.chunks[body]);
        setLine(nullptr);
        const std::uint32_t start = builder_.here();
        if (hasScope) builder_.emit(Operation::OpenBlock, {.flags = BlockFlags::opensScope});
        compileLoopBody(body, hasScope);
        Jumps otherwise;
        Jumps done;
        if (line->tokens.size() < 2) {
            setLine(line);
            builder_.emitFault("Missing until condition", "until");
        } else {
            testCondition(*line, line->expression, "until", otherwise);
        }
        if (hasScope) builder_.emit(Operation::CloseBlock);
        builder_.emitJump(done, Operation::Jump);
        builder_.land(otherwise);
        if (hasScope) builder_.emit(Operation::CloseBlock);
        builder_.emitJumpBack(Operation::Loop, start);
        landBreaks();  // with the scope still open
        if (hasScope) builder_.emit(Operation::CloseBlock);
        builder_.land(done);
    }

    bool readsAsFor(const std::vector<BytecodeLoop>& loops, std::uint32_t operand, bool isNumeric,
                    const char* message) {
        const ParsedScriptLine* line = operand < loops.size() ? lineAt(loops[operand].line) : nullptr;
        const char* fault = operand < loops.size() && !line ? badLine : message;
        if (line && line->forHeader && line->forHeader->isNumeric == isNumeric) {
            setLine(line);
            return true;
        }
        builder_.emitFault(fault);
        return false;
    }

    void compileNumericFor(std::uint32_t operand) {
        if (!readsAsFor(program_.numericForLoops, operand, true, "Bytecode numeric-for index out of range"))
            return;
        const ParsedScriptLine& line = *builder_.site().line;
        const ParsedFor& header = *line.forHeader;
        const std::size_t mark = builder_.mark();
        const std::size_t count = header.bounds.size();
        const bool isCompiled = (count == 2 || count == 3) && header.names.size() == 1 &&
                                std::all_of(header.bounds.begin(), header.bounds.end(),
                                            [&](const PreparedExpression& bound) { return nodesOf(bound); });
        if (isCompiled) {
            Place* bounds[3] = {};
            for (std::size_t i = 0; i < count; ++i)
                bounds[i] = builder_.operand(*nodesOf(header.bounds[i]), true);
            builder_.emit(Operation::OpenFor, {.a = bounds[0], .b = bounds[1], .c = bounds[2]});
        } else {
            builder_.emitCalling(Operation::OpenForLine);
        }
        builder_.release(mark);
        Jumps done;
        builder_.emitJump(done, Operation::TestFor);
        const std::uint32_t start = builder_.here();
        compileLoopBody(program_.numericForLoops[operand].bodyChunk);
        setLine(&line);
        builder_.emitJumpBack(Operation::NextFor, start);
        builder_.land(done);
        landBreaks();
        builder_.emit(Operation::CloseFor);
    }

    void compileGenericFor(std::uint32_t operand) {
        if (!readsAsFor(program_.genericForLoops, operand, false, "Bytecode generic-for index out of range"))
            return;
        const ParsedScriptLine& line = *builder_.site().line;
        builder_.emitCalling(Operation::OpenWalk);
        Jumps done;
        const std::uint32_t start = builder_.here();
        builder_.emitJump(done, Operation::NextWalk);
        compileLoopBody(program_.genericForLoops[operand].bodyChunk);
        setLine(&line);
        builder_.emitJumpBack(Operation::Loop, start);
        builder_.land(done);
        landBreaks();
        builder_.emit(Operation::CloseWalk);
    }

    void compileDeclaration(std::uint32_t operand) {
        constexpr const char* message = "Bytecode function-declaration index out of range";
        if (operand >= program_.functionDeclarations.size()) return builder_.emitFault(message);
        const ParsedScriptLine* line = lineAt(program_.functionDeclarations[operand].line);
        if (!line) return builder_.emitFault(badLine);
        if (!line->functionHeader) return builder_.emitFault(message);
        setLine(line);
        builder_.emitCalling(Operation::Declare, {.number = operand});
    }

    void compileReturn(const ParsedScriptLine* line) {
        if (!line) return builder_.emitFault(badLine);
        setLine(line);
        const std::size_t mark = builder_.mark();
        Place* value = nullptr;
        if (const FastExprNode* nodes =
                line->returnValues.size() == 1 ? nodesOf(line->returnValues[0]) : nullptr) {
            value = builder_.operand(*nodes);
        } else if (!line->returnValues.empty()) {
            value = builder_.newTemporary();
            builder_.emitCalling(Operation::ReturnLine, {.a = value});
        }
        builder_.release(mark);
        leave(value, depth_ + 1);
    }

    // Out of the code, with so many blocks that each end a step.
    void leave(Place* value, std::uint32_t blocks) {
        if (code_.isAttentive()) {
            builder_.emit(Operation::LeaveServed, {.b = value, .number = blocks});
        } else if (code_.isFunction) {
            builder_.emit(value ? Operation::Return : Operation::ReturnNothing, {.b = value});
        } else {
            builder_.emit(value ? Operation::Finish : Operation::FinishNothing, {.b = value});
        }
    }

    void compileBreak(const ParsedScriptLine* line) {
        if (!line) return builder_.emitFault(badLine);
        setLine(line);
        if (loops_.empty()) {
            after(static_cast<std::uint32_t>(opened_.size()));
            return builder_.emitFault("break used outside a loop");
        }
        Loop& loop = loops_.back();
        for (std::size_t i = opened_.size(); i-- > loop.openBlocks;) close(opened_[i]);
        after(static_cast<std::uint32_t>(opened_.size() - loop.openBlocks));
        builder_.emitJump(loop.breaks, Operation::Jump);
    }

    void compileNest(std::uint32_t operand) {
        if (operand >= program_.nestBlocks.size())
            return builder_.emitFault("Bytecode nest-block index out of range");
        setLine(lineAt(program_.nestBlocks[operand].line));
        Jumps exits;
        compileBody(program_.nestBlocks[operand].bodyChunk, false, exits);
        builder_.land(exits);
    }

    Interpreter& script_;
    const BytecodeProgram& program_;
    Code& code_;
    CodeBuilder builder_;
    bool mayHoldLabels_;
    std::vector<bool> compiled_;
    std::vector<Opened> opened_;  // by the blocks around here
    std::vector<Loop> loops_;
    std::uint32_t depth_ = 0;
};

}  // namespace

std::unique_ptr<const Code> compileChunk(Interpreter& script, const BytecodeProgram& program,
                                         std::uint32_t chunk, bool isFunction, const Code* plain) {
    auto code = std::make_unique<Code>();
    code->program = &program;
    code->chunk = chunk;
    code->isFunction = isFunction;
    code->plain = plain;
    ChunkCompiler(script, program, *code).run();
    Machine::link(script, *code);
    return code;
}

std::unique_ptr<const Code> compileExpression(Interpreter& script, const FastExpression& expression) {
    auto code = std::make_unique<Code>();
    CodeBuilder builder(*code, script.scopes, script.temporaries.get());
    Place* const value = builder.operand(expression.root());
    builder.emit(Operation::Finish, {.b = value});
    Machine::link(script, *code);
    return code;
}

}  // namespace kelmora
