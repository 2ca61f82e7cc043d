#include "script/bytecode_image.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "base/byte_reader.h"
#include "base/byte_writer.h"
#include "base/paths.h"
#include "base/whole_file.h"
#include "script/line_parser.h"

namespace kelmora {
namespace {

constexpr std::string_view imageMagic = "VSBC";

bool isKnownVersion(std::uint16_t version) {
    return (version >= 4 && version <= 8) || version == bytecodeVersion;
}

class ImageWriter {
public:
    std::vector<unsigned char> write(const BytecodeProgram& program) {
        out_.text(imageMagic);
        out_.u16(std::max(bytecodeVersion, program.version));
        out_.countedText(program.source.directory);
        out_.countedText(program.source.path);
        table(program.lines.linked(), [this](const ParsedScriptLine& line) {
            out_.countedText(line.text);
            out_.u32(line.lineNumber + 1);
            table(line.tokens, [this](const std::string& token) { out_.countedText(token); });
        });
        table(program.instructions, [this](const BytecodeInstruction& instruction) {
            out_.u8(static_cast<std::uint8_t>(instruction.opcode));
            out_.u32(instruction.operand);
            out_.u32(instruction.second);
        });
        table(program.chunks, [this](const BytecodeChunk& chunk) {
            out_.u32(chunk.firstInstruction);
            out_.u32(chunk.instructionCount);
            out_.u8(chunk.declaresLocals ? 1 : 0);
            out_.u8(chunk.nested ? 1 : 0);
        });
        table(program.ifGroups, [this](const IfGroup& group) {
            table(group, [this](const IfBranch& branch) {
                out_.u32(branch.line);
                out_.u32(branch.bodyChunk);
                out_.u8(branch.isElse ? 1 : 0);
            });
        });
        loops(program.whileLoops);
        loops(program.repeatLoops);
        loops(program.numericForLoops);
        loops(program.genericForLoops);
        table(program.nestBlocks, [this](const NestBlock& block) {
            out_.u32(block.line);
            out_.u32(block.bodyChunk);
            out_.u32(block.parentChunk);
            out_.countedText(block.label);
        });
        table(program.functionDeclarations, [this](const FunctionDeclaration& function) {
            out_.u32(function.line);
            out_.u32(function.bodyChunk);
            out_.u32(function.firstBodyLine);
            out_.u32(function.endLine);
            out_.countedText(function.source.directory);
            out_.countedText(function.source.path);
        });
        return out_.take();
    }

private:
    template <typename Record, typename Write>
    void table(const std::vector<Record>& records, Write write) {
        out_.u32(static_cast<std::uint32_t>(records.size()));
        for (const Record& record : records) write(record);
    }
    void loops(const std::vector<BytecodeLoop>& records) {
        table(records, [this](const BytecodeLoop& loop) {
            out_.u32(loop.line);
            out_.u32(loop.bodyChunk);
        });
    }

    ByteWriter out_;
};

class ImageReader {
public:
    ImageReader(std::span<const unsigned char> bytes, const std::string& sourceName)
        : bytes_(bytes), reader_(bytes), sourceName_(sourceName) {}

    BytecodeProgram read(bool linesWait) {
        readHeader();
        program_.lines = linesWait ? waitingLines() : readLines();
        table(program_.instructions, 9, [this](BytecodeInstruction& instruction) {
            instruction.opcode = static_cast<Opcode>(u8());
            instruction.operand = u32();
            instruction.second = u32();
        });
        table(program_.chunks, hasNests() ? 10 : 9, [this](BytecodeChunk& chunk) {
            chunk.firstInstruction = u32();
            chunk.instructionCount = u32();
            chunk.declaresLocals = u8() != 0;
            chunk.nested = hasNests() && u8() != 0;
        });
        table(program_.ifGroups, 4, [this](IfGroup& group) {
            table(group, 9, [this](IfBranch& branch) {
                branch.line = u32();
                branch.bodyChunk = u32();
                branch.isElse = u8() != 0;
            });
        });
        loops(program_.whileLoops);
        loops(program_.repeatLoops);
        loops(program_.numericForLoops);
        loops(program_.genericForLoops);
        if (hasNests())
            table(program_.nestBlocks, isCurrent() ? 16 : 8, [this](NestBlock& block) { readNest(block); });
        table(program_.functionDeclarations, hasSourcePath() ? 24 : 20,
              [this](FunctionDeclaration& function) {
                  function.line = u32();
                  function.bodyChunk = u32();
                  function.firstBodyLine = u32();
                  function.endLine = u32();
                  function.source.directory = string();
                  if (hasSourcePath()) function.source.path = string();
              });
        return std::move(program_);
    }

private:
    bool hasSourcePath() const { return program_.version >= 5; }
    bool hasLineNumbers() const { return program_.version >= 6; }
    bool hasNests() const { return program_.version >= 8; }
    bool isCurrent() const { return program_.version == bytecodeVersion; }

    [[noreturn]] void truncated() const {
        throw std::runtime_error("Invalid bytecode file (truncated): " + sourceName_);
    }
    std::uint8_t u8() {
        std::uint8_t value = 0;
        if (!reader_.readU8(value)) truncated();
        return value;
    }
    std::uint32_t u32() {
        std::uint32_t value = 0;
        if (!reader_.readU32(value)) truncated();
        return value;
    }
    std::string string() {
        std::string_view text;
        if (!reader_.readText(u32(), text)) truncated();
        return std::string(text);
    }
    // The count is held against the bytes that are left before anything is made of it.
    template <typename Record, typename Read>
    void table(std::vector<Record>& records, std::size_t smallestRecord, Read read) {
        const std::uint32_t count = u32();
        if (count > reader_.remaining() / smallestRecord) truncated();
        records.resize(count);
        for (Record& record : records) read(record);
    }
    void loops(std::vector<BytecodeLoop>& records) {
        table(records, 8, [this](BytecodeLoop& loop) {
            loop.line = u32();
            loop.bodyChunk = u32();
        });
    }

    void readHeader() {
        std::string_view magic;
        if (!reader_.readText(imageMagic.size(), magic)) truncated();
        if (magic != imageMagic)
            throw std::runtime_error("Invalid bytecode file (bad magic): " + sourceName_);
        if (!reader_.readU16(program_.version)) truncated();
        if (!isKnownVersion(program_.version))
            throw std::runtime_error("Unsupported bytecode version: " + std::to_string(program_.version));
        program_.source.directory = string();
        if (hasSourcePath()) program_.source.path = string();
    }
    std::vector<ParsedScriptLine> readLines() {
        std::vector<ParsedScriptLine> lines;
        table(lines, hasLineNumbers() ? 12 : 8, [&](ParsedScriptLine& line) {
            // Older images have no numbers, and the record's place stands for it.
            line.lineNumber = static_cast<std::uint32_t>(&line - lines.data());
            readLine(line);
        });
        prepareParsedLines(lines);
        return lines;
    }
    ProgramLines waitingLines() {
        std::vector<std::uint32_t> starts;
        table(starts, 12, [this](std::uint32_t& start) {
            start = static_cast<std::uint32_t>(reader_.position());
            skipText();
            u32();
            for (std::uint32_t tokens = u32(); tokens > 0; --tokens) skipText();
        });
        const auto read = [](std::span<const unsigned char> bytes, ParsedScriptLine& line) {
            static const std::string ownName;
            ImageReader(bytes, ownName).readLine(line);
            prepareLine(line);
        };
        return ProgramLines(bytes_, std::move(starts), read, linkBlocks);
    }
    void skipText() {
        if (!reader_.skip(u32())) truncated();
    }
    void readLine(ParsedScriptLine& line) {
        line.text = string();
        // They count from 1 in the file.
        if (hasLineNumbers()) line.lineNumber = std::max<std::uint32_t>(u32(), 1) - 1;
        table(line.tokens, 4, [this](std::string& token) { token = string(); });
        line.analysis.reserve(line.tokens.size());
        for (const std::string& token : line.tokens) line.analysis.push_back(analyseToken(token));
    }
    void readNest(NestBlock& block) {
        block.line = u32();
        block.bodyChunk = u32();
        if (isCurrent()) {
            block.parentChunk = u32();
            block.label = string();
        } else if (block.line < program_.lines.size()) {
            block.label = program_.lines[block.line].nestLabel;
        }
    }

    std::span<const unsigned char> bytes_;
    ByteReader reader_;
    const std::string& sourceName_;
    BytecodeProgram program_;
};

}  // namespace

std::vector<unsigned char> serialiseBytecode(const BytecodeProgram& program) {
    return ImageWriter().write(program);
}

BytecodeProgram deserialiseBytecode(std::span<const unsigned char> bytes, const std::string& sourceName) {
    return ImageReader(bytes, sourceName).read(false);
}

BytecodeProgram deserialiseOwnImage(std::span<const unsigned char> bytes) {
    return ImageReader(bytes, "").read(true);
}

void saveBytecode(const BytecodeProgram& program, const std::string& path) {
    const std::string target = normalisePath(path);
    if (!writeWholeFileBytes(target, serialiseBytecode(program)))
        throw std::runtime_error("Failed to open bytecode file for writing: " + target);
}

BytecodeProgram loadBytecode(const std::string& path) {
    const std::string source = normalisePath(path);
    const auto bytes = readWholeFileBytes(source);
    if (!bytes) throw std::runtime_error("Failed to open bytecode file for reading: " + source);
    return deserialiseBytecode(*bytes, source);
}

}  // namespace kelmora
