#include "script/bytecode_compiler.h"

#include <stdexcept>

#include "base/native_stack.h"
#include "script/parsed_header.h"

namespace kelmora {
namespace {

class ProgramCompiler {
public:
    ProgramCompiler(BytecodeProgram& program, const NativeStack& stack) : program_(program), stack_(stack) {}

    // Compiles the lines from `first` up to `last` and gives the index of their chunk.
    std::uint32_t compileBytecodeChunk(std::uint32_t first, std::uint32_t last, bool nested) {
        stack_.check();
        const auto index = static_cast<std::uint32_t>(program_.chunks.size());
        program_.chunks.emplace_back();
        program_.chunks[index].nested = nested;
        std::vector<BytecodeInstruction> instructions;
        bool declaresLocals = false;
        for (std::uint32_t at = first; at < last;) {
            declaresLocals = declaresLocals || declaresLocal(program_.lines[at]);
            at = compileLine(at, index, instructions);
        }
        // The chunks inside this one are complete, so their instructions stand in front of its own.
        BytecodeChunk& chunk = program_.chunks[index];
        chunk.firstInstruction = static_cast<std::uint32_t>(program_.instructions.size());
        chunk.instructionCount = static_cast<std::uint32_t>(instructions.size());
        chunk.declaresLocals = declaresLocals;
        program_.instructions.insert(program_.instructions.end(), instructions.begin(), instructions.end());
        return index;
    }

private:
    using Instructions = std::vector<BytecodeInstruction>;

    static bool declaresLocal(const ParsedScriptLine& line) {
        if (line.kind == ParsedLineKind::LocalFunction) return true;
        return line.assignment && line.assignment->scopeTarget == ScopeTarget::Local;
    }

    // A plain name, one value, and the value is one token or compiled.
    static bool isSimpleAssignment(const ParsedScriptLine& line) {
        if (!line.assignment) return false;
        const ParsedAssignment& assignment = *line.assignment;
        if (assignment.targets.size() != 1 || !assignment.targets[0].keys.empty()) return false;
        if (assignment.values.size() != 1) return false;
        const PreparedExpression& value = assignment.values[0];
        return (value.fast.valid() && !value.fast.makesContainers) || value.last - value.first == 1;
    }

    std::uint32_t requireEnd(std::uint32_t at, const char* message) const {
        const std::uint32_t end = program_.lines[at].endIndex;
        if (end == noLine || end >= program_.lines.size()) throw std::runtime_error(message);
        return end;
    }

    template <typename Record>
    static void emit(Instructions& instructions, Opcode opcode, std::vector<Record>& table, Record record) {
        instructions.push_back({opcode, static_cast<std::uint32_t>(table.size()), 0});
        table.push_back(std::move(record));
    }

    // Gives the index of the line to go on with.
    std::uint32_t compileLine(std::uint32_t at, std::uint32_t chunk, Instructions& out) {
        const ParsedScriptLine& line = program_.lines[at];
        switch (line.kind) {
            case ParsedLineKind::Empty:
            case ParsedLineKind::ElseIf:
            case ParsedLineKind::Else:
            case ParsedLineKind::End:
            case ParsedLineKind::Until:
                return at + 1;
            case ParsedLineKind::If:
                return compileIf(at, out);
            case ParsedLineKind::While:
                return compileWhile(at, out);
            case ParsedLineKind::Repeat:
                return compileRepeat(at, out);
            case ParsedLineKind::For:
                return compileFor(at, out);
            case ParsedLineKind::Nest:
                return compileNest(at, chunk, out);
            case ParsedLineKind::Function:
            case ParsedLineKind::DecayFunction:
            case ParsedLineKind::NativeFunction:
            case ParsedLineKind::LocalFunction:
                return compileFunction(at, out);
            case ParsedLineKind::Return:
                out.push_back({Opcode::Return, at, 0});
                return at + 1;
            case ParsedLineKind::Break:
                out.push_back({Opcode::Break, at, 0});
                return at + 1;
            case ParsedLineKind::Other:
                break;
        }
        out.push_back({isSimpleAssignment(line) ? Opcode::SimpleAssignment : Opcode::Line, at, 0});
        return at + 1;
    }

    std::uint32_t compileIf(std::uint32_t at, Instructions& out) {
        constexpr const char* missing = "Missing 'end' for if block";
        IfGroup group;
        for (std::uint32_t branch = at;;) {
            const ParsedScriptLine& line = program_.lines[branch];
            const std::uint32_t next = line.nextBranchIndex;
            if (next != noLine && next >= program_.lines.size())
                throw std::runtime_error("Invalid if-chain while compiling bytecode");
            const std::uint32_t bodyEnd = next != noLine ? next : requireEnd(branch, missing);
            const std::uint32_t body = compileBytecodeChunk(branch + 1, bodyEnd, true);
            group.push_back({branch, body, line.kind == ParsedLineKind::Else});
            if (next == noLine) break;
            branch = next;
        }
        emit(out, Opcode::If, program_.ifGroups, std::move(group));
        return requireEnd(at, missing) + 1;
    }
    std::uint32_t compileWhile(std::uint32_t at, Instructions& out) {
        const std::uint32_t end = requireEnd(at, "Missing 'end' for while block");
        const std::uint32_t body = compileBytecodeChunk(at + 1, end, true);
        emit(out, Opcode::While, program_.whileLoops, {at, body});
        return end + 1;
    }
    std::uint32_t compileRepeat(std::uint32_t at, Instructions& out) {
        const std::uint32_t until = requireEnd(at, "Missing 'until' for repeat block");
        const std::uint32_t body = compileBytecodeChunk(at + 1, until, true);
        emit(out, Opcode::Repeat, program_.repeatLoops, {until, body});
        return until + 1;
    }
    std::uint32_t compileFor(std::uint32_t at, Instructions& out) {
        const std::uint32_t end = requireEnd(at, "Missing 'end' for for block");
        const std::uint32_t body = compileBytecodeChunk(at + 1, end, true);
        if (isNumericFor(program_.lines[at])) {
            emit(out, Opcode::NumericFor, program_.numericForLoops, {at, body});
        } else {
            emit(out, Opcode::GenericFor, program_.genericForLoops, {at, body});
        }
        return end + 1;
    }
    std::uint32_t compileNest(std::uint32_t at, std::uint32_t chunk, Instructions& out) {
        const std::uint32_t end = requireEnd(at, "Missing 'end' for nest block");
        const std::uint32_t body = compileBytecodeChunk(at + 1, end, true);
        emit(out, Opcode::Nest, program_.nestBlocks, {at, body, chunk, program_.lines[at].nestLabel});
        return end + 1;
    }
    std::uint32_t compileFunction(std::uint32_t at, Instructions& out) {
        const std::uint32_t end = requireEnd(at, "Missing 'end' for function block");
        const std::uint32_t body = compileBytecodeChunk(at + 1, end, true);
        emit(out, Opcode::DeclareFunction, program_.functionDeclarations,
             {at, body, at + 1, end, program_.source});
        return end + 1;
    }

    BytecodeProgram& program_;
    const NativeStack& stack_;
};

}  // namespace

void compileLines(BytecodeProgram& program, const NativeStack& stack) {
    program.instructions.reserve(program.lines.size());
    ProgramCompiler(program, stack)
        .compileBytecodeChunk(0, static_cast<std::uint32_t>(program.lines.size()), false);
}

}  // namespace kelmora
