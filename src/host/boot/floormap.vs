@@ Grids of walls and floors for dungeons: rooms, hallways, a way from start to end, styled walls. The order of
@@ the random draws is part of the design: with the same seed a game gets the same map.

Floormap = {}
roombounds = {}

function vesperRoomShape(rows)
    local shape = {}
    local count = 0
    for row in string["gmatch"](rows, "%d+")
        local cells = {}
        for x = 1, #row
            cells[x] = toNumber(row[x])
        end
        count += 1
        shape[count] = cells
    end
    return shape
end

Floormap["roomshapes"] = {}
Floormap["roomshapes"][1] = vesperRoomShape("00000/00000/00000/00000/00000")
Floormap["roomshapes"][2] = vesperRoomShape("000/000/000")
Floormap["roomshapes"][3] = vesperRoomShape("0000000/0000000/0011100/0010100/0011100/0000000/0000000")
Floormap["roomshapes"][4] = vesperRoomShape("0000000/0000000/0011100/0011100/0011100/0000000/0000000")
Floormap["roomshapes"][5] = vesperRoomShape("0011100/0011100/0011100/0000000/0000000/0000000/0000000")
Floormap["roomshapes"][6] = vesperRoomShape("0000000/0000000/0000000/0000000/0011100/0011100/0011100")
Floormap["roomshapes"][7] = vesperRoomShape("0000000/0000000/1110000/1110000/1110000/0000000/0000000")
Floormap["roomshapes"][8] = vesperRoomShape("0000000/0000000/0000111/0000111/0000111/0000000/0000000")
Floormap["roomshapes"][9] = vesperRoomShape("000/000/000/000/000/000/000")

function vesperMapNumber(value, lowest, default)
    local number = toNumber(value)
    if number == not
        number = default
    end
    number = math["floor"](number)
    if lowest != not and number < lowest
        return lowest
    end
    return number
end

@@ Writes a shape into the map being generated. False when it would touch the outer ring.
function vesperCarveShape(shape, xoff, yoff)
    local shapeh = #shape
    local shapew = #shape[1]
    if xoff < 2 or yoff < 2 or xoff + shapew - 1 > vesperMapWidth - 1 or yoff + shapeh - 1 > vesperMapHeight - 1
        return false
    end
    for y = 1, shapeh
        for x = 1, shapew
            if shape[y][x] == 0
                vesperMap[yoff + y - 1][xoff + x - 1] = 0
            else
                vesperMap[yoff + y - 1][xoff + x - 1] = 1
            end
        end
    end
    table["insert"](roombounds, {xoff, yoff, xoff + shapew - 1, yoff + shapeh - 1})
    return true
end

function vesperTryPlaceShape(shape, anchorx, anchory, maxtries)
    local shapeh = #shape
    local shapew = #shape[1]
    local maxx = vesperMapWidth - shapew
    local maxy = vesperMapHeight - shapeh
    if maxx < 2 or maxy < 2
        return false
    end
    for try = 1, maxtries or 30
        local x = 0
        local y = 0
        if anchorx != not and anchory != not
            x = Vesper["clamp"](anchorx - shapew \ 2, 2, maxx)
            y = Vesper["clamp"](anchory - shapeh \ 2, 2, maxy)
        else
            x = math["random"](2, maxx)
            y = math["random"](2, maxy)
        end
        if vesperCarveShape(shape, x, y)
            return true
        end
    end
    return false
end

function vesperOpenCell(x, y)
    if x >= 1 and y >= 1 and x <= vesperMapWidth and y <= vesperMapHeight
        vesperMap[y][x] = 0
    end
end

@@ Along x to the target's column, then along y.
function vesperCarveHallway(x1, y1, x2, y2)
    local x = x1
    local y = y1
    vesperOpenCell(x, y)
    while x != x2
        if x < x2
            x += 1
        else
            x -= 1
        end
        vesperOpenCell(x, y)
    end
    while y != y2
        if y < y2
            y += 1
        else
            y -= 1
        end
        vesperOpenCell(x, y)
    end
end

function vesperJoinRooms(from, to)
    local x1 = math["random"](from[1], from[3])
    local y1 = math["random"](from[2], from[4])
    local x2 = math["random"](to[1], to[3])
    local y2 = math["random"](to[2], to[4])
    vesperCarveHallway(x1, y1, x2, y2)
end

function vesperPlaceStartRoom(shapes, startx, starty)
    for try = 1, 60
        if vesperTryPlaceShape(shapes[math["random"](#shapes)], startx, starty, 1)
            return true
        end
    end
    for try = 1, 60
        if vesperTryPlaceShape(shapes[math["random"](#shapes)], not, not, 1)
            return true
        end
    end
    return false
end

function vesperExtraHallways(extrahall)
    local count = 0
    if typeOf(extrahall) == "number"
        count = math["max"](0, math["floor"](extrahall))
    elseif extrahall
        count = math["max"](1, #roombounds \ 2)
    end
    if #roombounds < 2
        return
    end
    for i = 1, count
        local first = math["random"](#roombounds)
        local second = math["random"](#roombounds)
        vesperJoinRooms(roombounds[first], roombounds[second])
    end
end

function Floormap["genFloor"](xsize, ysize, rooms, extrahall, roomshapes, startx, starty, endx, endy, forceconnections)
    vesperMapWidth = vesperMapNumber(xsize, 3, 3)
    vesperMapHeight = vesperMapNumber(ysize, 3, 3)
    rooms = vesperMapNumber(rooms, 0, 0)
    startx = vesperMapNumber(startx, not, 2)
    starty = vesperMapNumber(starty, not, 2)
    endx = vesperMapNumber(endx, not, vesperMapWidth - 1)
    endy = vesperMapNumber(endy, not, vesperMapHeight - 1)
    vesperMap = {}
    for y = 1, vesperMapHeight
        vesperMap[y] = {}
        for x = 1, vesperMapWidth
            vesperMap[y][x] = 1
        end
    end
    roombounds = {}
    local shapes = Floormap["roomshapes"]
    if typeOf(roomshapes) == "table" and #roomshapes > 0
        shapes = roomshapes
    end
    vesperPlaceStartRoom(shapes, startx, starty)
    for i = 1, rooms
        vesperTryPlaceShape(shapes[math["random"](#shapes)], not, not, 50)
    end
    for i = 2, #roombounds
        vesperJoinRooms(roombounds[i - 1], roombounds[i])
    end
    vesperExtraHallways(extrahall)
    vesperOpenCell(startx, starty)
    vesperOpenCell(endx, endy)
    if forceconnections and not Floormap["checkPath"](startx, starty, endx, endy, vesperMap)
        vesperCarveHallway(startx, starty, endx, endy)
    end
    if not Floormap["checkPath"](startx, starty, endx, endy, vesperMap)
        vesperCarveHallway(startx, starty, endx, endy)
    end
    return vesperMap
end

function vesperCell(map, x, y)
    if typeOf(map[y]) != "table"
        return not
    end
    return map[y][x]
end

@@ True when two floor cells connect by steps up, right, down and left.
function Floormap["checkPath"](x1, y1, x2, y2, map)
    if typeOf(map) != "table" or vesperCell(map, x1, y1) != 0 or vesperCell(map, x2, y2) != 0
        return false
    end
    local steps = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}}
    local seen = {[x1 + ":" + y1] = true}
    local queue = [[x1, y1]]
    local head = 1
    while head <= #queue
        local x = queue[head][1]
        local y = queue[head][2]
        head += 1
        if x == x2 and y == y2
            return true
        end
        for i, step in ipairs(steps)
            local nx = x + step[1]
            local ny = y + step[2]
            local key = nx + ":" + ny
            if vesperCell(map, nx, ny) == 0 and not contains(seen, key)
                seen[key] = true
                push(queue, [nx, ny])
            end
        end
    end
    return false
end

@@ Positions of a mask around its centre, in reading order.
vesperRuleOffsets = [[1, -1, -1], [2, 0, -1], [3, 1, -1], [4, -1, 0], [6, 1, 0], [7, -1, 1], [8, 0, 1], [9, 1, 1]]

function vesperRuleFits(map, x, y, rule)
    for i, position in ipairs(vesperRuleOffsets)
        local wanted = rule[position[1]]
        if wanted != not
            local tile = vesperCell(map, x + position[2], y + position[3])
            if tile == not or (wanted == 0) != (tile == 0)
                return false
            end
        end
    end
    return true
end

@@ Rules run in order, each over the whole map; a match writes its tile at once.
function Floormap["applyWallRules"](map, rules)
    if typeOf(map) != "table" or typeOf(rules) != "table"
        return map
    end
    for i, rule in ipairs(rules)
        if rule[5] != not
            for y = 1, #map
                for x = 1, #map[y]
                    if map[y][x] != 0 and vesperRuleFits(map, x, y, rule)
                        map[y][x] = rule[5]
                    end
                end
            end
        end
    end
    return map
end
