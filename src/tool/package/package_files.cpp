#include "tool/package/package_files.h"

#include <algorithm>
#include <stdexcept>

#include "base/byte_writer.h"
#include "base/whole_file.h"
#include "codec/png.h"
#include "font/plain_letters.h"
#include "image/image_registry.h"
#include "tool/game_folder.h"

namespace kelmora {

namespace fs = std::filesystem;

namespace {

constexpr int iconSize = 128;

std::vector<unsigned char> readBytes(const fs::path& path) {
    auto bytes = readWholeFileBytes(path.string());
    if (!bytes) throw std::runtime_error("cannot read " + path.string());
    return std::move(*bytes);
}

std::vector<unsigned char> bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

// The first letter of the game's name on a dark ground, for games without an icon of their own.
std::vector<unsigned char> plainIcon(const std::string& name, const fs::path& folder) {
    PlushImage* image = createSolidColourImage(iconSize, iconSize, 26, 34, 64, 255);
    constexpr int border = 6;
    PlainLetters::fill(*image, 0, 0, iconSize, border, {200, 154, 104});
    PlainLetters::fill(*image, 0, iconSize - border, iconSize, border, {200, 154, 104});
    PlainLetters::fill(*image, 0, 0, border, iconSize, {200, 154, 104});
    PlainLetters::fill(*image, iconSize - border, 0, border, iconSize, {200, 154, 104});
    std::string letter = name.substr(0, 1);
    if (letter[0] >= 'a' && letter[0] <= 'z') letter[0] = static_cast<char>(letter[0] - 'a' + 'A');
    constexpr int scale = 12;
    PlainLetters::draw(*image, letter, (iconSize - 5 * scale) / 2, (iconSize - 9 * scale) / 2, scale,
                       {240, 234, 220});
    const fs::path path = folder / "icon.png";
    const bool isWritten =
        vh::png::save_png_rgba8_file(path.string().c_str(), image->pixels, iconSize, iconSize);
    killPlushImage(image);
    if (!isWritten) throw std::runtime_error("cannot write " + path.string());
    return readBytes(path);
}

std::vector<unsigned char> iconOf(const PackagePlan& plan, const fs::path& scratch) {
    for (const fs::path& path : {plan.game / "icon.png", plan.game / "Resources/package/icon.png"})
        if (fs::is_regular_file(path)) return readBytes(path);
    return plainIcon(plan.name, scratch);
}

// The picture as the one entry of an icon file.
std::vector<unsigned char> windowsIcon(const std::vector<unsigned char>& png, const fs::path& scratch) {
    vh::png::Image image;
    const fs::path path = scratch / "read.png";
    if (!writeWholeFileBytes(path.string(), png) || !vh::png::load_file(path.string().c_str(), image) ||
        image.width > 256 || image.height > 256)
        throw std::runtime_error("icon.png is no picture of at most 256 pixels a side");
    ByteWriter out;
    out.u16(0);
    out.u16(1);
    out.u16(1);
    out.u8(static_cast<std::uint8_t>(image.width & 0xff));
    out.u8(static_cast<std::uint8_t>(image.height & 0xff));
    out.u16(0);
    out.u16(1);
    out.u16(32);
    out.u32(static_cast<std::uint32_t>(png.size()));
    out.u32(22);
    out.bytes(png);
    return std::move(out).take();
}

std::string launcherName(const PackagePlan& plan) {
    if (plan.system == PackageSystem::windows) return plan.name + ".cmd";
    const bool isTaken =
        plan.name == "bin" || plan.name == "Resources" || plan.name == "Libraries" || plan.name == "Licences";
    return isTaken ? "start-" + plan.name : plan.name;
}

std::string launcherText(PackageSystem system) {
    if (system == PackageSystem::windows) return "@echo off\r\nstart \"\" \"%~dp0bin\\Kelmora.exe\"\r\n";
    return "#!/bin/sh\nexec \"$(dirname \"$(readlink -f \"$0\")\")/bin/kelmora\" \"$@\"\n";
}

std::string readmeText(const PackagePlan& plan) {
    const bool isWindows = plan.system == PackageSystem::windows;
    const std::string place = isWindows ? "%LOCALAPPDATA%\\" + plan.name : "~/.local/share/" + plan.name;
    std::string text = plan.name + "\n\nStart " + launcherName(plan) + ". Nothing needs to be installed" +
                       (isWindows ? "" : "; SDL 2 shows the window and is part of most systems") +
                       ".\n\nWhat is saved lies in Resources/volatile, or in " + place +
                       "\nwhere the game is in a place that cannot be written to. If the game ever stops\nby "
                       "a fault, the file "
                       "error.txt there tells its makers why. To remove the game,\ndelete this folder" +
                       ".\n";
    if (!isWindows) return text;
    std::string lines;
    for (const char letter : text) lines += letter == '\n' ? std::string("\r\n") : std::string(1, letter);
    return lines;
}

void addTree(const fs::path& folder, const std::string& top, std::vector<ArchiveFile>& files) {
    if (!fs::is_directory(folder)) return;
    std::vector<fs::path> paths;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    for (const fs::path& path : paths)
        files.push_back({top + path.lexically_relative(folder).generic_string(), readBytes(path)});
}

void addLicences(const PackagePlan& plan, const std::string& top, std::vector<ArchiveFile>& files) {
    if (!plan.licences.empty()) addTree(plan.licences, top + "Licences/", files);
    std::vector<fs::path> own;
    for (const auto& entry : fs::directory_iterator(plan.game)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && (name.starts_with("LICENSE") || name.starts_with("LICENCE")))
            own.push_back(entry.path());
    }
    std::sort(own.begin(), own.end());
    for (const fs::path& path : own)
        files.push_back({top + "Licences/" + path.filename().string(), readBytes(path)});
}

}  // namespace

std::vector<ArchiveFile> packageFiles(const PackagePlan& plan) {
    const ScratchFolder scratch;
    const fs::path copy = scratch.path() / "game";
    copyGame(plan.game, copy);
    const bool isWindows = plan.system == PackageSystem::windows;
    const std::string top = plan.name + "/";
    std::vector<ArchiveFile> files;
    files.push_back({top + launcherName(plan), bytesOf(launcherText(plan.system)), true});
    files.push_back({top + "README.txt", bytesOf(readmeText(plan))});
    const std::vector<unsigned char> icon = iconOf(plan, scratch.path());
    files.push_back({top + "icon.png", icon});
    if (isWindows) files.push_back({top + "icon.ico", windowsIcon(icon, scratch.path())});
    files.push_back({top + (isWindows ? "bin/Kelmora.exe" : "bin/kelmora"), readBytes(plan.program), true});
    files.push_back({top + "Resources/packed.txt", bytesOf(plan.name + "\n")});
    addTree(copy / "Resources", top + "Resources/", files);
    addTree(copy / "Libraries", top + "Libraries/", files);
    addLicences(plan, top, files);
    return files;
}

}  // namespace kelmora
