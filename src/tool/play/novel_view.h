#pragma once

#include <string>
#include <vector>

#include "script/vesper_script.h"

namespace kelmora {

// One option of a choice, known by its page and its words.
struct StoryOption {
    std::string page;
    std::string words;
    std::string scene;
    std::string question;  // what the page says
};

// What a novel has: its scenes with pages, its pages, options and endings, in the order in which it tells
// them.
struct Story {
    std::vector<std::string> scenes;
    std::vector<std::string> pages;
    std::vector<StoryOption> options;
    std::vector<std::string> endings;
};

// What the tool sees of a running game that is made with the library for novels.
class NovelView {
public:
    explicit NovelView(const VesperScript& engine) : engine_(engine) {}

    // False until the library stands, and in other games.
    bool isNovel() const;
    std::string screen() const;
    std::string scene() const;

    // What can be picked on the screen. The place is the item's middle in pixels of the picture.
    struct Item {
        std::string say;
        std::string option;  // words of the option of a choice
        int x = 0;
        int y = 0;
        bool begins = false;  // a new telling
        bool leaves = false;  // the game
    };
    std::vector<Item> items() const;
    // A choice takes nothing at first.
    bool itemsAreOpen() const;
    bool asksForChoice() const;

    // The last two pages of the way, the newest last.
    struct Page {
        std::string name;
        std::string scene;
        std::string picked;  // the option that was taken there
    };
    std::vector<Page> lastPages() const;
    // The one whose card is shown, or empty.
    std::string ending() const;

    Story story() const;

private:
    const VesperScript& engine_;
};

}  // namespace kelmora
