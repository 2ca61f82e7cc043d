#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "base/whole_file.h"
#include "tool/project_files.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"
#include "workbench/nearest.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

constexpr ToolOption newOptions[] = {{"--kind", true}, {"--font", true}};
constexpr std::size_t longestName = 64;

std::string lowered(std::string text) {
    for (char& letter : text) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return text;
}

// Windows keeps these for devices, with any ending.
bool isDeviceName(const std::string& name) {
    const std::string stem = lowered(name.substr(0, name.find('.')));
    if (stem == "con" || stem == "prn" || stem == "aux" || stem == "nul") return true;
    return stem.size() == 4 && (stem.starts_with("com") || stem.starts_with("lpt")) && stem[3] >= '0' &&
           stem[3] <= '9';
}

// A name is good on both systems, and inside a script's string.
void refuseBadName(const std::string& name) {
    const auto isBad = [](char letter) {
        const auto byte = static_cast<unsigned char>(letter);
        return byte < 128 && !std::isalnum(byte) && !std::strchr(" -_.',", letter);
    };
    if (name.empty() || name.size() > longestName || std::any_of(name.begin(), name.end(), isBad) ||
        name.front() == '.' || name.front() == '-' || name.front() == ' ' || name.back() == '.' ||
        name.back() == ' ' || isDeviceName(name))
        throw UsageError("\"" + name +
                         "\" is no name for a folder: up to 64 letters, digits, blanks and - _ . ' ,");
}

std::string projectKind(const ToolOptions& options) {
    const std::vector<std::string> kinds{"novel", "arcade", "walk"};
    const std::string kind = options.value("--kind").value_or(kinds[0]);
    if (std::find(kinds.begin(), kinds.end(), kind) != kinds.end()) return kind;
    const std::string near = nearestWord(kind, kinds);
    throw UsageError("unknown kind " + kind +
                     (near.empty() ? "; there are novel, arcade and walk" : "; did you mean " + near + "?"));
}

std::string named(std::string text, const std::string& name) {
    constexpr std::string_view mark = "@NAME@";
    for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos; at += name.size())
        text.replace(at, mark.size(), name);
    return text;
}

void write(const fs::path& path, std::string_view content) {
    fs::create_directories(path.parent_path());
    if (!writeWholeFile(path.string(), content)) throw std::runtime_error("cannot write " + path.string());
}

void writeFiles(const fs::path& game, const std::string& kind, const std::string& name) {
    for (const ProjectFile& file : projectFiles()) {
        if (!file.path.starts_with(kind + "/")) continue;
        const std::string text(file.bytes.begin(), file.bytes.end());
        write(game / file.path.substr(kind.size() + 1), named(text, name));
    }
}

// A font that most systems have; empty where none of them is there.
fs::path systemFont() {
    const char* windows = std::getenv("WINDIR");
    const std::string folder = windows ? std::string(windows) + "/Fonts/" : "";
    const std::string linux = "/usr/share/fonts/truetype/";
    for (const std::string& path :
         {linux + "gentiumplus/GentiumBookPlus-Regular.ttf", linux + "dejavu/DejaVuSerif.ttf",
          linux + "liberation/LiberationSerif-Regular.ttf", linux + "freefont/FreeSerif.ttf",
          linux + "dejavu/DejaVuSans.ttf", folder + "georgia.ttf", folder + "times.ttf", folder + "arial.ttf",
          folder + "tahoma.ttf"}) {
        std::error_code ignored;
        if (fs::is_regular_file(path, ignored)) return path;
    }
    return {};
}

fs::path chosenFont(const ToolOptions& options) {
    const auto asked = options.value("--font");
    if (!asked) return systemFont();
    std::error_code ignored;
    if (!fs::is_regular_file(*asked, ignored)) throw UsageError("there is no font " + *asked);
    return *asked;
}

void addFont(const fs::path& game, const fs::path& font) {
    const fs::path target = game / "Resources/package/fonts/words.ttf";
    fs::create_directories(target.parent_path());
    if (font.empty()) {
        std::cout << "No font was found: put one there as " << target.generic_string() << ".\n";
        return;
    }
    fs::copy_file(font, target);
    std::cout << "Its font is a copy of " << font.generic_string()
              << "; before giving the game away, see that the font's licence allows it.\n";
}

int makeProject(ToolContext&, std::span<const std::string> words) {
    const ToolOptions options(words, newOptions);
    if (options.words().size() != 1) throw UsageError("new wants one name");
    const std::string& name = options.words()[0];
    refuseBadName(name);
    const std::string kind = projectKind(options);
    const fs::path font = kind == "novel" ? chosenFont(options) : fs::path();
    if (kind != "novel" && options.has("--font")) throw UsageError("only novels have a font");

    std::error_code error;
    if (!fs::create_directory(name, error)) {
        if (error) throw std::runtime_error("cannot make the folder " + name + ": " + error.message());
        throw UsageError(name + " is there already; nothing was changed");
    }
    try {
        writeFiles(name, kind, name);
        if (kind == "novel") addFont(name, font);
    } catch (...) {
        fs::remove_all(name, error);
        throw;
    }
    const std::string shown = name.find(' ') == std::string::npos ? name : "\"" + name + "\"";
    std::cout << "Made " << name << ". Begin with " << name << "/README.md, or at once:\n    vesper play "
              << shown << "\n    vesper check " << shown << "\n    vesper test " << shown << "\n";
    return 0;
}

}  // namespace

extern const ToolCommand newCommand{
    "new", "NAME [--kind KIND] [--font FILE]", "make a game that plays at once",
    "Makes the folder NAME, with a game to begin from: a `novel` on the library for novels (the usual "
    "kind),\n"
    "an `arcade` game that is drawn by hand, or a `walk` through a world of tiles. Each has a README.md, a\n"
    "recorded input and tests. A novel gets a copy of a font: FILE, or one of the system's. A folder that "
    "is\n"
    "there is left as it is.\n",
    makeProject};

}  // namespace kelmora
