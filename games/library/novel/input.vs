@@ Keys, mouse and pad as actions. Only this part knows where presses come from.

novelDown = {}
novelPressed = {}
novelMouseMoved = false
novelMouseX = -1
novelMouseY = -1
novelPressesKnown = contains(Metal or {}, "presses")

@@ For each action the keys that every window reports, and the names under which presses arrive where there are such.
NOVEL_KEYS = {
    up = ["UP", "W"], down = ["DOWN", "S"], left = ["LEFT"], right = ["RIGHT"], go = ["RETURN", "SPACE"],
    history = ["L"], auto = ["A"], skip = ["F"], keep = ["Q"], open = ["O"], aloud = ["V"], copy = ["C"],
    one = ["1"], two = ["2"], three = ["3"], four = ["4"], five = ["5"], six = ["6"]
}
NOVEL_PRESSES = {
    up = ["up", "w", "pad_up"], down = ["down", "s", "pad_down"], left = ["left", "pad_left"], right = ["right", "pad_right"],
    go = ["return", "enter", "space", "pad_a"], menu = ["escape", "back", "backspace", "p", "pad_start", "pad_b", "mouse_right"],
    hide = ["h", "mouse_middle", "pad_back"], history = ["l", "pad_y"], auto = ["a", "pad_x"], skip = ["f", "tab", "pad_r"],
    keep = ["q", "f5"], open = ["o", "f9"], aloud = ["v"], copy = ["c"], click = ["mouse_left"], wheelUp = ["wheel_up"], wheelDown = ["wheel_down"],
    pageUp = ["page_up", "pad_l"], pageDown = ["page_down"], first = ["home"], last = ["end"],
    one = ["1"], two = ["2"], three = ["3"], four = ["4"], five = ["5"], six = ["6"]
}
NOVEL_DIGITS = ["one", "two", "three", "four", "five", "six"]

function novelReadInput()
    Metal["updateInput"]()
    novelMouseMoved = VESPER_MOUSE_X != novelMouseX or VESPER_MOUSE_Y != novelMouseY
    novelMouseX = VESPER_MOUSE_X
    novelMouseY = VESPER_MOUSE_Y
    if novelPressesKnown
        novelTakePresses(Metal["presses"]())
    else
        novelTakeEdges()
    end
    novelHurrying = VESPER_KEY_CONTROL == true
end

@@ A press that went down and up between two looks is in the list as well.
function novelTakePresses(names)
    novelPressed = {}
    if #names == 0
        return not
    end
    for action, mine in pairs(NOVEL_PRESSES)
        for name in mine
            if contains(names, name)
                novelPressed[action] = true
            end
        end
    end
end

function novelTakeEdges()
    for action, names in pairs(NOVEL_KEYS)
        local isDown = false
        for name in names
            if Vesper["getVar"]("VESPER_KEY_" + name)
                isDown = true
            end
        end
        novelTakeEdge(action, isDown)
    end
    novelTakeEdge("click", VESPER_MOUSE_1)
    novelTakeEdge("hide", VESPER_MOUSE_2 or VESPER_KEY_H)
    novelTakeEdge("menu", VESPER_MOUSE_3 or VESPER_KEY_BACK or VESPER_KEY_P)
end

function novelTakeEdge(action, isDown)
    novelPressed[action] = isDown and not novelDown[action]
    novelDown[action] = isDown
end

function novelAnyPress()
    for action, is in pairs(novelPressed)
        if is
            return true
        end
    end
    return false
end
