@@ Reads the pictures. The glade is kept as planes, one for every light it can stand in: a pixel's colour is
@@ red[p + plane], green[p + plane], blue[p + plane], where p counts from 1 along the rows.

WIDE = 240
HIGH = 136
PIXELS = WIDE * HIGH
NIGHT_PLANE = 0
LIT_PLANE = PIXELS
DAWN_PLANE = 2 * PIXELS
TWILIGHT_PLANE = 5 * PIXELS
@@ From no light of the lantern to all of it.
lightPlanes = [NIGHT_PLANE, 3 * PIXELS, 4 * PIXELS, LIT_PLANE]

imageFolder = append + "/images/"
setPixel = Plush["setPixel"]
getPixel = Plush["getPixel"]

red = []
green = []
blue = []
depth = []
solid = []

function readPlane(name)
    local image = Plush["loadPNG"](imageFolder + name)
    local p = #red
    for y = 0, HIGH - 1
        for x = 0, WIDE - 1
            p += 1
            red[p], green[p], blue[p] = getPixel(image, x, y)
        end
    end
    Plush["killImage"](image)
end

@@ Appends a plane that lies between two others; a share of 0 is all of the first.
function mixPlane(first, second, share)
    local p = #red
    for i = 1, PIXELS
        local a = first + i
        local b = second + i
        p += 1
        red[p] = red[a] + (red[b] - red[a]) * share
        green[p] = green[a] + (green[b] - green[a]) * share
        blue[p] = blue[a] + (blue[b] - blue[a]) * share
    end
end

function readMap(name)
    local image = Plush["loadPNG"](imageFolder + name)
    local p = 0
    for y = 0, HIGH - 1
        for x = 0, WIDE - 1
            p += 1
            depth[p], solid[p] = getPixel(image, x, y)
        end
    end
    Plush["killImage"](image)
end

@@ The visible pixels of a part of a picture.
function readSprite(image, left, top, wide, high)
    local sprite = {x = [], y = [], r = [], g = [], b = [], a = [], wide = wide, high = high}
    for y = 0, high - 1
        for x = 0, wide - 1
            local r, g, b, a = getPixel(image, left + x, top + y)
            if a > 0
                push(sprite["x"], x)
                push(sprite["y"], y)
                push(sprite["r"], r)
                push(sprite["g"], g)
                push(sprite["b"], b)
                push(sprite["a"], a / 255)
            end
        end
    end
    return sprite
end

function loadSprite(name)
    local image, high, wide = Plush["loadPNG"](imageFolder + name)
    local sprite = readSprite(image, 0, 0, wide, high)
    Plush["killImage"](image)
    return sprite
end

STEP_WIDE = 14
STEP_HIGH = 19

@@ Three steps of the keeper by the way it faces.
function loadKeeper(name)
    local image = Plush["loadPNG"](imageFolder + name)
    local views = {right = [], down = [], up = [], left = []}
    for step = 0, 2
        push(views["right"], readSprite(image, step * STEP_WIDE, 0, STEP_WIDE, STEP_HIGH))
        push(views["down"], readSprite(image, step * STEP_WIDE, STEP_HIGH, STEP_WIDE, STEP_HIGH))
        push(views["up"], readSprite(image, step * STEP_WIDE, 2 * STEP_HIGH, STEP_WIDE, STEP_HIGH))
    end
    Plush["mirrorImage"](image, true)
    for step = 0, 2
        push(views["left"], readSprite(image, (2 - step) * STEP_WIDE, 0, STEP_WIDE, STEP_HIGH))
    end
    Plush["killImage"](image)
    return views
end

function loadLetters(name)
    local image = Plush["loadPNG"](imageFolder + name)
    local order = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/.!-"
    local letters = {}
    for i = 1, #order
        letters[order[i]] = readSprite(image, (i - 1) % 16 * 6, (i - 1) \ 16 * 8, 5, 7)
    end
    Plush["killImage"](image)
    return letters
end

readPlane("glade-night.png")
readPlane("glade-lit.png")
readPlane("glade-dawn.png")
mixPlane(NIGHT_PLANE, LIT_PLANE, 0.3)
mixPlane(NIGHT_PLANE, LIT_PLANE, 0.62)
mixPlane(NIGHT_PLANE, DAWN_PLANE, 0.45)
readMap("glade-map.png")

glow = loadSprite("glow.png")
spark = loadSprite("spark.png")
lanternGlow = loadSprite("lantern.png")
shadow = loadSprite("shadow.png")
keeperViews = loadKeeper("keeper.png")
letters = loadLetters("letters.png")
