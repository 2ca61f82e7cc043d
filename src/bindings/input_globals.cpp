#include "bindings/runtime.h"
#include "platform/window.h"

namespace kelmora {
namespace {

// The global of each entry of `moreKeyTable`: VESPER_KEY_ESCAPE, VESPER_PAD_A.
const std::string* moreKeyGlobals() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> made;
        for (const KeySlot& slot : moreKeyTable)
            made.push_back((slot.code < firstPadCode ? "VESPER_KEY_" : "VESPER_") + std::string(slot.name));
        return made;
    }();
    return names.data();
}

}  // namespace

void publishInputGlobals(Runtime& runtime) {
    const auto publishState = [&](const std::string& name, bool down) {
        runtime.engine.pushVariable(name, Variable::boolean(down));
    };
    const KeyState* keys = vh_updateKeyboardState();
    int mouseX = -1;
    int mouseY = -1;
    bool buttons[3] = {};
    if (runtime.window) {
        vh_getMousePosition(runtime.window, &mouseX, &mouseY);
        constexpr int platformButtons[3] = {0, 2, 1};  // scripts count left, middle, right
        for (int i = 0; i < 3; ++i) buttons[i] = vh_getMouseButtonState(runtime.window, platformButtons[i]);
    }
    for (int i = 0; i < 3; ++i) publishState("VESPER_MOUSE_" + std::to_string(i + 1), buttons[i]);
    runtime.engine.pushVariable("VESPER_MOUSE_X", Variable::integer(mouseX));
    runtime.engine.pushVariable("VESPER_MOUSE_Y", Variable::integer(mouseY));
    for (std::size_t slot = 0; slot < keySlotCount; ++slot)
        if (slot != keySlotMinus)
            publishState(std::string("VESPER_KEY_") + keyTable[slot].name, keys->down[slot]);
    for (int i = 1; i <= 4; ++i)
        publishState("VESPER_TOUCHBAR_" + std::to_string(i),
                     runtime.window && vh_getTouchBarButtonState(runtime.window, i));
    const std::string* name = moreKeyGlobals();
    for (const KeySlot& slot : moreKeyTable) publishState(*name++, vh_isKeyDown(slot.code));
    static const std::string wheel = "VESPER_WHEEL";
    runtime.engine.pushVariable(wheel, Variable::integer(vh_takeWheel(runtime.window)));
}

}  // namespace kelmora
