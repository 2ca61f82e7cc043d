@@ The course of a night: the title, the walk, daybreak, the end. Everything goes by frames, so the same keys
@@ give the same pictures.

FRAME_MS = 33
LIGHT_RADIUS = 28
LIGHT_GROWTH = 2

titleWords = makeWords("FIREFLY GLADE", 2, goldRows)
walkWords = makeWords("ARROWS TO WALK", 1, paleRows)
beginWords = makeWords("ENTER TO BEGIN", 1, goldRows)
dawnWords = makeWords("GOOD MORNING", 2, goldRows)
homeWords = makeWords("EVERY LIGHT IS HOME", 1, paleRows)
againWords = makeWords("ENTER TO WALK AGAIN", 1, goldRows)

function startNight(part)
    phase = part
    phaseFrame = 0
    caught = 0
    placeKeeper()
    scatterFlies(night)
    shapeLight(LIGHT_RADIUS)
    fillStage(NIGHT_PLANE)
    countTaken()
end

function countTaken()
    countWords = makeWords(caught + "/" + FLY_COUNT, 1, goldRows)
    restore(WIDE - 44, 2, WIDE - 1, 18)
end

@@ True once for each time that Enter goes down.
function enterPressed()
    local pressed = VESPER_KEY_RETURN and not enterWasDown
    enterWasDown = VESPER_KEY_RETURN
    return pressed
end

function stepNight()
    local enter = enterPressed()
    phaseFrame += 1
    if phase == "title"
        if enter
            phase = "walk"
            phaseFrame = 0
            fillStage(NIGHT_PLANE)
        end
    elseif phase == "walk"
        walkKeeper()
        stepCatch()
    elseif phase == "dawn"
        keeperStride = 0
        if phaseFrame >= DAWN_FRAMES
            phase = "end"
            phaseFrame = 0
            @@ Clear of the keeper.
            cardTop = 28
            if keeperY < 98
                cardTop = 90
            end
        end
    else
        walkKeeper()
        if enter
            night += 1
            startNight("walk")
        end
    end
    driftFlies(frame)
end

function stepCatch()
    local caughtNow = catchFlies()
    if caughtNow > 0
        caught += caughtNow
        countTaken()
        shapeLight(LIGHT_RADIUS + caught * LIGHT_GROWTH)
        if caught == FLY_COUNT
            phase = "dawn"
            phaseFrame = -12
            keeperFaces = "down"
            restore(WIDE - 44, 2, WIDE - 1, 18)
        end
    end
end

function lanternShine()
    local steady = 0.62 + math["sin"](frame * 0.21) * 0.05
    if phase == "end"
        return 0
    end
    if phase == "dawn" and phaseFrame > 0
        return steady * (1 - phaseFrame / DAWN_FRAMES)
    end
    return steady
end

function drawNight()
    restoreDirty()
    if phase == "title" or phase == "walk" or phase == "dawn" and phaseFrame < 0
        lightGround()
    elseif phase == "dawn"
        breakDay(phaseFrame)
    end
    drawFlies(true)
    drawKeeper(lanternShine())
    drawFlies(false)
    drawSparks()
    drawCards()
end

function drawCards()
    if phase == "title"
        drawCentred(titleWords, 36)
        drawCentred(walkWords, 62)
        drawCentred(beginWords, 74)
    elseif phase == "walk"
        drawWords(countWords, WIDE - countWords["wide"] - 6, 6)
        drawSoft(glow, WIDE - countWords["wide"] - 19, 5, FRONT, 0.9)
    elseif phase == "end" and phaseFrame > 10
        drawCentred(dawnWords, cardTop)
        drawCentred(homeWords, cardTop + 24)
        drawCentred(againWords, cardTop + 35)
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

@@ Until the window's button is pressed.
function playNights()
    night = 1
    frame = 0
    enterWasDown = false
    startNight("title")
    while not Metal["checkClose"]()
        frame += 1
        Metal["updateInput"]()
        stepNight()
        drawNight()
        Metal["renderImage"](screen)
        Metal["forceUpdate"]()
        waitForFrame()
    end
end
