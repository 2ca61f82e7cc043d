@@ Things that stand in the places, cut out. What is partly clear shows its own colour whatever the light: so lamps
@@ and lit panes shine, at an opacity just below full.

SHINING = 250
lampColours = {gold = [255, 196, 92], rose = [255, 128, 128], green = [150, 240, 150], blue = [126, 182, 255], violet = [206, 150, 255]}

@@ A flame; its halo is the view's. The middle is nearly white.
function lampPixel(px, py)
    local across = (px + 0.5 - 32) / 32
    local down = (py + 0.5 - 32) / 32
    local tip = most(0, -down) * 0.5
    local tall = rootOf(across * across * (1.5 + tip * 5) + (down + 0.1) * (down + 0.1) * 0.75)
    local flame = smooth(0.68, 0.52, tall)
    local core = smooth(0.56, 0.16, tall)
    return mixOf(lampInk[1], 255, core * 0.86), mixOf(lampInk[2], 252, core * 0.86), mixOf(lampInk[3], 240, core * 0.86), flame * SHINING
end

@@ A pane with its cross, and light behind.
function panePixel(px, py)
    local bar = most(smooth(2.2, 1.4, math["abs"](px + 0.5 - 16)), smooth(2.2, 1.4, math["abs"](py + 0.5 - 18)))
    local rim = most(smooth(3.4, 2.6, px), smooth(28.6, 29.4, px), smooth(3.4, 2.6, py), smooth(36.6, 37.4, py))
    local frame = most(bar, rim)
    local warm = clampUnit(1.1 - rootOf((px - 16) * (px - 16) / 420 + (py - 22) * (py - 22) / 700))
    local glass = 0.55 + 0.45 * warm
    if frame > 0.5
        return 52, 44, 36, 255
    end
    return mixOf(lampInk[1] * glass, 255, warm * 0.5), mixOf(lampInk[2] * glass, 246, warm * 0.4), mixOf(lampInk[3] * glass, 224, warm * 0.3), SHINING
end

function darkPanePixel(px, py)
    local r, g, b, a = panePixel(px, py)
    if a == 255
        return r, g, b, 255
    end
    local sheen = smooth(0.6, 0.9, noise(px / 8, py / 8, 8, 201)) + smooth(2.5, 0, math["abs"](px - py * 0.6 - 2)) * 0.5
    return 16 + 26 * sheen, 24 + 34 * sheen, 32 + 40 * sheen, 255
end

function doorPixel(px, py)
    local across = math["abs"](px + 0.5 - 20)
    if across > 19 or py < 10 and rootOf(across * across + (10 - py) * (10 - py) * 2) > 19
        return 0, 0, 0, 0
    end
    local rim = across > 16 or py < 10 and rootOf(across * across + (10 - py) * (10 - py) * 2) > 15.5
    local shade = 0.7 + 0.4 * noise(px / 5, py / 20, 16, 211)
    if rim
        return 118 * shade, 112 * shade, 100 * shade, 255
    end
    local board = floorOf(px / 6.5)
    local seam = smooth(0, 1.3, px - board * 6.5)
    local iron = smooth(2.4, 1.4, math["abs"](py - 20)) + smooth(2.4, 1.4, math["abs"](py - 50))
    shade = shade * (0.55 + 0.45 * seam) * (0.86 + 0.2 * latticeAt(board, 1, 16, 9))
    local handle = inEllipse(px, py, 30, 37, 2.4, 2.4)
    return mixOf(mixOf(doorInk[1] * shade, 40, iron), 190, handle), mixOf(mixOf(doorInk[2] * shade, 42, iron), 160, handle), mixOf(mixOf(doorInk[3] * shade, 46, iron), 90, handle), 255
end

@@ Two leaves of a church door under a pointed arch.
function gatePixel(px, py)
    local across = math["abs"](px + 0.5 - 32)
    local up = most(0, 40 - py)
    local reach = 30 - up * up / 62
    if across > reach
        return 0, 0, 0, 0
    end
    local shade = 0.7 + 0.4 * noise(px / 5, py / 18, 16, 221)
    if across > reach - 5
        return 132 * shade, 132 * shade, 124 * shade, 255
    end
    local board = floorOf(px / 7)
    local seam = smooth(0, 1.2, px - board * 7) * smooth(0.6, 1.6, across)
    local iron = smooth(2.2, 1.2, math["abs"](py - 34 + across * 0.2)) + smooth(2.2, 1.2, math["abs"](py - 66 - across * 0.15))
    shade = shade * (0.5 + 0.5 * seam)
    return mixOf(94 * shade, 30, iron), mixOf(66 * shade, 34, iron), mixOf(46 * shade, 40, iron), 255
end

@@ A dark way in, with steps that go down.
function hatchPixel(px, py)
    local across = math["abs"](px + 0.5 - 24)
    local reach = 22
    if py < 20
        reach = rootOf(most(0, 484 - (20 - py) * (20 - py) * 1.2))
    end
    if across > reach
        return 0, 0, 0, 0
    end
    local shade = 0.7 + 0.5 * noise(px / 6, py / 6, 16, 231)
    if across > reach - 4.5
        return 120 * shade, 104 * shade, 86 * shade, 255
    end
    local stair = smooth(36, 63, py) * (0.4 + 0.6 * smooth(2, 4, py % 7))
    return 8 + 60 * stair, 10 + 54 * stair, 14 + 46 * stair, 255
end

@@ A painted glass window: saints of the lake, in leads.
function glassPixel(px, py)
    local across = math["abs"](px + 0.5 - 20)
    local up = most(0, 26 - py)
    local reach = 18 - up * up / 38
    if across > reach
        return 0, 0, 0, 0
    end
    local near, next, number = cobbleAt(px + 12, py, TILE, 6, 241)
    if next - near < 0.12 or across > reach - 2.5
        return 20, 20, 24, 255
    end
    local pick = floorOf(latticeAt(number, 7, 36, 12) * 5)
    local light = 0.7 + 0.5 * latticeAt(number, 9, 36, 14)
    local halo = inEllipse(px, py, 20, 28, 6, 6)
    local robe = smooth(11, 9, across * 1.4 + most(0, 34 - py)) * smooth(34, 36, py)
    local r = 30
    local g = 74
    local b = 128
    if pick == 0
        r = 22; g = 110; b = 118
    elseif pick == 1
        r = 60; g = 52; b = 132
    elseif pick == 2
        r = 36; g = 92; b = 84
    end
    r = mixOf(mixOf(r, 190, halo), 150, robe)
    g = mixOf(mixOf(g, 160, halo), 62, robe)
    b = mixOf(mixOf(b, 80, halo), 60, robe)
    return r * light * 1.35 + 10, g * light * 1.35 + 12, b * light * 1.35 + 20, SHINING
end

@@ A bare tree; the branches fork at angles from the lattice.
function branch(strokes, ax, ay, angle, long, thick, depth, seed)
    local bx = ax + cos(angle) * long
    local by = ay + sin(angle) * long
    push(strokes, [ax, ay, bx, by, thick, thick * 0.66])
    if depth > 0
        local lean = 0.34 + 0.34 * latticeAt(depth, seed, 64, 17)
        branch(strokes, bx, by, angle - lean, long * (0.66 + 0.16 * latticeAt(seed, depth, 64, 19)), thick * 0.66, depth - 1, seed * 2 + 1)
        branch(strokes, bx, by, angle + lean * 1.1, long * (0.62 + 0.2 * latticeAt(seed, depth + 7, 64, 19)), thick * 0.6, depth - 1, seed * 2 + 2)
        if depth == 3
            branch(strokes, (ax + bx) / 2, (ay + by) / 2, angle + 0.9, long * 0.5, thick * 0.5, depth - 2, seed * 2 + 5)
        end
    end
end

@@ Draws strokes into an image, each only where it reaches.
function drawStrokes(image, strokes, r, g, b, seed)
    local w, h = Plush["imageSize"](image)
    for s in strokes
        local room = s[5] + 2
        for py = most(0, floorOf(least(s[2], s[4]) - room)), least(h - 1, floorOf(most(s[2], s[4]) + room))
            for px = most(0, floorOf(least(s[1], s[3]) - room)), least(w - 1, floorOf(most(s[1], s[3]) + room))
                local cover = onLine(px, py, s[1], s[2], s[3], s[4], s[5], s[6])
                if cover > 0.4
                    local shade = 0.6 + 0.6 * noise(px / 3, py / 7, 32, seed)
                    Plush["setPixel"](image, px, py, byte(r * shade), byte(g * shade), byte(b * shade), 255)
                end
            end
        end
    end
end

function tree(name, seed)
    local image = Plush["createImage"](96, 128, 0, 0, 0, 0)
    local strokes = []
    branch(strokes, 48, 128, -1.5708 + (latticeAt(seed, 1, 64, 23) - 0.5) * 0.3, 38, 5.4, 5, seed)
    push(strokes, [48, 128, 36, 128, 4, 2])
    push(strokes, [48, 128, 60, 128, 4, 2])
    drawStrokes(image, strokes, 84, 76, 64, seed)
    keep(name, image)
end

function reeds()
    local image = Plush["createImage"](64, 64, 0, 0, 0, 0)
    local strokes = []
    for i = 0, 13
        local foot = 6 + i * 4
        local lean = (latticeAt(i, 4, 64, 25) - 0.5) * 18
        local high = 24 + 34 * latticeAt(i, 6, 64, 25)
        push(strokes, [foot, 64, foot + lean * 0.4, 64 - high * 0.6, 1.1, 0.9])
        push(strokes, [foot + lean * 0.4, 64 - high * 0.6, foot + lean, 64 - high, 0.9, 0.5])
        if i % 3 == 0
            push(strokes, [foot + lean, 64 - high, foot + lean * 1.1, 64 - high + 8, 1.8, 1.8])
        end
    end
    drawStrokes(image, strokes, 104, 112, 66, 27)
    keep("reeds", image)
end

@@ A stone with a rounded head and lines that were once words.
function gravePixel(px, py)
    local across = math["abs"](px + 0.5 - 20)
    if across > 17 or py < 16 and rootOf(across * across + (16 - py) * (16 - py)) > 17
        return 0, 0, 0, 0
    end
    local shade = 0.62 + 0.5 * cloud(px, py, TILE, 6, 251)
    local moss = smooth(0.4, 0.8, cloud(px, py, TILE, 4, 254) + py / 120)
    local word = 0
    if py > 15 and py < 38 and py % 6 < 2 and across < 12 and noise(px / 2, py / 2, 32, 256) > 0.42
        word = 0.5
    end
    shade = shade * (1 - word)
    return mixOf(132, 84, moss) * shade, mixOf(134, 106, moss) * shade, mixOf(130, 80, moss) * shade, 255
end

function rowOf(rows, px, py)
    local row = rows[py + 1]
    if row == not
        return " "
    end
    return string["sub"](row, px + 1, px + 1)
end

@@ Signs over the doors: a board with a thing cut in it.
function signPixel(px, py)
    if px < 2 or px > 61 or py < 2 or py > 37
        return 0, 0, 0, 0
    end
    local shade = 0.7 + 0.35 * noise(px / 20, py / 3, 32, 261)
    if px < 5 or px > 58 or py < 5 or py > 34
        return 60 * shade, 48 * shade, 38 * shade, 255
    end
    local mark = signMark(px, py)
    return mixOf(96 * shade, 232, mark), mixOf(74 * shade, 206, mark), mixOf(54 * shade, 146, mark), 255
end

function wheelMark(px, py)
    local across = px + 0.5 - 32
    local down = py + 0.5 - 20
    local far = rootOf(across * across + down * down)
    local rim = smooth(2, 1, math["abs"](far - 11))
    local spoke = most(smooth(1.8, 0.8, math["abs"](across)), smooth(1.8, 0.8, math["abs"](down)), smooth(2.4, 1.2, math["abs"](across - down)), smooth(2.4, 1.2, math["abs"](across + down)))
    return most(rim, least(spoke, smooth(12, 11, far)), smooth(4, 3, far))
end

function bellMark(px, py)
    local across = math["abs"](px + 0.5 - 32)
    local wide = 3.5 + smooth(8, 30, py) * 5 + smooth(24, 31, py) * 4
    local body = smooth(wide + 0.7, wide - 0.3, across) * smooth(7, 8, py) * smooth(30, 29, py)
    return most(body, inEllipse(px, py, 32, 31, 2.6, 2.6), inEllipse(px, py, 32, 8, 2, 2))
end

function hiveMark(px, py)
    local across = math["abs"](px + 0.5 - 32)
    local wide = 12 * rootOf(most(0, 1 - ((30 - py) / 23) * ((30 - py) / 23)))
    local body = smooth(wide + 0.7, wide - 0.3, across) * smooth(31, 30, py) * smooth(7, 8, py)
    local band = 0.45 + 0.55 * smooth(0.6, 1.4, math["abs"](py % 5 - 2.5))
    return body * band * (1 - inEllipse(px, py, 32, 28, 3, 3))
end

function oarMark(px, py)
    local one = onLine(px, py, 14, 31, 44, 11, 1, 1)
    local other = onLine(px, py, 50, 31, 20, 11, 1, 1)
    return most(one, other, onLine(px, py, 44, 11, 50, 7, 3, 3.4), onLine(px, py, 20, 11, 14, 7, 3, 3.4))
end

function shuttleMark(px, py)
    local hull = inEllipse(px, py, 32, 20, 23, 7)
    local eye = inEllipse(px, py, 32, 20, 12, 3.4)
    local thread = smooth(1.4, 0.4, math["abs"](py - 20 - 4 * sin(px * 0.35))) * inEllipse(px, py, 32, 20, 12, 3.2)
    return most(hull * (1 - eye), thread)
end

function sign(name, mark)
    signMark = mark
    keep("sign-" + name, painted(64, 40, signPixel))
end

@@ A heron as it stands, and as it flies.
function heronStands()
    local image = Plush["createImage"](40, 64, 0, 0, 0, 0)
    drawStrokes(image, [[19, 40, 18, 63, 0.9, 0.8], [23, 40, 24, 63, 0.9, 0.8]], 120, 104, 74, 271)
    drawStrokes(image, [[13, 36, 27, 30, 5.4, 4.6], [9, 41, 15, 36, 1.6, 4]], 150, 160, 172, 272)
    drawStrokes(image, [[26, 29, 29, 20, 2.6, 1.7], [29, 20, 25, 13, 1.6, 1.7], [25, 13, 28, 8, 1.8, 2.3]], 196, 200, 204, 273)
    drawStrokes(image, [[28, 8, 39, 10, 1.5, 0.5]], 214, 168, 84, 274)
    drawStrokes(image, [[27, 6, 20, 9, 0.9, 0.5]], 40, 44, 56, 275)
    keep("heron", image)
end

function heronFlies()
    local image = Plush["createImage"](64, 40, 0, 0, 0, 0)
    drawStrokes(image, [[30, 22, 14, 8, 4.6, 3], [14, 8, 2, 14, 3, 0.8], [34, 22, 48, 7, 4.6, 3], [48, 7, 62, 12, 3, 0.8]], 120, 132, 148, 276)
    drawStrokes(image, [[22, 25, 40, 22, 3.6, 3.4], [40, 22, 46, 18, 2.4, 2], [22, 25, 6, 32, 1.2, 0.6]], 160, 168, 178, 277)
    drawStrokes(image, [[46, 18, 56, 19, 1.4, 0.5]], 214, 168, 84, 278)
    keep("heron-flies", image)
end

function eelPixel(px, py)
    local spine = 16 + 7 * sin(px * 0.12 + 0.6)
    local half = 3.6 * smooth(0, 10, px) * smooth(63, 30, px) + 0.8
    local off = math["abs"](py + 0.5 - spine)
    if off > half or px < 2
        return 0, 0, 0, 0
    end
    local belly = smooth(-half, half, py + 0.5 - spine)
    return mixOf(58, 120, belly), mixOf(74, 126, belly), mixOf(60, 84, belly), 255
end

function mothPixel(px, py)
    local across = math["abs"](px + 0.5 - 8)
    local wing = most(inEllipse(across, py, 3.6, 5.4, 3.6, 3.4), inEllipse(across, py, 2.8, 9.6, 2.6, 2.6))
    local body = across < 1 and py > 2 and py < 13
    if wing < 0.5 and not body
        return 0, 0, 0, 0
    end
    if body
        return 92, 78, 62, 255
    end
    return 186 - across * 8, 168 - across * 9, 138 - across * 9, 255
end

@@ The wheel of the mill, stopped.
function wheelPixel(px, py)
    local across = px + 0.5 - 32
    local down = py + 0.5 - 32
    local far = rootOf(across * across + down * down)
    local ring = far < 30 and far > 24 or far < 6
    local spoke = false
    for i = 0, 3
        local c = cos(i * 0.7854 + 0.2)
        local s = sin(i * 0.7854 + 0.2)
        if math["abs"](across * s - down * c) < 1.7 and far < 26
            spoke = true
        end
    end
    if not ring and not spoke
        return 0, 0, 0, 0
    end
    local shade = 0.5 + 0.6 * noise(px / 4, py / 9, 16, 281)
    local weed = smooth(0.55, 0.7, noise(px / 7, py / 7, 16, 283))
    return mixOf(104, 62, weed) * shade, mixOf(84, 92, weed) * shade, mixOf(62, 56, weed) * shade, 255
end

function lecternPixel(px, py)
    local across = math["abs"](px + 0.5 - 24)
    if py > 22
        if across > 4 and not (py > 58 and across < 14)
            return 0, 0, 0, 0
        end
        local shade = 0.6 + 0.5 * noise(px / 3, py / 12, 16, 291)
        return 96 * shade, 70 * shade, 48 * shade, 255
    end
    if py < 4 or across > 22
        return 0, 0, 0, 0
    end
    if py > 18
        return 74, 52, 36, 255
    end
    local ink = 0
    if py % 4 == 1 and across > 3 and across < 19 and noise(px / 2, py, 32, 293) > 0.35
        ink = 1
    end
    local fold = smooth(0, 3, across)
    return mixOf(222, 120, ink) * (0.7 + 0.3 * fold), mixOf(206, 100, ink) * (0.7 + 0.3 * fold), mixOf(166, 74, ink) * (0.7 + 0.3 * fold), SHINING
end

function ropePixel(px, py)
    if math["abs"](px + 0.5 - 4 - sin(py * 0.08)) > 1.6
        return 0, 0, 0, 0
    end
    local twist = smooth(0, 2, (py + px * 2) % 5)
    if py > 84 and py < 108
        return 168 * (0.6 + 0.4 * twist), 66, 60, 255
    end
    return 176 * (0.5 + 0.5 * twist), 150 * (0.5 + 0.5 * twist), 108 * (0.5 + 0.5 * twist), 255
end

@@ Threads that glow-worms let down, beaded with light.
function wormPixel(px, py)
    local column = floorOf(px / 6)
    local across = px - column * 6 - 2 - 2 * latticeAt(column, 3, 64, 31)
    local long = 20 + 40 * latticeAt(column, 5, 64, 33)
    if math["abs"](across) > 0.9 or py > long
        return 0, 0, 0, 0
    end
    local bead = smooth(0.3, 0.9, sin(py * (0.9 + 0.3 * latticeAt(column, 7, 64, 35)) + column * 2))
    local fade = 1 - py / long * 0.5
    return mixOf(30, 180, bead) * fade, mixOf(70, 255, bead) * fade, mixOf(66, 226, bead) * fade, 120 + 130 * bead
end

function railPixel(px, py)
    local post = px % 21 < 4
    local bar = py > 6 and py < 11 or py > 24 and py < 28
    if not post and not bar
        return 0, 0, 0, 0
    end
    local shade = 0.6 + 0.5 * noise(px / 6, py / 3, 16, 297)
    return 104 * shade, 86 * shade, 64 * shade, 255
end

function paintThings()
    for name, ink in pairs(lampColours)
        lampInk = ink
        keep("lamp-" + name, painted(64, 64, lampPixel))
        keep("pane-" + name, painted(32, 40, panePixel))
    end
    keep("pane-dark", painted(32, 40, darkPanePixel))
    for name, ink in pairs({red = [122, 48, 42], green = [52, 88, 66], blue = [52, 76, 112], ochre = [140, 106, 48], plum = [94, 58, 88]})
        doorInk = ink
        keep("door-" + name, painted(40, 64, doorPixel))
    end
    keep("gate", painted(64, 80, gatePixel))
    keep("hatch", painted(48, 64, hatchPixel))
    keep("glass", painted(40, 72, glassPixel))
    for i = 1, 3
        tree("tree" + i, i * 5)
    end
    reeds()
    keep("grave", painted(40, 48, gravePixel))
    sign("wheel", wheelMark)
    sign("bell", bellMark)
    sign("hive", hiveMark)
    sign("oar", oarMark)
    sign("shuttle", shuttleMark)
    heronStands()
    heronFlies()
    keep("eel", painted(64, 32, eelPixel))
    keep("moth", painted(16, 16, mothPixel))
    keep("wheel", painted(64, 64, wheelPixel))
    keep("lectern", painted(48, 64, lecternPixel))
    keep("rope", painted(8, 128, ropePixel))
    keep("worms", painted(32, 64, wormPixel))
    keep("rail", painted(64, 32, railPixel))
end
