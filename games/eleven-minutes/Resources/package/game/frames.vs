@@ The frame loop. Everything goes by frames, so the same keys give the same pictures.

FRAME_MS = 33
frame = 0
playing = true

function stepMode()
    if mode == VESPER_GAME_VISUAL_NOVEL
        stepPages()
    elseif mode == VESPER_MENU_MAIN
        stepTitle()
    elseif mode == VESPER_MENU_PAUSE
        stepPause()
    elseif mode == VESPER_MENU_OPTION
        stepOptions()
    elseif mode == VESPER_MENU_SAVE or mode == VESPER_GAME_LOAD
        stepSubmenu()
    elseif mode == VESPER_CREDIT
        stepCredits()
    else
        stepEnding()
    end
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
    applyLoudness()
    openTitle()
    while playing and not Metal["checkClose"]()
        frame += 1
        Metal["updateInput"]()
        readKeys()
        stepMode()
        Vesper["renderStack"]()
        drawCurtain()
        drawNotes()
        Metal["renderImage"](VESPER_FRAMEBUFFER)
        Metal["forceUpdate"]()
        waitForFrame()
    end
end
