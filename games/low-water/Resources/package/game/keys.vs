@@ Keys and mouse, as what went down in this frame.

keysDown = {}
pressed = {}
mouseMoved = false
mouseX = -1
mouseY = -1

KEYS = {ahead = ["UP", "W"], behind = ["DOWN", "S"], turnLeft = ["LEFT"], turnRight = ["RIGHT"], stepLeft = ["A"], stepRight = ["D"], act = ["RETURN", "E"], bell = ["SPACE"], lantern = ["L", "F"], chart = ["M"], help = ["H"], back = ["BACK", "P"]}

function readKeys()
    for action, names in pairs(KEYS)
        local isDown = false
        for i, name in ipairs(names)
            if Vesper["getVar"]("VESPER_KEY_" + name)
                isDown = true
            end
        end
        notePress(action, isDown)
    end
    notePress("click", VESPER_MOUSE_1)
    notePress("menu", VESPER_MOUSE_3)
    mouseMoved = VESPER_MOUSE_X != mouseX or VESPER_MOUSE_Y != mouseY
    mouseX = VESPER_MOUSE_X
    mouseY = VESPER_MOUSE_Y
end

function notePress(action, isDown)
    pressed[action] = isDown and not keysDown[action]
    keysDown[action] = isDown
end

@@ 1, 0 or -1.
function axis(plus, minus)
    local value = 0
    if keysDown[plus]
        value += 1
    end
    if keysDown[minus]
        value -= 1
    end
    return value
end
