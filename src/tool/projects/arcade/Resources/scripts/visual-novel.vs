@@ @NAME@: a boat catches falling stars. Arrow keys move it; Enter begins anew. Three stars lost end the round.

FRAME_MS = 33
BOAT_WIDE = 36
BOAT_TOP = 160
LIVES = 3
NIGHT = [12, 16, 38]
SEA = [24, 52, 88]
WOOD = [196, 132, 76]
GOLD = [255, 214, 120]
RED = [220, 84, 84]

@@ True while the frames shall not wait for the clock: `vesper test` sets it.
fastForward = fastForward or false

function beginRound()
    score = 0
    lost = 0
    boat = WIDE \ 2
    phase = "play"
    dropStar()
end

function dropStar()
    starX = math["random"](10, WIDE - 10)
    starY = -4.0
    starSpeed = math["min"](1.6 + score * 0.1, 5)
end

function moveBoat()
    if VESPER_KEY_LEFT
        boat -= 5
    end
    if VESPER_KEY_RIGHT
        boat += 5
    end
    boat = Vesper["clamp"](boat, BOAT_WIDE \ 2, WIDE - BOAT_WIDE \ 2)
end

function moveStar()
    starY += starSpeed
    if starY > BOAT_TOP and starY < BOAT_TOP + 8 and math["abs"](starX - boat) < BOAT_WIDE / 2 + 3
        score += 1
        dropStar()
    elseif starY > HIGH
        lost += 1
        dropStar()
        if lost == LIVES
            phase = "over"
        end
    end
end

function step()
    if phase == "play"
        moveBoat()
        moveStar()
    elseif VESPER_KEY_RETURN
        beginRound()
    end
end

function draw()
    box(0, 0, WIDE, HIGH, NIGHT)
    box(0, BOAT_TOP + 8, WIDE, HIGH - BOAT_TOP - 8, SEA)
    box(boat - BOAT_WIDE \ 2, BOAT_TOP, BOAT_WIDE, 10, WOOD)
    box(boat - 1, BOAT_TOP - 22, 2, 22, WOOD)
    for i = 1, LIVES
        local colour = GOLD
        if i <= lost
            colour = RED
        end
        box(6 + i * 10, 10, 6, 6, colour)
    end
    local y = math["floor"](starY)
    Plush["drawLine"](screen, starX - 4, y, starX + 4, y, 2, 255, 240, 190, 255)
    Plush["drawLine"](screen, starX, y - 4, starX, y + 4, 2, 255, 240, 190, 255)
    drawNumber(score, WIDE - 20, 8, GOLD)
    if phase == "over"
        Plush["fillRect"](screen, 0, 0, WIDE, HIGH, 120, 20, 30, 110)
    end
    Metal["renderImage"](screen)
end

function waitForFrame()
    if fastForward
        return not
    end
    local spent = Vesper["getClock"]()
    if spent < FRAME_MS
        Vesper["sleep"](FRAME_MS - spent)
    end
    Vesper["getClock"]()
end

if not Metal or not Metal["spawnWindow"]("@NAME@", 960, 540)
    error("no window")
end
beginRound()
while not Metal["checkClose"]()
    Metal["updateInput"]()
    step()
    draw()
    Metal["forceUpdate"]()
    waitForFrame()
end
Metal["killWindow"]()
