#include "tool/bytecode_dump.h"

#include <iomanip>
#include <string>

#include "script/program_walk.h"

namespace kelmora {
namespace {

std::string opcodeName(Opcode opcode) {
    switch (opcode) {
        case Opcode::Line:
            return "line";
        case Opcode::SimpleAssignment:
            return "assign";
        case Opcode::If:
            return "if";
        case Opcode::While:
            return "while";
        case Opcode::Repeat:
            return "repeat";
        case Opcode::NumericFor:
            return "for";
        case Opcode::GenericFor:
            return "for-in";
        case Opcode::DeclareFunction:
            return "function";
        case Opcode::Return:
            return "return";
        case Opcode::Break:
            return "break";
        case Opcode::Nest:
            return "nest";
    }
    return "opcode " + std::to_string(static_cast<unsigned>(opcode));
}

class Dumper {
public:
    Dumper(const BytecodeProgram& program, std::ostream& out) : program_(program), out_(out) {}

    void header(std::size_t imageBytes) {
        out_ << "version " << program_.version << ", " << imageBytes << " bytes\n"
             << "source path \"" << program_.source.path << "\", directory \"" << program_.source.directory
             << "\"\n";
        count("lines", program_.lines.size());
        count("instructions", program_.instructions.size());
        count("chunks", program_.chunks.size());
        count("if groups", program_.ifGroups.size());
        count("while loops", program_.whileLoops.size());
        count("repeat loops", program_.repeatLoops.size());
        count("numeric for loops", program_.numericForLoops.size());
        count("generic for loops", program_.genericForLoops.size());
        count("nest blocks", program_.nestBlocks.size());
        count("function declarations", program_.functionDeclarations.size());
    }
    void lines() {
        out_ << "\nlines\n";
        for (std::size_t i = 0; i < program_.lines.size(); ++i) {
            const ParsedScriptLine& line = program_.lines[i];
            out_ << std::setw(6) << i << "  @" << line.lineNumber + 1 << "  " << line.text << '\n';
        }
    }
    void chunks() {
        for (std::size_t i = 0; i < program_.chunks.size(); ++i) {
            const BytecodeChunk& chunk = program_.chunks[i];
            out_ << "\nchunk " << i << (chunk.nested ? " nested" : "")
                 << (chunk.declaresLocals ? " locals" : "") << ", instructions " << chunk.firstInstruction
                 << " + " << chunk.instructionCount << '\n';
            const auto instructions = instructionsOf(program_, static_cast<std::uint32_t>(i));
            for (const BytecodeInstruction& record : instructions) instruction(record);
            if (instructions.size() < chunk.instructionCount)
                out_ << "        (past the end of the instructions)\n";
        }
    }

private:
    void count(const char* what, std::size_t number) {
        out_ << std::setw(6) << number << ' ' << what << '\n';
    }

    void instruction(const BytecodeInstruction& instruction) {
        out_ << "        " << std::left << std::setw(9) << opcodeName(instruction.opcode) << std::right
             << std::setw(6) << instruction.operand;
        operand(instruction);
        out_ << '\n';
    }
    void operand(const BytecodeInstruction& instruction) {
        const std::uint32_t index = instruction.operand;
        const auto body = [this](const BodyReference& reference) {
            out_ << "  line " << reference.line << (reference.isElse ? " else" : "") << " -> chunk "
                 << reference.chunk;
        };
        switch (instruction.opcode) {
            case Opcode::Line:
            case Opcode::SimpleAssignment:
            case Opcode::Return:
            case Opcode::Break:
                if (index < program_.lines.size()) out_ << "  " << program_.lines[index].text;
                break;
            case Opcode::DeclareFunction:
                if (index < program_.functionDeclarations.size())
                    body({program_.functionDeclarations[index].line,
                          program_.functionDeclarations[index].bodyChunk});
                break;
            default:
                forEachBody(program_, instruction, body);
                break;
        }
        if (const std::string* label = labelOf(program_, instruction)) out_ << " \"" << *label << '"';
    }

    const BytecodeProgram& program_;
    std::ostream& out_;
};

}  // namespace

void dumpBytecode(const BytecodeProgram& program, std::size_t imageBytes, std::ostream& out) {
    Dumper dumper(program, out);
    dumper.header(imageBytes);
    dumper.lines();
    dumper.chunks();
}

}  // namespace kelmora
