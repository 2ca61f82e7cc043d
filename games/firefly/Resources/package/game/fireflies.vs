@@ The fireflies drift around their homes, each in its own time, until the keeper comes near.

FLY_COUNT = 8
REACH_X = 9
REACH_Y = 8
flies = []
sparks = []

@@ A new night has new homes: on open ground, apart from each other and from where the keeper starts.
function scatterFlies(night)
    math["randomseed"](4100 + night * 77)
    flies = []
    sparks = []
    local tries = 0
    while #flies < FLY_COUNT
        tries += 1
        local homeX = random(22, WIDE - 23)
        local homeY = random(73, HIGH - 12)
        if canStand(homeX, homeY) and (tries > 400 or isLonely(homeX, homeY))
            push(flies, {homeX = homeX, homeY = homeY, phaseX = random() * 6.28, phaseY = random() * 6.28, pulse = random() * 6.28, pace = 0.8 + random() * 0.5, x = homeX, y = homeY, z = 9, shine = 0})
        end
    end
end

function isLonely(homeX, homeY)
    if math["abs"](homeX - START_X) < 26 and math["abs"](homeY - START_Y) < 20
        return false
    end
    for i = 1, #flies
        if math["abs"](flies[i]["homeX"] - homeX) < 24 and math["abs"](flies[i]["homeY"] - homeY) < 16
            return false
        end
    end
    return true
end

function driftFlies(frame)
    local sin = math["sin"]
    for i = 1, #flies
        local fly = flies[i]
        local time = frame * fly["pace"]
        fly["x"] = math["floor"](fly["homeX"] + sin(time * 0.045 + fly["phaseX"]) * 9 + sin(time * 0.11) * 2)
        fly["y"] = math["floor"](fly["homeY"] + sin(time * 0.036 + fly["phaseY"]) * 5)
        fly["z"] = math["floor"](9 + sin(time * 0.08 + fly["pulse"]) * 3)
        fly["shine"] = 0.72 + sin(time * 0.13 + fly["pulse"]) * 0.28
    end
    driftSparks()
end

@@ How many came into reach. Each leaves a few sparks.
function catchFlies()
    local kept = []
    local caughtNow = 0
    for i = 1, #flies
        local fly = flies[i]
        if math["abs"](fly["x"] - keeperX) <= REACH_X and math["abs"](fly["y"] - keeperY) <= REACH_Y
            caughtNow += 1
            scatterSparks(fly["x"], fly["y"], fly["z"])
        else
            push(kept, fly)
        end
    end
    flies = kept
    return caughtNow
end

function scatterSparks(fromX, fromY, fromZ)
    for i = 1, 6
        local angle = i * 1.047
        push(sparks, {x = fromX, y = fromY, z = fromZ, goX = math["cos"](angle) * 0.9, goZ = 0.9 + math["sin"](angle) * 0.8, life = 20})
    end
end

function driftSparks()
    local alive = []
    for i = 1, #sparks
        local one = sparks[i]
        one["x"] += one["goX"]
        one["z"] += one["goZ"]
        one["goZ"] -= 0.05
        one["life"] -= 1
        if one["life"] > 0
            push(alive, one)
        end
    end
    sparks = alive
end

@@ Those whose place is behind the keeper's row, or those before it.
function drawFlies(behind)
    for i = 1, #flies
        local fly = flies[i]
        if (fly["y"] < keeperY) == behind
            drawSoft(glow, fly["x"] - 5, fly["y"] - fly["z"] - 5, fly["y"], fly["shine"])
        end
    end
end

function drawSparks()
    for i = 1, #sparks
        local one = sparks[i]
        drawSoft(spark, math["floor"](one["x"]) - 2, math["floor"](one["y"] - one["z"]) - 2, one["y"] + 4, one["life"] / 20)
    end
end
