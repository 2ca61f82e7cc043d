@@ Painting by functions of a pixel: each gives red, green, blue and opacity, 0 to 255, for a place.
@@ Noise repeats at the edges of its period, so that tiles join.

floorOf = math["floor"]
sin = math["sin"]
cos = math["cos"]
least = math["min"]
most = math["max"]
rootOf = math["sqrt"]
TURN = 6.2831853

LATTICE = 64
lattice = []
math["randomseed"](7719)
for i = 1, LATTICE * LATTICE
    push(lattice, random())
end

function byte(value)
    if value < 0
        return 0
    elseif value > 255
        return 255
    end
    return floorOf(value)
end

function clampUnit(value)
    return most(0, least(1, value))
end

function mixOf(from, to, share)
    return from + (to - from) * share
end

@@ 0 below the first bound, 1 above the second, smooth between.
function smooth(from, to, value)
    local t = clampUnit((value - from) / (to - from))
    return t * t * (3 - 2 * t)
end

function latticeAt(i, j, period, seed)
    return lattice[(j % period * 7 + seed * 13) % LATTICE * LATTICE + (i % period + seed * 29) % LATTICE + 1]
end

@@ Smooth noise from 0 to 1. `u` and `v` are not below 0.
function noise(u, v, period, seed)
    local i = floorOf(u)
    local j = floorOf(v)
    local f = u - i
    local g = v - j
    f = f * f * (3 - 2 * f)
    g = g * g * (3 - 2 * g)
    local upper = mixOf(latticeAt(i, j, period, seed), latticeAt(i + 1, j, period, seed), f)
    local lower = mixOf(latticeAt(i, j + 1, period, seed), latticeAt(i + 1, j + 1, period, seed), f)
    return mixOf(upper, lower, g)
end

@@ Three octaves over a tile of `size` pixels; `cells` to its side.
function cloud(px, py, size, cells, seed)
    local u = px * cells / size
    local v = py * cells / size
    return noise(u, v, cells, seed) * 0.55 + noise(u * 2, v * 2, cells * 2, seed + 3) * 0.3 + noise(u * 4, v * 4, cells * 4, seed + 5) * 0.15
end

@@ The nearest of the scattered points, one in each cell: distances to the two nearest in cells, and its number.
function cobbleAt(px, py, size, cells, seed)
    local u = px * cells / size
    local v = py * cells / size
    local ci = floorOf(u)
    local cj = floorOf(v)
    local first = 9.0
    local second = 9.0
    local number = 0
    for dj = -1, 1
        for di = -1, 1
            local i = ci + di + cells
            local j = cj + dj + cells
            local across = i - cells + 0.2 + 0.6 * latticeAt(i, j, cells, seed) - u
            local down = j - cells + 0.2 + 0.6 * latticeAt(i, j, cells, seed + 11) - v
            local far = rootOf(across * across + down * down)
            if far < first
                second = first
                first = far
                number = i % cells + j % cells * cells
            elseif far < second
                second = far
            end
        end
    end
    return first, second, number
end

@@ Paints with `colours`, a function of a pixel.
function painted(w, h, colours)
    local image = Plush["createImage"](w, h, 0, 0, 0, 0)
    for py = 0, h - 1
        for px = 0, w - 1
            local r, g, b, a = colours(px, py)
            Plush["setPixel"](image, px, py, byte(r), byte(g), byte(b), byte(a))
        end
    end
    return image
end

function keep(name, image)
    Plush["saveImage"](folder + "/" + name + ".png", image)
    Plush["killImage"](image)
end

@@ A texture of a tile.
TILE = 64

function tile(name, colours)
    keep(name, painted(TILE, TILE, colours))
end

@@ Coverage of an ellipse's inside, its edge one pixel soft.
function inEllipse(px, py, cx, cy, rx, ry)
    local across = (px + 0.5 - cx) / rx
    local down = (py + 0.5 - cy) / ry
    return clampUnit((1 - rootOf(across * across + down * down)) * least(rx, ry) + 0.5)
end

@@ Coverage of a line from one point to another, narrowing from one half width to the other.
function onLine(px, py, ax, ay, bx, by, from, to)
    local wide = bx - ax
    local high = by - ay
    local along = clampUnit(((px + 0.5 - ax) * wide + (py + 0.5 - ay) * high) / (wide * wide + high * high))
    local across = px + 0.5 - ax - wide * along
    local down = py + 0.5 - ay - high * along
    return clampUnit(mixOf(from, to, along) + 0.5 - rootOf(across * across + down * down))
end
