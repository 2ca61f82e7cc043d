@@ Inside the church: pillars, painted glass, and water on the floor that holds them upside down.

CHURCH = [
    "#########",
    "#.......#",
    "#..===..#",
    "#.......#",
    "#.#~~~#.#",
    "#.~~~~~.#",
    "#.#~~~#.#",
    "#.~~~~~.#",
    "#.#~~~#.#",
    "#.~~~~~.#",
    "#.#~~~#.#",
    "#.~~~~~.#",
    "#.......#",
    "#.......#",
    "#########"
]

function makeChurch()
    places["church"] = newPlace("church", 9, #CHURCH)
    fillTiles("roofs", 0, 0, 9, #CHURCH, texture("beams"))
    fillTiles("roofsOff", 0, 0, 9, #CHURCH, 26)
    for y = 0, #CHURCH - 1
        for x = 0, 8
            local letter = string["sub"](CHURCH[y + 1], x + 1, x + 1)
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
    end
    for y = 3, 11, 2
        addQuad(onWall("east", 0, y, 8, 9, 11, 22, texture("glass")))
        addQuad(onWall("west", 8, y, 8, 9, 11, 22, texture("glass")))
        addLight(26, y * 16 + 8, 16, [86, 120, 200], 70)
        addLight(118, y * 16 + 8, 16, [86, 120, 200], 70)
    end
    for x = 2, 6, 2
        addQuad(onWall("south", x, 0, 8, 10, 11, 24, texture("glass")))
    end
    addQuad(onWall("north", 4, 14, 8, 0, 14, 18, texture("gate")))
    push(place["trees"], [104, 52, 0, 9, 12, texture("lectern")])
    addSolid(104, 52, 104, 52, 2)
    push(place["trees"], [40, 204, 0, 2, 42, texture("rope")])
    addDoor("village", 72, 218, "go out")
    addDoor("register", 104, 58, "read the parish book")
    addDoor("rope", 40, 204, "pull the rope")
    place["fog"] = [[6, 10, 18], [14, 18, 28]]
    place["sight"] = 260
    place["least"] = 0.5
    place["sound"] = "drip"
    place["indoors"] = true
    place["start"] = [72, 212, -1.5708]
end
