#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <vector>

#include "base/whole_file.h"
#include "race.h"
#include "support/capture_host.h"
#include "tool/document_texts.h"
#include "tool/editor/file_uri.h"
#include "tool/editor/language_server.h"
#include "tool/game_check.h"
#include "tool/source_files.h"

// What an author waits for, in one process: a check of all games beside a compilation of the same files, and
// completion at every tenth line of the largest script beside a check of it. Run it at the root of the
// checkout.
namespace {

using namespace kelmora;
namespace fs = std::filesystem;

constexpr int repetitions = 21;

struct Script {
    std::string path;
    std::string source;
};

// Milliseconds of processor time: the median.
double timed(const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) times.push_back(1000 * secondsOf(work, Clock::Processor));
    return median(std::move(times));
}

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

void checkBesideCompile(Runtime& runtime, const std::vector<Script>& scripts) {
    std::size_t bytes = 0;
    const double compile = timed([&] {
        bytes = 0;
        for (const Script& script : scripts)
            bytes +=
                VesperScript::serialiseBytecode(runtime.engine.compileToBytecode(script.source, script.path))
                    .size();
    });
    std::size_t faults = 0;
    const double check = timed([&] {
        ScriptCheck made(runtime.engine);
        made.addHostScript(bootSource());
        for (const Script& script : scripts) made.add(script.path, script.source);
        faults = made.run().size();
    });
    require(bytes > 0 && faults < 3, "the games do not compile, or have faults");
    std::printf("check of all games, %zu files   %.2f ms, compile %.2f ms, ratio %.2f\n", scripts.size(),
                check, compile, check / compile);
}

void completionBesideCheck(Runtime& runtime, const Script& script) {
    std::size_t items = 0;
    LanguageServer server(runtime, wordBook(), [&](const Json& message) {
        if (message.contains("result") && message.at("result").contains("items"))
            items += message.at("result").at("items").size();
    });
    const Json document{{"uri", uriOfPath(fs::absolute(script.path).string())}};
    Json opened = document;
    opened["text"] = script.source;
    server.handle(R"({"id": 0, "method": "initialize", "params": {}})");
    server.handle(Json{{"method", "textDocument/didOpen"}, {"params", {{"textDocument", opened}}}}.dump());
    std::vector<std::string> requests;
    const auto lines = std::count(script.source.begin(), script.source.end(), '\n');
    for (std::int64_t line = 0; line < lines; line += 10)
        for (const int column : {0, 6}) {
            const Json position{{"line", line}, {"character", column}};
            const Json params{{"textDocument", document}, {"position", position}};
            requests.push_back(
                Json{{"id", 1}, {"method", "textDocument/completion"}, {"params", params}}.dump());
        }
    const double all = timed([&] {
        items = 0;
        for (const std::string& request : requests) server.handle(request);
    });
    require(items > requests.size(), "nothing was completed");
    const double completion = all / static_cast<double>(requests.size());
    const Json change{{"textDocument", document}, {"contentChanges", {{{"text", script.source}}}}};
    const std::string changed = Json{{"method", "textDocument/didChange"}, {"params", change}}.dump();
    const double typed = timed([&] {
        server.handle(changed);
        server.idle();
    });
    const double check = timed([&] {
        ScriptCheck made(runtime.engine);
        made.addHostScript(bootSource());
        made.add(script.path, script.source);
        made.run();
    });
    std::printf("completion in %s   %.3f ms, check of it %.2f ms, ratio %.3f; faults as one types %.2f ms\n",
                script.path.c_str(), completion, check, completion / check, typed);
}

}  // namespace

int main() {
    CaptureHost host;
    Runtime runtime(host);
    registerForCheck(runtime);
    std::vector<Script> scripts;
    for (const std::string& path : sourcesBelow("games"))
        if (isVesperScript(path)) scripts.push_back({path, readWholeFile(path).value_or("")});
    require(!scripts.empty(), "no games here");
    checkBesideCompile(runtime, scripts);
    completionBesideCheck(
        runtime, *std::max_element(scripts.begin(), scripts.end(), [](const Script& a, const Script& b) {
            return a.source.size() < b.source.size();
        }));
}
