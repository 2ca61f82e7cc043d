#include "tool/guest_tool.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iomanip>
#include <ostream>
#include <stdexcept>

#include "lua/bytecode_file.h"
#include "lua/lua_vm.h"
#include "rwby/opcode.h"
#include "rwby/ruby_vm.h"

namespace kelmora {
namespace {

int runLua(Runtime& runtime, const std::string& path, std::span<const std::string> arguments, bool isImage) {
    vesper::lua::LuaValue::Array values;
    for (const std::string& argument : arguments) values.emplace_back(argument);
    runtime.lua.setGlobal("arguments", vesper::lua::LuaValue::makeArray(std::move(values)));
    const vesper::lua::LuaResult result =
        isImage ? runtime.lua.runBytecodeFile(path) : runtime.lua.runScriptFile(path);
    if (!result.success) throw std::runtime_error(result.error);
    return result.exitCode.value_or(0);
}

std::vector<unsigned char> compileLua(Runtime& runtime, const std::string& source,
                                      const std::string& chunkName) {
    return runtime.lua.compileScript(source, chunkName);
}

void dumpLua(std::string_view image, std::ostream& out) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(image.data());
    const vesper::lua::BytecodeContent content = vesper::lua::readBytecode({bytes, image.size()});
    const auto lines = std::count(content.source.begin(), content.source.end(), '\n');
    out << "VesperLua image, " << image.size() << " bytes\nchunk name \"" << content.chunkName << "\"\n"
        << content.source.size() << " bytes of source, " << lines << " lines\n"
        << content.source;
}

int runRuby(Runtime& runtime, const std::string& path, std::span<const std::string> arguments, bool isImage) {
    vesper::ruby::RubyItems values;
    for (const std::string& argument : arguments) values.push_back(vesper::ruby::RubyValue::text(argument));
    runtime.ruby.setGlobal("arguments", vesper::ruby::RubyValue::array(std::move(values)));
    const vesper::ruby::RubyResult result =
        isImage ? runtime.ruby.runBytecodeFile(path) : runtime.ruby.runScriptFile(path);
    if (!result.success) throw std::runtime_error(result.error);
    return 0;
}

std::vector<unsigned char> compileRuby(Runtime& runtime, const std::string& source,
                                       const std::string& chunkName) {
    vesper::ruby::RubyCompilation compiled = runtime.ruby.compileScript(source, chunkName);
    if (!compiled.success) throw std::runtime_error(compiled.error);
    return std::move(compiled.bytecode);
}

std::string rubyOpcodeName(vesper::ruby::OpCode op) {
    static constexpr const char* names[] = {
        "constant", "load",    "store",    "pop",   "add",   "subtract", "multiply",
        "divide",   "modulo",  "negate",   "not",   "equal", "unequal",  "less",
        "at most",  "greater", "at least", "and",   "or",    "jump",     "jump if false",
        "call",     "define",  "return",   "array", "index", "set index"};
    const auto number = static_cast<std::size_t>(op);
    return number < std::size(names) ? names[number] : "opcode " + std::to_string(number);
}

void dumpRuby(std::string_view image, std::ostream& out) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(image.data());
    const auto program = vesper::ruby::deserialiseProgram({bytes, image.size()});
    out << "VesperRwby image, " << image.size() << " bytes\nsource name \"" << program->sourceName << "\"\n";
    for (std::size_t i = 0; i < program->constants.size(); ++i)
        out << std::setw(6) << i << "  " << program->constants[i].toString() << '\n';
    for (const auto& function : program->functions) {
        out << "\nfunction " << function.name << ", " << function.parameters.size() << " parameters\n";
        for (const vesper::ruby::Instruction& instruction : function.instructions)
            out << std::setw(6) << instruction.line << "  " << std::left << std::setw(15)
                << rubyOpcodeName(instruction.op) << std::right << std::setw(6) << instruction.a
                << std::setw(6) << instruction.b << '\n';
    }
}

constexpr std::array tools{
    GuestTool{"VesperLua", ".lua", "VLBC", runLua, compileLua, dumpLua},
    GuestTool{"VesperRwby", ".rwby", "VRBC", runRuby, compileRuby, dumpRuby},
};

template <typename Matches>
const GuestTool* findTool(Matches matches) {
    const auto* found = std::find_if(tools.begin(), tools.end(), matches);
    return found == tools.end() ? nullptr : found;
}

// Takes ":number" off the front.
bool takeNumber(std::string_view& text, std::size_t& number) {
    if (!text.starts_with(':')) return false;
    const auto [end, fault] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
    if (fault != std::errc()) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

std::string_view sourceLine(std::string_view source, std::size_t number) {
    for (; number > 1; --number) {
        const std::size_t end = source.find('\n');
        if (end == std::string_view::npos) return {};
        source.remove_prefix(end + 1);
    }
    return source.substr(0, source.find_first_of("\r\n"));
}

}  // namespace

const GuestTool* guestToolForSource(const std::string& path) {
    return findTool([&](const GuestTool& tool) { return path.ends_with(tool.extension); });
}

const GuestTool* guestToolForImage(std::string_view content) {
    return findTool([&](const GuestTool& tool) { return content.starts_with(tool.magic); });
}

std::optional<GuestFailure> parseGuestFailure(std::string_view error, const std::string& path,
                                              std::string_view source) {
    GuestFailure failure;
    if (!error.starts_with(path)) return std::nullopt;
    error.remove_prefix(path.size());
    if (!takeNumber(error, failure.line)) return std::nullopt;
    takeNumber(error, failure.column);
    if (!error.starts_with(": ")) return std::nullopt;
    failure.message = error.substr(2);
    failure.source = sourceLine(source, failure.line);
    if (failure.column > failure.source.size() + 1) failure.column = 0;
    return failure;
}

std::string guestReport(const GuestTool& tool, const std::string& error, const std::string& path,
                        std::string_view source) {
    const std::optional<GuestFailure> failure = parseGuestFailure(error, path, source);
    if (!failure) return error;
    std::string report(tool.language);
    report.append(" error: ").append(failure->message);
    report.append("\n  at ").append(path).append(":").append(std::to_string(failure->line));
    if (failure->source.empty()) return report;
    report.append("\n  ").append(failure->source);
    if (failure->column == 0) return report;
    std::string mark(failure->source.substr(0, failure->column - 1));
    std::replace_if(
        mark.begin(), mark.end(), [](char c) { return c != '\t'; }, ' ');
    return report.append("\n  ").append(mark).append("^");
}

}  // namespace kelmora
