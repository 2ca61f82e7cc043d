@@ The library that was a chapel: a wet garden behind three tall windows, books, and one good lamp.

function paintLibrary()
    math["randomseed"](2207)
    paintGarden()
    paintWall()
    paintRoom()
    paintDesk()
end

@@ Seen through old glass and rain, so everything is soft.
function paintGarden()
    local garden = canvas(960, 580)
    wash(garden, ladder([[0, "43606c"], [200, "5d7c84"], [330, "7d989a"], [440, "3c565a"], [579, "1e3238"]]) + cloud("veil", "px / 170", "py / 70") + tint("35505c", "smoothstep(0.45, 0.8, veil) * 0.6"))
    for i = 1, 26
        local x = random(0, 960)
        local y = 300 + random(-60, 60)
        local r = 40 + random(0, 60)
        glow(garden, x, y, r * 1.2, r, "2c4a48", 0.75, 0.9)
    end
    for i = 1, 8
        local x = 60 + i * 110 + random(-30, 30)
        fill(garden, stroke(curve([x, 460, x + 6, 330, x - 10, 210, x + random(-40, 40), 90], false, 6), 17, 4), flat("243a3e"))
        for b = 1, 6
            local y = 300 - b * 30
            fill(garden, stroke(curve([x, y + 20, x + random(-60, 60), y - 30, x + random(-90, 90), y - 60], false, 5), 6, 1.5), flat("2b4447"))
        end
    end
    blur(garden, 7)
    wash(garden, flat("a8c0bc") + noise("streak", "px / 2.2 + py * 0.06", "py / 60") + "a = smoothstep(0.62, 1, streak) * 0.2\n")
    glow(garden, 480, 210, 460, 260, "b9d0c8", 0.4, 1.6)
    saveWhole(garden, "library-garden.png")
end

@@ The wall in warm dark stone, its windows left open to the garden, with leads and a stone frame.
WINDOWS = [232, 480, 728]

function archOutline(cx, half, top)
    local rise = half * 1.35
    return curve([cx - half, top + rise, cx - half * 0.86, top + rise * 0.5, cx - half * 0.45, top + rise * 0.14, cx, top, cx + half * 0.45, top + rise * 0.14, cx + half * 0.86, top + rise * 0.5, cx + half, top + rise], false, 6)
end

function archShape(cx, half, top, bottom)
    local shape = archOutline(cx, half, top)
    push(shape, cx + half)
    push(shape, bottom)
    push(shape, cx - half)
    push(shape, bottom)
    return shape
end

function paintWall()
    local wall = canvas(960, 624)
    local ink = ladder([[0, "15131c"], [180, "2c2430"], [420, "4a3634"], [623, "2a1e24"]])
    ink += "local courses = fract(py / 34)\nlocal row = floor(py / 34)\nlocal brick = fract((px + row * 37) / 76)\n"
    ink += noise("rough", "px / 9", "py / 7") + noise("block", "floor((px + row * 37) / 76) * 3.7", "row * 5.3")
    ink += tint("5c4640", "(block - 0.4) * 0.35") + tint("14101a", "(1 - smoothstep(0, 0.07, courses)) * 0.55") + tint("14101a", "(1 - smoothstep(0, 0.03, brick)) * 0.45") + tint("6c524a", "(rough - 0.55) * 0.3")
    ink += tint("ffb060", "max(0, 1 - sqrt(((px - 300) / 420) ^ 2 + ((py - 420) / 300) ^ 2)) * 0.3")
    wash(wall, ink)
    for i, cx in ipairs(WINDOWS)
        cutWindow(wall, cx)
    end
    paintTimbers(wall)
    saveCut(wall, "library-wall.png")
end

@@ Frame and sill are drawn, the opening is cut out of them, and the leads are drawn across it.
function cutWindow(wall, cx)
    local half = 74
    local top = 92
    local bottom = 400
    glow(wall, cx, 260, 190, 260, "9fc0c0", 0.34, 1.4)
    fill(wall, archShape(cx, half + 15, top - 20, bottom + 8), grade(cx - half, top, "8d8a86", cx + half, bottom, "40383c"))
    fill(wall, archShape(cx, half + 7, top - 10, bottom + 2), grade(cx - half, top, "2c2a30", cx + half, bottom, "5a5654"))
    local hole = canvas(960, 624)
    fill(hole, archShape(cx, half, top, bottom), flat("ffffff"))
    Plush["shader"](hole["image"], "a = 1 - a", {}, 1, true)
    multiplyAlpha(wall, hole, cx - half - 2, top - 2, half * 2 + 4, bottom - top + 4)
    Plush["killImage"](hole["image"])
    for n = -2, 2
        fill(wall, rectangle(cx + n * 29.6 - 1.2, top + 4 + math["abs"](n) * 22, 2.4, bottom - top - math["abs"](n) * 22), grade(0, top, "2a3034", 0, bottom, "181a20"))
    end
    for n = 1, 7
        fill(wall, rectangle(cx - half, top + 62 + n * 34 - 40, half * 2, 2.2), flat("20262a"))
    end
    fill(wall, rectangle(cx - half - 26, bottom, half * 2 + 52, 15), grade(0, bottom, "a59a90", 0, bottom + 15, "4a3c3a"))
    part(wall, cx - half, top, half * 2, bottom - top, flat("dbe8e0") + "local slant = fract((px * 0.8 + py * 0.35) / 210)\na = smoothstep(0.4, 0.5, slant) * (1 - smoothstep(0.56, 0.7, slant)) * 0.1\n")
end

@@ Keeps of a part of `target` what `mask` lets stand, pixel by pixel, since blending can only add.
function multiplyAlpha(target, mask, left, top, w, h)
    for y = top, top + h - 1
        for x = left, left + w - 1
            local mr, mg, mb, ma = Plush["getPixel"](mask["image"], x, y)
            if ma < 255
                local r, g, b, a = Plush["getPixel"](target["image"], x, y)
                putPixel(target["image"], x, y, r * ma \ 255, g * ma \ 255, b * ma \ 255, a * ma \ 255)
            end
        end
    end
end

@@ Roof timbers that meet over the windows.
function paintTimbers(wall)
    local wood = grade(0, 0, "0e0b12", 0, 130, "2a1c1c")
    fill(wall, rectangle(0, 0, 960, 34), wood)
    fill(wall, stroke([-20, 190, 120, 60, 480, 12], 22, 20), wood)
    fill(wall, stroke([980, 190, 840, 60, 480, 12], 22, 20), wood)
    fill(wall, stroke([-20, 181, 120, 51, 480, 3], 2, 2), flat("6a4a3c"))
    fill(wall, rectangle(352, 0, 16, 440), grade(352, 0, "2e2022", 368, 0, "140e14"))
    fill(wall, rectangle(592, 0, 16, 440), grade(592, 0, "2e2022", 608, 0, "140e14"))
end

bookHexes = ["7a3430", "9c5a34", "b5893c", "41604e", "2f4a5c", "5a3a54", "8a7a5c", "3a3440", "a8683c", "55693c"]

@@ A shelf of books from one side to the other, some leaning; light comes from `lightX`.
function paintShelf(target, left, right, base, tall, lightX, dim)
    fill(target, rectangle(left, base, right - left, 7), grade(0, base, "5a3a2a", 0, base + 7, "1c1216"))
    fill(target, rectangle(left, base - tall - 12, right - left, tall + 12), flat("0f0a10"))
    local x = left + 3
    while x < right - 14
        local w = random(7, 17)
        local h = tall - random(0, 20)
        local lean = 0
        if random(1, 9) == 1
            lean = random(4, 12)
        end
        local hex = bookHexes[random(1, 10)]
        local lit = math["max"](0.5, 1.15 - math["abs"](x - lightX) / 420) * dim
        local ink = grade(x, 0, hex, x + w, 0, "120c12") + tint("100a12", number(1 - lit)) + tint("ffb868", number(lit * 0.24))
        fill(target, [x + lean, base - h, x + lean + w - 1.2, base - h + lean * 0.2, x + w - 1.2, base, x, base], ink)
        fill(target, rectangle(x + lean * 0.8 + 1.5, base - h * 0.8, w - 4, 1.6), flat("e2b870") + "a = a * " + number(lit * 0.75) + "\n")
        fill(target, rectangle(x + lean * 0.8 + 1.5, base - h * 0.74, w - 4, 1), flat("e2b870") + "a = a * " + number(lit * 0.6) + "\n")
        x += w + lean * 0.8
    end
end

function paintCase(target, left, right, lightX, dim)
    fill(target, rectangle(left - 9, 60, right - left + 18, 610), grade(left - 9, 0, "3a2620", right + 9, 0, "160e14"))
    for i = 0, 5
        paintShelf(target, left, right, 168 + i * 88, 66, lightX, dim)
    end
    fill(target, rectangle(left - 16, 52, right - left + 32, 14), grade(0, 52, "6a4630", 0, 66, "24161a"))
end

@@ Cases on both sides, a lamp on its chain, and the tables.
function paintRoom()
    local room = canvas(960, 656)
    paintCase(room, -20, 128, 300, 0.8)
    paintCase(room, 832, 980, 700, 0.62)
    fill(room, rectangle(140, 560, 680, 96), grade(0, 560, "4a3026", 0, 655, "181014"))
    fill(room, rectangle(140, 552, 680, 10), grade(140, 0, "a8703c", 820, 0, "4a3028"))
    paintLamp(room, 300, 268)
    paintLamp(room, 668, 196)
    glow(room, 300, 520, 330, 110, "ffb45c", 0.4, 1.6)
    for i = 1, 70
        glow(room, 300 + random(-190, 190), 240 + random(0, 240), 1.6, 1.6, "ffe2b0", random() * 0.5, 1)
    end
    saveCut(room, "library-room.png")
end

function paintLamp(target, x, y)
    fill(target, rectangle(x - 1, 0, 2, y - 30), flat("1a1218"))
    glow(target, x, y + 26, 250, 220, "ffb050", 0.42, 2)
    glow(target, x, y + 10, 90, 76, "ffd088", 0.7, 1.8)
    fill(target, curve([x - 34, y + 8, x - 27, y - 16, x - 10, y - 32, x + 10, y - 32, x + 27, y - 16, x + 34, y + 8], false, 6), grade(x - 30, 0, "f0c070", x + 34, 0, "8a4e24"))
    fill(target, ellipse(x, y + 8, 34, 5), flat("fff0c4"))
    fill(target, ellipse(x, y + 10, 10, 10), flat("fffbe8"))
end

@@ The near end of a table: stacked books, a cup, an open atlas, all a little out of focus.
function paintDesk()
    local desk = canvas(960, 712)
    fill(desk, [0, 640, 960, 604, 960, 712, 0, 712], grade(0, 610, "3c2620", 0, 700, "120b10"))
    fill(desk, stroke([0, 640, 960, 604], 4, 4), flat("c88850") + "a = a * 0.8\n")
    paintPile(desk, 62, 638, 118)
    paintPile(desk, 872, 612, 132)
    paintOpenBook(desk, 476, 640)
    blur(desk, 1.4)
    saveCut(desk, "library-desk.png")
end

function paintOpenBook(target, x, y)
    fill(target, [x - 128, y - 14, x - 104, y - 38, x, y - 30, x + 104, y - 42, x + 132, y - 20, x, y - 2], flat("2a1614"))
    local left = curve([x - 122, y - 17, x - 100, y - 42, x - 50, y - 50, x, y - 34, x, y - 34, x, y - 6, x, y - 6, x - 54, y - 24], true, 6)
    local right = curve([x + 126, y - 23, x + 102, y - 47, x + 50, y - 53, x, y - 34, x, y - 34, x, y - 6, x, y - 6, x + 56, y - 28], true, 6)
    fill(target, left, grade(x - 122, 0, "ffe9bc", x, 0, "b08a5c"))
    fill(target, right, grade(x, 0, "c79d68", x + 126, 0, "f0d29c"))
    for i = 0, 4
        fill(target, stroke([x - 102 + i * 5, y - 37 + i * 4.4, x - 56, y - 44 + i * 5, x - 14, y - 34 + i * 5], 1.3, 1.3), flat("6a4a34") + "a = a * 0.55\n")
        fill(target, stroke([x + 14, y - 34 + i * 5, x + 58, y - 47 + i * 5, x + 104 - i * 5, y - 41 + i * 4.4], 1.3, 1.3), flat("6a4a34") + "a = a * 0.55\n")
    end
end

function paintPile(target, cx, base, wide)
    local y = base
    for i = 1, 5
        local h = random(13, 21)
        local w = wide - random(0, 30)
        local x = cx - w / 2 + random(-9, 9)
        fill(target, curve([x, y - h, x, y - h, x + w, y - h, x + w, y - h, x + w, y, x + w, y, x, y, x, y], true, 3), grade(x, 0, bookHexes[random(1, 10)], x + w, 0, "1a1018") + tint("ffb868", "0.1"))
        fill(target, rectangle(x + 4, y - h + 3, w - 8, 1.6), flat("e8c890") + "a = a * 0.5\n")
        y -= h
    end
end
