@@ Settings, from the title and from the pause. Left and right, Enter or a click go on to another value, which is felt
@@ and kept at once.

optionPage = ""
if settings["picture"] != 2
    settings["picture"] = 1
end

@@ Kept in the chunk that the boot library runs at start.
function keepSettings()
    Vesper["replaceFile"](volatileFolder + "save-1.plush", "settings = " + Vesper["jsonEncode"](settings) + "\n")
end

function openOptions(item)
    optionsFrom = mode
    optionPage = "settings"
    if mode == VESPER_MENU_MAIN
        closeTitle()
    else
        dropPause()
    end
    hideHud()
    mode = VESPER_MENU_OPTION
    viewFade = 0.4
    dropEntries("told")
    addText("options", "Settings", headFont, lampGold, 0, 70, VESPER_SCREEN_X)
    listOptions(1)
end

function onOff(is)
    if is
        return "on"
    end
    return "off"
end

function listOptions(at)
    local picture = ["fine", "swift"]
    local list = [{say = "Air and water: " + settings["musicVolume"] * 10 + " %", act = nextVolume, turn = turnVolume, setting = "musicVolume"}, {say = "Bells and steps: " + settings["soundVolume"] * 10 + " %", act = nextVolume, turn = turnVolume, setting = "soundVolume"}, {say = "Picture: " + picture[settings["picture"]], act = switchPicture, turn = switchPicture}]
    push(list, {say = "Full screen: " + onOff(Metal["isFullscreen"]()), act = switchScreen, turn = switchScreen})
    push(list, {say = "Back", act = closeOptions})
    showItems(list, 315, 150, 330)
    focusOn(at)
end

function nextVolume(item)
    local next = settings[item["setting"]] + 2
    if next > NOVEL_LOUDEST
        next = 0
    end
    setVolume(item, next)
end

function turnVolume(item, step)
    setVolume(item, Vesper["clamp"](settings[item["setting"]] + step, 0, NOVEL_LOUDEST))
end

function setVolume(item, value)
    settings[item["setting"]] = value
    novelApplyLoudness()
    playSound("tick")
    keepAndList()
end

function switchPicture(item, step)
    settings["picture"] = 3 - settings["picture"]
    settings["chosen"] = true
    keepAndList()
end

@@ The window remembers by itself.
function switchScreen(item, step)
    Metal["setFullscreen"](not Metal["isFullscreen"]())
    keepAndList()
end

function keepAndList()
    keepSettings()
    listOptions(focus)
end

function closeOptions(item)
    hideItems()
    dropEntries("options")
    if optionsFrom == VESPER_MENU_MAIN
        openTitle()
    else
        openPause()
    end
end

function stepOptions()
    if pressed["back"] or pressed["menu"]
        closeOptions()
    else
        stepItems()
    end
end
