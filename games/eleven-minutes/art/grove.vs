@@ The ring of beeches towards evening: light from behind, trunks that fade into it, and the shrine.

function paintGrove()
    math["randomseed"](3319)
    paintLight()
    paintWood()
    paintShrine()
    paintRoots()
end

function paintLight()
    local light = canvas(960, 600)
    wash(light, ladder([[0, "8a4a2c"], [150, "c87838"], [290, "f0b860"], [380, "ffe0a0"], [470, "d89a50"], [599, "6a3a24"]]) + cloud("leaf", "px / 46", "py / 34") + tint("8c4424", "smoothstep(0.45, 0.8, leaf) * 0.5 * (1 - smoothstep(150, 330, py))") + tint("ffe9b0", "smoothstep(0.55, 0.85, leaf) * 0.35 * (1 - smoothstep(200, 420, py))"))
    glow(light, 470, 330, 430, 300, "fff2c8", 0.85, 1.6)
    for i = 1, 24
        local x = i * 41 + random(-16, 16)
        fill(light, stroke(curve([x, 470, x + random(-5, 5), 300, x + random(-12, 12), 0], false, 5), 9 + random(0, 7), 5), flat("c98848") + "a = a * 0.6\n")
    end
    blur(light, 3)
    glow(light, 470, 350, 300, 170, "fff6dc", 0.6, 1.8)
    saveWhole(light, "grove-light.png")
end

@@ A beech: smooth grey bark, lit on the side that looks to the light, limbs that part high up.
function paintBeech(target, x, foot, half, pale, dark, rim, lightX)
    local lean = random(-14, 14)
    local trunk = curve([x - half * 2.3, foot + 6, x - half * 1.2, foot - half * 1.4, x - half + lean * 0.3, foot - 190, x - half * 0.86 + lean, -20, x + half * 0.86 + lean, -20, x + half + lean * 0.3, foot - 190, x + half * 1.3, foot - half * 1.4, x + half * 2.5, foot + 6], true, 8)
    local ink = grade(x - half, 0, pale, x + half, 0, dark)
    if lightX > x
        ink = grade(x + half, 0, pale, x - half, 0, dark)
    end
    ink += noise("bark", "px / 5", "py / 26") + tint(dark, "(bark - 0.4) * 0.5") + noise("ring", "px / 30", "py / 4") + tint(dark, "smoothstep(0.75, 0.95, ring) * 0.3")
    fill(target, trunk, ink)
    local side = -1
    if lightX > x
        side = 1
    end
    fill(target, stroke(curve([x + side * half * 1.3, foot - half * 1.4, x + side * half * 0.97 + lean * 0.3, foot - 190, x + side * half * 0.84 + lean, -20], false, 8), 3.4, 2), flat(rim) + "a = a * 0.75\n")
    if half > 20
        return not
    end
    for i = 1, 3
        local y = foot - 190 - random(0, 120)
        local reach = side * random(40, 130)
        fill(target, stroke(curve([x + lean * 0.5, y, x + reach * 0.4, y - 46, x + reach, y - 76], false, 6), half * 0.5, 1.5), flat(dark))
    end
end

@@ Leaves in clumps: many small ellipses around a middle, the lit ones last.
function paintFoliage(target, cx, cy, rx, ry, many, hexes)
    for i = 1, many
        local angle = random() * 6.283
        local far = math["sqrt"](random())
        local x = cx + math["cos"](angle) * rx * far
        local y = cy + math["sin"](angle) * ry * far
        local level = floorOf(i / many * #hexes * 0.999) + 1
        fill(target, ellipse(x, y, 3 + random() * 5, 2 + random() * 2.6, random(0, 180)), flat(hexes[level]))
    end
end

function paintWood()
    local wood = canvas(960, 642)
    part(wood, 0, 430, 960, 212, ladder([[430, "e8a850"], [480, "b06c34"], [641, "5a3020"]]) + cloud("litter", "px / 14", "py / 5") + tint("f8cc78", "smoothstep(0.5, 0.8, litter) * 0.55") + tint("7a3c20", "smoothstep(0.5, 0.2, litter) * 0.5") + "a = smoothstep(430, 452, py)\n")
    for i = 0, 8
        local x = 40 + i * 112 + random(-26, 26)
        if x < 380 or x > 590
            paintBeech(wood, x, 462 + random(0, 16), 12 + random(0, 5), "e0ae70", "94603c", "fff0c0", 470)
        end
    end
    glow(wood, 470, 400, 420, 120, "ffe2a8", 0.5, 1.6)
    for i = 1, 15
        paintFoliage(wood, i * 64 + random(-50, 50), random(20, 130) + math["abs"](i - 8) * 6, 105, 46, 130, ["a85828", "c87030", "e09040", "f4b458"])
    end
    paintShafts(wood)
    saveCut(wood, "grove-wood.png")
end

@@ Light that comes down between the crowns.
function paintShafts(wood)
    local ink = flat("fff0c4") + "local beam = px + (py - 60) * 0.42\n" + noise("shaft", "beam / 44", "3.5") + noise("dust", "px / 60", "py / 60")
    ink += "a = smoothstep(0.52, 0.95, shaft) * 0.4 * (1 - smoothstep(260, 520, py)) * smoothstep(0, 90, py) * (0.6 + dust * 0.4) * (1 - min(1, abs(px - 430) / 430))\n"
    part(wood, 0, 0, 960, 540, ink)
end

function paintShrine()
    local plane = canvas(960, 684)
    part(plane, 0, 520, 960, 164, ladder([[520, "b06a34"], [580, "7a4024"], [683, "341a14"]]) + cloud("litter", "px / 11", "py / 5") + tint("f0b05c", "smoothstep(0.52, 0.8, litter) * 0.6") + tint("2a1410", "smoothstep(0.48, 0.2, litter) * 0.55") + tint("ffd890", "max(0, 1 - abs(px - 460) / 300) * 0.3 * (1 - smoothstep(520, 620, py))") + noise("edge", "px / 22", "7.5") + "a = smoothstep(522 + edge * 16, 530 + edge * 16, py)\n")
    paintBeech(plane, 44, 580, 40, "9a6a48", "2e1a18", "ffd08c", 470)
    paintBeech(plane, 936, 590, 46, "a06e48", "2a1816", "ffd08c", 470)
    paintStone(plane, 300, 556)
    for i = 1, 260
        fallenLeaf(plane, random(0, 959), 536 + random(0, 140))
    end
    paintFoliage(plane, 20, 150, 190, 80, 420, ["5a2618", "8a3c1c", "b85c24", "e08c3c"])
    paintFoliage(plane, 950, 150, 200, 90, 440, ["5a2618", "8a3c1c", "b85c24", "e08c3c"])
    paintFoliage(plane, 690, 130, 170, 40, 260, ["7a3218", "a84c20", "d47c30", "f0a850"])
    saveCut(plane, "grove-shrine.png")
end

function fallenLeaf(target, x, y)
    local hexes = ["e8a048", "c86c2c", "a84420", "f4c468", "8a3418"]
    fill(target, ellipse(x, y, 3.5 + random() * 3, 1.3 + random() * 1.2, random(-30, 30)), flat(hexes[random(1, 5)]))
end

@@ A standing stone under slates, with moss, a shelf, and three small lamps.
function paintStone(target, x, foot)
    glow(target, x, foot - 4, 120, 26, "1c0e0c", 0.75, 1.2)
    local body = curve([x - 44, foot, x - 42, foot - 60, x - 38, foot - 122, x - 20, foot - 132, x + 22, foot - 132, x + 40, foot - 120, x + 44, foot - 60, x + 47, foot], true, 7)
    fill(target, body, grade(x - 44, 0, "4c4446", x + 46, 0, "b09a86") + noise("grit", "px / 6", "py / 5") + tint("2c2628", "(grit - 0.4) * 0.5") + noise("moss", "px / 15", "py / 13") + tint("6f7f3a", "smoothstep(0.52, 0.8, moss) * 0.85"))
    fill(target, rectangle(x - 27, foot - 96, 54, 44), grade(0, foot - 96, "140c0e", 0, foot - 52, "3c2418"))
    fill(target, [x - 56, foot - 114, x, foot - 160, x + 58, foot - 114, x + 40, foot - 106, x - 40, foot - 106], grade(x - 50, 0, "2a2422", x + 50, 0, "6a5a50"))
    fill(target, [x - 62, foot - 118, x - 50, foot - 132, x, foot - 168, x + 52, foot - 132, x + 64, foot - 118, x + 60, foot - 112, x, foot - 148, x - 58, foot - 112], grade(x - 60, 0, "2c2a32", x + 60, 0, "87808a") + noise("slate", "px / 12 + py / 9", "py / 5") + tint("1c1a20", "(slate - 0.4) * 0.5"))
    fill(target, stroke([x, foot - 168, x + 52, foot - 132, x + 64, foot - 118], 2.2, 1.6), flat("ffdca0"))
    fill(target, rectangle(x - 31, foot - 54, 62, 7), grade(x - 31, 0, "6c6058", x + 31, 0, "c8b298"))
    for i = -1, 1
        local lx = x + i * 17
        fill(target, rectangle(lx - 4, foot - 67, 8, 12), grade(0, foot - 67, "ffe8a8", 0, foot - 55, "e08830"))
        fill(target, rectangle(lx - 5, foot - 69, 10, 2), flat("1c1410"))
        glow(target, lx, foot - 62, 30, 30, "ffc060", 0.6, 1.8)
    end
    glow(target, x, foot - 66, 110, 84, "ffb048", 0.42, 2)
    for i = 1, 34
        fallenLeaf(target, x + random(-58, 58), foot - 2 + random(0, 12))
    end
end

@@ A dark frame of roots and leaves, close and soft.
function paintRoots()
    local near = canvas(960, 736)
    fill(near, curve([-20, 690, 120, 660, 330, 690, 560, 700, 760, 684, 980, 640, 980, 760, -20, 760], true, 6), flat("1a0b0a"))
    fill(near, stroke(curve([-30, 560, 60, 640, 190, 676, 300, 700], false, 8), 56, 12), grade(0, 580, "4a2a1c", 0, 690, "160a0a"))
    fill(near, stroke(curve([990, 540, 900, 630, 760, 672, 640, 700], false, 8), 60, 10), grade(0, 580, "4a2a1c", 0, 690, "160a0a"))
    for i = 1, 80
        local x = random(0, 959)
        local hexes = ["6a2c14", "94441c", "3c1810", "b86428"]
        fill(near, ellipse(x, 668 + random(0, 46) + math["abs"](x - 480) * -0.04, 9 + random(0, 8), 3.5 + random(0, 3), random(-40, 40)), flat(hexes[random(1, 4)]))
    end
    blur(near, 2.6)
    saveCut(near, "grove-roots.png")
end
