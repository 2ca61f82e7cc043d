@@ Everything flat: sky, hills, meadow and pond.

HORIZON = 62
moonX = 74
moonY = 23
pondX = 80
pondY = 100
pondWide = 37
pondHigh = 12

function paintSky()
    for y = 0, HORIZON
        for x = 0, WIDE - 1
            local across = x - moonX
            local down = y - moonY
            local halo = 1 - math["sqrt"](across * across + down * down) / 46
            local cloud = noise(x / 26, y / 5 + 7)
            local shade = 0.02 + y / 88
            if halo > 0
                shade += halo * halo * 0.46
            end
            if cloud > 0.62
                shade += (cloud - 0.62) * 0.6
            end
            put(x, y, SKY, shade, 0)
        end
    end
    for star = 1, 90
        local x = random(0, WIDE - 1)
        local y = random(0, 46)
        local across = x - moonX
        local down = y - moonY
        local bright = random()
        if across * across + down * down > 500
            put(x, y, STAR, bright * bright, 0)
            if bright > 0.93
                put(x - 1, y, STAR, 0, 0)
                put(x + 1, y, STAR, 0, 0)
                put(x, y - 1, STAR, 0, 0)
                put(x, y + 1, STAR, 0, 0)
            end
        end
    end
    paintMoon()
end

function paintMoon()
    for y = -9, 9
        for x = -9, 9
            if x * x + y * y <= 84
                local shade = 0.98 - noise(x / 5 + 14, y / 5 + 20) * 0.95 + (6 - x - y) / 40
                put(moonX + x, moonY + y, MOON, math["min"](1, math["max"](0, shade)), 0)
            end
        end
    end
end

function paintHills()
    for x = 0, WIDE - 1
        local ridge = 42 + math["floor"](noise(x / 38 + 3, 2) * 14 + noise(x / 11, 9) * 4)
        for y = ridge, HORIZON
            put(x, y, FAR, (y - ridge) / 22, 0)
        end
    end
    @@ Firs: a saw of pointed crowns, each a little different.
    local x = -4
    while x < WIDE
        local middle = x + random(2, 4)
        local tip = 49 - random(0, 5) + math["floor"](noise(x / 20, 14) * 8)
        for y = tip, HORIZON
            local half = (y - tip) \ 3 + (y - tip) % 3 \ 2
            for wx = middle - half, middle + half
                put(wx, y, WOOD, (y - tip) / 26 + (middle - wx) / 14, 0)
            end
        end
        x = middle + random(1, 3)
    end
end

@@ A bank of mist in front of the wood: closed in the middle, torn along its upper edge.
function paintMist()
    for mx = 0, WIDE - 1
        local top = 58 - noise(mx / 21 + 5, 11) * 6 - noise(mx / 7, 17) * 2
        for y = 49, HORIZON
            local density = (y - top) / 5
            if density > threshold(mx, y)
                put(mx, y, MIST, (y - top) / 14 - 0.1 + noise(mx / 17, y / 2 + 3) * 0.5, 0)
            end
        end
    end
end

function paintMeadow()
    for y = HORIZON, HIGH - 1
        for x = 0, WIDE - 1
            local across = (x - 124) / 118
            local down = (y - 92) / 46
            local pool = math["max"](0, 1 - across * across - down * down)
            local shade = 0.06 + pool * 0.42 + noise(x / 13, y / 5) * 0.3 - 0.06 + noise(x / 3 + 9, y / 2) * 0.14
            local fade = (HORIZON + 3 - y + noise(x / 11 + 8, 25) * 5) / 6
            if fade > threshold(x, y)
                put(x, y, MIST, fade * 0.5, 0)
            else
                put(x, y, GRASS, shade, 0)
            end
            if y < HORIZON + 6
                blocked[y * WIDE + x + 1] = 1
            end
        end
    end
end

function paintPond()
    for y = pondY - pondHigh - 5, pondY + pondHigh + 5
        for x = pondX - pondWide - 8, pondX + pondWide + 8
            local across = (x - pondX) / pondWide
            local down = (y - pondY) / pondHigh
            local far = across * across + down * down + noise(x / 7 + 2, y / 4 + 2) * 0.32 - 0.16
            if far < 1
                put(x, y, WATER, waterShade(x, y, far), 0)
            elseif far < 1.1 and down > 0
                put(x, y, EARTH, 0.9, 0)
            elseif far < 1.26
                put(x, y, EARTH, 0.15 + noise(x / 3, y / 2) * 0.3, 0)
            end
            if far < 1.06
                blocked[y * WIDE + x + 1] = 1
            end
        end
    end
    paintPad(62, 104, 4)
    paintPad(104, 98, 3)
    paintPad(96, 105, 4)
    put(97, 104, BLOOM, 1, 0)
    put(96, 103, BLOOM, 0.4, 0)
    put(98, 103, BLOOM, 0.4, 0)
    put(97, 103, BLOOM, 1, 0)
end

@@ The far bank lies dark on the water, the near part holds the sky, and the moon stands broken in ripples.
function waterShade(atX, atY, far)
    local down = (atY - pondY + pondHigh) / (2 * pondHigh)
    local shade = 0.08 + down * 0.34 + noise(atX / 12, atY / 1.5) * 0.12
    if noise(atX / 9 + 4, atY * 0.8) > 0.74
        shade += 0.14
    end
    local glint = math["abs"](atX - moonX + noise(3, atY * 0.7) * 6 - 3)
    if glint < 2 + down * 3 and noise(1, atY * 0.9 + 3) > 0.3
        shade = 0.97 - glint * 0.09
    elseif glint < 12
        shade += (12 - glint) * 0.018
    end
    if far > 0.86
        shade -= 0.08
    end
    return shade
end

function paintPad(middleX, middleY, half)
    for x = -half, half
        put(middleX + x, middleY, LEAF, 0.75 - x * 0.06, 0)
        if math["abs"](x) < half
            put(middleX + x, middleY - 1, LEAF, 0.95 - x * 0.05, 0)
        end
        put(middleX + x, middleY + 1, WATER, 0.04, 0)
    end
    put(middleX + 1, middleY - 1, WATER, 0.2, 0)
end
