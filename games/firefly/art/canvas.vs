@@ The scene is painted once, as materials and shades. Each light of the day has a ramp of colours for every
@@ material, and saving a scene looks the shades up there, dithered between neighbouring colours.

WIDE = 240
HIGH = 136
NIGHT = 1
LIT = 2
DAWN = 3

function colourOf(text, at)
    local red = toNumber(string["sub"](text, at, at + 1), 16)
    return [red, toNumber(string["sub"](text, at + 2, at + 3), 16), toNumber(string["sub"](text, at + 4, at + 5), 16)]
end

@@ Colours of a ramp from dark to bright, six hexadecimal digits each, a blank between them.
function ramp(text)
    local colours = []
    for at = 1, #text, 7
        push(colours, colourOf(text, at))
    end
    return colours
end

ramps = []

function material(night, lit, dawn)
    push(ramps, [ramp(night), ramp(lit), ramp(dawn)])
    return #ramps
end

skyNight = "0a0c24 0e1233 141b45 1b2858 24386b 31507f 47719a"
SKY = material(skyNight, skyNight, "6474ac 8488b8 a698c0 c8a8bc e6b8b0 f8d0a4 fff0c4")
STAR = material("4a6a9a 8ab0d0 f0f8ff", "4a6a9a 8ab0d0 f0f8ff", "8488b8 a698c0 c8a8bc")
MOON = material("b4c8d0 d8e4e0 fbfaf0", "b4c8d0 d8e4e0 fbfaf0", "b8b4cc ccc4d4 e4dce0")
FAR = material("1a2a4e 22365c 2f4a70", "1a2a4e 22365c 2f4a70", "8c84ac ac98b4 ccb0b4")
WOOD = material("0f1c38 152746 1d3456", "0f1c38 152746 1d3456", "4c5a78 5e6e84 7c8a92")
MIST = material("2c4870 426890 6488a8", "2c4870 426890 6488a8", "dcbcb0 f0d0b4 fce8cc")
GRASS = material("08161f 0d212a 133038 1b4246 285854 3d7264", "1a2014 323818 525222 7e7430 ae9a48 dcc86c", "234230 345a3c 4e784a 709650 9cb45c cccc7c")
WATER = material("081028 0c1a3a 142a52 20426e 3b668e 86aac4 e4f0f0", "101a30 1c2c40 344a52 60705c 98a070 d8cc84 fff4c8", "3c5c84 5c7c9c 8c9cb0 bcb0b4 e4c8b8 f8e0c0 fff8e4")
EARTH = material("0c1420 16202e 223040", "241a10 4c3418 86642e", "54463c 7c6450 a88c68")
BARK = material("050812 0b101e 131c2e 1e2c42 365064", "180f0c 30201a 54361e 80552a b88644", "281e28 402e36 604648 8a6654 c0946c")
LEAF = material("050d18 081720 0d222a 153440 225054", "0e1a0e 1c2c12 364216 5c6222 8c8c38", "1c3a34 2c5240 40704a 628e52 94b464")
REED = material("10222a 1c3a3e 30585a 588478", "302e12 5c541c 988a30 e0c858", "34543a 587a44 8aa252 d0cc74")
STONE = material("121a2c 1e2a42 30425c 54708e", "2c2620 564830 88744c c8ac70", "4a4a5a 6c6a76 948e8e c8b8aa")
CAP = material("2a1c36 4c2e50 7c5068 bc90a0", "5a1c18 98301e dc6030 ffb868", "6c2c3c a44448 d87058 f4bc90")
BLOOM = material("54709c 98b4d0", "f0c880 fff8d8", "f0b8c8 fff4f0")

@@ One entry a pixel, rows from the top.
kinds = []
shades = []
depths = []
blocked = []
for i = 1, WIDE * HIGH
    kinds[i] = SKY
    shades[i] = 0
    depths[i] = 0
    blocked[i] = 0
end

@@ `depth` is the row on which the thing stands: what walks on a row above it is hidden by it. 0 hides nothing.
function put(atX, atY, kind, shade, depth)
    if atX >= 0 and atX < WIDE and atY >= 0 and atY < HIGH
        local p = atY * WIDE + atX + 1
        kinds[p] = kind
        shades[p] = shade
        depths[p] = depth
    end
end

function blockEllipse(middleX, middleY, radiusX, radiusY)
    for by = middleY - radiusY, middleY + radiusY
        for bx = middleX - radiusX, middleX + radiusX
            local across = (bx - middleX) / (radiusX + 0.3)
            local down = (by - middleY) / (radiusY + 0.3)
            if across * across + down * down <= 1 and bx >= 0 and bx < WIDE and by >= 0 and by < HIGH
                blocked[by * WIDE + bx + 1] = 1
            end
        end
    end
end

lattice = []

function prepareNoise()
    for i = 1, 1024
        lattice[i] = random()
    end
end

@@ Smooth noise from 0 to 1; wants coordinates of 0 and more, repeats after 32.
function noise(u, v)
    local column = math["floor"](u)
    local row = math["floor"](v)
    local fx = u - column
    local fy = v - row
    fx = fx * fx * (3 - 2 * fx)
    fy = fy * fy * (3 - 2 * fy)
    local left = column % 32 + 1
    local right = (column + 1) % 32 + 1
    local upper = row % 32 * 32
    local lower = (row + 1) % 32 * 32
    local top = lattice[upper + left] + (lattice[upper + right] - lattice[upper + left]) * fx
    local bottom = lattice[lower + left] + (lattice[lower + right] - lattice[lower + left]) * fx
    return top + (bottom - top) * fy
end

bayer = [0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5]

function threshold(atX, atY)
    return (bayer[atY % 4 * 4 + atX % 4 + 1] + 0.5) / 16
end

@@ The sun comes up low on the right, behind the wood.
function dawnShade(atX, atY)
    local across = (atX - 190) / 130
    local down = (atY - 58) / 52
    return 0.16 + atY / 110 + math["max"](0, 0.55 - (across * across + down * down) * 0.6)
end

function saveScene(name, light)
    local image = Plush["createImage"](WIDE, HIGH, 0, 0, 0, 255)
    local setPixel = Plush["setPixel"]
    local floor = math["floor"]
    local p = 0
    for y = 0, HIGH - 1
        for x = 0, WIDE - 1
            p += 1
            local kind = kinds[p]
            local shade = shades[p]
            if light == DAWN and (kind == SKY or kind == STAR)
                kind = SKY
                shade = dawnShade(x, y)
            end
            local colours = ramps[kind][light]
            local step = floor(shade * (#colours - 1) + (bayer[y % 4 * 4 + x % 4 + 1] + 0.5) / 16) + 1
            if step < 1
                step = 1
            elseif step > #colours
                step = #colours
            end
            local colour = colours[step]
            setPixel(image, x, y, colour[1], colour[2], colour[3], 255)
        end
    end
    Plush["saveImage"](folder + "/" + name, image)
    Plush["killImage"](image)
end

@@ Red holds the depth, green is 255 where nobody can stand.
function saveMap(name)
    local image = Plush["createImage"](WIDE, HIGH, 0, 0, 0, 255)
    local p = 0
    for y = 0, HIGH - 1
        for x = 0, WIDE - 1
            p += 1
            Plush["setPixel"](image, x, y, depths[p], blocked[p] * 255, 0, 255)
        end
    end
    Plush["saveImage"](folder + "/" + name, image)
    Plush["killImage"](image)
end
