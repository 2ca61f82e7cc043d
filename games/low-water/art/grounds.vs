@@ What is walked on, and water. A picture whose name ends with -wet says how much of it mirrors, by its opacity.

function cobbleInk(px, py, seed)
    local near, next, number = cobbleAt(px, py, TILE, 6, seed)
    local gap = smooth(0.02, 0.16, next - near)
    local shade = 0.72 + 0.5 * latticeAt(number, seed, 36, 3) * 0.6 + 0.22 * cloud(px, py, TILE, 8, seed + 1) - near * 0.34
    local moss = smooth(0.52, 0.72, cloud(px, py, TILE, 4, seed + 9))
    return gap, shade, moss
end

@@ Puddles lie in hollows that reach over stones and gaps.
function puddleOf(px, py, seed)
    return smooth(0.5, 0.64, cloud(px, py, TILE, 3, seed + 17))
end

function cobbles(seed)
    cobbleSeed = seed
    tile("cobbles" + seed, cobblePixel)
    tile("cobbles" + seed + "-wet", cobbleWet)
end

function cobblePixel(px, py)
    local gap, shade, moss = cobbleInk(px, py, cobbleSeed)
    local puddle = puddleOf(px, py, cobbleSeed)
    local r = mixOf(40, mixOf(120, 82, moss * 0.7) * shade, gap)
    local g = mixOf(46, mixOf(122, 104, moss * 0.7) * shade, gap)
    local b = mixOf(44, mixOf(120, 70, moss * 0.7) * shade, gap)
    return mixOf(r, 44, puddle * 0.6), mixOf(g, 56, puddle * 0.6), mixOf(b, 64, puddle * 0.6), 255
end

function cobbleWet(px, py)
    local gap, shade, moss = cobbleInk(px, py, cobbleSeed)
    local puddle = puddleOf(px, py, cobbleSeed)
    return 255, 255, 255, most(smooth(0.1, 0.8, puddle) * 255, gap * 34)
end

function mudPixel(px, py)
    local grain = cloud(px, py, TILE, 6, mudSeed)
    local lump = cloud(px, py, TILE, 3, mudSeed + 21)
    local shade = 0.62 + 0.4 * grain + 0.3 * lump
    return 92 * shade, 80 * shade, 62 * shade, 255
end

function mudWet(px, py)
    return 255, 255, 255, smooth(0.5, 0.3, cloud(px, py, TILE, 3, mudSeed + 21)) * 120
end

function mud(seed)
    mudSeed = seed
    tile("mud" + seed, mudPixel)
    tile("mud" + seed + "-wet", mudWet)
end

function grassPixel(px, py)
    local blade = noise(px * 32 / TILE, py * 9 / TILE, 32, 40)
    local shade = 0.5 + 0.55 * blade * cloud(px, py, TILE, 5, 41) + 0.35 * cloud(px, py, TILE, 3, 44)
    local dead = smooth(0.4, 0.7, cloud(px, py, TILE, 4, 47))
    return mixOf(78, 112, dead) * shade, mixOf(98, 106, dead) * shade, mixOf(66, 70, dead) * shade, 255
end

function bedPixel(px, py)
    local shade = 0.5 + 0.6 * cloud(px, py, TILE, 5, 51)
    return 46 * shade, 62 * shade, 52 * shade, 255
end

function bankPixel(px, py)
    local line = smooth(0.35, 0.65, noise(px * 4 / TILE, py * 16 / TILE, 16, 31))
    local shade = 0.66 + 0.36 * cloud(px, py, TILE, 6, 33) - 0.2 * line
    return 96 * shade, 88 * shade, 72 * shade, 255
end

function plankPixel(px, py)
    local row = floorOf(py / 10.67)
    local within = py - row * 10.67
    local edge = smooth(0, 1.6, within) * smooth(0, 1.6, 10.67 - within)
    local grain = noise(px * 8 / TILE, py * 32 / TILE, 32, 60 + row)
    local shade = (0.55 + 0.5 * grain + 0.1 * latticeAt(row, 3, 16, 8)) * (0.45 + 0.55 * edge)
    return 112 * shade, 90 * shade, 66 * shade, 255
end

@@ Still water: what lies below shines through.
function waterPixel(px, py)
    local ripple = noise(px * 6 / TILE, py * 12 / TILE, 12, 71) * 0.6 + noise(px * 12 / TILE, py * 24 / TILE, 24, 74) * 0.4
    local bright = smooth(0.6, 0.8, ripple)
    return 26 + 30 * bright, 52 + 34 * bright, 62 + 38 * bright, 150
end

function waterWet(px, py)
    local ripple = noise(px * 6 / TILE, py * 12 / TILE, 12, 71) * 0.6 + noise(px * 12 / TILE, py * 24 / TILE, 24, 74) * 0.4
    return 255, 255, 255, 255 - 190 * smooth(0.46, 0.62, ripple)
end

@@ The lake over the village, from above: thin enough to see lights under it.
function lakePixel(px, py)
    local r, g, b = waterPixel(px, py)
    return r * 0.7, g * 0.8, b * 0.9, 66
end

function lakeWet(px, py)
    local r, g, b, a = waterWet(px, py)
    return r, g, b, 40 + a * 0.22
end

@@ The same where nothing shines under it: a mirror.
function stillPixel(px, py)
    return 14, 22, 34, 255
end

function stillWet(px, py)
    return 255, 255, 255, 255
end

@@ Deep and black under a roof: nothing shines through.
function blackWaterPixel(px, py)
    local ripple = noise(px * 5 / TILE, py * 5 / TILE, 5, 76)
    return 14 + 8 * ripple, 22 + 12 * ripple, 28 + 14 * ripple, 255
end

function blackWaterWet(px, py)
    return 255, 255, 255, 196 - 70 * smooth(0.5, 0.8, noise(px * 5 / TILE, py * 5 / TILE, 5, 76))
end

function wetFlagPixel(px, py)
    local near, next, number = cobbleAt(px, py, TILE, 3, 81)
    local gap = smooth(0.01, 0.1, next - near)
    local shade = (0.6 + 0.3 * latticeAt(number, 2, 16, 5) + 0.3 * cloud(px, py, TILE, 6, 84)) * (0.4 + 0.6 * gap)
    return 96 * shade, 92 * shade, 88 * shade, 255
end

function wetFlagWet(px, py)
    return 255, 255, 255, 60 + 110 * smooth(0.45, 0.62, cloud(px, py, TILE, 3, 86))
end

function paintGrounds()
    cobbles(1)
    cobbles(2)
    mud(1)
    mud(2)
    tile("grass", grassPixel)
    tile("bed", bedPixel)
    tile("bank", bankPixel)
    tile("planks", plankPixel)
    tile("water", waterPixel)
    tile("water-wet", waterWet)
    tile("lake", lakePixel)
    tile("lake-wet", lakeWet)
    tile("still", stillPixel)
    tile("still-wet", stillWet)
    tile("black-water", blackWaterPixel)
    tile("black-water-wet", blackWaterWet)
    tile("flags", wetFlagPixel)
    tile("flags-wet", wetFlagWet)
end
