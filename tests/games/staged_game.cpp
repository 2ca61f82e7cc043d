#include "games/staged_game.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "base/whole_file.h"
#include "codec/crc32.h"
#include "codec/png.h"
#include "host/boot_image.h"
#include "host/startup.h"
#include "image/image_registry.h"
#include "support/environment.h"
#include "support/places.h"

namespace kelmora {

namespace fs = std::filesystem;

const fs::path sourceDirectory = sourceFolder();

namespace {

std::string pictureSum(const fs::path& path) {
    vh::png::Image image;
    if (!vh::png::load_file(path.string().c_str(), image)) return "unreadable";
    std::ostringstream text;
    text << image.width << 'x' << image.height << '-' << std::hex << vh::png::crc32(image.pixels);
    return text.str();
}

// Fonts are no part of a game's folder: its list names the system's.
void stageFonts(const fs::path& list, const fs::path& folder) {
    std::ifstream lines(list);
    fs::create_directories(folder);
    for (std::string line; std::getline(lines, line);)
        if (fs::exists(line)) fs::copy_file(line, folder / fs::path(line).filename());
}

void stageLibraries(const fs::path& list, const fs::path& folder) {
    std::ifstream lines(list);
    for (std::string line; std::getline(lines, line);)
        fs::copy(sourceDirectory / "games/library" / line, folder / line, fs::copy_options::recursive);
}

}  // namespace

std::string frameSums(const fs::path& folder) {
    std::map<std::string, std::string> sums;
    for (const auto& entry : fs::directory_iterator(folder))
        sums[entry.path().filename().string()] = pictureSum(entry.path());
    std::string text;
    for (const auto& [name, sum] : sums) text += name + " " + sum + "\n";
    return text;
}

StagedGame::StagedGame(const std::string& name) : StagedGame(name, sourceDirectory / "games" / name) {}

StagedGame::StagedGame(const std::string& name, const fs::path& game) : name_(name) {
    for (const char* folder : {"bin", "made", "Libraries"}) fs::create_directories(root_ / folder);
    fs::copy(game / "Resources", root_ / "Resources", fs::copy_options::recursive);
    fs::create_directories(root_ / "Resources/volatile");
    stageLibraries(game / "libraries.txt", root_ / "Libraries");
    stageFonts(game / "fonts.txt", package() / "fonts");
    setEnvironment("KELMORA_VIDEO", "memory");
    setEnvironment("KELMORA_AUDIO", "memory");
    setEnvironment("KELMORA_SHOTS", (root_ / "made").string().c_str());
    runtime_.path = (root_ / "bin/").generic_string();
    registerFunctions(runtime_);
}

StagedGame::~StagedGame() {
    for (const char* name : {"KELMORA_VIDEO", "KELMORA_INPUT", "KELMORA_SHOTS"})
        setEnvironment(name, nullptr);
    // Scripts own their images until they kill them.
    while (!livePlushImages.empty()) killPlushImage(*livePlushImages.begin());
}

void StagedGame::play() {
    runtime_.engine.pushVariable("fastForward", Variable::boolean(true));
    runEmbeddedStartupScript(runtime_, bootImage(), startupSourcePath(runtime_));
}

void StagedGame::play(const fs::path& startScript) {
    fs::copy_file(startScript, root_ / "Resources/scripts" / startScript.filename());
    runtime_.engine.pushVariable("VESPER_SCRIPT", Variable::text(startScript.filename().string()));
    play();
}

void StagedGame::expectStoredFrames() {
    std::string list = name_ + "_frames.txt";
    std::replace(list.begin(), list.end(), '-', '_');
    const std::string path = (sourceDirectory / "tests/games" / list).string();
    const std::string seen = frameSums(root_ / "made");
    if (std::getenv("KELMORA_STORE_FRAMES")) {
        EXPECT_TRUE(writeWholeFile(path, seen));
    }
    EXPECT_EQ(seen, readWholeFile(path));
}

}  // namespace kelmora
