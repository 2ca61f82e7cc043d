@@ A place: tiles, what stands on them, what shines. Tiles count from 0, the scene's tables from 1.

places = {}

function newPlace(name, wide, high)
    place = {name = name, wide = wide, high = high, quads = [], solids = [], trees = [], doors = [], lights = [], panes = [], bridges = []}
    for i, layer in ipairs(["walls", "roofs", "floors", "roofsOff", "floorsOff", "deep", "ground"])
        place[layer] = []
        for x = 1, wide
            local column = []
            for y = 1, high
                push(column, 0)
            end
            push(place[layer], column)
        end
    end
    return place
end

function setTile(layer, x, y, value)
    place[layer][x + 1][y + 1] = value
end

function fillTiles(layer, x, y, wide, deep, value)
    for tileX = x, x + wide - 1
        for tileY = y, y + deep - 1
            setTile(layer, tileX, tileY, value)
        end
    end
end

function tileAt(layer, x, y)
    if x < 0 or y < 0 or x >= place["wide"] or y >= place["high"]
        return not
    end
    return place[layer][x + 1][y + 1]
end

function addQuad(face)
    push(place["quads"], face)
    return face
end

@@ Blocks the way within `reach` of the line.
function addSolid(ax, ay, bx, by, reach)
    push(place["solids"], [ax, ay, bx, by, reach])
end

@@ A face that stops whoever walks.
function addSolidQuad(face)
    addSolid(face["bl"][1], face["bl"][2], face["br"][1], face["br"][2], 0.5)
    return addQuad(face)
end

function addTree(x, y, wide, high, number, reach)
    push(place["trees"], [x, y, 0, wide, high, number])
    if reach > 0
        addSolid(x, y, x, y, reach)
    end
end

@@ Something to act on: near the point, `kind` says what happens.
function addDoor(kind, x, y, prompt)
    local door = {kind = kind, x = x, y = y, prompt = prompt}
    push(place["doors"], door)
    return door
end

function addLight(x, y, z, ink, reach)
    local light = [x, y, z, ink, reach]
    push(place["lights"], light)
    return light
end

@@ A block with a gabled roof; `ridge` is the axis it runs along.
function addHouse(x, y, wide, deep, tall, wall, ridge)
    fillTiles("floors", x, y, wide, deep, texture(wall))
    fillTiles("floorsOff", x, y, wide, deep, tall)
    local span = deep
    if ridge == "y"
        span = wide
    end
    local top = tall + span * 16 * 0.42
    addSlopes(x, y, wide, deep, tall - 0.8, top, ridge)
    addGables(x, y, wide, deep, tall, top, ridge)
end

@@ A tile's width of roof at a time.
function addSlopes(x, y, wide, deep, eave, top, ridge)
    local number = texture("slate")
    local over = 1.6
    if ridge == "x"
        local middle = (y + deep / 2) * 16
        for i = 0, wide - 1
            local from = (x + i) * 16
            local to = from + 16
            if i == 0
                from -= over
            end
            if i == wide - 1
                to += over
            end
            addQuad(quad([from, middle, top], [to, middle, top], [to, (y + deep) * 16 + over, eave], [from, (y + deep) * 16 + over, eave], number))
            addQuad(quad([to, middle, top], [from, middle, top], [from, y * 16 - over, eave], [to, y * 16 - over, eave], number))
        end
        return not
    end
    local middle = (x + wide / 2) * 16
    for i = 0, deep - 1
        local from = (y + i) * 16
        local to = from + 16
        if i == 0
            from -= over
        end
        if i == deep - 1
            to += over
        end
        addQuad(quad([middle, to, top], [middle, from, top], [(x + wide) * 16 + over, from, eave], [(x + wide) * 16 + over, to, eave], number))
        addQuad(quad([middle, from, top], [middle, to, top], [x * 16 - over, to, eave], [x * 16 - over, from, eave], number))
    end
end

function addGables(x, y, wide, deep, tall, top, ridge)
    local number = texture("gable")
    local high = top - tall
    if ridge == "x"
        addQuad(upright(x * 16, y * 16, x * 16, (y + deep) * 16, tall, high, number))
        addQuad(upright((x + wide) * 16, (y + deep) * 16, (x + wide) * 16, y * 16, tall, high, number))
        return not
    end
    addQuad(upright(x * 16, (y + deep) * 16, (x + wide) * 16, (y + deep) * 16, tall, high, number))
    addQuad(upright((x + wide) * 16, y * 16, x * 16, y * 16, tall, high, number))
end

@@ The tables of the scene; quads follow with each frame.
function showPlace(name)
    place = places[name]
    showTiles()
end

function showTiles()
    Plush["setMap"](place["walls"], place["roofs"], place["floors"], place["roofsOff"], place["floorsOff"], textures, place["quads"])
end
