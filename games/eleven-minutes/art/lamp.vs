@@ The room below the lamp: its light falls through the grating of the ceiling onto the clockwork that turns it. What
@@ stands behind the windows is the sky of the hour.

BRASS = ["ffe2a0", "c08a3c", "5a3818"]

function paintLampRoom()
    math["randomseed"](1549)
    paintTowerWall()
    paintWorks()
    paintBench()
end

@@ A round arch cut out of a wall, with a stone frame around it and bars across it.
function cutArch(wall, cx, half, top, bottom, bars)
    fill(wall, archShape(cx, half + 17, top - 22, bottom + 6), grade(cx - half, top, "98a0a8", cx + half, bottom, "343a4c"))
    fill(wall, archShape(cx, half + 8, top - 11, bottom + 1), grade(cx - half, top, "20263a", cx + half, bottom, "56607a"))
    local hole = canvas(960, 624)
    fill(hole, archShape(cx, half, top, bottom), flat("ffffff"))
    Plush["shader"](hole["image"], "a = 1 - a", {}, 1, true)
    multiplyAlpha(wall, hole, cx - half - 2, top - 2, half * 2 + 4, bottom - top + 4)
    Plush["killImage"](hole["image"])
    fill(wall, rectangle(cx - 2, top, 4, bottom - top), flat(bars))
    for n = 1, 3
        fill(wall, rectangle(cx - half, top + 20 + n * 58, half * 2, 3), flat(bars))
    end
    fill(wall, rectangle(cx - half - 24, bottom, half * 2 + 48, 13), grade(0, bottom, "aeb4b8", 0, bottom + 13, "3c4254"))
end

function paintTowerWall()
    local wall = canvas(960, 624)
    local ink = ladder([[0, "0d1020"], [150, "232a3e"], [400, "3a3f52"], [623, "1c1f2e"]])
    ink += "local courses = fract(py / 46)\nlocal row = floor(py / 46)\nlocal brick = fract((px + row * 61) / 118)\n"
    ink += noise("rough", "px / 8", "py / 7") + noise("block", "floor((px + row * 61) / 118) * 3.1", "row * 4.7")
    ink += tint("565c70", "(block - 0.42) * 0.4") + tint("0e1020", "(1 - smoothstep(0, 0.06, courses)) * 0.5") + tint("0e1020", "(1 - smoothstep(0, 0.026, brick)) * 0.4") + tint("666c80", "(rough - 0.55) * 0.25")
    @@ The wall is round, so it darkens to both sides; light comes down its middle.
    ink += tint("080a16", "smoothstep(170, 500, abs(px - 480)) * 0.62") + tint("ffca80", "max(0, 1 - abs(px - 480) / (170 + py * 0.5)) * (1 - py / 640) * 0.9")
    wash(wall, ink)
    cutArch(wall, 196, 60, 148, 384, "1a1e2e")
    cutArch(wall, 752, 60, 148, 384, "1a1e2e")
    paintGrating(wall)
    @@ A shelf with oil.
    fill(wall, rectangle(14, 300, 94, 7), grade(0, 300, "8a6444", 0, 307, "2a1c18"))
    for i = 0, 2
        local x = 34 + i * 28
        fill(wall, curve([x - 10, 300, x - 10, 276, x - 4, 262, x + 4, 262, x + 10, 276, x + 10, 300], false, 5), grade(x - 10, 0, "d8a860", x + 10, 0, "4a2e1c"))
        fill(wall, stroke([x + 8, 280, x + 16, 268, x + 17, 262], 3, 1.6), flat("b08040"))
    end
    saveCut(wall, "lamp-wall.png")
end

@@ Iron bars like spokes round an opening that is all light.
function paintGrating(wall)
    glow(wall, 480, 74, 420, 250, "ffc878", 0.5, 1.7)
    fill(wall, ellipse(480, 66, 262, 36), grade(0, 34, "fff4cc", 0, 104, "ffc870"))
    glow(wall, 480, 66, 190, 40, "fffdf0", 0.9, 1.2)
    for i = 0, 23
        local angle = i / 24 * 6.2831853
        fill(wall, stroke([480 + math["cos"](angle) * 84, 66 + math["sin"](angle) * 11, 480 + math["cos"](angle) * 266, 66 + math["sin"](angle) * 37], 3, 5), flat("3c2c24"))
    end
    for ring in [[84, 11, 4], [150, 20, 3], [212, 28.5, 3.5], [264, 36.5, 9]]
        local outline = ellipse(480, 66, ring[1], ring[2])
        push(outline, outline[1])
        push(outline, outline[2])
        fill(wall, stroke(outline, ring[3], ring[3]), flat("2c2220"))
    end
    fill(wall, [0, 0, 960, 0, 960, 60, 742, 62, 700, 44, 560, 30, 400, 30, 260, 44, 218, 62, 0, 60], grade(0, 0, "07080f", 0, 62, "1c1a24"))
    local ink = flat("ffdf9c") + "local half = 150 + (py - 70) * 0.34\nlocal off = abs(px - 480) / half\n" + noise("ray", "(px - 480) / half * 9", "0.5")
    part(wall, 150, 84, 660, 500, ink + "a = max(0, 1 - off) * (0.2 + ray * 0.34) * (1 - smoothstep(84, 560, py))\n")
end

@@ A toothed wheel with spokes, lit from above.
function paintGear(target, cx, cy, radius, teeth, spokes, dim)
    local outline = []
    for i = 0, teeth * 4 - 1
        local angle = (i + 0.5) / (teeth * 4) * 6.2831853
        local far = radius
        if i % 4 >= 2
            far = radius - math["max"](3.5, radius * 0.075)
        end
        push(outline, cx + math["cos"](angle) * far)
        push(outline, cy + math["sin"](angle) * far)
    end
    local metal = grade(cx - radius * 0.4, cy - radius, BRASS[1], cx + radius * 0.4, cy + radius, BRASS[3]) + "local ring = sqrt((px - " + number(cx) + ") ^ 2 + (py - " + number(cy) + ") ^ 2)\n" + tint(BRASS[2], "fract(ring / 5) * 0.4") + tint("0a0810", number(dim))
    fill(target, outline, metal)
    local rim = radius * 0.82
    local hub = radius * 0.24
    for i = 0, spokes - 1
        local from = (i + 0.13) / spokes * 6.2831853
        local to = (i + 0.87) / spokes * 6.2831853
        local gap = []
        for n = 0, 8
            local angle = from + (to - from) * n / 8
            push(gap, cx + math["cos"](angle) * rim)
            push(gap, cy + math["sin"](angle) * rim)
        end
        for n = 8, 0, -1
            local angle = from + 0.1 + (to - from - 0.2) * n / 8
            push(gap, cx + math["cos"](angle) * hub * 1.5)
            push(gap, cy + math["sin"](angle) * hub * 1.5)
        end
        fill(target, gap, grade(0, cy - radius, "2c2028", 0, cy + radius, "0c0a12"))
    end
    fill(target, ellipse(cx, cy, hub, hub), grade(cx - hub, cy - hub, "ffe8b0", cx + hub, cy + hub, "4a2c14"))
    fill(target, ellipse(cx, cy, hub * 0.4, hub * 0.4), flat("2a1a10"))
    fill(target, stroke(curve([cx - radius * 0.62, cy - radius * 0.66, cx, cy - radius * 0.9, cx + radius * 0.5, cy - radius * 0.75], false, 8), 1, 2.4), flat("fff6d0") + "a = a * " + number(0.7 - dim) + "\n")
end

@@ The gear-case with its doors open, the shaft that carries the lamp round, the ladder, the rope of the bell.
function paintWorks()
    local room = canvas(960, 656)
    fill(room, rectangle(0, 556, 960, 100), grade(0, 556, "4a3a34", 0, 655, "14111a") + noise("board", "floor(px / 74) * 5.3", "py / 60") + tint("241a1c", "board * 0.6") + tint("ffc878", "max(0, 1 - abs(px - 480) / 330) * 0.4"))
    fill(room, rectangle(474, 0, 12, 250), grade(474, 0, "e8dcc0", 486, 0, "3a3030"))
    fill(room, rectangle(464, 128, 32, 12), grade(464, 0, BRASS[1], 496, 0, BRASS[3]))
    fill(room, rectangle(352, 188, 256, 372), grade(352, 0, "4a2c22", 608, 0, "1a1016"))
    fill(room, rectangle(368, 214, 224, 334), grade(0, 214, "3a2a2a", 0, 548, "0b090f"))
    @@ Doors that stand open to both sides, with glass.
    for side = -1, 1, 2
        local inner = 480 + side * 128
        local outer = 480 + side * 188
        fill(room, [inner, 200, outer, 184, outer, 574, inner, 556], grade(inner, 0, "7a4c34", outer, 0, "2c1a18"))
        fill(room, [inner + side * 9, 214, outer - side * 9, 203, outer - side * 9, 552, inner + side * 9, 540], flat("c8d8e0") + "a = a * (0.10 + max(0, 1 - abs(py - 290 + px * 0.4) / 70) * 0.2)\n")
    end
    fill(room, [336, 196, 352, 170, 480, 150, 608, 170, 624, 196], grade(336, 0, "9a6a48", 624, 0, "2c1a18"))
    fill(room, rectangle(330, 192, 300, 12), grade(330, 0, "c08a5c", 630, 0, "3c241c"))
    paintGear(room, 424, 272, 34, 20, 5, 0.25)
    paintGear(room, 546, 258, 27, 16, 4, 0.35)
    paintGear(room, 480, 372, 96, 56, 6, 0.0)
    paintGear(room, 548, 462, 40, 24, 5, 0.3)
    fill(room, rectangle(404, 476, 84, 46), grade(0, 476, "e0b870", 0, 522, "3c2414"))
    for i = 0, 8
        fill(room, rectangle(406 + i * 9, 474, 4, 50), grade(0, 474, "a08058", 0, 524, "1c120c"))
    end
    fill(room, rectangle(470, 524, 3, 80), flat("b09870"))
    glow(room, 480, 330, 190, 200, "ffc060", 0.26, 1.6)
    paintLadder(room)
    fill(room, stroke([646, 0, 646, 330], 3.4, 3.4), grade(643, 0, "e8d0a0", 650, 0, "6a5030"))
    fill(room, ellipse(646, 334, 7, 9), grade(640, 0, "f0dcb0", 653, 0, "6a5030"))
    fill(room, curve([642, 340, 638, 372, 646, 380, 654, 372, 650, 340], false, 5), grade(638, 0, "d8b884", 654, 0, "54402a"))
    for i = 1, 50
        glow(room, 480 + random(-210, 210), 130 + random(0, 300), 1.5, 1.5, "fff0c8", random() * 0.55, 1)
    end
    saveCut(room, "lamp-works.png")
end

function paintLadder(room)
    for i = 0, 11
        local y = 560 - i * 46
        local x = 920 - i * 4
        fill(room, [x - 30, y, x + 44, y, x + 40, y + 9, x - 34, y + 9], grade(0, y, "8a94a4", 0, y + 9, "1a1e2c"))
    end
    fill(room, stroke([886, 600, 834, 0], 8, 8), grade(848, 0, "76808f", 888, 0, "20263a"))
    fill(room, stroke([966, 600, 914, 0], 8, 8), grade(928, 0, "5a6474", 968, 0, "12162a"))
end

@@ The near edge of the bench: a lantern, files, a vice, and the tea.
function paintBench()
    local bench = canvas(960, 712)
    fill(bench, [0, 612, 960, 636, 960, 712, 0, 712], grade(0, 612, "5a3c2a", 0, 702, "120c0e"))
    fill(bench, stroke([0, 612, 960, 636], 4, 4), flat("f0b068") + "a = a * 0.75\n")
    glow(bench, 54, 540, 170, 130, "ffb858", 0.5, 1.7)
    paintLantern(bench, 54, 616)
    for i = 0, 4
        local x = 190 + i * 30
        fill(bench, stroke([x, 628, x + 96, 606 - i * 2], 4, 2), grade(x, 0, "c8d0d8", x + 90, 0, "5a6474"))
        fill(bench, stroke([x - 22, 634, x + 2, 628], 9, 8), grade(x - 22, 0, "b8763c", x, 0, "4a2a18"))
    end
    paintGear(bench, 660, 618, 30, 18, 5, 0.2)
    paintCup(bench, 852, 632, 24, "8a5028")
    paintTeapot(bench, 916, 634, 40)
    blur(bench, 1.2)
    saveCut(bench, "lamp-bench.png")
end

function paintLantern(target, x, foot)
    fill(target, rectangle(x - 26, foot - 12, 52, 12), grade(x - 26, 0, "c89858", x + 26, 0, "3a2416"))
    fill(target, rectangle(x - 20, foot - 86, 40, 74), flat("ffe8b0") + "a = a * 0.42\n")
    glow(target, x, foot - 46, 26, 40, "fff8dc", 1, 1.1)
    for i = -1, 1
        fill(target, rectangle(x + i * 20 - 1.6, foot - 88, 3.2, 78), flat("4a3020"))
    end
    fill(target, [x - 28, foot - 86, x - 14, foot - 112, x + 14, foot - 112, x + 28, foot - 86], grade(x - 28, 0, "c89858", x + 28, 0, "3a2416"))
    fill(target, stroke(curve([x - 16, foot - 110, x - 14, foot - 138, x + 14, foot - 138, x + 16, foot - 110], false, 6), 3, 3), flat("8a6238"))
end

function paintCup(target, x, foot, size, inside)
    fill(target, curve([x - size, foot - size * 1.2, x - size * 0.8, foot - 4, x, foot, x + size * 0.8, foot - 4, x + size, foot - size * 1.2], false, 6), grade(x - size, 0, "fdf6ea", x + size, 0, "7c84a0"))
    fill(target, ellipse(x, foot - size * 1.2, size, size * 0.26), grade(x - size, 0, "fffdf6", x + size, 0, "a8b0c4"))
    fill(target, ellipse(x, foot - size * 1.18, size * 0.84, size * 0.19), flat(inside))
    fill(target, stroke(curve([x + size * 0.9, foot - size, x + size * 1.5, foot - size * 0.9, x + size * 0.8, foot - size * 0.35], false, 6), 3.4, 3), flat("b4bccc"))
    fill(target, rectangle(x - size * 0.92, foot - size * 0.82, size * 1.84, 3), flat("4a6ca0") + "a = a * 0.7\n")
end

function paintTeapot(target, x, foot, size)
    fill(target, stroke(curve([x - size * 0.9, foot - size * 0.6, x - size * 1.5, foot - size * 0.9, x - size * 1.7, foot - size * 1.4], false, 6), 14, 7), grade(x - size * 1.6, 0, "7c98c0", x - size, 0, "3c5684"))
    fill(target, ellipse(x, foot - size * 0.78, size, size * 0.8), grade(x - size, foot - size * 1.4, "a8c0e0", x + size, foot, "22345c"))
    fill(target, ellipse(x, foot - size * 1.5, size * 0.5, size * 0.16), grade(x - size * 0.5, 0, "c8d8ec", x + size * 0.5, 0, "3c5684"))
    fill(target, ellipse(x, foot - size * 1.7, size * 0.14, size * 0.14), flat("dfe8f4"))
    glow(target, x - size * 0.36, foot - size * 1.04, size * 0.3, size * 0.3, "ffffff", 0.7, 1.4)
end
