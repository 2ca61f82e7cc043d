@@ The keeper: walks, stops at trunks and water, carries the light.

STRIDE_X = 2
STRIDE_Y = 1.4
EDGE = 9
STEP_FRAMES = 8
START_X = 130
START_Y = 103
steps = [1, 2, 1, 3]

function placeKeeper()
    keeperX = START_X
    keeperY = START_Y
    keeperFaces = "down"
    keeperStride = 0
end

function canStand(footX, footY)
    if footX < EDGE or footX > WIDE - 1 - EDGE or footY < 66 or footY > HIGH - 4
        return false
    end
    local p = math["floor"](footY) * WIDE + math["floor"](footX) + 1
    return solid[p - 3] == 0 and solid[p + 3] == 0 and solid[p] == 0
end

function walkKeeper()
    local goX = 0
    local goY = 0
    if goesLeft
        goX -= STRIDE_X
    end
    if goesRight
        goX += STRIDE_X
    end
    if goesUp
        goY -= STRIDE_Y
    end
    if goesDown
        goY += STRIDE_Y
    end
    if goX == 0 and goY == 0
        keeperStride = 0
        return not
    end
    keeperStride += 1
    if keeperStride % STEP_FRAMES == 3
        hear(stepTrack)
    end
    if goX < 0
        keeperFaces = "left"
    elseif goX > 0
        keeperFaces = "right"
    elseif goY < 0
        keeperFaces = "up"
    else
        keeperFaces = "down"
    end
    @@ Each way by itself, so that the keeper slides along what is in the way.
    if goX != 0 and canStand(keeperX + goX, keeperY)
        keeperX += goX
    end
    if goY != 0 and canStand(keeperX, keeperY + goY)
        keeperY += goY
    end
end

function lightGround()
    castLight(math["floor"](keeperX), math["floor"](keeperY) - 3, math["floor"](keeperY))
end

function drawKeeper(lanternShine)
    local footX = math["floor"](keeperX)
    local footY = math["floor"](keeperY)
    local left = footX - 5
    local lantern = left + 11
    if keeperFaces == "left"
        left = footX - 8
        lantern = left + 1
    elseif keeperFaces == "right"
        lantern = left + 12
    end
    drawSoft(shadow, footX - 4, footY - 4, footY, 0.55)
    drawSprite(keeperViews[keeperFaces][steps[keeperStride \ 4 % 4 + 1]], left, footY - 18, footY)
    if lanternShine > 0
        drawSoft(lanternGlow, lantern - 7, footY - 13, footY, lanternShine)
    end
end
