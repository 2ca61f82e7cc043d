#include "tool/play/input_text.h"

#include <algorithm>

#include "platform/key_table.h"

namespace kelmora {
namespace {

const KeySlot* findSlot(const auto& matches) {
    for (const KeySlot& slot : keyTable)
        if (matches(slot)) return &slot;
    for (const KeySlot& slot : moreKeyTable)
        if (matches(slot)) return &slot;
    return nullptr;
}

std::string keyLine(const char* action, int code) {
    const KeySlot* slot = findSlot([&](const KeySlot& each) {
        return each.code == code || (each.otherCode != 0 && each.otherCode == code);
    });
    return slot ? std::string(action) + " " + slot->name : "";
}

std::string pair(const char* action, int x, int y) {
    return std::string(action) + " " + std::to_string(x) + " " + std::to_string(y);
}

std::string buttonLine(const WindowEvent& event, const char* way) {
    constexpr const char* names[] = {"left", "right", "middle"};
    return std::string("button ") + names[static_cast<std::size_t>(event.button)] + " " + way;
}

}  // namespace

std::string recordedLine(const WindowEvent& event) {
    using Kind = WindowEvent::Kind;
    switch (event.kind) {
        case Kind::resized:
            return pair("resize", event.x, event.y);
        case Kind::focusGained:
            return "focus gained";
        case Kind::focusLost:
            return "focus lost";
        case Kind::closeRequested:
            return "close";
        case Kind::keyDown:
            return keyLine("keydown", event.keyCode);
        case Kind::keyUp:
            return keyLine("keyup", event.keyCode);
        case Kind::mouseMoved:
            return pair("mouse", event.x, event.y);
        case Kind::buttonDown:
            return buttonLine(event, "down");
        case Kind::buttonUp:
            return buttonLine(event, "up");
        case Kind::wheelTurned:
            return event.y > 0 ? "wheel up" : "wheel down";
        case Kind::typed:
            return std::string("type ") + static_cast<char>(event.keyCode);
    }
    return "";
}

std::optional<int> keyCodeOf(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    const KeySlot* slot = findSlot([&](const KeySlot& each) { return name == each.name; });
    return slot ? std::optional<int>(slot->code) : std::nullopt;
}

}  // namespace kelmora
