@@ The lake as a roof of water over the village: it goes at the beginning and comes back at the end.

EBB_FRAMES = 330
FLOOD_FRAMES = 420
tideNow = BED
lakeTexture = "lake"

EBB_WORDS = [[20, "Every thirty years they let the lake down for a night, to look at the dam."], [125, "When it was let in, five lamps had been left burning in Nether Alder. Nobody had told them."], [230, "My grandmother had. She gave me her bell. “They only want their own windows,” she said."]]
FLOOD_WORDS = [[30, "The bell goes over the valley, and over it again, and the water hears it and comes."], [150, "I stood on the dam in the last of the dark. It came up past the sills, past the signs, past the eaves."], [270, "Not one of them went out."]]

@@ Height of the water over the village; at the bed's it is gone.
function setTide(level)
    tideNow = level
    local village = places["village"]
    local number = texture(lakeTexture)
    if level <= BED
        number = texture("bed")
        level = BED
    end
    for x = 1, village["wide"]
        local roofs = village["roofs"][x]
        local offs = village["roofsOff"][x]
        for y = 1, village["high"]
            roofs[y] = number
            offs[y] = level - 16
        end
    end
    if place["name"] == "village"
        showTiles()
    end
end

@@ The water falls, and whoever looks comes down with it to the road.
function beginEbb()
    mode = VESPER_GAME_NEW
    tideAge = 0
    lampsSeen = []
    tideFrom = [playerX, playerY, playerTurn, eyeHeight]
    forgetTold()
    novelPlayMusic("lake")
end

function stepEbb()
    tideAge += 1
    for i, words in ipairs(EBB_WORDS)
        if words[1] == tideAge
            tell(words[2])
        end
    end
    local share = tideAge / EBB_FRAMES
    share = share * share * (3 - 2 * share)
    local start = place["start"]
    setTide(between(LAKE, BED, share))
    playerX = between(tideFrom[1], start[1], share)
    playerY = between(tideFrom[2], start[2], share)
    playerTurn = between(tideFrom[3], start[3], share)
    playerTilt = between(0.02, 0.03, share)
    eyeHeight = between(tideFrom[4], EYE, math["min"](1, share * 1.04))
    viewFade = 1.0
    if tideAge >= EBB_FRAMES or pressed["act"] or pressed["bell"] or pressed["click"] or pressed["back"]
        endEbb()
    end
end

function endEbb()
    setTide(BED)
    forgetTold()
    mode = VESPER_GAME_TARGET
    lanternLit = true
    wakeLamps({})
    arriveAt("village", not)
    stepLamps()
    keepNight()
    tell("The road to Nether Alder is open until morning.")
end

@@ All five are home, and the rope was pulled.
function beginEbbEnd()
    mode = VESPER_CREDIT
    tideAge = 0
    hideHud()
    forgetTold()
    playPeal()
    passage = not
end

FLOOD_FROM = [290, 566, -2.1]
FLOOD_TO = [312, 534, -2.5]

function stepFlood()
    tideAge += 1
    if tideAge < 16
        viewFade = math["max"](0, 1 - tideAge / 14)
        return not
    elseif tideAge == 16
        lakeTexture = "lake"
        showPlace("village")
        lanternLit = false
        lampsSeen = []
        novelPlayMusic("lake")
    end
    for i, words in ipairs(FLOOD_WORDS)
        if words[1] == tideAge
            tell(words[2])
        end
    end
    local share = math["min"](1, (tideAge - 16) / FLOOD_FRAMES)
    share = share * share * (3 - 2 * share)
    if tideNow < LAKE
        setTide(between(BED, LAKE, share))
    end
    viewFade = math["min"](1, (tideAge - 16) / 20)
    playerX = between(FLOOD_FROM[1], FLOOD_TO[1], share)
    playerY = between(FLOOD_FROM[2], FLOOD_TO[2], share)
    playerTurn = between(FLOOD_FROM[3], FLOOD_TO[3], share)
    playerTilt = between(0.04, 0.29, share)
    eyeHeight = between(20, LAKE + 22, share)
    if tideAge == FLOOD_FRAMES + 60
        showClosing()
    elseif tideAge > FLOOD_FRAMES + 90 and (pressed["act"] or pressed["bell"] or pressed["click"] or pressed["back"])
        dropEntries("closing")
        endingSeen = true
        openTitle()
    end
end

@@ Under water lights spread further.
function tideGlow()
    if tideNow > 0
        return 9
    end
    return 0
end

function showClosing()
    forgetTold()
    addText("closing", "High Water", headFont, paper, 0, 46, VESPER_SCREEN_X)
    addText("closing", "If you go out on the lake on a still night, look down.", tellFont, lampGold, 0, 104, VESPER_SCREEN_X)
    addText("closing", "Words, pictures and sounds were made by this game’s own scripts.   Enter", smallFont, dimPaper, 0, 506, VESPER_SCREEN_X)
end

@@ It is nearly day when the water comes.
function floodDawn()
    return between(0.3, 0.36, math["min"](1, tideAge / FLOOD_FRAMES))
end
