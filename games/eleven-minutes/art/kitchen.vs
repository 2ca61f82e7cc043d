@@ The keeper's kitchen in the morning: sun through a low window, a range that has been lit for hours, and breakfast.

function paintKitchen()
    math["randomseed"](720)
    paintKitchenWall()
    paintRange()
    paintBreakfast()
end

function paintKitchenWall()
    local wall = canvas(960, 624)
    local ink = ladder([[0, "8f7a68"], [90, "d8c0a0"], [300, "ecd8b4"], [430, "cfae88"], [623, "6a5040"]])
    ink += cloud("plaster", "px / 60", "py / 44") + tint("b8946c", "(plaster - 0.45) * 0.7") + noise("fleck", "px / 5", "py / 5") + tint("fff4dc", "(fleck - 0.6) * 0.3")
    ink += tint("4a3a3c", "smoothstep(250, 520, abs(px - 440)) * 0.55") + tint("fff2cc", "max(0, 1 - sqrt(((px - 440) / 360) ^ 2 + ((py - 250) / 230) ^ 2)) * 0.55")
    wash(wall, ink)
    @@ Blue tiles below.
    part(wall, 0, 404, 960, 220, ladder([[404, "7a98a8"], [623, "2c3c50"]]) + "local tx = fract(px / 42)\nlocal ty = fract((py - 404) / 42)\n" + noise("kiln", "floor(px / 42) * 3.7", "floor((py - 404) / 42) * 5.1") + tint("b8d0d4", "(kiln - 0.4) * 0.5") + tint("263444", "max(1 - smoothstep(0, 0.06, tx), 1 - smoothstep(0, 0.06, ty)) * 0.6") + tint("2a2430", "smoothstep(250, 520, abs(px - 440)) * 0.5"))
    fill(wall, rectangle(0, 396, 960, 10), grade(0, 396, "c8a070", 0, 406, "5a3c28"))
    paintSash(wall, 440, 132, 118, 372)
    for i = 0, 6
        fill(wall, rectangle(i * 160 - 20, 0, 34, 104), grade(i * 160 - 20, 0, "6a4834", i * 160 + 14, 0, "2c1c18"))
    end
    fill(wall, rectangle(0, 92, 960, 16), grade(0, 92, "7a563c", 0, 108, "2c1c18"))
    saveCut(wall, "kitchen-wall.png")
end

@@ A window of eight panes in white wood, with curtains and a pot of thrift.
function paintSash(wall, cx, half, top, bottom)
    fill(wall, rectangle(cx - half - 16, top - 16, half * 2 + 32, bottom - top + 24), grade(cx - half, top, "f4ecdc", cx + half, bottom, "a08c78"))
    local hole = canvas(960, 624)
    fill(hole, rectangle(cx - half, top, half * 2, bottom - top), flat("ffffff"))
    Plush["shader"](hole["image"], "a = 1 - a", {}, 1, true)
    multiplyAlpha(wall, hole, cx - half - 2, top - 2, half * 2 + 4, bottom - top + 4)
    Plush["killImage"](hole["image"])
    for n = 1, 3
        fill(wall, rectangle(cx - half + n * half / 2 - 3, top, 6, bottom - top), grade(0, top, "fffaf0", 0, bottom, "b8a894"))
    end
    fill(wall, rectangle(cx - half, (top + bottom) / 2 - 4, half * 2, 8), grade(0, top, "fffaf0", 0, bottom, "a89884"))
    fill(wall, rectangle(cx - half - 34, bottom + 4, half * 2 + 68, 16), grade(0, bottom, "fff4e0", 0, bottom + 20, "8a745e"))
    for side = -1, 1, 2
        local x = cx + side * (half - 2)
        local cloth = curve([x - side * 40, top - 24, x - side * 40, top - 24, x + side * 34, top - 24, x + side * 34, top - 24, x + side * 30, top + 90, x + side * 36, bottom + 2, x + side * 8, bottom + 2, x - side * 2, top + 120], true, 6)
        fill(wall, cloth, grade(x - 30, 0, "c86a50", x + 30, 0, "7a3430") + noise("fold", "px / 9", "1.5") + tint("f0a884", "(fold - 0.45) * 0.7"))
    end
    fill(wall, rectangle(cx - half - 46, top - 32, half * 2 + 92, 9), grade(0, top - 32, "8a6040", 0, top - 22, "3a2418"))
    local x = cx - 60
    fill(wall, [x - 22, bottom - 30, x + 22, bottom - 30, x + 16, bottom + 6, x - 16, bottom + 6], grade(x - 22, 0, "d88458", x + 22, 0, "6a3424"))
    for i = 1, 16
        local lean = random(-30, 30)
        local high = random(24, 62)
        fill(wall, stroke(curve([x + lean * 0.3, bottom - 30, x + lean * 0.6, bottom - 30 - high * 0.6, x + lean, bottom - 30 - high], false, 5), 1.6, 1), flat("4a7048"))
        fill(wall, ellipse(x + lean, bottom - 32 - high, 5, 4), flat("e888a8"))
    end
end

@@ The range with its kettle on the right, the dresser on the left.
function paintRange()
    local room = canvas(960, 656)
    fill(room, rectangle(0, 566, 960, 90), grade(0, 566, "8a6a50", 0, 655, "2c1e1c"))
    paintDresser(room)
    fill(room, curve([664, 570, 664, 250, 700, 214, 880, 214, 916, 250, 916, 570], false, 6), grade(664, 0, "a06048", 916, 0, "4a2824") + "local row = floor(py / 19)\nlocal brick = fract((px + row * 21) / 42)\n" + tint("e0b090", "(1 - smoothstep(0, 0.05, brick)) * 0.5") + tint("e0b090", "(1 - smoothstep(0, 0.1, fract(py / 19))) * 0.5"))
    fill(room, curve([690, 570, 690, 284, 716, 252, 864, 252, 890, 284, 890, 570], false, 6), grade(0, 252, "0f0a0c", 0, 570, "2c1814"))
    fill(room, rectangle(700, 376, 180, 194), grade(700, 0, "4c4a54", 880, 0, "16141c"))
    fill(room, rectangle(694, 366, 192, 14), grade(0, 366, "8c8a96", 0, 380, "23212b"))
    fill(room, rectangle(722, 410, 136, 70), grade(722, 0, "34323c", 858, 0, "121018"))
    fill(room, rectangle(738, 428, 104, 36), grade(0, 428, "ffb050", 0, 464, "c03c14") + noise("flame", "px / 9", "py / 12") + tint("fff0a0", "(flame - 0.5) * 1.2"))
    for i = 0, 6
        fill(room, rectangle(742 + i * 16, 426, 4, 40), flat("1a161c"))
    end
    glow(room, 790, 450, 170, 130, "ff9040", 0.4, 1.7)
    fill(room, rectangle(740, 494, 100, 8), grade(740, 0, "e8d0a0", 840, 0, "6a5034"))
    paintKettle(room, 790, 368)
    for i, x in ipairs([706, 752, 806, 858])
        local r = 15 + i % 2 * 6
        fill(room, rectangle(x - 1.4, 150, 2.8, 40), flat("4a3020"))
        fill(room, ellipse(x, 190 + r, r, r), grade(x - r, 190, "ffc090", x + r, 190 + r * 2, "7a3418"))
        fill(room, ellipse(x, 190 + r, r * 0.66, r * 0.66), flat("b0582c") + "a = a * 0.6\n")
    end
    fill(room, rectangle(676, 144, 230, 8), grade(0, 144, "a8845c", 0, 152, "3a2418"))
    @@ Sun from the window lies across the room.
    part(room, 260, 200, 420, 380, flat("fff0c0") + "local slant = px - 440 + (py - 200) * 0.28\nlocal pane = fract(slant / 66)\na = max(0, 1 - abs(slant) / 190) * (0.05 + 0.09 * smoothstep(0.08, 0.2, pane) * (1 - smoothstep(0.86, 1, pane)))\n")
    saveCut(room, "kitchen-range.png")
end

function paintDresser(room)
    fill(room, rectangle(34, 180, 210, 400), grade(34, 0, "7a5038", 244, 0, "3c241c"))
    for row = 0, 2
        local base = 262 + row * 82
        fill(room, rectangle(46, base - 68, 186, 68), grade(46, 0, "4c3026", 232, 0, "24161a"))
        fill(room, rectangle(40, base, 198, 8), grade(0, base, "b07c50", 0, base + 8, "4a2c1e"))
        for i = 0, 3
            local x = 70 + i * 46
            if row < 2
                fill(room, ellipse(x, base - 26, 21, 25), grade(x - 21, 0, "fdf8ec", x + 21, 0, "98a4b8"))
                fill(room, ellipse(x, base - 26, 13, 16), grade(x - 13, 0, "dfe6ee", x + 13, 0, "8494b0"))
                fill(room, ellipse(x, base - 26, 6, 7), flat("4a70a8") + "a = a * 0.8\n")
            else
                paintCup(room, x, base, 13, "8c98b0")
            end
        end
    end
    fill(room, rectangle(24, 440, 230, 14), grade(0, 440, "c89060", 0, 454, "4a2c1e"))
    fill(room, rectangle(40, 462, 94, 110), grade(40, 0, "8a5c40", 134, 0, "4a2e22"))
    fill(room, rectangle(144, 462, 94, 110), grade(144, 0, "7a5038", 238, 0, "3a221a"))
    fill(room, ellipse(124, 512, 5, 5), flat("e8c070"))
    fill(room, ellipse(154, 512, 5, 5), flat("e8c070"))
end

function paintKettle(target, x, foot)
    for i = 0, 3
        fill(target, stroke(curve([x + 50, foot - 50, x + 62 + i * 3, foot - 76, x + 52 + i * 8, foot - 104, x + 70 + i * 4, foot - 136], false, 7), 3, 14), flat("fff8ec") + "a = a * 0.13\n")
    end
    fill(target, stroke(curve([x + 26, foot - 22, x + 42, foot - 34, x + 50, foot - 50], false, 6), 13, 7), grade(x + 26, 0, "e08850", x + 50, 0, "7a3418"))
    fill(target, curve([x - 36, foot, x - 38, foot - 26, x - 22, foot - 46, x + 22, foot - 46, x + 38, foot - 26, x + 36, foot, x + 36, foot, x - 36, foot], true, 6), grade(x - 36, foot - 46, "ffc88c", x + 38, foot, "7a3418"))
    fill(target, ellipse(x, foot - 48, 14, 5), flat("8a4420"))
    fill(target, ellipse(x, foot - 54, 4, 4), flat("3a2018"))
    fill(target, stroke(curve([x - 28, foot - 40, x - 22, foot - 74, x + 22, foot - 74, x + 28, foot - 40], false, 7), 4, 4), flat("3a2018"))
    glow(target, x - 14, foot - 30, 10, 12, "fff4dc", 0.8, 1.3)
end

@@ The near end of the table: loaf and butter, the pot, and the bill under a saucer.
function paintBreakfast()
    local table = canvas(960, 712)
    fill(table, [0, 616, 960, 616, 960, 712, 0, 712], grade(0, 616, "f0e4cc", 0, 706, "8a7058") + "local gx = abs(fract(px / 58) - 0.5)\nlocal gy = abs(fract((py - 616) / 34) - 0.5)\n" + tint("c86a60", "smoothstep(0.3, 0.34, gx) * 0.28") + tint("c86a60", "smoothstep(0.3, 0.34, gy) * 0.28"))
    fill(table, stroke([0, 616, 960, 616], 4, 4), flat("fffaf0"))
    fill(table, curve([8, 620, 6, 592, 26, 566, 62, 556, 104, 562, 128, 588, 126, 620], false, 6), grade(20, 556, "f0b868", 110, 624, "6a3818"))
    for i = 0, 3
        fill(table, stroke(curve([30 + i * 24, 568, 38 + i * 24, 580, 36 + i * 24, 600], false, 5), 4, 2), flat("ffe0a8") + "a = a * 0.7\n")
    end
    fill(table, [392, 640, 540, 626, 566, 674, 410, 690], grade(392, 626, "fffdf4", 560, 690, "c8bca8"))
    for i = 0, 3
        fill(table, stroke([414 + i * 2, 648 + i * 9, 530 + i * 3, 637 + i * 9], 1.6, 1.6), flat("4a5470") + "a = a * 0.7\n")
    end
    fill(table, stroke([420, 662, 540, 648], 2.2, 2.2), flat("a03c34"))
    paintTeapot(table, 902, 634, 44)
    paintCup(table, 812, 640, 24, "8a5028")
    blur(table, 1.1)
    saveCut(table, "kitchen-table.png")
end
