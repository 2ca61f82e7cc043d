@@ The frame loop. Everything goes by frames, so the same keys give the same pictures.

FRAME_MS = 33
frame = 0
playing = true
lampStates = []
endingSeen = false

function stepNight()
    if passage != not
        stepPassage()
    else
        stepWalk()
        stepActs()
    end
    stepLamps()
    stepCreatures()
    lookAround()
    if mode != VESPER_GAME_TARGET
        return not
    elseif pressed["back"] or pressed["menu"]
        openPause()
    elseif pressed["help"]
        openHelp()
    else
        showHud()
    end
end

function stepMode()
    if mode == VESPER_GAME_TARGET
        stepNight()
    elseif mode == VESPER_MENU_MAIN
        stepTitle()
    elseif mode == VESPER_MENU_PAUSE
        stepPause()
    elseif mode == VESPER_MENU_OPTION and optionPage == "settings"
        stepOptions()
    elseif mode == VESPER_MENU_OPTION
        stepHelp()
    elseif mode == VESPER_GAME_NEW
        stepEbb()
    else
        stepFlood()
    end
    if mode != VESPER_MENU_PAUSE and mode != VESPER_MENU_OPTION
        stepTold()
    end
end

function sceneDawn()
    if mode == VESPER_CREDIT
        return floodDawn()
    end
    return dawnNow()
end

function drawFrame()
    sprites = []
    glows = []
    sceneLights = []
    showLamps()
    showCreatures()
    drawPlace(sceneDawn())
    dropEntries("view")
    table["insert"](renderQueue, 1, pictureEntry("view", shownView(), VESPER_LAYER_FRAMEBUFFER, 0, 0))
    Vesper["renderStack"]()
    if mode == VESPER_GAME_TARGET
        drawHud()
    end
    Metal["renderImage"](VESPER_FRAMEBUFFER)
end

@@ In fast forward, which tests and recorders ask for, only the frames that they name are drawn.
fastForward = fastForward or false
framesToDraw = framesToDraw or []

function isDrawn()
    return not fastForward or contains(framesToDraw, frame)
end

@@ A machine that is late for a second or two gets the swift picture, unless the player has chosen.
LATE_MS = 40
LATE_FRAMES = 50
late = 0

function keepPace(spent)
    if settings["picture"] == 2 or settings["chosen"] or mode != VESPER_GAME_TARGET
        return not
    end
    if spent > LATE_MS
        late += 1
    else
        late = math["max"](0, late - 1)
    end
    if late > LATE_FRAMES
        settings["picture"] = 2
        keepSettings()
        tell("The picture is a coarser one now, to keep the pace. The pause has the finer.")
    end
end

function waitForFrame()
    if not fastForward
        local spent = Vesper["getClock"]()
        keepPace(spent)
        if spent < FRAME_MS
            Vesper["sleep"](FRAME_MS - spent)
        end
        Vesper["getClock"]()
    end
end

@@ Whether a night is being walked, be it under the pause.
function isNight()
    if mode == VESPER_MENU_OPTION and optionPage == "settings"
        return optionsFrom != VESPER_MENU_MAIN
    elseif mode == VESPER_MENU_OPTION
        return helpFrom != VESPER_MENU_MAIN
    end
    return mode == VESPER_GAME_TARGET or mode == VESPER_MENU_PAUSE
end

@@ Every two minutes of walking; also when the window is closed.
KEEP_FRAMES = 3600

function keepByItself()
    if mode == VESPER_GAME_TARGET and passage == not
        walked = (walked or 0) + 1
        if walked % KEEP_FRAMES == 0
            keepNight()
        end
    end
end

@@ Until the player leaves or the window's button is pressed.
function playGame()
    makeVillage()
    makeChurch()
    startLearning()
    openTitle()
    while playing and not Metal["checkClose"]()
        frame += 1
        readKeys()
        stepMode()
        novelStepFading()
        keepByItself()
        if isDrawn()
            drawFrame()
        end
        Metal["forceUpdate"]()
        waitForFrame()
    end
    if isNight()
        keepNight()
    end
end
