@@ The pause and the page of help, over the darkened picture.

HELP = [
    ["Up, Down or W, S", "walk"],
    ["Left, Right", "turn"],
    ["A, D", "step aside"],
    ["Space", "ring the handbell: lamps hear it"],
    ["Enter or E", "call at a door, read, go in"],
    ["L or F", "shade the lantern, or bare it"],
    ["M", "put the chart away, or take it out"],
    ["Escape, P or the right button", "pause"],
    ["F11", "the whole screen"],
    ["a pad", "stick, A acts, X rings, Y shades, Start pauses"]
]
modeBefore = 0

function openPause()
    modeBefore = mode
    mode = VESPER_MENU_PAUSE
    hideHud()
    dropEntries("told")
    viewFade = 0.4
    addText("pause", "A breath", headFont, lampGold, 0, 70, VESPER_SCREEN_X)
    showItems([{say = "Walk on", act = closePause}, {say = "Keep this night", act = keepFromPause}, {say = "How to walk", act = openHelp}, {say = "Settings", act = openOptions}, {say = "To the title", act = pauseToTitle}], 345, 150, 270)
end

function dropPause()
    hideItems()
    dropEntries("pause")
end

function closePause(item)
    dropPause()
    mode = VESPER_GAME_TARGET
    viewFade = 1.0
    if #told > 0
        told[1]["age"] = 0
    end
end

function keepFromPause(item)
    local kept = keepNight()
    closePause()
    if kept
        tell("The night is kept. It will be as dark as this when you come back to it.")
    end
end

@@ The night is kept on the way out.
function pauseToTitle(item)
    keepNight()
    dropPause()
    openTitle()
end

function stepPause()
    if pressed["back"] or pressed["menu"]
        closePause()
    else
        stepItems()
    end
end

function openHelp(item)
    helpFrom = mode
    optionPage = "help"
    if mode == VESPER_MENU_MAIN
        closeTitle()
    else
        dropPause()
    end
    hideHud()
    mode = VESPER_MENU_OPTION
    viewFade = 0.35
    dropEntries("told")
    addText("help", "How to walk", headFont, lampGold, 0, 48, VESPER_SCREEN_X)
    for i, line in ipairs(HELP)
        addText("help", line[1], smallFont, dimPaper, 250, 112 + i * 30, not)
        addText("help", line[2], smallFont, paper, 480, 112 + i * 30, not)
    end
    for i, line in ipairs(evenly("Five lamps were left burning when the lake was let in. Find them, hear what they remember, and bring each to the door it came from.", tellFont, 640))
        addText("help", line, tellFont, paper, 0, 412 + i * 28, VESPER_SCREEN_X)
    end
end

function stepHelp()
    if pressed["back"] or pressed["menu"] or pressed["act"] or pressed["bell"] or pressed["help"] or pressed["click"]
        dropEntries("help")
        if helpFrom == VESPER_MENU_MAIN
            openTitle()
        else
            closePause()
        end
    end
end
