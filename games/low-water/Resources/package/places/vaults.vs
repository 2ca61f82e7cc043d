@@ The vaults under the mill, dug anew for each night: half of the rooms stand under water.

VAULTS_WIDE = 23
BRICK = 1
MOSSY = 2
ARCH = 3
@@ Around a wall: 0 wants floor, 1 wall. A wall between two ways is an arch; one that looks into a room may be mossy.
VAULT_RULES = [
    [not, 1, not, 1, MOSSY, 1, not, 0, not],
    [not, 0, not, 1, MOSSY, 1, not, 1, not],
    [not, 0, not, 1, ARCH, 1, not, 0, not],
    [not, 1, not, 0, ARCH, 0, not, 1, not]
]

function makeVaults(seed)
    local before = place
    math["randomseed"](seed)
    local map = Floormap["genFloor"](VAULTS_WIDE, VAULTS_WIDE, 7, 2, not, 3, 3, VAULTS_WIDE - 2, VAULTS_WIDE - 2, true)
    Floormap["applyWallRules"](map, VAULT_RULES)
    places["vaults"] = newPlace("vaults", VAULTS_WIDE, VAULTS_WIDE)
    local faces = [texture("brick"), texture("moss-brick1"), texture("arch")]
    fillTiles("roofs", 0, 0, VAULTS_WIDE, VAULTS_WIDE, texture("vault-roof"))
    fillTiles("floors", 0, 0, VAULTS_WIDE, VAULTS_WIDE, texture("flags"))
    for y = 1, VAULTS_WIDE
        for x = 1, VAULTS_WIDE
            if map[y][x] != 0
                setTile("walls", x - 1, y - 1, faces[map[y][x]])
                if map[y][x] == MOSSY and (x * 3 + y * 5) % 4 > 1
                    setTile("walls", x - 1, y - 1, texture("moss-brick2"))
                end
            end
        end
    end
    floodRooms()
    hangWorms(seed)
    addQuad(facingStart())
    addDoor("village", 2 * 16 + 8, 2 * 16 + 8, "climb out")
    vaultEnd = [(VAULTS_WIDE - 3) * 16 + 8, (VAULTS_WIDE - 3) * 16 + 8]
    place["fog"] = [[4, 6, 9], [4, 6, 9]]
    place["sight"] = 190
    place["least"] = 0.34
    place["sound"] = "drip"
    place["indoors"] = true
    place["start"] = [2 * 16 + 8, 2 * 16 + 8, 0.7854]
    place = before
end

function floodRooms()
    for i, room in ipairs(roombounds)
        if i % 2 == 0
            for x = room[1], room[3]
                for y = room[2], room[4]
                    if tileAt("walls", x - 1, y - 1) == 0
                        setTile("floors", x - 1, y - 1, texture("black-water"))
                        setTile("floorsOff", x - 1, y - 1, -1.4)
                    end
                end
            end
        end
    end
end

@@ Glow-worms hang in some corners and bends, so that there is always one to go to.
WORM_INK = [84, 190, 160]

function hangWorms(seed)
    for y = 2, VAULTS_WIDE - 3
        for x = 2, VAULTS_WIDE - 3
            local pick = (x * 73 + y * 151 + x * y * 7 + seed) % 8
            if tileAt("walls", x, y) == 0 and pick == 0
                local atX = x * 16 + 4 + pick % 3 * 4
                local atY = y * 16 + 8
                push(place["trees"], [atX, atY, 9.6, 5, 6.4, texture("worms")])
                push(place["trees"], [atX + 4, atY + 3, 11, 4, 5, texture("worms")])
                addLight(atX, atY, 11, WORM_INK, 64)
                push(place["panes"], [atX, atY, 13, WORM_INK, 9])
            end
        end
    end
end

@@ The light of the way out, over its steps.
function facingStart()
    addLight(2 * 16 + 8, 2 * 16 + 8, 15, [70, 90, 130], 44)
    return flat(2 * 16 + 3, 2 * 16 + 3, 2 * 16 + 13, 2 * 16 + 13, 15.8, texture("pane-blue"))
end
