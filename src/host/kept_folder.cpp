#include "host/kept_folder.h"

#include <array>
#include <filesystem>
#include <fstream>

#include "base/kept_place.h"
#include "base/whole_file.h"
#include "host/failure_page.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

bool takesFiles(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    const std::string probe = folder + "writable.tmp";
    if (!writeWholeFile(probe, "")) return false;
    fs::remove(probe, error);
    return true;
}

// What its package says, else its folder's name.
std::string gameName(const Runtime& runtime) {
    std::ifstream mark(runtime.path + "../Resources/packed.txt");
    std::string name;
    std::getline(mark, name);
    while (!name.empty() && (name.back() == '\r' || name.back() == ' ')) name.pop_back();
    if (name.empty() || name.find_first_of("/\\:") != std::string::npos || name.front() == '.')
        name = fs::path(runtime.path + "..").lexically_normal().parent_path().filename().string();
    return name.empty() ? "Kelmora" : name;
}

}  // namespace

void chooseKeptFolder(Runtime& runtime) {
    if (!isPacked(runtime) || takesFiles(runtime.usualKeptFolder())) return;
    std::array<char, 4096> data{};
    if (!platform_user_data_directory(data.data(), data.size())) return;
    const std::string place = VesperScript::normalisePath(data.data()) + gameName(runtime) + "/";
    if (!takesFiles(place)) return;
    runtime.keptElsewhere = place;
    keepElsewhere(runtime.usualKeptFolder(), place);
}

}  // namespace kelmora
