@@ Walking: speed and turning come and go smoothly; walls, steps too high, deep water and faces stop.

STRIDE = 1.7
TURN_RATE = 0.062
BODY = 3.0
STEP_UP = 4.4
STEP_DOWN = 9
EYE = 9.6

walkSpeed = 0.0
sideSpeed = 0.0
turnSpeed = 0.0
footHeight = 0.0
walked = 0.0
movedNow = 0.0

@@ Height of what one stands on, or nothing where one cannot.
function groundAt(x, y)
    local tileX = math["floor"](x / 16)
    local tileY = math["floor"](y / 16)
    local wall = tileAt("walls", tileX, tileY)
    if wall == not or wall > 0
        return not
    end
    for way in place["bridges"]
        local height = Jade["height"](way, x, y)
        if height != false
            return height
        end
    end
    if tileAt("deep", tileX, tileY) == 1
        return not
    end
    return tileAt("floorsOff", tileX, tileY)
end

function isFree(x, y)
    local here = groundAt(x, y)
    if here == not
        return false
    end
    for cornerX = -1, 1, 2
        for cornerY = -1, 1, 2
            local there = groundAt(x + cornerX * BODY, y + cornerY * BODY)
            if there == not or there - footHeight > STEP_UP or footHeight - there > STEP_DOWN
                return false
            end
        end
    end
    for solid in place["solids"]
        if nearSegment(x, y, solid) < BODY - 0.4
            return false
        end
    end
    return true
end

@@ Distance to a solid's line, less its reach.
function nearSegment(x, y, solid)
    local wide = solid[3] - solid[1]
    local high = solid[4] - solid[2]
    local long = wide * wide + high * high
    local share = 0.0
    if long > 0
        share = math["max"](0, math["min"](1, ((x - solid[1]) * wide + (y - solid[2]) * high) / long))
    end
    local across = x - solid[1] - wide * share
    local down = y - solid[2] - high * share
    return math["sqrt"](across * across + down * down) - solid[5]
end

function eased(value, wanted, share)
    local next = value + (wanted - value) * share
    if math["abs"](next - wanted) < 0.002
        return wanted
    end
    return next
end

@@ A step that is stopped goes along what stopped it.
function tryStep(stepX, stepY)
    if isFree(playerX + stepX, playerY + stepY)
        playerX += stepX
        playerY += stepY
        return true
    end
    local moved = false
    if isFree(playerX + stepX, playerY)
        playerX += stepX
        moved = true
    end
    if isFree(playerX, playerY + stepY)
        playerY += stepY
        moved = true
    end
    return moved
end

function stepWalk()
    turnSpeed = eased(turnSpeed, axis("turnRight", "turnLeft") * TURN_RATE, 0.3)
    playerTurn += turnSpeed
    if playerTurn > 3.14159265
        playerTurn -= 6.2831853
    elseif playerTurn < -3.14159265
        playerTurn += 6.2831853
    end
    walkSpeed = eased(walkSpeed, axis("ahead", "behind") * STRIDE, 0.24)
    sideSpeed = eased(sideSpeed, axis("stepRight", "stepLeft") * STRIDE * 0.8, 0.24)
    local c = math["cos"](playerTurn)
    local s = math["sin"](playerTurn)
    local fromX = playerX
    local fromY = playerY
    local stepX = c * walkSpeed - s * sideSpeed
    local stepY = s * walkSpeed + c * sideSpeed
    if stepX != 0 or stepY != 0
        if not tryStep(stepX, stepY)
            walkSpeed = walkSpeed * 0.5
            sideSpeed = sideSpeed * 0.5
        end
    end
    movedNow = math["sqrt"]((playerX - fromX) * (playerX - fromX) + (playerY - fromY) * (playerY - fromY))
    settleEye()
    takeSteps()
end

function settleEye()
    footHeight = eased(footHeight, groundAt(playerX, playerY) or footHeight, 0.34)
    eyeHeight = footHeight + EYE + math["sin"](walked * 0.36) * 0.22
    playerTilt = 0.03
end

@@ A footfall for every so much way.
function takeSteps()
    local before = math["floor"](walked / 17.4)
    walked += movedNow
    if math["floor"](walked / 17.4) != before
        playStep()
    end
end

function playStep()
    local number = tileAt("floors", math["floor"](playerX / 16), math["floor"](playerY / 16))
    if number == texture("black-water")
        playSound("splash")
    elseif number == texture("cobbles1") or number == texture("cobbles2") or number == texture("flags")
        playSound("step")
    else
        playSound("soft-step")
    end
end

function standAt(x, y, turn)
    playerX = x
    playerY = y
    playerTurn = turn
    walkSpeed = 0.0
    sideSpeed = 0.0
    turnSpeed = 0.0
    footHeight = groundAt(x, y) or 0
    trail = []
end
