@@ Trees, painted from the back of the glade to the front. The moon stands on their left.

function paintTrees()
    paintTree(52, 75, 2, 42, 13)
    paintTree(128, 76, 2, 38, 14)
    paintTree(200, 88, 4, 24, 26)
    paintTree(165, 107, 5, 6, 30)
    paintTree(224, 122, 8, 8, 40)
    paintTree(12, 129, 9, 8, 40)
end

@@ The crown's balls lie around the row `crownY`, up to `spread` to the sides.
function paintTree(rootX, base, half, crownY, spread)
    paintTrunk(rootX, base, half, crownY)
    local balls = 6 + spread \ 4
    for ball = 1, balls
        local lean = (ball - 0.5) / balls * 2 - 1
        local reach = math["floor"](lean * spread) + random(-2, 2)
        local size = math["floor"](spread * 0.34) + random(0, 3)
        local rise = crownY + math["floor"](lean * lean * spread * 0.3) + random(-spread \ 5, spread \ 5)
        paintLeaves(rootX + reach, rise, size, base)
    end
    paintLeaves(rootX, crownY - spread \ 4, math["floor"](spread * 0.4), base)
end

function paintTrunk(rootX, base, half, top)
    for y = top, base
        local flare = math["max"](0, y - base + half + 3)
        local wide = half * (0.74 + 0.26 * (y - top) / (base - top)) + flare * flare * 0.055 * half / 5
        local sway = math["floor"](noise(rootX / 7, y / 21) * 4 - 2 + 0.5)
        if base - y < 8
            sway = sway * (base - y) \ 8
        end
        local left = rootX + sway - math["floor"](wide)
        local right = rootX + sway + math["floor"](wide)
        for x = left, right
            local side = (x - left + 0.5) / (right - left + 1)
            local groove = noise((x - sway) / 1.7 + 5, y / 9 + rootX)
            local shade = 0.62 - side * 0.62 + groove * 0.34 - 0.06
            if x == left
                shade += 0.26
            end
            put(x, y, BARK, math["max"](0, shade), base)
        end
    end
    @@ Roots that end in the grass, and the shadow on the side away from the moon.
    for x = rootX + half, rootX + half * 4
        local y = base + (x - rootX - half) \ 4
        put(x, y, GRASS, 0.04, 0)
        put(x, y - 1, GRASS, 0.1, 0)
        if x < rootX + half * 3
            put(x, y + 1, GRASS, 0.12, 0)
        end
    end
    blockEllipse(rootX, base - 1, half + 3, math["max"](2, half \ 3))
end

function paintLeaves(middleX, middleY, size, base)
    local rim = size + 2
    for y = -rim, rim
        for x = -rim, rim
            local far = math["sqrt"](x * x + y * y * 1.5) / size
            if far < 1.2
                local ragged = noise((middleX + x + 40) / 2.3, (middleY + y + 60) / 1.9)
                if far + ragged * 0.5 < 1.16
                    local shade = 0.34 - (x * 0.5 + y * 0.9) / size * 0.34 + ragged * 0.5 - 0.3
                    put(middleX + x, middleY + y, LEAF, math["max"](0, shade), base)
                end
            end
        end
    end
end
