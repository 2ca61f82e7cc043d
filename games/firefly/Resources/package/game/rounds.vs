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
pauseWords = makeWords("PAUSE", 2, goldRows)
onWords = makeWords("ENTER TO WALK ON", 1, paleRows)
leaveWords = makeWords("Q TO LEAVE - M FOR SILENCE", 1, paleRows)
PAUSE_TOP = 40
PAUSE_LOW = 84

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

@@ Everything stands while the night is paused. Escape on the title leaves the game.
function stepPause()
    if wasPressed(["m"])
        isMute = not isMute
        applyLoudness()
    end
    if isPaused and wasPressed(["q", "pad_b"])
        playing = false
    elseif isPaused and (enterPressed() or pausePressed())
        pause(false)
        pressedNow = []
    elseif phase == "title" and pausePressed()
        playing = false
    elseif phase == "walk" and pausePressed()
        pause(true)
    end
end

function pause(on)
    isPaused = on
    applyLoudness()
    if on
        drawCentred(pauseWords, PAUSE_TOP)
        drawCentred(onWords, PAUSE_TOP + 24)
        drawCentred(leaveWords, PAUSE_TOP + 35)
    else
        restore(0, PAUSE_TOP, WIDE - 1, PAUSE_LOW)
    end
end

function stepNight()
    local enter = enterPressed()
    phaseFrame += 1
    if phase == "title"
        if enter
            phase = "walk"
            phaseFrame = 0
            hear(beginTrack)
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
            hear(beginTrack)
        end
    end
    driftFlies(frame)
end

function stepCatch()
    local caughtNow = catchFlies()
    if caughtNow > 0
        hear(catchTracks[math["min"](caught + caughtNow, #catchTracks)])
        caught += caughtNow
        countTaken()
        shapeLight(LIGHT_RADIUS + caught * LIGHT_GROWTH)
        if caught == FLY_COUNT
            phase = "dawn"
            hear(dawnTrack)
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

@@ Until the player leaves or the window's button is pressed.
function playNights()
    night = 1
    frame = 0
    playing = true
    isPaused = false
    openSounds()
    hear(nightTrack, true)
    startNight("title")
    while playing and not Metal["checkClose"]()
        frame += 1
        readKeys()
        stepPause()
        if not isPaused
            stepNight()
            drawNight()
        end
        Metal["renderImage"](screen)
        Metal["forceUpdate"]()
        waitForFrame()
    end
end
