#include <algorithm>
#include <cstdio>
#include <ctime>

#include "base/file_stream.h"
#include "lua/library/arguments.h"
#include "lua/library/library.h"
#include "lua/operations.h"

namespace vesper::lua {
namespace {

// A file of the system, or one of the host's two outputs.
class FileObject final : public NativeObject {
public:
    enum class Output : std::uint8_t { None, Standard, Error };

    explicit FileObject(std::FILE* stream) : NativeObject(Kind::File), stream_(stream, nullptr) {}
    explicit FileObject(Output output)
        : NativeObject(Kind::File), stream_(nullptr, nullptr), output_(output) {}

    kelmora::FileStream& stream() { return stream_; }
    Output output() const { return output_; }

private:
    kelmora::FileStream stream_;
    Output output_ = Output::None;
};

FileObject& requireUserData(NativeCall& call) {
    requireAtLeast(call, 1);
    if (call[0].kind() != ValueKind::Native) failArgument(call, 0, "a file");
    return static_cast<FileObject&>(call[0].native());
}

FileObject& requireOpenFile(NativeCall& call) {
    FileObject& file = requireUserData(call);
    if (!file.stream().isOpen()) throw std::runtime_error("native object handle is empty");
    return file;
}

std::string_view requirePrintable(NativeCall& call, std::size_t position, std::string& room) {
    const Value& value = call[position];
    if (value.isString()) return value.letters();
    if (!value.isNumber()) failArgument(call, position, "a string or number");
    room = value.toString();
    return room;
}

void writeTo(NativeCall& call, FileObject& file, std::size_t position) {
    std::string room;
    const std::string_view text = requirePrintable(call, position, room);
    switch (file.output()) {
        case FileObject::Output::Standard:
            return call.machine().host().print(text);
        case FileObject::Output::Error:
            return call.machine().host().printError(text);
        default:
            if (!file.stream().write(text)) failCall(call, "the file cannot be written");
    }
}

// The file, so that calls can be chained.
void fileWrite(NativeCall& call) {
    FileObject& file = requireUserData(call);
    if (file.output() == FileObject::Output::None) requireOpenFile(call);
    for (std::size_t i = 1; i < call.count(); ++i) writeTo(call, file, i);
    call.give(call[0]);
}

Value readNumber(std::FILE* stream) {
    double value = 0;
    if (std::fscanf(stream, "%lf", &value) != 1) return {};
    std::int64_t whole = 0;
    return kelmora::isWholeResult(value, whole) ? Value::integer(whole) : Value::number(value);
}

// "l" a line, "L" with its line feed, "a" all, "n" a number; a count reads so many bytes.
Value readItem(NativeCall& call, kelmora::FileStream& stream, std::size_t position) {
    std::string text;
    if (call[position].isNumber()) {
        const std::int64_t count = requireInteger(call, position);
        if (count < 0) failArgument(call, position, "a count");
        checkTextSize(static_cast<std::size_t>(std::min<std::int64_t>(count, INT32_MAX)));
        const bool found = stream.read(static_cast<std::size_t>(count), text);
        return found || (count == 0 && std::feof(stream.get()) == 0) ? Value::text(text) : Value();
    }
    std::string_view format = optionalString(call, position, "l");
    if (format.starts_with('*')) format.remove_prefix(1);
    switch (format.empty() ? '\0' : format[0]) {
        case 'l':
            return stream.readLine(text) ? Value::text(text) : Value();
        case 'L':
            return stream.readLine(text) ? Value::text(text + "\n") : Value();
        case 'a':
            stream.readAll(text);
            return Value::text(text);
        case 'n':
            return readNumber(stream.get());
        default:
            failCall(call, "invalid format");
    }
}

void fileRead(NativeCall& call) {
    FileObject& file = requireOpenFile(call);
    if (call.count() == 1) return call.give(readItem(call, file.stream(), 1));
    for (std::size_t i = 1; i < call.count(); ++i) call.give(readItem(call, file.stream(), i));
}

// The new position from the start of the file, or nil and the reason.
void fileSeek(NativeCall& call) {
    requireArgumentCount(call, 1, 3);
    std::FILE* stream = requireOpenFile(call).stream().get();
    const std::string_view from = optionalString(call, 1, "cur");
    const std::int64_t offset = optionalInteger(call, 2, 0);
    const int origin = from == "set" ? SEEK_SET : from == "end" ? SEEK_END : SEEK_CUR;
    if (origin == SEEK_CUR && from != "cur") failCall(call, "invalid origin");
    const bool fits = offset >= INT32_MIN && offset <= INT32_MAX;
    if (!fits || std::fseek(stream, static_cast<long>(offset), origin) != 0) {
        call.give({});
        return call.give(Value::text("the file cannot be positioned there"));
    }
    call.give(Value::integer(std::ftell(stream)));
}

void fileFlush(NativeCall& call) {
    FileObject& file = requireUserData(call);
    if (file.output() != FileObject::Output::None) {
        call.machine().host().flush();
    } else {
        std::fflush(requireOpenFile(call).stream().get());
    }
    call.give(call[0]);
}

void fileClose(NativeCall& call) {
    call.give(Value::boolean(requireOpenFile(call).stream().close() == 0));
}

// nil and the reason when there is no such file.
void open(NativeCall& call) {
    requireArgumentCount(call, 1, 2);
    const std::string path(requireString(call, 0));
    std::FILE* stream =
        call.machine().host().openFile(path, kelmora::streamMode(optionalString(call, 1, "r")));
    if (stream) return call.give(Value(new FileObject(stream)));
    call.give({});
    call.give(Value::text("failed to open file: " + path));
}

void write(NativeCall& call) {
    std::string room;
    for (std::size_t i = 0; i < call.count(); ++i)
        call.machine().host().print(requirePrintable(call, i, room));
}

void clock(NativeCall& call) {
    requireArgumentCount(call, 0, 0);
    call.give(Value::number(static_cast<double>(std::clock()) / CLOCKS_PER_SEC));
}

void time(NativeCall& call) {
    requireArgumentCount(call, 0, 0);
    call.give(Value::integer(static_cast<std::int64_t>(std::time(nullptr))));
}

void difftime(NativeCall& call) {
    requireArgumentCount(call, 2, 2);
    requireNumber(call, 0);
    requireNumber(call, 1);
    call.give(arithmetic(Arithmetic::Subtract, call[0], call[1]));
}

// What the command prints goes where the script prints. Its exit code, or nil when it cannot be started;
// without a command, whether there are commands at all.
void execute(NativeCall& call) {
    requireArgumentCount(call, 0, 1);
    if (call[0].isNil()) return call.give(Value::boolean(true));
    kelmora::HostServices& host = call.machine().host();
    std::FILE* stream = host.openProcess(std::string(requireString(call, 0)), "r");
    if (!stream) return call.give({});
    kelmora::FileStream process(stream, &host);
    std::string text;
    while (process.read(4096, text)) {
        host.print(text);
        text.clear();
    }
    call.give(Value::integer(process.close()));
}

// Ends the run, past every pcall: true is 0, false is 1.
void exitFunction(NativeCall& call) {
    requireArgumentCount(call, 0, 1);
    StopRun stop;
    stop.isExit = true;
    if (call[0].isBoolean()) {
        stop.exitCode = call[0].booleanValue() ? 0 : 1;
    } else {
        stop.exitCode = static_cast<int>(optionalInteger(call, 0, 0) & 0xFF);
    }
    throw stop;
}

constexpr LibraryEntry ioEntries[] = {{"open", open}, {"write", write}};
constexpr LibraryEntry osEntries[] = {
    {"clock", clock}, {"time", time}, {"difftime", difftime}, {"execute", execute}, {"exit", exitFunction}};
constexpr LibraryEntry fileEntries[] = {
    {"write", fileWrite}, {"read", fileRead}, {"seek", fileSeek}, {"flush", fileFlush}, {"close", fileClose}};

}  // namespace

void bindSystemLibrary(Interpreter& machine) {
    const Value io = bindTable(machine, "io", ioEntries);
    io.table().set("stderr", Value(new FileObject(FileObject::Output::Error)));
    io.table().set("stdout", Value(new FileObject(FileObject::Output::Standard)));
    bindTable(machine, "os", osEntries);
    Value methods = machine.makeTable();
    for (const LibraryEntry& entry : fileEntries) bindTableFunction(machine, methods.table(), "file", entry);
    machine.setFileMethods(std::move(methods));
}

}  // namespace vesper::lua
