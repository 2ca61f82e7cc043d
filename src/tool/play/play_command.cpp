#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "base/whole_file.h"
#include "codec/png.h"
#include "host/boot_image.h"
#include "platform/recorded_input.h"
#include "platform/window_backend.h"
#include "platform/window_core.h"
#include "tool/game_folder.h"
#include "tool/play/console.h"
#include "tool/play/game_session.h"
#include "tool/play/input_text.h"
#include "tool/play/live_reload.h"
#include "tool/play/start_place.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds timeBetweenLooks{150};
constexpr ToolOption playOptions[] = {{"--headless"},    {"--frames", true}, {"--shot", true},
                                      {"--input", true}, {"--record", true}, {"--seed", true},
                                      {"--watch"},       {"--at", true}};

void savePicture(const WindowCore& core, const std::string& path) {
    const auto* pixels = reinterpret_cast<const unsigned char*>(core.backbuffer().data());
    if (!vh::png::save_png_rgba8_file(path.c_str(), pixels, core.clientWidth(), core.clientHeight()))
        throw std::runtime_error("cannot write the picture " + path);
}

// Plays a recorded input, writes one, and ends the game after some updates.
class PlayWatcher : public UpdateWatcher {
public:
    explicit PlayWatcher(const ToolOptions& options) {
        if (const auto path = options.value("--input")) {
            const auto text = readWholeFile(*path);
            if (!text) throw UsageError("cannot read the recorded input " + *path);
            try {
                steps_ = parseRecordedInput(*text, *path);
            } catch (const std::runtime_error& error) {
                throw UsageError(error.what());
            }
        }
        frames_ = options.number("--frames", 1);
        watches_ = options.has("--watch");
        startAt_ = options.value("--at").value_or("");
        shot_ = options.value("--shot").value_or("");
        if (!shot_.empty() && !frames_) throw UsageError("--shot wants --frames, which tells when");
        if (const auto path = options.value("--record")) {
            record_.open(*path, std::ios::binary);
            if (!record_) throw UsageError("cannot write " + *path);
            record_ << "# Played by vesper play.\n";
        }
    }

    // A game is played anew with each session.
    void begin(GameSession& session, const fs::path& game, const fs::path& played) {
        reload_.reset();
        start_.reset();
        console_.emplace(session);
        overlay_ = Overlay();
        if (watches_) reload_.emplace(session, game, played);
        if (!startAt_.empty()) start_.emplace(session, startAt_);
    }
    void end() {
        console_.reset();
        reload_.reset();
        start_.reset();
    }

    void beforeUpdate(int update, WindowCore& core) override {
        update_ = update;
        if (start_) start_->beforeUpdate();
        if (reload_ && Clock::now() - lastLook_ >= timeBetweenLooks) {
            reload_->look();
            lastLook_ = Clock::now();
        }
        if (console_) console_->beforeUpdate(core);
        if (record_.is_open()) core.listen([this](const WindowEvent& event) { write(recordedLine(event)); });
        for (; next_ < steps_.size() && steps_[next_].update <= update; ++next_) {
            if (steps_[next_].event)
                core.handle(*steps_[next_].event);
            else
                due_.push_back(steps_[next_].shotPath);
        }
        if (console_) showOverlay(core);
        // A recording holds what was played, not that it was cut off.
        if (frames_ && update >= *frames_) core.requestClose();
    }

    void afterUpdate(int update, WindowCore& core) override {
        for (const std::string& path : due_) {
            savePicture(core, path);
            write("shot " + path);
        }
        due_.clear();
        if (frames_ && update == *frames_ && !shot_.empty()) {
            savePicture(core, shot_);
            tookShot_ = true;
        }
    }

    // What it was asked to do and could not, or empty.
    std::string shortfall() const {
        if (!shot_.empty() && !tookShot_)
            return "the game ended after " + std::to_string(update_) + " updates, before the picture";
        return "";
    }

private:
    void showOverlay(WindowCore& core) {
        const std::vector<OverlayLine> told = reload_ ? reload_->lines() : std::vector<OverlayLine>();
        std::vector<OverlayLine> lines = console_->lines();
        if (!console_->isOpen()) lines.insert(lines.end(), told.begin(), told.end());
        overlay_.show(core, lines, console_->caret());
    }
    void write(const std::string& line) {
        if (record_.is_open() && !line.empty()) record_ << update_ << ' ' << line << std::endl;
    }

    std::vector<RecordedStep> steps_;
    std::size_t next_ = 0;
    std::vector<std::string> due_;
    std::optional<std::int32_t> frames_;
    std::string shot_;
    bool tookShot_ = false;
    std::ofstream record_;
    int update_ = 0;
    bool watches_ = false;
    std::string startAt_;
    std::optional<LiveReload> reload_;
    std::optional<StartPlace> start_;
    std::optional<Console> console_;
    Overlay overlay_;
    Clock::time_point lastLook_{};
};

void refuseWithoutDisplay() {
    if (std::getenv("KELMORA_VIDEO") || systemDisplayIsNamed()) return;
    throw UsageError("there is no display here; --headless plays without one");
}

int playGame(ToolContext& tool, std::span<const std::string> words) {
    const ToolOptions options(words, playOptions);
    if (options.words().size() != 1) throw UsageError("play wants one game's folder");
    const fs::path game = findGame(options.words()[0]);
    const bool headless = options.has("--headless");
    if (!headless) refuseWithoutDisplay();
    const auto seed = options.number("--seed", 0);
    PlayWatcher player(options);

    std::optional<ScratchFolder> scratch;
    std::optional<KeptInCopy> kept;
    if (headless || lacksParts(game)) {
        scratch.emplace();
        copyGame(game, scratch->path());
        if (!headless) kept.emplace(game, scratch->path());
    }
    const fs::path& played = scratch ? scratch->path() : game;
    std::string failure;
    bool isAgain = false;
    int updates = 0;
    do {
        GameSession session(tool.host, bootText(), played, headless);
        if (seed) session.fixSeed(*seed);
        session.countFrom(updates);
        player.begin(session, game, played);
        failure = toldOf(game, played, session.play(player).value_or(""));
        player.end();
        std::cerr << failure << std::flush;
        isAgain = !failure.empty() && !headless && session.showFailure(failure, player);
        updates = session.updates();
    } while (isAgain);
    if (failure.empty() && !player.shortfall().empty()) {
        failure = player.shortfall() + "\n";
        std::cerr << failure;
    }
    return failure.empty() ? 0 : 1;
}

}  // namespace

extern const ToolCommand playCommand{
    "play", "GAME [OPTION...]", "play the game of a folder",
    "--headless       without a display or sound, as fast as it goes, and without saved games\n"
    "--frames N       closes the window with its Nth update\n"
    "--shot FILE      saves the picture of that update as PNG\n"
    "--input FILE     plays a recorded input\n"
    "--record FILE    records the input that arrives, in the form of --input\n"
    "--seed N         random numbers of the scripts and of VesperLua start from N wherever they are seeded\n"
    "--watch          takes over scripts and pictures as they are saved, and the game goes on where it is\n"
    "--at NAME        begins at a scene or a mark of a novel; in other games at a label\n"
    "The exit code is 1 when the game fails.\n",
    playGame};

}  // namespace kelmora
