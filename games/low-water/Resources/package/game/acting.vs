@@ What Enter does where the player stands, and the bell and the lantern.

REACH = 17
doorNear = not
passage = not
PASSAGE_FRAMES = 12

@@ The nearest thing to act on that is not behind.
function findDoor()
    doorNear = not
    local best = REACH * REACH
    for door in place["doors"]
        local far = squaredTo(door["x"], door["y"])
        local ahead = (door["x"] - playerX) * math["cos"](playerTurn) + (door["y"] - playerY) * math["sin"](playerTurn)
        if far < best and ahead > -6
            best = far
            doorNear = door
        end
    end
end

function actOn(door)
    local kind = door["kind"]
    if kind == "home"
        callAtDoor(door["home"])
    elseif kind == "church" or kind == "vaults"
        playSound("door")
        pass(kind, not)
    elseif kind == "village"
        playSound("door")
        leaveInside()
    elseif kind == "register"
        readRegister()
    elseif kind == "rope"
        pullRope()
    elseif kind == "grave"
        readGrave(door)
    elseif kind == "inn"
        tellOnce("The Heron, it was called. Through the pane: chairs upside down on tables, and on the tables a heron’s feather, dry.")
    elseif kind == "well"
        tellOnce("A bucket on a good new rope. Someone still means to draw from it. Far down, the sky: you have to look down in this valley to see it.")
    end
end

function leaveInside()
    if place["name"] == "church"
        pass("village", [160, 201, 1.5708])
    else
        pass("village", [22 * 16 - 9, 11 * 16 + 8, 3.1416])
    end
end

@@ Dark, then there.
function pass(name, spot)
    passage = {name = name, spot = spot, age = 0}
end

function stepPassage()
    passage["age"] += 1
    local age = passage["age"]
    if age == PASSAGE_FRAMES
        arriveAt(passage["name"], passage["spot"])
    end
    if age >= PASSAGE_FRAMES * 2
        viewFade = 1.0
        passage = not
    else
        viewFade = math["abs"](age - PASSAGE_FRAMES) / PASSAGE_FRAMES
    end
end

function arriveAt(name, spot)
    showPlace(name)
    local at = spot or place["start"]
    standAt(at[1], at[2], at[3])
    settleEye()
    eyeHeight = footHeight + EYE
    Lua["setVar"]("arriving", [name, playerX, playerY])
    Lua["runScript"]("arrive(arriving[1], arriving[2], arriving[3])", "lamps")
    doorNear = not
    novelPlayMusic(place["sound"])
    if night["told"][name] == not
        night["told"][name] = true
        if name == "vaults"
            tell("Brick, and the drip of it. Half of the cellars never emptied. The miller’s corn went out this way by boat, they say.")
        elseif name == "church"
            tell("The water has stayed in the nave, and the windows stand in it on their heads. On the lectern lies a book.")
        end
    end
end

function readRegister()
    playSound("page")
    tell("The parish book. The ink has run, but the last page is clear.")
    for i, sign in ipairs(SIGNS)
        tell(bookPage(sign))
    end
end

function readGrave(door)
    local number = 0
    for i, other in ipairs(place["doors"])
        if other["kind"] == "grave" and other["y"] * 1000 + other["x"] <= door["y"] * 1000 + door["x"]
            number += 1
        end
    end
    tellOnce(night["stones"][(number - 1) % #night["stones"] + 1])
end

function pullRope()
    if litCount() < 5
        playSound("creak")
        tellOnce("You pull. High in the tower something heavy considers it. " + tally(litCount()) + " It wants all five.")
        return not
    end
    beginEbbEnd()
end

function stepActs()
    findDoor()
    if pressed["bell"]
        rangNow = true
        playSound("handbell")
    end
    if pressed["lantern"]
        lanternLit = not lanternLit
        playSound("tick")
    end
    if pressed["chart"]
        chartShown = not chartShown
    end
    if pressed["act"] and doorNear != not
        actOn(doorNear)
    end
end
