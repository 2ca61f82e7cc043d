#include "platform/pads.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/window_core.h"

namespace kelmora {
namespace {

std::vector<std::string> pressesOf(WindowCore& core) {
    std::vector<std::string> names;
    while (const char* name = core.takePress()) names.emplace_back(name);
    return names;
}

TEST(Pads, TheStickIsACrossPastHalf) {
    PadState pad;
    pad.setStickX(16383);
    EXPECT_EQ(pad.held(), 0);
    pad.setStickX(16384);
    pad.setStickY(-32768);
    EXPECT_EQ(pad.held(), padBit(PadButton::right) | padBit(PadButton::up));
    pad.setStickX(14000);  // it trembles about the half
    EXPECT_EQ(pad.held(), padBit(PadButton::right) | padBit(PadButton::up));
    pad.setStickX(-20000);
    pad.setStickY(0);
    EXPECT_EQ(pad.held(), padBit(PadButton::left));
    pad.setStickX(-12000);
    EXPECT_EQ(pad.held(), 0);
}

TEST(Pads, StickAndCrossHoldADirectionTogether) {
    PadState pad;
    pad.setButton(PadButton::left, true);
    pad.setStickX(-30000);
    pad.setButton(PadButton::left, false);
    EXPECT_EQ(pad.held(), padBit(PadButton::left));
    pad.setStickX(0);
    EXPECT_EQ(pad.held(), 0);
}

TEST(Pads, OnlyWhatChangedIsTold) {
    WindowCore core("Test", 4, 4);
    core.handle(WindowEvent::focusGained());
    const PadButtons a = padBit(PadButton::a);
    const PadButtons back = padBit(PadButton::back);
    tellPadChange(core, {0, a});
    tellPadChange(core, {a, static_cast<PadButtons>(a | back)});
    EXPECT_TRUE(core.keyDown(padCode(PadButton::a)));
    tellPadChange(core, {static_cast<PadButtons>(a | back), back});
    EXPECT_FALSE(core.keyDown(padCode(PadButton::a)));
    EXPECT_TRUE(core.keyDown(padCode(PadButton::back)));
    EXPECT_EQ(pressesOf(core), (std::vector<std::string>{"pad_a", "pad_back"}));
}

}  // namespace
}  // namespace kelmora
