#include <cstdio>
#include <ctime>
#include <memory>

#include "base/file_stream.h"
#include "base/kept_place.h"
#include "script/interpreter.h"
#include "script/library/library.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

using StreamHandle = std::shared_ptr<FileStream>;

Variable fileRead(const StreamHandle& stream, Arguments arguments) {
    require(stream->get() != nullptr, "file['read'] requires a valid file handle");
    const std::string format = arguments.empty() || !arguments[0].isString() ? "*l" : arguments[0].text();
    std::string text;
    const bool all = format == "*a" || format == "a";
    const bool found = all ? stream->readAll(text) : stream->readLine(text);
    return found ? Variable::text(std::move(text)) : Variable();
}

Variable fileWrite(const StreamHandle& stream, Arguments arguments) {
    require(!arguments.empty(), "file['write'] requires a valid file handle and at least one value");
    require(stream->get() != nullptr, "file['write'] requires a writable file handle");
    for (const Variable& value : arguments) {
        const std::string text = value.toString();
        if (!stream->write(text)) throw std::runtime_error("file['write'] requires a writable file handle");
    }
    std::fflush(stream->get());
    return Variable::boolean(true);
}

Variable fileClose(const StreamHandle& stream, Arguments) {
    require(stream->get() != nullptr, "file['close'] requires a valid file handle");
    stream->close();
    return Variable::boolean(true);
}

// Members are called as f["read"](f, ...) and as f["read"](...): a table in front is the handle itself.
template <typename Member>
Variable makeMember(const StreamHandle& stream, const char* name, Member member) {
    return makeNativeCallable(
        [stream, member](const std::vector<Variable>& arguments) {
            Arguments rest(arguments);
            if (!rest.empty() && rest[0].isTable()) rest = rest.subspan(1);
            return member(stream, rest);
        },
        name);
}

Variable makeFileHandle(const StreamHandle& stream) {
    Variable handle = Variable::makeTable();
    TableObject& table = handle.table();
    table.set("handle", Variable::pointer(stream.get()));
    table.set("read", makeMember(stream, "file.read", fileRead));
    table.set("write", makeMember(stream, "file.write", fileWrite));
    table.set("close", makeMember(stream, "file.close", fileClose));
    return handle;
}

Variable openFileFunction(Interpreter& script, Arguments arguments, bool isProcess) {
    const bool usable = !arguments.empty() && arguments.size() <= 2 && arguments[0].isString();
    require(usable, isProcess ? "io['popen'](path[, mode]) requires a path string"
                              : "io['open'](path[, mode]) requires a path string");
    std::FILE* stream = nullptr;
    if (isProcess) {
        const bool writes =
            arguments.size() > 1 && arguments[1].isString() && arguments[1].text().starts_with("w");
        stream = script.host.openProcess(arguments[0].text(), writes ? "w" : "r");
    } else {
        const std::string wanted =
            arguments.size() > 1 && arguments[1].isString() ? arguments[1].text() : "r";
        stream = script.host.openFile(script.resolvePath(arguments[0].text()), streamMode(wanted));
    }
    if (!stream) return {};
    return makeFileHandle(std::make_shared<FileStream>(stream, isProcess ? &script.host : nullptr));
}

Variable openFile(Interpreter& script, Arguments arguments) {
    return openFileFunction(script, arguments, false);
}
Variable openProcess(Interpreter& script, Arguments arguments) {
    return openFileFunction(script, arguments, true);
}

Variable clockFunction(Interpreter&, Arguments arguments) {
    require(arguments.empty(), "os['clock']() takes no arguments");
    return Variable::number(static_cast<float>(static_cast<double>(std::clock()) / CLOCKS_PER_SEC));
}

Variable timeFunction(Interpreter&, Arguments arguments) {
    require(arguments.empty(), "os['time']() takes no arguments");
    return Variable::integer(static_cast<std::int32_t>(std::time(nullptr)));
}

// True when the file was there and went, else nil.
Variable removeFile(Interpreter& script, Arguments arguments) {
    require(arguments.size() == 1 && arguments[0].isString(), "os['remove'](path) requires a path string");
    const std::string path = placeOf(script.resolvePath(arguments[0].text()));
    return std::remove(path.c_str()) == 0 ? Variable::boolean(true) : Variable();
}

constexpr LibraryEntry ioEntries[] = {{"open", openFile}, {"popen", openProcess}};
constexpr LibraryEntry osEntries[] = {
    {"clock", clockFunction}, {"time", timeFunction}, {"remove", removeFile}};

}  // namespace

std::span<const LibraryEntry> ioLibrary() {
    return ioEntries;
}
std::span<const LibraryEntry> osLibrary() {
    return osEntries;
}

}  // namespace kelmora
