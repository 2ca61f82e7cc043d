@@ Reads the game by itself, from the title to both endings, trying every comfort on the way, and prints what it
@@ pressed, in the form of recorded.txt. `games/eleven-minutes/record` runs it as the game's start script.

fastForward = true

@@ The choices of two readings: by the marks they lead to.
readings = [{shown = true, asked = true, together = true, crossing = true}, {hidden = true, read = true, hired = true}]
reading = 1

@@ What is done on a page, known by how it begins, before reading on: keys, "shot NAME", "wait FRAMES",
@@ "wheel up", "mouse X Y", "click" and "resize WIDTH HEIGHT". On screens by their name and the reading, as "title 1".
errands = {
    ["title 1"] = ["wait 20", "shot 01-title.png", "mouse 190 400", "wait 2", "click", "shot 00-settings.png", "DOWN", "DOWN", "RIGHT", "shot 00-speed.png", "ESCAPE", "UP", "UP", "RETURN"],
    ["title 2"] = ["wait 20", "shot 21-title.png", "DOWN", "RETURN"],
    ["title 3"] = ["wait 20", "UP", "RETURN"],
    ["The post boat"] = ["shot 02-dusk.png"],
    ["I mend clocks"] = ["A", "wait 8", "shot 02-auto.png", "wait 160", "H", "wait 3", "shot 03-hidden.png", "SPACE"],
    ["Three nights now"] = ["shot 03-maud.png"],
    ["I had the gear-case"] = ["shot 03-gears.png"],
    ["But between two"] = ["ESCAPE", "UP", "UP", "UP", "RETURN", "RIGHT", "RIGHT", "UP", "UP", "RIGHT", "shot 04-german-settings.png", "ESCAPE", "ESCAPE", "wait 4", "shot 04-german-large.png"],
    ["Under the wheel"] = ["wait 4", "shot 04-german-plain.png", "ESCAPE", "UP", "UP", "UP", "RETURN", "RIGHT", "UP", "UP", "RIGHT", "ESCAPE", "ESCAPE"],
    ["Maud came up"] = ["RETURN", "wait 20", "RETURN", "shot 05-choice.png", "DOWN", "shot 05-chosen.png"],
    ["She took the leaf"] = ["PAGE_UP", "wait 3", "shot 06-history.png", "wheel up", "UP", "wheel up", "shot 06-marked.png", "RETURN"],
    ["The library at"] = ["shot 06-library.png", "F5", "wait 30", "shot 07-quick.png"],
    ["You could have"] = ["LEFT", "wait 10", "LEFT", "wait 10", "F9", "wait 20", "shot 07-asked.png", "LEFT", "RETURN"],
    ["It was the Ah"] = ["shot 07-drawer.png"],
    ["You’re standing"] = ["shot 11-grove.png", "ESCAPE", "wait 2", "shot 08-menu.png", "PAD_DOWN", "PAD_DOWN", "PAD_A", "wait 2", "shot 09-slots.png", "DOWN", "wait 1", "RETURN", "wait 12", "shot 09-saved.png", "RETURN", "wait 16", "shot 09-asked.png", "RETURN", "ESCAPE", "ESCAPE"],
    ["She was twelve"] = ["shot 12-leaves.png"],
    ["Come into the light"] = ["shot 13-inactive.png"],
    ["This is box nine"] = ["shot 13-box.png"],
    ["They were all"] = ["shot 14-night.png"],
    ["For a while"] = ["shot 15-waiting.png"],
    ["A thin sound"] = ["wait 4", "shot 15-crossing.png", "resize 1920 1080", "wait 3", "shot 15-crossing-large.png", "resize 960 544"],
    ["At four the lamp"] = ["shot 16-morning.png"],
    ["I put my bill"] = ["shot 16-kitchen.png", "resize 1920 1080", "wait 3", "shot 16-kitchen-large.png", "resize 960 544"],
    ["Oh, Edmund"] = ["shot 15-moved.png"],
    ["All through"] = ["shot 19-steady.png"]
}
done = {}
held = ""
pressing = ""
mouseAt = [-1, -1]
settled = 0
waiting = 0
pressedNow = []

function note(when, text)
    print(when + " " + text)
end

@@ A key that shall be down in a frame has to arrive with the update of the frame before. Down for one frame.
function pressWanted()
    pressedNow = []
    if held != ""
        setDown(held, false)
        held = ""
    elseif pressing != ""
        setDown(pressing, true)
        held = pressing
    end
    pressing = ""
    VESPER_MOUSE_X = mouseAt[1]
    VESPER_MOUSE_Y = mouseAt[2]
end

function setDown(name, down)
    if name == "click"
        note(novelFrame - 1, "button left " + (down and "down" or "up"))
        VESPER_MOUSE_1 = down
        name = "mouse_left"
    elseif name == "wheel up"
        if down
            note(novelFrame - 1, name)
        end
        name = "wheel_up"
    else
        note(novelFrame - 1, "key" + (down and "down " or "up ") + name)
    end
    if down
        push(pressedNow, string["lower"](name))
    end
end

@@ Does the next of the things to do on this page; false when there is none left.
function runErrand(name)
    if errands[name] == not or done[name] == "all"
        return false
    end
    local at = (done[name] or 0) + 1
    done[name] = at
    if at >= #errands[name]
        done[name] = "all"
    end
    local step = errands[name][at]
    local words = novelSplit(step, " ")
    if words[1] == "shot"
        note(novelFrame, step)
    elseif words[1] == "wait"
        waiting = toNumber(words[2])
    elseif words[1] == "resize"
        note(novelFrame, step)
        novelDirty = true
    elseif words[1] == "mouse"
        mouseAt = [toNumber(words[2]), toNumber(words[3])]
        note(novelFrame - 1, step)
    else
        pressing = step
    end
    return true
end

function pageName()
    local text = novelHere()["text"] or ""
    for start, steps in pairs(errands)
        if string["sub"](text, 1, #start) == start
            return start
        end
    end
    return ""
end

function choose()
    local item = novelItems[novelFocus]
    if item != not and readings[reading][item["option"]["go"]]
        if novelSince > NOVEL_GUARD
            pressing = "RETURN"
        end
    else
        pressing = "DOWN"
    end
end

function decide()
    if errandOpen != ""
        if not runErrand(errandOpen)
            errandOpen = ""
        end
        return not
    end
    if novelScreen == "read"
        if not novelBoxSlides() and novelCameraRests()
            errandOpen = pageName()
            if errandOpen != "" and done[errandOpen] != "all"
                return not
            end
            errandOpen = ""
            if novelHere()["choice"] == not
                pressing = "RETURN"
            elseif novelChoices
                choose()
            end
        end
    elseif novelScreen == "title"
        errandOpen = "title " + reading
    elseif novelScreen == "ending" and novelAge > 24
        if done["ending " + reading] == not
            done["ending " + reading] = true
            note(novelFrame, "shot 17-ending-" + novelEnding + ".png")
        else
            pressing = "RETURN"
        end
    elseif novelScreen == "credits" and novelAge > 20
        if done["credits " + reading] == not
            done["credits " + reading] = true
            note(novelFrame, "shot 20-credits-" + reading + ".png")
        else
            reading += 1
            pressing = "RETURN"
        end
    end
end

errandOpen = ""
lastPage = ""
realUpdate = Metal["updateInput"]

function Metal["updateInput"]()
    realUpdate()
    settled += 1
    if novelCurtainLeft > 0
        settled = 0
    end
    if held != ""
        settled = 0
    elseif waiting > 0
        waiting -= 1
    elseif settled > 2
        decide()
    end
    pressWanted()
end

function Metal["presses"]()
    return pressedNow
end

function Metal["checkClose"]()
    return novelFrame > 6000
end

runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
