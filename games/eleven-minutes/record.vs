@@ Reads the game by itself, from the title to both endings, and prints what it pressed, in the form of
@@ recorded.txt. `games/eleven-minutes/record` runs it as the game's start script.

fastForward = true

@@ The choices of two readings: by the marks they lead to.
readings = [{shown = true, asked = true, together = true, crossing = true}, {read = true, hired = true}]
reading = 1

@@ Pages that are worth a picture, by how they begin.
pictures = [
    ["The post boat", "02-dusk.png"], ["Three nights now", "03-maud.png"], ["Dim me", "04-runes.png"],
    ["Maud came up", "05-choice.png"], ["We close at six", "06-library.png"], ["It was the Ah", "07-drawer.png"],
    ["You’re standing", "11-grove.png"], ["She was twelve", "12-leaves.png"], ["Come into the light", "13-inactive.png"],
    ["They were all", "14-night.png"], ["A thin sound", "15-crossing.png"], ["I said that", "16-morning.png"],
    ["All through", "19-steady.png"]
]
taken = {}

held = {UP = false, DOWN = false, RETURN = false, BACK = false, LEFT = false, RIGHT = false}
wanted = {}
mouseAt = [-1, -1]
button = false
wantedButton = false
settled = 0
dueShot = ""

function note(when, text)
    print(when + " " + text)
end

function press(name)
    wanted[name] = true
end

@@ A key that shall be down in a frame has to arrive with the update of the frame before.
function pressWanted()
    for i, name in ipairs(["UP", "DOWN", "LEFT", "RIGHT", "RETURN", "BACK"])
        local down = wanted[name] == true
        if down != held[name]
            held[name] = down
            if down
                note(frame - 1, "keydown " + name)
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
        else
            note(frame - 1, "button left up")
        end
    end
    VESPER_MOUSE_1 = button
    VESPER_MOUSE_X = mouseAt[1]
    VESPER_MOUSE_Y = mouseAt[2]
end

function anyHeld()
    return held["UP"] or held["DOWN"] or held["LEFT"] or held["RIGHT"] or held["RETURN"] or held["BACK"] or button
end

@@ True once for each name.
function once(name)
    if taken[name]
        return false
    end
    taken[name] = true
    return true
end

function shootOnce(name)
    if once(name)
        dueShot = name
        settled = 0
        return true
    end
    return false
end

@@ Goes to an item of a menu and picks it.
function pick(which)
    if focus == which
        press("RETURN")
    else
        press("DOWN")
    end
end

@@ The same with the mouse: there first, then the button.
function pickByMouse(which)
    local aimX = itemsX + 60
    local aimY = itemsY + (which - 1) * ITEM_STEP + 20
    if mouseAt[1] != aimX or mouseAt[2] != aimY
        mouseAt = [aimX, aimY]
        note(frame - 1, "mouse " + aimX + " " + aimY)
    else
        wantedButton = true
    end
end

function pageBegins(start)
    local page = pages[pagenum]
    local text = page["say"] or string["sub"](page["runes"], 7)
    return string["sub"](text, 1, #start) == start
end

function readOn()
    if not cameraRests() or boxIsSliding() or settled < 2
        if boxIsSliding() and settled > 14 or not boxIsSliding() and not cameraRests()
            press("RETURN")
        end
        return not
    end
    for i, picture in ipairs(pictures)
        if pageBegins(picture[1]) and settled > 3 and shootOnce(picture[2])
            return not
        end
        if pageBegins(picture[1]) and not taken[picture[2]]
            return not
        end
    end
    if reading == 1 and pages[pagenum]["scene"] == "library" and not taken["kept"] and pageBegins("The library")
        press("BACK")
    elseif #items > 0
        choose()
    elseif pages[pagenum]["choose"] == not
        press("RETURN")
    end
end

function choose()
    for i, item in ipairs(items)
        if readings[reading][item["go"]]
            if item["go"] == "read"
                pickByMouse(i)
            else
                pick(i)
            end
            return not
        end
    end
end

function inTitle()
    if settled < 24
        return not
    end
    if reading > 2
        pick(5)
    elseif shootOnce("01-title.png")
        return not
    elseif not taken["options"]
        pickByMouse(3)
    elseif reading == 1
        pick(1)
    else
        pick(2)
    end
end

function inOptions()
    if settled < 2
        return not
    end
    if focus < 3 and TEXT_SPEEDS[settings["speed"]] == "brisk"
        press("DOWN")
    elseif TEXT_SPEEDS[settings["speed"]] == "brisk"
        press("RIGHT")
    elseif shootOnce("00-options.png")
        return not
    elseif once("options")
        press("BACK")
    end
end

function inPause()
    if settled > 2 and not shootOnce("08-pause.png")
        if taken["kept"]
            press("BACK")
        else
            pick(2)
        end
    end
end

function inSaving()
    if settled < 3
        return not
    end
    if not taken["kept"]
        if focus == 1
            taken["kept"] = true
        end
        pick(1)
    elseif settled > 8 and not shootOnce("09-kept.png")
        press("BACK")
    end
end

function inLoading()
    if settled > 3 and not shootOnce("18-slots.png")
        pick(1)
    end
end

function inEnding()
    if settled < 34
        return not
    end
    if not shootOnce("17-ending-" + endingReached + ".png")
        press("RETURN")
    end
end

function inCredits()
    if settled > 24 and not shootOnce("20-credits-" + reading + ".png")
        reading += 1
        settled = -20
        press("RETURN")
    end
end

function decide()
    if mode == VESPER_GAME_VISUAL_NOVEL
        readOn()
    elseif mode == VESPER_MENU_MAIN
        inTitle()
    elseif mode == VESPER_MENU_OPTION
        inOptions()
    elseif mode == VESPER_MENU_PAUSE
        inPause()
    elseif mode == VESPER_MENU_SAVE
        inSaving()
    elseif mode == VESPER_GAME_LOAD
        inLoading()
    elseif mode == VESPER_CREDIT
        inCredits()
    else
        inEnding()
    end
end

realUpdate = Metal["updateInput"]
lastMode = 0
lastPage = 0

function Metal["updateInput"]()
    realUpdate()
    wanted = {}
    wantedButton = false
    settled += 1
    if curtainLeft != not and curtainLeft > 0
        settled = math["min"](settled, 2)
    end
    if mode != lastMode or pagenum != lastPage
        settled = 0
    end
    lastMode = mode
    lastPage = pagenum
    if not anyHeld()
        decide()
    end
    pressWanted()
    if dueShot != ""
        note(frame, "shot " + dueShot)
        dueShot = ""
    end
end

function Metal["checkClose"]()
    return frame > 4000
end

runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
