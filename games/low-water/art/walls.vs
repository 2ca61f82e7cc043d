@@ What stands: houses, the church, the vaults under the mill. Years of water have drawn lines on all of it.

@@ Silt up to a height, weed hanging from where the water stood.
function weather(px, py, r, g, b)
    local line = 0.5 + 0.22 * noise(px * 8 / TILE, 0, 8, 91)
    local silt = smooth(line, line + 0.16, py / TILE)
    local streak = smooth(0.45, 0.75, noise(px * 16 / TILE, py * 3 / TILE, 16, 94)) * 0.4
    r = mixOf(r, r * 0.55 + 14, silt * 0.7 + streak * 0.4)
    g = mixOf(g, g * 0.66 + 16, silt * 0.7 + streak * 0.3)
    b = mixOf(b, b * 0.5 + 10, silt * 0.7 + streak * 0.4)
    return r, g, b
end

@@ Limewashed rubble.
function limePixel(px, py)
    local near, next, number = cobbleAt(px, py, TILE, 5, 101)
    local gap = smooth(0.0, 0.22, next - near)
    local shade = 0.72 + 0.16 * gap + 0.24 * cloud(px, py, TILE, 6, 104) + 0.08 * latticeAt(number, 4, 25, 6)
    local r, g, b = weather(px, py, 150 * shade, 146 * shade, 134 * shade)
    return r, g, b, 255
end

@@ Timber frame with clay between.
function timberPixel(px, py)
    local frame = most(smooth(5, 4, px), smooth(59, 60, px), smooth(5, 4, py), smooth(59, 60, py), smooth(2.6, 1.6, math["abs"](px - 32)), smooth(2.6, 1.6, math["abs"](py - 30)))
    local brace = smooth(3, 2, math["abs"](px - 32 - (py - 30) * 0.93)) * smooth(29, 31, py)
    frame = most(frame, brace)
    local shade = 0.72 + 0.42 * cloud(px, py, TILE, 6, 111)
    local r = mixOf(166, 62, frame) * shade
    local g = mixOf(146, 50, frame) * shade
    local b = mixOf(116, 42, frame) * shade
    r, g, b = weather(px, py, r, g, b)
    return r, g, b, 255
end

@@ Courses of cut stone.
function ashlar(px, py, rows, wide, seed)
    local high = TILE / rows
    local row = floorOf(py / high)
    local shifted = px + row % 2 * wide / 2
    local column = floorOf(shifted / wide)
    local across = shifted - column * wide
    local down = py - row * high
    local joint = smooth(0, 1.4, across) * smooth(0, 1.4, wide - across) * smooth(0, 1.4, down) * smooth(0, 1.4, high - down)
    local tone = latticeAt(column % (TILE \ wide), row, 16, seed)
    return joint, tone
end

function churchPixel(px, py)
    local joint, tone = ashlar(px, py, 5, 32, 121)
    local shade = (0.66 + 0.2 * tone + 0.3 * cloud(px, py, TILE, 6, 124)) * (0.6 + 0.4 * joint)
    local r, g, b = weather(px, py, 138 * shade, 140 * shade, 134 * shade)
    return r, g, b, 255
end

function towerPixel(px, py)
    local joint, tone = ashlar(px, py, 16, 16, 127)
    local shade = (0.66 + 0.24 * tone + 0.26 * cloud(px, py, TILE, 6, 124)) * (0.66 + 0.34 * joint)
    local r, g, b = weather(px, py, 138 * shade, 140 * shade, 134 * shade)
    return r, g, b, 255
end

function naveWallPixel(px, py)
    local joint, tone = ashlar(px, py, 4, 32, 131)
    local shade = (0.6 + 0.22 * tone + 0.3 * cloud(px, py, TILE, 5, 134)) * (0.62 + 0.38 * joint)
    local green = smooth(0.52, 0.74, cloud(px, py, TILE, 4, 137))
    return mixOf(124, 70, green) * shade, mixOf(122, 92, green) * shade, mixOf(118, 70, green) * shade, 255
end

function brickInk(px, py, seed)
    local joint, tone = ashlar(px, py, 8, 16, seed)
    local shade = (0.56 + 0.34 * tone + 0.26 * cloud(px, py, TILE, 8, seed + 1)) * (0.5 + 0.5 * joint)
    return 142 * shade, 92 * shade, 74 * shade
end

function brickPixel(px, py)
    local r, g, b = brickInk(px, py, 141)
    local damp = smooth(0.55, 1, py / TILE)
    return r * (1 - damp * 0.4), g * (1 - damp * 0.28), b * (1 - damp * 0.25), 255
end

function mossBrickPixel(px, py)
    local r, g, b = brickInk(px, py, 141)
    local side = smooth(0, 14, least(px, TILE - 1 - px))
    local moss = smooth(0.36, 0.62, cloud(px, py, TILE, 4, mossSeed) + (py / TILE - 0.5) * 0.3) * side
    local shade = 0.5 + 0.6 * cloud(px, py, TILE, 10, 149)
    return mixOf(r, 66 * shade, moss), mixOf(g, 110 * shade, moss), mixOf(b, 70 * shade, moss), 255
end

@@ A blind arch, for walls that face a way through.
function archPixel(px, py)
    local r, g, b = brickInk(px, py, 141)
    local across = px + 0.5 - 32
    local up = 30 - py - 0.5
    local far = math["abs"](across)
    if up > 0
        far = rootOf(across * across + up * up)
    end
    local ring = smooth(26, 24.5, far) * smooth(18, 19.5, far)
    local inside = smooth(19.5, 18, far)
    local shade = 0.8 + 0.3 * cloud(px, py, TILE, 8, 152)
    r = mixOf(r, 156 * shade, ring)
    g = mixOf(g, 146 * shade, ring)
    b = mixOf(b, 124 * shade, ring)
    return mixOf(r, r * 0.3, inside), mixOf(g, g * 0.34, inside), mixOf(b, b * 0.38, inside), 255
end

function slatePixel(px, py)
    local row = floorOf(py / 8)
    local shifted = (px + row % 2 * 4) % TILE
    local column = floorOf(shifted / 8)
    local across = shifted - column * 8
    local down = py - row * 8
    local edge = smooth(0, 1.2, across) * (0.6 + 0.4 * smooth(8, 6.4, down))
    local shade = (0.6 + 0.4 * latticeAt(column, row, 8, 161) + 0.24 * cloud(px, py, TILE, 6, 164)) * (0.55 + 0.45 * edge)
    local moss = smooth(0.55, 0.75, cloud(px, py, TILE, 4, 167))
    return mixOf(80, 70, moss) * shade, mixOf(90, 96, moss) * shade, mixOf(100, 70, moss) * shade, 255
end

@@ The triangle of wall under a gable.
function gablePixel(px, py)
    if math["abs"](px + 0.5 - 32) > (py + 1) / 2
        return 0, 0, 0, 0
    end
    local r, g, b = limePixel(px, py)
    local hole = inEllipse(px, py, 32, 38, 5, 6)
    local rim = math["abs"](px + 0.5 - 32) > (py + 1) / 2 - 3
    if rim
        return 58, 50, 42, 255
    end
    return mixOf(r, 18, hole), mixOf(g, 22, hole), mixOf(b, 30, hole), 255
end

function vaultRoofPixel(px, py)
    local r, g, b = brickInk(py, px, 171)
    return r * 0.62, g * 0.62, b * 0.66, 255
end

@@ Beams under the church's roof.
function beamPixel(px, py)
    local beam = smooth(22, 24, py) * smooth(42, 40, py)
    local grain = noise(px * 6 / TILE, py * 30 / TILE, 30, 181)
    local shade = 0.5 + 0.6 * grain
    return mixOf(40, 92, beam) * shade, mixOf(42, 74, beam) * shade, mixOf(48, 58, beam) * shade, 255
end

function paintWalls()
    tile("lime", limePixel)
    tile("timber", timberPixel)
    tile("church", churchPixel)
    tile("tower", towerPixel)
    tile("nave", naveWallPixel)
    tile("brick", brickPixel)
    mossSeed = 146
    tile("moss-brick1", mossBrickPixel)
    mossSeed = 157
    tile("moss-brick2", mossBrickPixel)
    tile("arch", archPixel)
    tile("slate", slatePixel)
    tile("gable", gablePixel)
    tile("vault-roof", vaultRoofPixel)
    tile("beams", beamPixel)
end
