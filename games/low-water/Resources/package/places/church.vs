@@ Inside the church: pillars, painted glass, and water on the floor that holds them upside down.

CHURCH = [
    "###########",
    "#.........#",
    "#...===...#",
    "#.........#",
    "#.#.~~~.#.#",
    "#.~~~~~~~.#",
    "#.~~~~~~~.#",
    "#.#~~~~~#.#",
    "#.~~~~~~~.#",
    "#.~~~~~~~.#",
    "#.#~~~~~#.#",
    "#.~~~~~~~.#",
    "#..~~~~~..#",
    "#.........#",
    "###########"
]
CHURCH_WIDE = 11
MOONLIGHT = [104, 138, 214]

function makeChurch()
    places["church"] = newPlace("church", CHURCH_WIDE, #CHURCH)
    fillTiles("roofs", 0, 0, CHURCH_WIDE, #CHURCH, texture("beams"))
    fillTiles("roofsOff", 0, 0, CHURCH_WIDE, #CHURCH, 34)
    for y = 0, #CHURCH - 1
        for x = 0, CHURCH_WIDE - 1
            layChurchTile(x, y, string["sub"](CHURCH[y + 1], x + 1, x + 1))
        end
    end
    for y = 5, 12, 3
        addWindow("east", 0, y, 8, 9, 12, 24)
        addWindow("west", CHURCH_WIDE - 1, y, 8, 9, 12, 24)
    end
    addWindow("south", 5, 0, 8, 8, 20, 38)
    addWindow("south", 3, 0, 8, 9, 11, 24)
    addWindow("south", 7, 0, 8, 9, 11, 24)
    addQuad(onWall("north", 5, 14, 8, 0, 14, 18, texture("gate")))
    push(place["trees"], [120, 54, 0, 9, 12, texture("lectern")])
    addSolid(120, 54, 120, 54, 2)
    push(place["trees"], [40, 206, 0, 2, 48, texture("rope")])
    addDoor("village", 88, 218, "go out")
    addDoor("register", 120, 60, "read the parish book")
    addDoor("rope", 40, 206, "pull the rope")
    place["fog"] = [[14, 22, 40], [26, 32, 50]]
    place["sight"] = 480
    place["least"] = 0.6
    place["sound"] = "drip"
    place["indoors"] = true
    place["start"] = [88, 212, -1.5708]
end

function layChurchTile(x, y, letter)
    setTile("floors", x, y, texture("flags"))
    if letter == "#"
        setTile("walls", x, y, texture("nave"))
    elseif letter == "~"
        setTile("floors", x, y, texture("black-water"))
        setTile("floorsOff", x, y, -1)
    elseif letter == "="
        setTile("floors", x, y, texture("church"))
        setTile("floorsOff", x, y, 5)
    end
end

@@ Painted glass with the moon behind it: it lights the wall and the water before it.
function addWindow(side, tileX, tileY, along, z, wide, high)
    addQuad(onWall(side, tileX, tileY, along, z, wide, high, texture("glass")))
    local x, y = beforeWall(side, tileX, tileY, along, 9)
    addLight(x, y, z + high * 0.4, MOONLIGHT, 64)
    local glowX, glowY = beforeWall(side, tileX, tileY, along, 1)
    push(place["panes"], [glowX, glowY, z + high * 0.5, MOONLIGHT, wide * 1.7])
end
