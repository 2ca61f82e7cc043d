#include "host/message_page.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "font/plain_letters.h"
#include "image/image_registry.h"
#include "platform/memory_window.h"
#include "platform/windows_window.h"
#include "shim/shim.h"

namespace kelmora {
namespace {

using Colour = PlainLetters::Colour;

constexpr int leastWidth = 480;
constexpr int leastHeight = 300;
constexpr int unseenUpdates = 600;

struct PageColours {
    Colour ground;
    Colour bar;
    Colour title;
    Colour message;
    Colour place;
    Colour source;
    Colour mark;
    Colour dim;
};
constexpr PageColours alarmColours{{24, 22, 30},    {120, 38, 44},   {255, 240, 232}, {255, 198, 150},
                                   {150, 190, 235}, {232, 230, 224}, {255, 110, 100}, {150, 148, 156}};
constexpr PageColours calmColours{{20, 26, 38},    {44, 62, 88},    {240, 240, 230}, {232, 230, 224},
                                  {232, 230, 224}, {200, 206, 214}, {200, 206, 214}, {140, 150, 166}};

struct PageLine {
    std::string text;
    Colour colour;
};

Colour colourOf(std::string_view line, bool isMessage, const PageColours& colours) {
    if (isMessage) return colours.message;
    const std::size_t start = line.find_first_not_of(' ');
    if (start == std::string_view::npos) return colours.source;
    if (line[start] == '^') return colours.mark;
    if (start >= 4) return colours.source;
    return line.substr(start).starts_with("`") || line.substr(start).starts_with("hint") ? colours.message
                                                                                         : colours.place;
}

// The words up to the first indented line are the message.
std::vector<PageLine> linesOf(const MessagePage& page, std::size_t cells, const PageColours& colours) {
    std::vector<PageLine> lines;
    bool isMessage = true;
    std::string_view rest = page.text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, end);
        if (line.starts_with(' ')) isMessage = false;
        const Colour colour = colourOf(line, isMessage, colours);
        if (line.empty()) lines.push_back({"", colour});
        for (std::string& part : PlainLetters::wrap(line, cells)) lines.push_back({std::move(part), colour});
        rest.remove_prefix(std::min(rest.size(), end + 1));
    }
    return lines;
}

std::string keysOf(const MessagePage& page, int below) {
    std::string keys = "Escape: leave";
    if (page.mayReload) keys += "   R: start anew";
    if (!page.copied.empty()) keys += "   C: copy";
    if (below != 0) keys += "   Up, Down: more";
    return keys;
}

// What was pressed since the last look, by name.
std::vector<std::string> takePresses(WindowsWindow* window) {
    std::vector<std::string> names;
    while (const char* name = vh_takePress(window)) names.emplace_back(name);
    return names;
}

class PageInWindow {
public:
    PageInWindow(WindowsWindow* window, const MessagePage& page) : window_(window), page_(page) {
        if (window->core.clientWidth() < leastWidth || window->core.clientHeight() < leastHeight)
            vh_setWindowSize(window, std::max(window->core.clientWidth(), leastWidth * 2),
                             std::max(window->core.clientHeight(), leastHeight * 2));
        takePresses(window);
    }

    void paint() {
        const WindowCore& core = window_->core;
        if (!isDirty_ && core.clientWidth() == width_ && core.clientHeight() == height_) return;
        isDirty_ = false;
        width_ = core.clientWidth();
        height_ = core.clientHeight();
        PlushImage* picture = createSolidColourImage(width_, height_, 0, 0, 0, 255);
        below_ = drawMessagePage(page_, first_, note_, *picture);
        vh_pushImage(window_, picture);
        killPlushImage(picture);
    }

    // True when the page is done with.
    bool take(const std::string& press, PageEnd& end) {
        if (press == "r" && page_.mayReload) {
            end = PageEnd::reload;
            return true;
        }
        if (press == "c" && !page_.copied.empty())
            note(vh_copyText(window_, page_.copied.c_str()) ? "Copied." : "It cannot be copied here.");
        if (press == "down" || press == "wheel_down") scroll(std::min(below_, 3));
        if (press == "page_down") scroll(std::min(below_, 12));
        if (press == "up" || press == "wheel_up") scroll(-std::min(first_, 3));
        if (press == "page_up") scroll(-std::min(first_, 12));
        return press == "escape" || press == "return" || press == "pad_b";
    }

private:
    void note(const char* words) {
        note_ = words;
        isDirty_ = true;
    }
    void scroll(int lines) {
        first_ += lines;
        isDirty_ = isDirty_ || lines != 0;
    }

    WindowsWindow* window_;
    const MessagePage& page_;
    int width_ = 0;
    int height_ = 0;
    int first_ = 0;
    int below_ = 0;
    bool isDirty_ = true;
    std::string note_;
};

}  // namespace

int drawMessagePage(const MessagePage& page, int firstLine, const std::string& note, PlushImage& picture) {
    const PageColours& colours = page.mood == MessagePage::Mood::alarm ? alarmColours : calmColours;
    const int scale = std::clamp(std::min(picture.width / 400, picture.height / 220), 1, 8);
    const int cell = PlainLetters::cellWidth * scale;
    const int line = (PlainLetters::cellHeight + 1) * scale;
    const int margin = cell * 2;
    PlainLetters::fill(picture, 0, 0, picture.width, picture.height, colours.ground);
    PlainLetters::fill(picture, 0, 0, picture.width, line * 2, colours.bar);
    PlainLetters::draw(picture, page.title, margin, line / 2, scale, colours.title);

    const auto cells = static_cast<std::size_t>(std::max((picture.width - margin * 2) / cell, 4));
    const std::vector<PageLine> lines = linesOf(page, cells, colours);
    const int room = std::max((picture.height - line * 5) / line, 1);
    const int first = std::min(firstLine, std::max(static_cast<int>(lines.size()) - 1, 0));
    const int below = std::max(static_cast<int>(lines.size()) - first - room, 0);
    for (int i = 0; i < room && first + i < static_cast<int>(lines.size()); ++i) {
        const PageLine& each = lines[static_cast<std::size_t>(first + i)];
        PlainLetters::draw(picture, each.text, margin, line * (i + 3) - line / 2, scale, each.colour);
    }
    const std::string keys = note.empty() ? keysOf(page, below + first) : note;
    PlainLetters::draw(picture, keys, margin, picture.height - line - line / 4, scale, colours.dim);
    return below;
}

PageEnd showMessagePage(WindowsWindow* window, const MessagePage& page, const std::function<void()>& update) {
    PageInWindow shown(window, page);
    const bool isUnseen = memoryWindowOf(window) != nullptr;
    PageEnd end = PageEnd::left;
    for (int updates = 0; !vh_windowShouldClose(window); ++updates) {
        shown.paint();
        update();
        for (const std::string& press : takePresses(window))
            if (shown.take(press, end)) return end;
        if (!isUnseen)
            vh_sleep_ms(15);
        else if (updates > unseenUpdates)
            return end;
    }
    return end;
}

}  // namespace kelmora
