@@ The picture of the place: traced small, given its sky, enlarged and coloured.

FOV = 58
VIEW_WIDE = math["rad"](FOV)
@@ How much the picture is enlarged: traced at 480 by 272, or at 320 by 182.
VIEW_SCALES = [2, 3]
viewScale = 0
view = not

fogNow = [0, 0, 0]
playerX = 0.0
playerY = 0.0
playerTurn = 0.0
playerTilt = 0.0
eyeHeight = 9.5
sprites = []
glows = []
sceneLights = []
lanternLit = true
viewFade = 0.0

Plush["setFov"](FOV)
Plush["setAccuracy"](1)
Plush["setRaytrace"](1)
Plush["setReflection"](1)

@@ Between the traced pixels, and towards a night's colours: shadows to blue, lights to warm.
VIEW_SHADER = table["concat"]([
    "local u = x + 0.5 / times - 0.5",
    "local v = y + 0.5 / times - 0.5",
    "local i = floor(u)",
    "local j = floor(v)",
    "local f = u - i",
    "local h = v - j",
    "local cr = mix(mix(sampleR(i, j), sampleR(i + 1, j), f), mix(sampleR(i, j + 1), sampleR(i + 1, j + 1), f), h)",
    "local cg = mix(mix(sampleG(i, j), sampleG(i + 1, j), f), mix(sampleG(i, j + 1), sampleG(i + 1, j + 1), f), h)",
    "local cb = mix(mix(sampleB(i, j), sampleB(i + 1, j), f), mix(sampleB(i, j + 1), sampleB(i + 1, j + 1), f), h)",
    "local light = cr * 0.3 + cg * 0.55 + cb * 0.15",
    "local shade = 1 - smoothstep(0, 0.42, light)",
    "local across = x * times / 960 - 0.5",
    "local down = y * times / 544 - 0.5",
    "local rim = (1.16 - 0.62 * (across * across + down * down)) * fade",
    "r = (cr * (1 - 0.2 * shade) + 0.004) * rim",
    "g = (cg * (1 - 0.02 * shade) + 0.008 * shade) * rim",
    "b = (cb * (1 + 0.14 * shade) + 0.022 * shade) * rim",
    "a = 1"
], "\n")
viewShader = Plush["compileShader"](VIEW_SHADER)

@@ Halos of what shines, laid over the traced picture where no tile hides its middle.
MOST_GLOWS = 9

function glowSource()
    local lines = []
    for i = 1, MOST_GLOWS
        local g = "g" + i
        push(lines, "if " + g + "s > 0 then")
        push(lines, "local across = x - " + g + "x")
        push(lines, "local down = y - " + g + "y")
        push(lines, "local far = sqrt(across * across + down * down) / " + g + "s")
        push(lines, "local halo = " + g + "p * (exp(-far * far * 9) * 0.4 + exp(-far * 3.4) * 0.34)")
        push(lines, "r = r + halo * " + g + "r")
        push(lines, "g = g + halo * " + g + "g")
        push(lines, "b = b + halo * " + g + "b")
        push(lines, "end")
    end
    return table["concat"](lines, "\n")
end

glowShader = Plush["compileShader"](glowSource())

@@ `size` is the halo's, in units of the place.
function glowAt(x, y, z, ink, size, strength)
    push(glows, {far = squaredTo(x, y), x = x, y = y, z = z, ink = ink, size = size, strength = strength})
end

@@ By steps of half a tile along the line from the eye, to a little before its end.
function isSeen(glow)
    local long = math["sqrt"](glow["far"])
    local steps = math["floor"]((long - 3) / 7)
    for i = 1, steps
        local share = i * 7 / long
        local x = math["floor"](between(playerX, glow["x"], share) / 16)
        local y = math["floor"](between(playerY, glow["y"], share) / 16)
        local wall = tileAt("walls", x, y)
        if wall != not
            local top = tileAt("floorsOff", x, y)
            if top > 16
                top += 7
            end
            if wall > 0 or top > between(eyeHeight, glow["z"], share)
                return false
            end
        end
    end
    return true
end

function drawGlows(sight)
    local w, h = Plush["imageSize"](view)
    local uniforms = {}
    local count = 0
    table["sort"](glows, nearer)
    for glow in glows
        local px, py, depth = Plush["project"](glow["x"], glow["y"], glow["z"], w, h)
        if px != not and count < MOST_GLOWS and depth > 2 and isSeen(glow) and depth < sight and px >= 0 and py >= 0 and px < w and py < h
            count += 1
            local clear = math["max"](0, 1 - depth / sight * 1.2)
            local ink = glow["ink"]
            for name, value in pairs({x = math["floor"](px), y = math["floor"](py), s = glow["size"] * w / 2 / VIEW_WIDE / depth, p = glow["strength"] * clear * math["min"](1, 0.3 + depth / 70), r = ink[1] / 255, g = ink[2] / 255, b = ink[3] / 255})
                uniforms["g" + count + name] = value
            end
        end
    end
    if count == 0
        return not
    end
    for i = count + 1, MOST_GLOWS
        for name in ["x", "y", "s", "p", "r", "g", "b"]
            uniforms["g" + i + name] = 0
        end
    end
    Plush["shader"](view, glowShader, uniforms, 1, true)
end

function chooseViewScale()
    local scale = VIEW_SCALES[settings["picture"]]
    if scale != viewScale
        if view != not
            Plush["killImage"](view)
        end
        viewScale = scale
        view = Plush["createImage"](VESPER_SCREEN_X \ scale, (VESPER_SCREEN_Y + scale - 1) \ scale, 0, 0, 0, 255)
    end
end

function between(from, to, share)
    return from + (to - from) * share
end

function mixedColour(from, to, share)
    return [math["floor"](between(from[1], to[1], share)), math["floor"](between(from[2], to[2], share)), math["floor"](between(from[3], to[3], share))]
end

function shineAt(x, y, z, ink, reach)
    push(sceneLights, [x, y, z, ink, reach])
end

function squaredTo(x, y)
    return (x - playerX) * (x - playerX) + (y - playerY) * (y - playerY)
end

@@ Lights cost time: the nearest ones count.
MOST_LIGHTS = 7

function setLights()
    Plush["clearLights"]()
    local near = []
    for light in sceneLights
        push(near, {far = squaredTo(light[1], light[2]), light = light})
    end
    table["sort"](near, nearer)
    for i = 1, math["min"](MOST_LIGHTS, #near)
        local light = near[i]["light"]
        local ink = light[4]
        Plush["spawnLight"](light[1], light[2], 16 - light[3], ink[1], ink[2], ink[3], light[5])
    end
end

function nearer(one, other)
    return one["far"] < other["far"]
end

function allQuads()
    local faces = []
    for face in place["quads"]
        push(faces, face)
    end
    local sight = (place["sight"] + 20) * (place["sight"] + 20)
    for tree in place["trees"]
        if squaredTo(tree[1], tree[2]) < sight
            push(faces, facing(tree[1], tree[2], tree[3], tree[4], tree[5], tree[6]))
        end
    end
    for sprite in sprites
        push(faces, sprite)
    end
    return faces
end

@@ The place's tile under the player gives the roof that the eye is measured from.
function setEye()
    local tileX = math["floor"](playerX / 16)
    local tileY = math["floor"](playerY / 16)
    local roof = tileAt("roofsOff", tileX, tileY) or 0
    Plush["setPlayerPosition"](playerX, playerY)
    Plush["setPlayerRotation"](playerTurn)
    Plush["setTilt"](playerTilt)
    Plush["setPlayerHeight"](16 + roof - eyeHeight)
end

function drawPlace(dawn)
    chooseViewScale()
    fogNow = mixedColour(place["fog"][1], place["fog"][2], dawn)
    Plush["fog"](fogNow[1], fogNow[2], fogNow[3])
    local sight = place["sight"]
    if tideNow > 0 and not place["indoors"]
        sight = 1000
    end
    Plush["setRenderDistance"](sight)
    Plush["setLightLevel"](place["least"] + dawn * 0.2, 1.3)
    setEye()
    setLights()
    Plush["setQuads"](allQuads())
    Plush["raycast"](view)
    if not place["indoors"]
        drawSky(view, dawn)
    end
    drawGlows(sight)
end

@@ The enlarged picture, for the queue.
function shownView()
    return Plush["shader"](view, viewShader, {times = viewScale, fade = viewFade}, viewScale)
end
