#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "host/registration.h"
#include "script/table_object.h"
#include "support/capture_host.h"

namespace {

using kelmora::Variable;

// Reads nested values off the input's bytes.
class ValueReader {
public:
    explicit ValueReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool isDone() const { return at_ >= bytes_.size(); }
    // Nothing stands in no container, and no numeric keys stand alone: Lua's tables keep no places for them.
    Variable read(int depth = 0) {
        const std::uint8_t kind = take();
        if (depth > 80) return Variable::integer(kind);
        switch (kind % 9) {
            case 0:
                return depth == 0 ? Variable() : Variable::boolean(true);
            case 1:
                return Variable::integer(static_cast<std::int32_t>(take() * 0x01010101u));
            case 2:
                return Variable::number(static_cast<float>(take()) / 8.0f - 16.0f);
            case 3:
                return Variable::text(text());
            case 4:
                return Variable::boolean(take() % 2 == 0);
            case 5:
            case 6: {
                std::vector<Variable> items;
                for (int count = take() % 5; count > 0; --count) items.push_back(read(depth + 1));
                return Variable::array(std::move(items));
            }
            case 7: {
                Variable table = Variable::makeTable();
                table.table().set("key", read(depth + 1));
                for (int count = take() % 5; count > 0; --count) table.table().set(key(), read(depth + 1));
                return table;
            }
            default: {
                // A chain, to reach the limit of nesting with few bytes.
                Variable inner = read(depth + 1);
                for (int count = take() % 70; count > 0; --count) {
                    std::vector<Variable> one;
                    one.push_back(std::move(inner));
                    inner = Variable::array(std::move(one));
                }
                return inner;
            }
        }
    }

private:
    std::uint8_t take() { return isDone() ? std::uint8_t{0} : bytes_[at_++]; }
    std::string text() {
        std::string letters;
        for (int count = take() % 6; count > 0; --count) letters += static_cast<char>(take());
        return letters;
    }
    std::string key() { return take() % 2 == 0 ? std::to_string(take() % 12 - 2) : text(); }

    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

// A value that has been through a guest has its final shape: it comes through both guests unchanged.
constexpr const char* program = R"vs(
function through(module, name, value)
    module["setVar"](name, value)
    return module["getVar"](name)
end
function bridge(value)
    local ok, once = pcall(through, Lua, "value", value)
    local okToo, other = pcall(through, Ruby, "value", value)
    if ok != okToo
        return "one guest took it: " + toString(once) + " " + toString(other)
    end
    if not ok
        return ""
    end
    local first = toString(once)
    if toString(other) != first
        return "the guests differ: " + first + " " + toString(other)
    end
    Lua["setVar"]("value", once)
    Ruby["runScript"]("value = lua_var('value')")
    Lua["runScript"]("value = ruby_var('value') vesper_var('back', value)")
    if toString(back) != first
        return "it came back changed: " + first + " " + toString(back)
    end
    return ""
end
)vs";

}  // namespace

// Random values through both bridges and back give the same everywhere, or the same refusal.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelmora;
    static CaptureHost host;
    static Runtime& runtime = [&]() -> Runtime& {
        static Runtime made(host);
        registerFunctions(made);
        made.engine.runScript(program);
        return made;
    }();
    ValueReader reader({data, size});
    for (int count = 0; count < 4 && !reader.isDone(); ++count) {
        runtime.engine.pushVariable("given", reader.read());
        runtime.engine.runScript("outcome = bridge(given)");
        const Variable outcome = runtime.engine.pullVariable("outcome");
        if (outcome.text().empty()) continue;
        std::fprintf(stderr, "%s\n", std::string(outcome.text()).c_str());
        std::abort();
    }
    return 0;
}
