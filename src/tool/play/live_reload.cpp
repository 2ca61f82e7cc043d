#include "tool/play/live_reload.h"

#include <sstream>
#include <stdexcept>

#include "base/whole_file.h"
#include "host/console_host.h"
#include "tool/game_folder.h"
#include "tool/play/novel_view.h"
#include "tool/play/overlay.h"
#include "tool/play/protected_call.h"
#include "workbench/changed_statements.h"
#include "workbench/failure_report.h"
#include "workbench/script_check.h"

namespace kelmora {

namespace fs = std::filesystem;

namespace {

constexpr int noteUpdates = 90;
constexpr PlainLetters::Colour faultColour{255, 190, 150};
constexpr PlainLetters::Colour sourceColour{232, 230, 224};
constexpr PlainLetters::Colour noteColour{170, 220, 170};

std::vector<fs::path> keysOf(const std::map<fs::path, fs::path>& folders) {
    std::vector<fs::path> keys;
    for (const auto& [from, to] : folders) keys.push_back(from);
    return keys;
}

// Faults of form, with their places.
std::string formFaults(const std::string& name, const std::string& source) {
    ConsoleHost host;
    VesperScript engine(host);
    ScriptCheck check(engine);
    check.add(name, source);
    std::vector<Diagnostic> errors;
    for (Diagnostic& each : check.run())
        if (each.severity == Severity::Error) errors.push_back(std::move(each));
    std::ostringstream text;
    printDiagnostics(errors, text);
    return text.str();
}

}  // namespace

LiveReload::LiveReload(GameSession& session, fs::path game, fs::path played)
    : session_(session),
      game_(std::move(game)),
      played_(std::move(played)),
      folders_(watchedFolders(game_, played_)),
      watch_(keysOf(folders_)),
      pictures_(session) {
    for (const fs::path& file : watch_.files())
        if (file.extension() == ".vs") texts_[file] = readWholeFile(file.string()).value_or("");
}

void LiveReload::look() {
    bool isStoryTold = false;
    for (const fs::path& file : watch_.changed()) {
        try {
            const bool tellsStory = file.extension() == ".vs" && isStory(playedPath(file));
            if (tellsStory && isStoryTold) continue;
            takeOver(file);
            isStoryTold = isStoryTold || tellsStory;
            tell(shortName(file) + " is taken over.", false);
        } catch (const std::exception& error) {
            tell(error.what(), true);
            return;
        }
    }
}

void LiveReload::takeOver(const fs::path& file) {
    const fs::path played = playedPath(file);
    if (played != file) {
        fs::create_directories(played.parent_path());
        fs::copy_file(file, played, fs::copy_options::overwrite_existing);
    }
    if (file.extension() == ".vs") return takeScript(file, played);
    if (file.extension() == ".lua" || file.extension() == ".rwby")
        throw std::runtime_error(shortName(file) + " is read when the game runs it again.");
    takePicture(played);
}

// A novel's story is told as a whole; of other scripts what can be run again is.
void LiveReload::takeScript(const fs::path& file, const fs::path& played) {
    const auto source = readWholeFile(played.string());
    if (!source) throw std::runtime_error("cannot read " + shortName(file));
    const std::string faults = formFaults(shortName(file), *source);
    if (!faults.empty()) throw std::runtime_error(faults);
    std::string& before = texts_[file];
    const VesperScript& engine = session_.runtime().engine;
    try {
        if (isStory(played))
            tellStoryAnew();
        else
            runChanged(*source, before, played);
        if (globalOf(engine, "onReload").isFunction())
            callNamed("onReload", {Variable::text(played.generic_string())});
    } catch (const std::exception& error) {
        throw std::runtime_error(shortName(file) + ": " + error.what() + "\n" +
                                 placesOfFailure(error.what()));
    }
    before = *source;
}

// In the handler of what failed: where, with files of the game named from its folder on.
std::string LiveReload::placesOfFailure(const std::string& message) const {
    std::string text = failurePlaces(session_.runtime().engine, message);
    const std::string folder = played_.generic_string() + "/";
    for (std::size_t at = 0; (at = text.find(folder, at)) != std::string::npos;)
        text.erase(at, folder.size());
    return text;
}

bool LiveReload::isStory(const fs::path& played) const {
    const fs::path resources = played_ / "Resources";
    const std::string inside = played.lexically_relative(resources).generic_string();
    return NovelView(session_.runtime().engine).isNovel() && !inside.starts_with("..") &&
           inside != "package/graphics.vs" &&
           globalOf(session_.runtime().engine, "novelTellBegin").isFunction();
}

void LiveReload::tellStoryAnew() {
    const VesperScript& engine = session_.runtime().engine;
    const Variable script = globalOf(engine, "VESPER_SCRIPT");
    const std::string path = session_.runtime().path + "../Resources/scripts/" + script.toString();
    callNamed("novelTellBegin", {});
    try {
        callNamed("runFile", {Variable::text(path)});
    } catch (...) {
        callNamed("novelTellEnd", {Variable::boolean(false)});
        throw;
    }
    callNamed("novelTellEnd", {Variable::boolean(true)});
}

void LiveReload::runChanged(const std::string& source, const std::string& before, const fs::path& played) {
    const std::string changed = changedStatements(source, before);
    if (changed.empty()) return;
    VesperScript& engine = session_.runtime().engine;
    const std::string path = played.generic_string();
    call(VesperScript::createNativeCallable(
             [&engine, changed, path](const std::vector<Variable>&) {
                 return engine.runBytecode(engine.compileToBytecode(changed, path));
             },
             "reload"),
         {});
    if (globalOf(engine, "novelLookAgain").isFunction()) callNamed("novelLookAgain", {});
}

void LiveReload::takePicture(const fs::path& file) {
    const int count = pictures_.reload(file);
    if (count > 0 && globalOf(session_.runtime().engine, "novelLookAgain").isFunction())
        callNamed("novelLookAgain", {});
}

void LiveReload::call(const Variable& function, const std::vector<Variable>& arguments) {
    protectedCall(session_.runtime().engine, function, arguments);
}

void LiveReload::callNamed(const char* name, const std::vector<Variable>& arguments) {
    call(globalOf(session_.runtime().engine, name), arguments);
}

fs::path LiveReload::playedPath(const fs::path& file) const {
    for (const auto& [from, to] : folders_) {
        const fs::path inside = file.lexically_relative(from);
        if (!inside.empty() && *inside.begin() != "..") return to / inside;
    }
    return file;
}

std::string LiveReload::shortName(const fs::path& file) const {
    const fs::path inside = file.lexically_relative(game_);
    return (inside.empty() || *inside.begin() == ".." ? file.filename() : inside).generic_string();
}

void LiveReload::tell(const std::string& words, bool isFault) {
    told_ = words;
    isFault_ = isFault;
    age_ = 0;
}

std::vector<OverlayLine> LiveReload::lines() {
    if (!isFault_ && ++age_ > noteUpdates) told_.clear();
    std::vector<OverlayLine> lines;
    std::istringstream text(told_);
    for (std::string line; std::getline(text, line);)
        lines.push_back({line, !isFault_ ? noteColour : line.starts_with(' ') ? sourceColour : faultColour});
    return lines;
}

}  // namespace kelmora
