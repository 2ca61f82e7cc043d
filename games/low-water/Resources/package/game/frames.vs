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
function isDrawn()
    return not fastForward or framesToDraw != not and contains(framesToDraw, frame)
end

function waitForFrame()
    if not fastForward
        local spent = Vesper["getClock"]()
        if spent < FRAME_MS
            Vesper["sleep"](FRAME_MS - spent)
        end
        Vesper["getClock"]()
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
        Metal["updateInput"]()
        readKeys()
        stepMode()
        if isDrawn()
            drawFrame()
        end
        Metal["forceUpdate"]()
        waitForFrame()
    end
end
