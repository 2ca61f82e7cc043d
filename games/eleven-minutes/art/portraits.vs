@@ The people, turned half to the left, with the light on that side and a rim of sky on the other. The boot
@@ library mirrors whoever stands on the left half of the stage.

FACE_X = 170
FACE_Y = 168

@@ What a face can say: how far the corners of the mouth go up, how far the inner ends of the brows come down, how wide
@@ the eyes are open, and where they look.
FACES = {
    usual = {smile = 0, frown = 0, open = 1, gaze = 0},
    grave = {smile = -5, frown = 4, open = 0.86, gaze = 2},
    sorry = {smile = -5, frown = -6, open = 0.9, gaze = 3},
    moved = {smile = 2, frown = -6, open = 1, gaze = 0, tears = true},
    glad = {smile = 4, frown = -2, open = 0.8, gaze = 0, laughs = true}
}

function newPortrait()
    return canvas(360, 500)
end

function faceShape()
    local x = FACE_X
    local y = FACE_Y
    return curve([x - 4, y - 84, x - 46, y - 64, x - 60, y - 22, x - 57, y + 4, x - 58, y + 24, x - 46, y + 52, x - 22, y + 76, x - 4, y + 78, x + 24, y + 62, x + 50, y + 34, x + 62, y - 8, x + 58, y - 60], true, 7)
end

@@ Skin from the light to the shadow side, with warmth in the cheeks, and the neck in the head's shadow.
function paintFace(p, light, middle, dark, blush)
    local x = FACE_X
    local y = FACE_Y
    fill(p, curve([x - 14, y + 50, x - 22, y + 108, x - 30, y + 150, x + 60, y + 150, x + 46, y + 100, x + 46, y + 30], true, 6), grade(x - 30, y + 60, dark, x + 40, y + 120, dark) + tint(middle, "(" + number(x + 6) + " - px) / 60"))
    fill(p, ellipse(x + 60, y + 2, 12, 20, 8), grade(x + 46, 0, middle, x + 72, 0, dark))
    fill(p, faceShape(), grade(x - 56, y - 20, light, x + 58, y + 14, dark) + tint(middle, "0.35 - abs(px - " + x + ") / 160") + tint(dark, "smoothstep(" + (y + 34) + ", " + (y + 84) + ", py) * 0.35"))
    glow(p, x - 44, y + 24, 25, 18, blush, 0.55, 1.3)
    glow(p, x + 14, y + 24, 30, 19, blush, 0.5, 1.3)
    @@ Nose and mouth.
    fill(p, curve([x - 28, y - 8, x - 33, y + 10, x - 40, y + 22, x - 30, y + 27, x - 20, y + 23, x - 22, y + 6], true, 5), flat(dark) + "a = a * 0.34\n")
    fill(p, stroke(curve([x - 39, y + 20, x - 37, y + 26, x - 26, y + 26], false, 5), 1.5, 2.2), flat(dark))
    glow(p, x - 35, y + 14, 7, 9, "fff4e0", 0.4, 1.2)
    fill(p, curve([x - 26, y + 56, x - 14, y + 58, x - 4, y + 55, x - 12, y + 62, x - 20, y + 62], true, 5), flat(dark) + "a = a * 0.5\n")
end

function paintMouth(p, usual, face, hex)
    local x = FACE_X
    local y = FACE_Y
    local lift = usual + face["smile"]
    if face["laughs"]
        fill(p, curve([x - 38, y + 44 - lift, x - 26, y + 45, x - 10, y + 45, x + 5, y + 42 - lift, x - 4, y + 54, x - 18, y + 58, x - 31, y + 53], true, 6), flat(hex))
        fill(p, curve([x - 34, y + 45 - lift * 0.6, x - 24, y + 46.5, x - 10, y + 46.5, x + 1, y + 43.5 - lift * 0.6, x - 6, y + 49, x - 18, y + 51, x - 29, y + 49.5], true, 6), grade(x - 34, 0, "fffaf2", x + 1, 0, "d8ccc4"))
        fill(p, stroke(curve([x - 42, y + 40 - lift, x - 38, y + 44 - lift], false, 3), 1.4, 1.8), flat(hex))
        return not
    end
    fill(p, stroke(curve([x - 38, y + 45 - lift, x - 28, y + 47, x - 14, y + 47.5, x + 4, y + 43 - lift], false, 6), 1.6, 2.4), flat(hex))
    fill(p, stroke(curve([x - 28, y + 49, x - 18, y + 51, x - 8, y + 49], false, 5), 2.4, 1.4), flat(hex) + "a = a * 0.35\n")
end

@@ White, iris, lid and light of an eye; `open` is its height.
function paintEye(p, x, y, wide, usual, face, iris, lid)
    local open = usual * face["open"]
    local half = wide / 2
    local almond = curve([x - half, y + 1, x - half * 0.4, y - open * 0.72, x + half * 0.4, y - open * 0.7, x + half, y, x + half * 0.4, y + open * 0.5, x - half * 0.4, y + open * 0.55], true, 6)
    fill(p, almond, grade(x, y - open, "b8a89c", x, y + open * 0.5, "fff8ee"))
    local r = math["min"](usual * 0.6, open * 0.68)
    local down = face["gaze"] * 0.6
    fill(p, ellipse(x - half * 0.14, y + down - open * 0.08, r, r), grade(x, y - r, "140c10", x, y + r, iris))
    fill(p, ellipse(x - half * 0.14, y + down - open * 0.08, r * 0.46, r * 0.46), flat("0a0608"))
    fill(p, ellipse(x - half * 0.14 - r * 0.38, y + down - open * 0.08 - r * 0.4, r * 0.3, r * 0.3), flat("ffffff"))
    fill(p, ellipse(x - half * 0.14 + r * 0.35, y + r * 0.3, r * 0.16, r * 0.16), flat("fff0d0") + "a = a * 0.7\n")
    fill(p, stroke(curve([x - half - 2, y + 2, x - half * 0.45, y - open * 0.76, x + half * 0.4, y - open * 0.76, x + half + 3, y - 1], false, 6), 2, 4), flat(lid))
    if face["tears"]
        fill(p, ellipse(x - half * 0.2, y + open * 0.5, half * 0.5, 1.6), flat("f4fbff"))
        fill(p, ellipse(x + half * 0.3, y + open * 0.42, 2.2, 1.8), flat("ffffff"))
    end
    fill(p, stroke(curve([x - half * 0.6, y + open * 0.58, x, y + open * 0.7, x + half * 0.7, y + open * 0.46], false, 5), 0.8, 1.4), flat(lid) + "a = a * 0.5\n")
end

@@ `side` is where the nose is: 1 to the right, -1 to the left.
function paintBrow(p, x, y, wide, arch, thick, side, face, hex)
    local left = 0
    local right = face["frown"]
    if side < 0
        left = right
        right = 0
    end
    fill(p, stroke(curve([x - wide / 2, y + arch * 0.4 + left, x - wide * 0.1, y - arch * 0.6 + (left + right) * 0.4, x + wide / 2, y + arch * 0.5 + right], false, 6), thick, thick * 0.4), flat(hex))
end

@@ Locks of hair: smooth strokes between two points with a bend, lighter towards the light.
function lock(p, x0, y0, x1, y1, bend, from, to, hex)
    local mx = (x0 + x1) / 2 + (y1 - y0) * bend
    local my = (y0 + y1) / 2 - (x1 - x0) * bend
    fill(p, stroke(curve([x0, y0, mx, my, x1, y1], false, 8), from, to), flat(hex))
end

function paintMaud(face, file)
    math["randomseed"](61)
    local p = newPortrait()
    local x = FACE_X
    local y = FACE_Y
    @@ Coat.
    fill(p, curve([0, 500, 8, 420, 40, 352, 104, 316, 134, 286, 226, 284, 262, 312, 330, 350, 356, 420, 360, 500, 360, 500, 0, 500], true, 8), grade(20, 330, "3d5478", 330, 460, "0c1226") + noise("weave", "px / 3", "py / 3") + tint("0a1024", "weave * 0.2"))
    fill(p, stroke(curve([4, 470, 14, 412, 44, 356, 104, 320], false, 8), 4, 2), flat("9fc0e0") + "a = a * 0.6\n")
    fill(p, stroke(curve([264, 314, 330, 352, 354, 420], false, 8), 2, 4), flat("e8a070") + "a = a * 0.7\n")
    @@ Hair behind: the bun and the nape.
    fill(p, ellipse(x + 70, y - 70, 38, 34, 20), grade(x + 40, y - 100, "b8b4b8", x + 104, y - 40, "4c4654"))
    for i = 0, 4
        lock(p, x + 44 + i * 6, y - 92 + i * 3, x + 96 - i * 3, y - 52 + i * 5, 0.26, 3, 1.4, "d4d0d0")
    end
    fill(p, curve([x + 2, y - 98, x + 64, y - 84, x + 86, y - 20, x + 66, y + 60, x + 30, y + 70, x + 20, y - 20], true, 7), grade(x, y - 80, "8d8790", x + 84, y + 30, "37313f"))
    paintFace(p, "f4c49c", "dc9a76", "94583f", "e0704c")
    @@ Lines of sixty winters.
    for i = 0, 2
        fill(p, stroke(curve([x + 24 + i * 3, y - 4 + i * 4, x + 34 + i * 2, y - 1 + i * 6], false, 4), 1.3, 0.7), flat("8a4c38") + "a = a * 0.7\n")
    end
    fill(p, stroke(curve([x - 46, y + 26, x - 48, y + 36, x - 44, y + 46], false, 5), 1.6, 0.8), flat("8a4c38") + "a = a * 0.55\n")
    fill(p, stroke(curve([x - 6, y + 25, x + 8, y + 36, x + 10, y + 48], false, 5), 2, 0.8), flat("8a4c38") + "a = a * 0.55\n")
    fill(p, stroke(curve([x - 44, y - 48, x - 24, y - 52, x + 8, y - 49], false, 5), 1.2, 1), flat("a8664a") + "a = a * 0.5\n")
    paintEye(p, x - 41, y - 6, 21, 13, face, "5a88a8", "3c2228")
    paintEye(p, x + 9, y - 6, 27, 14, face, "5a88a8", "3c2228")
    paintBrow(p, x - 42, y - 25, 26, 5, 5, 1, face, "a8a2a4")
    paintBrow(p, x + 9, y - 26, 36, 6, 6, -1, face, "8d868c")
    paintMouth(p, 3, face, "7c3830")
    @@ Hair before: parted, drawn back.
    fill(p, curve([x - 50, y - 52, x - 44, y - 92, x - 4, y - 112, x + 44, y - 104, x + 74, y - 66, x + 76, y - 12, x + 64, y + 18, x + 58, y - 20, x + 40, y - 52, x + 2, y - 66, x - 30, y - 60], true, 8), grade(x - 50, y - 90, "e4e0dc", x + 76, y - 20, "5a5460"))
    for i = 0, 7
        fill(p, stroke(curve([x - 46 + i * 3, y - 60 - i * 3, x - 22 + i * 5, y - 76 - i * 4, x + 20 + i * 4, y - 84 - i * 3, x + 58 + i, y - 64 - i * 5], false, 8), 1, 2.2), flat("fbf6ee") + "a = a * 0.75\n")
    end
    for i = 0, 6
        fill(p, stroke(curve([x - 34 + i * 8, y - 62 - i * 2, x + 4 + i * 6, y - 70 - i * 3, x + 44 + i * 2, y - 60 - i * 2, x + 70, y - 14 - i * 8], false, 8), 1, 2.4), flat("77717c") + "a = a * 0.7\n")
    end
    lock(p, x - 52, y - 58, x - 68, y + 6, 0.1, 3.2, 0.7, "d8d4d2")
    lock(p, x + 70, y - 10, x + 74, y + 44, -0.12, 3, 0.6, "8d868c")
    @@ Scarf and collar.
    fill(p, curve([110, 300, 122, 262, 160, 266, 212, 258, 240, 272, 250, 306, 206, 330, 150, 332], true, 7), grade(112, 270, "e07c48", 246, 330, "6c2420"))
    for i = 0, 4
        lock(p, 118 + i * 4, 290 + i * 8, 244 - i * 4, 284 + i * 10, -0.14, 2.4, 2, "b8502f")
    end
    fill(p, curve([128, 318, 150, 326, 168, 330, 170, 420, 150, 430, 138, 420], true, 6), grade(130, 320, "d06c3e", 172, 430, "5c1e1c"))
    fill(p, [62, 338, 112, 300, 150, 352, 138, 420, 96, 372], grade(62, 330, "4c6690", 150, 420, "18223e"))
    fill(p, [306, 340, 252, 296, 206, 350, 214, 420, 272, 376], grade(206, 330, "2a3a5c", 306, 420, "0a1022"))
    for i = 0, 1
        fill(p, ellipse(196, 396 + i * 54, 8, 8), grade(189, 388, "ffe0a0", 204, 404, "7a5020"))
    end
    saveCut(p, file)
end

function paintTobias(face, file)
    math["randomseed"](77)
    local p = newPortrait()
    local x = FACE_X
    local y = FACE_Y + 14
    FACE_Y += 14
    fill(p, curve([10, 500, 20, 420, 56, 356, 112, 322, 136, 296, 226, 292, 254, 316, 318, 350, 346, 420, 354, 500, 354, 500, 10, 500], true, 8), grade(30, 330, "e0ac48", 320, 470, "4c2c18") + noise("knit", "px / 2.4", "py / 6") + tint("6a3c18", "smoothstep(0.5, 0.9, knit) * 0.4"))
    fill(p, stroke(curve([14, 470, 26, 412, 58, 360, 112, 326], false, 8), 4, 2), flat("fff0b8") + "a = a * 0.6\n")
    fill(p, stroke(curve([256, 318, 318, 352, 344, 420], false, 8), 2, 4), flat("90c0c0") + "a = a * 0.7\n")
    fill(p, [132, 300, 232, 286, 244, 330, 200, 380, 150, 380], flat("6a5c60"))
    fill(p, [128, 304, 158, 292, 178, 350, 168, 500, 134, 500], grade(128, 0, "fdf4e4", 178, 0, "a8a0a4"))
    fill(p, [222, 298, 196, 290, 178, 350, 190, 500, 232, 500], grade(178, 0, "d8ccc8", 230, 0, "7c7078"))
    @@ Curls behind.
    for i = 0, 10
        fill(p, ellipse(x + 50 + math["cos"](i) * 10, y - 74 + i * 8, 17, 15), grade(x + 20, 0, "4a302a", x + 90, 0, "1a0f12"))
    end
    paintFace(p, "c48a5c", "96603e", "4e2c22", "b0502c")
    paintEye(p, x - 40, y - 4, 21, 14, face, "6a3c1c", "1a0e10")
    paintEye(p, x + 10, y - 4, 27, 15, face, "6a3c1c", "1a0e10")
    paintBrow(p, x - 40, y - 27, 26, 5, 4.5, 1, face, "1a1012")
    paintBrow(p, x + 10, y - 28, 36, 6, 5.5, -1, face, "1a1012")
    paintMouth(p, 2, face, "4a1c18")
    @@ Curls: rings of many tones, from the back to the front.
    for i = 1, 62
        local angle = 3.3 + random() * 2.9
        local far = 58 + random() * 34
        local cx = x + 10 + math["cos"](angle) * far * 0.94
        local cy = y - 24 + math["sin"](angle) * far * 0.92
        local r = 9 + random() * 7
        fill(p, ellipse(cx, cy, r, r * 0.9), grade(cx - r, cy - r, "5c3a30", cx + r, cy + r, "140b0f"))
        fill(p, stroke(curve([cx - r * 0.6, cy + r * 0.1, cx - r * 0.2, cy - r * 0.6, cx + r * 0.5, cy - r * 0.4], false, 4), 1.4, 0.8), flat("94684c") + "a = a * 0.8\n")
    end
    for i = 1, 9
        local cx = x - 46 + i * 11
        local cy = y - 66 + math["sin"](i * 1.7) * 8
        fill(p, ellipse(cx, cy, 10, 9), grade(cx - 10, cy - 8, "6c4638", cx + 10, cy + 9, "1a0e12"))
        fill(p, stroke(curve([cx - 6, cy, cx - 2, cy - 6, cx + 5, cy - 4], false, 4), 1.4, 0.8), flat("b88860") + "a = a * 0.8\n")
    end
    paintSpectacles(p, x, y)
    @@ Shirt, tie and collar.
    fill(p, curve([132, 306, 150, 312, 178, 320, 206, 312, 232, 300, 242, 330, 238, 420, 236, 500, 236, 500, 124, 500, 124, 420], true, 5), grade(130, 300, "fdf4e4", 236, 330, "8c8088"))
    fill(p, [164, 304, 190, 304, 186, 326, 170, 326], grade(164, 304, "3f8068", 190, 326, "1a3c34"))
    fill(p, [170, 326, 186, 326, 198, 430, 178, 452, 160, 430], grade(160, 330, "3f8068", 198, 440, "122c28"))
    fill(p, [128, 300, 146, 284, 172, 312, 146, 344], grade(128, 290, "ffffff", 172, 344, "c4b8b4"))
    fill(p, [228, 296, 208, 282, 184, 312, 208, 342], grade(184, 290, "e4d8d0", 228, 342, "8c7e84"))
    fill(p, curve([112, 322, 128, 340, 140, 420, 136, 500, 118, 500, 110, 400], true, 6), grade(108, 0, "f4c868", 142, 0, "8a5a20"))
    fill(p, curve([244, 318, 230, 340, 222, 420, 226, 500, 246, 500, 256, 400], true, 6), grade(222, 0, "b07c34", 256, 0, "4a2a14"))
    FACE_Y -= 14
    saveCut(p, file)
end

@@ Round glasses, lit by a window.
function paintSpectacles(p, x, y)
    for i, cx in ipairs([x - 41, x + 10])
        local r = 21 + i * 2
        fill(p, ellipse(cx, y - 3, r, r), flat("d8f0ec") + "a = a * 0.13\n")
        fill(p, stroke(curve([cx - r * 0.55, y - 14, cx - r * 0.2, y - 20], false, 4), 5, 3), flat("ffffff") + "a = a * 0.55\n")
        local ring = ellipse(cx, y - 3, r, r)
        push(ring, ring[1])
        push(ring, ring[2])
        fill(p, stroke(ring, 2.6, 2.6), grade(cx - r, y - 24, "ffe8a8", cx + r, y + 20, "8a6024"))
    end
    fill(p, stroke(curve([x - 19, y - 6, x - 15, y - 9, x - 12, y - 6], false, 4), 2.4, 2.4), flat("d8ac58"))
    fill(p, stroke(curve([x + 33, y - 6, x + 50, y - 10, x + 66, y - 8], false, 4), 2.6, 2.2), flat("a87c3c"))
end

function paintTansy(face, file)
    math["randomseed"](83)
    local p = newPortrait()
    local x = FACE_X
    local y = FACE_Y + 50
    FACE_Y += 50
    @@ The hood behind, peaked like a fox's ears.
    fill(p, curve([x - 40, y - 104, x - 58, y - 154, x - 56, y - 158, x - 12, y - 130, x + 30, y - 134, x + 74, y - 162, x + 78, y - 158, x + 80, y - 100, x + 104, y - 40, x + 104, y + 50, x + 70, y + 110, x - 50, y + 110, x - 76, y + 40, x - 76, y - 40], true, 8), grade(x - 70, y - 120, "e8703c", x + 100, y + 60, "5c1618"))
    fill(p, curve([x - 54, y - 148, x - 44, y - 112, x - 24, y - 122], true, 5), flat("3c1414"))
    fill(p, curve([x + 70, y - 152, x + 72, y - 110, x + 40, y - 124], true, 5), flat("2c0e12"))
    fill(p, curve([x - 62, y - 40, x - 40, y - 96, x + 10, y - 110, x + 60, y - 92, x + 86, y - 30, x + 82, y + 50, x + 50, y + 96, x - 40, y + 96, x - 62, y + 40], true, 8), grade(x - 60, y - 60, "54181a", x + 80, y + 60, "1c080c"))
    @@ Cloak.
    fill(p, curve([20, 500, 34, 430, 66, 372, 112, 330, 138, 300, 170, 316, 214, 296, 256, 328, 306, 372, 336, 430, 346, 500, 346, 500, 20, 500], true, 8), grade(40, 350, "e06a38", 320, 480, "561416") + noise("wool", "px / 4", "py / 4") + tint("7c2418", "smoothstep(0.5, 0.9, wool) * 0.25"))
    for i = 0, 5
        lock(p, 128 + i * 20, 348, 60 + i * 48, 498, 0.05 - i * 0.02, 3, 9, "9c3020")
    end
    fill(p, stroke(curve([24, 480, 38, 426, 68, 374, 118, 334], false, 8), 4, 2), flat("ffc890") + "a = a * 0.8\n")
    fill(p, stroke(curve([254, 332, 308, 374, 334, 430], false, 8), 2, 4), flat("ffb070") + "a = a * 0.5\n")
    paintFace(p, "ffd4ac", "f0ac84", "a86450", "f0704c")
    for i = 1, 20
        fill(p, ellipse(x - 54 + random(0, 78), y + 8 + random(0, 20), 1.3, 1.1), flat("b0603c") + "a = a * 0.75\n")
    end
    paintEye(p, x - 40, y - 4, 23, 19, face, "4c9450", "3c1a18")
    paintEye(p, x + 11, y - 4, 30, 21, face, "4c9450", "3c1a18")
    paintBrow(p, x - 41, y - 29, 24, 5, 3.6, 1, face, "6c3420")
    paintBrow(p, x + 12, y - 31, 32, 6, 4.4, -1, face, "6c3420")
    paintMouth(p, 1.5, face, "8c3430")
    @@ Hair that has got out of the hood.
    fill(p, curve([x - 56, y - 40, x - 50, y - 78, x - 10, y - 100, x + 40, y - 92, x + 70, y - 50, x + 72, y - 4, x + 58, y - 30, x + 34, y - 56, x + 6, y - 66, x - 14, y - 48, x - 30, y - 58], true, 8), grade(x - 50, y - 90, "a8622c", x + 70, y - 10, "42200f"))
    for i = 0, 7
        lock(p, x - 10 + i * 3, y - 94 + i, x - 50 + i * 17, y - 34 - math["abs"](i - 4) * 5, 0.16 - i * 0.05, 4, 0.8, "d08c44")
    end
    lock(p, x - 54, y - 50, x - 66, y + 44, 0.04, 8, 1, "8c4c20")
    lock(p, x - 56, y - 44, x - 70, y + 62, 0.02, 4, 0.6, "b87434")
    lock(p, x + 66, y - 40, x + 62, y + 60, -0.1, 9, 1, "542a12")
    @@ The cloak is drawn together under the chin.
    fill(p, curve([x - 66, y + 84, x - 34, y + 96, x + 6, y + 100, x + 50, y + 92, x + 84, y + 76, x + 98, y + 128, x + 20, y + 156, x - 84, y + 132], true, 7), grade(x - 70, y + 80, "f08848", x + 90, y + 130, "6c1c18"))
    for i = 0, 4
        lock(p, x - 52 + i * 26, y + 96 + math["abs"](i - 2) * -2, x - 62 + i * 32, y + 138, 0.06, 1.6, 4, "a8381f")
    end
    @@ The rim of the hood, and a leaf for a brooch.
    fill(p, stroke(curve([x - 70, y + 80, x - 78, y + 20, x - 70, y - 50, x - 40, y - 102, x + 12, y - 120, x + 66, y - 100, x + 96, y - 40, x + 94, y + 40, x + 66, y + 104], false, 8), 11, 11), grade(x - 70, y - 100, "ffa860", x + 96, y + 60, "8c281c"))
    fill(p, curve([150, 352, 164, 334, 186, 332, 204, 346, 190, 364, 168, 368], true, 6), grade(150, 334, "ffd070", 204, 366, "a85020"))
    fill(p, stroke([148, 358, 176, 348, 204, 346], 1.8, 1), flat("7c3418"))
    for i = 0, 3
        fill(p, stroke([160 + i * 10, 353 - i * 1.6, 168 + i * 9, 341 - i], 1, 0.5), flat("7c3418"))
        fill(p, stroke([160 + i * 10, 353 - i * 1.6, 170 + i * 8, 362 - i], 1, 0.5), flat("7c3418"))
    end
    FACE_Y -= 50
    saveCut(p, file)
end

@@ Each with the faces that the story needs; the first is for whenever it says nothing.
function paintPeople()
    for face in ["usual", "grave", "moved"]
        paintMaud(FACES[face], faceFile("maud", face))
    end
    for face in ["usual", "sorry", "glad"]
        paintTobias(FACES[face], faceFile("tobias", face))
    end
    for face in ["usual", "sorry", "glad"]
        paintTansy(FACES[face], faceFile("tansy", face))
    end
    paintCat(true, "cat.png")
    paintCat(false, "cat-asleep.png")
end

function faceFile(who, face)
    if face == "usual"
        return who + ".png"
    end
    return who + "-" + face + ".png"
end

function paintCat(awake, file)
    math["randomseed"](91)
    local p = canvas(260, 320)
    local x = 118
    local y = 104
    fill(p, curve([40, 320, 44, 250, 66, 190, 90, 160, 160, 158, 196, 196, 222, 260, 226, 320, 226, 320, 40, 320], true, 8), grade(50, 170, "8d8a94", 220, 310, "2a2832"))
    for i = 0, 4
        lock(p, 190 + i * 4, 190 + i * 24, 160 + i * 6, 196 + i * 26, 0.2, 7, 1.5, "3a3742")
    end
    fill(p, curve([84, 176, 118, 200, 150, 178, 150, 240, 120, 290, 92, 250], true, 7), grade(84, 180, "fffaf0", 150, 290, "b4aca8"))
    fill(p, [x - 62, y - 26, x - 66, y - 92, x - 16, y - 58], grade(x - 66, y - 90, "a09ca6", x - 20, y - 40, "4c4954"))
    fill(p, [x + 62, y - 24, x + 66, y - 88, x + 18, y - 58], grade(x + 20, y - 60, "7c7884", x + 66, y - 80, "34323c"))
    fill(p, [x - 55, y - 34, x - 58, y - 76, x - 26, y - 54], flat("c8887c"))
    fill(p, [x + 55, y - 34, x + 58, y - 74, x + 28, y - 54], flat("8c5854"))
    fill(p, curve([x - 70, y + 4, x - 60, y - 40, x - 22, y - 62, x + 24, y - 62, x + 62, y - 38, x + 72, y + 6, x + 50, y + 44, x + 14, y + 60, x - 18, y + 60, x - 52, y + 42], true, 8), grade(x - 66, y - 40, "a8a4ae", x + 70, y + 40, "3c3a44"))
    fill(p, curve([x - 34, y + 26, x - 12, y + 10, x - 2, y - 20, x + 4, y - 20, x + 12, y + 10, x + 32, y + 26, x + 16, y + 54, x - 16, y + 56], true, 7), grade(x - 34, y, "fffaf0", x + 32, y + 50, "c0b6b0"))
    for i = -1, 1
        fill(p, stroke(curve([x + i * 13, y - 60, x + i * 11, y - 42, x + i * 7, y - 30], false, 5), 6, 1.5), flat("34323c"))
    end
    for i = 0, 1
        lock(p, x - 68, y + 4 + i * 14, x - 44, y + 8 + i * 10, 0.1, 5, 1, "54515c")
        lock(p, x + 70, y + 4 + i * 14, x + 46, y + 8 + i * 10, -0.1, 5, 1, "2a2832")
    end
    for i, cx in ipairs([x - 30, x + 30])
        if awake
            fill(p, curve([cx - 19, y - 1, cx - 6, y - 15, cx + 9, y - 14, cx + 19, y - 2, cx + 6, y + 9, cx - 9, y + 8], true, 6), grade(cx, y - 14, "c07818", cx, y + 9, "ffe080"))
            fill(p, ellipse(cx, y - 3, 5, 11), flat("0c0808"))
            fill(p, ellipse(cx - 6, y - 8, 3, 3), flat("ffffff"))
            fill(p, stroke(curve([cx - 20, y - 1, cx - 6, y - 16, cx + 9, y - 15, cx + 20, y - 3], false, 6), 3, 3), flat("1c1a20"))
        else
            fill(p, stroke(curve([cx - 19, y - 4, cx - 8, y + 3, cx + 8, y + 3, cx + 19, y - 5], false, 6), 3, 3), flat("1c1a20"))
        end
    end
    fill(p, curve([x - 9, y + 22, x + 9, y + 22, x + 1, y + 32, x - 1, y + 32], true, 4), flat("d88c84"))
    fill(p, stroke(curve([x, y + 32, x - 3, y + 41, x - 15, y + 43], false, 5), 1.8, 1.2), flat("54484a"))
    fill(p, stroke(curve([x, y + 32, x + 3, y + 41, x + 15, y + 43], false, 5), 1.8, 1.2), flat("54484a"))
    for i = 0, 2
        fill(p, stroke(curve([x - 24, y + 30 + i * 4, x - 60, y + 26 + i * 9, x - 92, y + 30 + i * 14], false, 5), 1.3, 0.4), flat("fffaf0"))
        fill(p, stroke(curve([x + 24, y + 30 + i * 4, x + 60, y + 26 + i * 9, x + 92, y + 30 + i * 14], false, 5), 1.3, 0.4), flat("d8d0cc"))
    end
    saveCut(p, file)
end
