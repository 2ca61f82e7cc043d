@@ The lamps as the player meets them. Their minds are written in Lua; what they do is told and shown here.

Lua["runFile"](append + "/minds/lamps.lua")
lampsSeen = []
rangNow = false

HINTS = {
    gold = "A small light is going up and down beside the road, as if it had been told to wait. You have your grandmother’s handbell. (Space rings it.)",
    rose = "Something rose-coloured sits in a dead apple tree. It looks at the bell, and it looks ready to run.",
    green = "A green light over the pond, among the herons. It comes no nearer to anything that moves.",
    violet = "A lamp lies at the end of the vaults, nearly out. It is asleep. One stroke of the bell will hardly do.",
    blue = "A blue light by the altar. It has gone up under the beams, away from the lantern in your hand. (L shades it.)"
}
@@ What one hears of those who are still out, when another has come home.
RUMOURS = {
    rose = "Behind the houses to the west, among the dead apple trees, something rose-coloured is moving.",
    green = "Over the pond, east of the square, a green light keeps company with the herons.",
    blue = "In the windows of the church there is a light that is not the moon.",
    violet = "Nothing was ever thrown away at the mill, they say. What burnt low was put down in the vaults."
}
DEEDS = {
    hops = "Off it goes, to the next tree. It is a game, then.",
    startled = "It is gone over the water. Not so fast: ring, and then stand as still as a heron.",
    stirs = "It turns over, like a child in the morning. Again.",
    shrinks = "It hears you well enough. But it will not come down to a light as bright as that."
}

function wakeLamps(states)
    local places = {
        gold = {place = "village", x = 280, y = 516, temper = "bold"},
        rose = {place = "village", x = 100, y = 500, temper = "playful", perches = [[100, 484], [72, 520], [132, 452], [168, 472]]},
        green = {place = "village", x = 440, y = 292, temper = "shy", perches = [[440, 292], [476, 276], [470, 322]]},
        violet = {place = "vaults", x = vaultEnd[1], y = vaultEnd[2], temper = "asleep"},
        blue = {place = "church", x = 88, y = 42, temper = "humble"}
    }
    local list = []
    for i, name in ipairs(LAMPS)
        local lamp = places[name]
        lamp["name"] = name
        lamp["state"] = states[name] or "waits"
        push(list, lamp)
    end
    Lua["setVar"]("wakening", list)
    Lua["runScript"]("begin(wakening)", "lamps")
    lampsSeen = []
end

function tellLua()
    Lua["setVar"]("seen", {x = playerX, y = playerY, foot = footHeight, moved = movedNow, rang = rangNow, lantern = lanternLit, place = place["name"], frame = frame, lightX = mothX, lightY = mothY})
end

function stepLamps()
    tellLua()
    local answer = Lua["runScript"]("return think()", "lamps")
    lampsSeen = []
    for lamp in answer
        if lamp["did"] != ""
            lampDid(lamp)
        end
        if lamp["state"] != "home" and lamp["place"] == place["name"]
            lamp["ink"] = lamp["name"]
            push(lampsSeen, lamp)
        end
    end
    lampStates = answer
    rangNow = false
end

function lampDid(lamp)
    local name = lamp["name"]
    local did = lamp["did"]
    if did == "met"
        tellOnce(HINTS[name])
    elseif did == "joins"
        playSound("chime")
        tell("“" + verseOf(LAMP_HOMES[name], night["picks"][name]) + "”", mixedColour(inkOf(name), [255, 255, 255], 0.45))
        if not night["told"]["joined"]
            night["told"]["joined"] = true
            tell("It will follow you now. Somewhere among these houses is the door it remembers: look at the signs, and call at the door.")
        end
    else
        playSound("flutter")
        tellOnce(DEEDS[did])
    end
end

function followers()
    local list = []
    for lamp in lampStates
        if lamp["state"] == "follows"
            push(list, lamp)
        end
    end
    return list
end

@@ Their pictures and their light.
function showLamps()
    for lamp in lampsSeen
        local name = lamp["name"]
        local size = 5.4 + math["sin"](frame * 0.11 + lamp["x"]) * 0.3
        glowAt(lamp["x"], lamp["y"], lamp["z"], inkOf(name), 13, 1)
        push(sprites, facing(lamp["x"], lamp["y"], lamp["z"] - size / 2, size, size, texture("lamp-" + name)))
        shineAt(lamp["x"], lamp["y"], lamp["z"], inkOf(name), 46)
    end
    for name, home in pairs(homes)
        local light = home["light"]
        if light != not and place["name"] == "village"
            shineAt(light["x"], light["y"], 8, dimmed(inkOf(light["ink"]), 0.7), 84)
            for pane in home["panes"]
                glowPane(pane, light["ink"])
            end
        end
    end
    for light in place["lights"]
        shineAt(light[1], light[2], light[3], light[4], light[5])
    end
    for pane in place["panes"]
        glowAt(pane[1], pane[2], pane[3], pane[4], pane[5], 0.55)
    end
    if lanternLit
        shineAt(playerX + math["cos"](playerTurn) * 3, playerY + math["sin"](playerTurn) * 3, eyeHeight - 2, lanternInk(), 74)
    end
end

@@ Brick drinks light: under roofs the lantern is turned up.
function lanternInk()
    if place["indoors"]
        return [205, 166, 116]
    end
    return [150, 122, 88]
end

function dimmed(ink, share)
    return [ink[1] * share, ink[2] * share, ink[3] * share]
end

@@ From the middle of its upper left glass.
function glowPane(pane, ink)
    local x = pane["tl"][1] * 0.72 + pane["br"][1] * 0.28
    local y = pane["tl"][2] * 0.72 + pane["br"][2] * 0.28
    glowAt(x, y, pane["tl"][3] * 0.72 + pane["br"][3] * 0.28, inkOf(ink), 11 + tideGlow(), 0.5 + tideGlow() * 0.05)
end

@@ A lamp that follows is asked at a door.
function callAtDoor(sign)
    local family = night["families"][sign]
    if homes[sign]["light"] != not
        tellOnce("The " + family + " house. There is light behind the curtains, and a sound as of plates.")
        return not
    end
    local with = followers()
    if #with == 0
        tellOnce(doorWords(sign))
        return not
    end
    for lamp in with
        if LAMP_HOMES[lamp["name"]] == sign
            bringHome(lamp["name"], sign)
            return not
        end
    end
    local fits, words = judged(LAMP_HOMES[with[1]["name"]], sign, family)
    playSound("wrong")
    tellOnce(words)
end

@@ The first of the lamps that nobody has rung for yet.
function firstOut()
    for lamp in lampStates
        if lamp["state"] == "waits" and RUMOURS[lamp["name"]] != not
            return lamp["name"]
        end
    end
    return not
end

function doorWords(sign)
    return "A board over the door" + signWords(sign) + "Below it, cut small: " + string["upper"](night["families"][sign]) + ". Nobody is in. Not yet."
end

function signWords(sign)
    local words = {oar = ": two oars, crossed. ", hive = ": a straw hive. ", shuttle = ": a shuttle, with its thread. ", bell = ": a bell. ", wheel = ": the wheel of a mill. "}
    return words[sign]
end

function bringHome(name, sign)
    local fits, words = judged(sign, sign, night["families"][sign])
    push(night["home"], name)
    Lua["setVar"]("settling", name)
    Lua["runScript"]("settle(settling)", "lamps")
    lightHome(sign, name)
    playBell(#night["home"])
    tell(words)
    tell(tally(litCount()))
    local out = firstOut()
    if out != not
        tell(RUMOURS[out])
    end
    keepNight()
end
