#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <iostream>
#include <optional>

#include "base/whole_file.h"
#include "host/boot_image.h"
#include "shim/shim.h"
#include "tool/game_folder.h"
#include "tool/play/kept_pictures.h"
#include "tool/play/roam_player.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr ToolOption roamOptions[] = {
    {"--seed", true}, {"--runs", true}, {"--frames", true}, {"--seconds", true}};
constexpr std::int32_t usualRuns = 20;
constexpr std::int32_t usualFrames = 3000;

// What a game prints is not what is asked for here.
class SilentHost : public ConsoleHost {
public:
    void print(std::string_view) override {}
    void printError(std::string_view) override {}
};

struct RoamPlan {
    fs::path game;
    std::string shown;  // the game as the author named it
    std::int32_t seed = 1;
    std::int32_t runs = usualRuns;
    std::int32_t frames = usualFrames;
    std::optional<std::int32_t> seconds;
};

struct RoamFailure {
    std::string text;
    int run = 0;
    int update = 0;
    std::int32_t seed = 0;
    std::string recording;
    int times = 1;
};

// Every run has its own luck, all of it from the one seed.
std::int32_t seedOfRun(std::int32_t seed, std::int32_t run) {
    std::uint32_t mixed = static_cast<std::uint32_t>(seed) * 2654435761u + static_cast<std::uint32_t>(run);
    mixed = (mixed ^ (mixed >> 16)) * 0x45d9f3bu;
    return static_cast<std::int32_t>((mixed ^ (mixed >> 16)) & 0x7fffffffu);
}

std::string quotedWord(const std::string& word) {
    return word.find(' ') == std::string::npos ? word : "\"" + word + "\"";
}

// Where a fault of the engine itself ends the tool, the last words say how to have it again.
char lastWords[1024];

void tellCrash(int signal) {
    std::fputs(lastWords, stderr);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void prepareLastWords(const RoamPlan& plan, std::int32_t run) {
    const std::string again = "vesper roam " + quotedWord(plan.shown) + " --seed " +
                              std::to_string(plan.seed) + " --runs " + std::to_string(run) + " --frames " +
                              std::to_string(plan.frames);
    std::snprintf(lastWords, sizeof lastWords, "\nThe engine crashed in run %d. To have it again:\n    %s\n",
                  static_cast<int>(run), again.c_str());
    for (const int signal : {SIGSEGV, SIGFPE, SIGILL, SIGABRT}) std::signal(signal, tellCrash);
}

class Roaming {
public:
    explicit Roaming(RoamPlan plan) : plan_(std::move(plan)) { copyGame(plan_.game, scratch_.path()); }

    void playAll() {
        const auto start = Clock::now();
        const std::clock_t startOfWork = std::clock();
        const bool isWatched = platform_stdout_is_terminal();
        while (runs_ < plan_.runs) {
            if (plan_.seconds && Clock::now() - start >= std::chrono::seconds(*plan_.seconds)) break;
            if (isWatched) std::cerr << "\rrun " << runs_ + 1 << " of " << plan_.runs << std::flush;
            prepareLastWords(plan_, ++runs_);
            play(runs_);
        }
        if (isWatched) std::cerr << "\r\x1b[K";
        seconds_ = std::chrono::duration<double>(Clock::now() - start).count();
        processorSeconds_ = static_cast<double>(std::clock() - startOfWork) / CLOCKS_PER_SEC;
    }

    int report() {
        std::cout << runs_ << " runs, " << updates_ << " updates, seed " << plan_.seed << '\n'
                  << coverage_.report() << "failures   " << failures_.size() << '\n';
        for (const RoamFailure& failure : failures_) tell(failure);
        std::cout << std::flush;
        const double played = static_cast<double>(updates_) * GameSession::updateMilliseconds / 1000;
        char speed[128];
        std::snprintf(speed, sizeof speed,
                      "%.0f s of the game in %.1f s (%.1f s of processor time): %.0f times as fast\n", played,
                      seconds_, processorSeconds_, played / std::max(processorSeconds_, 0.001));
        std::cerr << speed << std::flush;
        return failures_.empty() ? 0 : 1;
    }

private:
    void play(std::int32_t run) {
        std::error_code ignored;
        fs::remove_all(scratch_.path() / "Resources/volatile", ignored);
        const std::int32_t seed = seedOfRun(plan_.seed, run);
        GameSession session(host_, bootText(), scratch_.path(), true);
        session.fixSeed(seed);
        pictures_.serve(session);
        RoamPlayer player(session, static_cast<std::uint32_t>(seed), plan_.frames, coverage_);
        const std::optional<std::string> error = session.play(player);
        updates_ += player.updates();
        coverage_.endRun(session.runtime().engine, (scratch_.path() / "Resources").generic_string() + "/");
        if (!error) return;
        std::string text = session.runtime().engine.stepLimitReached()
                               ? "The game works on and on without updating its window.\n" + *error
                               : *error;
        note({toldOf(plan_.game, scratch_.path(), std::move(text)), run, player.updates(), seed,
              player.recording()});
    }

    // The same words are the same fault.
    void note(RoamFailure failure) {
        for (RoamFailure& known : failures_)
            if (known.text == failure.text) {
                ++known.times;
                return;
            }
        failures_.push_back(std::move(failure));
    }

    void tell(const RoamFailure& failure) {
        const std::string name = plan_.game.filename().string() + "-roam-" + std::to_string(plan_.seed) +
                                 "-" + std::to_string(failure.run) + ".txt";
        std::cout << "\nrun " << failure.run << ", update " << failure.update;
        if (failure.times > 1) std::cout << ", and in " << failure.times - 1 << " more runs";
        std::cout << ":\n" << failure.text;
        const std::string head = "# Played by vesper roam: seed " + std::to_string(plan_.seed) + ", run " +
                                 std::to_string(failure.run) + ".\n";
        if (!writeWholeFile(name, head + failure.recording)) throw std::runtime_error("cannot write " + name);
        std::cout << "To have it again:\n    vesper play " << quotedWord(plan_.shown) << " --headless --seed "
                  << failure.seed << " --input " << quotedWord(name) << '\n';
    }

    RoamPlan plan_;
    ScratchFolder scratch_;
    SilentHost host_;
    KeptPictures pictures_;
    Coverage coverage_;
    std::int32_t runs_ = 0;
    std::int64_t updates_ = 0;
    double seconds_ = 0;
    double processorSeconds_ = 0;
    std::vector<RoamFailure> failures_;
};

int roamGame(ToolContext&, std::span<const std::string> words) {
    const ToolOptions options(words, roamOptions);
    if (options.words().size() != 1) throw UsageError("roam wants one game's folder");
    RoamPlan plan;
    plan.shown = options.words()[0];
    plan.game = findGame(plan.shown);
    plan.seed = options.number("--seed", 0).value_or(plan.seed);
    plan.runs = options.number("--runs", 1).value_or(plan.runs);
    plan.frames = options.number("--frames", 1).value_or(plan.frames);
    plan.seconds = options.number("--seconds", 1);
    if (plan.seconds && !options.has("--runs")) plan.runs = 1'000'000;
    Roaming roaming(std::move(plan));
    roaming.playAll();
    return roaming.report();
}

}  // namespace

extern const ToolCommand roamCommand{
    "roam", "GAME [OPTION...]", "play at random and tell what was reached",
    "Plays headless and fast, each run from the start and with nothing saved, and tells scenes, choices and\n"
    "endings of a novel that were reached and never reached, functions that were never called, and of other\n"
    "games the texts that they showed. A failure is told with the command that has it again: the input is\n"
    "recorded into a file GAME-roam-SEED-RUN.txt here. The same seed gives the same report.\n"
    "--seed N         another luck (1)\n"
    "--runs N         how many runs (20)\n"
    "--frames N       the window of a run is closed with its Nth update (3000)\n"
    "--seconds N      no further run behind so many seconds\n"
    "The exit code is 1 when the game failed in a run.\n",
    roamGame};

}  // namespace kelmora
