#pragma once

#include <cstdint>

namespace kelmora {

enum class MouseButton : std::uint8_t { left, right, middle };

// What a display tells a window, in the form every back end reports it. Positions are client pixels.
struct WindowEvent {
    enum class Kind : std::uint8_t {
        resized,
        focusGained,
        focusLost,
        closeRequested,
        keyDown,
        keyUp,
        mouseMoved,
        buttonDown,
        buttonUp,
        wheelTurned,
        typed
    };

    Kind kind;
    int keyCode = 0;  // virtual-key code, or the byte that was typed
    MouseButton button = MouseButton::left;
    int x = 0;  // position, or the new client width
    int y = 0;  // position, or the new client height, or the wheel's notches away from its user

    static WindowEvent resized(int width, int height) {
        return {Kind::resized, 0, MouseButton::left, width, height};
    }
    static WindowEvent focusGained() { return {Kind::focusGained}; }
    static WindowEvent focusLost() { return {Kind::focusLost}; }
    static WindowEvent closeRequested() { return {Kind::closeRequested}; }
    static WindowEvent keyDown(int code) { return {Kind::keyDown, code}; }
    static WindowEvent keyUp(int code) { return {Kind::keyUp, code}; }
    static WindowEvent mouseMoved(int x, int y) { return {Kind::mouseMoved, 0, MouseButton::left, x, y}; }
    static WindowEvent buttonDown(MouseButton button, int x, int y) {
        return {Kind::buttonDown, 0, button, x, y};
    }
    static WindowEvent buttonUp(MouseButton button, int x, int y) {
        return {Kind::buttonUp, 0, button, x, y};
    }
    // A byte of UTF-8 text, whatever keys brought it; displays tell it while text is asked for.
    static WindowEvent typed(unsigned char byte) { return {Kind::typed, byte}; }
    static WindowEvent wheelTurned(int notches) {
        return {Kind::wheelTurned, 0, MouseButton::left, 0, notches};
    }
};

}  // namespace kelmora
