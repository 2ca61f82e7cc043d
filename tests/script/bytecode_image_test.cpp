#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "script/vesper_script.h"
#include "support/capture_host.h"

namespace kelmora {
namespace {

using Bytes = std::vector<unsigned char>;

constexpr const char* sampleSource =
    "function f(a, ...)\n"
    "    if a > 1\n"
    "        return a, 'x'\n"
    "    elseif a == 1\n"
    "        local b = {1, 2}\n"
    "    else\n"
    "        for i = 1, 3\n"
    "            t[i] = i\n"
    "        end\n"
    "    end\n"
    "end\n"
    "\n"
    "x = 1; y = x\n"
    "while x < 3\n"
    "    x += 1\n"
    "end\n"
    "repeat\n"
    "    x -= 1\n"
    "until x == 0\n"
    "for k, v in pairs({1, 2})\n"
    "    print(k, v)\n"
    "end\n"
    "nest \"label\"\n"
    "    print(f(5))\n"
    "end\n";

BytecodeProgram sampleProgram() {
    CaptureHost host;
    VesperScript script(host);
    return script.compileToBytecode(sampleSource, "scripts\\sample.vs");
}

std::string readingFailure(const Bytes& bytes) {
    try {
        VesperScript::deserialiseBytecode(bytes, "name");
        return "";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

// Runs whatever was read. Anything but a clean end or a std::exception is the test's failure.
void runQuietly(const Bytes& bytes) {
    CaptureHost host;
    VesperScript script(host);
    script.nativeStack().setBudget(std::size_t{1} << 20);
    script.setStepLimit(5000);
    try {
        script.runBytecode(VesperScript::deserialiseBytecode(bytes, "damaged"));
    } catch (const std::exception&) {
    }
}

TEST(BytecodeProgram, ChunksNumberInSourceOrderAndChildrenStandInFront) {
    const BytecodeProgram program = sampleProgram();
    EXPECT_EQ(program.source.path, "scripts/sample.vs");
    EXPECT_EQ(program.source.directory, "scripts");
    ASSERT_FALSE(program.chunks.empty());
    EXPECT_FALSE(program.chunks[0].nested);
    EXPECT_FALSE(program.chunks[0].declaresLocals);
    for (std::size_t i = 1; i < program.chunks.size(); ++i) {
        EXPECT_TRUE(program.chunks[i].nested);
        EXPECT_LT(program.chunks[i].firstInstruction, program.chunks[0].firstInstruction);
    }
    ASSERT_EQ(program.ifGroups.size(), 1u);
    ASSERT_EQ(program.ifGroups[0].size(), 3u);
    EXPECT_TRUE(program.ifGroups[0][2].isElse);
    EXPECT_TRUE(program.chunks[program.ifGroups[0][1].bodyChunk].declaresLocals);
    ASSERT_EQ(program.repeatLoops.size(), 1u);
    EXPECT_EQ(program.lines[program.repeatLoops[0].line].text, "until x == 0");
    ASSERT_EQ(program.functionDeclarations.size(), 1u);
    EXPECT_EQ(program.functionDeclarations[0].firstBodyLine, program.functionDeclarations[0].line + 1);
    EXPECT_EQ(program.lines[program.functionDeclarations[0].endLine].text, "end");
}

TEST(BytecodeImage, WritesReadsAndWritesTheSameBytes) {
    const Bytes image = VesperScript::serialiseBytecode(sampleProgram());
    const BytecodeProgram program = VesperScript::deserialiseBytecode(image, "name");
    EXPECT_EQ(program.version, 60);
    EXPECT_EQ(program.nestBlocks.at(0).label, "label");
    EXPECT_EQ(VesperScript::serialiseBytecode(program), image);
    Bytes trailing = image;
    trailing.push_back(0xFF);
    EXPECT_EQ(readingFailure(trailing), "");
}

TEST(BytecodeImage, EveryTruncationIsToldAsOne) {
    const Bytes image = VesperScript::serialiseBytecode(sampleProgram());
    for (std::size_t size = 0; size < image.size(); ++size) {
        const Bytes part(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(size));
        ASSERT_EQ(readingFailure(part), "Invalid bytecode file (truncated): name") << size;
    }
}

TEST(BytecodeImage, RefusesForeignBytesAndOtherVersions) {
    EXPECT_EQ(readingFailure({}), "Invalid bytecode file (truncated): name");
    EXPECT_EQ(readingFailure({'V', 'S', 'B', 'X'}), "Invalid bytecode file (bad magic): name");
    for (const unsigned version : {0u, 3u, 9u, 59u, 61u, 65535u}) {
        const Bytes bytes{'V',
                          'S',
                          'B',
                          'C',
                          static_cast<unsigned char>(version),
                          static_cast<unsigned char>(version >> 8)};
        EXPECT_EQ(readingFailure(bytes), "Unsupported bytecode version: " + std::to_string(version));
    }
    for (const unsigned char version : std::initializer_list<unsigned char>{4, 5, 6, 7, 8, 60})
        EXPECT_EQ(readingFailure({'V', 'S', 'B', 'C', version, 0}),
                  "Invalid bytecode file (truncated): name");
}

class OldImage {
public:
    explicit OldImage(unsigned char version) : version_(version) {
        for (const char c : std::string("VSBC")) bytes_.push_back(static_cast<unsigned char>(c));
        bytes_.push_back(version);
        bytes_.push_back(0);
        string("dir");
        if (version >= 5) string("dir/old.vs");
    }
    void u32(std::uint32_t value) {
        for (int i = 0; i < 4; ++i) bytes_.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
    void u8(unsigned char value) { bytes_.push_back(value); }
    void string(const std::string& text) {
        u32(static_cast<std::uint32_t>(text.size()));
        bytes_.insert(bytes_.end(), text.begin(), text.end());
    }
    void line(const std::string& text, const std::vector<std::string>& tokens, std::uint32_t number) {
        string(text);
        if (version_ >= 6) u32(number);
        u32(static_cast<std::uint32_t>(tokens.size()));
        for (const std::string& token : tokens) string(token);
    }
    void chunk(std::uint32_t first, std::uint32_t count) {
        u32(first);
        u32(count);
        u8(0);
        if (version_ >= 8) u8(0);
    }
    void instruction(unsigned char opcode, std::uint32_t operand) {
        u8(opcode);
        u32(operand);
        u32(0);
    }
    const Bytes& bytes() const { return bytes_; }

private:
    unsigned char version_;
    Bytes bytes_;
};

// for i = 1, 3 / print(i) / end / nest "old" / end, in the layout of an old version.
Bytes oldImage(unsigned char version) {
    OldImage image(version);
    image.u32(5);
    image.line("for i = 1, 3", {"for", "i", "=", "1", ",", "3"}, 10);
    image.line("print(i)", {"print", "(", "i", ")"}, 11);
    image.line("end", {"end"}, 12);
    image.line("nest \"old\"", {"nest", "\"old\""}, 13);
    image.line("end", {"end"}, 14);
    const bool nests = version >= 8;
    image.u32(nests ? 3 : 2);
    image.instruction(0, 1);
    image.instruction(5, 0);
    if (nests) image.instruction(10, 0);
    image.u32(nests ? 3 : 2);
    image.chunk(1, nests ? 2 : 1);
    image.chunk(0, 1);
    if (nests) image.chunk(0, 0);
    for (int table = 0; table < 3; ++table) image.u32(0);  // if groups, while and repeat loops
    image.u32(1);
    image.u32(0);
    image.u32(1);
    image.u32(0);  // generic for loops
    if (nests) {
        image.u32(1);
        image.u32(3);
        image.u32(2);
    }
    image.u32(0);  // functions
    return image.bytes();
}

TEST(BytecodeImage, ReadsTheOlderLayouts) {
    for (const unsigned char version : std::initializer_list<unsigned char>{4, 5, 6, 7, 8}) {
        SCOPED_TRACE(int{version});
        const BytecodeProgram program = VesperScript::deserialiseBytecode(oldImage(version), "old");
        EXPECT_EQ(program.source.path, version >= 5 ? "dir/old.vs" : "");
        EXPECT_EQ(program.lines[2].lineNumber, version >= 6 ? 11u : 2u);
        if (version >= 8) {
            EXPECT_EQ(program.nestBlocks.at(0).label, "old");
            EXPECT_EQ(program.nestBlocks.at(0).parentChunk, 0u);
        }
        CaptureHost host;
        VesperScript script(host);
        script.runBytecode(program);
        EXPECT_EQ(host.output, "1\n2\n3\n");
        const BytecodeProgram again =
            VesperScript::deserialiseBytecode(VesperScript::serialiseBytecode(program), "again");
        EXPECT_EQ(again.version, 60);
        EXPECT_EQ(again.lines[2].lineNumber, program.lines[2].lineNumber);
    }
}

// Every field in turn set to all ones, and single bytes changed at random: reading and running either works
// or fails with an error, and nothing is allocated for counts that the bytes cannot hold.
TEST(BytecodeImage, DamageNeverDoesMoreThanFail) {
    std::vector<Bytes> images{VesperScript::serialiseBytecode(sampleProgram())};
    for (const unsigned char version : std::initializer_list<unsigned char>{4, 6, 8})
        images.push_back(oldImage(version));
    for (const Bytes& image : images) {
        for (std::size_t at = 6; at + 4 <= image.size(); ++at) {
            Bytes damaged = image;
            std::memset(damaged.data() + at, 0xFF, 4);
            runQuietly(damaged);
        }
    }
    std::mt19937 random(7);
    for (std::size_t round = 0; round < 3000; ++round) {
        Bytes damaged = images[round % images.size()];
        for (auto changes = 1 + random() % 3; changes > 0; --changes)
            damaged[6 + random() % (damaged.size() - 6)] = static_cast<unsigned char>(random() % 12);
        runQuietly(damaged);
    }
}

TEST(BytecodeImage, IndicesPastTheirTablesHaveTheirWords) {
    const auto failureOf = [](const BytecodeInstruction& instruction) -> std::string {
        BytecodeProgram program = sampleProgram();
        program.instructions.push_back(instruction);
        program.chunks[0].firstInstruction = static_cast<std::uint32_t>(program.instructions.size() - 1);
        program.chunks[0].instructionCount = 1;
        CaptureHost host;
        VesperScript script(host);
        try {
            script.runBytecode(program);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    };
    constexpr std::uint32_t past = 1000;
    EXPECT_EQ(failureOf({Opcode::Line, past, 0}), "Bytecode line index out of range");
    EXPECT_EQ(failureOf({Opcode::SimpleAssignment, past, 0}), "Bytecode line index out of range");
    EXPECT_EQ(failureOf({Opcode::If, past, 0}), "Bytecode if-group index out of range");
    EXPECT_EQ(failureOf({Opcode::While, past, 0}), "Bytecode while-loop index out of range");
    EXPECT_EQ(failureOf({Opcode::Repeat, past, 0}), "Bytecode repeat-loop index out of range");
    EXPECT_EQ(failureOf({Opcode::NumericFor, past, 0}), "Bytecode numeric-for index out of range");
    EXPECT_EQ(failureOf({Opcode::GenericFor, past, 0}), "Bytecode generic-for index out of range");
    EXPECT_EQ(failureOf({Opcode::DeclareFunction, past, 0}),
              "Bytecode function-declaration index out of range");
    EXPECT_EQ(failureOf({Opcode::Nest, past, 0}), "Bytecode nest-block index out of range");

    // A block that is its own body: what stops it is the end of the native stack.
    BytecodeProgram endless;
    endless.ifGroups.push_back({{0, 0, true}});
    endless.instructions.push_back({Opcode::If, 0, 0});
    endless.chunks.push_back({0, 1, false, true});
    CaptureHost endlessHost;
    EXPECT_THROW(VesperScript(endlessHost).runBytecode(endless), std::runtime_error);

    BytecodeProgram program = sampleProgram();
    program.chunks[0].instructionCount = past;
    CaptureHost host;
    VesperScript script(host);
    EXPECT_THROW(script.runBytecode(program), std::runtime_error);
    EXPECT_THROW(script.runBytecode(BytecodeProgram()), std::runtime_error);
}

}  // namespace
}  // namespace kelmora
