@@ Firefly Glade: bring the lights home before the day comes.

runFile(append + "/game/keeper.vs")
runFile(append + "/game/fireflies.vs")

FRAME_MS = 33

@@ Shows the frame, keeps the pace, reads the keys. False when the window is to be closed.
function nextFrame()
    Metal["renderImage"](frame)
    Metal["forceUpdate"]()
    Metal["updateInput"]()
    ticks += 1
    if not fastForward
        Vesper["sleep"](FRAME_MS - Vesper["getClock"]())
        Vesper["getClock"]()
    end
    return not Metal["checkClose"]()
end

function drawCount()
    drawGround(4, 3, 70, 15)
    drawGlow(glow, 4, 4, HIGH, 16)
    drawText(caught + "/" + FIREFLIES, 17, 5, 1, cream)
end

@@ The title stands over the sleeping glade until Enter is pressed.
function showTitle()
    lightReach = 0
    drawGround(0, 0, WIDE - 1, HIGH - 1)
    drawCentred("FIREFLY GLADE", 36, 2, gold)
    drawCentred("ARROWS TO WALK", 60, 1, cream)
    while not VESPER_KEY_RETURN
        drawGround(60, 112, 180, 124)
        if ticks \ 16 % 2 == 0
            drawCentred("ENTER TO BEGIN", 114, 1, mist)
        end
        if not nextFrame()
            return false
        end
    end
    return true
end

@@ Walks until all lights are home. False when the window was closed.
function playNight()
    placeKeeper()
    wakeFireflies()
    lightReach = 0
    drawGround(0, 0, WIDE - 1, HIGH - 1)
    local shown = -1
    while caught < FIREFLIES
        readSteps()
        for fly in flies
            if fly["awake"]
                moveFirefly(fly)
            end
        end
        clearFireflies()
        moveLight(lanternX(), lanternY() + 4, 22 + caught * 2)
        drawKeeper()
        drawFireflies()
        drawCount()
        if not nextFrame()
            return false
        end
    end
    return true
end

@@ Day comes, and Enter begins another night.
function showDawn()
    for step = 0, 15
        drawDawn(step)
        drawKeeper()
        if not nextFrame() or not nextFrame()
            return false
        end
    end
    drawCentred("ALL LIGHTS HOME", 20, 2, gold)
    drawCentred("GOOD MORNING KEEPER", 46, 1, cream)
    drawCentred("ENTER TO WALK AGAIN", 116, 1, cream)
    while VESPER_KEY_RETURN
        if not nextFrame()
            return false
        end
    end
    while not VESPER_KEY_RETURN
        if not nextFrame()
            return false
        end
    end
    return true
end

if not Metal["spawnWindow"]("Firefly Glade", 960, 544)
    error("Firefly Glade needs a display: none was found")
end
Metal["clearBuffer"](8, 10, 24)
Metal["updateInput"]()
Vesper["getClock"]()
ticks = 0
if showTitle()
    while playNight() and showDawn()
    end
end
Metal["killWindow"]()
