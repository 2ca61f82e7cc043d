#include "lua/bytecode_file.h"

#include <stdexcept>

#include "base/byte_reader.h"
#include "base/byte_writer.h"

namespace vesper::lua {
namespace {

constexpr std::string_view magic = "VLBC";
constexpr std::uint32_t version = 1;
constexpr std::size_t headerSize = 8;

std::string_view readString(kelmora::ByteReader& reader) {
    std::uint32_t size = 0;
    if (!reader.readU32(size)) throw std::runtime_error("bytecode is truncated");
    std::string_view text;
    if (!reader.readText(size, text)) throw std::runtime_error("bytecode string exceeds file size");
    return text;
}

}  // namespace

std::vector<std::uint8_t> buildBytecode(const BytecodeContent& content) {
    kelmora::ByteWriter writer;
    writer.text(magic);
    writer.u32(version);
    writer.countedText(content.chunkName);
    writer.countedText(content.source);
    return writer.take();
}

BytecodeContent readBytecode(std::span<const std::uint8_t> image) {
    kelmora::ByteReader reader(image);
    std::string_view found;
    std::uint32_t foundVersion = 0;
    if (image.size() < headerSize || !reader.readText(magic.size(), found) || !reader.readU32(foundVersion))
        throw std::runtime_error("bytecode file is too small");
    if (found != magic) throw std::runtime_error("invalid VesperLua bytecode header");
    if (foundVersion != version) throw std::runtime_error("unsupported VesperLua bytecode version");
    BytecodeContent content;
    content.chunkName = readString(reader);
    content.source = readString(reader);
    return content;
}

bool isBytecode(std::string_view content) {
    return content.starts_with(magic);
}

}  // namespace vesper::lua
