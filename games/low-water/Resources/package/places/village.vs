@@ Nether Alder: a valley under a lake. Letters are what the ground is:
@@   c b a  banks, from the highest    g  grass    ,  mud    .  cobbles    ~  water    =  water under the bridge
@@   t  a tree    o  a gravestone    r  reeds in the water    w  the well

VILLAGE = [
    "cccccccccccccccccccccccccccccccccccc",
    "ccccbbbbbbbbbbbbbbbbbbbbbbbbbbbbbccc",
    "cccbbaaaaaaaaaaaaaaaaaaaaaaaaaaabbcc",
    "ccbaaggggggggggggggggggtggggggggaabc",
    "cbaaggggggggggggoggoggggggggggggtabc",
    "cbagggtggggggggggggggggggg,,,,gggabc",
    "cbaggggggggggggogggoggg,,,,,,,gggabc",
    "cbagggggggggggggggggg,,,gg,,,,ggtabc",
    "cbatgggggggggggggogg,,gggggggggggabc",
    "cbagggggggggggggggg,,ggggggggggggabc",
    "cbagggggggggggggg,,,gggggggggggggabc",
    "cbagggtgg,,gggg,,,gggggggggggggggabc",
    "cbaggggg,,,,,,,,,,,gggggggggggggtabc",
    "cbagggggg,,,,,,,,,,,,,ggggggggggggbc",
    "cbaggtggggggggg,,,,,,,ggggggggggggbc",
    "cb~~~~~~~~~~~~~~~==~~~~~~~~~~~~~~~bc",
    "cb~~~r~~~~~~~~~~~==~~~~~~~~r~~~~~~bc",
    "cbaggggggggggg,,,,,,,,ggg~~~~~~~~~bc",
    "cbaggggggg,............ggg~~~~~~r~bc",
    "cbatgggggg..............gr~~~~~~~~bc",
    "cbagggggg...............ggg~~~~~~~bc",
    "cbaggggggg..............gggg~~r~~gbc",
    "cbaggggggg..............ggggggggggbc",
    "cbagtggggg.......w......,ggggggggabc",
    "cbagggggg...............,,ggggggtabc",
    "cbaggggggg..............,gggggggaabc",
    "cbaagggggg..............ggggggggabbc",
    "cbbaggtgggg............ggggggtggabcc",
    "ccbaggggggg,,.......,,,gggggggggabcc",
    "ccbagtggtggggg,....,,gggggggggaaabcc",
    "ccbagggggggggg,....,gggggtggggabbbcc",
    "ccbaggtgggtggg,....,ggggggggaaabcccc",
    "ccbaagggggggggg,...,gggtggaaabbbcccc",
    "ccbbaatggtggggg,..,,ggggaaabbbcccccc",
    "cccbbaagggaggggg,.,,ggaaabbbcccccccc",
    "ccccbbaaaaaaggg,,,,ggaabbbcccccccccc",
    "cccccbbbbbbaaag,,,,gaabbcccccccccccc",
    "ccccccccccbbbaaa,,,aabbccccccccccccc",
    "ccccccccccccbbbaaaaabbcccccccccccccc",
    "cccccccccccccccccccccccccccccccccccc"
]

BANKS = {a = 9, b = 22, c = 36}
BED = -10
STREAM = -3

WELL = [296, 376]

homes = {}

function makeVillage()
    math["randomseed"](41)
    places["village"] = newPlace("village", 36, #VILLAGE)
    fillTiles("roofs", 0, 0, 36, #VILLAGE, texture("bed"))
    fillTiles("roofsOff", 0, 0, 36, #VILLAGE, BED - 16)
    for y = 0, #VILLAGE - 1
        for x = 0, 35
            layGround(x, y, string["sub"](VILLAGE[y + 1], x + 1, x + 1))
        end
    end
    layBridge()
    buildChurch()
    buildHomes()
    place["fog"] = [[30, 46, 68], [104, 104, 122]]
    place["sight"] = 480
    place["least"] = 0.62
    place["sound"] = "night"
    place["start"] = [17.5 * 16, 35.4 * 16, -1.5708]
end

function layGround(x, y, letter)
    local name = "grass"
    local off = 0
    if BANKS[letter] != not
        name = "bank"
        off = BANKS[letter]
    elseif letter == "~" or letter == "r" or letter == "="
        name = "water"
        off = STREAM
        setTile("deep", x, y, 1)
    elseif letter == ","
        name = "mud" + random(1, 2)
    elseif letter == "."
        name = "cobbles" + random(1, 2)
    elseif letter == "w"
        name = "cobbles1"
    end
    setTile("floors", x, y, texture(name))
    setTile("floorsOff", x, y, off)
    local middleX = x * 16 + 8
    local middleY = y * 16 + 8
    if letter == "t"
        addTree(middleX + random(-3, 3), middleY + random(-3, 3), random(24, 30), random(30, 38), texture("tree" + random(1, 3)), 1.6)
    elseif letter == "r"
        addTree(middleX, middleY, 14, 12, texture("reeds"), 0)
        place["trees"][#place["trees"]][3] = STREAM - 1
        addTree(middleX + 9, middleY + 5, 12, 9, texture("reeds"), 0)
        place["trees"][#place["trees"]][3] = STREAM - 1
    elseif letter == "o"
        local lean = random(-12, 12) / 10
        addSolidQuad(quad([middleX - 4 + lean, middleY, 10.5], [middleX + 4 + lean, middleY, 10.5], [middleX + 4, middleY, -0.5], [middleX - 4, middleY, -0.5], texture("grave")))
        addDoor("grave", middleX, middleY + 5, "read the stone")
    end
end

@@ Four faces to walk on, and rails; those over the water stop.
RAILS = [272.3, 303.7]

function layBridge()
    local ways = [[284, 0], [271, 3.4], [256, 4.8], [241, 3.4], [228, 0]]
    for i = 1, 4
        local south = ways[i]
        local north = ways[i + 1]
        local face = quad([272, north[1], north[2]], [304, north[1], north[2]], [304, south[1], south[2]], [272, south[1], south[2]], texture("planks"))
        push(place["bridges"], addQuad(face))
        for edge in RAILS
            local rail = quad([edge, south[1], south[2] + 5.4], [edge, north[1], north[2] + 5.4], [edge, north[1], north[2]], [edge, south[1], south[2]], texture("rail"))
            addQuad(rail)
        end
    end
    for edge in RAILS
        addSolid(edge, 238, edge, 274, 0.5)
    end
end

function buildChurch()
    addHouse(7, 4, 6, 6, 27, "church", "y")
    fillTiles("floors", 9, 10, 2, 2, texture("tower"))
    fillTiles("floorsOff", 9, 10, 2, 2, 66)
    local apex = [160, 176, 100]
    local corners = [[142, 158, 65], [178, 158, 65], [178, 194, 65], [142, 194, 65]]
    for i = 1, 4
        local one = corners[i]
        local other = corners[i % 4 + 1]
        addQuad(quad(apex, apex, one, other, texture("slate")))
    end
    addQuad(onWall("south", 9, 11, 16, 0, 13, 17, texture("gate")))
    for side, tileX, tileY in [["south", 9, 11], ["west", 9, 10], ["east", 10, 11], ["north", 10, 10]]
        addQuad(onWall(side, tileX, tileY, 16, 48, 9, 12, texture("hatch")))
    end
    for i = 0, 2
        addQuad(onWall("east", 12, 5 + i * 2, 8, 8, 7, 13, texture("glass")))
        addQuad(onWall("west", 7, 5 + i * 2, 8, 8, 7, 13, texture("glass")))
    end
    addDoor("church", 160, 195, "go in")
end

@@ A house that waits for its lamp: its window is the pane that will be lit.
function addHome(name, ink, wall, x, y, wide, deep, tall, ridge, side, doorX, doorY, swap, bare)
    addHouse(x, y, wide, deep, tall, wall, ridge)
    local doorAlong = 4.5
    local paneAlong = 12
    if swap
        doorAlong = 11.5
        paneAlong = 4
    end
    addQuad(onWall(side, doorX, doorY, doorAlong, 0, 7, 11.5, texture("door-" + ink)))
    local pane = addQuad(onWall(side, doorX, doorY, paneAlong, 4.4, 5, 6.4, texture("pane-dark")))
    local more = homePanes(x, y, wide, deep, side, doorX, doorY, bare)
    push(more, pane)
    addQuad(onWall(side, doorX, doorY, doorAlong, 12.2, 6.4, 4, texture("sign-" + name)))
    local stepX, stepY = beforeWall(side, doorX, doorY, doorAlong, 5)
    local door = addDoor("home", stepX, stepY, "call at the door")
    door["home"] = name
    local lightX, lightY = beforeWall(side, doorX, doorY, paneAlong, 5)
    homes[name] = {name = name, panes = more, lightX = lightX, lightY = lightY, doorX = stepX, doorY = stepY}
end

@@ The other windows of the same side, but for a tile that is bare, and one round a corner.
function homePanes(x, y, wide, deep, side, doorX, doorY, bare)
    local panes = []
    if side == "east" or side == "west"
        for tileY = y, y + deep - 1
            if tileY != doorY and tileY != bare
                push(panes, addQuad(onWall(side, doorX, tileY, 8, 4.4, 5, 6.4, texture("pane-dark"))))
            end
        end
        push(panes, addQuad(onWall("south", x + 1, y + deep - 1, 8, 4.4, 5, 6.4, texture("pane-dark"))))
    else
        for tileX = x, x + wide - 1
            if tileX != doorX
                push(panes, addQuad(onWall(side, tileX, doorY, 8, 4.4, 5, 6.4, texture("pane-dark"))))
            end
        end
    end
    return panes
end

function buildHomes()
    addHome("oar", "green", "lime", 11, 30, 3, 3, 17, "y", "east", 13, 31, false)
    addHome("hive", "ochre", "lime", 6, 24, 3, 3, 17, "y", "east", 8, 25, false)
    addHome("shuttle", "plum", "timber", 6, 18, 3, 4, 18, "y", "east", 8, 20, true)
    addHome("bell", "red", "church", 26, 3, 4, 2, 18, "x", "south", 27, 4, false)
    addHome("wheel", "blue", "timber", 22, 10, 4, 5, 21, "y", "west", 22, 13, false, 11)
    addQuad(onWall("west", 22, 11, 8, -0.2, 9, 12, texture("hatch")))
    addDoor("vaults", 22 * 16 - 5, 11 * 16 + 8, "go down")
    addQuad(upright(22.6 * 16, 15 * 16 + 5, 25.4 * 16, 15 * 16 + 5, -8, 26, texture("wheel")))
    addHouse(25, 23, 4, 3, 18, "timber", "x")
    addQuad(onWall("west", 25, 24, 8, 0, 7, 11.5, texture("door-plum")))
    addDoor("inn", 25 * 16 - 5, 24 * 16 + 8, "try the inn")
    for tileX = 25, 28, 3
        addQuad(onWall("north", tileX, 23, 8, 4.4, 5, 6.4, texture("pane-dark")))
        addQuad(onWall("south", tileX, 25, 8, 4.4, 5, 6.4, texture("pane-dark")))
    end
    addQuad(onWall("west", 25, 23, 8, 4.4, 5, 6.4, texture("pane-dark")))
    addQuad(onWall("west", 25, 25, 8, 4.4, 5, 6.4, texture("pane-dark")))
    addWell(WELL[1], WELL[2])
    addBench(296, 396)
    addBench(262, 372)
    addBoat(322, 500, 0.5)
    addBoat(226, 292, 2.9)
    for x = 3, 14
        addFence(x * 16, 14.8 * 16, x * 16 + 16, 14.8 * 16)
    end
    for x = 4, 12
        addFence(x * 16, 17.2 * 16, x * 16 + 16, 17.2 * 16)
    end
    for y = 29, 33
        addFence(10.6 * 16 - (y - 29) * 3, y * 16, 10.6 * 16 - (y - 28) * 3, y * 16 + 16)
    end
end

function addFence(ax, ay, bx, by)
    addSolidQuad(upright(ax, ay, bx, by, 0, 6.4, texture("rail")))
end

function addBench(x, y)
    addQuad(flat(x - 7, y - 2, x + 7, y + 2, 4, texture("planks")))
    addQuad(upright(x - 6, y + 1.4, x + 6, y + 1.4, 0, 4, texture("planks")))
    addSolid(x - 6, y, x + 6, y, 1.6)
end

@@ A ferry's rowing boat on the mud, a little on its side.
function addBoat(x, y, turn)
    local c = math["cos"](turn)
    local s = math["sin"](turn)
    local rim = []
    local keel = []
    for at in [[-12, -3.4, 5.4], [-12, 3.4, 4.4], [3, 4.6, 4], [13, 0, 6.8], [3, -4.6, 5.4]]
        push(rim, [x + at[1] * c - at[2] * s, y + at[1] * s + at[2] * c, at[3]])
        push(keel, [x + at[1] * 0.84 * c - at[2] * 0.5 * s, y + at[1] * 0.84 * s + at[2] * 0.5 * c, 0])
    end
    for i = 1, 5
        local next = i % 5 + 1
        addQuad(quad(rim[i], rim[next], keel[next], keel[i], texture("planks")))
    end
    addQuad(quad([rim[1][1], rim[1][2], 2.4], [rim[2][1], rim[2][2], 2], [rim[3][1], rim[3][2], 2], [rim[5][1], rim[5][2], 2.4], texture("planks")))
    addSolid(x - 9 * c, y - 9 * s, x + 10 * c, y + 10 * s, 4)
end

@@ A ring of eight faces, a beam on two posts, and the water in it.
function addWell(x, y)
    for i = 0, 7
        local one = i * 0.785398
        local other = one + 0.785398
        addQuad(upright(x + math["cos"](other) * 6, y + math["sin"](other) * 6, x + math["cos"](one) * 6, y + math["sin"](one) * 6, 0, 5.4, texture("church")))
    end
    addQuad(flat(x - 5, y - 5, x + 5, y + 5, 3, texture("black-water")))
    for side = -1, 1, 2
        addQuad(upright(x + side * 5.6 - 0.6, y, x + side * 5.6 + 0.6, y, 0, 14, texture("planks")))
        addQuad(quad([x, y - 6.4, 17.5], [x, y + 6.4, 17.5], [x + side * 7.4, y + 6.4, 12.6], [x + side * 7.4, y - 6.4, 12.6], texture("slate")))
    end
    addSolid(x, y, x, y, 7)
    addDoor("well", x, y + 12, "look into the well")
end

@@ Whose lamp is home has light in all its windows, and before them.
function lightHome(name, ink)
    local home = homes[name]
    for i, pane in ipairs(home["panes"])
        pane["texture"] = texture("pane-" + ink)
    end
    home["light"] = {x = home["lightX"], y = home["lightY"], ink = ink}
end

function darkenHomes()
    for name, home in pairs(homes)
        for i, pane in ipairs(home["panes"])
            pane["texture"] = texture("pane-dark")
        end
        home["light"] = not
    end
end
