#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "script/interpreter.h"
#include "script/line_parser.h"
#include "script/source_context.h"
#include "script/vesper_script.h"

// Each benchmark checks its answer before it counts.
namespace {

class QuietHost : public kelmora::HostServices {
public:
    void print(std::string_view) override {}
    void printError(std::string_view) override {}
    void flush() override {}
    std::FILE* openProcess(const std::string&, const std::string&) override { return nullptr; }
    int closeProcess(std::FILE*) override { return -1; }
    bool replaceFile(const std::string&, std::span<const unsigned char>) override { return false; }
};

// A source of a few thousand lines as games have them.
std::string largeSource() {
    std::string source;
    for (int i = 0; i < 500; ++i) {
        const std::string n = std::to_string(i);
        source += "function f" + n + "(a, b)\n";
        source += "    if a[\"key\"] == " + n + " and b != \"text\"\n";
        source += "        return string[\"format\"](\"%d\", a[\"key\"] * 2 + #b)\n";
        source += "    end\n    local t = {x = a, y = {1, 2, 3}}\n    return t\nend\n\n";
    }
    return source;
}

void reportLines(benchmark::State& state, const std::string& source) {
    const auto lines = static_cast<double>(std::count(source.begin(), source.end(), '\n'));
    state.counters["lines/s"] = benchmark::Counter(lines, benchmark::Counter::kIsIterationInvariantRate);
}

void parseSource(benchmark::State& state) {
    kelmora::SourceContext context;
    const std::string source = largeSource();
    for (auto _ : state) benchmark::DoNotOptimize(kelmora::parseLines(source, context));
    reportLines(state, source);
}
BENCHMARK(parseSource)->Unit(benchmark::kMillisecond);

void compileSource(benchmark::State& state) {
    QuietHost host;
    kelmora::VesperScript script(host);
    const std::string source = largeSource();
    for (auto _ : state) benchmark::DoNotOptimize(script.compileToBytecode(source));
    reportLines(state, source);
}
BENCHMARK(compileSource)->Unit(benchmark::kMillisecond);

void readImage(benchmark::State& state) {
    QuietHost host;
    kelmora::VesperScript script(host);
    const std::string source = largeSource();
    const auto image = kelmora::VesperScript::serialiseBytecode(script.compileToBytecode(source));
    for (auto _ : state) benchmark::DoNotOptimize(kelmora::VesperScript::deserialiseBytecode(image, "image"));
    reportLines(state, source);
}
BENCHMARK(readImage)->Unit(benchmark::kMillisecond);

void runProgram(benchmark::State& state, const char* source, std::int32_t expected) {
    QuietHost host;
    kelmora::VesperScript script(host);
    const auto program = std::make_shared<kelmora::BytecodeProgram>(script.compileToBytecode(source));
    const auto answer = [&] { return script.interpreter().runBytecodeProgram(program); };
    if (const kelmora::Variable result = answer(); !result.isInt() || result.intValue() != expected) {
        state.SkipWithError(("wrong answer: " + result.toString()).c_str());
        return;
    }
    for (auto _ : state) benchmark::DoNotOptimize(answer());
}

constexpr const char* callSource =
    "function fib(n)\n"
    "    if n < 2\n"
    "        return n\n"
    "    end\n"
    "    return fib(n - 1) + fib(n - 2)\n"
    "end\n"
    "return fib(20)\n";
BENCHMARK_CAPTURE(runProgram, call, callSource, 6765)->Unit(benchmark::kMillisecond);

constexpr const char* loopSource =
    "sum = 0\n"
    "for i = 1, 100000\n"
    "    if i % 3 == 0\n"
    "        sum += i\n"
    "    end\n"
    "end\n"
    "return sum\n";
BENCHMARK_CAPTURE(runProgram, loop, loopSource, 1666683333)->Unit(benchmark::kMillisecond);

constexpr const char* tableSource =
    "counts = {}\n"
    "for i = 1, 20000\n"
    "    local key = \"k\" + i % 100\n"
    "    counts[key] = (counts[key] or 0) + 1\n"
    "    list[i] = i\n"
    "end\n"
    "sum = 0\n"
    "for k, v in pairs(counts)\n"
    "    sum += v\n"
    "end\n"
    "for i, v in ipairs(list)\n"
    "    sum += v % 2\n"
    "end\n"
    "list = not\n"
    "return sum\n";
BENCHMARK_CAPTURE(runProgram, table, tableSource, 30000)->Unit(benchmark::kMillisecond);

constexpr const char* stringSource =
    "text = \"\"\n"
    "for i = 1, 5000\n"
    "    text += \"word\" + i + \" \"\n"
    "end\n"
    "text = string[\"gsub\"](text, \"word(%d+)\", \"<\\\\1>\")\n"
    "count = 0\n"
    "for number in string[\"gmatch\"](text, \"%d+\")\n"
    "    count += toNumber(number) % 2\n"
    "end\n"
    "return count\n";
BENCHMARK_CAPTURE(runProgram, string, stringSource, 2500)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
