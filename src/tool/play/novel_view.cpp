#include "tool/play/novel_view.h"

#include <algorithm>

#include "script/table_object.h"
#include "tool/play/game_session.h"

namespace kelmora {
namespace {

Variable member(const Variable& table, std::string_view name) {
    const Variable* found = table.isTable() ? table.table().find(name) : nullptr;
    return found ? *found : Variable();
}

std::string textMember(const Variable& table, std::string_view name) {
    const Variable value = member(table, name);
    return value.isString() ? value.text() : "";
}

int wholeMember(const Variable& table, std::string_view name) {
    const Variable value = member(table, name);
    return value.isInt() ? value.intValue() : 0;
}

std::vector<Variable> itemsOf(const Variable& list) {
    return list.isArray() ? list.items() : std::vector<Variable>();
}

// A page that only asks keeps the words of the one before.
void addOptions(const Variable& entry, const std::string& scene, const std::string& said, Story& story) {
    for (const Variable& option : itemsOf(member(entry, "choice")))
        story.options.push_back({textMember(entry, "name"), textMember(option, "text"), scene, said});
}

}  // namespace

bool NovelView::isNovel() const {
    return globalOf(engine_, "novelEntries").isTable() && globalOf(engine_, "novelScreen").isString();
}

std::string NovelView::screen() const {
    const Variable screen = globalOf(engine_, "novelScreen");
    return screen.isString() ? screen.text() : "";
}

std::string NovelView::scene() const {
    return textMember(globalOf(engine_, "novelAt"), "scene");
}

std::vector<NovelView::Item> NovelView::items() const {
    const Variable begin = globalOf(engine_, "novelBegin");
    const Variable quit = globalOf(engine_, "novelQuit");
    std::vector<Item> items;
    for (const Variable& item : itemsOf(globalOf(engine_, "novelItems"))) {
        const Variable act = member(item, "act");
        const auto isAct = [&](const Variable& function) {
            return act.isFunction() && function.isFunction() && act.identity() == function.identity();
        };
        items.push_back({textMember(item, "say"), textMember(member(item, "option"), "text"),
                         wholeMember(item, "x") + wholeMember(item, "w") / 2,
                         wholeMember(item, "y") + wholeMember(item, "h") / 2, isAct(begin), isAct(quit)});
    }
    return items;
}

bool NovelView::itemsAreOpen() const {
    const Variable since = globalOf(engine_, "novelSince");
    const Variable guard = globalOf(engine_, "novelGuard");
    return !since.isInt() || !guard.isInt() || since.intValue() >= guard.intValue();
}

bool NovelView::asksForChoice() const {
    const Variable choices = globalOf(engine_, "novelChoices");
    return screen() == "read" && choices.isBool() && choices.boolValue();
}

std::vector<NovelView::Page> NovelView::lastPages() const {
    std::vector<Page> pages;
    const Variable path = globalOf(engine_, "novelPath");
    if (!path.isArray()) return pages;
    const std::vector<Variable>& way = path.items();
    for (std::size_t i = way.size() - std::min<std::size_t>(way.size(), 2); i < way.size(); ++i)
        pages.push_back(
            {textMember(way[i], "name"), textMember(way[i], "scene"), textMember(way[i], "picked")});
    return pages;
}

std::string NovelView::ending() const {
    const Variable ending = globalOf(engine_, "novelEnding");
    return screen() == "ending" && ending.isString() ? ending.text() : "";
}

Story NovelView::story() const {
    Story story;
    const Variable entries = globalOf(engine_, "novelEntries");
    for (const Variable& name : itemsOf(globalOf(engine_, "novelScenes"))) {
        if (!name.isString()) continue;
        const std::string scene = name.text();
        bool hasPages = false;
        std::string said;
        for (const Variable& entry : itemsOf(member(entries, scene))) {
            const std::string page = textMember(entry, "name");
            if (page.empty()) continue;
            hasPages = true;
            story.pages.push_back(page);
            if (const std::string text = textMember(entry, "text"); !text.empty()) said = text;
            addOptions(entry, scene, said, story);
        }
        if (hasPages) story.scenes.push_back(scene);
    }
    if (const Variable endings = globalOf(engine_, "novelEndings"); endings.isTable())
        for (const auto& name : endings.table().sortedKeys()->keys) story.endings.push_back(name->text());
    return story;
}

}  // namespace kelmora
