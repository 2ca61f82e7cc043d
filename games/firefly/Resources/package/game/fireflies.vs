@@ Fireflies: each wanders around its own place, and is drawn to a lantern that comes close.

FIREFLIES = 7

function wakeFireflies()
    @@ The same night every time.
    math["randomseed"](1931)
    flies = array()
    local homes = [[42, 82], [70, 118], [112, 78], [146, 96], [190, 112], [218, 84], [178, 78]]
    for home in homes
        push(flies, {x = home[1] + 0.0, y = home[2] + 0.0, homeX = home[1], homeY = home[2], turn = math["random"](0, 628) / 100, pulse = math["random"](0, 99), awake = true, flash = 0})
    end
end

function moveFirefly(fly)
    fly["turn"] += (math["random"](0, 40) - 20) / 60
    local pullX = (fly["homeX"] - fly["x"]) * 0.012
    local pullY = (fly["homeY"] - fly["y"]) * 0.012
    local towardX = lanternX() - fly["x"]
    local towardY = lanternY() - fly["y"]
    local far = math["sqrt"](towardX * towardX + towardY * towardY)
    if far < 34
        pullX = towardX / (far + 1) * 0.45
        pullY = towardY / (far + 1) * 0.45
    end
    fly["x"] = Vesper["clamp"](fly["x"] + math["cos"](fly["turn"]) * 0.4 + pullX, 6, WIDE - 7)
    fly["y"] = Vesper["clamp"](fly["y"] + math["sin"](fly["turn"]) * 0.3 + pullY, 60, HIGH - 8)
    if far < 7
        fly["awake"] = false
        fly["flash"] = 12
        caught += 1
    end
end

function clearFireflies()
    for fly in flies
        if fly["shownX"] != not
            drawGround(fly["shownX"] - 4, fly["shownY"] - 4, fly["shownX"] + 4, fly["shownY"] + 4)
            fly["shownX"] = not
        end
    end
end

@@ In front of whatever stands farther up than the point below them on the ground.
function drawFireflies()
    for fly in flies
        local x = math["floor"](fly["x"])
        local y = math["floor"](fly["y"])
        if fly["awake"]
            local strength = 11 + math["floor"](math["sin"]((ticks + fly["pulse"]) * 0.09) * 5)
            drawGlow(glow, x - 4, y - 4, y + 14, strength)
            drawGlow(spark, x - 2, y - 2, y + 14, strength)
        elseif fly["flash"] > 0
            fly["flash"] -= 1
            drawGlow(glow, x - 4, y - 4, HIGH, 16)
            drawGlow(spark, x - 2, y - 2 - (12 - fly["flash"]) \ 3, HIGH, fly["flash"] + 4)
        end
        if fly["awake"] or fly["flash"] > 0
            fly["shownX"] = x
            fly["shownY"] = y
        end
    end
end
