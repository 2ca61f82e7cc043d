#include "tool/play/coverage.h"

#include <algorithm>
#include <filesystem>

#include "script/bytecode_program.h"
#include "script/callable.h"
#include "tool/play/text_log.h"

namespace kelmora {
namespace {

constexpr std::size_t longestWords = 60;
constexpr std::size_t mostTexts = 20;

// The beginning of the words on one line; no character is cut through.
std::string shortened(const std::string& words) {
    std::string line = onOneLine(words);
    if (line.size() <= longestWords) return line;
    std::size_t end = longestWords - 3;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) --end;
    return line.substr(0, end) + "...";
}

std::string counted(const char* what, std::size_t reached, std::size_t all, const char* verb) {
    std::string line = what;
    line.resize(std::max<std::size_t>(line.size() + 1, 11), ' ');
    return line + std::to_string(reached) + " of " + std::to_string(all) + " " + verb + "\n";
}

std::string neverLine(const std::string& what) {
    return "  never: " + what + "\n";
}

}  // namespace

void Coverage::see(const NovelView& novel) {
    if (!novel.isNovel()) return;
    for (const NovelView::Page& page : novel.lastPages()) {
        pages_.insert(page.name);
        scenes_.insert(page.scene);
        if (!page.picked.empty()) options_.insert({page.name, page.picked});
    }
    if (const std::string ending = novel.ending(); !ending.empty()) endings_.insert(ending);
}

void Coverage::endRun(const VesperScript& engine, const std::string& resources) {
    if (const NovelView novel(engine); novel.isNovel()) story_ = novel.story();
    for (const auto& [name, value] : engine.globals()) {
        if (!value.isFunction() || value.function().isNative || !value.function().program) continue;
        const std::string path =
            std::filesystem::path(value.function().program->source.path).lexically_normal().generic_string();
        if (!path.starts_with(resources + "package/") && !path.starts_with(resources + "scripts/")) continue;
        bool& wasCalled = functions_[name + " (" + path.substr(resources.size()) + ")"];
        wasCalled = wasCalled || value.function().code != nullptr;
    }
}

std::string Coverage::storyReport() const {
    const auto isReached = [](const std::set<std::string>& reached) {
        return [&reached](const std::string& name) { return reached.contains(name); };
    };
    const auto count = [](const auto& all, const auto& is) {
        return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), is));
    };
    std::string text =
        counted("scenes", count(story_.scenes, isReached(scenes_)), story_.scenes.size(), "reached");
    for (const std::string& scene : story_.scenes)
        if (!scenes_.contains(scene)) text += neverLine(scene);
    const auto isTaken = [&](const StoryOption& each) { return wasTaken(each.page, each.words); };
    text += counted("choices", count(story_.options, isTaken), story_.options.size(), "options taken");
    for (const StoryOption& option : story_.options)
        if (!isTaken(option))
            text += neverLine("\"" + shortened(option.words) + "\" in " + option.scene + ", behind \"" +
                              shortened(option.question) + "\"");
    text += counted("endings", count(story_.endings, isReached(endings_)), story_.endings.size(), "reached");
    for (const std::string& ending : story_.endings)
        if (!endings_.contains(ending)) text += neverLine(ending);
    return text + counted("pages", count(story_.pages, isReached(pages_)), story_.pages.size(), "shown");
}

std::string Coverage::functionReport() const {
    const auto called = static_cast<std::size_t>(
        std::count_if(functions_.begin(), functions_.end(), [](const auto& each) { return each.second; }));
    std::string text = counted("functions", called, functions_.size(), "called");
    for (const auto& [name, wasCalled] : functions_)
        if (!wasCalled) text += neverLine(name);
    return text;
}

// Words that come letter by letter are told once, when they are all there.
std::vector<std::string> Coverage::wholeTexts() const {
    std::vector<std::string> texts;
    for (auto each = texts_.begin(); each != texts_.end(); ++each) {
        const auto next = std::next(each);
        if (next == texts_.end() || !next->starts_with(*each)) texts.push_back(*each);
    }
    return texts;
}

std::string Coverage::report() const {
    std::string text;
    if (!story_.scenes.empty()) text += storyReport();
    if (!functions_.empty()) text += functionReport();
    if (!story_.scenes.empty()) return text;
    const std::vector<std::string> texts = wholeTexts();
    text += "texts      " + std::to_string(texts.size()) + " shown\n";
    std::size_t told = 0;
    for (const std::string& each : texts) {
        if (++told > mostTexts) return text + "  and more\n";
        text += "  \"" + shortened(each) + "\"\n";
    }
    return text;
}

}  // namespace kelmora
