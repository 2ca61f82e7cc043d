#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "bindings/runtime.h"
#include "support/capture_host.h"
#include "support/temporary_folder.h"

namespace kelmora {

// A game of games/ in a folder of its own, played without a display or sound, its screenshots gathered in
// `made`.
class StagedGame : public testing::Test {
protected:
    explicit StagedGame(const std::string& name);
    // A game from another folder than games/.
    StagedGame(const std::string& name, const std::filesystem::path& folder);
    ~StagedGame() override;

    // Runs the boot script over it; a start script of the test's own is copied beside the game's.
    void play();
    void play(const std::filesystem::path& startScript);

    // The sums of the frames that were made, compared with the stored ones. KELMORA_STORE_FRAMES=1 stores
    // them.
    void expectStoredFrames();

    std::filesystem::path package() const { return root_ / "Resources/package"; }

    std::string name_;
    TemporaryFolder root_;
    CaptureHost host_;
    Runtime runtime_{host_};
};

// The pictures' sums by name, one pair a line: CRC-32 of the pixels, so that the way of packing does not
// count.
std::string frameSums(const std::filesystem::path& folder);

extern const std::filesystem::path sourceDirectory;

}  // namespace kelmora
