#include "base/whole_file.h"
#include "script/interpreter.h"
#include "script/library/library.h"
#include "script/state_file.h"

namespace kelmora {
namespace {

Variable exportStateFunction(Interpreter& script, Arguments arguments) {
    require(arguments.size() <= 1, "exportState([path]) expects zero or one argument");
    require(arguments.empty() || arguments[0].isString(), "exportState(path) expects a path string");
    const std::vector<unsigned char> bytes = exportState(script);
    if (arguments.empty()) return Variable::raw({bytes.begin(), bytes.end()});
    const std::string path = script.resolvePath(arguments[0].text());
    if (!script.host.replaceFile(path, bytes))
        throw std::runtime_error("Failed to open state file for writing: " + path);
    return Variable::integer(static_cast<std::int32_t>(bytes.size()));
}

Variable importStateFunction(Interpreter& script, Arguments arguments) {
    require(arguments.size() == 1, "importState(rawOrPath) expects exactly one argument");
    const Variable& source = arguments[0];
    require(source.isRaw() || source.isString(), "importState(rawOrPath) expects raw bytes or a path string");
    if (source.isRaw()) {
        const Variable kept = source;  // the import may overwrite the global that held it
        const std::vector<char>& bytes = kept.rawBytes();
        importState(script, {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()},
                    "<raw-state>");
        return Variable::boolean(true);
    }
    const std::string path = script.resolvePath(source.text());
    const auto bytes = readWholeFileBytes(path);
    if (!bytes) throw std::runtime_error("Failed to open state file for reading: " + path);
    importState(script, *bytes, path);
    return Variable::boolean(true);
}

constexpr LibraryEntry entries[] = {{"exportState", exportStateFunction},
                                    {"importState", importStateFunction}};

}  // namespace

std::span<const LibraryEntry> stateLibrary() {
    return entries;
}

}  // namespace kelmora
