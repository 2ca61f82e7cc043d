@@ Keys and mouse, as what went down in this frame.

keysDown = {}
pressed = {}
mouseMoved = false
mouseX = -1
mouseY = -1

KEYS = {up = ["UP", "W"], down = ["DOWN", "S"], left = ["LEFT", "A"], right = ["RIGHT", "D"], go = ["RETURN", "SPACE"], back = ["BACK", "P"], one = ["1"], two = ["2"], three = ["3"]}

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
