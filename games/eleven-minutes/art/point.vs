@@ The Point: sky, sea, headland with its lighthouse, and grass before the eye, in four lights. Heights are what
@@ the camera's way needs: the nearer a plane, the taller it is, so rows count from each plane's own top. When the
@@ camera is down the horizon stands in row 300 of the screen.

SKY_HIGH = 600
SEA_HIGH = 642
POINT_HIGH = 684
GRASS_HIGH = 736
SEA_TOP = 393
LAND = 136
GRASS = 185
LAMP_X = 742
LAMP_Y = 220

lights = {
    dusk = {sky = [[0, "141c40"], [150, "2c3264"], [250, "5d4480"], [315, "a65a7e"], [352, "e58a68"], [374, "ffc88c"]], cloud = "f2a884", cloudDark = "39345f", sun = "ffd9a0", sunX = 262, sunY = 356, far = "6a4c78", sea = [[393, "d98f78"], [412, "8a6288"], [460, "3e4274"], [560, "1c2450"]], glint = "ffcf9a", land = "1a1c3c", landLow = "0d1026", rim = "e8906c", grass = "090b1c", grassRim = "8a5560", tower = "e8b49a", towerShade = "33305a", lamp = 0.9, stars = 0.25},
    night = {sky = [[0, "050a1c"], [200, "0b1734"], [310, "15304e"], [352, "22506a"]], cloud = "1d3a58", cloudDark = "081226", sun = "5f9aa0", sunX = 330, sunY = 380, far = "122a44", sea = [[393, "1f4a62"], [420, "12304c"], [560, "060e22"]], glint = "bfe0d0", land = "0b1428", landLow = "050914", rim = "4a8090", grass = "03060e", grassRim = "284c5c", tower = "9fb6bc", towerShade = "142238", lamp = 1.0, stars = 1.0},
    crossing = {sky = [[0, "080b2a"], [170, "141a50"], [280, "2a3278"], [335, "4a589c"], [366, "7c90bc"]], cloud = "3c4a86", cloudDark = "070a20", sun = "8fb0d8", sunX = 420, sunY = 388, far = "20295a", sea = [[393, "4a5c90"], [420, "222c62"], [560, "080b24"]], glint = "c4d0f0", land = "090c24", landLow = "04050f", rim = "5666a0", grass = "030410", grassRim = "2c3668", tower = "5a648c", towerShade = "10142e", lamp = 0.0, stars = 1.6},
    morning = {sky = [[0, "5f84b4"], [170, "94aecb"], [270, "d2c6c4"], [330, "f6d6ae"], [366, "ffeac4"]], cloud = "fff0d8", cloudDark = "8ea2c0", sun = "fff6dc", sunX = 250, sunY = 330, far = "9fb0c4", sea = [[393, "f0d8bc"], [420, "a9bccb"], [560, "587a9c"]], glint = "fff6e0", land = "4a6468", landLow = "2c4250", rim = "f6deb0", grass = "243a44", grassRim = "9fb088", tower = "fff4e4", towerShade = "8f9fb4", lamp = 0.35, stars = 0.0}
}

function paintPoint(name)
    math["randomseed"](8118)
    local light = lights[name]
    paintSky(name, light)
    paintSea(name, light)
    paintLand(name, light)
    paintGrass(name, light)
end

function paintSky(name, light)
    local sky = canvas(960, SKY_HIGH)
    local ink = ladder(light["sky"])
    ink += cloud("veil", "px / 330 + 3", "py / 46") + tint(light["cloudDark"], "smoothstep(0.42, 0.86, veil) * 0.55")
    wash(sky, ink)
    glow(sky, light["sunX"], light["sunY"], 520, 210, light["sun"], 0.55, 2)
    glow(sky, light["sunX"], light["sunY"], 220, 90, light["sun"], 0.6, 1.6)
    if light["stars"] > 0
        paintStars(sky, light["stars"])
    end
    if name == "crossing"
        paintMilkyWay(sky)
    end
    paintClouds(sky, light)
    saveWhole(sky, name + "-sky.png")
end

@@ Banks that are lit from below, nearer the horizon ever thinner.
function paintClouds(sky, light)
    local ink = flat(light["cloud"]) + cloud("bank", "px / 210 + 7", "py / (14 + (380 - py) * 0.12)")
    ink += cloud("under", "px / 210 + 7", "(py + 7) / (14 + (380 - py) * 0.12)")
    ink += tint(light["cloudDark"], "clamp((bank - under) * 5 + 0.35, 0, 1)")
    ink += "a = smoothstep(0.5, 0.74, bank) * 0.62 * smoothstep(20, 190, py) * (1 - smoothstep(330, 388, py) * 0.8)\n"
    wash(sky, ink)
end

function paintStars(sky, many)
    for i = 1, floorOf(300 * many)
        local sx = random(0, 959)
        local sy = random(0, 340)
        local bright = random() * random()
        local fade = (1 - sy / 380) * math["min"](1, many)
        glow(sky, sx, sy, 1.4 + bright * 1.8, 1.4 + bright * 1.8, "f4f6ff", (0.3 + bright * 0.7) * fade, 1)
        if bright > 0.62
            glow(sky, sx, sy, 9, 9, "a8c4f0", 0.34 * fade, 2)
        end
    end
end

@@ A band of light from the upper left to the sea, torn by dark lanes.
function paintMilkyWay(sky)
    local ink = flat("b8c2ee") + "local along = (px - 40) * 0.8 + py * 0.6\nlocal off = (py - 40) - (px - 60) * 0.46\n"
    ink += cloud("dust", "along / 130", "off / 60 + 9") + cloud("lane", "along / 70 + 40", "off / 26 + 3")
    ink += tint("e8c8d8", "dust - 0.3") + "local band = max(0, 1 - abs(off + (dust - 0.5) * 90) / 120)\n"
    ink += "a = band * band * (0.25 + dust * 0.6) * (1 - smoothstep(0.48, 0.7, lane) * 0.75) * (1 - smoothstep(270, 400, py)) * 1.15\n"
    wash(sky, ink)
    for i = 1, 420
        local sx = random(20, 940)
        local sy = 30 + (sx - 60) * 0.46 + (random() + random() + random() - 1.5) * 90
        if sy > 0 and sy < 350
            glow(sky, sx, sy, 1.3, 1.3, "ffffff", random() * 0.7, 1)
        end
    end
end

@@ Far hills on the horizon, then water that mirrors the sky in broken strips.
function paintSea(name, light)
    local sea = canvas(960, SEA_HIGH)
    local hills = []
    for i = 0, 40
        push(hills, i * 24)
        push(hills, SEA_TOP - 3 - math["abs"](math["sin"](i * 0.31 + 1) + math["sin"](i * 0.83) * 0.4) * (4 + i * 0.34))
    end
    push(hills, 960)
    push(hills, SEA_TOP + 2)
    push(hills, 0)
    push(hills, SEA_TOP + 2)
    fill(sea, hills, flat(light["far"]))
    local ink = ladder(light["sea"]) + "local depth = (py - " + SEA_TOP + ") / 170\nlocal wide = 3 + depth * 26\n"
    ink += noise("swell", "px / (36 + depth * 160) + py * 0.37", "py / (1.6 + depth * 9)") + noise("fine", "px / (10 + depth * 50) + py * 0.9", "py / (1.1 + depth * 3)")
    ink += tint(light["sea"][#light["sea"]][2], "smoothstep(0.45, 0.9, swell) * 0.6")
    ink += "local path = abs(px - " + number(light["sunX"]) + " + (swell - 0.5) * 60) / (30 + depth * 170)\n"
    ink += tint(light["glint"], "smoothstep(0.52, 0.78, fine * 0.6 + swell * 0.4) * max(0, 1 - path) * (1 - depth * 0.55)")
    ink += tint(light["glint"], "smoothstep(0.76, 0.92, fine) * 0.22 * (1 - depth)")
    part(sea, 0, SEA_TOP, 960, SEA_HIGH - SEA_TOP, ink)
    part(sea, 0, SEA_TOP - 8, 960, 22, flat(light["sun"]) + "a = (1 - abs(py - " + (SEA_TOP + 2) + ") / 11) * 0.35 * max(0, 1 - abs(px - " + light["sunX"] + ") / 420)\n")
    if name == "crossing"
        @@ The same sea before the birds come.
        local still = canvas(960, SEA_HIGH)
        Plush["blitImage"](still["image"], sea["image"], 0, 0, false, 1, 0)
        saveCut(still, "waiting-sea.png")
        paintFlock(sea)
    end
    if name == "morning"
        paintGulls(sea, 6, 250, 250, "5a6c84", 0.8)
    end
    saveCut(sea, name + "-sea.png")
end

@@ A bird of three strokes: two wings and a body, `size` pixels from tip to tip.
function paintBird(target, bx, by, size, lift, hex, under)
    local half = size / 2
    local left = curve([bx - half, by - lift * half, bx - half * 0.45, by - lift * half * 0.75, bx, by], false, 5)
    local right = curve([bx, by, bx + half * 0.45, by - lift * half * 0.8, bx + half, by - lift * half * 0.9], false, 5)
    fill(target, stroke(left, size * 0.05, size * 0.16), flat(hex))
    fill(target, stroke(right, size * 0.16, size * 0.05), flat(hex))
    fill(target, ellipse(bx + size * 0.03, by + size * 0.02, size * 0.19, size * 0.075, -8), flat(hex))
    if under != ""
        fill(target, ellipse(bx - size * 0.1, by - lift * size * 0.08, size * 0.11, size * 0.035, 30), flat(under))
    end
end

@@ Dark against the glow of the horizon, pale with starlight further up.
function flockHex(t)
    if t < 0.06
        return "141a42"
    elseif random() < 0.5
        return "8f9cd6"
    end
    return "c2caee"
end

@@ The far ones of thousands going over: a river of them from the horizon on the left, larger as they near. Those that
@@ are near fly, as the weather of the place.
function paintFlock(sea)
    for i = 1, 300
        local t = random()
        t = t * t * 0.62
        local spread = (random() + random() - 1) * (26 + t * 150)
        local bx = 90 + t * 860 + (random() - 0.5) * 60
        local by = 372 - t * 330 + spread
        if by > 4 and by < 384
            paintBird(sea, bx, by, 3.5 + t * 17 + random() * 3, (random() - 0.35) * 0.9, flockHex(t), "")
        end
    end
end

function paintGulls(sea, many, x, y, hex, lift)
    for i = 1, many
        paintBird(sea, x + random(-120, 240), y + random(-70, 60), random(7, 16), lift * (0.3 + random() * 0.5), hex, "")
    end
end

@@ A ground line from the left to the right, through points; down to the foot of the canvas.
function landShape(points, high)
    local line = curve(points, false, 6)
    push(line, 960)
    push(line, high)
    push(line, 96)
    push(line, high)
    return line
end

function paintLand(name, light)
    local land = canvas(960, POINT_HIGH)
    local y = LAND
    if light["lamp"] > 0
        paintBeams(land, light)
    end
    local rocks = landShape([96, y + 560, 150, y + 492, 176, y + 484, 214, y + 446, 262, y + 424, 290, y + 396, 338, y + 380, 360, y + 360, 404, y + 345, 430, y + 324, 452, y + 326, 480, y + 304, 520, y + 296, 560, y + 288, 600, y + 270, 640, y + 262, 700, y + 254, 760, y + 250, 830, y + 256, 900, y + 246, 960, y + 238], POINT_HIGH)
    local ink = grade(0, y + 240, light["land"], 0, y + 380, light["landLow"]) + cloud("crag", "px / 34 + py / 60", "py / 20")
    ink += tint(light["rim"], "smoothstep(0.56, 0.8, crag) * 0.3 * (1 - smoothstep(" + (y + 250) + ", " + (y + 350) + ", py)) * (1 - smoothstep(430, 800, px) * 0.6)")
    fill(land, rocks, ink)
    paintShoreRocks(land, light)
    paintTower(land, light)
    paintCottage(land, light)
    paintPath(land, light)
    if light["lamp"] > 0
        paintLampLight(land, light)
    end
    saveCut(land, name + "-point.png")
end

function paintShoreRocks(land, light)
    for i = 1, 9
        local rx = 330 + i * 17 + random(-6, 6)
        local ry = LAND + 338 - i * 2.4 + random(-3, 3)
        local w = 8 + random(0, 13)
        local h = 5 + random(0, 10)
        fill(land, curve([rx - w, ry + 6, rx - w * 0.6, ry - h * 0.5, rx, ry - h, rx + w * 0.5, ry - h * 0.6, rx + w, ry + 6], true, 4), grade(rx - w, ry - h, light["land"], rx + w, ry, light["landLow"]))
        fill(land, stroke([rx - w * 0.7, ry - h * 0.35, rx - w * 0.2, ry - h * 0.9], 0.8, 1.6), flat(light["rim"]) + "a = a * 0.6\n")
    end
end

@@ White stone that takes the sky's colour on the left and darkens round to the right, with two broad bands.
function paintTower(land, light)
    local x = LAMP_X
    local foot = LAND + 256
    local top = LAMP_Y + 26
    local shape = curve([x - 17, top, x - 19, top + 60, x - 24, foot - 30, x - 31, foot, x - 31, foot, x + 31, foot, x + 31, foot, x + 24, foot - 30, x + 19, top + 60, x + 17, top], false, 6)
    local body = grade(x - 24, 0, light["tower"], x + 22, 0, light["towerShade"]) + noise("stone", "px / 7", "py / 5") + tint(light["towerShade"], "(stone - 0.35) * 0.22")
    body += tint(light["towerShade"], "step(abs(py - " + (top + 46) + "), 13) * 0.62") + tint(light["towerShade"], "step(abs(py - " + (top + 106) + "), 14) * 0.62")
    body += tint(light["landLow"], "smoothstep(" + (foot - 40) + ", " + foot + ", py) * 0.6")
    fill(land, shape, body)
    for i = 0, 2
        fill(land, rectangle(x - 5, top + 26 + i * 50, 6, 10), flat(windowHex(light)))
    end
    fill(land, rectangle(x - 25, top - 4, 50, 6), grade(x - 25, 0, light["tower"], x + 25, 0, light["landLow"]))
    fill(land, rectangle(x - 21, top + 2, 42, 4), flat(light["landLow"]))
    fill(land, rectangle(x - 12, LAMP_Y - 13, 24, 35), grade(x - 12, 0, glassHex(light), x + 14, 0, light["towerShade"]))
    for i = 0, 4
        fill(land, rectangle(x - 12.6 + i * 6, LAMP_Y - 13, 1.3, 35), flat(light["landLow"]))
    end
    for i = 0, 8
        fill(land, rectangle(x - 25 + i * 6.1, top - 15, 1.1, 12), flat(light["landLow"]))
    end
    fill(land, rectangle(x - 26, top - 16, 52, 1.6), flat(light["landLow"]))
    fill(land, curve([x - 16, LAMP_Y - 12, x - 13, LAMP_Y - 21, x, LAMP_Y - 31, x + 13, LAMP_Y - 21, x + 16, LAMP_Y - 12], false, 6), grade(x - 14, 0, light["rim"], x + 4, 0, light["landLow"]))
    fill(land, rectangle(x - 1, LAMP_Y - 42, 2, 14), flat(light["landLow"]))
end

function windowHex(light)
    if light["lamp"] == 0.35
        return "7c90a8"
    end
    return "ffc878"
end

function glassHex(light)
    if light["lamp"] > 0.8
        return "fff2c4"
    elseif light["lamp"] > 0
        return "ffe9c0"
    end
    return "39446e"
end

@@ Two arms of light, brightest at the lamp, thinning with the air.
function paintBeams(land, light)
    local x = number(LAMP_X)
    local y = number(LAMP_Y + 4)
    local ink = flat("ffe6ae") + "local dx = px - " + x + "\nlocal dy = py - " + y + "\nlocal far = sqrt(dx * dx + dy * dy) + 1\nlocal arm = (dy * 0.985 - dx * 0.17) / (4 + abs(dx) * 0.115)\n"
    ink += noise("air", "px / 90", "py / 30") + "local soft = max(0, 1 - arm * arm)\n"
    ink += "a = soft * soft * (0.75 + air * 0.25) * " + number(light["lamp"] * light["lamp"] * 0.85) + " / (1 + far / 210) * smoothstep(8, 40, far)\n"
    part(land, 0, 0, 960, LAND + 250, ink)
end

function paintLampLight(land, light)
    local strong = light["lamp"]
    glow(land, LAMP_X, LAMP_Y + 4, 150, 130, "ffd890", 0.5 * strong * strong, 2.2)
    glow(land, LAMP_X, LAMP_Y + 4, 46, 42, "fff0c0", 0.9 * strong, 1.8)
    glow(land, LAMP_X, LAMP_Y + 4, 15, 15, "ffffff", strong, 0.8)
end

function paintCottage(land, light)
    local x = 812
    local y = LAND + 252
    fill(land, rectangle(x, y - 30, 62, 34), grade(x, 0, light["tower"], x + 60, 0, light["towerShade"]) + tint(light["landLow"], "0.25"))
    fill(land, [x - 5, y - 29, x + 8, y - 52, x + 56, y - 52, x + 68, y - 29], grade(x, y - 52, light["land"], x + 40, y - 29, light["landLow"]))
    fill(land, stroke([x - 4, y - 29, x + 8, y - 52], 1.2, 1.2), flat(light["rim"]) + "a = a * 0.7\n")
    fill(land, rectangle(x + 46, y - 64, 8, 15), flat(light["landLow"]))
    fill(land, rectangle(x + 12, y - 21, 9, 11), flat(windowHex(light)))
    fill(land, rectangle(x + 38, y - 21, 9, 11), flat(windowHex(light)))
    if light["lamp"] != 0.35
        glow(land, x + 16, y - 15, 30, 24, "ffc070", 0.45, 2)
        glow(land, x + 42, y - 15, 30, 24, "ffc070", 0.45, 2)
    end
    part(land, x + 40, y - 130, 90, 68, flat(light["cloud"]) + noise("smoke", "(px - py * 0.5) / 15", "py / 18 + 3") + "local lean = px - " + (x + 50) + " - (" + (y - 64) + " - py) * 0.7\nlocal wide = 3 + (" + (y - 64) + " - py) * 0.16\na = max(0, 1 - abs(lean + (smoke - 0.5) * 12) / wide) * 0.3 * smoothstep(" + (y - 130) + ", " + (y - 90) + ", py)\n")
end

@@ How high the ground is at a column, counted like the points of its outline.
function groundAt(x)
    local at = [520, 296, 560, 288, 600, 270, 640, 262, 700, 254, 760, 250, 830, 256, 900, 246, 960, 238]
    for i = 1, #at - 3, 2
        if x <= at[i + 2]
            return at[i + 1] + (at[i + 3] - at[i + 1]) * (x - at[i]) / (at[i + 2] - at[i])
        end
    end
    return 238
end

@@ Low wall and fence along the way up, and thrift on the cliff.
function paintPath(land, light)
    for i = 0, 13
        local x = 560 + i * 13
        local y = LAND + 288 - i * 2.4
        fill(land, rectangle(x, y - 13, 2, 15), flat(light["landLow"]))
        fill(land, rectangle(x, y - 13, 0.8, 15), flat(light["rim"]) + "a = a * 0.5\n")
    end
    fill(land, stroke([560, LAND + 279, 640, LAND + 262, 730, LAND + 246], 1.3, 1.3), flat(light["landLow"]))
    for i = 1, 190
        local x = random(520, 955)
        local y = LAND + groundAt(x) + 3 + random(0, 40) * random()
        fill(land, stroke([x, y + 4, x + random(-2, 3), y - random(2, 7)], 1.6, 0.5), flat(light["land"]) + tint(light["rim"], number(random() * 0.4)))
    end
end

@@ Blades of grass and seed heads before everything, out of focus.
function paintGrass(name, light)
    local near = canvas(960, GRASS_HIGH)
    fill(near, curve([0, GRASS + 462, 160, GRASS + 474, 330, GRASS + 492, 520, GRASS + 500, 700, GRASS + 486, 860, GRASS + 462, 960, GRASS + 446, 960, GRASS_HIGH, 0, GRASS_HIGH], true, 5), flat(light["grass"]))
    for i = 1, 330
        local x = random(-20, 980)
        local off = math["abs"](x - 500) / 500
        local foot = GRASS + 520 - off * 40
        local tall = 30 + random(0, 46) + off * off * 96
        local bend = random(-16, 40)
        local blade = curve([x, foot, x + bend * 0.2, foot - tall * 0.55, x + bend, foot - tall], false, 6)
        local ink = grade(0, foot - tall, light["grassRim"], 0, foot - tall * 0.35, light["grass"])
        fill(near, stroke(blade, 4.5, 0.6), ink)
        if i % 7 == 0 and off > 0.35
            for s = 0, 6
                fill(near, ellipse(x + bend - s * bend * 0.06, foot - tall + s * 5, 2.2, 4, 20 - s * 6), ink)
            end
        end
    end
    blur(near, 1.6)
    saveCut(near, name + "-grass.png")
end
