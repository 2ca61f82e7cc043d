@@ The keeper: where the feet are, which way the face looks, and the lantern.

function placeKeeper()
    keeperX = 150.0
    keeperY = 122.0
    keeperView = 3
    keeperStride = 0
    caught = 0
end

@@ A step of up to a pixel and a bit; along a wall the free direction still counts.
function walkKeeper(dx, dy)
    local moved = false
    if dx != 0 and not isBlocked(math["floor"](keeperX + dx * 1.25), math["floor"](keeperY))
        keeperX += dx * 1.25
        moved = true
    end
    if dy != 0 and not isBlocked(math["floor"](keeperX), math["floor"](keeperY + dy))
        keeperY += dy
        moved = true
    end
    if dx > 0
        keeperView = 1
    elseif dx < 0
        keeperView = 2
    elseif dy > 0
        keeperView = 3
    elseif dy < 0
        keeperView = 4
    end
    if moved
        keeperStride += 1
    else
        keeperStride = 0
    end
end

function readSteps()
    local dx = 0
    local dy = 0
    if VESPER_KEY_LEFT
        dx -= 1
    end
    if VESPER_KEY_RIGHT
        dx += 1
    end
    if VESPER_KEY_UP
        dy -= 1
    end
    if VESPER_KEY_DOWN
        dy += 1
    end
    walkKeeper(dx, dy)
end

@@ The lantern hangs on the side that the keeper looks to.
function lanternX()
    if keeperView == 2
        return math["floor"](keeperX) - 6
    end
    return math["floor"](keeperX) + 5
end

function lanternY()
    return math["floor"](keeperY) - 8
end

function drawKeeper()
    local step = 1
    if keeperStride > 0
        step = 2 + keeperStride \ 5 % 2
    end
    local feet = math["floor"](keeperY)
    drawSolid(keeperSteps[keeperView][step], math["floor"](keeperX) - 6, feet - KEEPER_HIGH + 1, feet)
    local flicker = 11 + math["floor"](math["sin"](ticks * 0.37) * 2 + math["sin"](ticks * 0.23) * 2)
    drawGlow(warmGlow, lanternX() - 4, lanternY() - 4, feet, flicker)
end

@@ The lantern's own light is the fireflies' in a warmer colour.
warmGlow = array()
for p in glow
    push(warmGlow, [p[1], p[2], 255, p[4] - 40, p[5] \ 2, p[6]])
end
