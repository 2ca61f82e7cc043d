@@ Plays the game by itself, from the title to the end, and prints what it pressed, in the form of recorded.txt.
@@ `games/low-water/record` runs it as the game's start script.

fastForward = true
HELD_KEYS = ["UP", "DOWN", "LEFT", "RIGHT", "A", "D", "RETURN", "SPACE", "L", "P"]
held = {}
wanted = {}
mouseAt = [-1, -1]
button = false
wantedButton = false
settled = 0
job = 1
way = []
arrived = false
dueShot = ""

function note(when, text)
    print(when + " " + text)
end

@@ A key that shall be down in a frame has to arrive with the update of the frame before.
function pressWanted()
    pressedNow = []
    for name in HELD_KEYS
        local down = wanted[name] == true
        if down != (held[name] == true)
            held[name] = down
            if down
                note(frame - 1, "keydown " + name)
                push(pressedNow, string["lower"](name))
            else
                note(frame - 1, "keyup " + name)
            end
        end
        Vesper["setVar"]("VESPER_KEY_" + name, down)
    end
    if wantedButton != button
        button = wantedButton
        if button
            note(frame - 1, "button left down")
            push(pressedNow, "mouse_left")
        else
            note(frame - 1, "button left up")
        end
    end
    VESPER_MOUSE_1 = button
    VESPER_MOUSE_X = mouseAt[1]
    VESPER_MOUSE_Y = mouseAt[2]
end

function tileOf(value)
    return math["floor"](value / 16)
end

@@ Whether one can stand in the middle of a tile and come to it from another, whose height is `from`.
function opens(x, y, fromX, fromY, from)
    local ground = groundAt(x * 16 + 8, y * 16 + 8)
    if ground == not or math["abs"](ground - from) > 4
        return false
    end
    for solid in place["solids"]
        for share = 0, 3
            if nearSegment(x * 16 + 8 + (fromX - x) * share * 4, y * 16 + 8 + (fromY - y) * share * 4, solid) < 4.2
                return false
            end
        end
    end
    return true
end

@@ Tiles from the player's to the goal's, by breadth.
function findWay(goalX, goalY)
    local w = place["wide"]
    local start = tileOf(playerX) + tileOf(playerY) * w
    local goal = tileOf(goalX) + tileOf(goalY) * w
    local from = {}
    from[goal] = goal
    local queue = [goal]
    local head = 1
    while head <= #queue and from[start] == not
        local cell = queue[head]
        head += 1
        local height = groundAt(cell % w * 16 + 8, cell \ w * 16 + 8) or 0
        for step in [1, -1, w, -w]
            local beside = cell + step
            if from[beside] == not and (beside == start or opens(beside % w, beside \ w, cell % w, cell \ w, height))
                from[beside] = cell
                push(queue, beside)
            end
        end
    end
    local list = []
    local cell = start
    while from[cell] != not and cell != goal
        cell = from[cell]
        push(list, [cell % w * 16 + 8, cell \ w * 16 + 8])
    end
    if #list > 0
        table["remove"](list, #list)
    end
    push(list, [goalX, goalY])
    return list
end

function angleTo(x, y)
    local across = x - playerX
    local down = y - playerY
    @@ By halving: the language has no arc tangent.
    local low = playerTurn - 3.14159265
    local best = 0.0
    local most = -2.0
    local long = math["max"](0.001, math["sqrt"](across * across + down * down))
    for i = 0, 127
        local angle = low + i * 0.0490874
        local along = (math["cos"](angle) * across + math["sin"](angle) * down) / long
        if along > most
            most = along
            best = angle
        end
    end
    return best - playerTurn
end

@@ Turns to the point; true when it looks at it.
function turnTo(x, y)
    local off = angleTo(x, y)
    local coming = turnSpeed * 2.4
    if off - coming > 0.05
        wanted["RIGHT"] = true
    elseif off - coming < -0.05
        wanted["LEFT"] = true
    end
    return math["abs"](off) < 0.16
end

@@ True once it stands within `near` of the point.
function goTo(x, y, near)
    if squaredTo(x, y) < near * near
        way = []
        return true
    end
    if #way == 0
        way = findWay(x, y)
    end
    local next = way[1]
    if #way > 1 and squaredTo(next[1], next[2]) < 36
        table["remove"](way, 1)
        next = way[1]
    end
    local off = math["abs"](angleTo(next[1], next[2]))
    turnTo(next[1], next[2])
    if off < 0.5
        wanted["UP"] = true
    end
    return false
end

function lampNamed(name)
    for lamp in lampStates
        if lamp["name"] == name
            return lamp
        end
    end
    return not
end

function tap(name)
    if settled > 2 and not anyHeld()
        wanted[name] = true
        settled = 0
        return true
    end
    return false
end

function anyHeld()
    for name in HELD_KEYS
        if held[name]
            return true
        end
    end
    return button
end

function shoot(name)
    dueShot = name
    return true
end

@@ Jobs give true when they are done.

function waitFor(count)
    return settled >= count
end

function ringFor(name, every)
    if settled >= every
        tap("SPACE")
    end
    return lampNamed(name)["state"] == "follows"
end

function enterAt(kind, x, y, inside)
    if place["name"] == inside and passage == not
        return true
    end
    if passage == not and goTo(x, y, 7)
        if doorNear != not and doorNear["kind"] == kind
            tap("RETURN")
        end
    end
    return false
end

function callHome(sign)
    local home = homes[sign]
    if home["light"] != not
        return true
    end
    if goTo(home["doorX"], home["doorY"], 5)
        tap("RETURN")
    end
    return false
end

function faceAndShoot(x, y, name)
    turnTo(x, y)
    if math["abs"](turnSpeed) < 0.004 and settled > 20
        return shoot(name)
    end
    return false
end

function chase(name)
    local lamp = lampNamed(name)
    if lamp["state"] == "follows"
        return true
    end
    if lamp["far"] < 56
        way = []
        if settled > 30
            tap("SPACE")
        end
    else
        goTo(lamp["x"], lamp["y"], 40)
    end
    return false
end

@@ Rings and stands until the shy one has come.
function coax(name)
    local lamp = lampNamed(name)
    if lamp["state"] == "follows"
        return true
    end
    if settled == 10
        tap("SPACE")
        settled = 11
    elseif settled > 300
        settled = 0
    end
    return false
end

jobs = [
    ["waitFor", 30], ["shoot", "01-title.png"], ["byMouse", 2], ["waitFor", 4], ["shoot", "02-help.png"], ["press", "RETURN"],
    ["waitFor", 20], ["byMouse", 1], ["waitFor", 140], ["shoot", "03-ebb.png"], ["press", "RETURN"],
    ["waitFor", 40], ["shoot", "04-road.png"], ["ringFor", "gold", 30], ["waitFor", 170], ["goTo", 280, 500, 12], ["faceAndShoot", 240, 504, "05-first-lamp.png"], ["callHome", "oar"],
    ["waitFor", 6], ["goTo", 248, 520, 10], ["faceAndShoot", 218, 500, "06-first-window.png"],
    ["goTo", 136, 500, 14], ["chase", "rose"], ["callWrong", "hive"], ["goTo", 176, 424, 10], ["faceAndShoot", 120, 404, "07-wrong-door.png"],
    ["goTo", 392, 320, 10], ["faceAndShoot", 440, 290, "08-pond.png"], ["coax", "green"], ["callHome", "hive"], ["goTo", 216, 424, 10], ["faceAndShoot", 130, 330, "09-square.png"],
    ["press", "P"], ["waitFor", 4], ["shoot", "10-pause.png"], ["byMouse", 4], ["waitFor", 4], ["press", "RIGHT"], ["press", "LEFT"], ["press", "LEFT"], ["waitFor", 2], ["shoot", "10-settings.png"], ["press", "P"], ["press", "P"],
    ["goTo", 288, 256, 10], ["faceAndShoot", 160, 170, "11-bridge.png"], ["callHome", "bell"], ["goTo", 400, 120, 12], ["faceAndShoot", 436, 70, "12-founder.png"],
    ["goTo", 318, 140, 10], ["faceAndShoot", 290, 70, "13-graves.png"],
    ["enterAt", "church", 160, 198, "church"], ["waitFor", 6], ["faceAndShoot", 88, 0, "14-nave.png"], ["goTo", 110, 66, 8], ["press", "L"], ["waitFor", 20], ["ringFor", "blue", 40], ["waitFor", 170], ["goTo", 70, 176, 8], ["faceAndShoot", 110, 30, "15-altar.png"], ["press", "L"],
    ["enterAt", "village", 88, 216, "village"], ["callHome", "shuttle"],
    ["enterAt", "vaults", 344, 184, "vaults"], ["waitFor", 6], ["toSleeper", 170], ["waitFor", 8], ["shoot", "16-vaults.png"], ["toSleeper", 22], ["faceSleeper", "17-sleeper.png"], ["ringFor", "violet", 24], ["enterAt", "village", 40, 40, "village"], ["callHome", "wheel"],
    ["goTo", 310, 236, 8], ["faceAndShoot", 390, 190, "18-mill.png"],
    ["goTo", 288, 340, 10], ["faceAndShoot", 190, 400, "19-all-lit.png"],
    ["enterAt", "church", 160, 198, "church"], ["waitFor", 6], ["pullTheRope"], ["waitFor", 160], ["shoot", "20-flood.png"], ["waitFor", 150], ["shoot", "21-rising.png"], ["waitFor", 230], ["shoot", "22-high-water.png"], ["press", "RETURN"],
    ["waitFor", 20], ["shoot", "22-title.png"], ["press", "RETURN"], ["waitFor", 20], ["shoot", "23-kept.png"], ["press", "P"], ["byMouse", 5], ["waitFor", 10], ["byMouse", 5], ["waitFor", 5]
]

function press(name)
    return tap(name)
end

function byMouse(which)
    local aimX = itemsX + 60
    local aimY = itemsY + (which - 1) * ITEM_STEP + 18
    if mouseAt[1] != aimX or mouseAt[2] != aimY
        mouseAt = [aimX, aimY]
        note(frame - 1, "mouse " + aimX + " " + aimY)
        settled = 0
    elseif settled > 2 and not button
        wantedButton = true
        return true
    end
    return false
end

function callWrong(sign)
    local home = homes[sign]
    if goTo(home["doorX"], home["doorY"], 5)
        if tap("RETURN")
            return true
        end
    end
    return false
end

function toSleeper(near)
    return goTo(vaultEnd[1], vaultEnd[2], near)
end

function faceSleeper(name)
    return faceAndShoot(vaultEnd[1], vaultEnd[2], name)
end

function pullTheRope()
    if mode == VESPER_CREDIT
        return true
    end
    if goTo(40, 200, 8)
        turnTo(40, 206)
        tap("RETURN")
    end
    return false
end

pressedNow = []
realUpdate = Metal["updateInput"]

function Metal["presses"]()
    return pressedNow
end
overdue = 0

function Metal["updateInput"]()
    realUpdate()
    wanted = {}
    wantedButton = false
    settled += 1
    overdue += 1
    if job <= #jobs
        local now = jobs[job]
        local work = Vesper["getVar"](now[1])
        if work(now[2], now[3], now[4], now[5])
            job += 1
            settled = 0
            overdue = 0
            way = []
        elseif overdue > 2400
            print("# stuck at " + now[1] + " " + (now[2] or "") + " in " + place["name"] + " at " + playerX + " " + playerY)
            playing = false
        end
    end
    pressWanted()
    if dueShot != ""
        note(frame, "shot " + dueShot)
        dueShot = ""
    end
end

runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
