@@ Keys, mouse and pad as actions: what went down since the last frame, and what is held.

runFile(libraryFolder + "input.vs")
pressed = {}
mouseMoved = false
mouseX = -1
mouseY = -1

NOVEL_PRESSES = {
    ahead = ["up", "w", "pad_up", "wheel_up"], behind = ["down", "s", "pad_down", "wheel_down"], turnLeft = ["left", "pad_left"], turnRight = ["right", "pad_right"],
    act = ["return", "enter", "e", "pad_a"], bell = ["space", "pad_x"], lantern = ["l", "f", "pad_y"], chart = ["m", "pad_back"], help = ["h"],
    back = ["escape", "back", "backspace", "p", "pad_start", "pad_b"], click = ["mouse_left"], menu = ["mouse_right"]
}
HELD = {ahead = ["KEY_UP", "KEY_W", "PAD_UP"], behind = ["KEY_DOWN", "KEY_S", "PAD_DOWN"], turnLeft = ["KEY_LEFT", "PAD_LEFT"], turnRight = ["KEY_RIGHT", "PAD_RIGHT"], stepLeft = ["KEY_A", "PAD_L"], stepRight = ["KEY_D", "PAD_R"]}

function readKeys()
    novelReadInput()
    pressed = novelPressed
    mouseMoved = novelMouseMoved
    mouseX = novelMouseX
    mouseY = novelMouseY
end

function isHeld(action)
    for name in HELD[action]
        if Vesper["getVar"]("VESPER_" + name)
            return true
        end
    end
    return false
end

@@ 1, 0 or -1.
function axis(plus, minus)
    local value = 0
    if isHeld(plus)
        value += 1
    end
    if isHeld(minus)
        value -= 1
    end
    return value
end
