#include <benchmark/benchmark.h>

#include <regex>
#include <string>

#include "base/regex/regex.h"

// All matches in a text of a few dozen kilobytes, ours beside the standard library's.
namespace {

using kelmora::regex::MatchIterator;
using kelmora::regex::Pattern;
using kelmora::regex::Scratch;

const std::string& text() {
    static const std::string content = [] {
        std::string result;
        for (int i = 0; i < 400; ++i) {
            result += "The quick brown fox no " + std::to_string(i * 37) + " jumps over the lazy dog;\n";
            result +=
                "  name" + std::to_string(i) + "=value" + std::to_string(i % 17) + ", key = \"some text\"\n";
        }
        return result;
    }();
    return content;
}

struct Subject {
    const char* name;
    const char* pattern;
    bool ignoreCase;
};
constexpr Subject subjects[] = {
    {"digits", "\\d+", false},
    {"letters", "[A-Za-z]+", false},
    {"pair", "(\\w+)=(\\w+)", false},
    {"literal", "lazy", false},
    {"literalIgnoringCase", "LAZY", true},
    {"lazyUntil", ".*?x", false},
    {"line", ".*", false},
    {"quoted", "\"([^\"]*)\"", false},
    {"words", "fox|dog|cat", false},
    {"spaces", "^\\s+|\\s+$", false},
    {"group", "(?:[a-z]+ )+", false},
    {"wordThen", "\\b(\\w+)\\s+(\\w+)\\b", false},
    {"capturedLoop", "(a|b|o)*x", false},
};

std::size_t countOurs(const Pattern& pattern, Scratch& scratch) {
    std::size_t sum = 0;
    MatchIterator matches(pattern, text(), scratch);
    while (matches.next()) sum += matches.match().end + 1;
    return sum;
}

std::size_t countStandard(const std::regex& pattern) {
    std::size_t sum = 0;
    const std::string& subject = text();
    for (std::sregex_iterator at(subject.begin(), subject.end(), pattern), end; at != end; ++at)
        sum += static_cast<std::size_t>(at->position() + at->length()) + 1;
    return sum;
}

std::regex standardPattern(const Subject& subject) {
    return std::regex(subject.pattern, subject.ignoreCase ? std::regex::ECMAScript | std::regex::icase
                                                          : std::regex::ECMAScript);
}

void ours(benchmark::State& state, const Subject& subject) {
    const Pattern pattern = Pattern::compile(subject.pattern, subject.ignoreCase);
    Scratch scratch;
    if (countOurs(pattern, scratch) != countStandard(standardPattern(subject)))
        return state.SkipWithError("other matches than the standard library's");
    for (auto _ : state) benchmark::DoNotOptimize(countOurs(pattern, scratch));
}

void standard(benchmark::State& state, const Subject& subject) {
    const std::regex pattern = standardPattern(subject);
    for (auto _ : state) benchmark::DoNotOptimize(countStandard(pattern));
}

}  // namespace

int main(int argc, char** argv) {
    for (const Subject& subject : subjects) {
        benchmark::RegisterBenchmark((std::string(subject.name) + "/ours").c_str(), ours, subject);
        benchmark::RegisterBenchmark((std::string(subject.name) + "/standard").c_str(), standard, subject);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
