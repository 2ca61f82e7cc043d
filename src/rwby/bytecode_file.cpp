#include <bit>

#include "base/byte_reader.h"
#include "base/byte_writer.h"
#include "guest/location_error.h"
#include "rwby/ruby_vm.h"

namespace vesper::ruby {
namespace {

constexpr std::string_view magic = "VRBC";
constexpr std::uint32_t writtenVersion = 2;
constexpr std::size_t headerSize = 8;
constexpr std::size_t instructionSize = 13;
constexpr std::size_t smallestFunction = 12;

// The kinds of constants, as files number them.
enum class ConstantKind : std::uint8_t { Nil = 0, Integer = 1, Float = 2, Boolean = 3, String = 4 };

class ImageReader {
public:
    explicit ImageReader(std::span<const std::uint8_t> bytes) : size_(bytes.size()), reader_(bytes) {}

    kelmora::Ref<Program> read() {
        auto program = kelmora::makeRef<Program>();
        readHeader();
        program->sourceName = readString();
        for (std::size_t left = readCount(1); left > 0; --left) program->constants.push_back(readConstant());
        const std::size_t functions = readCount(smallestFunction);
        if (functions == 0) fail("bytecode contains no entry function");
        program->functions.resize(functions);
        for (CompiledFunction& function : program->functions) readFunction(function);
        return program;
    }

private:
    [[noreturn]] static void fail(const char* message) { throw std::runtime_error(message); }
    static void need(bool wasRead) {
        if (!wasRead) fail("bytecode is truncated");
    }

    void readHeader() {
        if (size_ < headerSize) fail("bytecode file is too small");
        std::string_view found;
        need(reader_.readText(magic.size(), found));
        if (found != magic) fail("invalid bytecode header");
        const std::uint32_t version = readU32();
        if (version != 1 && version != 2) fail("unsupported bytecode version");
    }
    std::uint8_t readU8() {
        std::uint8_t value = 0;
        need(reader_.readU8(value));
        return value;
    }
    std::uint32_t readU32() {
        std::uint32_t value = 0;
        need(reader_.readU32(value));
        return value;
    }
    std::uint64_t readU64() {
        std::uint64_t value = 0;
        need(reader_.readU64(value));
        return value;
    }
    // A count whose records, of a byte or more each, still fit into the file.
    std::size_t readCount(std::size_t smallestRecord) {
        const std::size_t count = readU32();
        need(count <= reader_.remaining() / smallestRecord);
        return count;
    }
    std::string readString() {
        const std::size_t length = readU32();
        std::string_view text;
        if (!reader_.readText(length, text)) fail("bytecode string exceeds file size");
        return std::string(text);
    }
    RubyValue readConstant() {
        switch (static_cast<ConstantKind>(readU8())) {
            case ConstantKind::Nil:
                return {};
            case ConstantKind::Integer:
                return RubyValue::integer(static_cast<std::int64_t>(readU64()));
            case ConstantKind::Float:
                return RubyValue::number(std::bit_cast<double>(readU64()));
            case ConstantKind::Boolean:
                return RubyValue::boolean(readU8() != 0);
            case ConstantKind::String:
                return RubyValue::text(readString());
        }
        fail("bytecode constant type is not supported");
    }
    void readFunction(CompiledFunction& function) {
        function.name = readString();
        for (std::size_t left = readCount(4); left > 0; --left) function.parameters.push_back(readString());
        const std::size_t count = readCount(instructionSize);
        function.instructions.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            Instruction& instruction = function.instructions.emplace_back();
            instruction.op = static_cast<OpCode>(readU8());
            instruction.a = static_cast<std::int32_t>(readU32());
            instruction.b = static_cast<std::int32_t>(readU32());
            instruction.line = readU32();
        }
    }

    std::size_t size_;
    kelmora::ByteReader reader_;
};

void writeConstant(kelmora::ByteWriter& writer, const RubyValue& constant) {
    const auto writeKind = [&](ConstantKind kind) { writer.u8(static_cast<std::uint8_t>(kind)); };
    switch (constant.type()) {
        case RubyValueType::Nil:
            writeKind(ConstantKind::Nil);
            break;
        case RubyValueType::Integer:
            writeKind(ConstantKind::Integer);
            writer.u64(static_cast<std::uint64_t>(constant.integerValue()));
            break;
        case RubyValueType::Float:
            writeKind(ConstantKind::Float);
            writer.u64(std::bit_cast<std::uint64_t>(constant.floatValue()));
            break;
        case RubyValueType::Boolean:
            writeKind(ConstantKind::Boolean);
            writer.u8(constant.booleanValue() ? 1 : 0);
            break;
        case RubyValueType::String:
            writeKind(ConstantKind::String);
            writer.countedText(constant.stringObject().text());
            break;
        default:
            throw std::runtime_error("bytecode serializer only supports scalar constants");
    }
}

void writeFunction(kelmora::ByteWriter& writer, const CompiledFunction& function) {
    writer.countedText(function.name);
    writer.u32(static_cast<std::uint32_t>(function.parameters.size()));
    for (const std::string& parameter : function.parameters) writer.countedText(parameter);
    writer.u32(static_cast<std::uint32_t>(function.instructions.size()));
    for (const Instruction& instruction : function.instructions) {
        writer.u8(static_cast<std::uint8_t>(instruction.op));
        writer.i32(instruction.a);
        writer.i32(instruction.b);
        writer.u32(instruction.line);
    }
}

}  // namespace

kelmora::Ref<Program> deserialiseProgram(std::span<const std::uint8_t> bytecode) {
    return ImageReader(bytecode).read();
}

RubyBytecode serialiseProgram(const Program& program) {
    kelmora::ByteWriter writer;
    writer.text(magic);
    writer.u32(writtenVersion);
    writer.countedText(program.sourceName);
    writer.u32(static_cast<std::uint32_t>(program.constants.size()));
    for (const RubyValue& constant : program.constants) writeConstant(writer, constant);
    writer.u32(static_cast<std::uint32_t>(program.functions.size()));
    for (const CompiledFunction& function : program.functions) writeFunction(writer, function);
    return writer.take();
}

}  // namespace vesper::ruby
