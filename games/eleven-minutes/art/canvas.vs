@@ Painting with smooth shapes. A canvas starts as transparent black and gathers premultiplied colour, since that
@@ is what blending onto nothing gives; saving a cut-out divides its alpha out again.
@@ An ink is the source of a shader that sets r, g and b (and may thin a) from px and py, the place on the canvas.

newImage = Plush["createImage"]
putPixel = Plush["setPixel"]
floorOf = math["floor"]

function canvas(w, h)
    return {image = newImage(w, h, 0, 0, 0, 0), w = w, h = h}
end

function number(value)
    return "(" + (value + 0.0) + ")"
end

@@ Bayer's order of four by four, from 0 to below 1 of a step: gradients without bands that still pack well.
DITHER = "local bx = floor(px)\nlocal by = floor(py)\nlocal hx = floor(bx / 2)\nlocal hy = floor(by / 2)\nlocal order = (fract(hx / 2 + hy * hy * 0.75) * 0.25 + fract(bx / 2 + by * by * 0.75)) / 255\nr = r + order\ng = g + order\nb = b + order\n"
PLACE = "local px = x + ox\nlocal py = y + oy\n"

function rgb(hex)
    local red = toNumber(string["sub"](hex, 1, 2), 16)
    return [red / 255, toNumber(string["sub"](hex, 3, 4), 16) / 255, toNumber(string["sub"](hex, 5, 6), 16) / 255]
end

function flat(hex)
    local c = rgb(hex)
    return "r = " + number(c[1]) + "\ng = " + number(c[2]) + "\nb = " + number(c[3]) + "\n"
end

@@ From one point and colour to another, straight beyond both.
function grade(x0, y0, from, x1, y1, to)
    local a = rgb(from)
    local b = rgb(to)
    local wide = x1 - x0
    local high = y1 - y0
    local long = wide * wide + high * high
    local source = "local t = clamp(((px - " + number(x0) + ") * " + number(wide / long) + " + (py - " + number(y0) + ") * " + number(high / long) + "), 0, 1)\n"
    source += "r = mix(" + number(a[1]) + ", " + number(b[1]) + ", t)\n"
    source += "g = mix(" + number(a[2]) + ", " + number(b[2]) + ", t)\n"
    return source + "b = mix(" + number(a[3]) + ", " + number(b[3]) + ", t)\n"
end

@@ Colours down the canvas: pairs of a row and a colour, from the top.
function ladder(stops)
    local first = rgb(stops[1][2])
    local source = "r = " + number(first[1]) + "\ng = " + number(first[2]) + "\nb = " + number(first[3]) + "\n"
    for i = 2, #stops
        local c = rgb(stops[i][2])
        source += "local s" + i + " = smoothstep(" + number(stops[i - 1][1]) + ", " + number(stops[i][1]) + ", py)\n"
        source += "r = mix(r, " + number(c[1]) + ", s" + i + ")\ng = mix(g, " + number(c[2]) + ", s" + i + ")\nb = mix(b, " + number(c[3]) + ", s" + i + ")\n"
    end
    return source
end

@@ Towards a colour, by an expression from 0 to 1.
function tint(hex, share)
    local c = rgb(hex)
    noiseCount += 1
    local k = "k" + noiseCount
    return "local " + k + " = clamp(" + share + ", 0, 1)\nr = mix(r, " + number(c[1]) + ", " + k + ")\ng = mix(g, " + number(c[2]) + ", " + k + ")\nb = mix(b, " + number(c[3]) + ", " + k + ")\n"
end

noiseCount = 0

function corner(i, j)
    return "fract(sin(" + i + " * 12.9898 + " + j + " * 78.233) * 437.585)"
end

@@ Smooth noise from 0 to 1 of two expressions, into a new local of that name.
function noise(name, u, v)
    local n = name + "_"
    local source = "local " + n + "u = " + u + "\nlocal " + n + "v = " + v + "\n"
    source += "local " + n + "i = floor(" + n + "u)\nlocal " + n + "j = floor(" + n + "v)\n"
    source += "local " + n + "f = fract(" + n + "u)\nlocal " + n + "g = fract(" + n + "v)\n"
    source += n + "f = " + n + "f * " + n + "f * (3 - 2 * " + n + "f)\n" + n + "g = " + n + "g * " + n + "g * (3 - 2 * " + n + "g)\n"
    local upper = "mix(" + corner(n + "i", n + "j") + ", " + corner("(" + n + "i + 1)", n + "j") + ", " + n + "f)"
    local lower = "mix(" + corner(n + "i", "(" + n + "j + 1)") + ", " + corner("(" + n + "i + 1)", "(" + n + "j + 1)") + ", " + n + "f)"
    return source + "local " + name + " = mix(" + upper + ", " + lower + ", " + n + "g)\n"
end

@@ Three octaves of it.
function cloud(name, u, v)
    local source = noise(name + "a", u, v) + noise(name + "b", "(" + u + ") * 2.1 + 17", "(" + v + ") * 2.1 + 5") + noise(name + "c", "(" + u + ") * 4.3 + 3", "(" + v + ") * 4.3 + 29")
    return source + "local " + name + " = " + name + "a * 0.55 + " + name + "b * 0.3 + " + name + "c * 0.15\n"
end

function shade(image, ink, left, top)
    Plush["shader"](image, PLACE + ink + DITHER, {ox = left, oy = top}, 1, true)
end

function lay(target, image, left, top)
    Plush["blitImage"](target["image"], image, left, top, true, 1, 0)
    Plush["killImage"](image)
end

@@ All of the canvas; an ink that sets `a` lets what is below shine through.
function wash(target, ink)
    local image = newImage(target["w"], target["h"], 0, 0, 0, 255)
    shade(image, ink, 0, 0)
    lay(target, image, 0, 0)
end

function part(target, left, top, w, h, ink)
    local image = newImage(w, h, 0, 0, 0, 255)
    shade(image, ink, left, top)
    lay(target, image, left, top)
end

@@ A soft light or shadow: all of `strength` in the middle, nothing at the rim.
function glow(target, cx, cy, rx, ry, hex, strength, power)
    local left = floorOf(cx - rx)
    local top = floorOf(cy - ry)
    local ink = flat(hex) + "local gx = (px - " + number(cx) + ") / " + number(rx) + "\nlocal gy = (py - " + number(cy) + ") / " + number(ry) + "\n"
    ink += "a = " + number(strength) + " * max(0, 1 - sqrt(gx * gx + gy * gy)) ^ " + number(power or 2) + "\n"
    part(target, left, top, floorOf(rx * 2) + 2, floorOf(ry * 2) + 2, ink)
end

@@ A point list is flat: x, y, x, y, ... This one goes smoothly through all of them, `steps` for each stretch.
function curve(points, closed, steps)
    local count = #points \ 2
    local out = []
    local stretches = count - 1
    if closed
        stretches = count
    end
    for i = 0, stretches - 1
        for s = 0, steps - 1
            local t = s / steps
            curvePoint(out, points, count, closed, i, t)
        end
    end
    if not closed
        push(out, points[#points - 1])
        push(out, points[#points])
    end
    return out
end

function pointIndex(i, count, closed)
    if closed
        return (i + count) % count
    end
    return math["max"](0, math["min"](count - 1, i))
end

function curvePoint(out, points, count, closed, i, t)
    local a = pointIndex(i - 1, count, closed) * 2 + 1
    local b = pointIndex(i, count, closed) * 2 + 1
    local c = pointIndex(i + 1, count, closed) * 2 + 1
    local d = pointIndex(i + 2, count, closed) * 2 + 1
    for k = 0, 1
        local p0 = points[a + k]
        local p1 = points[b + k]
        local p2 = points[c + k]
        local p3 = points[d + k]
        push(out, p1 + 0.5 * t * (p2 - p0 + t * (2 * p0 - 5 * p1 + 4 * p2 - p3 + t * (3 * (p1 - p2) + p3 - p0))))
    end
end

@@ Fills a polygon, its edges smoothed over four sub-rows. The mask is as small as the shape.
function fill(target, points, ink)
    local left = points[1]
    local right = points[1]
    local top = points[2]
    local bottom = points[2]
    for i = 1, #points, 2
        left = math["min"](left, points[i])
        right = math["max"](right, points[i])
        top = math["min"](top, points[i + 1])
        bottom = math["max"](bottom, points[i + 1])
    end
    left = math["max"](0, floorOf(left))
    top = math["max"](0, floorOf(top))
    local w = math["min"](target["w"], floorOf(right) + 1) - left
    local h = math["min"](target["h"], floorOf(bottom) + 1) - top
    if w < 1 or h < 1
        return not
    end
    local mask = newImage(w, h, 255, 255, 255, 0)
    local solid = newImage(w, 1, 255, 255, 255, 255)
    for row = 0, h - 1
        coverRow(mask, solid, points, left, top, row, w)
    end
    Plush["killImage"](solid)
    shade(mask, ink, left, top)
    lay(target, mask, left, top)
end

@@ Where the outline crosses a height, from the left.
function crossings(points, height)
    local found = []
    local ax = points[#points - 1]
    local ay = points[#points]
    for i = 1, #points, 2
        local bx = points[i]
        local by = points[i + 1]
        if (ay <= height) != (by <= height)
            push(found, ax + (height - ay) / (by - ay) * (bx - ax))
        end
        ax = bx
        ay = by
    end
    if #found > 1
        table["sort"](found)
    end
    return found
end

function coverRow(mask, solid, points, left, top, row, w)
    local rows = []
    local simple = true
    local from = 0
    local to = w - 1
    for sub = 0, 3
        local xs = crossings(points, top + row + sub / 4 + 0.125)
        push(rows, xs)
        if #xs != 2
            simple = false
        else
            from = math["max"](from, floorOf(xs[1] - left) + 1)
            to = math["min"](to, floorOf(xs[2] - left) - 1)
        end
    end
    if simple and to - from > 6
        Plush["blitImageRect"](mask, solid, 0, 0, to - from + 1, 1, from, row, false, 1)
        coverPixels(mask, rows, left, row, w, floorOf(math["min"](rows[1][1], rows[4][1], rows[2][1], rows[3][1])) - left, from - 1)
        coverPixels(mask, rows, left, row, w, to + 1, floorOf(math["max"](rows[1][2], rows[4][2], rows[2][2], rows[3][2])) - left)
        return not
    end
    local first = w
    local last = -1
    for s = 1, 4
        if #rows[s] > 0
            first = math["min"](first, floorOf(rows[s][1]) - left)
            last = math["max"](last, floorOf(rows[s][#rows[s]]) - left)
        end
    end
    coverPixels(mask, rows, left, row, w, first, last)
end

function coverPixels(mask, rows, left, row, w, first, last)
    for column = math["max"](0, first), math["min"](w - 1, last)
        local x0 = left + column
        local x1 = x0 + 1
        local cover = 0.0
        for s = 1, 4
            local xs = rows[s]
            for i = 1, #xs - 1, 2
                local a = xs[i]
                local b = xs[i + 1]
                if a < x0
                    a = x0
                end
                if b > x1
                    b = x1
                end
                if b > a
                    cover += b - a
                end
            end
        end
        if cover > 0
            putPixel(mask, column, row, 255, 255, 255, floorOf(cover * 63.75 + 0.5))
        end
    end
end

@@ The outline of a stroke through the points, from one width to another.
function stroke(points, from, to)
    local there = []
    local back = []
    local count = #points \ 2
    for i = 1, count
        local a = math["max"](1, i - 1) * 2 - 1
        local b = math["min"](count, i + 1) * 2 - 1
        local dx = points[b] - points[a]
        local dy = points[b + 1] - points[a + 1]
        local long = math["max"](0.001, math["sqrt"](dx * dx + dy * dy))
        local half = (from + (to - from) * (i - 1) / math["max"](1, count - 1)) / 2
        push(there, points[i * 2 - 1] - dy / long * half)
        push(there, points[i * 2] + dx / long * half)
        push(back, points[i * 2 - 1] + dy / long * half)
        push(back, points[i * 2] - dx / long * half)
    end
    for i = count, 1, -1
        push(there, back[i * 2 - 1])
        push(there, back[i * 2])
    end
    return there
end

function ellipse(cx, cy, rx, ry, turn)
    local points = []
    local lean = math["rad"](turn or 0)
    local c = math["cos"](lean)
    local s = math["sin"](lean)
    local steps = math["max"](14, floorOf((rx + ry) / 2))
    for i = 0, steps - 1
        local angle = i / steps * 6.2831853
        local ex = math["cos"](angle) * rx
        local ey = math["sin"](angle) * ry
        push(points, cx + ex * c - ey * s)
        push(points, cy + ex * s + ey * c)
    end
    return points
end

function rectangle(x, y, w, h)
    return [x, y, x + w, y, x + w, y + h, x, y + h]
end

@@ Softens everything on the canvas, for what is too near or too far for the eye.
function blur(target, reach)
    for pass = 1, 2
        local source = "local sr = 0\nlocal sg = 0\nlocal sb = 0\nlocal sa = 0\n"
        for tap = -4, 4
            local at = "x + " + number(tap * reach / 4) + ", y"
            if pass == 2
                at = "x, y + " + number(tap * reach / 4)
            end
            local weight = number((5 - math["abs"](tap)) / 25)
            source += "sr = sr + sampleR(" + at + ") * " + weight + "\nsg = sg + sampleG(" + at + ") * " + weight + "\nsb = sb + sampleB(" + at + ") * " + weight + "\nsa = sa + sampleA(" + at + ") * " + weight + "\n"
        end
        Plush["shader"](target["image"], source + "r = sr\ng = sg\nb = sb\na = sa\n", {}, 1, true)
    end
end

@@ A picture that covers everything.
function saveWhole(target, name)
    Plush["saveImage"](folder + "/" + name, target["image"])
    Plush["killImage"](target["image"])
end

@@ A picture with nothing around it.
function saveCut(target, name)
    Plush["modifyImage"](target["image"], VESPER_AETHER_SET)
    saveWhole(target, name)
end
