#include <algorithm>

#include "base/file_stream.h"
#include "rwby/library/library.h"
#include "text/limits.h"

namespace vesper::ruby {
namespace {

std::string pathOf(Arguments arguments) {
    return std::string(arguments[0].asString());
}

RubyValue fileExists(RubyVM& vm, Arguments arguments) {
    const kelmora::FileStream stream(vm.host().openFile(pathOf(arguments), "rb"), nullptr);
    return RubyValue::boolean(stream.isOpen());
}

RubyValue readFile(RubyVM& vm, Arguments arguments) {
    const std::string path = pathOf(arguments);
    kelmora::FileStream stream(vm.host().openFile(path, "rb"), nullptr);
    if (!stream.isOpen()) throw std::runtime_error("failed to open file: " + path);
    std::string content;
    stream.read(kelmora::maximumTextSize + 1, content);
    return RubyValue::text(content);
}

RubyValue writeFile(RubyVM& vm, Arguments arguments) {
    const std::string path = pathOf(arguments);
    const std::string_view text = arguments[1].asString();
    kelmora::FileStream stream(vm.host().openFile(path, "wb"), nullptr);
    if (!stream.isOpen()) throw std::runtime_error("failed to open file for writing: " + path);
    const bool isWritten = stream.write(text);
    if (stream.close() != 0 || !isWritten) throw std::runtime_error("failed to write file: " + path);
    return RubyValue::boolean(true);
}

RubyValue appendFile(RubyVM& vm, Arguments arguments) {
    const std::string path = pathOf(arguments);
    const std::string_view text = arguments[1].asString();
    kelmora::FileStream stream(vm.host().openFile(path, "ab"), nullptr);
    if (!stream.isOpen()) throw std::runtime_error("failed to open file for appending: " + path);
    const bool isWritten = stream.write(text);
    if (stream.close() != 0 || !isWritten) throw std::runtime_error("failed to append file: " + path);
    return RubyValue::boolean(true);
}

constexpr LibraryEntry entries[] = {
    {"file_exists?", fileExists, exactly(1)},
    {"read_file", readFile, exactly(1)},
    {"write_file", writeFile, exactly(2)},
    {"append_file", appendFile, exactly(2)},
};

}  // namespace

std::span<const LibraryEntry> fileLibrary() {
    return entries;
}

}  // namespace vesper::ruby
