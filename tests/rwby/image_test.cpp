#include <gtest/gtest.h>

#include <algorithm>

#include "base/byte_writer.h"
#include "base/whole_file.h"
#include "support/capture_host.h"
#include "support/rwby_run.h"
#include "support/temporary_folder.h"

// VRBC files: what is written, what a reader refuses, and what damaged instructions say when they run.
namespace kelmora {
namespace {

using vesper::ruby::OpCode;
using vesper::ruby::RubyBytecode;
using vesper::ruby::RubyVM;

struct Line {
    OpCode op;
    std::int32_t a = 0;
    std::int32_t b = 0;
};

// An image whose constants are 0: nil, 1: "x", 2: 7, and whose functions are the entry and those given.
RubyBytecode makeImage(const std::vector<std::vector<Line>>& functions, std::uint32_t version = 2) {
    ByteWriter writer;
    writer.text("VRBC");
    writer.u32(version);
    writer.countedText("made");
    writer.u32(3);
    writer.u8(0);
    writer.u8(4);
    writer.countedText("x");
    writer.u8(1);
    writer.u64(7);
    writer.u32(static_cast<std::uint32_t>(functions.size()));
    for (const auto& lines : functions) {
        writer.countedText("f");
        writer.u32(0);
        writer.u32(static_cast<std::uint32_t>(lines.size()));
        for (const Line& line : lines) {
            writer.u8(static_cast<std::uint8_t>(line.op));
            writer.i32(line.a);
            writer.i32(line.b);
            writer.u32(9);
        }
    }
    return writer.take();
}

class RwbyImage : public testing::Test {
protected:
    std::string errorOf(const RubyBytecode& image) { return vm_.runBytecode(image).error; }
    // What the entry says when it runs, less its place.
    std::string failureOf(const std::vector<Line>& lines) {
        const std::string error = errorOf(makeImage({lines}));
        EXPECT_TRUE(error.empty() || error.starts_with("made:9: ")) << error;
        return error.empty() ? "" : error.substr(8);
    }

    CaptureHost host_;
    NativeStack stack_;
    RubyVM vm_{host_, stack_};
};

TEST_F(RwbyImage, HoldsAProgramByteForByte) {
    const auto compiled = vm_.compileScript("x = 1.5\nreturn x", "name");
    ASSERT_TRUE(compiled.success);
    ByteWriter expected;
    expected.text("VRBC");
    expected.u32(2);
    expected.countedText("name");
    expected.u32(2);
    expected.u8(2);
    expected.u64(0x3FF8000000000000u);
    expected.u8(4);
    expected.countedText("x");
    expected.u32(1);
    expected.countedText("<main>");
    expected.u32(0);
    expected.u32(4);
    const auto instruction = [&](std::uint8_t op, std::int32_t a, std::uint32_t line) {
        expected.u8(op);
        expected.i32(a);
        expected.i32(0);
        expected.u32(line);
    };
    instruction(0, 0, 1);
    instruction(2, 1, 1);
    instruction(1, 1, 2);
    instruction(23, 0, 2);
    EXPECT_EQ(compiled.bytecode, expected.take());
}

TEST_F(RwbyImage, RefusesWhatIsNoImage) {
    const RubyBytecode good = makeImage({{}});
    EXPECT_EQ(errorOf(good), "");
    EXPECT_EQ(errorOf(makeImage({{}}, 1)), "");
    EXPECT_EQ(errorOf(makeImage({{}}, 3)), "unsupported bytecode version");
    EXPECT_EQ(errorOf({'V', 'R', 'B', 'C', 2, 0, 0}), "bytecode file is too small");
    EXPECT_EQ(errorOf({'V', 'R', 'B', 'D', 2, 0, 0, 0}), "invalid bytecode header");
    EXPECT_EQ(errorOf(makeImage({})), "bytecode contains no entry function");
    RubyBytecode longer = good;
    longer.push_back(0xFF);
    EXPECT_EQ(errorOf(longer), "");
    RubyBytecode wrongConstant = good;
    wrongConstant[20] = 5;
    EXPECT_EQ(errorOf(wrongConstant), "bytecode constant type is not supported");
    RubyBytecode longName = good;
    longName[8] = 200;
    EXPECT_EQ(errorOf(longName), "bytecode string exceeds file size");
}

TEST_F(RwbyImage, RefusesEveryShorterFile) {
    const RubyBytecode image = makeImage({{{OpCode::PushConstant}, {OpCode::Pop}}});
    for (std::size_t size = 8; size < image.size(); ++size) {
        const std::string error =
            errorOf(RubyBytecode(image.begin(), image.begin() + static_cast<long>(size)));
        EXPECT_TRUE(error == "bytecode is truncated" || error == "bytecode string exceeds file size") << size;
    }
}

// Whatever stands in a file: it is refused, or it runs to an end or an error, the same in all modes.
TEST_F(RwbyImage, RunsOrRefusesEveryChangedFile) {
    using vesper::ruby::ExecutionMode;
    const auto compiled = vm_.compileScript(
        "def f(a, b)\nif a > b then error(\"big\") end\nreturn a + b * [1, 2][1]\nend\n"
        "i = 0\nwhile i < 3\ni = i + f(1, 2)\ns = \"abc\"\ns[1] = \"x\"\nend\nreturn pcall(f, 2, 1)",
        "n");
    ASSERT_TRUE(compiled.success);
    const auto outcomeOf = [](const RubyBytecode& image, ExecutionMode mode) {
        CaptureHost host;
        NativeStack stack;
        RubyVM vm(host, stack);
        vm.setExecutionMode(mode);
        vm.setStepLimit(500);
        const auto result = vm.runBytecode(image);
        return result.success ? result.value.toString() : "failed: " + result.error;
    };
    const auto expectAgreement = [&](const RubyBytecode& image, std::size_t at) {
        const std::string plain = outcomeOf(image, ExecutionMode::PlainInstructions);
        EXPECT_EQ(outcomeOf(image, ExecutionMode::WithoutFastForms), plain) << at;
        EXPECT_EQ(outcomeOf(image, ExecutionMode::Full), plain) << at;
    };
    for (std::size_t at = 8; at < compiled.bytecode.size(); ++at) {
        for (const int change : {0x00, 0xFF, 0x01, 0x7F}) {
            RubyBytecode image = compiled.bytecode;
            image[at] = static_cast<std::uint8_t>(change);
            expectAgreement(image, at);
        }
        if (at + 4 > compiled.bytecode.size()) continue;
        RubyBytecode image = compiled.bytecode;
        std::fill_n(image.begin() + static_cast<std::ptrdiff_t>(at), 4, std::uint8_t{0xFF});
        expectAgreement(image, at);
    }
}

TEST_F(RwbyImage, ReportsDamagedOperandsWhenTheyAreReached) {
    using enum OpCode;
    EXPECT_EQ(failureOf({{PushConstant, 3}}), "constant index is out of range");
    EXPECT_EQ(failureOf({{LoadName, -1}}), "constant index is out of range");
    EXPECT_EQ(failureOf({{LoadName, 2}}), "global name constant is invalid");
    EXPECT_EQ(failureOf({{StoreName, 1}}), "assignment requires a value");
    EXPECT_EQ(failureOf({{Jump, 5}}), "jump target is out of range");
    EXPECT_EQ(failureOf({{PushConstant, 0}, {JumpIfFalse, -1}}), "conditional jump target is out of range");
    EXPECT_EQ(failureOf({{PushConstant, 2}, {JumpIfFalse, -1}}), "");
    EXPECT_EQ(failureOf({{Call, -1}}), "argument count is invalid");
    EXPECT_EQ(failureOf({{PushConstant, 0}, {Call, 1}}), "call stack is incomplete");
    EXPECT_EQ(failureOf({{MakeArray, -1}}), "array element count is invalid");
    EXPECT_EQ(failureOf({{MakeArray, 1}}), "array literal is missing values");
    EXPECT_EQ(failureOf({{DefineFunction, 1, 1}}), "function index is out of range");
    EXPECT_EQ(failureOf({{Add}}), "stack underflow");
    EXPECT_EQ(failureOf({{static_cast<OpCode>(27)}}), "unknown opcode");
    EXPECT_EQ(failureOf({{Jump, 2}, {Pop}}), "");  // right behind the end
    EXPECT_EQ(failureOf({{Return}}), "");
    // Jumps that meet with different stacks.
    EXPECT_EQ(failureOf({{PushConstant, 2}, {PushConstant, 0}, {JumpIfFalse, 4}, {Pop}, {Pop}, {Pop}}),
              "stack underflow");
    // A function that never runs may be as damaged as it likes.
    EXPECT_EQ(errorOf(makeImage({{{DefineFunction, 1, 1}}, {{PushConstant, 99}, {Return}}})), "");
    EXPECT_EQ(errorOf(makeImage(
                  {{{DefineFunction, 1, 1}, {LoadName, 1}, {Call, 0}}, {{PushConstant, 99}, {Return}}})),
              "made:9: constant index is out of range");
}

TEST_F(RwbyImage, GoesThroughFiles) {
    const TemporaryFolder folder;
    const std::string path = (folder / "program.vrbc").string();
    std::string error = "before";
    EXPECT_TRUE(vm_.writeBytecodeFile("return 6 * 7", "six", path, &error));
    EXPECT_EQ(error, "");
    EXPECT_EQ(vm_.runBytecodeFile(path).value.toString(), "42");
    EXPECT_FALSE(vm_.writeBytecodeFile("x = ", "bad", path, &error));
    EXPECT_EQ(error, "bad:1:5: assignment requires a value");
    const std::string nowhere = (folder / "none" / "x").string();
    EXPECT_FALSE(vm_.writeBytecodeFile("x = 1", "x", nowhere, &error));
    EXPECT_EQ(error, "unable to open bytecode output file: " + nowhere);
    EXPECT_EQ(vm_.runBytecodeFile(nowhere).error, "unable to open bytecode file: " + nowhere);
    EXPECT_EQ(vm_.runScriptFile(nowhere).error, "unable to open script file: " + nowhere);
    const std::string script = (folder / "program.rwby").string();
    ASSERT_TRUE(writeWholeFile(script, "\nreturn nothing"));
    EXPECT_EQ(vm_.runScriptFile(script).error, script + ":2: undefined variable or function 'nothing'");
}

}  // namespace
}  // namespace kelmora
