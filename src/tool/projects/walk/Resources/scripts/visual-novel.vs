@@ @NAME@: find the golden gate. The arrow keys walk and turn.

FRAME_MS = 33
TILE = 16
STRIDE = 1.2
TURN = 0.06

@@ True while the frames shall not wait for the clock: `vesper test` sets it.
fastForward = fastForward or false

@@ From above: # is wall, G the gate, L a lamp, S where one starts, looking to the right.
PLAN = [
    "##########",
    "#S   #  L#",
    "#### # # #",
    "#    # # #",
    "# ####   #",
    "#     L###",
    "# #### # #",
    "# #G     #",
    "# # #### #",
    "# L      #",
    "##########"
]

@@ The engine wants columns: walls[x][y], textures by their numbers.
walls = []
floors = []
roofs = []
level = []

function readPlan()
    for x = 1, #PLAN[1]
        walls[x] = []
        floors[x] = []
        roofs[x] = []
        level[x] = []
        for y = 1, #PLAN
            local sign = PLAN[y][x]
            walls[x][y] = 0
            floors[x][y] = 2
            roofs[x][y] = 3
            level[x][y] = 0
            readSign(sign, x, y)
        end
    end
end

function readSign(sign, x, y)
    local middleX = (x - 0.5) * TILE
    local middleY = (y - 0.5) * TILE
    if sign == "#"
        walls[x][y] = 1
    elseif sign == "G"
        walls[x][y] = 4
    elseif sign == "L"
        Plush["spawnLight"](middleX, middleY, 6, 1, 0.8, 0.5, 60)
    elseif sign == "S"
        Plush["setPlayerPosition"](middleX, middleY)
    end
end

function wallAt(x, y)
    return walls[math["floor"](x / TILE) + 1][math["floor"](y / TILE) + 1]
end

@@ Room is kept ahead, so that one never stands in a wall.
function walk(distance)
    local reach = 4
    if distance < 0
        reach = -4
    end
    local x, y = Plush["dontMovePlayer"](distance + reach, true)
    local wall = wallAt(x, y)
    if wall == 0
        Plush["movePlayer"](distance, true)
    elseif wall == 4
        phase = "found"
    end
end

function step()
    if VESPER_KEY_LEFT
        Plush["setPlayerRotation"](Plush["getPlayerRotation"]() - TURN)
    end
    if VESPER_KEY_RIGHT
        Plush["setPlayerRotation"](Plush["getPlayerRotation"]() + TURN)
    end
    if VESPER_KEY_UP
        walk(STRIDE)
    end
    if VESPER_KEY_DOWN
        walk(-STRIDE)
    end
    playerX, playerY = Plush["getPlayerPosition"]()
    tileX = math["floor"](playerX / TILE) + 1
    tileY = math["floor"](playerY / TILE) + 1
end

function draw()
    Plush["raycast"](screen)
    if phase == "found"
        Plush["fillRect"](screen, 0, 0, WIDE, HIGH, 255, 220, 120, 120)
    end
    Metal["renderImage"](screen)
end

function waitForFrame()
    if fastForward
        return not
    end
    local spent = Vesper["getClock"]()
    if spent < FRAME_MS
        Vesper["sleep"](FRAME_MS - spent)
    end
    Vesper["getClock"]()
end

if not Metal or not Metal["spawnWindow"]("@NAME@", 960, 540)
    error("no window")
end
phase = "walk"
Plush["clearLights"]()
readPlan()
Plush["setMap"](walls, roofs, floors, level, level, textures, [])
Plush["setPlayerHeight"](8)
Plush["setPlayerRotation"](0)
while not Metal["checkClose"]()
    Metal["updateInput"]()
    step()
    draw()
    Metal["forceUpdate"]()
    waitForFrame()
end
Metal["killWindow"]()
