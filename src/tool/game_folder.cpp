#include "tool/game_folder.h"

#include <algorithm>
#include <fstream>
#include <random>

#include "tool/tool_options.h"

namespace kelmora {

namespace fs = std::filesystem;

namespace {

// A file, or a folder with all that is in it, into one that may be there: fs::copy refuses that on Windows.
void copyTree(const fs::path& source, const fs::path& target) {
    if (!fs::is_directory(source)) {
        fs::copy_file(source, target, fs::copy_options::overwrite_existing);
        return;
    }
    fs::create_directories(target);
    for (const auto& entry : fs::directory_iterator(source))
        copyTree(entry.path(), target / entry.path().filename());
}

// The lines of a list without their line ends; none of a file that is not there.
std::vector<std::string> linesOf(const fs::path& list) {
    std::vector<std::string> lines;
    std::ifstream file(list);
    for (std::string line; std::getline(file, line);) {
        while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
        if (!line.empty()) lines.push_back(line);
    }
    return lines;
}

}  // namespace

fs::path findGame(const std::string& path) {
    std::error_code error;
    const fs::path game = fs::absolute(path, error).lexically_normal();
    if (error || !fs::is_directory(game, error)) throw UsageError("there is no folder " + path);
    if (!fs::is_regular_file(game / "Resources/package/graphics.vs", error))
        throw UsageError(path + " is no game: it has no Resources/package/graphics.vs");
    return game;
}

std::vector<fs::path> librariesOf(const fs::path& game) {
    std::vector<fs::path> found;
    for (const std::string& library : linesOf(game / "libraries.txt")) {
        const fs::path source = game.parent_path() / "library" / library;
        if (!fs::exists(game / "Libraries" / library) && fs::is_directory(source)) found.push_back(source);
    }
    return found;
}

std::vector<std::string> fontsOf(const fs::path& game) {
    return linesOf(game / "fonts.txt");
}

ScratchFolder::ScratchFolder() {
    std::random_device random;
    const fs::path parent = fs::temp_directory_path();
    do path_ = parent / ("kelmora-" + std::to_string(random()));
    while (!fs::create_directory(path_));
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void copyGame(const fs::path& game, const fs::path& target) {
    fs::create_directories(target / "Resources/volatile");
    for (const auto& entry : fs::directory_iterator(game / "Resources"))
        if (entry.path().filename() != "volatile")
            copyTree(entry.path(), target / "Resources" / entry.path().filename());
    fs::create_directories(target / "Libraries");
    if (fs::is_directory(game / "Libraries")) copyTree(game / "Libraries", target / "Libraries");
    for (const fs::path& library : librariesOf(game))
        copyTree(library, target / "Libraries" / library.filename());
    const fs::path fonts = target / "Resources/package/fonts";
    for (const std::string& font : fontsOf(game)) {
        fs::create_directories(fonts);
        if (fs::is_regular_file(font))
            fs::copy_file(font, fonts / fs::path(font).filename(), fs::copy_options::overwrite_existing);
    }
}

bool lacksParts(const fs::path& game) {
    const fs::path fonts = game / "Resources/package/fonts";
    const std::vector<std::string> wanted = fontsOf(game);
    return !librariesOf(game).empty() || std::any_of(wanted.begin(), wanted.end(), [&](const fs::path& font) {
        return fs::is_regular_file(font) && !fs::exists(fonts / font.filename());
    });
}

KeptInCopy::KeptInCopy(const fs::path& game, const fs::path& copy)
    : original_(game / "Resources/volatile"), copy_(copy / "Resources/volatile") {
    if (fs::is_directory(original_)) copyTree(original_, copy_);
}

KeptInCopy::~KeptInCopy() try {
    copyTree(copy_, original_);
    std::vector<fs::path> gone;
    for (const auto& entry : fs::recursive_directory_iterator(original_))
        if (!fs::exists(copy_ / entry.path().lexically_relative(original_))) gone.push_back(entry.path());
    for (const fs::path& path : gone) fs::remove_all(path);
} catch (const fs::filesystem_error&) {  // a folder that cannot be written to keeps nothing
}

std::map<fs::path, fs::path> watchedFolders(const fs::path& game, const fs::path& played) {
    std::map<fs::path, fs::path> folders{{game / "Resources", played / "Resources"}};
    if (fs::is_directory(game / "Libraries")) folders[game / "Libraries"] = played / "Libraries";
    for (const std::string& library : linesOf(game / "libraries.txt")) {
        const fs::path source = game.parent_path() / "library" / library;
        if (!fs::exists(game / "Libraries" / library) && fs::is_directory(source))
            folders[source] = played / "Libraries" / library;
    }
    return folders;
}

std::string toldOf(const fs::path& game, const fs::path& copy, std::string failure) {
    const auto replaceAll = [&](const std::string& from, const std::string& to) {
        for (std::size_t at = 0; (at = failure.find(from, at)) != std::string::npos; at += to.size())
            failure.replace(at, from.size(), to);
    };
    replaceAll(copy.generic_string() + "/", game.generic_string() + "/");
    replaceAll("/Resources/../", "/");
    return failure;
}

}  // namespace kelmora
