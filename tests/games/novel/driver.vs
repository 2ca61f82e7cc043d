@@ Plays the game of this folder by a list of steps, each done when the one before has been answered: a key by its
@@ name as a press, "wait N" frames, "hold N KEY", or a function. When all are done the game is left.

fastForward = true
steps = []
stepAt = 0
waiting = 0
pressedNow = []
settled = 0

function Metal["presses"]()
    return pressedNow
end

realUpdate = Metal["updateInput"]
function Metal["updateInput"]()
    realUpdate()
    pressedNow = []
    settled += 1
    if novelCurtainLeft > 0
        settled = 0
    end
    VESPER_MOUSE_X = mouseX or -1
    VESPER_MOUSE_Y = mouseY or -1
    if waiting > 0
        waiting -= 1
    elseif settled > 1
        nextStep()
    end
end

function nextStep()
    stepAt += 1
    local step = steps[stepAt]
    if step == not
        novelPlaying = false
    elseif typeOf(step) == "function"
        step()
    elseif string["sub"](step, 1, 5) == "wait "
        waiting = toNumber(string["sub"](step, 6))
    else
        pressedNow = [step]
        waiting = 1
    end
end

@@ What stands in the box, and what may be picked.
function tellPage()
    if novelAt == not
        tellScreen()
        return not
    end
    local text = novelFilled(novelTextOf(novelHere()))
    local items = ""
    for item in novelItems
        if item["say"] != not
            items += " [" + item["say"] + "]"
        end
    end
    print(novelScreen + ": " + text + items)
end

function tellScreen()
    local items = ""
    for item in novelItems
        items += " [" + (item["say"] or item["slot"]) + "]"
    end
    print(novelScreen + items)
end

function tellVars()
    print(novelJson(novelVars))
end

function tellNotes()
    for note in novelNotes
        print("told: " + note["text"])
    end
    novelNotes = []
end

function playSteps(list)
    steps = list
    runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
end
