#include <algorithm>
#include <iostream>

#include "base/whole_file.h"
#include "host/boot_image.h"
#include "tool/game_folder.h"
#include "tool/play/test_player.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

// Given files, or all that the game has.
std::vector<fs::path> testsOf(const fs::path& game, std::span<const std::string> files) {
    std::vector<fs::path> tests;
    for (const std::string& file : files) {
        if (!fs::is_regular_file(file)) throw UsageError("there is no test " + file);
        tests.push_back(fs::path(file).lexically_normal());
    }
    if (!tests.empty()) return tests;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(game / "tests", none))
        if (entry.is_regular_file() && entry.path().extension() == ".txt") tests.push_back(entry.path());
    std::sort(tests.begin(), tests.end());
    if (tests.empty()) throw UsageError("the game has no tests: they are files tests/*.txt");
    return tests;
}

std::vector<PlayStep> readTest(const fs::path& test) {
    const auto text = readWholeFile(test.string());
    if (!text) throw UsageError("cannot read " + test.string());
    try {
        return parsePlayScript(*text, test.generic_string());
    } catch (const std::runtime_error& error) {
        throw UsageError(error.what());
    }
}

bool playTest(HostServices& host, const fs::path& game, const fs::path& test,
              const std::vector<PlayStep>& steps) {
    const ScratchFolder scratch;
    copyGame(game, scratch.path());
    GameSession session(host, bootText(), scratch.path(), true);
    TestPlayer player(session, steps, test.parent_path());
    const std::optional<std::string> error = session.play(player);

    const std::string name = test.generic_string();
    for (const std::string& note : player.notes()) std::cout << name << ": " << note << '\n';
    const bool hasPassed = player.isDone() && !error;
    std::cout << name;
    if (hasPassed) {
        std::cout << ": passed, " << steps.size() << " steps, " << player.updates() << " updates\n";
    } else {
        if (player.line() > 0) std::cout << ':' << player.line();
        std::cout << ": failed: "
                  << (!player.failure().empty() ? player.failure()
                      : error                   ? "the game failed"
                                                : "the game ended before this step")
                  << '\n';
    }
    std::cout << std::flush;
    std::cerr << toldOf(game, scratch.path(), error.value_or("")) << std::flush;
    return hasPassed;
}

int testGame(ToolContext& tool, std::span<const std::string> words) {
    const ToolOptions options(words, {});
    if (options.words().empty()) throw UsageError("test wants a game's folder");
    const fs::path game = findGame(options.words()[0]);
    const std::vector<fs::path> tests = testsOf(options.words()[0], std::span(options.words()).subspan(1));
    // All are read before the first is played: a slip is told at once.
    std::vector<std::vector<PlayStep>> steps;
    for (const fs::path& test : tests) steps.push_back(readTest(test));

    std::size_t passed = 0;
    for (std::size_t i = 0; i < tests.size(); ++i)
        if (playTest(tool.host, game, tests[i], steps[i])) ++passed;
    std::cout << passed << " of " << tests.size() << " passed\n";
    return passed == tests.size() ? 0 : 1;
}

}  // namespace

extern const ToolCommand testCommand{
    "test", "GAME [FILE...]", "play the tests of a game and report",
    "Plays the files, or tests/*.txt of the game, each headless and from the start. Lines of a test:\n"
    "press KEY                   click X Y              wait UPDATES\n"
    "choose WORDS|NUMBER         expect text WORDS      expect variable NAME VALUE\n"
    "shot FILE [within N]        # a remark\n"
    "What is expected may come within 300 updates. A shot is compared with the PNG beside the test: no\n"
    "channel may be off by more than N (0); one that is not there is stored. The exit code is 1 when a "
    "test\n"
    "failed.\n",
    testGame};

}  // namespace kelmora
