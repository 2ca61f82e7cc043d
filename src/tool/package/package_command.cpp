#include <iostream>

#include "base/whole_file.h"
#include "tool/game_folder.h"
#include "tool/package/package_files.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"
#include "workbench/nearest.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

constexpr ToolOption packageOptions[] = {
    {"--out", true}, {"--linux-program", true}, {"--windows-program", true}, {"--licences", true}};

const char* nameOf(PackageSystem system) {
    return system == PackageSystem::linux ? "linux" : "windows";
}

PackageSystem systemNamed(const std::string& name) {
    if (name == "linux") return PackageSystem::linux;
    if (name == "windows") return PackageSystem::windows;
    const std::string near = nearestWord(name, std::vector<std::string>{"linux", "windows"});
    throw UsageError("unknown system " + name +
                     (near.empty() ? "; there are linux and windows" : "; did you mean " + near + "?"));
}

// The one that is named, or beside this tool, or where this project's own builds lie. Empty where there is
// none.
fs::path programFor(PackageSystem system, const ToolOptions& options, const fs::path& toolFolder) {
    const std::string name = nameOf(system);
    if (const auto given = options.value("--" + name + "-program")) {
        if (!fs::is_regular_file(*given)) throw UsageError("there is no program " + *given);
        return *given;
    }
    const std::string file = system == PackageSystem::linux ? "kelmora" : "Kelmora.exe";
    for (const fs::path& path : {toolFolder / file, toolFolder / "../.." / name / "bin" / file})
        if (std::error_code error; fs::is_regular_file(path, error)) return path;
    return {};
}

std::string missingWords(PackageSystem system, const fs::path& toolFolder) {
    const std::string file = system == PackageSystem::linux ? "kelmora" : "Kelmora.exe";
    return "for " + std::string(nameOf(system)) + " there has to be a " + file + " in " +
           toolFolder.lexically_normal().string() + ", beside this tool, or --" + nameOf(system) +
           "-program has to name one";
}

void writePackage(const PackagePlan& plan, const fs::path& out) {
    const std::vector<ArchiveFile> files = packageFiles(plan);
    const bool isLinux = plan.system == PackageSystem::linux;
    const fs::path path = out / (plan.name + "-" + nameOf(plan.system) + (isLinux ? ".tar.gz" : ".zip"));
    const std::vector<unsigned char> archive = isLinux ? makeTarGz(files) : makeZip(files);
    if (!writeWholeFileBytes(path.string(), archive))
        throw std::runtime_error("cannot write " + path.string());
    std::cout << path.lexically_normal().generic_string() << ": " << archive.size() << " bytes, "
              << files.size() << " files\n";
}

int packageGame(ToolContext& tool, std::span<const std::string> words) {
    const ToolOptions options(words, packageOptions);
    if (options.words().empty()) throw UsageError("package wants a game's folder");
    PackagePlan plan;
    plan.game = findGame(options.words()[0]);
    plan.name = (plan.game / "").parent_path().filename().string();
    if (const auto licences = options.value("--licences")) {
        if (!fs::is_directory(*licences)) throw UsageError("there is no folder " + *licences);
        plan.licences = *licences;
    }
    const fs::path out = options.value("--out").value_or(".");
    if (!fs::is_directory(out)) throw UsageError("there is no folder " + out.string());

    const fs::path toolFolder = tool.runtime.path;
    std::vector<PackagePlan> plans;
    std::vector<std::string> names(options.words().begin() + 1, options.words().end());
    const bool isChosen = !names.empty();
    if (!isChosen) names = {"linux", "windows"};
    std::string missing;
    for (const std::string& name : names) {
        plan.system = systemNamed(name);
        plan.program = programFor(plan.system, options, toolFolder);
        if (!plan.program.empty())
            plans.push_back(plan);
        else
            missing += (missing.empty() ? "" : "; ") + missingWords(plan.system, toolFolder);
    }
    if (plans.empty() || (isChosen && !missing.empty())) throw UsageError(missing);
    for (const PackagePlan& each : plans) writePackage(each, out);
    if (!missing.empty()) std::cout << "Left out: " << missing << ".\n";
    return 0;
}

}  // namespace

extern const ToolCommand packageCommand{
    "package", "GAME [linux] [windows] [OPTION...]", "pack a game for its players",
    "Makes GAME-linux.tar.gz and GAME-windows.zip, or the one that is named: a launcher, the program, the\n"
    "game with its libraries and fonts, licences, an icon and a README.txt. The programs are those beside\n"
    "this tool. The icon is icon.png of the game's folder or its Resources/package, at most 256 pixels a\n"
    "side; a game without one gets its first letter.\n"
    "--out FOLDER              where the archives go (here)\n"
    "--linux-program FILE      the program instead\n"
    "--windows-program FILE\n"
    "--licences FOLDER         more licences for the folder Licences, beside the game's own LICENCE files\n",
    packageGame};

}  // namespace kelmora
