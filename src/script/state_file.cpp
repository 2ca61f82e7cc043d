#include "script/state_file.h"

#include <algorithm>
#include <bit>
#include <sstream>
#include <stdexcept>

#include "base/byte_reader.h"
#include "base/byte_writer.h"
#include "script/bytecode_image.h"
#include "script/interpreter.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

constexpr std::string_view stateMagic = "VSST";
constexpr std::uint32_t stateVersion = 2;
constexpr int maximumDepth = 256;
// A few dozen shared containers can spell more bytes than any disk holds.
constexpr std::size_t maximumBytes = std::size_t{1} << 30;

enum class ValueTag : std::uint8_t { Nil, Int, Float, String, Raw, Bool, Array, Multi, Table, Function };

// Whether a value can be written whole. Containers on the path to it are remembered, since one that holds
// itself cannot.
class ExportCheck {
public:
    explicit ExportCheck(const NativeStack& stack) : stack_(stack) {}

    bool passes(const Variable& value) {
        switch (value.type()) {
            case VarType::Pointer:
                return false;
            case VarType::Function:
                return passesFunction(value.function());
            case VarType::Array:
                return passesItems(value, value.items());
            case VarType::Multi:
                return passesItems(value, value.values());
            case VarType::Table:
                return passesTable(value);
            default:
                return true;
        }
    }

private:
    static bool passesFunction(const ScriptCallable& callable) {
        return !callable.isNative && !callable.isDecay && callable.program &&
               callable.chunkIndex < callable.program->chunks.size();
    }
    bool enter(const Variable& container) {
        stack_.check();
        if (std::find(path_.begin(), path_.end(), container.identity()) != path_.end()) return false;
        path_.push_back(container.identity());
        return true;
    }
    bool passesItems(const Variable& container, const std::vector<Variable>& items) {
        if (!enter(container)) return false;
        const bool all =
            std::all_of(items.begin(), items.end(), [this](const Variable& item) { return passes(item); });
        path_.pop_back();
        return all;
    }
    bool passesTable(const Variable& container) {
        if (!enter(container)) return false;
        const TableObject& table = container.table();
        const auto sorted = table.sortedKeys();
        const bool all = std::all_of(sorted->keys.begin(), sorted->keys.end(),
                                     [&](const Ref<StringObject>& key) { return passes(*table.find(*key)); });
        path_.pop_back();
        return all;
    }

    const NativeStack& stack_;
    std::vector<const void*> path_;
};

class StateWriter {
public:
    std::vector<unsigned char> write(Interpreter& script) {
        std::vector<std::pair<NameId, const Variable*>> entries = script.scopes.definedGlobals();
        std::erase_if(entries,
                      [&](const auto& entry) { return !ExportCheck(script.stack).passes(*entry.second); });
        std::sort(entries.begin(), entries.end(),
                  [](const auto& a, const auto& b) { return nameText(a.first) < nameText(b.first); });
        out_.text(stateMagic);
        out_.u32(stateVersion);
        std::ostringstream random;
        random << script.generator;
        string(random.str());
        out_.u32(static_cast<std::uint32_t>(entries.size()));
        for (const auto& [name, held] : entries) {
            string(nameText(name));
            value(*held);
        }
        return out_.take();
    }

private:
    template <typename Bytes>
    void block(const Bytes& content) {
        if (content.size() > maximumBytes - std::min(maximumBytes, out_.size()))
            throw std::runtime_error("exportState: the state is too large");
        out_.u32(static_cast<std::uint32_t>(content.size()));
        out_.bytes({reinterpret_cast<const unsigned char*>(content.data()), content.size()});
    }
    void string(const std::string& text) { block(text); }
    void tag(ValueTag kind) { out_.u8(static_cast<std::uint8_t>(kind)); }

    void value(const Variable& held) {
        switch (held.type()) {
            case VarType::Int:
                tag(ValueTag::Int);
                out_.u32(static_cast<std::uint32_t>(held.intValue()));
                break;
            case VarType::Float:
                tag(ValueTag::Float);
                out_.u32(std::bit_cast<std::uint32_t>(held.floatValue()));
                break;
            case VarType::String:
                tag(ValueTag::String);
                string(held.text());
                break;
            case VarType::Raw:
                tag(ValueTag::Raw);
                block(held.rawBytes());
                break;
            case VarType::Bool:
                tag(ValueTag::Bool);
                out_.u8(held.boolValue() ? 1 : 0);
                break;
            case VarType::Array:
                items(ValueTag::Array, held.items());
                break;
            case VarType::Multi:
                items(ValueTag::Multi, held.values());
                break;
            case VarType::Table:
                table(held.table());
                break;
            case VarType::Function:
                function(held.function());
                break;
            default:
                tag(ValueTag::Nil);
                break;
        }
    }
    void items(ValueTag kind, const std::vector<Variable>& values) {
        tag(kind);
        out_.u32(static_cast<std::uint32_t>(values.size()));
        for (const Variable& item : values) value(item);
    }
    void table(const TableObject& entries) {
        tag(ValueTag::Table);
        const auto sorted = entries.sortedKeys();
        out_.u32(static_cast<std::uint32_t>(sorted->keys.size()));
        for (const Ref<StringObject>& key : sorted->keys) {
            string(key->text());
            value(*entries.find(*key));
        }
    }
    void function(const ScriptCallable& callable) {
        tag(ValueTag::Function);
        out_.u8(callable.isDecay ? 1 : 0);
        out_.u8(callable.isLoadedChunk ? 1 : 0);
        out_.u32(callable.chunkIndex);
        string(callable.source.directory);
        string(callable.source.path);
        out_.u64(callable.nativeScopeIndex);
        out_.u32(static_cast<std::uint32_t>(callable.parameters.size()));
        for (const NameId parameter : callable.parameters) string(nameText(parameter));
        block(serialiseBytecode(*callable.program));
    }

    ByteWriter out_;
};

class StateReader {
public:
    StateReader(Interpreter& script, std::span<const unsigned char> bytes, const std::string& sourceName)
        : script_(script), reader_(bytes), sourceName_(sourceName) {}

    void apply() {
        std::string_view magic;
        if (!reader_.readText(stateMagic.size(), magic)) fail("truncated");
        if (magic != stateMagic) fail("bad magic");
        version_ = u32();
        if (version_ != 1 && version_ != stateVersion)
            throw std::runtime_error("Unsupported state version: " + std::to_string(version_));
        readGenerator();
        for (std::uint32_t count = u32(); count > 0; --count) {
            const std::string name = string();
            script_.pushVariable(name, value(0));
        }
        if (!reader_.atEnd()) fail("trailing data");
    }

private:
    [[noreturn]] void fail(const char* what) const {
        throw std::runtime_error(std::string("Invalid state file (") + what + "): " + sourceName_);
    }
    std::uint8_t u8() {
        std::uint8_t byte = 0;
        if (!reader_.readU8(byte)) fail("truncated");
        return byte;
    }
    std::uint32_t u32() {
        std::uint32_t number = 0;
        if (!reader_.readU32(number)) fail("truncated");
        return number;
    }
    std::string string() {
        std::string_view text;
        if (!reader_.readText(u32(), text)) fail("truncated");
        return std::string(text);
    }
    // A count is held against the bytes that are left before anything is made of it.
    std::uint32_t count(std::size_t smallestItem) {
        const std::uint32_t number = u32();
        if (number > reader_.remaining() / smallestItem) fail("truncated");
        return number;
    }

    void readGenerator() {
        const std::string text = string();
        if (text.empty()) return;
        std::istringstream stream(text);
        std::mt19937 generator;
        stream >> generator;
        if (stream.fail()) fail("bad random generator state");
        script_.generator = generator;
    }

    Variable value(int depth) {
        if (depth > maximumDepth) fail("container nesting too deep");
        switch (static_cast<ValueTag>(u8())) {
            case ValueTag::Nil:
                return {};
            case ValueTag::Int:
                return Variable::integer(static_cast<std::int32_t>(u32()));
            case ValueTag::Float:
                return Variable::number(std::bit_cast<float>(u32()));
            case ValueTag::String:
                return Variable::text(string());
            case ValueTag::Raw: {
                const std::string bytes = string();
                return Variable::raw({bytes.begin(), bytes.end()});
            }
            case ValueTag::Bool:
                return Variable::boolean(u8() != 0);
            case ValueTag::Array:
                return Variable::array(items(depth));
            case ValueTag::Multi:
                return Variable::makeMulti(items(depth));
            case ValueTag::Table:
                return table(depth);
            case ValueTag::Function:
                return function();
        }
        fail("unknown value tag");
    }
    std::vector<Variable> items(int depth) {
        std::vector<Variable> values;
        const std::uint32_t length = count(1);
        values.reserve(std::min<std::uint32_t>(length, 4096));
        for (std::uint32_t i = 0; i < length; ++i) values.push_back(value(depth + 1));
        return values;
    }
    Variable table(int depth) {
        Variable made = Variable::makeTable();
        for (std::uint32_t left = count(5); left > 0; --left) {
            std::string key = string();
            made.table().set(std::move(key), value(depth + 1));
        }
        return made;
    }
    Variable function() {
        Variable made = Variable::function(new ScriptCallable);
        ScriptCallable& callable = made.function();
        callable.isDecay = u8() != 0;
        callable.isLoadedChunk = u8() != 0;
        callable.hasRun = true;
        callable.chunkIndex = u32();
        callable.source.directory = string();
        callable.source.path = string();
        if (version_ >= 2) readNestingLevel(callable);
        for (std::uint32_t left = count(4); left > 0; --left)
            callable.parameters.push_back(internName(string()));
        std::span<const unsigned char> image;
        if (!reader_.readBytes(u32(), image)) fail("truncated");
        auto program =
            std::make_shared<BytecodeProgram>(deserialiseBytecode(image, sourceName_ + ":function"));
        if (callable.chunkIndex >= program->chunks.size()) fail("function chunk out of range");
        callable.isVariadic = declaresVariadic(*program, callable.chunkIndex);
        callable.program = std::move(program);
        script_.labels.registerCallable(callable);
        return made;
    }
    void readNestingLevel(ScriptCallable& callable) {
        std::uint64_t level = 0;
        if (!reader_.readU64(level)) fail("truncated");
        if (level >> 32 != 0) fail("function nesting level out of range");
        // Room for the levels of the blocks inside; none of these holds native variables anyway.
        constexpr std::uint64_t highest = 0xFF000000;
        callable.nativeScopeIndex = static_cast<std::uint32_t>(std::min(level, highest));
    }
    // The file does not keep this mark; the function's own declaration does.
    static bool declaresVariadic(const BytecodeProgram& program, std::uint32_t chunk) {
        for (const FunctionDeclaration& declaration : program.functionDeclarations) {
            if (declaration.bodyChunk != chunk || declaration.line >= program.lines.size()) continue;
            const auto& header = program.lines[declaration.line].functionHeader;
            return header && header->isVariadic;
        }
        return false;
    }

    Interpreter& script_;
    ByteReader reader_;
    const std::string& sourceName_;
    std::uint32_t version_ = 0;
};

}  // namespace

std::vector<unsigned char> exportState(Interpreter& script) {
    return StateWriter().write(script);
}

void importState(Interpreter& script, std::span<const unsigned char> bytes, const std::string& sourceName) {
    StateReader(script, bytes, sourceName).apply();
}

}  // namespace kelmora
