#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bindings/runtime.h"
#include "workbench/script_check.h"

namespace kelmora {

// Registers what a game finds, on a machine without a display too, for checks that run nothing.
void registerForCheck(Runtime& runtime);

// What a game comes with: its files, its libraries' and its fonts, without what it keeps while it is played.
std::shared_ptr<const AssetFiles> assetsOf(const std::filesystem::path& game);

// The boot script's text.
std::string bootSource();

// The faults of a source of a guest language: one at most.
std::vector<Diagnostic> checkGuest(Runtime& runtime, const std::string& path, const std::string& source);

}  // namespace kelmora
