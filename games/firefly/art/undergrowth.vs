@@ Grass, stones, reeds, mushrooms and the brambles along the lower edge.

function paintTufts()
    for tuft = 1, 330
        local x = random(0, WIDE - 1)
        local y = random(HORIZON + 6, HIGH - 1)
        local tall = 1 + (y - HORIZON) \ 26
        if kinds[y * WIDE + x + 1] == GRASS
            local shade = shades[y * WIDE + x + 1]
            put(x, y, GRASS, shade - 0.2, 0)
            put(x + 2, y, GRASS, shade - 0.16, 0)
            for up = 1, tall
                put(x + up \ 3, y - up, GRASS, shade + 0.12 + up * 0.05, y)
                put(x + 1, y - up + 1, GRASS, shade - 0.05, y)
            end
            put(x + 2 + tall \ 3, y - tall, GRASS, shade + 0.16, y)
        end
    end
    for flower = 1, 46
        local x = random(30, WIDE - 30)
        local y = random(HORIZON + 12, HIGH - 6)
        if kinds[y * WIDE + x + 1] == GRASS
            put(x, y, GRASS, 0.1, 0)
            put(x, y - 1, BLOOM, random(), 0)
        end
    end
end

function paintStones()
    paintStone(136, 117, 6)
    paintStone(143, 119, 3)
    paintStone(40, 108, 4)
    paintStone(108, 84, 3)
    paintStone(196, 108, 5)
end

function paintStone(middleX, base, half)
    local tall = half * 4 \ 5 + 1
    for y = 0, tall
        local wide = math["sqrt"](1 - y * y / ((tall + 0.5) * (tall + 0.5))) * half
        for x = -math["floor"](wide), math["floor"](wide)
            local shade = 0.3 + y / tall * 0.5 - x / half * 0.3 + noise((middleX + x) / 2, (base - y) / 2) * 0.4 - 0.25
            put(middleX + x, base - y, STONE, math["max"](0, shade), base)
        end
    end
    for x = -half, half + 2
        put(middleX + x, base + 1, GRASS, 0.05, 0)
    end
    blockEllipse(middleX, base - 1, half + 2, 2)
end

function paintReeds()
    for reed = 1, 15
        paintReed(random(42, 60), random(105, 112), random(9, 16))
    end
    for reed = 1, 11
        paintReed(random(106, 118), random(106, 113), random(9, 17))
    end
    for reed = 1, 8
        paintReed(random(88, 112), random(88, 90), random(5, 9))
    end
end

function paintReed(rootX, base, tall)
    local bend = random(-3, 3)
    for up = 0, tall
        local x = rootX + bend * up * up \ (tall * tall)
        put(x, base - up, REED, 0.1 + up / tall * 0.75, base)
        if up < tall \ 2
            put(x + 1, base - up, REED, 0.05 + up / tall * 0.3, base)
        end
    end
    if random(1, 3) == 1 and tall > 8
        for up = tall - 1, tall + 2
            put(rootX + bend, base - up, BARK, 0.85, base)
            put(rootX + bend + 1, base - up, BARK, 0.5, base)
        end
        put(rootX + bend, base - tall - 3, REED, 0.8, base)
    end
end

function paintMushrooms()
    paintMushroom(151, 108, 2)
    paintMushroom(155, 110, 1)
    paintMushroom(212, 124, 2)
    paintMushroom(207, 126, 1)
    paintMushroom(27, 131, 2)
    paintMushroom(32, 129, 1)
    paintMushroom(190, 90, 1)
end

function paintMushroom(rootX, base, half)
    put(rootX, base, STONE, 0.7, base)
    put(rootX, base - 1, STONE, 0.9, base)
    for x = -half, half
        put(rootX + x, base - 2, CAP, 0.4 - x * 0.1, base)
        if math["abs"](x) < half or half == 1
            put(rootX + x, base - 3, CAP, 0.75 - x * 0.15, base)
        end
    end
    put(rootX - 1, base - 3, CAP, 1, base)
end

@@ Nearer than anyone can walk, so they hide whatever comes to the lower edge.
function paintBrambles()
    for x = 0, WIDE - 1
        local off = math["abs"](x - 120) / 120
        local top = HIGH - 1 - math["floor"](off * off * 9 + noise(x / 9, 21) * 5)
        for y = top, HIGH - 1
            put(x, y, LEAF, math["max"](0, 0.3 - (y - top) * 0.1), HIGH)
        end
    end
    for blade = 1, 110
        local x = random(0, WIDE - 1)
        local off = math["abs"](x - 120) / 120
        local tall = random(3, 6) + math["floor"](off * off * 12)
        local bend = random(-4, 4)
        for up = 0, tall
            put(x + bend * up * up \ (tall * tall), HIGH - 1 - up, LEAF, 0.05 + up / tall * 0.6, HIGH)
        end
    end
end
