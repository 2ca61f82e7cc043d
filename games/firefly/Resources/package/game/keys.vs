@@ Keys and pad as what they mean here.

pressedNow = []

function readKeys()
    Metal["updateInput"]()
    pressedNow = Metal["presses"]()
    goesLeft = VESPER_KEY_LEFT or VESPER_KEY_A or VESPER_PAD_LEFT
    goesRight = VESPER_KEY_RIGHT or VESPER_KEY_D or VESPER_PAD_RIGHT
    goesUp = VESPER_KEY_UP or VESPER_KEY_W or VESPER_PAD_UP
    goesDown = VESPER_KEY_DOWN or VESPER_KEY_S or VESPER_PAD_DOWN
end

@@ Whether one of these went down since the last frame, be it up again or not.
function wasPressed(names)
    for name in names
        if contains(pressedNow, name)
            return true
        end
    end
    return false
end

function enterPressed()
    return wasPressed(["return", "enter", "space", "pad_a"])
end

function pausePressed()
    return wasPressed(["escape", "p", "back", "pad_start"])
end
