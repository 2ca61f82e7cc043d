#include <charconv>
#include <cstdlib>

#include "base/whole_file.h"
#include "script/interpreter.h"
#include "script/library/library.h"
#include "script/numbers.h"
#include "script/operators.h"

namespace kelmora {
namespace {

void appendPrinted(std::string& text, const Variable& value) {
    if (!value.isMulti()) {
        text += value.toString();
        return;
    }
    bool first = true;
    for (const Variable& part : value.values()) {
        if (!std::exchange(first, false)) text += '\t';
        text += part.toString();
    }
}

Variable print(Interpreter& script, Arguments arguments) {
    std::string text;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i > 0) text += '\t';
        appendPrinted(text, arguments[i]);
    }
    text += '\n';
    script.host.print(text);
    return {};
}

Variable getTimeMs(Interpreter& script, Arguments arguments) {
    require(arguments.empty(), "getTimeMs function takes no arguments");
    return Variable::integer(script.elapsedMilliseconds());
}

Variable toStringFunction(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "toString function requires exactly 1 argument");
    return arguments[0].isString() ? arguments[0] : Variable::text(arguments[0].toString());
}

std::string trimmed(const std::string& text) {
    constexpr const char* blanks = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

Variable numberInBase(const std::string& text, std::int32_t base) {
    if (base < 2 || base > 36) return {};
    std::int32_t value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, base);
    if (result.ec != std::errc() || result.ptr != end) return {};
    return Variable::integer(value);
}

Variable toNumber(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1 || arguments.size() == 2, "toNumber(x[, base]) requires 1 or 2 arguments");
    const Variable& value = arguments[0];
    if (value.isInt() || value.isFloat()) return value;
    if (value.isBool()) return Variable::integer(value.boolValue() ? 1 : 0);
    if (!value.isString()) return {};
    const std::string text = trimmed(value.text());
    if (arguments.size() == 2) return numberInBase(text, toInt(arguments[1]));
    std::int32_t whole = 0;
    if (parseIntStrict(text, whole)) return Variable::integer(whole);
    float fraction = 0;
    if (parseFloatStrict(text, fraction)) return Variable::number(fraction);
    return {};
}

Variable typeOf(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "typeOf(x) requires exactly 1 argument");
    switch (arguments[0].type()) {
        case VarType::Not:
            return Variable::text("not");
        case VarType::Int:
        case VarType::Float:
            return Variable::text("number");
        case VarType::String:
            return Variable::text("string");
        case VarType::Raw:
        case VarType::Pointer:
            return Variable::text("userdata");
        case VarType::Bool:
            return Variable::text("boolean");
        case VarType::Array:
        case VarType::Multi:
        case VarType::Table:
            return Variable::text("table");
        case VarType::Function:
            return Variable::text("function");
    }
    return Variable::text("unknown");
}

Variable assertFunction(Interpreter&, Arguments arguments) {
    require(!arguments.empty(), "assert requires at least 1 argument");
    if (isTruthy(arguments[0])) return arguments[0];
    throw std::runtime_error(arguments.size() > 1 ? arguments[1].toString() : "assertion failed");
}

Variable errorFunction(Interpreter& script, Arguments arguments) {
    if (!arguments.empty() && script.softError.throws()) script.trail.raising(arguments[0]);
    script.raiseScriptErrorSoft(arguments.empty() ? "error" : arguments[0].toString());
    return {};
}

Variable pcall(Interpreter& script, Arguments arguments) {
    return script.pcallFunction(arguments);
}

Variable load(Interpreter& script, Arguments arguments) {
    require(arguments.size() == 1 && arguments[0].isString(), "load(scriptText) requires a script string");
    return script.loadChunk(arguments[0].text(), "");
}

Variable loadFile(Interpreter& script, Arguments arguments) {
    require(arguments.size() == 1 && arguments[0].isString(), "loadFile(path) requires a script path string");
    const std::string path = script.resolvePath(arguments[0].text());
    const auto source = readWholeFile(path);
    if (!source) throw std::runtime_error("Failed to open script file: " + path);
    return script.loadChunk(*source, path);
}

Variable runFile(Interpreter& script, Arguments arguments) {
    require(arguments.size() == 1 && arguments[0].isString(), "Expected a script path string");
    const Variable chunk = loadFile(script, arguments);
    require(chunk.isFunction(), "Failed to load script file");
    return script.invokeCallable(chunk, {});
}

Variable jumpTo(Interpreter& script, Arguments arguments) {
    require(arguments.size() == 1 && arguments[0].isString(),
            "jumpTo(label) expects exactly one string argument");
    require(!arguments[0].text().empty(), "jumpTo(label) expects a non-empty label");
    script.requestJump(arguments[0].text());
    return {};
}

// Key lists belong to their tables and go with them, so there is nothing left over to drop.
Variable collectGarbage(Interpreter&, Arguments) {
    return {};
}

Variable kill(Interpreter& script, Arguments arguments) {
    require(arguments.empty(), "kill() takes no arguments");
    script.coroutines.kill();
    return {};
}

constexpr LibraryEntry entries[] = {
    {"print", print},
    {"getTimeMs", getTimeMs},
    {"random", randomFunction},
    {"toString", toStringFunction},
    {"toNumber", toNumber},
    {"gsub", gsubFunction},
    {"typeOf", typeOf},
    {"assert", assertFunction},
    {"error", errorFunction},
    {"pcall", pcall},
    {"load", load},
    {"loadFile", loadFile},
    {"runFile", runFile},
    {"jumpTo", jumpTo},
    {"collectGarbage", collectGarbage},
    {"kill", kill},
};

}  // namespace

std::span<const LibraryEntry> coreLibrary() {
    return entries;
}

}  // namespace kelmora
