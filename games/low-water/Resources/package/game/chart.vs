@@ A chart that fills in as one walks: each place has one, four pixels to a tile.

CELL = 4
SEEN_TILES = 4.2
chartShown = true
charts = {}

function newCharts()
    for name, chart in pairs(charts)
        Plush["killImage"](chart["image"])
    end
    charts = {}
end

function chartOf(name)
    if charts[name] == not
        local here = places[name]
        charts[name] = {image = Plush["createImage"](here["wide"] * CELL, here["high"] * CELL, 8, 14, 20, 120), seen = {}}
    end
    return charts[name]
end

@@ Paper for ground, ink for what stops.
function inkOfTile(x, y)
    if tileAt("walls", x, y) > 0
        return [58, 48, 42]
    end
    local number = tileAt("floors", x, y)
    if tileAt("deep", x, y) == 1
        return [62, 104, 122]
    elseif number == texture("black-water")
        return [82, 112, 124]
    elseif tileAt("floorsOff", x, y) > 4.5
        if number == texture("bank")
            return [96, 90, 72]
        end
        return [74, 56, 46]
    elseif number == texture("grass")
        return [156, 164, 118]
    elseif number == texture("cobbles1") or number == texture("cobbles2")
        return [206, 196, 168]
    end
    return [184, 168, 132]
end

function seeTile(chart, x, y)
    local key = x * 64 + y
    if chart["seen"][key] or tileAt("walls", x, y) == not
        return not
    end
    chart["seen"][key] = true
    local ink = inkOfTile(x, y)
    for py = y * CELL, y * CELL + CELL - 1
        for px = x * CELL, x * CELL + CELL - 1
            local grain = (px * 7 + py * 13) % 11 - 5
            Plush["setPixel"](chart["image"], px, py, ink[1] + grain, ink[2] + grain, ink[3] + grain, 225)
        end
    end
end

@@ What is near, and indoors only what no wall hides.
function lookAround()
    local chart = chartOf(place["name"])
    local tileX = math["floor"](playerX / 16)
    local tileY = math["floor"](playerY / 16)
    if chart["atX"] == tileX and chart["atY"] == tileY
        return not
    end
    chart["atX"] = tileX
    chart["atY"] = tileY
    local reach = math["floor"](SEEN_TILES)
    for y = tileY - reach, tileY + reach
        for x = tileX - reach, tileX + reach
            local far = (x - tileX) * (x - tileX) + (y - tileY) * (y - tileY)
            if far <= SEEN_TILES * SEEN_TILES and (not place["indoors"] or seesTile(tileX, tileY, x, y))
                seeTile(chart, x, y)
            end
        end
    end
end

function seesTile(fromX, fromY, toX, toY)
    local steps = math["max"](math["abs"](toX - fromX), math["abs"](toY - fromY))
    for i = 1, steps - 1
        local x = math["floor"](fromX + (toX - fromX) * i / steps + 0.5)
        local y = math["floor"](fromY + (toY - fromY) * i / steps + 0.5)
        if tileAt("walls", x, y) == not or tileAt("walls", x, y) > 0
            return false
        end
    end
    return true
end

@@ Which tiles a save keeps: one text for a place, a digit for each tile.
function seenText(name)
    local chart = chartOf(name)
    local out = []
    for key, seen in pairs(chart["seen"])
        push(out, "" + key)
    end
    return table["concat"](out, " ")
end

function restoreSeen(name, text)
    local before = place
    place = places[name]
    local chart = chartOf(name)
    for key in string["gmatch"](text, "%d+")
        local number = toNumber(key)
        seeTile(chart, number \ 64, number % 64)
    end
    place = before
end

function dot(image, x, y, size, ink)
    local mark = Plush["createImage"](size, size, ink[1], ink[2], ink[3], 255)
    Plush["blitImage"](image, mark, x - size \ 2, y - size \ 2, false, 1, 0)
    Plush["killImage"](mark)
end

@@ Drawn straight into the frame: the part around the player, north up.
CHART_SIDE = 148

function drawChart()
    if not chartShown
        return not
    end
    local chart = chartOf(place["name"])["image"]
    local w, h = Plush["imageSize"](chart)
    local left = VESPER_SCREEN_X - CHART_SIDE - 18
    local top = 18
    local x = math["floor"](playerX / 16 * CELL)
    local y = math["floor"](playerY / 16 * CELL)
    local fromX = math["max"](0, math["min"](w - CHART_SIDE, x - CHART_SIDE \ 2))
    local fromY = math["max"](0, math["min"](h - CHART_SIDE, y - CHART_SIDE \ 2))
    local wide = math["min"](w, CHART_SIDE)
    local high = math["min"](h, CHART_SIDE)
    Plush["blitImageRect"](VESPER_FRAMEBUFFER, chart, fromX, fromY, wide, high, left + CHART_SIDE - wide, top, true, 1)
    local originX = left + CHART_SIDE - wide - fromX
    local originY = top - fromY
    for lamp in lampsSeen
        if lamp["far"] < 100
            dot(VESPER_FRAMEBUFFER, originX + math["floor"](lamp["x"] / 16 * CELL), originY + math["floor"](lamp["y"] / 16 * CELL), 4, inkOf(lamp["ink"]))
        end
    end
    for i = 0, 5
        local px = originX + x + math["floor"](math["cos"](playerTurn) * i + 0.5)
        local py = originY + y + math["floor"](math["sin"](playerTurn) * i + 0.5)
        local size = 5
        if i > 2
            size = 2
        end
        dot(VESPER_FRAMEBUFFER, px, py, size, [150, 30, 26])
    end
end
