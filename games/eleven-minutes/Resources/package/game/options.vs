@@ Options: each pick goes on to the next value.

function openOptions(item)
    holdQueue()
    mode = VESPER_MENU_OPTION
    menuHead("Options")
    local list = [{say = "Music: " + LOUDNESS[settings["music"]], setting = "music", most = 3, act = nextValue}, {say = "Sounds: " + LOUDNESS[settings["sounds"]], setting = "sounds", most = 3, act = nextValue}, {say = "Text: " + TEXT_SPEEDS[settings["speed"]], setting = "speed", most = 3, act = nextValue}, {say = "Back", act = backToMenu}]
    showItems(list, "item", 260, 350, 170)
end

function nextValue(item)
    settings[item["setting"]] = settings[item["setting"]] % item["most"] + 1
    keepSettings()
    applyLoudness()
    local was = focus
    openOptions()
    focusOn(was)
end

function stepOptions()
    local item = items[focus]
    if item != not and item["setting"] != not
        if pressed["right"]
            nextValue(item)
        elseif pressed["left"]
            settings[item["setting"]] = (settings[item["setting"]] + 1) % item["most"]
            nextValue(item)
        end
    end
    stepSubmenu()
end
