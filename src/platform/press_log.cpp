#include "platform/press_log.h"

#include <span>
#include <string>

#include "platform/key_table.h"

namespace kelmora {
namespace {

// By virtual-key code, empty where there is no name.
using KeyNames = std::array<std::string, 256>;

void enter(std::span<const KeySlot> table, KeyNames& names) {
    for (const KeySlot& slot : table) {
        std::string name = slot.name;
        for (char& letter : name)
            if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
        if (slot.otherCode != 0) names[slot.otherCode] = name;
        names[slot.code] = name;
    }
}

const KeyNames& keyNames() {
    static const KeyNames names = [] {
        KeyNames entered;
        enter(keyTable, entered);
        enter(moreKeyTable, entered);
        return entered;
    }();
    return names;
}

}  // namespace

void PressLog::add(int keyCode) {
    const std::string& name = keyNames()[static_cast<std::size_t>(keyCode & 255)];
    if (!name.empty()) push(name.c_str());
}

void PressLog::add(MouseButton button) {
    constexpr const char* names[] = {"mouse_left", "mouse_right", "mouse_middle"};
    push(names[static_cast<std::size_t>(button)]);
}

void PressLog::addWheel(int notches) {
    for (; notches > 0; --notches) push("wheel_up");
    for (; notches < 0; ++notches) push("wheel_down");
}

const char* PressLog::take() {
    if (count_ == 0) return nullptr;
    const char* name = names_[first_];
    first_ = (first_ + 1) % capacity;
    --count_;
    return name;
}

void PressLog::push(const char* name) {
    if (count_ == capacity) take();
    names_[(first_ + count_) % capacity] = name;
    ++count_;
}

}  // namespace kelmora
