@@ Plays the game by itself and prints the keys it pressed, in the form of recorded.txt:
@@     KELMORA_VIDEO=memory vesper run games/firefly/record.vs > games/firefly/recorded.txt
@@ Wanted again whenever the glade or the fireflies change.

root = arguments[1] or Vesper["getPath"]() + "../../../games/firefly/Resources"
append = root + "/package"
fastForward = true
CELL = 4
CELLS_WIDE = 60
CELLS_HIGH = 34

keyNames = ["LEFT", "RIGHT", "UP", "DOWN", "RETURN", "ESCAPE"]
held = {LEFT = false, RIGHT = false, UP = false, DOWN = false, RETURN = false, ESCAPE = false}
wanted = {RETURN = false, ESCAPE = false}
lastFrame = 100000

@@ Behind the tree on the right, then before it; after that whatever is nearest.
places = [[166, 98], [176, 113]]

function note(when, text)
    print(when + " " + text)
end

function letGo()
    for i = 1, 4
        wanted[keyNames[i]] = false
    end
end

@@ A key that shall be down in a frame has to arrive with the update of the frame before.
function pressWanted()
    pressedByRecord = []
    for i = 1, #keyNames
        local name = keyNames[i]
        if wanted[name] != held[name]
            held[name] = wanted[name]
            if held[name]
                push(pressedByRecord, string["lower"](name))
                note(frame - 1, "keydown " + name)
            else
                note(frame - 1, "keyup " + name)
            end
        end
        Vesper["setVar"]("VESPER_KEY_" + name, held[name])
    end
end

@@ Steps to every cell from those in reach of a goal, by breadth.
function spreadFrom(goals)
    local far = []
    for i = 1, CELLS_WIDE * CELLS_HIGH
        far[i] = -1
    end
    local queue = []
    for i = 1, #goals
        local cell = goals[i][2] \ CELL * CELLS_WIDE + goals[i][1] \ CELL + 1
        far[cell] = 0
        push(queue, cell)
    end
    local head = 1
    while head <= #queue
        local cell = queue[head]
        head += 1
        local ways = [cell - 1, cell + 1, cell - CELLS_WIDE, cell + CELLS_WIDE]
        for i = 1, 4
            local beside = ways[i]
            if beside > 0 and beside <= CELLS_WIDE * CELLS_HIGH and far[beside] < 0 and isOpen(beside)
                far[beside] = far[cell] + 1
                push(queue, beside)
            end
        end
    end
    return far
end

function isOpen(beside)
    local cornerX = (beside - 1) % CELLS_WIDE * CELL
    local cornerY = (beside - 1) \ CELLS_WIDE * CELL
    return canStand(cornerX, cornerY + 1) and canStand(cornerX + CELL - 1, cornerY + 1) and canStand(cornerX, cornerY + CELL - 1) and canStand(cornerX + CELL - 1, cornerY + CELL - 1)
end

function goalsNow()
    if #places > 0
        return [places[1]]
    end
    local goals = []
    for i = 1, #flies
        push(goals, [flies[i]["x"], flies[i]["y"]])
    end
    return goals
end

function chooseWay()
    if #places > 0 and math["abs"](keeperX - places[1][1]) < 5 and math["abs"](keeperY - places[1][2]) < 5
        table["remove"](places, 1)
        dueShot = "0" + (4 - #places) + "-tree.png"
    end
    if frame % 2 == 0
        aim()
    end
end

function aim()
    local goals = goalsNow()
    for i = 1, 4
        wanted[keyNames[i]] = false
    end
    for i = 1, #goals
        local goX = goals[i][1] - keeperX
        local goY = goals[i][2] - keeperY
        if math["abs"](goX) < 8 and math["abs"](goY) < 7
            wanted["LEFT"] = goX < -3
            wanted["RIGHT"] = goX > 3
            wanted["UP"] = goY < -2
            wanted["DOWN"] = goY > 2
            return not
        end
    end
    followCells(spreadFrom(goals))
end

function followCells(far)
    local cell = math["floor"](keeperY) \ CELL * CELLS_WIDE + math["floor"](keeperX) \ CELL + 1
    local ways = [-1, 1, -CELLS_WIDE, CELLS_WIDE]
    for i = 1, 4
        local beside = far[cell + ways[i]]
        wanted[keyNames[i]] = beside >= 0 and (far[cell] < 0 or beside < far[cell])
    end
end

pressedByRecord = []
realUpdate = Metal["updateInput"]
caughtBefore = 0
dueShot = ""

function Metal["updateInput"]()
    realUpdate()
    wanted["RETURN"] = frame == 53
    wanted["ESCAPE"] = frame == 46
    if frame == 50
        dueShot = "02-pause.png"
    end
    if phase != "walk"
        letGo()
    end
    if frame == 18
        dueShot = "01-title.png"
    elseif frame >= 22 and frame < 25
        wanted["RETURN"] = true
    elseif phase == "walk" and frame > 27 and not isPaused
        chooseWay()
        if frame == 40
            dueShot = "02-walk.png"
        end
    elseif phase == "dawn" and phaseFrame == 30
        dueShot = "06-daybreak.png"
    elseif phase == "end" and phaseFrame == 22
        dueShot = "07-end.png"
        lastFrame = frame + 8
    end
    if caught != caughtBefore and caught == 5
        dueShot = "05-light.png"
    end
    caughtBefore = caught
    pressWanted()
    if dueShot != ""
        note(frame, "shot " + dueShot)
        dueShot = ""
    end
end

function Metal["presses"]()
    return pressedByRecord
end

function Metal["checkClose"]()
    if frame > 600 or frame > lastFrame
        note(frame, "close")
        return true
    end
    return false
end

runFile(append + "/graphics.vs")
runFile(root + "/scripts/visual-novel.vs")
